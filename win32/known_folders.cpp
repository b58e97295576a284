#include "win32/known_folders.h"

#include <windows.h>

#include <shlobj.h>

namespace speech {

std::optional<std::wstring> documentsFolder() {
  wchar_t path[MAX_PATH] = {};
  if (FAILED(SHGetFolderPathW(nullptr, CSIDL_PERSONAL, nullptr, SHGFP_TYPE_CURRENT, path)))
    return std::nullopt;
  return path;
}

std::wstring temporaryFolder() {
  wchar_t path[MAX_PATH + 1] = {};
  GetTempPathW(MAX_PATH, path);
  return path;
}

}  // namespace speech
