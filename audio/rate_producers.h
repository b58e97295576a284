#pragma once

// What one output sample is: the plain producers, which define every faster one.

#include <cstdint>
#include <span>

#include "audio/rate_filters.h"
#include "audio/rate_work_buffer.h"

namespace rate {

/// A filter set up for one pair of rates.
struct FilterSetting {
  const Filter* filter;
  std::uint32_t step;      ///< clock ticks per output sample, Q15
  std::uint32_t coefStep;  ///< table entries per input sample, Q7; 32768 when not downsampling
  std::int32_t gain;       ///< Q13
};

/// Samples that one wing of the filter reaches.
inline std::int32_t wingTaps(const FilterSetting& setting) {
  const auto reach = static_cast<std::uint32_t>(setting.filter->coef.size()) << kInterpBits;
  return static_cast<std::int32_t>((reach + setting.coefStep - 1) / setting.coefStep);
}

/// (value + half) >> bits, held to 16 bits.
std::int16_t roundedSample(std::int32_t value, int bits);

/// Fills `output` with one filtered sample per step, the first at `clock` (Q15, a position in `work`).
void produceFiltered(const FilterSetting& setting, const WorkBuffer& work, std::uint32_t clock,
                     std::span<std::int16_t> output);

/// The same by straight lines between neighbouring samples.
void produceLinear(std::uint32_t step, const WorkBuffer& work, std::uint32_t clock,
                   std::span<std::int16_t> output);

}  // namespace rate
