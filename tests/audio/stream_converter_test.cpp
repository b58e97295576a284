#include <speech/audio.h>

#include <gtest/gtest.h>
#include <soxr.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <numbers>
#include <string>
#include <vector>

#ifndef _MSC_VER

/// What RATEAPI_MULTI_INIT asked libsoxr for.
struct SoxrRequest {
  soxr_io_spec_t samples;
  soxr_quality_spec_t quality;
  soxr_runtime_spec_t runtime;
};
static SoxrRequest lastRequest;

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

#endif

namespace {

using Samples = std::vector<std::int16_t>;

constexpr std::int32_t kPlenty = 1 << 20;

struct StreamCase {
  double inRate;
  double outRate;
};

class Stream {
 public:
  Stream(double inRate, double outRate, std::int32_t channels)
      : channels_(static_cast<std::size_t>(channels)),
        handle_(RATEAPI_MULTI_INIT(inRate, outRate, channels)) {}
  ~Stream() { RATEAPI_MULTI_UNINIT(handle_); }
  Stream(const Stream&) = delete;
  Stream& operator=(const Stream&) = delete;

  RateStream handle() const { return handle_; }

  /// Converts `frameCount` frames from `input` on and appends what comes out.
  void convert(const std::int16_t* input, std::size_t frameCount, Samples& output,
               std::size_t roomInFrames = kPlenty / 2) {
    const std::size_t before = output.size();
    output.resize(before + roomInFrames * channels_);
    const std::int32_t bytes =
        RATEAPI_MULTI_PROCESS(handle_, input, static_cast<std::int32_t>(frameCount * 2),
                              output.data() + before, static_cast<std::int32_t>(roomInFrames * 2));
    ASSERT_GE(bytes, 0);
    ASSERT_EQ(bytes % 2, 0);
    output.resize(before + static_cast<std::size_t>(bytes) / 2 * channels_);
  }

