#pragma once

// The numbers behind a conversion: the parameters of a pair of rates, and the two lowpass filters.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace speech::audio::rate {

/// Fraction bits of the clock that walks over the input.
inline constexpr int kPhaseBits = 15;
inline constexpr std::uint32_t kPhaseOne = 1u << kPhaseBits;
inline constexpr std::uint32_t kPhaseMask = kPhaseOne - 1;

/// One row of the parameter table, 16 bytes.
struct Parameters {
  std::uint32_t step;        ///< input samples per output sample, Q15
  std::uint32_t coefStep;    ///< filter entries per input sample, Q7; below 32768 when downsampling
  std::uint16_t gainSmall;   ///< output gain after the small filter, Q13
  std::uint16_t gainLarge;   ///< the same after the large filter
  std::uint16_t guardSmall;  ///< samples that the small filter needs on either side of a block
  std::uint16_t guardLarge;  ///< the same for the large filter
  friend bool operator==(const Parameters&, const Parameters&) = default;
};
static_assert(sizeof(Parameters) == 16);

/// Parameters of a conversion between two rates in Hz, both at least 1: the stored row if the pair has one,
/// else by the rule. A guard too large for its field is 65535, more than any filter loop accepts.
/// @return nothing if the rates are too far apart for the clock: a step of 0, or of 32768 samples and more.
std::optional<Parameters> parametersFor(std::int32_t inputRate, std::int32_t outputRate);

/// Filter entries per input sample at a ratio of 1.
inline constexpr int kStepsPerCrossing = 256;
/// Fraction bits between two entries.
inline constexpr int kInterpBits = 7;
inline constexpr std::uint32_t kInterpMask = (1u << kInterpBits) - 1;
/// Entries per number of Filter::peaks.
inline constexpr std::size_t kPeakSpacing = 64;

/// The right half of a symmetric impulse response, values Q15.
struct Filter {
  std::span<const std::int16_t> coef;       ///< one wing, the centre first
  std::span<const std::int16_t> coefDelta;  ///< from each entry to the next; from the last to zero
  std::span<const std::int16_t> peaks;      ///< the largest magnitude of `coef` from each 64th entry on
};

/// 6 input samples per wing.
const Filter& smallFilter();
/// 32 input samples per wing.
const Filter& largeFilter();

}  // namespace speech::audio::rate
