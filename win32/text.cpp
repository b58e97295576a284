#include "win32/text.h"

#include <windows.h>

namespace speech {
namespace {

static_assert(static_cast<UINT>(CodePage::kSystem) == CP_ACP);
static_assert(static_cast<UINT>(CodePage::kThread) == CP_THREAD_ACP);
static_assert(static_cast<UINT>(CodePage::kUtf8) == CP_UTF8);

std::wstring wide(std::string_view text, UINT codePage, DWORD flags) {
  const int length = static_cast<int>(text.size());
  const auto convert = [&](wchar_t* out, int size) {
    return MultiByteToWideChar(codePage, flags, text.data(), length, out, size);
  };
  if (length == 0) return {};
  std::wstring converted(static_cast<std::size_t>(convert(nullptr, 0)), L'\0');
  convert(converted.data(), static_cast<int>(converted.size()));
  return converted;
}

}  // namespace

std::string toNarrow(std::wstring_view text, CodePage codePage) {
  const int length = static_cast<int>(text.size());
  const auto convert = [&](char* out, int size) {
    return WideCharToMultiByte(static_cast<UINT>(codePage), 0, text.data(), length, out, size, nullptr,
                               nullptr);
  };
  if (length == 0) return {};
  std::string converted(static_cast<std::size_t>(convert(nullptr, 0)), '\0');
  convert(converted.data(), static_cast<int>(converted.size()));
  return converted;
}

std::wstring toWide(std::string_view text, CodePage codePage) {
  return wide(text, static_cast<UINT>(codePage), 0);
}

std::optional<std::string> toNarrowExactly(std::wstring_view text, CodePage codePage) {
  std::string converted = toNarrow(text, codePage);
  if (toWide(converted, codePage) != text) return std::nullopt;
  return converted;
}

std::optional<std::wstring> fromWellFormedUtf8(std::string_view text) {
  std::wstring converted = wide(text, CP_UTF8, MB_ERR_INVALID_CHARS);
  if (converted.empty() && !text.empty()) return std::nullopt;
  return converted;
}

}  // namespace speech
