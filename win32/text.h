#pragma once

// Text between the encodings of the interface: UTF-16 inside, UTF-8 for synthesis, ANSI code pages for narrow
// file functions and for hosts that speak narrow text.

#include <optional>
#include <string>
#include <string_view>

namespace speech {

/// The narrow encodings by their Windows numbers.
enum class CodePage : unsigned {
  kSystem = 0,  ///< In which the C runtime and the system read narrow file names.
  kThread = 3,  ///< The calling thread's, which SetThreadLocale changes.
  kUtf8 = 65001,
};

/// The text behind a host's pointer; null stands for the empty text.
inline std::wstring_view textOrEmpty(const wchar_t* text) { return text != nullptr ? text : L""; }
inline std::string_view textOrEmpty(const char* text) { return text != nullptr ? text : ""; }

/// UTF-16 to a code page and back. A character that the code page lacks becomes its nearest relative or "?";
/// in UTF-8 a lone surrogate and a malformed byte become U+FFFD.
std::string toNarrow(std::wstring_view text, CodePage codePage);
std::wstring toWide(std::string_view text, CodePage codePage);

/// UTF-16 to a code page that holds every character of the text; empty when it lacks one.
std::optional<std::string> toNarrowExactly(std::wstring_view text, CodePage codePage);

/// UTF-8 to UTF-16; empty when the text is not well-formed.
std::optional<std::wstring> fromWellFormedUtf8(std::string_view text);

inline std::string toUtf8(std::wstring_view text) { return toNarrow(text, CodePage::kUtf8); }
inline std::wstring fromUtf8(std::string_view text) { return toWide(text, CodePage::kUtf8); }
inline std::string toSystemCodePage(std::wstring_view text) { return toNarrow(text, CodePage::kSystem); }
inline std::wstring fromSystemCodePage(std::string_view text) { return toWide(text, CodePage::kSystem); }
inline std::string toThreadCodePage(std::wstring_view text) { return toNarrow(text, CodePage::kThread); }
inline std::wstring fromThreadCodePage(std::string_view text) { return toWide(text, CodePage::kThread); }

}  // namespace speech
