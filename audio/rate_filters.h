#pragma once

// The two lowpass filters as tables: the right half of a symmetric impulse response, 256 entries per input
// sample at a ratio of 1, values Q15.

#include <cstddef>
#include <cstdint>
#include <span>

namespace rate {

inline constexpr int kStepsPerCrossing = 256;
inline constexpr int kInterpBits = 7;  ///< fraction bits between two table entries
inline constexpr std::uint32_t kInterpMask = (1u << kInterpBits) - 1;

inline constexpr std::size_t kPeakSpacing = 64;  ///< entries

struct Filter {
  std::span<const std::int16_t> coef;       ///< one wing, the centre first
  std::span<const std::int16_t> coefDelta;  ///< to the next entry; the last to zero
  std::span<const std::int16_t>
      peaks;  ///< the largest magnitude from every kPeakSpacing-th entry of `coef` on
};

/// 6 input samples per wing.
const Filter& smallFilter();
/// 32 input samples per wing.
const Filter& largeFilter();

}  // namespace rate
