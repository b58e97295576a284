#include <gtest/gtest.h>
#include <soxr.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include <speech/audio.h>

#ifndef _MSC_VER

/// What RATEAPI_MULTI_INIT asked libsoxr for.
static struct {
  soxr_io_spec_t samples;
  soxr_quality_spec_t quality;
  soxr_runtime_spec_t runtime;
} lastRequest;

// The linker passes every soxr_create to the one below, which passes it on; the names are the linker's.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {
soxr_t __real_soxr_create(double, double, unsigned, soxr_error_t*, soxr_io_spec_t const*,
                          soxr_quality_spec_t const*, soxr_runtime_spec_t const*);
soxr_t __wrap_soxr_create(double inRate, double outRate, unsigned channels, soxr_error_t* error,
                          soxr_io_spec_t const* samples, soxr_quality_spec_t const* quality,
                          soxr_runtime_spec_t const* runtime) {
  lastRequest = {*samples, *quality, *runtime};
  return __real_soxr_create(inRate, outRate, channels, error, samples, quality, runtime);
}
}
// NOLINTEND(bugprone-reserved-identifier)

TEST(StreamConverter, AsksForTheLowRecipeOnOneThread) {
  RATEAPI_MULTI_UNINIT(RATEAPI_MULTI_INIT(44100, 16000, 1));
  const soxr_quality_spec_t low = soxr_quality_spec(1, 0);
  EXPECT_EQ(lastRequest.samples.itype, SOXR_INT16_I);
  EXPECT_EQ(lastRequest.samples.otype, SOXR_INT16_I);
  EXPECT_EQ(lastRequest.samples.scale, 1);
  EXPECT_EQ(lastRequest.samples.flags, 0u);
  EXPECT_EQ(lastRequest.quality.precision, low.precision);
  EXPECT_EQ(lastRequest.quality.passband_end, low.passband_end);
  EXPECT_EQ(lastRequest.quality.stopband_begin, low.stopband_begin);
  EXPECT_EQ(lastRequest.quality.flags, low.flags);
  EXPECT_EQ(lastRequest.runtime.num_threads, 1u);
}

#endif

