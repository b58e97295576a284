#include "lxapi/bundled/companding.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

namespace speech::lxapi {
namespace {

/// The value that the standard's table gives for a code, on the scale of 16-bit samples.
int decodeALaw(uint8_t code) {
  const int plain = code ^ 0x55;
  const int segment = plain >> 4 & 7;
  const int step = plain & 15;
  const int magnitude = segment == 0 ? step * 2 + 1 : (step * 2 + 33) << (segment - 1);
  return (plain & 0x80) != 0 ? magnitude * 8 : -magnitude * 8;
}

int decodeMuLaw(uint8_t code) {
  const int plain = ~code & 0xFF;
  const int magnitude = (((plain & 15) * 2 + 33) << (plain >> 4 & 7)) - 33;
  return (plain & 0x80) != 0 ? -magnitude * 4 : magnitude * 4;
}

TEST(Companding, EveryCodeComesBackFromItsOwnValue) {
  for (int code = 0; code < 256; ++code) {
    const auto byte = static_cast<uint8_t>(code);
    EXPECT_EQ(encodeALaw(static_cast<int16_t>(decodeALaw(byte))), byte);
    // Mu-law writes zero in two ways; the negative one is never produced.
    const uint8_t expected = byte == 0x7F ? 0xFF : byte;
    EXPECT_EQ(encodeMuLaw(static_cast<int16_t>(decodeMuLaw(byte))), expected);
  }
  EXPECT_EQ(encodeMuLaw(-4), 0x7E) << "the first value behind the step of zero";
}

TEST(Companding, NoSampleIsFurtherOffThanHalfAStep) {
  for (int sample = -32768; sample <= 32767; ++sample) {
    const int magnitude = std::abs(sample);
    const auto value = static_cast<int16_t>(sample);
    // A step is a sixteenth of its segment, and the lowest segments have the finest steps.
    ASSERT_LE(std::abs(decodeALaw(encodeALaw(value)) - sample), std::max(8, magnitude / 32)) << sample;
    // The highest segment of mu-law ends a little below full scale.
    ASSERT_LE(std::abs(decodeMuLaw(encodeMuLaw(value)) - sample), std::max(4, (magnitude + 132) / 32))
        << sample;
  }
}

}  // namespace
}  // namespace speech::lxapi
