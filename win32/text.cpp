#include "win32/text.h"

#include <windows.h>

namespace speech {
namespace {

std::string narrow(UINT codePage, std::wstring_view text) {
  const int length = static_cast<int>(text.size());
  const auto convert = [&](char* out, int size) {
    return WideCharToMultiByte(codePage, 0, text.data(), length, out, size, nullptr, nullptr);
  };
  if (length == 0) return {};
  std::string converted(static_cast<std::size_t>(convert(nullptr, 0)), '\0');
  convert(converted.data(), static_cast<int>(converted.size()));
  return converted;
}

std::wstring widen(UINT codePage, std::string_view text) {
  const int length = static_cast<int>(text.size());
  const auto convert = [&](wchar_t* out, int size) {
    return MultiByteToWideChar(codePage, 0, text.data(), length, out, size);
  };
  if (length == 0) return {};
  std::wstring converted(static_cast<std::size_t>(convert(nullptr, 0)), L'\0');
  convert(converted.data(), static_cast<int>(converted.size()));
  return converted;
}

}  // namespace

std::string toUtf8(std::wstring_view text) { return narrow(CP_UTF8, text); }
std::wstring fromUtf8(std::string_view text) { return widen(CP_UTF8, text); }
std::string toThreadCodePage(std::wstring_view text) { return narrow(CP_THREAD_ACP, text); }
std::wstring fromThreadCodePage(std::string_view text) { return widen(CP_THREAD_ACP, text); }

}  // namespace speech
