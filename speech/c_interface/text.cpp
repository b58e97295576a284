#include "speech/c_interface/text.h"

#include <algorithm>

#include "speech/c_interface/session.h"
#include "win32/text.h"

namespace speech::c_interface {
namespace {

template <class Char>
void copyOut(std::basic_string_view<Char> text, Char* buffer, std::uint32_t capacity, std::uint32_t* length) {
  if (buffer == nullptr && capacity != 0) throw Failure(SPEECH_ERROR_ARGUMENT);
  if (length != nullptr) *length = static_cast<std::uint32_t>(text.size());
  if (text.size() >= capacity) throw Failure(SPEECH_ERROR_BUFFER);
  *std::copy(text.begin(), text.end(), buffer) = Char{};
}

}  // namespace

std::wstring textOf(const char* utf8) {
  const auto text = fromWellFormedUtf8(required(utf8));
  if (!text) throw Failure(SPEECH_ERROR_TEXT);
  return *text;
}

std::wstring textOf(const wchar_t* utf16) {
  // A lone surrogate has no UTF-8 form.
  if (!toNarrowExactly(required(utf16), CodePage::kUtf8)) throw Failure(SPEECH_ERROR_TEXT);
  return utf16;
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
  const auto text = fromWellFormedUtf8(bytes);
  return text ? *text : fromThreadCodePage(bytes);
}

std::string utf8OfUnknown(std::string_view bytes) {
  return toUtf8(textOfUnknown(bytes.substr(0, bytes.find_last_not_of(std::string_view("\r\n\0", 3)) + 1)));
}

}  // namespace speech::c_interface
