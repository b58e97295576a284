#pragma once

#include "framework/framework.h"

namespace speech {

/// What the daily log says of an exported file.
CStringW exportLogLine(const CStringW& speaker, const CStringW& path);

/// Adds a line to the daily log below the user's documents folder. An export does not fail with its log.
void writeExportLog(const CStringW& line);

}  // namespace speech
