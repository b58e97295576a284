// RATEAPI: the model's samples on every instruction set, the numbers behind them, and what is refused.

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

#include "audio/rate/converter.h"
#include "audio/rate/tables.h"
#include "tests/audio/rate_model.h"

namespace {

using namespace speech::audio::rate;
using namespace speech::test;

constexpr std::int32_t kLargest = std::numeric_limits<std::int32_t>::max();
constexpr std::int16_t kUntouched = 12345;

struct Pair {
  std::int32_t inputRate, outputRate;
};

constexpr std::array kTableRates = {6000, 6024, 7000, 8000, 11025, 16000, 22050, 32000, 32075, 44100, 48000};
// Others, then guards of 2047 and 2048 samples and of more than their field holds, then steps of thousands of
// samples and of next to none, blocks of 65536 samples, which count as none, and rates that are refused.
constexpr Pair kOtherPairs[] = {{12000, 8000},  {24000, 4000},  {24000, 8000},  {4000, 48000},  {4000, 96000},
                                {96000, 4000},  {15600, 15610}, {44100, 44099}, {44099, 44100}, {4001, 16001},
                                {37800, 12345}, {192000, 5512}, {1000, 16400},  {61750, 1000},  {61770, 1000},
                                {29110, 100},   {29120, 100},   {494160, 8000}, {20000, 10},    {32000, 1},
                                {1, 32767},     {1, 65536},     {2, 32768},     {1, 65537},     {32768, 1},
                                {1, kLargest},  {kLargest, 1},  {0, 8000},      {8000, -1}};

// One case in so many: all of them take half a minute of optimized code.
#if defined(NDEBUG) && !defined(__SANITIZE_ADDRESS__)
constexpr int kEvery = 5;
#else
constexpr int kEvery = 113;
#endif

class RateModelComparison : public testing::Test {
 protected:
  /// Noise, a square wave, and noise that knows the largest and smallest sample only.
  RateModelComparison() {
    inputs_[0] = noise(13000);
    for (const int sample : inputs_[0]) {
      inputs_[1].push_back(inputs_[1].size() / 37 % 2 == 0 ? 32767 : -32768);
      inputs_[2].push_back(sample < 0 ? -32768 : 32767);
    }
  }

  /// Lengths around the ends of reads and of blocks, each with one of the quality's numbers.
  void comparePair(const Pair& pair, std::span<const std::uint16_t> qualities) {
    RateRequest request{nullptr, nullptr, 0, 0, pair.inputRate, pair.outputRate, 0, qualities[0]};
    const auto guard = static_cast<int>(std::min<std::int64_t>(ModelSetting(request).guard, 2048));
    const int block = 4096 - 2 * guard;
    for (const int edge :
         {2, guard, block, guard + block, 4096, 2 * block, guard + 2 * block, guard + 3 * block}) {
      for (const int length : {edge - 1, edge, edge + 1}) {
        if (++turn_ % kEvery != 0) continue;
        request.quality = qualities[static_cast<std::size_t>(turn_) % qualities.size()];
        request.inputCount = length;
        request.input = inputs_[static_cast<std::size_t>(turn_ / 2 % 3)].data();
        const double natural = 1.0 * length * std::max(pair.outputRate, 0) / std::max(pair.inputRate, 1);
        const auto capacity = static_cast<std::int32_t>(std::clamp(natural + 0.5, 0.0, 100000.0));
        ASSERT_NO_FATAL_FAILURE(compare(request, capacity));
        const std::int32_t others[] = {capacity / 3, capacity + 1, capacity + 300, capacity + 3000, 1, 0};
        ASSERT_NO_FATAL_FAILURE(compare(request, others[turn_ / kEvery % 6]));
      }
    }
  }

  void compare(RateRequest request, std::int32_t capacity) {
    // Equal rates copy the input whatever the capacity.
    const auto room = static_cast<std::size_t>(std::max(capacity, request.inputCount)) + 8;
    std::vector<std::int16_t> expected(room, kUntouched);
    request.outputCapacity = capacity;
    request.output = expected.data();
    const std::int32_t answer = RateModel(request).convert();
    for (const Level level : {Level::kPlain, Level::kSse2, Level::kAvx2}) {
      if (!hasLevel(level)) continue;
      std::vector<std::int16_t> output(room, kUntouched);
      request.output = output.data();
      const std::int32_t result = convert(request, level);
      const auto difference = std::ranges::mismatch(expected, output).in1 - expected.begin();
      ASSERT_TRUE(result == answer && difference == static_cast<std::ptrdiff_t>(room))
          << request.inputRate << " to " << request.outputRate << " Hz, quality " << request.quality << ", "
          << request.inputCount << " samples, room for " << capacity << ", level " << static_cast<int>(level)
          << ": " << result << " instead of " << answer << ", first difference at " << difference;
      ++comparisons_;
    }
  }

  void TearDown() override { RecordProperty("comparisons", comparisons_); }

