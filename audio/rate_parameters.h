#pragma once

// The numbers that a pair of rates stands for.

#include <cstdint>
#include <optional>

namespace rate {

inline constexpr int kPhaseBits = 15;  ///< fraction bits of the clock that walks the input
inline constexpr std::uint32_t kPhaseOne = 1u << kPhaseBits;
inline constexpr std::uint32_t kPhaseMask = kPhaseOne - 1;

/// One row of the parameter table, 16 bytes.
struct Parameters {
  std::uint32_t step;        ///< input samples per output sample, Q15
  std::uint32_t coefStep;    ///< filter table entries per input sample, Q7; below 32768 when downsampling
  std::uint16_t gainSmall;   ///< output gain after the small filter, Q13
  std::uint16_t gainLarge;   ///< the same after the large filter
  std::uint16_t guardSmall;  ///< samples that the small filter needs on either side of its window
  std::uint16_t guardLarge;  ///< the same for the large filter
  friend bool operator==(const Parameters&, const Parameters&) = default;
};
static_assert(sizeof(Parameters) == 16);

/// Parameters of a conversion between two rates in Hz, both at least 1: the stored row for a pair that has
/// one, else by the rule. Guards too large for their field are 65535, more than any filter loop accepts.
/// @return nothing where the rates are too far apart for the clock: a step of 0, or 32768 samples and more.
std::optional<Parameters> parametersFor(std::int32_t inputRate, std::int32_t outputRate);

}  // namespace rate
