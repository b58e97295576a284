// Every vector path gives the plain path's samples, bit for bit.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <random>
#include <span>
#include <string>
#include <vector>

#include "audio/rate_conversion.h"
#include "audio/rate_parameters.h"

namespace rate {
namespace {

constexpr std::array kTableRates = {6000, 6024, 7000, 8000, 11025, 16000, 22050, 32000, 32075, 44100, 48000};
constexpr std::array kOtherRates = {400,   1000,  1600,  4000,  4001,  5512,  9999,  12000, 16001,  24000,
                                    31999, 37800, 44056, 47952, 50000, 64000, 88200, 96000, 176400, 192000};
constexpr std::array kQualities = {kRateQualityLinear, kRateQualitySmall, kRateQualityLarge};

// All pairs at all edges take half a minute where code is optimized and runs natively, and minutes elsewhere.
#if defined(NDEBUG) && !defined(_WIN32) && !defined(__SANITIZE_ADDRESS__)
constexpr int kPairStep = 1;
constexpr int kEdgeStep = 1;
#elif defined(NDEBUG)
constexpr int kPairStep = 1;
constexpr int kEdgeStep = 5;  // another edge from pair to pair
#else
constexpr int kPairStep = 23;
constexpr int kEdgeStep = 5;  // another edge from pair to pair
#endif

std::vector<Level> vectorLevels() {
  std::vector<Level> levels;
  for (const Level level : {Level::sse2, Level::ssse3, Level::avx2}) {
    if (hasLevel(level)) levels.push_back(level);
  }
  return levels;
}

enum class Signal { noise, square, extremes };

std::vector<std::int16_t> makeSignal(Signal signal, std::size_t count) {
  std::minstd_rand random(static_cast<unsigned>(count) + 1);
  std::vector<std::int16_t> samples(count);
  for (std::size_t i = 0; i < count; ++i) {
    const bool high = signal == Signal::square ? i / 37 % 2 == 0 : (random() >> 7) % 2 == 0;
    const auto noise = static_cast<std::int16_t>(random() >> 8);
    samples[i] = signal == Signal::noise ? noise : high ? std::int16_t{32767} : std::int16_t{-32768};
  }
  return samples;
}

std::int32_t naturalCapacity(std::size_t inputCount, std::int32_t inputRate, std::int32_t outputRate) {
  return static_cast<std::int32_t>(static_cast<double>(inputCount) * outputRate / inputRate + 0.5);
}

/// Converts on every level; any difference from the plain one fails the test.
void expectLevelsAgree(std::span<const std::int16_t> input, std::int32_t capacity, std::int32_t inputRate,
                       std::int32_t outputRate, std::uint16_t quality) {
  constexpr std::int16_t kUntouched = 12345;
  const auto room = static_cast<std::size_t>(capacity) + 8;
  std::vector<std::int16_t> plain(room, kUntouched);
  RateRequest request{
      input.data(), plain.data(), static_cast<std::int32_t>(input.size()), capacity, inputRate, outputRate, 0,
      quality};
  const std::int32_t plainResult = convert(request, Level::plain);
  for (const Level level : vectorLevels()) {
    std::vector<std::int16_t> output(room, kUntouched);
    request.output = output.data();
    const std::int32_t result = convert(request, level);
    const auto difference = std::ranges::mismatch(plain, output).in1 - plain.begin();
    ASSERT_TRUE(result == plainResult && difference == static_cast<std::ptrdiff_t>(room))
        << inputRate << " to " << outputRate << " Hz, quality " << quality << ", " << input.size()
        << " samples, room for " << capacity << ", level " << static_cast<int>(level) << ": " << result
        << " instead of " << plainResult << ", first difference at " << difference;
  }
}

TEST(RateLevels, TheMachineHasAVectorLevel) { EXPECT_FALSE(vectorLevels().empty()); }

/// Input lengths at which the end meets an edge of a block: of its guards, of the block, of the work buffer.
std::array<int, 7> blockEdges(std::int32_t inputRate, std::int32_t outputRate, std::uint16_t quality) {
  const Parameters parameters = *parametersFor(inputRate, outputRate);
  const int guard = quality == kRateQualityLinear  ? 10
                    : quality == kRateQualityLarge ? parameters.guardLarge
                                                   : parameters.guardSmall;
  const int block = 4096 - 2 * guard;
  return {2, guard, block, block + guard, 4096, 2 * block, 2 * block + guard};
}

// Every pair ends at every edge, or a sample to either side of it.
TEST(RateLevels, AgreeOnEveryPairOfRates) {
  std::vector<int> rates(kTableRates.begin(), kTableRates.end());
  rates.insert(rates.end(), kOtherRates.begin(), kOtherRates.end());
  const auto noise = makeSignal(Signal::noise, 9000);
  const auto square = makeSignal(Signal::square, 9000);
  int pair = 0;
  int turn = 0;
  for (const int inputRate : rates) {
    for (const int outputRate : rates) {
      if (inputRate == outputRate || ++pair % kPairStep != 0) continue;
      for (const std::uint16_t quality : kQualities) {
        const auto edges = blockEdges(inputRate, outputRate, quality);
        // Rates far apart reach no second block: the filter is refused, or the first block would store too
        // much.
        const bool close = outputRate / inputRate < 10 && inputRate / outputRate < 60;
        const std::size_t edgeCount = close ? edges.size() : 3;
        for (std::size_t i = 0; i < edgeCount; ++i) {
          if (++turn % kEdgeStep != 0) continue;
          const auto length = static_cast<std::size_t>(std::clamp(edges[i] + turn % 3 - 1, 1, 9000));
          const auto& signal = turn % 2 == 0 ? noise : square;
          ASSERT_NO_FATAL_FAILURE(expectLevelsAgree(std::span(signal).first(length),
                                                    naturalCapacity(length, inputRate, outputRate), inputRate,
                                                    outputRate, quality));
        }
      }
    }
  }
}

struct Pair {
  std::int32_t inputRate;
  std::int32_t outputRate;
};

void PrintTo(const Pair& pair, std::ostream* out) { *out << pair.inputRate << " to " << pair.outputRate; }

class RateLevelsAtBlockEdges : public testing::TestWithParam<Pair> {};

TEST_P(RateLevelsAtBlockEdges, Agree) {
  const auto [inputRate, outputRate] = GetParam();
  for (const std::uint16_t quality : kQualities) {
    const auto edges = blockEdges(inputRate, outputRate, quality);
    for (const int edge : edges) {
      for (const int length : {edge - 1, edge, edge + 1}) {
        for (const Signal signal : {Signal::noise, Signal::extremes}) {
          const auto input = makeSignal(signal, static_cast<std::size_t>(length));
          const std::int32_t natural = naturalCapacity(input.size(), inputRate, outputRate);
          ASSERT_NO_FATAL_FAILURE(expectLevelsAgree(input, natural, inputRate, outputRate, quality));
        }
      }
    }
    // Room for more than the input makes, which the block after the end fills, and for less.
    const auto input = makeSignal(Signal::square, static_cast<std::size_t>(edges[3] + 17));
    const std::int32_t natural = naturalCapacity(input.size(), inputRate, outputRate);
    for (const std::int32_t capacity : {natural / 3, natural + 1, natural + 5000, natural + 45000}) {
      ASSERT_NO_FATAL_FAILURE(expectLevelsAgree(input, capacity, inputRate, outputRate, quality));
    }
  }
}

#if !defined(NDEBUG)
INSTANTIATE_TEST_SUITE_P(Rates, RateLevelsAtBlockEdges,
                         testing::Values(Pair{8000, 16000}, Pair{22050, 16000}, Pair{48000, 16000}));
#else
INSTANTIATE_TEST_SUITE_P(Rates, RateLevelsAtBlockEdges,
                         testing::Values(Pair{8000, 16000}, Pair{16000, 8000}, Pair{22050, 16000},
                                         Pair{16000, 22050}, Pair{48000, 16000}, Pair{16000, 48000},
                                         Pair{44100, 48000}, Pair{48000, 8000}, Pair{48000, 32000},
                                         Pair{24000, 5000}, Pair{6000, 6024}, Pair{192000, 4001},
                                         Pair{8000, 64000}));
#endif

}  // namespace
}  // namespace rate
