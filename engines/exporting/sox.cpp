#include "engines/exporting/sox.h"

#include "framework/framework.h"
#include "win32/paths.h"
#include "win32/run_program.h"

namespace speech::sox {
namespace {

constexpr int kGsmRateHz = 8000;

}  // namespace

std::wstring programIn(const std::wstring& folder) { return folder + L"sox.exe"; }

bool isIn(const std::wstring& folder) { return pathExists(programIn(folder).c_str()); }

bool compress(const std::wstring& folder, const std::wstring& wavPath, const ExportFormat& format, int rateHz,
              const std::wstring& output) {
  CStringW line;
  if (format.number == kFormatMp3) {
    // Kilobits in a second, or the most that the input's rate allows.
    line.Format(L"\"%s\" -C 320 \"%s\"", wavPath.c_str(), output.c_str());
  } else {
    line.Format(L"\"%s\" -r %d \"%s\"", wavPath.c_str(), format.number == kFormatGsm ? kGsmRateHz : rateHz,
                output.c_str());
  }
  return runProgram(programIn(folder).c_str(), line);
}

bool compressRaw(const std::wstring& folder, const std::wstring& rawPath, int rateHz,
                 const std::wstring& output) {
  CStringW line;
  // Kept: the source path stands without quotes, so one with a blank in it is two arguments to SoX.
  line.Format(L"-t raw -r %d -e signed -b 16 -c 1 %s \"%s\"", rateHz, rawPath.c_str(), output.c_str());
  return runProgram(programIn(folder).c_str(), line);
}

}  // namespace speech::sox
