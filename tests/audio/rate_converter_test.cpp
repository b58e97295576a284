// What RATEAPI answers, and the sound it makes.

#include <speech/audio.h>

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
  for (const std::int32_t anyRate : {22050, 0, -1, std::numeric_limits<std::int32_t>::min()}) {
    output.assign(input.size(), kUntouched);
    const RateRequest request{input.data(), output.data(), 5, 2, anyRate, anyRate, 0, kRateQualityLarge};
    EXPECT_EQ(RATEAPI(&request), 5) << anyRate;
    EXPECT_EQ(output, input) << anyRate;
  }
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
  for (const auto& [inputRate, outputRate] : {std::pair{0, 8000}, {8000, -1}, {1, kLargest}, {kLargest, 1}}) {
    for (const auto quality : {kRateQualityLinear, kRateQualitySmall, kRateQualityLarge}) {
      EXPECT_EQ(convert(input, 100, inputRate, outputRate, quality).result, -1)
          << inputRate << ' ' << outputRate;
    }
  }
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
                         testing::Values(Tone{8000, 16000, 0}, Tone{22050, 16000, 1}, Tone{44100, 12345, 2}));

TEST(RateConverter, TakesOutWhatTheLowerRateCannotHold) {
  const Conversion conversion = convert(sine(7000, 20000, 22050, 22050), 8000, 22050, 8000);
  ASSERT_EQ(conversion.result, 8000);
  for (std::size_t i = 200; i < 7800; ++i) ASSERT_LE(std::abs(conversion.output[i]), 20) << i;
}

}  // namespace
