// Speech into files.

#include "engines/cloud/skyvo.h"
#include "engines/guarded.h"
#include "win32/paths.h"

namespace speech {
namespace {

using enum Action;
using enum Place;

constexpr Step kWritten[] = {{kSynthesize, kDestination}, {kLog}};
constexpr Step kStripped[] = {{kSynthesize, kTemporaryWav}, {kStripHeader, kDestination}, {kLog}};
constexpr Step kConverted[] = {{kSynthesize, kTemporaryWav}, {kConvert, kDestination}, {kLog}};
constexpr Step kConvertedAndStripped[] = {
    {kSynthesize, kTemporaryWav}, {kConvert, kTemporaryWav}, {kStripHeader, kDestination}, {kLog}};
constexpr Step kThroughSox[] = {{kFindSox}, {kSynthesize, kTemporaryWav}, {kCompress, kDestination}, {kLog}};
constexpr Step kRefused[] = {{kRefuse}};
// Kept: a format that the service does not have counts as done, and is logged.
constexpr Step kOnlyLogged[] = {{kLog}};

constexpr RouteTable kRoutes = {.toKind = {{kStripped, kConvertedAndStripped},  // raw samples
                                           {kWritten, kConverted},              // WAV
                                           {kThroughSox, kThroughSox},          // compressed
                                           {kOnlyLogged, kOnlyLogged}},         // of the engine
                                .toNoFormat = kOnlyLogged};

/// Kept: sound at 8000 Hz is not converted to other rates.
constexpr int kInconvertibleRateHz = 8000;
constexpr RouteTable kRoutesAt8000Hz = {.toKind = {{kStripped, kRefused},
                                                   {kWritten, kRefused},
                                                   {kThroughSox, kThroughSox},
                                                   {kOnlyLogged, kOnlyLogged}},
                                        .toNoFormat = kOnlyLogged};

constexpr Action kPassedOverForTexts[] = {kCompress};
constexpr Action kPassedOverForSamples[] = {kCopy, kCompressRaw};

}  // namespace

// Kept: temporary files stay. SoX is looked for in the tool folder for a text, beside the program for
// samples.
const EngineCustoms Skyvo::kCustoms = {
    .textRules = {.codePage = CodePage::kThread,
                  .passesOver = kPassedOverForTexts,
                  .temporaryPath = newTemporaryPath},
    .sampleRules = {.codePage = CodePage::kThread, .passesOver = kPassedOverForSamples},
    .samplesToNoFormat = {},
    .samplesUseToolFolder = false,
    .bytesBehindSamples = 0};

int Skyvo::textToFile(const wchar_t* text, const wchar_t* path, int format, bool isSsml, int rateIndex,
                      bool logExport) {
  return guarded(0, [&] {
    const auto synthesize = [&](const std::wstring& file, const ExportFormat&) {
      return fetch(text, isSsml, file.c_str());
    };
    const bool isConvertible = product_->getSampleRateHz() != kInconvertibleRateHz;
    return exportText(isConvertible ? kRoutes : kRoutesAt8000Hz, path, format, rateIndex, logExport,
                      synthesize);
  });
}

}  // namespace speech
