#include "audio/rate_parameters.h"

#include <algorithm>
#include <array>
#include <limits>

namespace rate {
namespace {

constexpr double kUnityGainSmall = 12471;
constexpr double kUnityGainLarge = 14008;
constexpr double kWingReachSmall = 7;  // samples a side at a ratio of 1, with one to spare
constexpr double kWingReachLarge = 33;
constexpr double kGuardMargin = 10;
constexpr double kCoefStepUnity = 256;  // table entries per zero crossing

// A creep of whole samples past a block's end is a signed 16-bit number.
constexpr double kStepLimit = 32768.0 * kPhaseOne;

constexpr std::uint16_t guardOf(double reach) {
  constexpr double kMost = std::numeric_limits<std::uint16_t>::max();
  return static_cast<std::uint16_t>(
      std::min(static_cast<double>(static_cast<std::int64_t>(reach)) + kGuardMargin, kMost));
}

/// Drops the fraction, as the rules do, also behind the half that they add.
template <class Integer>
constexpr Integer truncated(double value) {
  return static_cast<Integer>(value);
}

/// The factor is single precision, everything made from it double: other roundings move some rows by one.
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

}  // namespace rate
