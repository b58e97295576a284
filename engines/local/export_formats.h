#pragma once

#include <cstdint>
#include <optional>

namespace speech {

/// How a text becomes a file of some format.
enum class ExportRoute {
  kDirect,           ///< The engine writes the file.
  kConvert,          ///< A temporary WAV file, then the rate converter.
  kConvertAndStrip,  ///< The same, then the WAV header is taken off.
  kSoxAtTargetRate,  ///< A temporary WAV file, then SoX at the rate asked for.
  kSoxAt8000,        ///< … at 8000 Hz, the only rate of GSM.
  kSoxMp3,           ///< … at 320 kbit/s.
  kRefuse            ///< The engine's own formats cannot be rate-converted.
};

/// One format of textToFile.
struct ExportFormat {
  int number;
  ExportRoute atEngineRate;
  ExportRoute atOtherRate;
  std::int32_t engineFileCode;  ///< LxFileCode of the direct route.
};

/// The format by its number, or nothing for a number that no format has.
std::optional<ExportFormat> exportFormat(int number);

}  // namespace speech