  std::array<std::vector<std::int16_t>, 3> inputs_;
  int turn_ = 0;
  int comparisons_ = 0;
};

class RateModelPairs : public RateModelComparison,
                       public testing::WithParamInterface<std::vector<std::uint16_t>> {};

TEST_P(RateModelPairs, GiveTheModelsSamples) {
  for (const std::int32_t inputRate : kTableRates) {
    for (const std::int32_t outputRate : kTableRates) {
      ASSERT_NO_FATAL_FAILURE(comparePair({inputRate, outputRate}, GetParam()));
    }
  }
  for (const Pair& pair : kOtherPairs) ASSERT_NO_FATAL_FAILURE(comparePair(pair, GetParam()));
  EXPECT_TRUE(hasLevel(Level::kSse2));
}

INSTANTIATE_TEST_SUITE_P(Qualities, RateModelPairs,
                         testing::Values(std::vector<std::uint16_t>{0, 0x100, 0xFF00},
                                         std::vector<std::uint16_t>{1, 3, 0xFF, 0xFF01},
                                         std::vector<std::uint16_t>{2, 0x102, 0xFF02}));

// From 4000 to 48000 Hz a block has 12 samples for each of its own.
TEST_F(RateModelComparison, EndsWhereABlockMayStoreNoMore) {
  RateRequest request{inputs_[0].data(), nullptr, 3600, 0, 4000, 48000, 0, kRateQualitySmall};
  for (const std::int32_t capacity : {40961, 40962, 40963}) compare(request, capacity);
  // 198 samples come from the input, the others from the blocks after it.
  request.inputCount = 100;
  request.inputRate = 24000;
  compare(request, 45000);
}

TEST(RateParameters, AreTheKnownRows) {
  struct Row {
    Pair rates;
    Parameters parameters;
  };
  // The last one has no row of its own: only a stored row's ratio.
  const Row rows[] = {{{8000, 16000}, {16384, 32768, 12471, 14008, 17, 43}},
                      {{16000, 8000}, {65536, 16384, 6236, 7004, 24, 76}},
                      {{22050, 16000}, {45158, 23777, 9049, 10165, 19, 55}},
                      {{48000, 6000}, {262144, 4096, 1559, 1751, 66, 274}},
                      {{48000, 8000}, {196608, 5461, 2079, 2335, 52, 208}},
                      {{48000, 16000}, {98304, 10923, 4157, 4669, 31, 109}},
                      {{32075, 32075}, {32768, 32768, 12471, 14008, 17, 43}},
                      {{24000, 4000}, {196608, 5461, 2079, 2335, 51, 207}}};
  for (const auto& [rates, parameters] : rows) {
    EXPECT_EQ(parametersFor(rates.inputRate, rates.outputRate), parameters) << rates.inputRate;
  }
}

TEST(RateFilters, AreTheModelsAndHoldKnownNumbers) {
  for (const bool isLarge : {false, true}) {
    const auto& [coef, coefDelta, peaks] = isLarge ? largeFilter() : smallFilter();
    const ModelFilter model(isLarge ? 32 : 6);
    EXPECT_EQ((std::vector<int>{coef[1], coef[2], coef[3], coef[7], coef[256], coef.back()}),
              isLarge ? std::vector({32766, 32764, 32761, 32734, 3566, 0})
                      : std::vector({32766, 32764, 32760, 32731, 3180, -1}));
    EXPECT_TRUE(std::ranges::equal(coef, model.coef));
    EXPECT_TRUE(std::ranges::equal(coefDelta, model.delta));
    for (std::size_t i = 0; i < peaks.size(); ++i) {
      const auto [lowest, highest] = std::ranges::minmax(coef.subspan(i * kPeakSpacing));
      EXPECT_EQ(peaks[i], std::max(std::abs(lowest), std::abs(highest))) << i;
    }
  }
}

TEST(RateConverter, EqualRatesCopyWhateverTheCapacityAndTheRate) {
  const std::vector<std::int16_t> input{1, -2, 3, -32768, 32767};
  for (const std::int32_t anyRate : {22050, 0, -1, std::numeric_limits<std::int32_t>::min()}) {
    std::vector<std::int16_t> output(input.size());
    const RateRequest request{input.data(), output.data(), 5, 2, anyRate, anyRate, 0, kRateQualityLarge};
    EXPECT_EQ(RATEAPI(&request), 5) << anyRate;
    EXPECT_EQ(output, input) << anyRate;
  }
}

TEST(RateConverter, MakesNothingOfNothingAndRefusesNullPointers) {
  std::int16_t sample = kUntouched;
  for (const std::int32_t outputRate : {8000, 16000}) {
    for (const std::int32_t count : {0, -1, -kLargest - 1}) {
      const RateRequest request{&sample, &sample, count, 1, 8000, outputRate, 0, kRateQualityLarge};
      EXPECT_EQ(RATEAPI(&request), 0);
    }
    const RateRequest noInput{nullptr, &sample, 1, 1, 8000, outputRate, 0, kRateQualityLarge};
    EXPECT_EQ(RATEAPI(&noInput), -1);
    const RateRequest noOutput{&sample, nullptr, 1, 1, 8000, outputRate, 0, kRateQualityLarge};
    EXPECT_EQ(RATEAPI(&noOutput), -1);
  }
  const RateRequest noRoom{&sample, &sample, 1, -1, 8000, 16000, 0, kRateQualityLarge};
  EXPECT_EQ(RATEAPI(&noRoom), 0);
  EXPECT_EQ(sample, kUntouched);
  EXPECT_EQ(RATEAPI(nullptr), -1);
}

TEST(RateConverter, LinearDrawsStraightLines) {
  const std::vector<std::int16_t> input{0, 100, 300, -300, 32767, -32768, 0, 0};
  std::vector<std::int16_t> output(10);
  const RateRequest request{input.data(), output.data(), 8, 10, 8000, 16000, 0, kRateQualityLinear};
  EXPECT_EQ(RATEAPI(&request), 10);
  EXPECT_EQ(output, (std::vector<std::int16_t>{0, 50, 100, 200, 300, 0, -300, 16234, 32767, 0}));
}

}  // namespace
