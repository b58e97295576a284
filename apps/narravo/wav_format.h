#pragma once

// What a WAV file has to be for the library to convert it.

#include <cstdint>
#include <istream>
#include <string>

namespace narravo {

struct WavFormat {
  static constexpr int kHeaderBytes = 44;

  int channels;       ///< 1 or 2
  int bitsPerSample;  ///< 8 or 16
  int sampleRateHz;
  std::uint32_t dataBytes;

  double seconds() const {
    const double bytesPerSecond = static_cast<double>(sampleRateHz) * channels * bitsPerSample / 8;
    return dataBytes / bytesPerSecond;
  }
};

/// Reads the header of `file`. Throws HostError, which calls the file `name`, when it is not PCM of 8 or 16
/// bits with one or two channels, when its samples begin elsewhere than the library looks for them, and when
/// it is shorter than its header says.
WavFormat readWavFormat(std::istream& file, const std::string& name);

}  // namespace narravo
