// Every vector path gives the plain path's samples, bit for bit.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <random>
#include <span>
#include <vector>

#include "audio/rate_conversion.h"
#include "audio/rate_parameters.h"

namespace rate {
namespace {

constexpr std::array kRates = {400,   1000,  1600,  4000,  4001,  5512,  6000,  6024,   7000,  8000,  9999,
                               11025, 12000, 16000, 16001, 22050, 24000, 31999, 32000,  32075, 37800, 44056,
                               44100, 47952, 48000, 50000, 64000, 88200, 96000, 176400, 192000};
constexpr std::array kQualities = {kRateQualityLinear, kRateQualitySmall, kRateQualityLarge};
constexpr std::size_t kLongestInput = 9000;

// All cases take half a minute where code is optimized and runs natively, and minutes elsewhere: there only
// some of them are tried, others from pair to pair.
#if defined(NDEBUG) && !defined(_WIN32) && !defined(__SANITIZE_ADDRESS__)
constexpr int kStep = 1;
#elif defined(NDEBUG)
constexpr int kStep = 5;
#else
constexpr int kStep = 113;
#endif

std::vector<Level> vectorLevels() {
  std::vector<Level> levels;
  for (const Level level : {Level::sse2, Level::ssse3, Level::avx2}) {
    if (hasLevel(level)) levels.push_back(level);
  }
  return levels;
}

TEST(RateLevels, TheMachineHasAVectorLevel) { EXPECT_FALSE(vectorLevels().empty()); }

/// Noise, a square wave, and noise that knows the largest and smallest sample only.
std::array<std::vector<std::int16_t>, 3> signals() {
  std::array<std::vector<std::int16_t>, 3> signals;
  std::minstd_rand random(1);
  for (std::size_t i = 0; i < kLongestInput; ++i) {
    const auto noise = static_cast<std::int16_t>(random() >> 8);
    signals[0].push_back(noise);
    signals[1].push_back(i / 37 % 2 == 0 ? 32767 : -32768);
    signals[2].push_back(noise < 0 ? -32768 : 32767);
  }
  return signals;
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

/// Input lengths at which the end meets an edge of a block: of its guards, of the block, of the work buffer.
std::array<int, 7> blockEdges(std::int32_t inputRate, std::int32_t outputRate, std::uint16_t quality) {
  const Parameters parameters = *parametersFor(inputRate, outputRate);
  const int guard = quality == kRateQualityLinear  ? 10
                    : quality == kRateQualityLarge ? parameters.guardLarge
                                                   : parameters.guardSmall;
  const int block = 4096 - 2 * guard;
  return {2, guard, block, block + guard, 4096, 2 * block, 2 * block + guard};
}

// Every pair ends at every edge, or a sample to either side of it, with room for all, for more and for less.
TEST(RateLevels, AgreeOnEveryPairOfRates) {
  const auto inputs = signals();
  int turn = 0;
  for (const int inputRate : kRates) {
    for (const int outputRate : kRates) {
      if (inputRate == outputRate) continue;
      // Rates far apart reach no second block: the filter is refused, or the first block would store too
      // much.
      const bool close = outputRate / inputRate < 10 && inputRate / outputRate < 60;
      for (const std::uint16_t quality : kQualities) {
        const auto edges = blockEdges(inputRate, outputRate, quality);
        for (const int edge : std::span(edges).first(close ? edges.size() : 3)) {
          if (++turn % kStep != 0) continue;
          const auto length = static_cast<std::size_t>(std::clamp(edge + turn % 3 - 1, 1, 9000));
          const auto natural =
              static_cast<std::int32_t>(static_cast<double>(length) * outputRate / inputRate + 0.5);
          const std::int32_t capacities[] = {natural, natural, natural / 3, natural + 1, natural + 5000};
          const auto input = std::span(inputs[static_cast<std::size_t>(turn / 3 % 3)]).first(length);
          ASSERT_NO_FATAL_FAILURE(
              expectLevelsAgree(input, capacities[turn / kStep % 5], inputRate, outputRate, quality));
        }
      }
    }
  }
}

// Two of the common pairs in every way: all edges, all signals, and room beyond the block after the end.
TEST(RateLevels, AgreeOnCommonPairsInEveryWay) {
  const auto inputs = signals();
  for (const auto& [inputRate, outputRate] : {std::pair{22050, 16000}, {16000, 44100}}) {
    for (const std::uint16_t quality : kQualities) {
      for (const int edge : blockEdges(inputRate, outputRate, quality)) {
        for (const int length : {edge - 1, edge, edge + 1}) {
          for (const auto& signal : inputs) {
            const auto input = std::span(signal).first(static_cast<std::size_t>(length));
            const int natural = static_cast<int>(length * 1.0 * outputRate / inputRate + 0.5);
            ASSERT_NO_FATAL_FAILURE(expectLevelsAgree(input, natural, inputRate, outputRate, quality));
          }
          const auto input = std::span(inputs[1]).first(static_cast<std::size_t>(length));
          ASSERT_NO_FATAL_FAILURE(expectLevelsAgree(input, 45000, inputRate, outputRate, quality));
        }
      }
    }
  }
}

}  // namespace
}  // namespace rate
