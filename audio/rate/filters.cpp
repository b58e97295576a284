// The filters: a sinc that cuts off at 0.90 of the lower Nyquist rate, under a Kaiser window with beta 9.0.
// They are computed by the compiler.
//
// The angle of entry i is pi * 0.90 * i / 256 = pi * 9 * i / 2560, so every sine needed is one of a quarter
// wave of 1280 steps. The window is I0(beta * sqrt(1 - u^2)) / I0(beta), a power series in 1 - u^2: no square
// root is taken.

#include <array>
#include <cstddef>
#include <numbers>

#include "audio/rate/tables.h"

namespace speech::audio::rate {
namespace {

constexpr double kKaiserBeta = 9.0;
constexpr double kPeak = 32767;
constexpr int kQuarterWave = 1280;  // steps of pi / 2560
constexpr int kAnglePerEntry = 9;   // the same steps

/// sin(angle) for 0 <= angle <= pi / 2.
constexpr double sineOf(double angle) {
  double term = angle;
  double sum = angle;
  for (int n = 1; n < 13; ++n) {
    term *= -angle * angle / ((2.0 * n) * (2.0 * n + 1));
    sum += term;
  }
  return sum;
}

constexpr auto kQuarterSine = [] {
  std::array<double, kQuarterWave + 1> sine{};
  for (int i = 0; i <= kQuarterWave; ++i) {
    sine[static_cast<std::size_t>(i)] = sineOf(std::numbers::pi * i / (2.0 * kQuarterWave));
  }
  return sine;
}();

constexpr double sineOfSteps(int steps) {
  const int turn = steps % (4 * kQuarterWave);
  const int half = turn % (2 * kQuarterWave);
  const double value =
      kQuarterSine[static_cast<std::size_t>(half <= kQuarterWave ? half : 2 * kQuarterWave - half)];
  return turn < 2 * kQuarterWave ? value : -value;
}

constexpr int kBesselTerms = 32;  // the next one is below 1e-20 of the sum

constexpr auto kBesselSeries = [] {
  std::array<double, kBesselTerms> series{};
  double term = 1;
  for (int k = 0; k < kBesselTerms; ++k) {
    series[static_cast<std::size_t>(k)] = term;
    term *= kKaiserBeta * kKaiserBeta / (4.0 * (k + 1) * (k + 1));
  }
  return series;
}();

/// I0(beta * sqrt(squared)).
constexpr double besselOf(double squared) {
  double sum = 0;
  for (std::size_t k = kBesselSeries.size(); k-- > 0;) sum = sum * squared + kBesselSeries[k];
  return sum;
}

template <std::size_t WingLength>
constexpr std::array<std::int16_t, WingLength> makeCoef() {
  std::array<std::int16_t, WingLength> coef{};
  const double centre = besselOf(1);
  for (std::size_t i = 0; i < WingLength; ++i) {
    const int steps = static_cast<int>(i) * kAnglePerEntry;
    const double angle = std::numbers::pi * steps / (2.0 * kQuarterWave);
    const double sinc = i == 0 ? 1 : sineOfSteps(steps) / angle;
    const double place = static_cast<double>(i) / static_cast<double>(WingLength - 1);
    const double value = kPeak * sinc * besselOf(1 - place * place) / centre;
    // Kept: truncation toward zero after adding a half rounds negative entries unevenly.
    coef[i] = static_cast<std::int16_t>(value + 0.5);  // NOLINT(bugprone-incorrect-roundings): as said
  }
  return coef;
}

template <std::size_t WingLength>
constexpr std::array<std::int16_t, WingLength> makeDelta(const std::array<std::int16_t, WingLength>& coef) {
  std::array<std::int16_t, WingLength> delta{};
  for (std::size_t i = 0; i < WingLength; ++i) {
    const int next = i + 1 < WingLength ? coef[i + 1] : 0;
    delta[i] = static_cast<std::int16_t>(next - coef[i]);
  }
  return delta;
}

template <std::size_t WingLength>
constexpr auto makePeaks(const std::array<std::int16_t, WingLength>& coef) {
  std::array<std::int16_t, WingLength / kPeakSpacing> peaks{};
  std::int16_t peak = 0;
  for (std::size_t i = WingLength; i-- > 0;) {
    const auto magnitude = static_cast<std::int16_t>(coef[i] < 0 ? -coef[i] : coef[i]);
    if (magnitude > peak) peak = magnitude;
    if (i % kPeakSpacing == 0) peaks[i / kPeakSpacing] = peak;
  }
  return peaks;
}

constexpr auto kSmallCoef = makeCoef<6 * kStepsPerCrossing>();
constexpr auto kSmallDelta = makeDelta(kSmallCoef);
constexpr auto kSmallPeaks = makePeaks(kSmallCoef);
constexpr auto kLargeCoef = makeCoef<32 * kStepsPerCrossing>();
constexpr auto kLargeDelta = makeDelta(kLargeCoef);
constexpr auto kLargePeaks = makePeaks(kLargeCoef);

constexpr Filter kSmallFilter{kSmallCoef, kSmallDelta, kSmallPeaks};
constexpr Filter kLargeFilter{kLargeCoef, kLargeDelta, kLargePeaks};

}  // namespace

const Filter& smallFilter() { return kSmallFilter; }
const Filter& largeFilter() { return kLargeFilter; }

}  // namespace speech::audio::rate
