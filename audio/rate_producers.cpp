#include "audio/rate_producers.h"

#include <algorithm>
#include <limits>

#include "audio/rate_parameters.h"

namespace rate {
namespace {

constexpr int kProductShift = 14;
constexpr int kWingSumShift = 2;
constexpr int kGainShift = 13;

enum class Wing { left, right };

/// The sum over one side of the window, from `position` away from the centre. `phase` is how far the first
/// sample lies from the centre, Q15. No sum can leave 32 bits: the entries at one phase add up, in magnitude,
/// to less than three times the peak for every input sample that a zero crossing spans.
std::int32_t wingSum(const FilterSetting& setting, const WorkBuffer& work, std::int32_t position,
                     std::uint32_t phase, Wing wing) {
  const Filter& filter = *setting.filter;
  const int direction = wing == Wing::left ? -1 : 1;
  const std::size_t end = filter.coef.size() - (wing == Wing::right ? 1 : 0);
  std::uint32_t coefPosition = (phase * setting.coefStep) >> kPhaseBits;
  // On a whole position both wings would take the centre; the right one starts a sample further out.
  if (wing == Wing::right && phase == 0) coefPosition += setting.coefStep;

  std::int32_t sum = 0;
  for (; (coefPosition >> kInterpBits) < end; coefPosition += setting.coefStep, position += direction) {
    const std::size_t entry = coefPosition >> kInterpBits;
    const int between = static_cast<int>(coefPosition & kInterpMask);
    const int coef = filter.coef[entry] + ((filter.coefDelta[entry] * between) >> kInterpBits);
    // Kept: rounds up on the one bit below, not symmetrically about zero; hosts compare converted files.
    const int product = coef * work.at(position);
    sum += (product + (product & (1 << (kProductShift - 1)))) >> kProductShift;
  }
  return sum;
}

}  // namespace

std::int16_t roundedSample(std::int32_t value, int bits) {
  const std::int32_t rounded = (value + (1 << (bits - 1))) >> bits;
  return static_cast<std::int16_t>(std::clamp<std::int32_t>(rounded, std::numeric_limits<std::int16_t>::min(),
                                                            std::numeric_limits<std::int16_t>::max()));
}

// Upsampling needs no producer of its own: with 256 entries per input sample (a coefStep of 32768) the entry
// is the phase's upper 8 bits and the rest its lower 7.
void produceFiltered(const FilterSetting& setting, const WorkBuffer& work, std::uint32_t clock,
                     std::span<std::int16_t> output) {
  for (std::int16_t& sample : output) {
    const auto position = static_cast<std::int32_t>(clock >> kPhaseBits);
    std::int32_t value = wingSum(setting, work, position, clock & kPhaseMask, Wing::left) +
                         wingSum(setting, work, position + 1, (0 - clock) & kPhaseMask, Wing::right);
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

}  // namespace rate
