#include "lxapi/bundled/characters.h"

#include <string_view>

namespace speech::lxapi {
namespace {

bool isOneOf(char32_t value, std::u32string_view set) { return set.find(value) != std::u32string_view::npos; }

}  // namespace

bool isSpace(char32_t value) {
  return value == ' ' || (value >= 0x09 && value <= 0x0D) || value == 0x85 || value == 0xA0 ||
         (value >= 0x2000 && value <= 0x200B) || value == 0x2028 || value == 0x2029 || value == 0x202F ||
         value == 0x205F || value == 0x3000;
}

bool isWordCharacter(char32_t value) {
  if (value < 0x80) {
    return (value >= '0' && value <= '9') || (value >= 'A' && value <= 'Z') || (value >= 'a' && value <= 'z');
  }
  if (value < 0xC0) return value == 0xAA || value == 0xB5 || value == 0xBA;
  if (value == 0xD7 || value == 0xF7) return false;
  if (value == 0x200C || value == 0x200D) return true;   // joiners stand inside words
  if (value >= 0x2000 && value <= 0x206F) return false;  // general punctuation
  if (value >= 0x3001 && value <= 0x3003) return false;  // ideographic comma, full stop, ditto
  if (value >= 0x3008 && value <= 0x3011) return false;  // ideographic brackets
  if (value >= 0xFF00 && value <= 0xFF0F) return false;  // full-width punctuation
  return !isSpace(value) && !isSentenceEnd(value) && !isClauseEnd(value) && !isClosing(value);
}

bool isSentenceEnd(char32_t value) {
  return isOneOf(value,
                 U".!?\u2026\u203D\u3002\uFF0E\uFF01\uFF1F\u061F\u06D4\u0589\u0964\u0965\u104B\u1362\u17D4");
}

bool isClauseEnd(char32_t value) {
  return isOneOf(value, U",;:\u2013\u2014\u060C\u061B\u3001\uFF0C\uFF1B\uFF1A\u104A\u1363\u1364\u1365");
}

bool isClosing(char32_t value) {
  return isOneOf(value, U"\"')]}\u00BB\u2019\u201D\u203A\u300D\u300F\u3011\uFF09");
}

bool isControl(char32_t value) { return value < 0x20 || (value >= 0x7F && value < 0xA0); }

char32_t harmless(char32_t value) {
  const bool isPrivate = (value >= 0xE000 && value <= 0xF8FF) || value >= 0xF0000;
  const bool isLineEndOrTab = value == '\n' || value == '\r' || value == '\t';
  return (isControl(value) && !isLineEndOrTab) || isPrivate ? U' ' : value;
}

char32_t foldCase(char32_t value) {
  const auto within = [value](char32_t first, char32_t last) { return value >= first && value <= last; };
  if (within('A', 'Z') || (within(0xC0, 0xDE) && value != 0xD7)) return value + 0x20;
  if (within(0x391, 0x3A9) || within(0x410, 0x42F)) return value + 0x20;
  if (within(0x400, 0x40F)) return value + 0x50;
  // Pairs of a capital and a small letter, the capital even or odd.
  if (within(0x100, 0x137) || within(0x14A, 0x177) || within(0x460, 0x481) || within(0x1E00, 0x1E95))
    return value | 1;
  if ((within(0x139, 0x148) || within(0x179, 0x17E)) && value % 2 == 1) return value + 1;
  return value;
}

}  // namespace speech::lxapi
