#pragma once

// WAV files built chunk by chunk, sound or faulty.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace speech::test {

inline std::string littleEndian(std::uint32_t value, int byteCount) {
  std::string bytes;
  for (int i = 0; i < byteCount; ++i) bytes += static_cast<char>(value >> (8 * i));
  return bytes;
}

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

/// The 16 bytes of a PCM "fmt " chunk.
inline std::string pcmFormat(int channels, int rateHz, int bits) {
  const auto align = static_cast<std::uint32_t>(channels * bits / 8);
  return littleEndian(1, 2) + littleEndian(static_cast<std::uint32_t>(channels), 2) +
         littleEndian(static_cast<std::uint32_t>(rateHz), 4) +
         littleEndian(static_cast<std::uint32_t>(rateHz) * align, 4) + littleEndian(align, 2) +
         littleEndian(static_cast<std::uint32_t>(bits), 2);
}

inline std::string wavFile(std::string_view format, std::string_view data) {
  return riff(chunk("fmt ", format) + chunk("data", data));
}

/// 16-bit mono.
inline std::string wavFile(const std::vector<std::int16_t>& samples, int rateHz) {
  return wavFile(pcmFormat(1, rateHz, 16),
                 {reinterpret_cast<const char*>(samples.data()), samples.size() * sizeof(std::int16_t)});
}

}  // namespace speech::test
