#include "engines/shared/export_log.h"

#include <string>

#include "engines/shared/diagnostic_log.h"
#include "win32/paths.h"

namespace speech {

CStringW exportLogLine(const CStringW& speaker, const CStringW& path) {
  CStringW line;
  line.Format(L"Speaker : %s,  Export File Path : %s  ", speaker.GetString(), path.GetString());
  return line;
}

void writeExportLog(const CStringW& line, CodePage codePage) {
  const auto documents = documentsFolder();
  // Kept: without a documents folder the line still goes to a log, at the root of the current drive.
  const std::wstring folder = documents ? *documents + L"\\Narravo" : std::wstring();
  writeLog(toNarrow(folder, codePage).c_str(), "%s", toNarrow(line.GetString(), codePage).c_str());
}

}  // namespace speech
