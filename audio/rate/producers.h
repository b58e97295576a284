#pragma once

// The work buffer, and what one output sample is: the plain producers, which define all faster ones.

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>

#include "audio/rate/tables.h"

namespace speech::audio::rate {

/// Samples in the work buffer.
inline constexpr std::int32_t kWorkLength = 4096;
/// Samples behind the last one that vector code may read and ignore.
inline constexpr std::int32_t kReadAhead = 80;

/// The stretch of input that the converter looks at. It is filled from the input and moved down as the clock
/// walks on.
class WorkBuffer {
 public:
  /// The sample at `position`, which must lie in the buffer.
  int at(std::int32_t position) const { return samples_[static_cast<std::size_t>(position)]; }

  const std::int16_t* data() const { return samples_.data(); }

  /// Copies `source` to `position` and the places behind it and fills the rest with zeros; samples that would
  /// lie before the buffer are left out. `source` must not be longer than the places.
  void fill(std::int32_t position, std::span<const std::int16_t> source) {
    if (position < 0) {
      const auto before = static_cast<std::size_t>(-position);
      source = source.subspan(std::min(before, source.size()));
      position = 0;
    }
    const auto end = std::copy(source.begin(), source.end(), samples_.begin() + position);
    std::fill(end, samples_.begin() + kWorkLength, std::int16_t{0});
  }

  /// Moves all samples from `position` on down to the start. Kept: the places above them keep their samples;
  /// after the end of the input nothing overwrites these, and a conversion's last samples come from them.
  void moveDown(std::int32_t position) {
    if (position >= kWorkLength) return;
    std::copy(samples_.begin() + position, samples_.begin() + kWorkLength, samples_.begin());
  }

 private:
  std::array<std::int16_t, kWorkLength + kReadAhead> samples_{};
};

/// A filter set up for one pair of rates.
struct FilterSetting {
  const Filter* filter;
  std::uint32_t step;      ///< input samples per output sample, Q15
  std::uint32_t coefStep;  ///< filter entries per input sample, Q7; 32768 unless downsampling
  std::int32_t gain;       ///< Q13
};

/// Samples that one wing of the filter reaches.
inline std::int32_t wingTaps(const FilterSetting& setting) {
  const auto reach = static_cast<std::uint32_t>(setting.filter->coef.size()) << kInterpBits;
  return static_cast<std::int32_t>((reach + setting.coefStep - 1) / setting.coefStep);
}

/// Fills `output` with one filtered sample per step, the first at `clock` (Q15, a position in `work`). All
/// windows must lie in the buffer.
void produceFiltered(const FilterSetting& setting, const WorkBuffer& work, std::uint32_t clock,
                     std::span<std::int16_t> output);

/// The same by straight lines between neighbouring samples.
void produceLinear(std::uint32_t step, const WorkBuffer& work, std::uint32_t clock,
                   std::span<std::int16_t> output);

}  // namespace speech::audio::rate
