#include "lxapi/bundled/utf8.h"

#include <algorithm>

namespace lxapi {
namespace {

bool isContinuation(unsigned char byte) { return (byte & 0xC0) == 0x80; }

/// Length of the well-formed sequence at the start of `text`, 0 when there is none.
size_t sequenceLength(std::string_view text) {
  const auto byte = [text](size_t index) { return static_cast<unsigned char>(text[index]); };
  const unsigned char lead = byte(0);
  if (lead < 0x80) return 1;
  const size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() < length) return 0;
  for (size_t index = 1; index < length; ++index) {
    if (!isContinuation(byte(index))) return 0;
  }
  // The second byte tells overlong forms, surrogates and what lies above U+10FFFF.
  const unsigned char second = byte(1);
  if (lead == 0xE0 && second < 0xA0) return 0;
  if (lead == 0xED && second > 0x9F) return 0;
  if (lead == 0xF0 && second < 0x90) return 0;
  if (lead == 0xF4 && second > 0x8F) return 0;
  return length;
}

bool isOneOf(char32_t value, std::u32string_view set) { return set.find(value) != std::u32string_view::npos; }

}  // namespace

bool isValidUtf8(std::string_view text) {
  while (!text.empty()) {
    const size_t length = sequenceLength(text);
    if (length == 0) return false;
    text.remove_prefix(length);
  }
  return true;
}

CodePoint decodeAt(std::string_view text, size_t position) {
  const auto byte = [&](size_t index) { return static_cast<unsigned char>(text[position + index]); };
  const auto tail = [&](size_t index) { return static_cast<char32_t>(byte(index) & 0x3F); };
  const unsigned char lead = byte(0);
  if (lead < 0x80) return {lead, 1};
  if (lead < 0xE0) return {static_cast<char32_t>(lead & 0x1F) << 6 | tail(1), 2};
  if (lead < 0xF0) return {static_cast<char32_t>(lead & 0x0F) << 12 | tail(1) << 6 | tail(2), 3};
  return {static_cast<char32_t>(lead & 0x07) << 18 | tail(1) << 12 | tail(2) << 6 | tail(3), 4};
}

void appendUtf8(std::string& text, char32_t value) {
  const auto put = [&text](char32_t byte) { text.push_back(static_cast<char>(byte)); };
  if (value < 0x80) {
    put(value);
  } else if (value < 0x800) {
    put(0xC0 | value >> 6);
    put(0x80 | (value & 0x3F));
  } else if (value < 0x10000) {
    put(0xE0 | value >> 12);
    put(0x80 | (value >> 6 & 0x3F));
    put(0x80 | (value & 0x3F));
  } else {
    put(0xF0 | value >> 18);
    put(0x80 | (value >> 12 & 0x3F));
    put(0x80 | (value >> 6 & 0x3F));
    put(0x80 | (value & 0x3F));
  }
}

std::string_view utf8Prefix(std::string_view text, size_t byteCount) {
  if (text.size() <= byteCount) return text;
  while (byteCount > 0 && isContinuation(static_cast<unsigned char>(text[byteCount]))) --byteCount;
  return text.substr(0, byteCount);
}

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

}  // namespace lxapi
