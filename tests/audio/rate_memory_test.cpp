#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <tuple>

#include <speech/audio.h>
#include "audio/rate_arrays.h"
#include "tests/audio/rate_samples.h"

namespace {

using speech::audio::clampedRates;
using speech::audio::InPlaceConversion;
using speech::test::chirp;
using speech::test::converted;
using speech::test::Samples;
using testing::Each;
using testing::ElementsAre;

struct Freed {
  void operator()(std::int16_t* memory) const { ExternFree(memory); }
};

struct Result {
  std::int32_t answer;
  std::unique_ptr<std::int16_t, Freed> buffer;

  Samples samples(std::size_t count) const { return {buffer.get(), buffer.get() + count}; }
};

Result pcmToPcm(const Samples& input, std::int32_t inRate, std::int32_t outRate, std::int32_t bits = 16,
                std::int32_t channels = 1) {
  const auto bytes = static_cast<std::int32_t>(input.size() * 2);
  std::int16_t* buffer = nullptr;
  const std::int32_t answer = RATEAPI_PCM2PCM(input.data(), &bytes, inRate, outRate, bits, channels, &buffer);
  return {answer, std::unique_ptr<std::int16_t, Freed>(buffer)};
}

TEST(PcmToPcm, GivesWhatTheConverterGives) {
  const Samples input = chirp(30001);
  for (const auto& [inRate, outRate] :
       {std::pair{8000, 16000}, {44100, 16000}, {16000, 44100}, {12000, 8000}}) {
    const Samples expected = converted(input, inRate, outRate);
    ASSERT_FALSE(expected.empty());
    const Result result = pcmToPcm(input, inRate, outRate);
    ASSERT_EQ(result.answer, static_cast<std::int32_t>(expected.size()) * 2);
    EXPECT_TRUE(result.samples(expected.size()) == expected) << inRate << " to " << outRate;
  }
}

TEST(PcmToPcm, KeepsEightBitSamplesAsWordsRoundedTowardsZero) {
  const Samples input{-32768, -256, -255, -1, 0, 255, 256, 32767};
  const Result result = pcmToPcm(input, 8000, 8000, 8);
  ASSERT_EQ(result.answer, 16);
  EXPECT_THAT(result.samples(8), ElementsAre(-128, -1, 0, 0, 0, 0, 1, 127));
}

TEST(PcmToPcm, TellsTheSizeOfOneChannelForAnyChannelCount) {
  const Samples input{1, -2, 3};
  for (const int channels : {2, 1, 0, -1, 5, std::numeric_limits<int>::min()}) {
    const Result result = pcmToPcm(input, 8000, 8000, 16, channels);
    ASSERT_EQ(result.answer, 6) << channels;
    EXPECT_EQ(result.samples(3), channels == 2 ? Samples({1, 1, -2}) : input) << channels;
    if (channels == 2) {
      EXPECT_EQ(result.samples(6), Samples({1, 1, -2, -2, 3, 3}));
    }
  }
}

TEST(PcmToPcm, HoldsRatesToWhatSpeechUses) {
  const Samples input = chirp(3000);
  for (const auto& [asked, used] : {std::pair{std::pair{3000, 96000}, std::pair{4000, 48000}},
                                    {{96000, -5}, {48000, 4000}},
                                    {{16000, 0}, {16000, 4000}}}) {
    const Samples expected = converted(input, used.first, used.second);
    const Result result = pcmToPcm(input, asked.first, asked.second);
    ASSERT_EQ(result.answer, static_cast<std::int32_t>(expected.size()) * 2);
    EXPECT_TRUE(result.samples(expected.size()) == expected);
  }
}

TEST(PcmToPcm, RefusesAnEmptyInput) {
  const std::int16_t sample = 1;
  auto* const untouched = reinterpret_cast<std::int16_t*>(0x10);
  std::int16_t* buffer = untouched;
  for (const std::int32_t bytes : {0, -1, std::numeric_limits<std::int32_t>::min()}) {
    EXPECT_EQ(RATEAPI_PCM2PCM(&sample, &bytes, 8000, 16000, 16, 1, &buffer), -1) << bytes;
  }
  const std::int32_t two = 2;
  EXPECT_EQ(RATEAPI_PCM2PCM(nullptr, &two, 8000, 16000, 16, 1, &buffer), -1);
  EXPECT_EQ(RATEAPI_PCM2PCM(&sample, nullptr, 8000, 16000, 16, 1, &buffer), -1);
  EXPECT_EQ(RATEAPI_PCM2PCM(&sample, &two, 8000, 16000, 16, 1, nullptr), -1);
  EXPECT_EQ(buffer, untouched);

  const std::int32_t half = 1;
  EXPECT_EQ(RATEAPI_PCM2PCM(&sample, &half, 8000, 16000, 16, 1, &buffer), 0) << "not a whole sample";
  ASSERT_NE(buffer, nullptr);
  ExternFree(buffer);
}

// From 4000 to 48000 Hz a block of input makes more samples than the converter's block buffer holds.
TEST(MemoryWrappers, PassOnThatTheConverterFailed) {
  Samples input = chirp(20000);
  const Samples original = input;
  EXPECT_EQ(converted(input, 4000, 48000).size(), 0u);
  const Result result = pcmToPcm(input, 4000, 48000);
  EXPECT_EQ(result.answer, -1);
  EXPECT_EQ(result.buffer, nullptr);

  input.resize(20000 * 12);
  const Samples before = input;
  std::int32_t bytes = 40000;
  EXPECT_EQ(RATEAPI_interface(input.data(), &bytes, 4000, 48000), -1);
  EXPECT_EQ(bytes, 40000);
  EXPECT_TRUE(input == before);
}

TEST(InPlaceWrapper, TellsTheSizeForANullBufferAndPutsTheResultOverTheInput) {
  for (const auto& [bytes, inRate, outRate, expected] : {std::tuple{1001, 8000, 16000, 2000},
                                                         {1000, 44100, 16000, 362},
                                                         {10, 8000, 8000, 10},
                                                         {0, 8000, 16000, 0},
                                                         {1000, 3000, 96000, 12000},
                                                         {10000, 16000, 22050, 13782}}) {
    std::int32_t size = bytes;
    EXPECT_EQ(RATEAPI_interface(nullptr, &size, inRate, outRate), expected);
    EXPECT_EQ(size, bytes);
  }
  Samples buffer = chirp(5000);
  const Samples expected = converted(buffer, 16000, 22050);
  buffer.resize(13782 / 2);
  std::int32_t bytes = 10000;
  EXPECT_EQ(RATEAPI_interface(buffer.data(), &bytes, 16000, 22050), 13782);
  EXPECT_EQ(bytes, 13782);
  EXPECT_TRUE(buffer == expected);
}

TEST(InPlaceWrapper, RefusesSizesThatAreNone) {
  std::int16_t sample = 7;
  std::int32_t bytes = -2;
  EXPECT_EQ(RATEAPI_interface(&sample, &bytes, 8000, 16000), -1);
  EXPECT_EQ(RATEAPI_interface(nullptr, &bytes, 8000, 16000), -1);
  EXPECT_EQ(RATEAPI_interface(&sample, nullptr, 8000, 16000), -1);
  bytes = std::numeric_limits<std::int32_t>::max();
  EXPECT_EQ(RATEAPI_interface(nullptr, &bytes, 4000, 48000), -1) << "more than 32 bits can tell";
  bytes = 0;
  EXPECT_EQ(RATEAPI_interface(&sample, &bytes, 8000, 16000), 0);
  EXPECT_EQ(sample, 7);
}

// The natural capacity is a single-precision number, which for this length is two samples short.
TEST(MemoryWrappers, CopyALongRecordingAtEqualRatesWhole) {
  Samples input((1 << 24) + 3, 5);
  input.back() = -9;
  const Result result = pcmToPcm(input, 16000, 16000);
  ASSERT_EQ(result.answer, static_cast<std::int32_t>(input.size() * 2));
  EXPECT_EQ(result.buffer.get()[input.size() - 1], -9);
  auto bytes = static_cast<std::int32_t>(input.size() * 2);
  EXPECT_EQ(RATEAPI_interface(input.data(), &bytes, 16000, 16000), bytes);
  EXPECT_EQ(input.back(), -9);
}

TEST(InPlace, GivesWhatSeparateArraysGive) {
  for (const auto& [inRate, outRate] : {std::pair{8000, 16000},
                                        {48000, 48000},
                                        {44100, 44099},
                                        {44099, 44100},
                                        {47999, 48000},
                                        {44100, 16000},
                                        {48000, 8000},
                                        {48000, 1000},
                                        {8000, 48000},
                                        {16000, 44100},
                                        {4720, 48000}}) {
    for (const std::size_t count : {0u, 1u, 100u, 4009u, 4010u, 4011u, 8020u, 200003u}) {
      const Samples input = chirp(count, 1);
      auto conversion = InPlaceConversion::prepare(static_cast<std::int32_t>(count), {inRate, outRate});
      ASSERT_TRUE(conversion);
      ASSERT_EQ(conversion->input().size(), count);
      std::ranges::copy(input, conversion->input().begin());
      const auto output = conversion->convert();
      ASSERT_TRUE(output) << count;
      EXPECT_TRUE(Samples(output->begin(), output->end()) == converted(input, inRate, outRate))
          << count << " samples, " << inRate << " to " << outRate;
    }
  }
}

TEST(InPlaceConversionLimits, NeedNoMemoryForWhatTheConverterRefuses) {
  EXPECT_FALSE(InPlaceConversion::prepare(std::numeric_limits<std::int32_t>::max(), {8000, 16000}));
  EXPECT_FALSE(InPlaceConversion::prepare(100, {0, 16000}));
  EXPECT_FALSE(InPlaceConversion::prepare(100, {8000, -1}));
  EXPECT_TRUE(InPlaceConversion::prepare(100, {-1, -1}));
}

}  // namespace
