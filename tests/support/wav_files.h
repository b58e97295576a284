#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/binary_file.h"

namespace speech::test {

/// A chunk whose size field says `claimedSize`, whatever it holds; an odd content is padded.
inline std::string chunk(std::string_view id, std::string_view content, std::uint32_t claimedSize) {
  std::string bytes = std::string(id) + littleEndian(claimedSize, 4) + std::string(content);
  if (content.size() % 2 != 0) bytes += '\0';
  return bytes;
}
inline std::string chunk(std::string_view id, std::string_view content) {
  return chunk(id, content, static_cast<std::uint32_t>(content.size()));
}

inline std::string riff(std::string_view chunks, std::string_view form = "WAVE",
                        std::string_view id = "RIFF") {
  return chunk(id, std::string(form) + std::string(chunks));
}

/// The 16 bytes of a "fmt " chunk.
inline std::string pcmFormat(std::uint32_t channels, std::uint32_t rateHz, std::uint32_t bits,
                             std::uint32_t tag = 1) {
  const std::uint32_t frameBytes = channels * (bits / 8);
  return littleEndian(tag, 2) + littleEndian(channels, 2) + littleEndian(rateHz, 4) +
         littleEndian(rateHz * frameBytes, 4) + littleEndian(frameBytes, 2) + littleEndian(bits, 2);
}

inline std::string wavFile(std::string_view format, std::string_view data) {
  return riff(chunk("fmt ", format) + chunk("data", data));
}

/// 16-bit mono.
inline std::string wavFile(const std::vector<std::int16_t>& samples, std::uint32_t rateHz) {
  return wavFile(pcmFormat(1, rateHz, 16),
                 {reinterpret_cast<const char*>(samples.data()), samples.size() * sizeof(std::int16_t)});
}

/// A PCM file with its samples right behind a header of 44 bytes, each part of which may lie.
struct PcmFile {
  std::uint32_t tag = 1;
  std::uint32_t channels = 1;
  std::uint32_t sampleRate = 8000;
  std::uint32_t bits = 16;
  Bytes data{};
  std::uint32_t dataSize = 0xFFFFFFFF;  ///< this value: the truth

  Bytes bytes() const {
    const auto size = dataSize == 0xFFFFFFFF ? static_cast<std::uint32_t>(data.size()) : dataSize;
    ByteWriter file;
    file.text("RIFF").u32(36 + size).text("WAVE");
    file.text(chunk("fmt ", pcmFormat(channels, sampleRate, bits, tag))).text("data").u32(size);
    file.bytes.insert(file.bytes.end(), data.begin(), data.end());
    return file.bytes;
  }
};

inline std::uint32_t littleEndian32(const Bytes& bytes, std::size_t offset) {
  return static_cast<std::uint32_t>(bytes[offset] | bytes[offset + 1] << 8 | bytes[offset + 2] << 16) |
         static_cast<std::uint32_t>(bytes[offset + 3]) << 24;
}

/// Whether chunks follow one another from the RIFF header to the end of the data chunk, all within the file
/// and within what the RIFF header announces.
inline bool isWellFormedWav(const Bytes& file) {
  const auto has = [&](std::size_t offset, const char* id) {
    return std::memcmp(file.data() + offset, id, 4) == 0;
  };
  if (file.size() < 44 || !has(0, "RIFF") || !has(8, "WAVE") || !has(12, "fmt ")) return false;
  const std::uint64_t end = std::uint64_t{littleEndian32(file, 4)} + 8;
  if (end > file.size()) return false;
  for (std::uint64_t offset = 12; offset + 8 <= end;) {
    const auto place = static_cast<std::size_t>(offset);
    offset += 8 + std::uint64_t{littleEndian32(file, place + 4)};
    if (has(place, "data")) return offset == end;
  }
  return false;
}

}  // namespace speech::test
