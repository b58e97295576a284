#include "lxapi/bundled/narrow_path.h"

#include <windows.h>

namespace lxapi {
namespace {

std::string writeNarrow(const std::wstring& path, size_t byteCount) {
  std::string result(byteCount, '\0');
  BOOL replaced = FALSE;
  const int size =
      WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, path.data(), static_cast<int>(path.size()),
                          result.data(), static_cast<int>(byteCount), nullptr, &replaced);
  result.resize(size > 0 && replaced == FALSE ? static_cast<size_t>(size) : 0);
  return result;
}

}  // namespace

std::string narrowPath(const std::filesystem::path& path, size_t byteCount) {
  if (std::string result = writeNarrow(path.native(), byteCount); !result.empty()) return result;
  std::wstring shortPath(MAX_PATH, L'\0');
  const DWORD length = GetShortPathNameW(path.c_str(), shortPath.data(), MAX_PATH);
  if (length == 0 || length >= MAX_PATH) return {};
  shortPath.resize(length);
  return writeNarrow(shortPath, byteCount);
}

}  // namespace lxapi
