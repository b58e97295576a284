#pragma once

// Which output samples a fast filter may make: those whose whole window lies in the work buffer. In the
// blocks of the input all do; the block after its end runs past the buffer.

#include <algorithm>
#include <cstdint>
#include <span>

#include "audio/rate_parameters.h"
#include "audio/rate_producers.h"
#include "audio/rate_work_buffer.h"

namespace rate {

/// How many of `count` output samples from `clock` on come before the position `end`.
inline std::size_t samplesBefore(std::int32_t end, std::uint32_t clock, std::uint32_t step,
                                 std::size_t count) {
  const std::uint32_t endClock = static_cast<std::uint32_t>(end) << kPhaseBits;
  if (clock >= endClock) return 0;
  return std::min<std::size_t>(count, (endClock - clock + step - 1) / step);
}

/// The same as produceFiltered, most of it by `produceInside(clock, output)`.
template <typename ProduceInside>
void produceByWindow(const FilterSetting& setting, const WorkBuffer& work, std::uint32_t clock,
                     std::span<std::int16_t> output, ProduceInside&& produceInside) {
  const std::int32_t reach = wingTaps(setting);
  const std::size_t inside = samplesBefore(kWorkLength - reach, clock, setting.step, output.size());
  if (inside > 0) produceInside(clock, output.first(inside));
  clock += static_cast<std::uint32_t>(inside) * setting.step;
  output = output.subspan(inside);

  const std::size_t across = samplesBefore(kWorkLength + reach, clock, setting.step, output.size());
  produceFiltered(setting, work, clock, output.first(across));
  std::ranges::fill(output.subspan(across), std::int16_t{0});
}

}  // namespace rate
