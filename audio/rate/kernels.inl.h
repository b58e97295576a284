#pragma once

// The kernels, written once over a vector type (vectors.h). Included by kernels.cpp and kernels_avx2.cpp,
// which are compiled for different instruction sets. Everything is a template over the file's own vector
// type, and nothing of the standard library is called: the linker keeps one version of a function that both
// files have, and it could be the one for the wrong processor.

#include <cstddef>
#include <cstdint>

#include "audio/rate/kernels.h"

namespace speech::audio::rate {

/// A number that is part of its type.
template <std::uint32_t kValue>
struct Index {
  constexpr operator std::uint32_t() const { return kValue; }
};

/// Counts in bytes, for which compilers make shorter code.
template <typename Vector>
inline const std::int16_t* rowAt(const std::int16_t* rows, std::uint32_t row, std::int32_t taps) {
  const auto bytesPerRow = static_cast<std::uint32_t>(taps) * 2 * sizeof(std::int16_t);
  return reinterpret_cast<const std::int16_t*>(reinterpret_cast<const char*>(rows) + row * bytesPerRow);
}

/// Interpolated coefficients of the taps from k on. `fraction`: the centre's place between two entries, << 8.
template <typename Vector, bool kExact>
inline typename Vector::Type coefficients(const PhaseRows& rows, std::int32_t taps, const std::int16_t* row,
                                          std::int32_t k, typename Vector::Type fraction) {
  typename Vector::Type coef = Vector::load(row + k);
  typename Vector::Type delta = Vector::load(row + taps + k);
  if constexpr (!kExact) {
    // If the fractions of centre and tap add up to a whole entry, the right one is in the next row. Fractions
    // have 7 bits, so that the sign shows it.
    const typename Vector::Type both = Vector::add16(fraction, Vector::load(rows.between + k));
    const typename Vector::Type whole = Vector::signMask(both);
    fraction = Vector::withoutSign(both);
    const std::int16_t* next = row + 2 * taps;
    coef = Vector::select(whole, Vector::load(next + k), coef);
    delta = Vector::select(whole, Vector::load(next + taps + k), delta);
  }
  return Vector::add16(coef, Vector::mulHigh(delta, fraction));
}

/// The taps of both wings for the output sample at `clock`, as 32-bit sums that are still to be added up
/// across the vector. kTaps: the taps of a wing at a ratio of 1, or 0 if only `rows` has them.
template <typename Vector, bool kExact, std::int32_t kTaps>
inline typename Vector::Type windowSums(const PhaseRows& rows, const WindowSamples& samples,
                                        std::uint32_t clock, typename Vector::Type leftFraction,
                                        typename Vector::Type rightFraction) {
  constexpr std::uint32_t kOne = 1u << 15;
  const std::int32_t taps = kTaps > 0 ? kTaps : rows.taps;
  const std::int32_t wideTaps = kTaps > 0 ? Vector::kLanes : rows.wideTaps;
  const std::uint32_t coefStep = kTaps > 0 ? kOne : rows.coefStep;

  const std::uint32_t phase = clock & (kOne - 1);
  const std::uint32_t leftPlace = (phase * coefStep) >> 15;
  // At a phase of zero the right wing begins a whole sample out: the centre belongs to the left one.
  const std::uint32_t rightPlace = kTaps > 0 ? kOne - phase : ((kOne - phase) * coefStep) >> 15;
  const std::int16_t* leftRow = rowAt<Vector>(rows.left, leftPlace >> 7, taps);
  const std::int16_t* rightRow = rowAt<Vector>(rows.right, rightPlace >> 7, taps);
  const auto position = static_cast<std::ptrdiff_t>(clock >> 15);
  const std::int16_t* left = samples.backward + 4095 - position;
  const std::int16_t* right = samples.forward + 1 + position;

  typename Vector::Type sums = Vector::zero();
  typename Vector::Type narrow = Vector::zero();
  std::int32_t k = 0;
  for (; k < wideTaps; k += Vector::kLanes) {
    const auto leftCoef = coefficients<Vector, kExact>(rows, taps, leftRow, k, leftFraction);
    const auto rightCoef = coefficients<Vector, kExact>(rows, taps, rightRow, k, rightFraction);
    const auto leftSample = Vector::load(left + k);
    const auto rightSample = Vector::load(right + k);
    // A tap is four times the product's upper half plus the top three bits of its lower half, rounded to two.
    const auto high =
        Vector::add16(Vector::mulHigh(leftCoef, leftSample), Vector::mulHigh(rightCoef, rightSample));
    sums = Vector::add32(sums, Vector::pairSumsTimes4(high));
    narrow =
        Vector::add16(narrow, Vector::add16(Vector::roundedTop3(Vector::mulLow(leftCoef, leftSample)),
                                            Vector::roundedTop3(Vector::mulLow(rightCoef, rightSample))));
  }
  for (; k < taps; k += Vector::kLanes) {
    if (kTaps <= 0 && rows.carryOver[k / Vector::kLanes] != 0) {
      sums = Vector::add32(sums, Vector::pairSums(narrow));
      narrow = Vector::zero();
    }
    const auto leftCoef = coefficients<Vector, kExact>(rows, taps, leftRow, k, leftFraction);
    const auto rightCoef = coefficients<Vector, kExact>(rows, taps, rightRow, k, rightFraction);
    narrow =
        Vector::add16(narrow, Vector::add16(Vector::roundedProducts(leftCoef, Vector::load(left + k)),
                                            Vector::roundedProducts(rightCoef, Vector::load(right + k))));
  }
  return Vector::add32(sums, Vector::pairSums(narrow));
}

/// windowSums with the fractions of one output sample.
template <typename Vector, bool kExact>
inline typename Vector::Type oneWindowSums(const PhaseRows& rows, const WindowSamples& samples,
                                           std::uint32_t clock) {
  constexpr std::uint32_t kOne = 1u << 15;
  const std::uint32_t phase = clock & (kOne - 1);
  const auto fractionOf = [](std::uint32_t place) {
    return Vector::splat(static_cast<std::int16_t>(((place >> 15) & 127) << 8));
  };
  return windowSums<Vector, kExact, 0>(rows, samples, clock, fractionOf(phase * rows.coefStep),
                                       fractionOf((kOne - phase) * rows.coefStep));
}

template <typename Vector, bool kExact>
void rowSums(const PhaseRows& phaseRows, const WindowSamples& windowSamples, std::uint32_t clock,
             std::uint32_t step, std::int32_t count, std::int32_t* sums) {
  // Copies, which the compiler knows are not changed through `sums`.
  const PhaseRows rows = phaseRows;
  const WindowSamples samples = windowSamples;
  std::int32_t i = 0;
  for (; i + 4 <= count; i += 4, clock += 4 * step) {
    const auto first = oneWindowSums<Vector, kExact>(rows, samples, clock);
    const auto second = oneWindowSums<Vector, kExact>(rows, samples, clock + step);
    const auto third = oneWindowSums<Vector, kExact>(rows, samples, clock + 2 * step);
    const auto fourth = oneWindowSums<Vector, kExact>(rows, samples, clock + 3 * step);
    Vector::storeSums(sums + i, first, second, third, fourth);
  }
  for (; i < count; i += 1, clock += step) {
    const auto only = oneWindowSums<Vector, kExact>(rows, samples, clock);
    const auto none = Vector::zero();
    std::int32_t four[4];
    Vector::storeSums(four, only, none, none, none);
    sums[i] = four[0];
  }
}

/// At a ratio of 1 the fractions are the clock's lower bits: those of four output samples are made at once.
template <typename Vector, std::int32_t kTaps>
void unityRowSums(const PhaseRows& phaseRows, const WindowSamples& windowSamples, std::uint32_t clock,
                  std::uint32_t step, std::int32_t count, std::int32_t* sums) {
  const PhaseRows rows = phaseRows;
  const WindowSamples samples = windowSamples;
  const auto zero = Vector::zero();
  auto clocks = Vector::fourSteps(clock, step);
  const auto fourSteps = Vector::splat32(static_cast<std::int32_t>(4 * step));
  const std::int32_t whole = count - count % 4;
  std::int32_t i = 0;
  const auto sumsOf = [&](auto index, typename Vector::Type left, typename Vector::Type right) {
    return windowSums<Vector, true, kTaps>(rows, samples, clock + index * step,
                                           Vector::template splatPair<index>(left),
                                           Vector::template splatPair<index>(right));
  };
  for (; i < whole; i += 4, clock += 4 * step) {
    const auto left = Vector::fractionPairs(clocks);
    const auto right = Vector::withoutSign(Vector::sub16(zero, left));
    clocks = Vector::add32(clocks, fourSteps);
    Vector::storeSums(sums + i, sumsOf(Index<0>{}, left, right), sumsOf(Index<1>{}, left, right),
                      sumsOf(Index<2>{}, left, right), sumsOf(Index<3>{}, left, right));
  }
  if (i < count) rowSums<Vector, true>(rows, samples, clock, step, count - i, sums + i);
}

/// Moves four vectors of 16-bit sums to the 32-bit ones.
template <typename Vector>
inline void carryOver(std::int32_t* sums, typename Vector::Type first, typename Vector::Type second,
                      typename Vector::Type third, typename Vector::Type fourth) {
  Vector::addTo(sums, first);
  Vector::addTo(sums + Vector::kLanes, second);
  Vector::addTo(sums + 2 * Vector::kLanes, third);
  Vector::addTo(sums + 3 * Vector::kLanes, fourth);
}

template <typename Vector>
void steadySums(const SteadyPhase& phase, const std::int16_t* columns, std::int32_t* sums) {
  constexpr std::int32_t kLanes = Vector::kLanes;
  constexpr std::int32_t kRun = 4 * kLanes;
  const auto zero = Vector::zero();
  for (std::int32_t i = 0; i < kRun; i += kLanes) Vector::widenTo(sums + i, zero);
  std::int32_t tap = 0;
  for (; tap < phase.unitTaps; ++tap) {
    const std::int16_t* samples = columns + phase.place[tap];
    for (std::int32_t i = 0; i < kRun; ++i) sums[i] += samples[i];
  }
  auto first = zero, second = zero, third = zero, fourth = zero;
  for (; tap < phase.taps; ++tap) {
    if (phase.carryOver[tap] != 0) {
      carryOver<Vector>(sums, first, second, third, fourth);
      first = second = third = fourth = zero;
    }
    const auto coef = Vector::splat(phase.coef[tap]);
    const std::int16_t* samples = columns + phase.place[tap];
    first = Vector::add16(first, Vector::roundedProducts(coef, Vector::load(samples)));
    second = Vector::add16(second, Vector::roundedProducts(coef, Vector::load(samples + kLanes)));
    third = Vector::add16(third, Vector::roundedProducts(coef, Vector::load(samples + 2 * kLanes)));
    fourth = Vector::add16(fourth, Vector::roundedProducts(coef, Vector::load(samples + 3 * kLanes)));
  }
  carryOver<Vector>(sums, first, second, third, fourth);
}

template <typename Vector, std::int32_t kColumns>
void fillColumns(const std::int16_t* samples, std::int32_t count, std::int32_t columnLength,
                 std::int16_t* to) {
  const std::int32_t length = count / kColumns;
  for (std::int32_t i = 0; i < length; ++i) {
    for (std::int32_t column = 0; column < kColumns; ++column) {
      to[column * columnLength + i] = samples[i * kColumns + column];
    }
  }
  for (std::int32_t column = 0; column < count % kColumns; ++column) {
    to[column * columnLength + length] = samples[length * kColumns + column];
  }
}

template <typename Vector>
void splitIntoColumns(const std::int16_t* samples, std::int32_t count, std::int32_t columns,
                      std::int32_t columnLength, std::int16_t* to) {
  switch (columns) {
    case 2:
      return fillColumns<Vector, 2>(samples, count, columnLength, to);
    case 3:
      return fillColumns<Vector, 3>(samples, count, columnLength, to);
    case 4:
      return fillColumns<Vector, 4>(samples, count, columnLength, to);
    case 5:
      return fillColumns<Vector, 5>(samples, count, columnLength, to);
    case 6:
      return fillColumns<Vector, 6>(samples, count, columnLength, to);
    case 7:
      return fillColumns<Vector, 7>(samples, count, columnLength, to);
    default:
      return fillColumns<Vector, 8>(samples, count, columnLength, to);
  }
}

template <typename Vector>
void finish(const std::int32_t* sums, std::int32_t count, std::int32_t gain, std::int16_t* output) {
  for (std::int32_t i = 0; i < count; ++i) {
    const std::int32_t value = ((sums[i] >> 2) * gain + (1 << 12)) >> 13;
    const std::int32_t low = value < -32768 ? -32768 : value;
    output[i] = static_cast<std::int16_t>(low > 32767 ? 32767 : low);
  }
}

/// kUnityTaps: how many taps a wing has at a ratio of 1, rounded up to whole vectors.
template <typename Vector, std::int32_t kUnityTaps>
constexpr Kernels makeKernels() {
  return {Vector::kLanes,
          4 * Vector::kLanes,
          rowSums<Vector, false>,
          rowSums<Vector, true>,
          unityRowSums<Vector, kUnityTaps>,
          kUnityTaps,
          steadySums<Vector>,
          splitIntoColumns<Vector>,
          finish<Vector>};
}

}  // namespace speech::audio::rate
