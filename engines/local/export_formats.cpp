#include "engines/local/export_formats.h"

#include <algorithm>
#include <array>

#include <speech/formats.h>

#include "lxapi/lxapi.h"

namespace speech {
namespace {

using enum ExportRoute;

constexpr std::array<ExportFormat, 14> kFormats = {{
    {kFormatPcm, kDirect, kConvertAndStrip, LX_FILE_PCM},
    {kFormatWavAlias, kDirect, kConvert, LX_FILE_WAV},
    {kFormatOgg, kSoxAtTargetRate, kSoxAtTargetRate, LX_FILE_WAV},
    {kFormatGsm, kSoxAt8000, kSoxAt8000, LX_FILE_WAV},
    {kFormatMp3, kSoxMp3, kSoxMp3, LX_FILE_WAV},
    {kFormatWav, kDirect, kConvert, LX_FILE_WAV},
    {kFormatALaw, kDirect, kRefuse, LX_FILE_ALAW},
    {kFormatMuLaw, kDirect, kRefuse, LX_FILE_MULAW},
    {8, kDirect, kRefuse, LX_FILE_CODE_8},
    {9, kDirect, kRefuse, LX_FILE_CODE_3},
    {kFormatPcmAlias, kDirect, kConvertAndStrip, LX_FILE_PCM},
    {11, kDirect, kRefuse, LX_FILE_CODE_3},
    {12, kDirect, kRefuse, LX_FILE_CODE_3},
    {13, kDirect, kRefuse, LX_FILE_CODE_3},
}};

}  // namespace

std::optional<ExportFormat> exportFormat(int number) {
  const auto row = std::ranges::find(kFormats, number, &ExportFormat::number);
  return row == kFormats.end() ? std::nullopt : std::optional(*row);
}

}  // namespace speech
