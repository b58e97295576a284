#include "win32/paths.h"

#include <io.h>
#include <objbase.h>
#include <shlobj.h>

#include <array>
#include <cstdio>

namespace speech {
namespace {

/// Empty when the path does not exist or the volume keeps no short names.
std::wstring shortPath(const std::wstring& path) {
  std::wstring shortened(MAX_PATH, L'\0');
  DWORD length = GetShortPathNameW(path.c_str(), shortened.data(), static_cast<DWORD>(shortened.size()));
  if (length > shortened.size()) {
    shortened.resize(length);
    length = GetShortPathNameW(path.c_str(), shortened.data(), length);
  }
  shortened.resize(length < shortened.size() ? length : 0);
  return shortened;
}

}  // namespace

std::optional<std::wstring> documentsFolder() {
  std::array<wchar_t, MAX_PATH> path{};
  if (FAILED(SHGetFolderPathW(nullptr, CSIDL_PERSONAL, nullptr, SHGFP_TYPE_CURRENT, path.data())))
    return std::nullopt;
  return path.data();
}

std::wstring temporaryFolder() {
  std::array<wchar_t, MAX_PATH + 1> path{};
  const DWORD length = GetTempPathW(static_cast<DWORD>(path.size()), path.data());
  // A folder that does not fit leaves the buffer undefined.
  return length < path.size() ? std::wstring(path.data(), length) : std::wstring();
}

HMODULE thisModule() {
  HMODULE module = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                     reinterpret_cast<LPCWSTR>(&thisModule), &module);
  return module;
}

std::wstring moduleFolder(HMODULE module) {
  std::wstring path(MAX_PATH, L'\0');
  DWORD length = GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
  while (length == path.size()) {  // cut off
    path.resize(path.size() * 2);
    length = GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
  }
  path.resize(length);
  return path.substr(0, path.find_last_of(L'\\') + 1);
}

std::wstring guidName() {
  GUID guid = {};
  static_cast<void>(CoCreateGuid(&guid));
  std::array<wchar_t, 40> name{};
  std::swprintf(name.data(), name.size(), L"%.8lX-%.4X-%.4X-%.2X%.2X-%.2X%.2X%.2X%.2X%.2X%.2X", guid.Data1,
                guid.Data2, guid.Data3, guid.Data4[0], guid.Data4[1], guid.Data4[2], guid.Data4[3],
                guid.Data4[4], guid.Data4[5], guid.Data4[6], guid.Data4[7]);
  return name.data();
}

std::wstring newTemporaryPath(std::wstring_view extension) {
  return temporaryFolder().append(guidName()).append(extension);
}

bool pathExists(const wchar_t* path) { return _waccess_s(path, 0) == 0; }

std::optional<std::string> narrowPath(std::wstring_view path, CodePage codePage, std::size_t longest) {
  auto narrow = toNarrowExactly(path, codePage);
  if (!narrow || narrow->size() > longest) {
    const std::wstring shortened = shortPath(std::wstring(path));
    narrow = shortened.empty() ? std::nullopt : toNarrowExactly(shortened, codePage);
  }
  return narrow && narrow->size() <= longest ? narrow : std::nullopt;
}

std::optional<std::string> narrowPathOfNewFile(std::wstring_view path, CodePage codePage) {
  if (auto narrow = narrowPath(path, codePage)) return narrow;
  const std::size_t nameBegin = path.find_last_of(L"\\/") + 1;
  if (nameBegin == 0) return std::nullopt;
  const auto folder = narrowPath(path.substr(0, nameBegin), codePage);
  const auto name = toNarrowExactly(path.substr(nameBegin), codePage);
  return folder && name ? std::optional(*folder + *name) : std::nullopt;
}

}  // namespace speech
