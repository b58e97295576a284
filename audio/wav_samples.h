#pragma once

// The samples of PCM files, read into and written from 16-bit arrays, a block of the file at a time. Not
// exported.

#include <cstdint>
#include <cstdio>
#include <span>

namespace speech::audio {

/// How a 16-bit sample stands in a file.
struct SampleWidth {
  enum class Kind {
    unsignedByte,  ///< one byte with 128 as zero
    slot,          ///< `bytes` bytes, little-endian, from the sample's place in its array onward
  };
  Kind kind;
  std::int32_t bytes;  ///< 0 to 8191, what 16 bits of bits per sample can say
};

inline constexpr SampleWidth kUnsignedByte{SampleWidth::Kind::unsignedByte, 1};
inline constexpr SampleWidth kWord{SampleWidth::Kind::slot, 2};

/// Reads left.size() frames from the file's position on. Of slots wider than a sample the two low-order bytes
/// count, of narrower ones the bytes missing are 0. What the file does not hold is silence.
/// @param channels 1 or 2.
/// @param right of the same length as `left`, or empty to leave the right channel out.
void readFrames(std::FILE* file, SampleWidth width, int channels, std::span<std::int16_t> left,
                std::span<std::int16_t> right);

/// Writes left.size() frames at the file's position, of two channels unless `right` is empty. Slots wider
/// than the rest of the array end in zeros.
/// @return whether the file took everything.
bool writeFrames(std::FILE* file, SampleWidth width, std::span<const std::int16_t> left,
                 std::span<const std::int16_t> right);

}  // namespace speech::audio
