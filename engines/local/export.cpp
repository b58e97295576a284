// Speech into files: textToFile and exportAudio.

#include <io.h>

#include <windows.h>

#include <cstdlib>
#include <string>
#include <utility>

#include "engines/local/export_formats.h"
#include "engines/local/orvane_lxapi.h"
#include "engines/shared/engine_utilities.h"
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

/// The temporary WAV file of one export, deleted when the export ends.
class TemporaryWav {
 public:
  explicit TemporaryWav(std::wstring path) : path_(std::move(path)), narrowPath_(toThreadCodePage(path_)) {}
  TemporaryWav(const TemporaryWav&) = delete;
  TemporaryWav& operator=(const TemporaryWav&) = delete;
  ~TemporaryWav() { DeleteFileW(path_.c_str()); }

  const wchar_t* path() const { return path_.c_str(); }
  const char* narrowPath() const { return narrowPath_.c_str(); }
  bool isThere() const { return _waccess_s(path_.c_str(), 0) == 0; }

 private:
  std::wstring path_;
  std::string narrowPath_;
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
    const std::string narrowDestination = toThreadCodePage(destination);
    const int targetRateHz = getSampleRate(rateIndex);
    if (targetRateHz == -1) return kFailed;
    const auto row = exportFormat(format);
    if (!row) return kDone;
    const ExportRoute route =
        product->getSampleRateHz() == targetRateHz ? row->atEngineRate : row->atOtherRate;
    if (route == ExportRoute::kRefuse) return kNotConvertible;
    const CStringW soxProgram = sox::programPath(toolFolder);
    if (goesThroughSox(route) && !sox::isAccessible(soxProgram)) return kFailed;

    const TemporaryWav wav(makeExportTempPath());
    const auto synthesizeInto = [&](const char* file, int32_t fileCode) {
      LXAPI_SetOutputFile(ttsHandle, file, fileCode);
      const int32_t length = flag ? static_cast<int32_t>(utf8.size()) : -1;
      return LXAPI_TextToFile(ttsHandle, utf8.c_str(), length, speakFlags(flag)) == LX_OK;
    };
    bool synthesized = false;
    if (route == ExportRoute::kDirect) {
      synthesized = synthesizeInto(narrowDestination.c_str(), row->engineFileCode);
    } else if (goesThroughSox(route)) {
      synthesized = synthesizeInto(wav.narrowPath(), LX_FILE_WAV);
      runProgram(soxProgram, soxLine(route, wav, targetRateHz, destination.c_str()));
    } else {
      synthesized = synthesizeInto(wav.narrowPath(), LX_FILE_WAV);
      convertWavFile(wav.path(), targetRateHz, 16, 1, destination.c_str());
      if (!wav.isThere()) return kFailed;
      if (route == ExportRoute::kConvertAndStrip &&
          !stripWavHeader(destination.c_str(), destination.c_str())) {
        return kFailed;
      }
    }
    // Kept: hosts learn of a failed synthesis from the missing log line only.
    if (synthesized && logExport)
      writeExportLog(exportLogLine(product->getEngineKey1(), destination.c_str()));
    return kDone;
  });
}

int OrvaneLXAPI::exportAudio(const wchar_t* source, CStringW& destination, int format, int dataSize,
                             int rateIndex) {
  return guarded(-1, [&] {
    const PcmExportRules rules{toolFolder, product->getEngineKey1(), PcmExportRules::Source::kDeleted,
                               LastFullBlock::kDropped};
    return exportPcm(rules, CStringW(source), destination, format, dataSize, rateIndex);
  });
}

}  // namespace speech
