#pragma once

// UTF-8 without the system's help: validity is checked once where a text comes in, and the rest relies on it.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace speech {

struct CodePoint {
  char32_t value;
  uint32_t byteCount;
};

/// True when `text` is well-formed UTF-8: no overlong forms, no surrogates, nothing above U+10FFFF.
bool isValidUtf8(std::string_view text);

/// The code point at `position`, which must be the start of one in valid UTF-8.
CodePoint decodeAt(std::string_view text, size_t position);

/// How many code points valid UTF-8 holds.
size_t countCodePoints(std::string_view text);

void appendUtf8(std::string& text, char32_t value);

/// How many UTF-16 units the code point takes.
constexpr uint32_t utf16Length(char32_t value) { return value > 0xFFFF ? 2 : 1; }

/// The longest prefix of valid UTF-8 that fits into `byteCount` bytes without cutting a code point.
std::string_view utf8Prefix(std::string_view text, size_t byteCount);

/// Reads every byte as the character of the same number (ISO 8859-1).
std::string latin1ToUtf8(std::string_view bytes);

}  // namespace speech
