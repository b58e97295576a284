#include "audio/rate/producers.h"

#include <algorithm>
#include <limits>

namespace speech::audio::rate {
namespace {

constexpr int kProductShift = 14;
constexpr int kWingSumShift = 2;
constexpr int kGainShift = 13;

enum class Wing { kLeft, kRight };

/// The sum over one side of the window, from `position` away from the centre. `phase` is the distance of the
/// first sample from the centre, Q15. Sums stay within 32 bits: the magnitudes of all coefficients at one
/// phase add up to less than three times the peak, or that times 1 / factor when downsampling.
std::int32_t wingSum(const FilterSetting& setting, const WorkBuffer& work, std::int32_t position,
                     std::uint32_t phase, Wing wing) {
  const Filter& filter = *setting.filter;
  const int direction = wing == Wing::kLeft ? -1 : 1;
  const std::size_t end = filter.coef.size() - (wing == Wing::kRight ? 1 : 0);
  std::uint32_t coefPosition = (phase * setting.coefStep) >> kPhaseBits;
  // On a whole position both wings would take the centre, so the right one starts a sample further out.
  if (wing == Wing::kRight && phase == 0) coefPosition += setting.coefStep;

  std::int32_t sum = 0;
  for (; (coefPosition >> kInterpBits) < end; coefPosition += setting.coefStep, position += direction) {
    const std::size_t entry = coefPosition >> kInterpBits;
    const int between = static_cast<int>(coefPosition & kInterpMask);
    const int coef = filter.coef[entry] + ((filter.coefDelta[entry] * between) >> kInterpBits);
    // Kept: adds a half only if the bit below the shift is set. Hosts compare converted files.
    const int product = coef * work.at(position);
    sum += (product + (product & (1 << (kProductShift - 1)))) >> kProductShift;
  }
  return sum;
}

/// (value + half) >> bits, limited to 16 bits.
std::int16_t roundedSample(std::int32_t value, int bits) {
  const std::int32_t rounded = (value + (1 << (bits - 1))) >> bits;
  return static_cast<std::int16_t>(std::clamp<std::int32_t>(rounded, std::numeric_limits<std::int16_t>::min(),
                                                            std::numeric_limits<std::int16_t>::max()));
}

}  // namespace

// Upsampling needs no producer of its own: with 256 entries per input sample (a coefStep of 32768) the upper
// 8 bits of the phase are the entry and the lower 7 the fraction.
void produceFiltered(const FilterSetting& setting, const WorkBuffer& work, std::uint32_t clock,
                     std::span<std::int16_t> output) {
  for (std::int16_t& sample : output) {
    const auto position = static_cast<std::int32_t>(clock >> kPhaseBits);
    std::int32_t value = wingSum(setting, work, position, clock & kPhaseMask, Wing::kLeft) +
                         wingSum(setting, work, position + 1, (0 - clock) & kPhaseMask, Wing::kRight);
    value >>= kWingSumShift;
    sample = roundedSample(value * setting.gain, kGainShift);
    clock += setting.step;
  }
}

void produceLinear(std::uint32_t step, const WorkBuffer& work, std::uint32_t clock,
                   std::span<std::int16_t> output) {
  for (std::int16_t& sample : output) {
    const auto position = static_cast<std::int32_t>(clock >> kPhaseBits);
    const auto fraction = static_cast<int>(clock & kPhaseMask);
    const int value =
        work.at(position + 1) * fraction + work.at(position) * (static_cast<int>(kPhaseOne) - fraction);
    sample = roundedSample(value, kPhaseBits);
    clock += step;
  }
}

}  // namespace speech::audio::rate
