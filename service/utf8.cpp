#include "service/utf8.h"

#include <cstdint>

namespace speech::service {
namespace {

struct Lead {
  size_t length;     // bytes of the whole character, 0 for a byte that starts none
  uint32_t bits;     // what the lead byte contributes
  uint32_t minimum;  // a smaller value in this length is over-long
};

Lead classifyLead(unsigned char byte) {
  if (byte < 0x80) return {1, byte, 0};
  if ((byte & 0xE0) == 0xC0) return {2, byte & 0x1FU, 0x80};
  if ((byte & 0xF0) == 0xE0) return {3, byte & 0x0FU, 0x800};
  if ((byte & 0xF8) == 0xF0) return {4, byte & 0x07U, 0x10000};
  return {0, 0, 0};
}

}  // namespace

std::optional<size_t> countUtf8Characters(std::string_view bytes) {
  size_t characters = 0;
  while (!bytes.empty()) {
    const Lead lead = classifyLead(static_cast<unsigned char>(bytes[0]));
    if (lead.length == 0 || lead.length > bytes.size()) return std::nullopt;
    uint32_t value = lead.bits;
    for (size_t i = 1; i < lead.length; ++i) {
      const auto byte = static_cast<unsigned char>(bytes[i]);
      if ((byte & 0xC0) != 0x80) return std::nullopt;
      value = value << 6 | (byte & 0x3FU);
    }
    const bool isSurrogate = value >= 0xD800 && value <= 0xDFFF;
    if (value < lead.minimum || value > 0x10FFFF || isSurrogate) return std::nullopt;
    bytes.remove_prefix(lead.length);
    ++characters;
  }
  return characters;
}

std::string latin1ToUtf8(std::string_view bytes) {
  std::string text;
  for (const char character : bytes) {
    const auto byte = static_cast<unsigned char>(character);
    if (byte < 0x80) {
      text += character;
    } else {
      text += static_cast<char>(0xC0 | byte >> 6);
      text += static_cast<char>(0x80 | (byte & 0x3F));
    }
  }
  return text;
}

}  // namespace speech::service
