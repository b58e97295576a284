#pragma once

// G.711: 16-bit samples as 8-bit A-law and mu-law codes.

#include <cstdint>

namespace speech::lxapi {

uint8_t encodeALaw(int16_t sample);
uint8_t encodeMuLaw(int16_t sample);

}  // namespace speech::lxapi
