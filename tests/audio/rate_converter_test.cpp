// What RATEAPI answers, and the sound it makes.

#include "audio/rate_converter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <numbers>
#include <vector>

#include "audio/rate_parameters.h"

namespace {

constexpr std::int16_t kUntouched = 12345;

struct Conversion {
  std::int32_t result;
  std::vector<std::int16_t> output;  // the capacity, then a few samples that must stay untouched
};

Conversion convert(const std::vector<std::int16_t>& input, std::int32_t capacity, std::int32_t inputRate,
                   std::int32_t outputRate, std::uint16_t quality = kRateQualityLarge) {
  Conversion conversion{
      0, std::vector<std::int16_t>(static_cast<std::size_t>(std::max(capacity, 0)) + 8, kUntouched)};
  const RateRequest request{input.data(),
                            conversion.output.data(),
                            static_cast<std::int32_t>(input.size()),
                            capacity,
                            inputRate,
                            outputRate,
                            0,
                            quality};
  conversion.result = RATEAPI(&request);
  return conversion;
}

std::vector<std::int16_t> sine(double frequency, double amplitude, int sampleRateHz, int count) {
  std::vector<std::int16_t> samples(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) {
    const double angle = 2 * std::numbers::pi * frequency * i / sampleRateHz;
    samples[static_cast<std::size_t>(i)] =
        static_cast<std::int16_t>(std::lround(amplitude * std::sin(angle)));
  }
  return samples;
}

TEST(RateConverter, EqualRatesCopyWhateverTheCapacity) {
  const std::vector<std::int16_t> input{1, -2, 3, -32768, 32767};
  std::vector<std::int16_t> output(input.size());
  const RateRequest request{input.data(), output.data(), 5, 2, 22050, 22050, 0, kRateQualityLarge};
  EXPECT_EQ(RATEAPI(&request), 5);
  EXPECT_EQ(output, input);
}

TEST(RateConverter, NothingInMakesNothingAndTheImpossibleIsRefused) {
  constexpr auto kLargest = std::numeric_limits<std::int32_t>::max();
  std::int16_t sample = kUntouched;
  for (const std::int32_t count : {0, -1, -kLargest - 1}) {
    for (const std::int32_t outputRate : {8000, 16000}) {
      const RateRequest request{&sample, &sample, count, 1, 8000, outputRate, 0, kRateQualityLarge};
      EXPECT_EQ(RATEAPI(&request), 0);
    }
  }
  EXPECT_EQ(sample, kUntouched);
  EXPECT_EQ(RATEAPI(nullptr), -1);
  const RateRequest noInput{nullptr, &sample, 1, 1, 8000, 16000, 0, kRateQualityLarge};
  EXPECT_EQ(RATEAPI(&noInput), -1);
  const RateRequest noOutput{&sample, nullptr, 1, 1, 8000, 16000, 0, kRateQualityLarge};
  EXPECT_EQ(RATEAPI(&noOutput), -1);
  const std::vector<std::int16_t> input(100, 1000);
  for (const auto& [inputRate, outputRate] :
       {std::pair{0, 8000}, {8000, -1}, {0, 0}, {1, kLargest}, {kLargest, 1}}) {
    for (const auto quality : {kRateQualityLinear, kRateQualitySmall, kRateQualityLarge}) {
      EXPECT_EQ(convert(input, 100, inputRate, outputRate, quality).result, -1)
          << inputRate << ' ' << outputRate;
    }
  }
}

TEST(RateConverter, AFilterLongerThanTheWorkBufferIsRefused) {
  const std::vector<std::int16_t> input(10000, 1000);
  // Guards of 2^11 samples just fit: 61.7 times 33 and 291.2 times 7, plus 10.
  EXPECT_EQ(convert(input, 200, 6180, 100, 2).result, -1);
  EXPECT_GT(convert(input, 200, 6100, 100, 2).result, 0);
  EXPECT_EQ(convert(input, 200, 29200, 100, 1).result, -1);
  EXPECT_GT(convert(input, 200, 29100, 100, 1).result, 0);
  EXPECT_GT(convert(input, 200, 29200, 100, 0).result, 0);
}

TEST(RateConverter, DoublingMakesTheCapacityAndNoMore) {
  const auto input = sine(440, 20000, 8000, 8000);
  const Conversion whole = convert(input, 16000, 8000, 16000);
  for (const std::int32_t capacity : {16000, 0, -1, 1, 7, 8000, 8106, 8107}) {
    const Conversion part = convert(input, capacity, 8000, 16000);
    const std::int32_t stored = std::max(capacity, 0);
    EXPECT_EQ(part.result, stored);
    EXPECT_TRUE(std::equal(part.output.begin(), part.output.begin() + stored, whole.output.begin()));
    EXPECT_EQ(std::count(part.output.begin() + stored, part.output.end(), kUntouched), 8);
  }
}

TEST(RateConverter, ABlockThatWouldStoreTooMuchIsRefusedBeforeItIsStored) {
  const auto input = sine(440, 20000, 8000, 100);
  // The block after the end fills up to 40962 samples, not one more: 198 samples come from the input itself.
  EXPECT_EQ(convert(input, 198 + 40962, 8000, 16000).result, 198 + 40962);
  const Conversion refused = convert(input, 198 + 40963, 8000, 16000);
  EXPECT_EQ(refused.result, -1);
  EXPECT_EQ(std::count(refused.output.begin() + 198, refused.output.end(), kUntouched), 40963 + 8);
  // A ratio of 12 makes 48120 samples of the first block.
  EXPECT_EQ(convert(sine(440, 20000, 4000, 8000), 96000, 4000, 48000).result, -1);
}

TEST(RateConverter, FillsAnOversizedCapacityWithSilenceAfterTheWorkBuffer) {
  const Conversion conversion = convert(sine(440, 20000, 16000, 1000), 30000, 16000, 8000);
  EXPECT_EQ(conversion.result, 30000);
  EXPECT_EQ(std::count(conversion.output.begin() + 4096, conversion.output.begin() + 30000, 0), 30000 - 4096);
}

// Neither rate of a pair needs to be in the table of common rates: the same ratio gives the same samples.
TEST(RateConverter, RatesOutsideTheTableConvertAsTheirRatio) {
  const auto input = sine(440, 20000, 8000, 5000);
  EXPECT_EQ(convert(input, 10000, 8000, 16000).output, convert(input, 10000, 12000, 24000).output);
  EXPECT_EQ(convert(input, 2500, 16000, 8000).output, convert(input, 2500, 12000, 6000).output);
}

TEST(RateConverter, OnlyTheLowByteOfTheQualityCounts) {
  const auto input = sine(440, 20000, 8000, 500);
  const auto small = convert(input, 1000, 8000, 16000, 1).output;
  EXPECT_EQ(convert(input, 1000, 8000, 16000, 3).output, small);
  EXPECT_EQ(convert(input, 1000, 8000, 16000, 0xFF01).output, small);
  EXPECT_EQ(convert(input, 1000, 8000, 16000, 0x0100).output, convert(input, 1000, 8000, 16000, 0).output);
  EXPECT_NE(convert(input, 1000, 8000, 16000, 2).output, small);
}

TEST(RateConverter, LinearDrawsStraightLines) {
  const Conversion conversion = convert({0, 100, 300, -300, 32767, -32768, 0, 0}, 10, 8000, 16000, 0);
  EXPECT_EQ(conversion.result, 10);
  EXPECT_EQ((std::vector(conversion.output.begin(), conversion.output.begin() + 10)),
            (std::vector<std::int16_t>{0, 50, 100, 200, 300, 0, -300, 16234, 32767, 0}));
}

struct Tone {
  std::int32_t inputRate;
  std::int32_t outputRate;
  std::uint16_t quality;
};

class RateConverterTone : public testing::TestWithParam<Tone> {};

// A tone comes out as the same tone, a little weaker: the gain leaves room for overshoot.
TEST_P(RateConverterTone, KeepsItsPitchAndPlace) {
  const auto [inputRate, outputRate, quality] = GetParam();
  const auto input = sine(500, 20000, inputRate, inputRate);
  const Conversion conversion = convert(input, outputRate, inputRate, outputRate, quality);
  ASSERT_EQ(conversion.result, outputRate);
  const double gain = quality == kRateQualityLinear ? 1 : quality == kRateQualityLarge ? 0.95 : 0.85;
  // The clock counts in 1/32768 of an input sample, so the rates are met to about 1 in 100,000.
  const double step = rate::parametersFor(inputRate, outputRate)->step / 32768.0;
  const auto expected = sine(500 * step * outputRate / inputRate, 20000 * gain, outputRate, outputRate);
  int worst = 0;
  for (std::size_t i = 200; i + 400 < expected.size(); ++i) {
    worst = std::max(worst, std::abs(conversion.output[i] - expected[i]));
  }
  EXPECT_LT(worst, quality == kRateQualityLinear ? 400 : 120);
}

INSTANTIATE_TEST_SUITE_P(Rates, RateConverterTone,
                         testing::Values(Tone{8000, 16000, 2}, Tone{8000, 16000, 1}, Tone{8000, 16000, 0},
                                         Tone{44100, 48000, 2}, Tone{48000, 16000, 2}, Tone{22050, 16000, 2},
                                         Tone{22050, 16000, 1}, Tone{44100, 12345, 2}, Tone{6024, 32075, 2}));

TEST(RateConverter, TakesOutWhatTheLowerRateCannotHold) {
  const Conversion conversion = convert(sine(7000, 20000, 22050, 22050), 8000, 22050, 8000);
  ASSERT_EQ(conversion.result, 8000);
  for (std::size_t i = 200; i < 7800; ++i) ASSERT_LE(std::abs(conversion.output[i]), 20) << i;
}

}  // namespace
