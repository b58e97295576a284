#include "speech/c_interface/text.h"

#include <windows.h>

#include <algorithm>

#include "speech/c_interface/failure.h"
#include "win32/text.h"

namespace speech::c_interface {
namespace {

bool isUtf8(std::string_view bytes) {
  return bytes.empty() || MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, bytes.data(),
                                              static_cast<int>(bytes.size()), nullptr, 0) > 0;
}

bool isUtf16(std::wstring_view units) {
  return units.empty() ||
         WideCharToMultiByte(CP_UTF8, WC_ERR_INVALID_CHARS, units.data(), static_cast<int>(units.size()),
                             nullptr, 0, nullptr, nullptr) > 0;
}

template <class Char>
void copyOut(std::basic_string_view<Char> text, Char* buffer, std::uint32_t capacity, std::uint32_t* length) {
  if (buffer == nullptr && capacity != 0) throw Failure(SPEECH_ERROR_ARGUMENT);
  if (length != nullptr) *length = static_cast<std::uint32_t>(text.size());
  if (text.size() >= capacity) throw Failure(SPEECH_ERROR_BUFFER);
  *std::copy(text.begin(), text.end(), buffer) = Char{};
}

}  // namespace

std::wstring textOf(const char* utf8) {
  const std::string_view text = required(utf8);
  if (!isUtf8(text)) throw Failure(SPEECH_ERROR_TEXT);
  return fromUtf8(text);
}

std::wstring textOf(const wchar_t* utf16) {
  const std::wstring_view text = required(utf16);
  if (!isUtf16(text)) throw Failure(SPEECH_ERROR_TEXT);
  return std::wstring(text);
}

void handOut(std::wstring_view text, char* buffer, std::uint32_t capacity, std::uint32_t* length) {
  handOut(std::string_view(toUtf8(text)), buffer, capacity, length);
}

void handOut(std::wstring_view text, wchar_t* buffer, std::uint32_t capacity, std::uint32_t* length) {
  copyOut(text, buffer, capacity, length);
}

void handOut(std::string_view utf8, char* buffer, std::uint32_t capacity, std::uint32_t* length) {
  copyOut(utf8, buffer, capacity, length);
}

std::wstring textOfUnknown(std::string_view bytes) {
  return isUtf8(bytes) ? fromUtf8(bytes) : fromThreadCodePage(bytes);
}

std::string utf8OfUnknown(std::string_view bytes) {
  return toUtf8(textOfUnknown(bytes.substr(0, bytes.find_last_not_of(std::string_view("\r\n\0", 3)) + 1)));
}

}  // namespace speech::c_interface
