#include "audio/same_file.h"

#ifdef _WIN32
#include <io.h>
#include <windows.h>

#include <memory>
#else
#include <sys/stat.h>
#endif

namespace speech::audio {

#ifdef _WIN32

namespace {

struct HandleCloser {
  using pointer = HANDLE;
  void operator()(HANDLE handle) const { CloseHandle(handle); }
};

}  // namespace

bool isSameFile(std::FILE* file, const char* path) {
  constexpr DWORD kNoAccess = 0;  // to look at the file only
  const HANDLE opened = CreateFileA(path, kNoAccess, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                    nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (opened == INVALID_HANDLE_VALUE) return false;
  const std::unique_ptr<HANDLE, HandleCloser> other(opened);
  BY_HANDLE_FILE_INFORMATION one, two;
  return GetFileInformationByHandle(reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(file))), &one) &&
         GetFileInformationByHandle(other.get(), &two) &&
         one.dwVolumeSerialNumber == two.dwVolumeSerialNumber && one.nFileIndexHigh == two.nFileIndexHigh &&
         one.nFileIndexLow == two.nFileIndexLow;
}

#else

bool isSameFile(std::FILE* file, const char* path) {
  struct stat one, two;
  return fstat(fileno(file), &one) == 0 && stat(path, &two) == 0 && one.st_dev == two.st_dev &&
         one.st_ino == two.st_ino;
}

#endif

}  // namespace speech::audio
