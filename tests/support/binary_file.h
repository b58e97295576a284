#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/file_content.h"

namespace speech::test {

using Bytes = std::vector<std::uint8_t>;

inline Bytes readBytes(const std::filesystem::path& path) {
  const std::string content = readFile(path);
  return {content.begin(), content.end()};
}

inline void writeBytes(const std::filesystem::path& path, const Bytes& bytes) {
  writeFile(path, {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}

inline std::string littleEndian(std::uint32_t value, int byteCount) {
  std::string bytes;
  for (int i = 0; i < byteCount; ++i) bytes += static_cast<char>(value >> (8 * i));
  return bytes;
}

/// Puts together the bytes of a little-endian file.
class ByteWriter {
 public:
  ByteWriter& text(std::string_view characters) {
    for (const char character : characters) bytes.push_back(static_cast<std::uint8_t>(character));
    return *this;
  }
  ByteWriter& u8(std::uint32_t value) { return text(littleEndian(value, 1)); }
  ByteWriter& u16(std::uint32_t value) { return text(littleEndian(value, 2)); }
  ByteWriter& u32(std::uint32_t value) { return text(littleEndian(value, 4)); }
  ByteWriter& samples(const std::vector<std::int16_t>& values) {
    for (const std::int16_t value : values) u16(static_cast<std::uint16_t>(value));
    return *this;
  }

  Bytes bytes;
};

}  // namespace speech::test
