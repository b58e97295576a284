#include "speech/c_interface/temporary_output.h"

#include <windows.h>

#include <array>

#include "speech/c_interface/failure.h"
#include "win32/move_file.h"
#include "win32/system_message.h"
#include "win32/text.h"

namespace speech::c_interface {
namespace {

bool isNarrow(const std::wstring& path) { return fromThreadCodePage(toThreadCodePage(path)) == path; }

std::wstring temporaryFolder() {
  std::array<wchar_t, MAX_PATH + 1> folder{};
  if (GetTempPathW(static_cast<DWORD>(folder.size()), folder.data()) == 0) {
    throw Failure(SPEECH_ERROR_FILE, "There is no folder for temporary files.");
  }
  return narrowPath(folder.data());
}

/// Makes an empty file with a name of its own; empty when that fails.
std::wstring newFileIn(const std::wstring& folder) {
  std::array<wchar_t, MAX_PATH> name{};
  return GetTempFileNameW(folder.c_str(), L"spc", 0, name.data()) != 0 ? name.data() : std::wstring();
}

std::wstring folderOf(const std::wstring& path) {
  const std::size_t end = path.find_last_of(L"\\/:");
  return end == std::wstring::npos ? L"." : path.substr(0, end + 1);
}

}  // namespace

std::wstring narrowPath(const std::wstring& path) {
  if (isNarrow(path)) return path;
  std::wstring shortened(path.size() + MAX_PATH, L'\0');
  shortened.resize(GetShortPathNameW(path.c_str(), shortened.data(), static_cast<DWORD>(shortened.size())));
  if (shortened.empty() || !isNarrow(shortened)) {
    throw Failure(SPEECH_ERROR_FILE, "The engine cannot open paths with these characters: " + toUtf8(path));
  }
  return shortened;
}

TemporaryOutput::TemporaryOutput(const wchar_t* extension)
    : reserved_(newFileIn(temporaryFolder())), path_(reserved_ + extension) {
  if (reserved_.empty()) throw Failure(SPEECH_ERROR_FILE, "No temporary file could be made.");
}

TemporaryOutput::~TemporaryOutput() {
  DeleteFileW(path_.c_str());
  DeleteFileW(reserved_.c_str());
}

bool TemporaryOutput::hasContent() const {
  WIN32_FILE_ATTRIBUTE_DATA data = {};
  return GetFileAttributesExW(path_.c_str(), GetFileExInfoStandard, &data) &&
         (data.nFileSizeHigh != 0 || data.nFileSizeLow != 0);
}

void TemporaryOutput::moveTo(const std::wstring& destination) {
  // By way of a neighbour: from another disk the move is a copy, which can fail halfway.
  const std::wstring neighbour = newFileIn(folderOf(destination));
  if (!neighbour.empty() && moveFile(path_, neighbour) && moveFile(neighbour, destination)) return;
  const DWORD error = GetLastError();
  if (!neighbour.empty()) DeleteFileW(neighbour.c_str());
  throw Failure(SPEECH_ERROR_FILE, "This file cannot be written: " + toUtf8(destination) + " (" +
                                       toUtf8(systemMessage(error)) + ")");
}

}  // namespace speech::c_interface
