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

/// Puts together the bytes of a little-endian file.
class ByteWriter {
 public:
  ByteWriter& text(std::string_view characters) {
    bytes.insert(bytes.end(), characters.begin(), characters.end());
    return *this;
  }
  ByteWriter& u8(std::uint32_t value) { return number(value, 1); }
  ByteWriter& u16(std::uint32_t value) { return number(value, 2); }
  ByteWriter& u32(std::uint32_t value) { return number(value, 4); }
  ByteWriter& samples(const std::vector<std::int16_t>& values) {
    for (const std::int16_t value : values) u16(static_cast<std::uint16_t>(value));
    return *this;
  }

  Bytes bytes;

 private:
  ByteWriter& number(std::uint32_t value, int size) {
    for (int i = 0; i < size; ++i) bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
    return *this;
  }
};

}  // namespace speech::test
