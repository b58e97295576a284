#pragma once

// The vector code's interface: plain data in, sums out. One set per instruction set, see rate_kernels_*.cpp.
//
// A tap is (coefficient * sample + 8192) >> 14, which is what the plain producer's one-sided rounding comes
// to. Below 16384 in magnitude a coefficient's tap fits 16 bits, so taps are added in 16 bits for as long as
// the sum of the largest possible ones does, and in 32 bits from there: "carry over" flags say before which
// step.

#include <cstdint>

namespace rate {

/// Instruction sets, each including those before it.
enum class Level { plain, sse2, ssse3, avx2 };

/// Coefficients of every phase as rows, so that the taps of one output sample lie side by side.
///
/// Row r holds, for the sample k places from the centre, the filter entry r + (k * coefStep >> 7) and, in the
/// row's second half, twice the difference to the next entry; zeros after the filter's end.
struct PhaseRows {
  const std::int16_t* left;       ///< rows of the wing before the centre
  const std::int16_t* right;      ///< of the wing after it
  const std::int16_t* between;    ///< (k * coefStep & 127) << 8 for every k; all zero when the rows are exact
  const std::uint8_t* carryOver;  ///< one flag per vector
  std::int32_t taps;              ///< per wing, a multiple of the vector's length; a row is twice as long
  std::int32_t wideTaps;          ///< so many taps, a multiple as well, may have coefficients from 16384 up
  std::uint32_t coefStep;         ///< as in FilterSetting
};

/// Samples around the block; both may be read a vector's length past the end.
struct WindowSamples {
  const std::int16_t* forward;   ///< [i] is sample i of the work buffer
  const std::int16_t* backward;  ///< [4095 - i] is
};

/// One phase of a conversion that has few: every tap of its window, nearest sample first or not.
struct SteadyPhase {
  const std::int16_t* coef;
  const std::int32_t* place;      ///< of the tap's sample for the first output sample; neighbours follow
  const std::uint8_t* carryOver;  ///< one flag per tap
  std::int32_t taps;
  std::int32_t wholeTaps;  ///< the first so many taps add the sample itself instead (a coefficient of 16384)
};

struct Kernels {
  std::int32_t lanes;      ///< 16-bit numbers in a vector
  std::int32_t steadyRun;  ///< output samples that `steadySums` makes at a time

  using RowSums = void (*)(const PhaseRows&, const WindowSamples&, std::uint32_t clock, std::uint32_t step,
                           std::int32_t count, std::int32_t* sums);
  RowSums rowSums;       ///< any rows
  RowSums exactRowSums;  ///< rows whose `between` is zero
  RowSums unityRowSums;  ///< exact rows of `unityTaps` taps, one vector of them wide, without carry over
  std::int32_t unityTaps;

  /// Adds up `steadyRun` output samples, the first one's taps at `columns + place[tap]`.
  void (*steadySums)(const SteadyPhase&, const std::int16_t* columns, std::int32_t* sums);

  /// Deals `count` samples out into `columns` (2 to 8) columns, `columnLength` places apart.
  void (*deal)(const std::int16_t* samples, std::int32_t count, std::int32_t columns,
               std::int32_t columnLength, std::int16_t* to);

  /// The plain producer's last step: shift, gain, rounding, clamping.
  void (*finish)(const std::int32_t* sums, std::int32_t count, std::int32_t gain, std::int16_t* output);
};

/// The best level that this processor has.
Level bestLevel();

/// Whether this build and this processor have a level.
bool hasLevel(Level level);

/// The kernels of a level for filters with `taps` taps per wing; null for `plain` and outside x86.
const Kernels* kernelsFor(Level level, std::int32_t taps);

}  // namespace rate
