// The rate converter's wrappers from memory to memory, and the conversion that those for files use.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <utility>

#include "audio/rate/arrays.h"
#include "tests/audio/rate_model.h"

namespace {

using speech::audio::rate::InPlaceConversion;
using namespace speech::test;
using namespace testing;

constexpr auto kLargest = std::numeric_limits<std::int32_t>::max();

/// RATEAPI_PCM2PCM's answer and the samples that it stands for.
std::pair<std::int32_t, Samples> pcmToPcm(const Samples& input, std::int32_t inRate, std::int32_t outRate,
                                          std::int32_t bits = 16, std::int32_t channels = 1) {
  const auto bytes = static_cast<std::int32_t>(input.size() * 2);
  std::int16_t* buffer = nullptr;
  const std::int32_t answer = RATEAPI_PCM2PCM(input.data(), &bytes, inRate, outRate, bits, channels, &buffer);
  const Samples samples(buffer, buffer + std::max(answer, 0) / 2 * (channels == 2 ? 2 : 1));
  ExternFree(buffer);
  return {answer, samples};
}

TEST(PcmToPcm, GivesTheModelsSamplesAtRatesThatSpeechUses) {
  const Samples input = noise(12001);
  for (const auto& [inRate, outRate] :
       {std::pair{8000, 16000}, {44100, 16000}, {16000, 44100}, {12000, 8000}, {96000, -5}}) {
    const auto [answer, samples] = pcmToPcm(input, inRate, outRate);
    EXPECT_EQ(answer, static_cast<std::int32_t>(samples.size()) * 2);
    EXPECT_TRUE(samples == convertedByModel(input, std::min(inRate, 48000), std::max(outRate, 4000)))
        << inRate;
  }
}

TEST(PcmToPcm, KeepsEightBitSamplesAsWordsRoundedTowardsZero) {
  const auto [answer, samples] = pcmToPcm({-32768, -256, -255, -1, 0, 255, 256, 32767}, 8000, 8000, 8);
  EXPECT_EQ(answer, 16);
  EXPECT_THAT(samples, ElementsAre(-128, -1, 0, 0, 0, 0, 1, 127));
}

TEST(PcmToPcm, TellsTheSizeOfOneChannelForAnyChannelCount) {
  const Samples input{1, -2, 3};
  for (const int channels : {2, 1, 0, -1, 5, std::numeric_limits<int>::min()}) {
    const auto [answer, samples] = pcmToPcm(input, 8000, 8000, 16, channels);
    EXPECT_EQ(answer, 6) << channels;
    EXPECT_EQ(samples, channels == 2 ? Samples({1, 1, -2, -2, 3, 3}) : input);
  }
}

TEST(PcmToPcm, RefusesAnEmptyInput) {
  const std::int16_t sample = 1;
  const std::int32_t two = 2, half = 1;
  auto* const untouched = reinterpret_cast<std::int16_t*>(0x10);
  std::int16_t* buffer = untouched;
  for (const std::int32_t bytes : {0, -1, -kLargest - 1}) {
    EXPECT_EQ(RATEAPI_PCM2PCM(&sample, &bytes, 8000, 16000, 16, 1, &buffer), -1) << bytes;
  }
  EXPECT_EQ(RATEAPI_PCM2PCM(nullptr, &two, 8000, 16000, 16, 1, &buffer), -1);
  EXPECT_EQ(RATEAPI_PCM2PCM(&sample, nullptr, 8000, 16000, 16, 1, &buffer), -1);
  EXPECT_EQ(RATEAPI_PCM2PCM(&sample, &two, 8000, 16000, 16, 1, nullptr), -1);
  EXPECT_EQ(buffer, untouched);
  EXPECT_EQ(RATEAPI_PCM2PCM(&sample, &half, 8000, 16000, 16, 1, &buffer), 0) << "not a whole sample";
  ASSERT_NE(buffer, nullptr);
  ExternFree(buffer);
}

// From 4000 to 48000 Hz a block of input makes more samples than may be stored.
TEST(MemoryWrappers, PassOnThatTheConverterFailed) {
  Samples input = noise(20000);
  EXPECT_EQ(pcmToPcm(input, 4000, 48000).first, -1);
  input.resize(20000 * 12);
  const Samples before = input;
  std::int32_t bytes = 40000;
  EXPECT_EQ(RATEAPI_interface(input.data(), &bytes, 4000, 48000), -1);
  EXPECT_EQ(bytes, 40000);
  EXPECT_TRUE(input == before);
}

TEST(InPlaceWrapper, TellsTheSizeForANullBufferAndPutsTheResultOverTheInput) {
  struct SizeCase {
    std::int32_t bytes, inRate, outRate, expected;
  };
  const SizeCase cases[] = {{1001, 8000, 16000, 2000},  {1000, 44100, 16000, 362},
                            {10, 8000, 8000, 10},       {0, 8000, 16000, 0},
                            {1000, 3000, 96000, 12000}, {10000, 16000, 22050, 13782},
                            {-2, 8000, 16000, -1},      {kLargest, 4000, 48000, -1}};
  for (const auto& [bytes, inRate, outRate, expected] : cases) {
    std::int32_t size = bytes;
    EXPECT_EQ(RATEAPI_interface(nullptr, &size, inRate, outRate), expected);
    EXPECT_EQ(size, bytes);
  }
  Samples buffer = noise(5000);
  const Samples expected = convertedByModel(buffer, 16000, 22050);
  buffer.resize(13782 / 2);
  std::int32_t bytes = 10000;
  EXPECT_EQ(RATEAPI_interface(buffer.data(), &bytes, 16000, 22050), 13782);
  EXPECT_EQ(bytes, 13782);
  EXPECT_TRUE(buffer == expected);
  bytes = -2;
  EXPECT_EQ(RATEAPI_interface(buffer.data(), &bytes, 8000, 16000), -1);
  EXPECT_EQ(RATEAPI_interface(buffer.data(), nullptr, 8000, 16000), -1);
}

// The natural capacity is a single-precision number, which for this length is two samples short.
TEST(MemoryWrappers, CopyALongRecordingAtEqualRatesWhole) {
  Samples input((1 << 24) + 3, 5);
  input.back() = -9;
  auto bytes = static_cast<std::int32_t>(input.size() * 2);
  EXPECT_TRUE(pcmToPcm(input, 16000, 16000).second == input);
  EXPECT_EQ(RATEAPI_interface(input.data(), &bytes, 16000, 16000), bytes);
  EXPECT_EQ(input.back(), -9);
}

TEST(InPlaceConversion, GivesTheModelsSamples) {
  for (const auto& [inRate, outRate] :
       {std::pair{8000, 16000}, {48000, 48000}, {44099, 44100}, {48000, 1000}, {4720, 48000}}) {
    for (const std::size_t count : {0u, 1u, 100u, 4010u, 4053u, 8020u, 50003u}) {
      const Samples input = noise(count, 1);
      auto conversion = InPlaceConversion::prepare(static_cast<std::int32_t>(count), {inRate, outRate});
      ASSERT_TRUE(conversion && conversion->input().size() == count);
      std::ranges::copy(input, conversion->input().begin());
      EXPECT_TRUE(std::ranges::equal(conversion->convert().value(), convertedByModel(input, inRate, outRate)))
          << count << " samples, " << inRate << " to " << outRate;
    }
  }
  EXPECT_FALSE(InPlaceConversion::prepare(kLargest, {8000, 16000}));
  EXPECT_FALSE(InPlaceConversion::prepare(100, {0, 16000}));
  EXPECT_FALSE(InPlaceConversion::prepare(100, {8000, -1}));
  EXPECT_TRUE(InPlaceConversion::prepare(100, {-1, -1}));
}

}  // namespace
