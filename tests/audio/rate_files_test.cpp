#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <tuple>

#include <speech/audio.h>
#include "tests/audio/rate_samples.h"
#include "tests/support/binary_file.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/wav_files.h"

namespace {

using speech::test::Bytes;
using speech::test::ByteWriter;
using speech::test::chirp;
using speech::test::converted;
using speech::test::PcmFile;
using speech::test::readBytes;
using speech::test::Samples;
using speech::test::TemporaryFolder;
using speech::test::writeBytes;
using testing::ElementsAreArray;
using testing::IsEmpty;

/// The samples of one channel, or of two frame by frame, in either width of PCM.
Bytes pcmData(const std::vector<Samples>& channels, std::uint32_t bits) {
  ByteWriter data;
  for (std::size_t i = 0; i < channels[0].size(); ++i) {
    for (const Samples& channel : channels) {
      if (bits == 8) {
        data.u8(static_cast<std::uint32_t>(channel[i] / 256 + 128));
      } else {
        data.u16(static_cast<std::uint16_t>(channel[i]));
      }
    }
  }
  return data.bytes;
}

/// What is left of samples after a file of 8 bits.
Samples throughBytes(Samples samples) {
  for (std::int16_t& sample : samples) sample = static_cast<std::int16_t>(sample / 256 * 256);
  return samples;
}

class RateFiles : public testing::Test {
 protected:
  void giveInput(const PcmFile& file) { writeBytes(in, file.bytes()); }

