#pragma once

// What a WAV file has to be for the library to convert it.

#include <cstdint>
#include <istream>
#include <string>

namespace narravo {

struct WavFormat {
  int channels;       ///< 1 or 2
  int bitsPerSample;  ///< 8 or 16
  int sampleRateHz;
  std::uint32_t dataBytes;

  std::uint32_t frameCount() const {
    return dataBytes / static_cast<std::uint32_t>(channels * bitsPerSample / 8);
  }
  double seconds() const { return static_cast<double>(frameCount()) / sampleRateHz; }
};

/// Reads the header of `file` and leaves it at the samples. Throws HostError, which calls the file `name`,
/// when it is not PCM of 8 or 16 bits with one or two channels, when its samples begin elsewhere than the
/// library looks for them, and when it is shorter than its header says.
WavFormat readWavFormat(std::istream& file, const std::string& name);

}  // namespace narravo
