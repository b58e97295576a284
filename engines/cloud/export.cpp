// Speech into files, and what goes with it.

#include <io.h>

#include <windows.h>

#include <string>

#include <speech/formats.h>

#include "engines/cloud/skyvo.h"
#include "engines/cloud/temporary_names.h"
#include "engines/shared/engine_utilities.h"
#include "engines/shared/export_log.h"
#include "engines/shared/guarded.h"
#include "engines/shared/pcm_export.h"
#include "engines/shared/process_runner.h"
#include "engines/shared/raw_pcm.h"
#include "engines/shared/sox.h"

namespace speech {
namespace {

constexpr int kDone = 1;
constexpr int kFailed = 0;
constexpr int kNotConvertible = -1;

/// What convertWavFile answers when it has converted.
constexpr int kConverted = 1;

constexpr int kGsmRateHz = 8000;

bool isThere(const wchar_t* path) { return _waccess_s(path, 0) == 0; }

/// Kept: sound at 8000 Hz is not converted to other rates.
bool isConvertible(int productRateHz, int targetRateHz) {
  return productRateHz == targetRateHz || productRateHz != 8000;
}

/// The folder of the running program, with its trailing backslash.
CStringW programFolder() {
  std::wstring path(32'768, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
  return path.substr(0, path.rfind(L'\\') + 1).c_str();
}

}  // namespace

bool Skyvo::fetch(const wchar_t* text, bool useSsml, const wchar_t* outputPath) {
  return requestSpeech(text, useSsml, outputPath) && isThere(outputPath);
}

// Kept: here and below the temporary files stay.
int Skyvo::writePcm(const wchar_t* text, bool useSsml, const wchar_t* outputPath, int targetRateHz) {
  const int productRateHz = product_->getSampleRateHz();
  if (!isConvertible(productRateHz, targetRateHz)) return kNotConvertible;
  const CStringW fetched = makeTempPath(L".wav");
  if (!fetch(text, useSsml, fetched)) return kFailed;
  if (productRateHz == targetRateHz) return stripWavHeader(fetched, outputPath) ? kDone : kFailed;
  const CStringW converted = makeTempPath(L".wav");
  if (convertWavFile(fetched, targetRateHz, 16, 1, converted) != kConverted) return kFailed;
  return stripWavHeader(converted, outputPath) ? kDone : kFailed;
}

int Skyvo::writeWav(const wchar_t* text, bool useSsml, const wchar_t* outputPath, int targetRateHz) {
  const int productRateHz = product_->getSampleRateHz();
  if (!isConvertible(productRateHz, targetRateHz)) return kNotConvertible;
  if (productRateHz == targetRateHz) return fetch(text, useSsml, outputPath) ? kDone : kFailed;
  const CStringW fetched = makeTempPath(L".wav");
  if (!fetch(text, useSsml, fetched)) return kFailed;
  return convertWavFile(fetched, targetRateHz, 16, 1, outputPath) == kConverted ? kDone : kFailed;
}

template <class MakeLine>
int Skyvo::writeThroughSox(const wchar_t* text, bool useSsml, MakeLine makeLine) {
  const CStringW program = sox::programPath(toolFolder_);
  if (!sox::isAccessible(program)) return kFailed;
  const CStringW fetched = makeTempPath(L".wav");
  if (!fetch(text, useSsml, fetched)) return kFailed;
  runProgram(program, makeLine(fetched));
  return kDone;
}

int Skyvo::textToFile(const wchar_t* text, const wchar_t* outputPath, int format, bool useSsml, int rateIndex,
                      bool logExport) {
  return guarded(kFailed, [&] {
    const int targetRateHz = getSampleRate(rateIndex);
    if (targetRateHz == -1) return kFailed;
    const CStringW output(outputPath);
    const auto lineAtRate = [&](int rateHz) {
      return [&output, rateHz](const CStringW& wav) { return sox::convertAtRate(wav, rateHz, output); };
    };
    int result = kDone;
    switch (format) {
      case kFormatPcm:
      case kFormatPcmAlias:
        result = writePcm(text, useSsml, output, targetRateHz);
        break;
      case kFormatWav:
      case kFormatWavAlias:
        result = writeWav(text, useSsml, output, targetRateHz);
        break;
      case kFormatOgg:
        result = writeThroughSox(text, useSsml, lineAtRate(targetRateHz));
        break;
      case kFormatGsm:
        result = writeThroughSox(text, useSsml, lineAtRate(kGsmRateHz));
        break;
      case kFormatMp3:
        result = writeThroughSox(text, useSsml,
                                 [&](const CStringW& wav) { return sox::convertToMp3(wav, output); });
        break;
      default:  // Kept: a format that the service does not have counts as done, and is logged.
        break;
    }
    if (result == kDone && logExport) writeExportLog(exportLogLine(product_->getEngineKey1(), output));
    return result;
  });
}

int Skyvo::exportAudio(const wchar_t* pcmPath, CStringW& outputBase, int format, int dataSize,
                       int rateIndex) {
  return guarded(-1, [&] {
    // Kept: SoX is looked for beside the program here, in the tool folder by textToFile.
    const PcmExportRules rules{programFolder(), product_->getEngineKey1(), CodePage::kThread,
                               PcmExportRules::Source::kKept, LastFullBlock::kWritten};
    return exportPcm(rules, CStringW(pcmPath), outputBase, format, dataSize, rateIndex);
  });
}

void Skyvo::setToolFolder(const wchar_t* folder) {
  guarded([&] { toolFolder_ = folder; });
}

bool Skyvo::runUserDictEditor(const wchar_t* dictionary, const wchar_t* extra) {
  return guarded(false, [&] { return runDictionaryEditor(*product_, dictionary, extra); });
}

int Skyvo::makeWavHeader(const wchar_t* path, int dataSize, int sampleRateHz, int bitsPerSample,
                         int channels) {
  return guarded(-1,
                 [&] { return writeWavHeaderFile(path, dataSize, sampleRateHz, bitsPerSample, channels); });
}

int Skyvo::getSampleRate(int index) { return sampleRateAt(index); }

CStringW Skyvo::escapeXml(const CStringW& text) {
  return guarded(CStringW(), [&] { return escapedXml(text); });
}

int Skyvo::convertWavRate(const wchar_t* input, int rateHz, int bits, int channels, const wchar_t* output) {
  return guarded(-1, [&] { return convertWavFile(input, rateHz, bits, channels, output); });
}

}  // namespace speech
