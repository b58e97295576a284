#include "lxapi/bundled/companding.h"

#include <algorithm>
#include <bit>
#include <cstdlib>

namespace speech::lxapi {
namespace {

// Both laws store the sign, a segment (the position of the leading one) and four bits below the leading one.
constexpr int kSegmentShift = 4;
constexpr unsigned kMantissaMask = 0x0F;

unsigned bitCount(unsigned value) { return static_cast<unsigned>(std::bit_width(value)); }

}  // namespace

uint8_t encodeALaw(int16_t sample) {
  // Negative values are mirrored by inverting the bits, so that -1 falls into the step of 0.
  const bool negative = sample < 0;
  const auto magnitude = static_cast<unsigned>(negative ? ~sample : sample) >> 3;  // 13 bits of 16 count
  unsigned code = magnitude >> 1;
  if (magnitude >= 32) {
    const unsigned segment = std::max(bitCount(magnitude), 6U) - 5;  // 1 to 7
    code = segment << kSegmentShift | (magnitude >> segment & kMantissaMask);
  }
  constexpr unsigned kPositive = 0x80;
  constexpr unsigned kEvenBitsInverted = 0x55;
  return static_cast<uint8_t>((code | (negative ? 0 : kPositive)) ^ kEvenBitsInverted);
}

uint8_t encodeMuLaw(int16_t sample) {
  constexpr int kBias = 33;  // makes every segment start at a power of two
  constexpr int kHighest = 8191 - kBias;
  const bool negative = sample < 0;
  const int scaled = (negative ? -static_cast<int>(sample) : sample) >> 2;  // 14 bits of 16 count
  const auto magnitude = static_cast<unsigned>(std::min(scaled, kHighest) + kBias);
  const unsigned segment = std::max(bitCount(magnitude), 6U) - 6;  // 0 to 7
  const unsigned code = segment << kSegmentShift | (magnitude >> (segment + 1) & kMantissaMask);
  constexpr unsigned kNegative = 0x80;
  // The bits go inverted, so that silence is full of ones.
  return static_cast<uint8_t>(~(code | (negative ? kNegative : 0U)));
}

}  // namespace speech::lxapi
