#pragma once

// What a reply holds beside or instead of the samples: the header of a WAV file, or an MP3 file through LAME.

#include <cstdint>
#include <string>

#include "service/spool_file.h"

namespace speech::service {

// The canonical 44 bytes for 16-bit mono samples: a "fmt " chunk of 16 bytes right before "data". The
// module's client takes everything behind byte 44 for samples. dataBytes must be even and at most
// 4,294,967,258.
std::string wavHeader(uint32_t dataBytes, uint32_t sampleRateHz);

// Encodes 16-bit mono samples at the rate: 64 kbit/s, constant, no tag frame in front. Throws
// std::runtime_error when the encoder refuses, std::system_error when the file cannot be written.
SpoolFile encodeMp3(const SpoolFile& samples, int sampleRateHz);

}  // namespace speech::service
