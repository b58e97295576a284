#pragma once

// UTF-8 and UTF-16 arithmetic on text whose validity is settled once, at the interface.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace lxapi {

struct CodePoint {
  char32_t value;
  uint32_t byteCount;
};

/// True when `text` is well-formed UTF-8: no overlong forms, no surrogates, nothing above U+10FFFF.
bool isValidUtf8(std::string_view text);

/// The code point at `position`, which must lie at the start of one in valid UTF-8.
CodePoint decodeAt(std::string_view text, size_t position);

void appendUtf8(std::string& text, char32_t value);

/// How many UTF-16 units the code point takes.
constexpr uint32_t utf16Length(char32_t value) { return value > 0xFFFF ? 2 : 1; }

/// The longest prefix of valid UTF-8 that fits into `byteCount` bytes without cutting a code point.
std::string_view utf8Prefix(std::string_view text, size_t byteCount);

/// White space, line ends and the separators of Unicode.
bool isSpace(char32_t value);

/// Letters, digits, marks and ideographs: what a written word consists of. Anything outside ASCII that is
/// neither space nor known punctuation counts.
bool isWordCharacter(char32_t value);

/// Sentence-ending punctuation of the scripts in use, and the lighter kind that a comma stands for.
bool isSentenceEnd(char32_t value);
bool isClauseEnd(char32_t value);

/// Quotation marks and brackets that may follow a sentence's last punctuation.
bool isClosing(char32_t value);

}  // namespace lxapi
