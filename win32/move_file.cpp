#include "win32/move_file.h"

#include <windows.h>

namespace speech {
namespace {

constexpr int kAttempts = 100;
constexpr DWORD kPauseMilliseconds = 20;

/// Whether an error may be gone in a moment.
bool isPassing(DWORD error) { return error == ERROR_SHARING_VIOLATION || error == ERROR_ACCESS_DENIED; }

bool canBeReplaced(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  return attributes == INVALID_FILE_ATTRIBUTES ||
         (attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY)) == 0;
}

}  // namespace

bool moveFile(const std::wstring& from, const std::wstring& to) {
  constexpr DWORD kFlags = MOVEFILE_REPLACE_EXISTING | MOVEFILE_COPY_ALLOWED;
  for (int attempt = 1; !MoveFileExW(from.c_str(), to.c_str(), kFlags); ++attempt) {
    const DWORD error = GetLastError();
    if (!isPassing(error) || attempt == kAttempts || !canBeReplaced(to)) {
      SetLastError(error);
      return false;
    }
    Sleep(kPauseMilliseconds);
  }
  return true;
}

}  // namespace speech
