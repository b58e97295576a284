// Speech into files: textToFile and exportAudio.

#include <io.h>

#include <windows.h>

#include <cstdlib>
#include <string>
#include <string_view>

#include <speech/audio.h>
#include "engines/local/export_formats.h"
#include "engines/local/orvane_lxapi.h"
#include "engines/shared/export_log.h"
#include "engines/shared/guarded.h"
#include "engines/shared/pcm_export.h"
#include "engines/shared/process_runner.h"
#include "engines/shared/raw_pcm.h"
#include "engines/shared/sox.h"
#include "engines/shared/speak_flags.h"
#include "lxapi/lxapi.h"
#include "win32/paths.h"
#include "win32/text.h"

namespace speech {
namespace {

constexpr int kDone = 1;
constexpr int kFailed = 0;
constexpr int kNotConvertible = -1;
constexpr int kGsmRateHz = 8000;

/// Kept: one of 99 names, picked at random; two exports at once may pick the same.
std::wstring makeExportTempPath() {
  CStringW path;
  path.Format(L"%sULXE%d.wav", temporaryFolder().c_str(), std::rand() % 99);
  return path.GetString();
}

/// The name of a file that several steps of an export open. Some take it narrow, some wide: a character that
/// the code page lacks is replaced in both, so that all of them mean the same file.
struct FileName {
  explicit FileName(std::wstring_view path)
      : narrow(toSystemCodePage(path)), wide(fromSystemCodePage(narrow)) {}

  std::string narrow;
  std::wstring wide;
};

/// The temporary WAV file of one export, deleted when its scope ends.
class TemporaryWav {
 public:
  TemporaryWav() : name_(makeExportTempPath()) {}
  TemporaryWav(const TemporaryWav&) = delete;
  TemporaryWav& operator=(const TemporaryWav&) = delete;
  ~TemporaryWav() { DeleteFileW(path()); }

  const wchar_t* path() const { return name_.wide.c_str(); }
  const char* narrowPath() const { return name_.narrow.c_str(); }
  bool isThere() const { return _waccess_s(path(), 0) == 0; }

 private:
  FileName name_;
};

bool goesThroughSox(ExportRoute route) {
  return route == ExportRoute::kSoxAtTargetRate || route == ExportRoute::kSoxAt8000 ||
         route == ExportRoute::kSoxMp3;
}

/// SoX's command line for a route that goes through it.
CStringW soxLine(ExportRoute route, const TemporaryWav& wav, int targetRateHz, const wchar_t* destination) {
  if (route == ExportRoute::kSoxMp3) return sox::convertToMp3(wav.path(), destination);
  return sox::convertAtRate(wav.path(), route == ExportRoute::kSoxAt8000 ? kGsmRateHz : targetRateHz,
                            destination);
}

}  // namespace

int OrvaneLXAPI::textToFile(const wchar_t* text, const wchar_t* path, int format, bool flag, int rateIndex,
                            bool logExport) {
  return guarded(kFailed, [&] {
    const std::string utf8 = toUtf8(textOrEmpty(text));
    const std::wstring destination(textOrEmpty(path));
    const FileName destinationName(destination);
    const int targetRateHz = getSampleRate(rateIndex);
    if (targetRateHz == -1) return kFailed;
    const auto row = exportFormat(format);
    if (!row) return kDone;
    const ExportRoute route =
        product->getSampleRateHz() == targetRateHz ? row->atEngineRate : row->atOtherRate;
    if (route == ExportRoute::kRefuse) return kNotConvertible;
    const CStringW soxProgram = sox::programPath(toolFolder);
    if (goesThroughSox(route) && !sox::isAccessible(soxProgram)) return kFailed;

    const auto synthesizeInto = [&](const char* file, int32_t fileCode) {
      LXAPI_SetOutputFile(ttsHandle, file, fileCode);
      const int32_t length = flag ? static_cast<int32_t>(utf8.size()) : -1;
      return LXAPI_TextToFile(ttsHandle, utf8.c_str(), length, speakFlags(flag)) == LX_OK;
    };
    bool synthesized = false;
    if (route == ExportRoute::kDirect) {
      synthesized = synthesizeInto(destinationName.narrow.c_str(), row->engineFileCode);
    } else {
      const TemporaryWav wav;
      synthesized = synthesizeInto(wav.narrowPath(), LX_FILE_WAV);
      if (goesThroughSox(route)) {
        runProgram(soxProgram, soxLine(route, wav, targetRateHz, destination.c_str()));
      } else {
        RATEAPI_WAV2WAV(wav.narrowPath(), targetRateHz, 16, 1, destinationName.narrow.c_str());
        if (!wav.isThere()) return kFailed;
        const wchar_t* const converted = destinationName.wide.c_str();
        if (route == ExportRoute::kConvertAndStrip && !stripWavHeader(converted, converted)) return kFailed;
      }
    }
    // Kept: hosts learn of a failed synthesis from the missing log line only.
    if (synthesized && logExport)
      writeExportLog(exportLogLine(product->getEngineKey1(), destination.c_str()), CodePage::kSystem);
    return kDone;
  });
}

int OrvaneLXAPI::exportAudio(const wchar_t* source, CStringW& destination, int format, int dataSize,
                             int rateIndex) {
  return guarded(-1, [&] {
    const PcmExportRules rules{toolFolder, product->getEngineKey1(), CodePage::kSystem,
                               PcmExportRules::Source::kDeleted, LastFullBlock::kDropped};
    return exportPcm(rules, CStringW(source), destination, format, dataSize, rateIndex);
  });
}

}  // namespace speech
