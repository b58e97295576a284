#include "audio/file_io.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>

#ifdef _WIN32
#include <io.h>
#include <windows.h>
#include "win32/unique_handle.h"
#else
#include <sys/stat.h>
#endif

#include <speech/audio.h>

namespace speech::audio {

std::atomic<std::int32_t> hostBigEndianFlag{-1};

bool hostIsBigEndian() {
  if (hostBigEndianFlag < 0) set_endian_info();
  return hostBigEndianFlag > 0;
}

std::int64_t measureFile(std::FILE* file) {
  std::fseek(file, 0, SEEK_SET);
#ifdef _WIN32
  _fseeki64(file, 0, SEEK_END);
  const std::int64_t size = _ftelli64(file);
#else
  fseeko(file, 0, SEEK_END);
  const std::int64_t size = ftello(file);
#endif
  std::fseek(file, 0, SEEK_SET);
  return size;
}

#ifdef _WIN32

bool isSameFile(std::FILE* file, const char* path) {
  constexpr DWORD kNoAccess = 0;  // enough to identify a file
  const UniqueHandle other =
      ownedFileHandle(CreateFileA(path, kNoAccess, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                  nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
  BY_HANDLE_FILE_INFORMATION one, two;
  return other && GetFileInformationByHandle(reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(file))), &one) &&
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

namespace {

constexpr std::int32_t kLargestSwappedElement = 8;

/// `elementSize * count`, or 0 if that is no number of bytes that memory can hold.
std::size_t byteCount(std::int32_t elementSize, std::int32_t count) {
  const std::int64_t bytes = std::int64_t{elementSize} * count;
  return bytes > 0 && static_cast<std::uint64_t>(bytes) <= PTRDIFF_MAX ? static_cast<std::size_t>(bytes) : 0;
}

void copyElements(void* dst, const void* src, std::int32_t elementSize, std::int32_t count) {
  if (dst == src || dst == nullptr || src == nullptr) return;
  std::memmove(dst, src, byteCount(elementSize, count));
}

void reverseElements(void* dst, const void* src, std::int32_t elementSize, std::int32_t count) {
  if (dst == nullptr || src == nullptr) return;
  const auto size = static_cast<std::size_t>(elementSize);
  const auto* from = static_cast<const unsigned char*>(src);
  auto* to = static_cast<unsigned char*>(dst);
  for (std::int32_t i = 0; i < count; ++i, from += size, to += size) {
    unsigned char element[kLargestSwappedElement];
    std::reverse_copy(from, from + size, element);
    std::memcpy(to, element, size);
  }
}

bool canBeReversed(std::int32_t elementSize) {
  return elementSize > 1 && elementSize <= kLargestSwappedElement;
}

}  // namespace
}  // namespace speech::audio

using namespace speech::audio;

void set_endian_info() { hostBigEndianFlag = 0; }

std::int32_t swapdata(void* dst, const void* src, std::int32_t elementSize, std::int32_t count) {
  if (hostIsBigEndian() && canBeReversed(elementSize)) {
    reverseElements(dst, src, elementSize, count);
  } else {
    copyElements(dst, src, elementSize, count);
  }
  return 1;
}

std::int32_t swapdata_forced(void* dst, const void* src, std::int32_t elementSize, std::int32_t count) {
  hostIsBigEndian();  // only to settle it
  if (canBeReversed(elementSize)) {
    reverseElements(dst, src, elementSize, count);
  } else {
    copyElements(dst, src, elementSize, count);
  }
  return 1;
}

std::int32_t FREAD(void* buffer, std::int32_t elementSize, std::int32_t count, std::FILE* file) {
  const std::size_t bytes = byteCount(elementSize, count);
  if (buffer == nullptr || file == nullptr || elementSize < 1 || elementSize > kLargestSwappedElement ||
      bytes == 0) {
    return 0;
  }
  // Kept: bytes are read as one block, so the result is 1 and not their number.
  if (elementSize == 1) return static_cast<std::int32_t>(std::fread(buffer, bytes, 1, file));
  const std::size_t bytesRead = std::fread(buffer, 1, bytes, file);
  if (bytesRead == 0) return 0;
  swapdata(buffer, buffer, elementSize, count);
  return static_cast<std::int32_t>(bytesRead);
}

std::int32_t FWRITE(const void* buffer, std::int32_t elementSize, std::int32_t count, std::FILE* file) {
  if (buffer == nullptr || file == nullptr || byteCount(elementSize, count) == 0 || elementSize < 1) return 0;
  const auto size = static_cast<std::size_t>(elementSize);
  if (size == 1)
    return static_cast<std::int32_t>(std::fwrite(buffer, 1, static_cast<std::size_t>(count), file));

  const std::unique_ptr<unsigned char[]> element(new (std::nothrow) unsigned char[size]);
  if (!element) return 0;
  const auto* from = static_cast<const unsigned char*>(buffer);
  std::size_t written = 0;
  for (std::int32_t i = 0; i < count; ++i, from += size) {
    std::reverse_copy(from, from + size, element.get());
    written = std::fwrite(element.get(), 1, size, file);
  }
  return static_cast<std::int32_t>(written);
}

std::int32_t get_filesize(std::FILE* file, std::uint32_t* sizeOut) {
  const std::int64_t size = file == nullptr ? 0 : measureFile(file);
  if (sizeOut != nullptr) *sizeOut = static_cast<std::uint32_t>(size);
  return 1;
}

void* ExternMalloc(std::size_t size) { return std::malloc(size); }

void* ExternRealloc(void* pointer, std::size_t size) { return std::realloc(pointer, size); }

void ExternFree(void* pointer) { std::free(pointer); }
