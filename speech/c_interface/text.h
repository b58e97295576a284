#pragma once

// Text that crosses the C interface. Each function exists for UTF-8 and for UTF-16, so that the two forms of
// an exported function share one template.

#include <cstdint>
#include <string>
#include <string_view>

#include "framework/framework.h"

namespace speech::c_interface {

/// A caller's text. Fails for null and for malformed text.
std::wstring textOf(const char* utf8);
std::wstring textOf(const wchar_t* utf16);

/// The same where null counts as empty.
template <class Char>
std::wstring textOrNone(const Char* text) {
  return text != nullptr ? textOf(text) : std::wstring();
}

/// Copies a text, terminated, into a caller's buffer. `length` is set also when the text does not fit, which
/// is a failure.
void handOut(std::wstring_view text, char* buffer, std::uint32_t capacity, std::uint32_t* length);
void handOut(std::wstring_view text, wchar_t* buffer, std::uint32_t capacity, std::uint32_t* length);
void handOut(std::string_view utf8, char* buffer, std::uint32_t capacity, std::uint32_t* length);

/// The text of a service or an engine, which is UTF-8 or in the thread's code page.
std::wstring textOfUnknown(std::string_view bytes);
/// The same as UTF-8, without the end of its line.
std::string utf8OfUnknown(std::string_view bytes);

/// Valid while the text lives.
inline std::wstring_view viewOf(const CStringW& text) {
  return {text.GetString(), static_cast<std::size_t>(text.GetLength())};
}

}  // namespace speech::c_interface
