#include "engines/exporting/log.h"

#include <direct.h>
#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>

#include <windows.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <string>
#include <string_view>

#include "win32/paths.h"

namespace speech {
namespace {

// The log must never be what fills the last of a disk.
constexpr uint64_t kReservedBytes = 10'240'000;
constexpr std::size_t kLineBufferSize = 1024;

uint64_t freeBytesOnDisk(const char* folder) {
  ULARGE_INTEGER freeBytes{};
  return GetDiskFreeSpaceExA(folder, &freeBytes, nullptr, nullptr) ? freeBytes.QuadPart : 0;
}

FreeBytesQuestion freeBytes = freeBytesOnDisk;

bool exists(const std::string& path) { return _access(path.c_str(), 0) == 0; }

std::string timeStamp(const SYSTEMTIME& now) {
  char text[256];
  std::snprintf(text, sizeof text, "| %04d-%02d-%02d %02d:%02d:%02d:%03d", now.wYear, now.wMonth, now.wDay,
                now.wHour, now.wMinute, now.wSecond, now.wMilliseconds);
  return text;
}

std::string logFilePath(const std::string& folder, const SYSTEMTIME& now) {
  char name[64];
  std::snprintf(name, sizeof name, "/%04d-%02d-%02d.log", now.wYear, now.wMonth, now.wDay);
  return folder + name;
}

/// The file's descriptor, or -1. Other writers are denied until it is closed.
int openForAppending(const std::string& path) {
  // Binary, because a line ends in a single line feed.
  const int mode = _O_WRONLY | _O_BINARY | (exists(path) ? _O_APPEND : _O_CREAT | _O_TRUNC);
  int file = -1;
  return _sopen_s(&file, path.c_str(), mode, _SH_DENYWR, _S_IREAD | _S_IWRITE) == 0 ? file : -1;
}

std::string joinLine(std::string line, std::string_view message) {
  line += '|';
  // The line feed and a terminator fit into the same buffer.
  line += message.substr(0, kLineBufferSize - 2 - line.size());
  line += '\n';
  return line;
}

constexpr const char* kSeparators = "\\/";

/// Another process may make the same folder in between, so what counts is that it exists afterwards.
bool ensureFolder(const std::string& path) {
  return exists(path) || _mkdir(path.c_str()) == 0 || exists(path);
}

}  // namespace

std::wstring exportLogLine(const std::wstring& speaker, const std::wstring& path) {
  return L"Speaker : " + speaker + L",  Export File Path : " + path + L"  ";
}

void writeExportLog(const std::wstring& line, CodePage codePage) {
  const auto documents = documentsFolder();
  // Kept: without a documents folder the line still goes to a log, at the root of the current drive.
  const std::wstring folder = documents ? *documents + L"\\Narravo" : std::wstring();
  writeLog(toNarrow(folder, codePage).c_str(), "%s", toNarrow(line, codePage).c_str());
}

int writeLog(const char* baseFolder, const char* format, ...) {
  char message[kLineBufferSize] = {};
  std::va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(message, sizeof message, format, arguments);
  va_end(arguments);
  const std::string_view messageText = message;

  SYSTEMTIME now;
  GetLocalTime(&now);
  const std::string stamp = timeStamp(now);

  const std::string folder = std::string(baseFolder) + "/log";
  if (!exists(folder)) makeDirectoryPath(folder.c_str());
  if (freeBytes(folder.c_str()) <= kReservedBytes + stamp.size() + messageText.size()) return 0;

  const int file = openForAppending(logFilePath(folder, now));
  if (file < 0) return 0;
  const std::string line = joinLine(stamp, messageText);
  // Kept: a file that could not take the whole line stays open, which denies it to later writers.
  if (_write(file, line.data(), static_cast<unsigned>(line.size())) != static_cast<int>(line.size()))
    return 0;
  return _close(file) == 0 ? 1 : 0;
}

void setFreeBytesQuestion(FreeBytesQuestion question) {
  freeBytes = question != nullptr ? question : freeBytesOnDisk;
}

bool makeDirectoryPath(const char* path) {
  std::string_view rest = path;
  if (rest.empty()) return false;

  std::string made;
  if (rest.starts_with("\\\\")) {
    // A server is not a folder that could be made.
    const std::size_t serverEnd = rest.find('\\', 2);
    if (serverEnd == std::string_view::npos) return false;
    made = rest.substr(0, serverEnd);
    rest.remove_prefix(serverEnd + 1);
  } else if (rest.find_first_of(kSeparators) == std::string_view::npos) {
    made = ".";
  }

  // A path from the root has an empty element in front, and so begins with the joining slash.
  bool join = !made.empty() || rest.find_first_of(kSeparators) == 0;
  while (!rest.empty()) {
    const std::string_view element = rest.substr(0, rest.find_first_of(kSeparators));
    rest.remove_prefix(element.size() < rest.size() ? element.size() + 1 : element.size());
    if (element.empty()) continue;
    if (join) made += '/';
    join = true;
    made += element;
    if (!ensureFolder(made)) return false;
  }
  return true;
}

}  // namespace speech
