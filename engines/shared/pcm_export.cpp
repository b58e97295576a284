#include "engines/shared/pcm_export.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <string>

#include <speech/formats.h>

#include <speech/audio.h>
#include "base/file.h"
#include "engines/shared/engine_utilities.h"
#include "engines/shared/export_log.h"
#include "engines/shared/process_runner.h"
#include "engines/shared/sox.h"

namespace speech {
namespace {

enum class Route { kCopy, kWav, kSox };

struct PcmExportFormat {
  int number;
  const wchar_t* extension;
  Route route;
};

constexpr std::array<PcmExportFormat, 5> kFormats = {{
    {kFormatPcm, L".pcm", Route::kCopy},
    {kFormatWav, L".wav", Route::kWav},
    {kFormatOgg, L".ogg", Route::kSox},
    {kFormatGsm, L".gsm", Route::kSox},
    {kFormatMp3, L".mp3", Route::kSox},
}};

/// False when a file cannot be opened.
bool writeWav(const CStringW& source, const CStringW& destination, int dataSize, int rateHz,
              const PcmExportRules& rules) {
  // Header and samples go by one name: a character that the code page lacks must not part them.
  const std::string name = toNarrow(destination.GetString(), rules.codePage);
  WAVHEADER_MAKER(name.c_str(), dataSize, rateHz, 16, 1);
  const File from = openFile(source, L"rb");
  const File to = openFile(name.c_str(), "ab+");
  if (!from || !to) return false;
  std::fseek(from.get(), 0, SEEK_SET);
  // Kept: without effect, since an appending stream writes at its end.
  std::fseek(to.get(), kWavHeaderSize + 1, SEEK_SET);
  appendSamples(from.get(), to.get(), dataSize, rules.lastFullBlock);
  return true;
}

}  // namespace

int exportPcm(const PcmExportRules& rules, const CStringW& source, CStringW& destination, int format,
              int dataSize, int rateIndex) {
  const bool sourceIsOurs = rules.source == PcmExportRules::Source::kDeleted;
  const auto row = std::ranges::find(kFormats, format, &PcmExportFormat::number);
  CStringW logLine;
  if (row != kFormats.end()) {
    const int rateHz = sampleRateAt(rateIndex);
    const CStringW exported = destination + row->extension;
    // The host learns the final path of what is written without SoX.
    if (row->route != Route::kSox) destination = exported;
    switch (row->route) {
      case Route::kCopy:
        CopyFileW(source, exported, FALSE);
        break;
      case Route::kWav:
        if (!writeWav(source, exported, dataSize, rateHz, rules)) return -1;
        break;
      case Route::kSox:
        runProgram(sox::programPath(rules.soxFolder), sox::convertRaw(source, rateHz, exported));
        break;
    }
    logLine = exportLogLine(rules.speaker, exported);
  }
  if (sourceIsOurs) DeleteFileW(source);
  if (sourceIsOurs || !logLine.IsEmpty()) writeExportLog(logLine, rules.codePage);
  return 0;
}

}  // namespace speech
