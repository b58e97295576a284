#pragma once

#include <windows.h>

#include <string>
#include <string_view>

inline constexpr std::wstring_view kSpaces = L" \t\r\n\u3000";

inline bool isBlank(std::wstring_view text) { return text.find_first_not_of(kSpaces) == text.npos; }

inline std::wstring windowText(HWND window) {
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
  text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
  return text;
}
