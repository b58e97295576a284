#pragma once

// What files can hold, and at which sample rates: the tables behind every export.

#include <cstdint>

#include <speech/formats.h>

namespace speech {

/// Sample rate in hertz by its index (SampleRateIndex), or -1.
int sampleRateAt(int index);

/// The index of a sample rate in hertz, or -1.
int sampleRateIndexOf(int sampleRateHz);

/// What a file holds. An exporter has one route to each kind.
enum class FileKind : std::uint8_t {
  kRaw,         ///< Samples without a header.
  kWav,         ///< A WAV file.
  kCompressed,  ///< What SoX makes of either.
  kOfTheEngine  ///< What only the engine can write, and only at its own rate.
};

struct ExportFormat {
  int number;  ///< FileFormat, or the number of an engine's own format.
  FileKind kind;
  const wchar_t* extension;     ///< With its dot; SoX goes by it.
  std::int32_t engineFileCode;  ///< LxFileCode of a file that the engine library writes.
};

/// The format of WAV files, which every temporary file has.
extern const ExportFormat& kWavFiles;

/// A format by its number; null for a number without one. The aliases are not among them.
const ExportFormat* exportFormat(int number);

/// The number that textToFile's two aliases stand for; every other number is its own.
int withoutAlias(int number);

}  // namespace speech
