// The converter gives the model's samples, bit for bit, on every instruction set.

#include "tests/audio/rate_model.h"

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <span>

#include "audio/rate_conversion.h"

namespace {

using rate::Level;
using speech::test::ModelSetting;
using speech::test::RateModel;

struct Pair {
  std::int32_t inputRate, outputRate;
};

constexpr std::array kTableRates = {6000, 6024, 7000, 8000, 11025, 16000, 22050, 32000, 32075, 44100, 48000};
constexpr Pair kOtherPairs[] = {
    {12000, 8000},
    {24000, 4000},
    {24000, 8000},
    {4000, 96000},
    {96000, 4000},
    {15600, 15610},
    {44100, 44099},
    {44099, 44100},
    {4001, 16001},
    {37800, 12345},
    {192000, 5512},
    {1000, 16400},
    // Guards of 2047 and 2048 samples, and of more than their field holds.
    {61750, 1000},
    {61770, 1000},
    {29110, 100},
    {29120, 100},
    {494160, 8000},
    {20000, 10},
    // Steps of thousands of samples and of next to none; blocks of 65536 samples, which count as none.
    {32000, 1},
    {1, 32767},
    {1, 65536},
    {2, 32768},
    {1, 65537},
    {32768, 1}};

// One case in so many: all of them take half a minute of optimized code.
#if defined(NDEBUG) && !defined(__SANITIZE_ADDRESS__)
constexpr int kEvery = 5;
#else
constexpr int kEvery = 113;
#endif

/// Noise, a square wave, and noise that knows the largest and smallest sample only.
std::array<std::vector<std::int16_t>, 3> signals() {
  std::array<std::vector<std::int16_t>, 3> signals;
  std::minstd_rand random(1);
  for (int i = 0; i < 13000; ++i) {
    const auto noise = static_cast<std::int16_t>(random() >> 8);
    signals[0].push_back(noise);
    signals[1].push_back(i / 37 % 2 == 0 ? 32767 : -32768);
    signals[2].push_back(noise < 0 ? -32768 : 32767);
  }
  return signals;
}

class RateModelComparison : public testing::Test {
 protected:
  /// Every length around the ends of reads and of blocks, each with one of the quality's numbers.
  void comparePair(const Pair& pair, std::span<const std::uint16_t> qualities) {
    RateRequest request{nullptr, nullptr, 0, 0, pair.inputRate, pair.outputRate, 0, qualities[0]};
    const ModelSetting setting(request);
    const auto guard = static_cast<int>(std::min<std::int64_t>(setting.guard, 2048));
    const int block = 4096 - 2 * guard;
    for (const int edge :
         {2, guard, block, guard + block, 4096, 2 * block, guard + 2 * block, guard + 3 * block}) {
      for (const int length : {edge - 1, edge, edge + 1}) {
        if (++turn_ % kEvery != 0) continue;
        request.quality = qualities[static_cast<std::size_t>(turn_) % qualities.size()];
        request.inputCount = length;
        request.input = inputs_[static_cast<std::size_t>(turn_ / 2 % 3)].data();
        const float factor = static_cast<float>(pair.outputRate) / static_cast<float>(pair.inputRate);
        const double natural = static_cast<double>(factor * static_cast<float>(length)) + 0.5;
        const auto capacity = static_cast<std::int32_t>(std::min(natural, 100000.0));
        ASSERT_NO_FATAL_FAILURE(compare(request, capacity));
        const std::int32_t others[] = {capacity / 3, capacity + 1, capacity + 300, capacity + 3000, 1, 0};
        ASSERT_NO_FATAL_FAILURE(compare(request, others[turn_ / kEvery % 6]));
      }
    }
  }

  void compare(RateRequest request, std::int32_t capacity) {
    constexpr std::int16_t kUntouched = 12345;
    // Equal rates copy the input whatever the capacity.
    const auto room = static_cast<std::size_t>(std::max(capacity, request.inputCount)) + 8;
    std::vector<std::int16_t> expected(room, kUntouched);
    request.outputCapacity = capacity;
    request.output = expected.data();
    const std::int32_t answer = RateModel(request).convert();
    for (const Level level : {Level::plain, Level::sse2, Level::ssse3, Level::avx2}) {
      if (!rate::hasLevel(level)) continue;
      std::vector<std::int16_t> output(room, kUntouched);
      request.output = output.data();
      const std::int32_t result = rate::convert(request, level);
      const auto difference = std::ranges::mismatch(expected, output).in1 - expected.begin();
      ASSERT_TRUE(result == answer && difference == static_cast<std::ptrdiff_t>(room))
          << request.inputRate << " to " << request.outputRate << " Hz, quality " << request.quality << ", "
          << request.inputCount << " samples, room for " << capacity << ", level " << static_cast<int>(level)
          << ": " << result << " instead of " << answer << ", first difference at " << difference;
      ++comparisons_;
    }
  }

  void TearDown() override { RecordProperty("comparisons", comparisons_); }

  const std::array<std::vector<std::int16_t>, 3> inputs_ = signals();
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
}

// From 4000 to 48000 Hz a block has 12 samples for each of its own.
TEST_F(RateModelComparison, EndsWhereABlockMayStoreNoMore) {
  RateRequest request{inputs_[0].data(), nullptr, 3600, 0, 4000, 48000, 0, kRateQualitySmall};
  for (const std::int32_t capacity : {40961, 40962, 40963}) compare(request, capacity);
  // 198 samples come from the input, the others from the blocks after it.
  request.inputCount = 100;
  request.inputRate = 24000;
  compare(request, 45000);
}

INSTANTIATE_TEST_SUITE_P(Qualities, RateModelPairs,
                         testing::Values(std::vector<std::uint16_t>{0, 0x100, 0xFF00},
                                         std::vector<std::uint16_t>{1, 3, 0xFF, 0xFF01},
                                         std::vector<std::uint16_t>{2, 0x102, 0xFF02}));

}  // namespace
