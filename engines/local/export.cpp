// Speech into files.

#include <cstdlib>
#include <string>

#include "engines/guarded.h"
#include "engines/local/orvane_lxapi.h"
#include "win32/paths.h"
#include "win32/text.h"

namespace speech {
namespace {

using enum Action;
using enum Place;

constexpr Step kWritten[] = {{kSynthesize, kDestination}, {kLog}};
constexpr Step kConverted[] = {{kSynthesize, kTemporaryWav}, {kConvert, kDestination}, {kLog}};
constexpr Step kConvertedAndStripped[] = {
    {kSynthesize, kTemporaryWav}, {kConvert, kDestination}, {kStripHeader, kDestination}, {kLog}};
constexpr Step kThroughSox[] = {{kFindSox}, {kSynthesize, kTemporaryWav}, {kCompress, kDestination}, {kLog}};
constexpr Step kRefused[] = {{kRefuse}};
constexpr Step kOnlyLogged[] = {{kLog}};

constexpr RouteTable kRoutes = {.toKind = {{kWritten, kConvertedAndStripped},  // raw samples
                                           {kWritten, kConverted},             // WAV
                                           {kThroughSox, kThroughSox},         // compressed
                                           {kWritten, kRefused}},              // of the engine
                                .toNoFormat = {}};

// Kept: hosts learn of a failed synthesis from the missing log line only, of a failed conversion or SoX not
// at all.
constexpr Action kPassedOverForTexts[] = {kSynthesize, kConvert, kCompress};
constexpr Action kPassedOverForSamples[] = {kCopy, kCompressRaw};

std::wstring temporaryPath(std::wstring_view extension) {
  // Kept: one of 99 names, picked at random; two exports at once may pick the same.
  const std::wstring path =
      temporaryFolder() + L"ULXE" + std::to_wstring(std::rand() % 99) + std::wstring(extension);
  return fromSystemCodePage(toSystemCodePage(path));
}

}  // namespace

const EngineCustoms OrvaneLXAPI::kCustoms = {.textRules = {.codePage = CodePage::kSystem,
                                                           .usesOneName = true,
                                                           .passesOver = kPassedOverForTexts,
                                                           .temporaryPath = temporaryPath,
                                                           .deletesTemporaries = true},
                                             .sampleRules = {.codePage = CodePage::kSystem,
                                                             .passesOver = kPassedOverForSamples,
                                                             .deletesSource = true,
                                                             .lastFullBlock = LastFullBlock::kDropped},
                                             .samplesToNoFormat = kOnlyLogged,
                                             .samplesUseToolFolder = true,
                                             // Kept: hosts rely on one zero byte behind the samples.
                                             .bytesBehindSamples = 1};

int OrvaneLXAPI::textToFile(const wchar_t* text, const wchar_t* path, int format, bool isSsml, int rateIndex,
                            bool logExport) {
  return guarded(0, [&] {
    const std::string utf8 = toUtf8(textOrEmpty(text));
    const auto synthesize = [&](const std::wstring& file, const ExportFormat& made) {
      LXAPI_SetOutputFile(ttsHandle_, toSystemCodePage(file).c_str(), made.engineFileCode);
      const auto length = isSsml ? static_cast<std::int32_t>(utf8.size()) : -1;
      return LXAPI_TextToFile(ttsHandle_, utf8.c_str(), length, speakFlags(isSsml)) == LX_OK;
    };
    return exportText(kRoutes, path, format, rateIndex, logExport, synthesize);
  });
}

}  // namespace speech
