#pragma once

// Standard streams. A console gets UTF-16, anything else (a file, a pipe) UTF-8, whatever the code page is.

#include <string>
#include <string_view>

namespace narravo {

/// Writes at once, without buffering. Throws HostError when the output cannot be written.
void writeOutput(std::wstring_view text);
void writeOutput(std::string_view utf8);

/// "narravo: MESSAGE" on standard error. Never throws: there is nowhere left to report to.
void writeErrorLine(std::string_view utf8) noexcept;

/// Standard error without the program's name in front, for reports of progress. Never throws.
void writeErrorText(std::string_view utf8) noexcept;

/// Whether a user watches standard error as it is written.
bool errorIsConsole();

/// Everything up to the end of standard input, as UTF-8.
std::string readInput();

}  // namespace narravo
