#pragma once

// Reading a WAV header back, and the samples of PCM files as 16-bit arrays.

#include <cstdint>
#include <cstdio>
#include <span>

#include <speech/audio.h>

extern "C" {

/// Reads the first 44 bytes of `file` as the header of a PCM file whose fmt chunk has 16 bytes and is
/// followed by the data chunk, and leaves the file at offset 44. Checks nothing: another chunk at offset 36
/// is taken for the data chunk, and fields behind the end of a short file are 0. Returns 1.
std::int32_t LXUTIL_Read_WFHeader(std::FILE* file, WFHeader* header);

}  // extern "C"

namespace speech::audio {

/// How a 16-bit sample is stored in a file.
struct SampleWidth {
  enum class Kind {
    kUnsignedByte,  ///< One byte, with 128 as zero.
    kSlot,          ///< `bytes` bytes, little-endian, taken from the sample's place in its array onward.
  };
  Kind kind;
  std::int32_t bytes;  ///< 0 to 8191: the header's field of 16 bits, divided by 8
};

inline constexpr SampleWidth kUnsignedByte{SampleWidth::Kind::kUnsignedByte, 1};
inline constexpr SampleWidth kWord{SampleWidth::Kind::kSlot, 2};

/// Reads left.size() frames from the file's position on. Slots wider than a sample give their two low-order
/// bytes; narrower ones are filled up with 0. Behind the end of the file there is silence.
/// @param channels 1 or 2.
/// @param right as long as `left`, or empty to skip the right channel.
void readFrames(std::FILE* file, SampleWidth width, int channels, std::span<std::int16_t> left,
                std::span<std::int16_t> right);

/// Writes left.size() frames at the file's position, with two channels unless `right` is empty. Slots that
/// reach beyond the end of the array end in zeros.
/// @return whether everything was written.
bool writeFrames(std::FILE* file, SampleWidth width, std::span<const std::int16_t> left,
                 std::span<const std::int16_t> right);

}  // namespace speech::audio
