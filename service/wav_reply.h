// The header of a WAV reply.
#pragma once

#include <cstdint>
#include <string>

namespace speech::service {

// The canonical 44 bytes for 16-bit mono samples: a "fmt " chunk of 16 bytes right before "data". The
// module's client takes everything behind byte 44 for samples. dataBytes must be even and at most
// 4,294,967,258.
std::string wavHeader(uint32_t dataBytes, uint32_t sampleRateHz);

}  // namespace speech::service