namespace {

using Samples = std::vector<std::int16_t>;

/// Converts the next `frames` frames and appends what comes out.
void convert(RateStream stream, std::size_t channels, const std::int16_t* input, std::size_t frames,
             Samples& output, std::size_t roomInFrames = 1 << 19) {
  const std::size_t before = output.size();
  output.resize(before + roomInFrames * channels);
  const std::int32_t bytes =
      RATEAPI_MULTI_PROCESS(stream, input, static_cast<std::int32_t>(frames * 2), output.data() + before,
                            static_cast<std::int32_t>(roomInFrames * 2));
  ASSERT_TRUE(bytes >= 0 && bytes % 2 == 0);
  output.resize(before + static_cast<std::size_t>(bytes) / 2 * channels);
}

/// A whole stream, `blockFrames` frames at a time.
Samples converted(double inRate, double outRate, std::size_t channels, const Samples& input,
                  std::size_t blockFrames) {
  const RateStream stream = RATEAPI_MULTI_INIT(inRate, outRate, static_cast<std::int32_t>(channels));
  Samples output;
  const std::size_t frames = input.size() / channels;
  for (std::size_t begin = 0; begin < frames; begin += blockFrames) {
    const std::size_t count = std::min(blockFrames, frames - begin);
    convert(stream, channels, input.data() + begin * channels, count, output, count * 7 + 100);
  }
  RATEAPI_MULTI_UNINIT(stream);
  return output;
}

/// Interleaved tones, another one in each channel, with full-scale clicks.
Samples tones(std::size_t frameCount, std::size_t channels) {
  Samples samples;
  for (std::size_t i = 0; i < frameCount * channels; ++i) {
    const double phase = static_cast<double>(i / channels * (i % channels + 1)) * 0.11;
    samples.push_back(i / channels % 4000 == 17 ? std::int16_t{-32768}
                                                : static_cast<std::int16_t>(12000 * std::sin(phase)));
  }
  return samples;
}

/// libsoxr's dither, which starts at random, adds less than one before a sample is rounded: two runs differ
/// by two at most.
void expectSameSound(const Samples& actual, const Samples& expected, const std::string& what) {
  ASSERT_EQ(actual.size(), expected.size()) << what;
  for (std::size_t i = 0; i < actual.size(); ++i) ASSERT_NEAR(actual[i], expected[i], 2) << what << ", " << i;
}

TEST(StreamConverter, GivesTheSameSamplesInBlocksOfAnySize) {
  for (const auto& [inRate, outRate] : {std::pair{44100.0, 16000}, {22050, 22050}, {11025.5, 48000}}) {
    for (const std::size_t channels : {1u, 2u}) {
      const Samples input = tones(30000, channels);
      const Samples whole = converted(inRate, outRate, channels, input, 30000);
      const double frames = static_cast<double>(whole.size() / channels), natural = 30000 * outRate / inRate;
      ASSERT_TRUE(frames > natural * 0.95 && frames <= natural + 1);
      for (const std::size_t block : {1u, 480u, 29999u}) {
        expectSameSound(converted(inRate, outRate, channels, input, block), whole, std::to_string(block));
      }
    }
  }
}

TEST(StreamConverter, KeepsWhatTheOutputHasNoRoomForForTheNextCall) {
  const Samples input = tones(8000, 1);
  const RateStream tight = RATEAPI_MULTI_INIT(8000, 16000, 1);
  Samples pieces;
  convert(tight, 1, input.data(), 7999, pieces, 1000);
  EXPECT_EQ(pieces.size(), 1000u);
  convert(tight, 1, input.data() + 7999, 1, pieces);
  expectSameSound(pieces, converted(8000, 16000, 1, input, 8000), "in pieces");
  RATEAPI_MULTI_UNINIT(tight);
}

TEST(StreamConverter, TakesTwoBytesForAFrameWhateverTheChannels) {
  const Samples stereo = tones(6000, 2), expected = converted(8000, 16000, 2, stereo, 6000);
  Samples output(24002, 0);
  const RateStream stream = RATEAPI_MULTI_INIT(8000, 16000, 2);
  // 24000 bytes of input are announced as 12000, room for 48000 bytes as 24000; an odd byte is dropped.
  const std::int32_t bytes = RATEAPI_MULTI_PROCESS(stream, stereo.data(), 12001, output.data(), 24001);
  EXPECT_EQ(bytes, static_cast<std::int32_t>(expected.size())) << "half of the bytes that were stored";
  EXPECT_TRUE(std::all_of(output.begin() + bytes, output.end(), [](int sample) { return sample == 0; }));
  output.resize(expected.size());
  expectSameSound(output, expected, "stereo");
  RATEAPI_MULTI_UNINIT(stream);
}

TEST(StreamConverter, NamesTheFirstBadArgument) {
  const RateStream stream = RATEAPI_MULTI_INIT(8000, 16000, 1);
  std::int16_t samples[4] = {};
  EXPECT_EQ(RATEAPI_MULTI_PROCESS(0, nullptr, 0, nullptr, 0), -1);
  EXPECT_EQ(RATEAPI_MULTI_PROCESS(stream, nullptr, 0, nullptr, 0), -10);
  for (const std::int32_t none : {0, -2}) {
    EXPECT_EQ(RATEAPI_MULTI_PROCESS(stream, samples, none, nullptr, 0), -20);
    EXPECT_EQ(RATEAPI_MULTI_PROCESS(stream, samples, 8, nullptr, none), -30);
    EXPECT_EQ(RATEAPI_MULTI_PROCESS(stream, samples, 8, samples, none), -40);
  }
  RATEAPI_MULTI_UNINIT(stream);
  RATEAPI_MULTI_UNINIT(0);
}

TEST(StreamConverter, RefusesConversionsThatCannotBe) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
  const std::pair<double, double> refused[] = {{0, 8000},  {-8000, 8000}, {kNan, 8000},   {kInfinity, 8000},
                                               {8000, 0},  {8000, -8000}, {8000, kNan},   {8000, kInfinity},
                                               {1, 65537}, {65537, 1},    {1e300, 1e-300}};
  for (const auto& [inRate, outRate] : refused) {
    EXPECT_EQ(RATEAPI_MULTI_INIT(inRate, outRate, 1), 0u) << inRate << " to " << outRate;
  }
  for (const int channels : {0, -1, 1025, std::numeric_limits<int>::min()}) {
    EXPECT_EQ(RATEAPI_MULTI_INIT(8000, 16000, channels), 0u) << channels << " channels";
  }
  for (const RateStream stream : {RATEAPI_MULTI_INIT(1, 65536, 1), RATEAPI_MULTI_INIT(65536, 1, 1024)}) {
    EXPECT_NE(stream, 0u);
    RATEAPI_MULTI_UNINIT(stream);
  }
}

}  // namespace
