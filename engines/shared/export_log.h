#pragma once

#include "framework/framework.h"
#include "win32/text.h"

namespace speech {

/// What the daily log says of an exported file.
CStringW exportLogLine(const CStringW& speaker, const CStringW& path);

/// Adds a line to the daily log below the user's documents folder. An export does not fail with its log.
/// @param codePage  of the line in the file, and of the folder's name
void writeExportLog(const CStringW& line, CodePage codePage = CodePage::kThread);

}  // namespace speech
