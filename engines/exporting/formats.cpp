#include "engines/exporting/formats.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "lxapi/lxapi.h"

namespace speech {
namespace {

using enum FileKind;

constexpr const wchar_t* extensionOf(FileFormat format) {
  return std::ranges::find(kFileTypes, format, &FileType::format)->extension;
}

constexpr std::array<ExportFormat, 12> kFormats = {{
    {kFormatPcm, kRaw, extensionOf(kFormatPcm), LX_FILE_PCM},
    {kFormatWav, kWav, extensionOf(kFormatWav), LX_FILE_WAV},
    {kFormatOgg, kCompressed, extensionOf(kFormatOgg), LX_FILE_WAV},
    {kFormatGsm, kCompressed, extensionOf(kFormatGsm), LX_FILE_WAV},
    {kFormatMp3, kCompressed, extensionOf(kFormatMp3), LX_FILE_WAV},
    {kFormatALaw, kOfTheEngine, L".wav", LX_FILE_ALAW},
    {kFormatMuLaw, kOfTheEngine, L".wav", LX_FILE_MULAW},
    {8, kOfTheEngine, L".bin", LX_FILE_CODE_8},
    {9, kOfTheEngine, L".bin", LX_FILE_CODE_3},
    {11, kOfTheEngine, L".bin", LX_FILE_CODE_3},
    {12, kOfTheEngine, L".bin", LX_FILE_CODE_3},
    {13, kOfTheEngine, L".bin", LX_FILE_CODE_3},
}};

static_assert(kFormats[1].kind == kWav);

}  // namespace

const ExportFormat& kWavFiles = kFormats[1];

int sampleRateAt(int index) {
  if (index < 0 || index >= static_cast<int>(std::size(kSampleRatesHz))) return -1;
  return kSampleRatesHz[index];
}

int sampleRateIndexOf(int sampleRateHz) {
  const auto* const found = std::ranges::find(kSampleRatesHz, sampleRateHz);
  return found == std::end(kSampleRatesHz) ? -1 : static_cast<int>(found - kSampleRatesHz);
}

const ExportFormat* exportFormat(int number) {
  const auto* const found = std::ranges::find(kFormats, number, &ExportFormat::number);
  return found == kFormats.end() ? nullptr : found;
}

int withoutAlias(int number) {
  if (number == kFormatPcmAlias) return kFormatPcm;
  if (number == kFormatWavAlias) return kFormatWav;
  return number;
}

}  // namespace speech
