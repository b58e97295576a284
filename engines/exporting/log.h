#pragma once

// The daily diagnostic log: one text file per day, a line per exported file.
//
//   writeExportLog(exportLogLine(L"Alex", L"C:\\a.wav"), CodePage::kSystem);
//
// adds "| 2026-11-15 23:46:23:041|Speaker : Alex,  Export File Path : C:\a.wav  " to
// Narravo\log\2026-11-15.log in the user's documents folder. The file is opened and closed for every line, so
// that a crash loses nothing.

#include <cstdint>
#include <string>

#include "win32/text.h"

namespace speech {

/// What the log says of an exported file.
std::wstring exportLogLine(const std::wstring& speaker, const std::wstring& path);

/// Adds a line to the log. An export does not fail with its log.
/// @param codePage  of the line in the file, and of the folder's name
void writeExportLog(const std::wstring& line, CodePage codePage);

/// Appends one line to today's log.
/// @param baseFolder  the folder that holds the folder "log", without a trailing separator; made when missing
/// @param format      printf format of the message; pass callers' text as an argument of "%s", never as
///   the format. A line that would exceed 1023 bytes is cut.
/// @return 1 when the line was written and the file closed, else 0: the disk is nearly full, another
///   writer has the file open, or it cannot be written
#if defined(__GNUC__)
__attribute__((format(printf, 2, 3)))
#endif
int writeLog(const char* baseFolder, const char* format, ...);

/// How writeLog asks for the bytes that the caller may still write to the disk that holds `folder`.
using FreeBytesQuestion = uint64_t (*)(const char* folder);

/// Replaces the question, so that tests can fill the disk; null restores the system's answer.
void setFreeBytesQuestion(FreeBytesQuestion question);

/// Makes every missing folder of a path, which may begin with a network server ("\\server\share\…").
/// @return true when every folder of the path exists at the end
bool makeDirectoryPath(const char* path);

}  // namespace speech
