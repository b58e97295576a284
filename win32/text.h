#pragma once

// Text between the encodings of the interface: UTF-16 inside, UTF-8 for synthesis, the calling thread's ANSI
// code page for paths and for hosts that speak narrow text.

#include <string>
#include <string_view>

namespace speech {

/// The text behind a host's pointer; null stands for the empty text.
inline std::wstring_view textOrEmpty(const wchar_t* text) { return text != nullptr ? text : L""; }
inline std::string_view textOrEmpty(const char* text) { return text != nullptr ? text : ""; }

/// UTF-16 to UTF-8 and back. A lone surrogate or a malformed byte becomes U+FFFD.
std::string toUtf8(std::wstring_view text);
std::wstring fromUtf8(std::string_view text);

/// UTF-16 to the calling thread's ANSI code page and back. A character that the code page lacks becomes its
/// nearest relative or "?".
std::string toThreadCodePage(std::wstring_view text);
std::wstring fromThreadCodePage(std::string_view text);

}  // namespace speech
