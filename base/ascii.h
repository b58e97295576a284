#pragma once

// Letter case and blanks of ASCII text, whatever the locale. Other bytes stay as they are.

#include <algorithm>
#include <string>
#include <string_view>

namespace speech {

constexpr char toLowerAscii(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

constexpr char toUpperAscii(char letter) {
  return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}

constexpr bool isAsciiLetter(char letter) {
  return toLowerAscii(letter) >= 'a' && toLowerAscii(letter) <= 'z';
}

inline std::string lowerAscii(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), toLowerAscii);
  return result;
}

inline bool equalIgnoringAsciiCase(std::string_view left, std::string_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](char a, char b) { return toLowerAscii(a) == toLowerAscii(b); });
}

/// `text` without the blanks at its ends.
constexpr std::string_view trimmed(std::string_view text, std::string_view blanks) {
  const size_t begin = text.find_first_not_of(blanks);
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

}  // namespace speech
