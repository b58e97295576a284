#include <algorithm>
#include <array>
#include <limits>

#include "audio/rate/tables.h"

namespace speech::audio::rate {
namespace {

// 0.846 and 0.951 of the gain that would leave a constant signal as it is, which leaves room for overshoot:
// the coefficients at one phase add up to 36413 in the small filter and 36438 in the large one, about 32767 /
// 0.90. A tap is shifted down by 14 and their sum by 2, and the result of the gain by 13. So 2^29 / 36413 =
// 14744 and 2^29 / 36438 = 14734 would be the gains of 1.
//
// A constant 10000 through the large filter gives taps that add up to about 10000 * 36438 >> 14 = 22240, then
// 22240 >> 2 = 5560, and 5560 * 14008 >> 13 = 9507. From 22050 to 16000 Hz the taps are 1 / 0.7256 as dense
// and add up to 30650. The gain 10165 (0.7256 * 14008) makes 9507 of 30650 >> 2 as well.
constexpr double kUnityGainSmall = 12471;
constexpr double kUnityGainLarge = 14008;
// Samples on each side at a ratio of 1, with one to spare.
constexpr double kWingReachSmall = 7;
constexpr double kWingReachLarge = 33;
constexpr double kGuardMargin = 10;
constexpr double kCoefStepUnity = 256;  // table entries per zero crossing

// The clock passes a block's end by whole samples that a signed 16-bit number has to hold.
constexpr double kStepLimit = 32768.0 * kPhaseOne;

constexpr std::uint16_t guardOf(double reach) {
  constexpr double kMost = std::numeric_limits<std::uint16_t>::max();
  return static_cast<std::uint16_t>(
      std::min(static_cast<double>(static_cast<std::int64_t>(reach)) + kGuardMargin, kMost));
}

/// Drops the fraction. The rules truncate, also after adding a half.
template <typename Integer>
constexpr Integer truncated(double value) {
  return static_cast<Integer>(value);
}

/// Kept: factor and inverse are single precision, everything made from them is double. Any other rounding
/// moves some rows by one. The guards take their inverse in double precision.
constexpr std::optional<Parameters> parametersByRule(std::int32_t inputRate, std::int32_t outputRate) {
  const float factor = static_cast<float>(outputRate) / static_cast<float>(inputRate);
  const float inverse = 1.0f / factor;
  const double step = static_cast<double>(inverse) * kPhaseOne + 0.5;
  if (step < 1 || step >= kStepLimit) return std::nullopt;

  const double narrowing = std::min(static_cast<double>(factor), 1.0);
  const double widening = std::max(1.0, 1.0 / static_cast<double>(factor));
  const double half = narrowing < 1 ? 0.5 : 0;
  return Parameters{truncated<std::uint32_t>(step),
                    truncated<std::uint32_t>(
                        std::min(static_cast<double>(factor) * kCoefStepUnity, kCoefStepUnity) * 128 + 0.5),
                    truncated<std::uint16_t>(narrowing * kUnityGainSmall + half),
                    truncated<std::uint16_t>(narrowing * kUnityGainLarge + half),
                    guardOf(widening * kWingReachSmall),
                    guardOf(widening * kWingReachLarge)};
}

constexpr std::array<std::int32_t, 11> kTableRates = {6000,  6024,  7000,  8000,  11025, 16000,
                                                      22050, 32000, 32075, 44100, 48000};

constexpr auto kTable = [] {
  std::array<Parameters, kTableRates.size() * kTableRates.size()> table{};
  for (std::size_t in = 0; in < kTableRates.size(); ++in) {
    for (std::size_t out = 0; out < kTableRates.size(); ++out) {
      Parameters& row = table[in * kTableRates.size() + out];
      row = *parametersByRule(kTableRates[in], kTableRates[out]);
      // Kept: these two rows have guards one larger than the rule gives, which moves every block's end.
      if (kTableRates[in] == 48000 && kTableRates[out] == 8000) row = {196608, 5461, 2079, 2335, 52, 208};
      if (kTableRates[in] == 48000 && kTableRates[out] == 16000) row = {98304, 10923, 4157, 4669, 31, 109};
    }
  }
  return table;
}();

std::optional<std::size_t> tableIndex(std::int32_t sampleRateHz) {
  const auto found = std::find(kTableRates.begin(), kTableRates.end(), sampleRateHz);
  if (found == kTableRates.end()) return std::nullopt;
  return static_cast<std::size_t>(found - kTableRates.begin());
}

}  // namespace

std::optional<Parameters> parametersFor(std::int32_t inputRate, std::int32_t outputRate) {
  const auto in = tableIndex(inputRate);
  const auto out = tableIndex(outputRate);
  if (in && out) return kTable[*in * kTableRates.size() + *out];
  return parametersByRule(inputRate, outputRate);
}

}  // namespace speech::audio::rate
