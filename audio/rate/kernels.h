#pragma once

// The vector code's interface: plain data in, sums out, with one set of functions for each instruction set.
//
// A tap is (coefficient * sample + 8192) >> 14: the plain producer's one-sided rounding amounts to that. The
// tap of a coefficient below 16384 in magnitude fits into 16 bits. So taps are added up in 16 bits as long as
// the sum of the largest possible ones fits too. The "carry over" flags say before which steps the 16-bit
// sums are moved to 32-bit ones.

#include <cstdint>

namespace speech::audio::rate {

/// Instruction sets, each including those before it.
enum class Level { kPlain, kSse2, kAvx2 };

/// Coefficients of every phase as rows, so that the taps of one output sample lie side by side.
///
/// Row r holds, for the sample k places from the centre, the filter entry r + (k * coefStep >> 7). The row's
/// second half holds twice the difference to the next entry. Behind the filter's end there are zeros.
struct PhaseRows {
  const std::int16_t* left;       ///< rows of the wing before the centre
  const std::int16_t* right;      ///< rows of the wing behind it
  const std::int16_t* between;    ///< (k * coefStep & 127) << 8 for every k; all zero if the rows are exact
  const std::uint8_t* carryOver;  ///< one flag per vector
  std::int32_t taps;              ///< per wing, a multiple of the vector's length; a row is twice as long
  std::int32_t wideTaps;          ///< the first taps, likewise, whose coefficients may be 16384 or more
  std::uint32_t coefStep;         ///< as in FilterSetting
};

/// Samples around the block. Both may be read a vector's length beyond the end.
struct WindowSamples {
  const std::int16_t* forward;   ///< sample i of the work buffer at [i]
  const std::int16_t* backward;  ///< sample i at [4095 - i]
};

/// All taps of the window at one phase, for conversions with few phases. The order of taps is free.
struct SteadyPhase {
  const std::int16_t* coef;
  const std::int32_t* place;  ///< where the first output sample's sample is; those of the next ones follow
  const std::uint8_t* carryOver;  ///< one flag per tap
  std::int32_t taps;
  std::int32_t unitTaps;  ///< the first taps, which add the sample itself: their coefficient is 16384, a one
};

struct Kernels {
  std::int32_t lanes;      ///< 16-bit numbers in a vector
  std::int32_t steadyRun;  ///< output samples that `steadySums` adds up at a time

  using RowSums = void (*)(const PhaseRows&, const WindowSamples&, std::uint32_t clock, std::uint32_t step,
                           std::int32_t count, std::int32_t* sums);
  RowSums rowSums;       ///< for any rows
  RowSums exactRowSums;  ///< for rows whose `between` is zero
  RowSums unityRowSums;  ///< for exact rows of `unityTaps` taps, one vector of them wide, without carry over
  std::int32_t unityTaps;

  /// Adds up the taps of `steadyRun` output samples, the first one's at `columns + place[tap]`.
  void (*steadySums)(const SteadyPhase&, const std::int16_t* columns, std::int32_t* sums);

  /// Splits `count` samples into `columns` (2 to 8) columns, `columnLength` places apart: sample i goes to
  /// column i % columns.
  void (*splitIntoColumns)(const std::int16_t* samples, std::int32_t count, std::int32_t columns,
                           std::int32_t columnLength, std::int16_t* to);

  /// The plain producer's last step: shift, gain, rounding, limits.
  void (*finish)(const std::int32_t* sums, std::int32_t count, std::int32_t gain, std::int16_t* output);
};

/// The best level that this processor has.
Level bestLevel();

/// Whether this build and this processor have a level.
bool hasLevel(Level level);

/// The kernels of a level for filters with `taps` taps per wing; null for kPlain and on other processors.
const Kernels* kernelsFor(Level level, std::int32_t taps);

}  // namespace speech::audio::rate
