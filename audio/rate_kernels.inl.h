#pragma once

// The kernels, written once over a vector type. Included by the rate_kernels_*.cpp only, each of which is
// compiled for another instruction set. Everything is a template over that file's own vector type and nothing
// of the standard library is called: a function shared between those files could be linked in the version of
// the wrong one.

#include <cstddef>
#include <cstdint>

#include "audio/rate_kernels.h"

namespace rate {

/// A number that is part of its type.
template <std::uint32_t kValue>
struct Index {
  constexpr operator std::uint32_t() const { return kValue; }
};

/// Counts in bytes, which leaves the compiler less to do.
template <typename Vector>
inline const std::int16_t* rowAt(const std::int16_t* rows, std::uint32_t row, std::int32_t taps) {
  const auto bytesPerRow = static_cast<std::uint32_t>(taps) * 2 * sizeof(std::int16_t);
  return reinterpret_cast<const std::int16_t*>(reinterpret_cast<const char*>(rows) + row * bytesPerRow);
}

/// Interpolated coefficients of taps k and up. `fraction` is how far between two entries the centre lies,
/// << 8.
template <typename Vector, bool kExact>
inline typename Vector::Type coefficients(const PhaseRows& rows, std::int32_t taps, const std::int16_t* row,
                                          std::int32_t k, typename Vector::Type fraction) {
  typename Vector::Type coef = Vector::load(row + k);
  typename Vector::Type delta = Vector::load(row + taps + k);
  if constexpr (!kExact) {
    // Where the fractions of centre and tap add up to a whole entry, the next row has the right one. The
    // fractions are 7 bits, so that shows in the sign.
    const typename Vector::Type both = Vector::add16(fraction, Vector::load(rows.between + k));
    const typename Vector::Type whole = Vector::signMask(both);
    fraction = Vector::withoutSign(both);
    const std::int16_t* next = row + 2 * taps;
    coef = Vector::select(whole, Vector::load(next + k), coef);
    delta = Vector::select(whole, Vector::load(next + taps + k), delta);
  }
  return Vector::add16(coef, Vector::mulHigh(delta, fraction));
}

/// The taps of both wings for the output sample at `clock`, as 32-bit sums still to be added up across the
/// vector. kTaps: the taps of a wing at a ratio of 1, or 0 where only `rows` knows them.
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
  // A phase of zero takes the right wing from a whole sample out, as it must: the centre belongs to the left.
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
    // A tap is four times the product's upper half and what its lower half's top three bits round to.
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
    narrow = Vector::add16(narrow, Vector::add16(Vector::taps(leftCoef, Vector::load(left + k)),
                                                 Vector::taps(rightCoef, Vector::load(right + k))));
  }
  return Vector::add32(sums, Vector::pairSums(narrow));
}

/// windowSums with the fractions worked out for one output sample.
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
  // Copies, which no store to `sums` can change behind the compiler's back.
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

/// At a ratio of 1 the fractions are the clock's lower bits: four output samples' are worked out at once.
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

template <typename Vector>
void steadySums(const SteadyPhase& phase, const std::int16_t* columns, std::int32_t* sums) {
  constexpr std::int32_t kRun = 4 * Vector::kLanes;
  const auto zero = Vector::zero();
  for (std::int32_t i = 0; i < kRun; i += Vector::kLanes) Vector::widenTo(sums + i, zero);
  std::int32_t tap = 0;
  for (; tap < phase.wholeTaps; ++tap) {
    const std::int16_t* samples = columns + phase.place[tap];
    for (std::int32_t i = 0; i < kRun; ++i) sums[i] += samples[i];
  }
  auto a = Vector::zero(), b = Vector::zero(), c = Vector::zero(), d = Vector::zero();
  for (; tap < phase.taps; ++tap) {
    if (phase.carryOver[tap] != 0) {
      Vector::addTo(sums, a), Vector::addTo(sums + Vector::kLanes, b);
      Vector::addTo(sums + 2 * Vector::kLanes, c), Vector::addTo(sums + 3 * Vector::kLanes, d);
      a = b = c = d = Vector::zero();
    }
    const auto coef = Vector::splat(phase.coef[tap]);
    const std::int16_t* samples = columns + phase.place[tap];
    a = Vector::add16(a, Vector::taps(coef, Vector::load(samples)));
    b = Vector::add16(b, Vector::taps(coef, Vector::load(samples + Vector::kLanes)));
    c = Vector::add16(c, Vector::taps(coef, Vector::load(samples + 2 * Vector::kLanes)));
    d = Vector::add16(d, Vector::taps(coef, Vector::load(samples + 3 * Vector::kLanes)));
  }
  Vector::addTo(sums, a), Vector::addTo(sums + Vector::kLanes, b);
  Vector::addTo(sums + 2 * Vector::kLanes, c), Vector::addTo(sums + 3 * Vector::kLanes, d);
}

template <typename Vector, std::int32_t kColumns>
void dealOut(const std::int16_t* samples, std::int32_t count, std::int32_t columnLength, std::int16_t* to) {
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
void deal(const std::int16_t* samples, std::int32_t count, std::int32_t columns, std::int32_t columnLength,
          std::int16_t* to) {
  switch (columns) {
    case 2:
      return dealOut<Vector, 2>(samples, count, columnLength, to);
    case 3:
      return dealOut<Vector, 3>(samples, count, columnLength, to);
    case 4:
      return dealOut<Vector, 4>(samples, count, columnLength, to);
    case 5:
      return dealOut<Vector, 5>(samples, count, columnLength, to);
    case 6:
      return dealOut<Vector, 6>(samples, count, columnLength, to);
    case 7:
      return dealOut<Vector, 7>(samples, count, columnLength, to);
    default:
      return dealOut<Vector, 8>(samples, count, columnLength, to);
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
          deal<Vector>,
          finish<Vector>};
}

}  // namespace rate
