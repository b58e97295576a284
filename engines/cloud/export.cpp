// Speech into files, and what goes with it.

#include <speech/formats.h>

#include "engines/cloud/skyvo.h"
#include "engines/shared/engine_utilities.h"
#include "engines/shared/export_log.h"
#include "engines/shared/guarded.h"
#include "engines/shared/pcm_export.h"
#include "engines/shared/process_runner.h"
#include "engines/shared/raw_pcm.h"
#include "engines/shared/sox.h"
#include "win32/paths.h"

namespace speech {
namespace {

constexpr int kDone = 1;
constexpr int kFailed = 0;
constexpr int kNotConvertible = -1;

/// What convertWavFile answers when it has converted.
constexpr int kConverted = 1;

constexpr int kGsmRateHz = 8000;

/// Kept: sound at 8000 Hz is not converted to other rates.
bool isConvertible(int productRateHz, int targetRateHz) {
  return productRateHz == targetRateHz || productRateHz != 8000;
}

}  // namespace

// Kept: here and below the temporary files stay.
int Skyvo::writePcm(const wchar_t* text, bool isSsml, const wchar_t* outputPath, int targetRateHz) {
  const int productRateHz = product_->getSampleRateHz();
  if (!isConvertible(productRateHz, targetRateHz)) return kNotConvertible;
  const CStringW fetched = newTemporaryPath(L".wav").c_str();
  if (!fetch(text, isSsml, fetched)) return kFailed;
  if (productRateHz == targetRateHz) return stripWavHeader(fetched, outputPath) ? kDone : kFailed;
  const CStringW converted = newTemporaryPath(L".wav").c_str();
  if (convertWavFile(fetched, targetRateHz, 16, 1, converted) != kConverted) return kFailed;
  return stripWavHeader(converted, outputPath) ? kDone : kFailed;
}

int Skyvo::writeWav(const wchar_t* text, bool isSsml, const wchar_t* outputPath, int targetRateHz) {
  const int productRateHz = product_->getSampleRateHz();
  if (!isConvertible(productRateHz, targetRateHz)) return kNotConvertible;
  if (productRateHz == targetRateHz) return fetch(text, isSsml, outputPath) ? kDone : kFailed;
  const CStringW fetched = newTemporaryPath(L".wav").c_str();
  if (!fetch(text, isSsml, fetched)) return kFailed;
  return convertWavFile(fetched, targetRateHz, 16, 1, outputPath) == kConverted ? kDone : kFailed;
}

template <class MakeLine>
int Skyvo::writeThroughSox(const wchar_t* text, bool isSsml, MakeLine makeLine) {
  const CStringW program = sox::programPath(toolFolder_);
  if (!sox::isAccessible(program)) return kFailed;
  const CStringW fetched = newTemporaryPath(L".wav").c_str();
  if (!fetch(text, isSsml, fetched)) return kFailed;
  runProgram(program, makeLine(fetched));
  return kDone;
}

int Skyvo::textToFile(const wchar_t* text, const wchar_t* outputPath, int format, bool isSsml, int rateIndex,
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
        result = writePcm(text, isSsml, output, targetRateHz);
        break;
      case kFormatWav:
      case kFormatWavAlias:
        result = writeWav(text, isSsml, output, targetRateHz);
        break;
      case kFormatOgg:
        result = writeThroughSox(text, isSsml, lineAtRate(targetRateHz));
        break;
      case kFormatGsm:
        result = writeThroughSox(text, isSsml, lineAtRate(kGsmRateHz));
        break;
      case kFormatMp3:
        result = writeThroughSox(text, isSsml,
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
    const PcmExportRules rules{moduleFolder(nullptr).c_str(), product_->getEngineKey1(), CodePage::kThread,
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
