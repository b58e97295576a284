#include "engines/local/export_formats.h"

#include <array>
#include <cstddef>

#include "lxapi/lxapi.h"

namespace speech {
namespace {

using enum ExportRoute;

constexpr std::array<ExportFormat, 14> kFormats = {{
    /* 0 */ {kDirect, kConvertAndStrip, LX_FILE_PCM},
    /* 1 */ {kDirect, kConvert, LX_FILE_WAV},
    /* 2, ogg */ {kSoxAtTargetRate, kSoxAtTargetRate, LX_FILE_WAV},
    /* 3, gsm */ {kSoxAt8000, kSoxAt8000, LX_FILE_WAV},
    /* 4, mp3 */ {kSoxMp3, kSoxMp3, LX_FILE_WAV},
    /* 5 */ {kDirect, kConvert, LX_FILE_WAV},
    /* 6 */ {kDirect, kRefuse, LX_FILE_ALAW},
    /* 7 */ {kDirect, kRefuse, LX_FILE_MULAW},
    /* 8 */ {kDirect, kRefuse, LX_FILE_CODE_8},
    /* 9 */ {kDirect, kRefuse, LX_FILE_CODE_3},
    /* 10 */ {kDirect, kConvertAndStrip, LX_FILE_PCM},
    /* 11 */ {kDirect, kRefuse, LX_FILE_CODE_3},
    /* 12 */ {kDirect, kRefuse, LX_FILE_CODE_3},
    /* 13 */ {kDirect, kRefuse, LX_FILE_CODE_3},
}};

}  // namespace

std::optional<ExportFormat> exportFormat(int number) {
  const auto index = static_cast<std::size_t>(number);
  if (number < 0 || index >= kFormats.size()) return std::nullopt;
  return kFormats[index];
}

}  // namespace speech
