#include "audio/wav_file.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace speech::audio {
namespace {

constexpr std::size_t kBlockBytes = 32768;  // at least a frame of the widest slots
using Block = std::array<std::uint8_t, kBlockBytes>;

std::int16_t decode(const std::uint8_t* bytes, SampleWidth width) {
  if (width.kind == SampleWidth::Kind::kUnsignedByte)
    return static_cast<std::int16_t>((bytes[0] - 128) * 256);
  const int highByte = width.bytes > 1 ? bytes[1] : 0;
  return static_cast<std::int16_t>(bytes[0] | highByte << 8);
}

/// Appends sample `index` of `samples` at `to`.
std::uint8_t* encode(std::span<const std::int16_t> samples, std::size_t index, SampleWidth width,
                     std::uint8_t* to) {
  if (width.kind == SampleWidth::Kind::kUnsignedByte) {
    *to++ = static_cast<std::uint8_t>(samples[index] / 256 + 128);
    return to;
  }
  // Kept: a wide slot takes bytes of the samples that follow.
  for (std::int32_t byte = 0; byte < width.bytes; ++byte) {
    const std::size_t place = index + static_cast<std::size_t>(byte / 2);
    const auto sample = static_cast<std::uint16_t>(place < samples.size() ? samples[place] : 0);
    *to++ = static_cast<std::uint8_t>(byte % 2 == 0 ? sample : sample >> 8);
  }
  return to;
}

}  // namespace

void readFrames(std::FILE* file, SampleWidth width, int channels, std::span<std::int16_t> left,
                std::span<std::int16_t> right) {
  const auto sampleBytes = static_cast<std::size_t>(width.bytes);
  const std::size_t frameBytes = sampleBytes * static_cast<std::size_t>(channels);
  if (frameBytes == 0) {
    std::ranges::fill(left, std::int16_t{0});
    std::ranges::fill(right, std::int16_t{0});
    return;
  }
  const std::uint8_t silence = width.kind == SampleWidth::Kind::kUnsignedByte ? 128 : 0;
  Block block;
  for (std::size_t begin = 0; begin < left.size();) {
    const std::size_t frames = std::min(kBlockBytes / frameBytes, left.size() - begin);
    const std::size_t wanted = frames * frameBytes;
    const std::size_t bytesRead = std::fread(block.data(), 1, wanted, file);
    std::fill_n(block.data() + bytesRead, wanted - bytesRead, silence);
    const std::uint8_t* frame = block.data();
    for (std::size_t i = begin; i < begin + frames; ++i, frame += frameBytes) {
      left[i] = decode(frame, width);
      if (!right.empty()) right[i] = decode(frame + sampleBytes, width);
    }
    begin += frames;
  }
}

bool writeFrames(std::FILE* file, SampleWidth width, std::span<const std::int16_t> left,
                 std::span<const std::int16_t> right) {
  const std::size_t frameBytes = static_cast<std::size_t>(width.bytes) * (right.empty() ? 1 : 2);
  if (frameBytes == 0) return true;
  Block block;
  for (std::size_t begin = 0; begin < left.size();) {
    const std::size_t frames = std::min(kBlockBytes / frameBytes, left.size() - begin);
    std::uint8_t* end = block.data();
    for (std::size_t i = begin; i < begin + frames; ++i) {
      end = encode(left, i, width, end);
      if (!right.empty()) end = encode(right, i, width, end);
    }
    const auto bytes = static_cast<std::size_t>(end - block.data());
    if (std::fwrite(block.data(), 1, bytes, file) != bytes) return false;
    begin += frames;
  }
  return true;
}

}  // namespace speech::audio