  const TemporaryFolder folder;
  const std::string in = folder.file("in.wav");
  const std::string out = folder.file("out.wav");
};

using PcmToWav = RateFiles;

TEST_F(PcmToWav, WritesUnsignedBytesRoundedTowardsZero) {
  const Samples input{-32768, -256, -255, 0, 255, 256, 32767};
  std::int32_t bytes = 14;
  EXPECT_EQ(RATEAPI_PCM2WAV(input.data(), &bytes, 8000, 8000, 8, 1, out.c_str()), 1);
  EXPECT_EQ(bytes, 7);
  const PcmFile expected{.bits = 8, .data = {0, 127, 128, 128, 128, 129, 255}};
  EXPECT_THAT(readBytes(out), ElementsAreArray(expected.bytes()));
}

TEST_F(PcmToWav, ConvertsAndRepeatsEverySampleForTwoChannels) {
  const Samples input = chirp(9000);
  const Samples samples = converted(input, 16000, 22050);
  for (const auto& [channels, written] : {std::pair{1, 1u}, {2, 2u}, {5, 2u}}) {
    std::int32_t bytes = 18000;
    EXPECT_EQ(RATEAPI_PCM2WAV(input.data(), &bytes, 16000, 22050, 16, channels, out.c_str()), 1);
    const PcmFile expected{.channels = written,
                           .sampleRate = 22050,
                           .data = pcmData(std::vector<Samples>(written, samples), 16)};
    EXPECT_EQ(bytes, static_cast<std::int32_t>(expected.data.size()));
    EXPECT_TRUE(readBytes(out) == expected.bytes()) << channels << " channels";
  }
}

TEST_F(PcmToWav, HoldsRatesToWhatSpeechUses) {
  const Samples input = chirp(100);
  std::int32_t bytes = 200;
  EXPECT_EQ(RATEAPI_PCM2WAV(input.data(), &bytes, 3000, 96000, 16, 1, out.c_str()), 1);
  const PcmFile expected{.sampleRate = 48000, .data = pcmData({converted(input, 4000, 48000)}, 16)};
  EXPECT_EQ(bytes, 2400);
  EXPECT_TRUE(readBytes(out) == expected.bytes());
}

TEST_F(PcmToWav, MakesNoFileOfWhatItRefuses) {
  const Samples input = chirp(20000);
  for (const auto& [size, inRate, outRate, bits, channels] : {std::tuple{0, 8000, 16000, 16, 1},
                                                              {-2, 8000, 16000, 16, 1},
                                                              {40000, 8000, 16000, 24, 1},
                                                              {40000, 8000, 16000, 0, 1},
                                                              {40000, 8000, 16000, 16, 0},
                                                              {40000, 8000, 16000, 16, -1},
                                                              {40000, 4000, 48000, 16, 1}}) {
    std::int32_t bytes = size;
    EXPECT_EQ(RATEAPI_PCM2WAV(input.data(), &bytes, inRate, outRate, bits, channels, out.c_str()), -1);
    EXPECT_EQ(bytes, size);
    EXPECT_FALSE(std::filesystem::exists(out));
  }
}

TEST_F(PcmToWav, TellsTheSizeOfAFileThatCannotBeMadeOrHoldsLessThanASample) {
  const Samples input(10);
  std::int32_t bytes = 20;
  const std::string nowhere = folder.file("missing/out.wav");
  EXPECT_EQ(RATEAPI_PCM2WAV(input.data(), &bytes, 8000, 16000, 16, 2, nowhere.c_str()), -1);
  EXPECT_EQ(bytes, 80);
  bytes = 1;
  EXPECT_EQ(RATEAPI_PCM2WAV(input.data(), &bytes, 8000, 16000, 16, 1, out.c_str()), 1);
  EXPECT_EQ(bytes, 0);
  EXPECT_THAT(readBytes(out), ElementsAreArray(PcmFile{.sampleRate = 16000}.bytes()));
}

/// Input bits and channels, output bits and channels.
class WavToWav
    : public RateFiles,
      public testing::WithParamInterface<std::tuple<std::uint32_t, std::size_t, std::uint32_t, std::size_t>> {
};

TEST_P(WavToWav, ConvertsEveryChannel) {
  const auto [inBits, inChannels, outBits, outChannels] = GetParam();
  // More than one block of the file.
  std::vector<Samples> input{chirp(40000, 1), chirp(40000, 2)};
  input.resize(inChannels);
  giveInput({.channels = static_cast<std::uint32_t>(inChannels),
             .sampleRate = 22050,
             .bits = inBits,
             .data = pcmData(input, inBits)});
  std::vector<Samples> output;
  for (std::size_t channel = 0; channel < outChannels; ++channel) {
    const Samples& samples = input[std::min(channel, inChannels - 1)];
    output.push_back(converted(inBits == 8 ? throughBytes(samples) : samples, 22050, 16000));
  }
  const PcmFile expected{.channels = static_cast<std::uint32_t>(outChannels),
                         .sampleRate = 16000,
                         .bits = outBits,
                         .data = pcmData(output, outBits)};

  const auto bits = static_cast<std::int32_t>(outBits);
  const auto channels = static_cast<std::int32_t>(outChannels);
  EXPECT_EQ(RATEAPI_WAV2WAV(in.c_str(), 16000, bits, channels, out.c_str()), 1);
  EXPECT_TRUE(readBytes(out) == expected.bytes());
  // For 16-bit files both wrappers are the same.
  if (inBits == 16) {
    EXPECT_EQ(RATEAPI_WAV2WAV_EX(in.c_str(), 16000, bits, channels, out.c_str()), 1);
    EXPECT_TRUE(readBytes(out) == expected.bytes());
  }
}

INSTANTIATE_TEST_SUITE_P(Shapes, WavToWav,
                         testing::Combine(testing::Values(8u, 16u), testing::Values(1u, 2u),
                                          testing::Values(8u, 16u), testing::Values(1u, 2u)));

using WavFiles = RateFiles;

TEST_F(WavFiles, KeepTheirRatesWhichTheMemoryWrappersClamp) {
  const Samples input = chirp(5000);
  giveInput({.sampleRate = 3000, .data = pcmData({input}, 16)});
  EXPECT_EQ(RATEAPI_WAV2WAV(in.c_str(), 2000, 16, 1, out.c_str()), 1);
  const PcmFile slower{.sampleRate = 2000, .data = pcmData({converted(input, 3000, 2000)}, 16)};
  EXPECT_TRUE(readBytes(out) == slower.bytes());

  const PcmFile fast{.sampleRate = 96000, .data = pcmData({chirp(70000)}, 16)};
  giveInput(fast);
  EXPECT_EQ(RATEAPI_WAV2WAV(in.c_str(), 96000, 16, 1, out.c_str()), 1);
  EXPECT_TRUE(readBytes(out) == fast.bytes());
}

TEST_F(WavFiles, WithAnotherChunkBeforeTheDataAreReadFromThere) {
  ByteWriter file;
  file.bytes = PcmFile{}.bytes();
  file.bytes.resize(36);
  file.text("LIST").u32(4).text("ab").text("cd").text("data").u32(4).samples({1, 2});
  writeBytes(in, file.bytes);
  EXPECT_EQ(RATEAPI_WAV2WAV(in.c_str(), 8000, 16, 1, out.c_str()), 1);
  EXPECT_THAT(readBytes(out), ElementsAreArray(PcmFile{.data = {'a', 'b', 'c', 'd'}}.bytes()));
}

struct Copy {
  const char* what;
  decltype(&RATEAPI_WAV2WAV) convert;
  PcmFile input;
  std::int32_t bits, channels;
  PcmFile output;
};

TEST_F(WavFiles, OfUnusualShapesAreReadAsTheyAlwaysWere) {
  const Bytes pairs{1, 0, 2, 0, 3, 0}, twoThenSilence{1, 0, 2, 0, 3, 0, 0, 0, 0, 0, 0, 0};
  const Bytes triples{1, 0, 99, 2, 0, 99, 3, 0, 99}, codes{128, 129, 255};
  const Bytes mixed = pcmData({{0, 256, 32512}}, 16),
              interleaved{1, 0, 2, 0, 4, 0, 5, 0, 2, 0, 0, 0, 5, 0, 0, 0};
  const Bytes stereo32{1, 0, 9, 9, 4, 0, 9, 9, 2, 0, 9, 9, 5, 0, 9, 9};
  const auto narrow = RATEAPI_WAV2WAV, wide = RATEAPI_WAV2WAV_EX;
  for (const auto& [what, convert, input, bits, channels, output] : {
           Copy{"no samples", narrow, {}, 8, 5, {.channels = 2, .bits = 8}},
           Copy{"no samples, wide", wide, {}, 8, 5, {.channels = 2, .bits = 8}},
           Copy{"the tag of eight bits",
                narrow,
                {.tag = 153, .bits = 8, .data = codes},
                16,
                1,
                {.data = mixed}},
           Copy{"no channel", narrow, {.channels = 0, .data = pairs}, 16, 1, {.data = pairs}},
           Copy{"three channels", narrow, {.channels = 3, .data = pairs}, 16, 1, {.data = pairs}},
           Copy{"65535 channels", narrow, {.channels = 65535, .data = pairs}, 16, 1, {.data = pairs}},
           // Other widths are read as pairs of bytes, and silence.
           Copy{"0 bits", narrow, {.bits = 0, .data = pairs}, 16, 1, {.data = twoThenSilence}},
           Copy{"12 bits", narrow, {.bits = 12, .data = pairs}, 16, 1, {.data = twoThenSilence}},
           Copy{"24 bits", narrow, {.bits = 24, .data = pairs}, 16, 1, {.data = twoThenSilence}},
           // The wide wrapper gives the low-order bytes of a sample, and takes it in the input's width: every
           // sample goes on into the next one.
           Copy{"24 to 8", wide, {.bits = 24, .data = triples}, 8, 1, {.bits = 8, .data = {128, 128, 128}}},
           Copy{
               "24 to 16", wide, {.bits = 24, .data = triples}, 16, 1, {.data = {1, 0, 2, 2, 0, 3, 3, 0, 0}}},
           Copy{"32 to 16",
                wide,
                {.channels = 2, .bits = 32, .data = stereo32},
                16,
                2,
                {.channels = 2, .data = interleaved}},
           Copy{"8 to 8", wide, {.bits = 8, .data = codes}, 8, 1, {.bits = 8, .data = codes}},
           // One byte of every sample, the lower one, under a header for 16 bits.
           Copy{"8 to 16", wide, {.bits = 8, .data = codes}, 16, 1, {.data = {0, 0, 0}}},
           Copy{"12 to 16", wide, {.bits = 12, .data = {1, 2, 3}}, 16, 1, {.data = {1, 2, 3}}},
           Copy{"4 to 16", wide, {.bits = 4, .data = {1, 2, 3}}, 16, 1, {}},
           Copy{"4 to 8", wide, {.bits = 4, .data = {1, 2, 3}}, 8, 1, {.bits = 8, .data = {128, 128, 128}}},
       }) {
    giveInput(input);
    EXPECT_EQ(convert(in.c_str(), 8000, bits, channels, out.c_str()), 1) << what;
    EXPECT_THAT(readBytes(out), ElementsAreArray(output.bytes())) << what;
  }
}

TEST_F(WavFiles, NameTheirWidthAsFormatCodeWhenAskedForThirtyTwoBits) {
  giveInput({.bits = 32, .data = {1, 0, 9, 9, 2, 0, 9, 9}});
  EXPECT_EQ(RATEAPI_WAV2WAV_EX(in.c_str(), 8000, 32, 1, out.c_str()), 1);
  ByteWriter expected;
  expected.text("RIFF").u32(58).text("WAVEfmt ").u32(18).u16(0).u16(1).u32(8000).u32(0).u16(0).u16(32).u16(0);
  expected.text("fact").u32(4).u32(4).text("data").u32(8).samples({1, 2, 2, 0});
  EXPECT_THAT(readBytes(out), ElementsAreArray(expected.bytes));
}

}  // namespace
