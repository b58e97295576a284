#pragma once

// The stretch of input that the converter looks at: filled from the input, moved down as the clock walks on.

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <span>

namespace rate {

inline constexpr std::int32_t kWorkLength = 4096;  ///< samples
inline constexpr std::int32_t kReadAhead =
    80;  ///< samples after the last that vector code may read and ignore

class WorkBuffer {
 public:
  /// The sample at `position`, which must lie in the buffer.
  int at(std::int32_t position) const { return samples_[static_cast<std::size_t>(position)]; }

  const std::int16_t* data() const { return samples_.data(); }

  /// Copies `source` to the places from `position` on and fills the rest with zeros; what would lie before
  /// the buffer is left out. `source` must not be longer than the places.
  void fill(std::int32_t position, std::span<const std::int16_t> source) {
    if (position < 0) {
      const auto before = static_cast<std::size_t>(-position);
      source = source.subspan(std::min(before, source.size()));
      position = 0;
    }
    const auto end = std::copy(source.begin(), source.end(), samples_.begin() + position);
    std::fill(end, samples_.begin() + kWorkLength, std::int16_t{0});
  }

  /// Moves everything from `position` on down to the start. What stood above the moved samples stays there:
  /// after the end of the input nothing overwrites it, and the last samples of a conversion come from it.
  void moveDown(std::int32_t position) {
    if (position >= kWorkLength) return;
    std::copy(samples_.begin() + position, samples_.begin() + kWorkLength, samples_.begin());
  }

 private:
  std::array<std::int16_t, kWorkLength + kReadAhead> samples_{};
};

}  // namespace rate
