#pragma once

#include <windows.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/file_content.h"
#include "tests/support/scoped_environment.h"
#include "win32/paths.h"

namespace speech::test {

/// What exports leave behind beside their files: calls of a SoX that only says how it was called, and lines
/// of today's log.
class ExportTraces {
 public:
  /// @param folder  where the calls are written down
  explicit ExportTraces(const std::filesystem::path& folder) : folder_(folder) {}

  /// SoX's command lines so far, without the program.
  std::vector<std::string> soxCalls() const {
    std::vector<std::string> calls;
    std::istringstream lines(readFile(folder_ / "calls"));
    for (std::string line; std::getline(lines, line);) calls.push_back(line.substr(line.find(".exe\" ") + 6));
    return calls;
  }

  /// Today's log from the place where it ended when the test began.
  std::string newLogText() const { return readFile(logPath()).substr(logSizeBefore_); }

 private:
  static std::filesystem::path logPath() {
    SYSTEMTIME now;
    GetLocalTime(&now);
    wchar_t name[32];
    swprintf(name, 32, L"%04d-%02d-%02d.log", now.wYear, now.wMonth, now.wDay);
    return std::filesystem::path(documentsFolder().value()) / L"Narravo" / L"log" / name;
  }

  std::filesystem::path folder_;
  ScopedEnvironment soxLog_{L"FAKE_SOX_LOG", (folder_ / "calls").wstring()};
  std::size_t logSizeBefore_ = readFile(logPath()).size();
};

}  // namespace speech::test