 private:
  std::size_t channels_;
  RateStream handle_;
};

/// Interleaved tones, another one in each channel, with full-scale clicks.
Samples tones(std::size_t frameCount, std::size_t channels) {
  Samples samples;
  for (std::size_t i = 0; i < frameCount; ++i) {
    for (std::size_t channel = 0; channel < channels; ++channel) {
      const double phase = static_cast<double>(i * (channel + 1)) * 0.11;
      samples.push_back(i % 4000 == 17 ? std::numeric_limits<std::int16_t>::min()
                                       : static_cast<std::int16_t>(std::lround(12000 * std::sin(phase))));
    }
  }
  return samples;
}

Samples channelOf(const Samples& interleaved, std::size_t channel, std::size_t channels) {
  Samples samples;
  for (std::size_t i = channel; i < interleaved.size(); i += channels) samples.push_back(interleaved[i]);
  return samples;
}

/// libsoxr's dither, which starts at random, adds less than one before a sample is rounded: two runs differ
/// by two at most.
void expectSameSound(const Samples& actual, const Samples& expected, const std::string& what = {}) {
  ASSERT_EQ(actual.size(), expected.size()) << what;
  for (std::size_t i = 0; i < actual.size(); ++i) ASSERT_NEAR(actual[i], expected[i], 2) << what << ", " << i;
}

#ifndef _MSC_VER
TEST(StreamConverter, AsksForTheLowRecipeOnOneThread) {
  const Stream stream(44100, 16000, 1);
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

TEST(StreamConverter, GivesTheSameSamplesInBlocksOfAnySize) {
  constexpr std::size_t kFrames = 30000;
  for (const auto& [inRate, outRate] :
       {StreamCase{44100, 16000}, {8000, 16000}, {22050, 22050}, {11025.5, 48000}}) {
    for (const std::size_t channels : {1u, 2u}) {
      const Samples input = tones(kFrames, channels);
      Samples whole;
      Stream(inRate, outRate, static_cast<std::int32_t>(channels)).convert(input.data(), kFrames, whole);
      const double expectedFrames = kFrames * outRate / inRate;
      ASSERT_GT(static_cast<double>(whole.size() / channels), expectedFrames * 0.95);
      ASSERT_LE(static_cast<double>(whole.size() / channels), expectedFrames + 1);

      for (const std::size_t blockFrames : {1u, 7u, 480u, 4096u, 29999u}) {
        Stream stream(inRate, outRate, static_cast<std::int32_t>(channels));
        Samples blocks;
        for (std::size_t begin = 0; begin < kFrames; begin += blockFrames) {
          const std::size_t frames = std::min(blockFrames, kFrames - begin);
          stream.convert(input.data() + begin * channels, frames, blocks, frames * 7 + 100);
        }
        expectSameSound(blocks, whole,
                        std::to_string(outRate) + " Hz, blocks of " + std::to_string(blockFrames));
      }
    }
  }
}

TEST(StreamConverter, KeepsWhatTheOutputHasNoRoomForForTheNextCall) {
  const Samples input = tones(8000, 1);
  Samples whole, pieces;
  Stream(8000, 16000, 1).convert(input.data(), input.size(), whole);
  Stream tight(8000, 16000, 1);
  tight.convert(input.data(), 7999, pieces, 1000);
  EXPECT_EQ(pieces.size(), 1000u);
  tight.convert(input.data() + 7999, 1, pieces);
  expectSameSound(pieces, whole);
}

TEST(StreamConverter, KeepsTheSoundsPitchAndLevel) {
  Samples input(44100), output;
  for (std::size_t i = 0; i < input.size(); ++i) {
    input[i] = static_cast<std::int16_t>(
        std::lround(16000 * std::sin(2 * std::numbers::pi * 1000 * static_cast<double>(i) / 44100)));
  }
  Stream(44100, 16000, 1).convert(input.data(), input.size(), output);
  ASSERT_GT(output.size(), 15000u);
  // A 1000 Hz tone at 16000 Hz repeats every 16 samples.
  double energy = 0, change = 0;
  for (std::size_t i = 8000; i < 12000; ++i) {
    energy += std::pow(output[i], 2);
    change += std::pow(output[i] - output[i - 16], 2);
  }
  EXPECT_NEAR(std::sqrt(energy / 4000), 16000 / std::numbers::sqrt2, 100);
  EXPECT_LT(change / energy, 1e-5);
}

TEST(StreamConverter, TakesTwoBytesForAFrameWhateverTheChannels) {
  constexpr std::size_t kFrames = 6000;
  const Samples stereo = tones(kFrames, 2);
  Samples output(kFrames * 2 * 2 + 2, 0);
  const Stream stream(8000, 16000, 2);
  // 24000 bytes of input are announced as 12000, room for 48000 bytes as 24000; an odd byte is dropped.
  const std::int32_t bytes =
      RATEAPI_MULTI_PROCESS(stream.handle(), stereo.data(), 12001, output.data(), 24001);

  for (const std::size_t channel : {0u, 1u}) {
    const Samples mono = channelOf(stereo, channel, 2);
    Samples expected;
    Stream(8000, 16000, 1).convert(mono.data(), kFrames, expected);
    EXPECT_EQ(bytes, static_cast<std::int32_t>(expected.size()) * 2) << "half of the bytes that were stored";
    Samples produced = channelOf(output, channel, 2);
    produced.resize(expected.size());
    expectSameSound(produced, expected, "channel " + std::to_string(channel));
  }
  const auto end = output.begin() + bytes;
  EXPECT_TRUE(std::all_of(end, output.end(), [](std::int16_t sample) { return sample == 0; }));
}

TEST(StreamConverter, NamesTheFirstBadArgument) {
  const Stream stream(8000, 16000, 1);
  ASSERT_NE(stream.handle(), 0u);
  std::int16_t samples[4] = {};
  EXPECT_EQ(RATEAPI_MULTI_PROCESS(0, nullptr, 0, nullptr, 0), -1);
  EXPECT_EQ(RATEAPI_MULTI_PROCESS(stream.handle(), nullptr, 0, nullptr, 0), -10);
  EXPECT_EQ(RATEAPI_MULTI_PROCESS(stream.handle(), samples, 0, nullptr, 0), -20);
  EXPECT_EQ(RATEAPI_MULTI_PROCESS(stream.handle(), samples, -2, nullptr, 0), -20);
  EXPECT_EQ(RATEAPI_MULTI_PROCESS(stream.handle(), samples, 8, nullptr, 0), -30);
  EXPECT_EQ(RATEAPI_MULTI_PROCESS(stream.handle(), samples, 8, samples, 0), -40);
  EXPECT_EQ(RATEAPI_MULTI_PROCESS(stream.handle(), samples, 8, samples, -8), -40);
  RATEAPI_MULTI_UNINIT(0);
}

TEST(StreamConverter, RefusesConversionsThatCannotBe) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
  for (const double bad : {0.0, -8000.0, kNan, kInfinity}) {
    EXPECT_EQ(RATEAPI_MULTI_INIT(bad, 8000, 1), 0u) << bad;
    EXPECT_EQ(RATEAPI_MULTI_INIT(8000, bad, 1), 0u) << bad;
  }
  for (const auto& [inRate, outRate] : {StreamCase{1, 65537}, {65537, 1}, {1e300, 1e-300}, {1e-300, 1e300}}) {
    EXPECT_EQ(RATEAPI_MULTI_INIT(inRate, outRate, 1), 0u) << inRate << " to " << outRate;
  }
  for (const int channels : {0, -1, 1025, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
    EXPECT_EQ(RATEAPI_MULTI_INIT(8000, 16000, channels), 0u) << channels << " channels";
  }
  const Samples input = tones(100, 1);
  for (const auto& [inRate, outRate] : {StreamCase{1, 65536}, {65536, 1}}) {
    Samples output(1000);
    const Stream largestRatio(inRate, outRate, 1);
    EXPECT_GE(RATEAPI_MULTI_PROCESS(largestRatio.handle(), input.data(), 200, output.data(), 2000), 0);
  }
}

}  // namespace
