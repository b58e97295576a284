// The rate converter's wrappers that read and write WAV files: true ones, and some that are not what they
// say.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <span>
#include <string>

#include "tests/audio/rate_model.h"
#include "tests/support/binary_file.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/wav_files.h"

namespace {

using namespace speech::test;
using namespace testing;

/// A file of the first `channels` of two channels, in either width of PCM.
PcmFile pcmFile(const std::vector<Samples>& samples, int channels, int sampleRate, int bits) {
  ByteWriter data;
  for (std::size_t i = 0; i < samples[0].size(); ++i) {
    for (int channel = 0; channel < channels; ++channel) {
      const int sample = samples[static_cast<std::size_t>(channel)][i];
      bits == 8 ? data.u8(static_cast<std::uint32_t>(sample / 256 + 128))
                : data.u16(static_cast<std::uint32_t>(sample));
    }
  }
  return {.channels = static_cast<std::uint32_t>(channels),
          .sampleRate = static_cast<std::uint32_t>(sampleRate),
          .bits = static_cast<std::uint32_t>(bits),
          .data = data.bytes};
}

constexpr auto kWrappers = {RATEAPI_WAV2WAV, RATEAPI_WAV2WAV_EX};

class RateFiles : public testing::Test {
 protected:
  /// Converts with one wrapper over an older output.
  std::int32_t convert(decltype(&RATEAPI_WAV2WAV) wrapper, const Bytes& input, std::int32_t rate,
                       std::int32_t bits, std::int32_t channels) {
    writeBytes(in, input);
    writeBytes(out, {1, 2, 3});
    return wrapper(in.c_str(), rate, bits, channels, out.c_str());
  }

  void expectRefused(const Bytes& input) {
    for (auto* const wrapper : kWrappers) {
      EXPECT_EQ(convert(wrapper, input, 16000, 16, 2), -1);
      EXPECT_THAT(readBytes(out), IsEmpty());
    }
  }

  const TemporaryFolder folder;
  const std::string in = folder.file("in.wav"), out = folder.file("out.wav");
  const Bytes data = Bytes(400, 3);
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

struct PcmCase {
  std::int32_t bytes, inRate, outRate, bits, channels;
};

TEST_F(PcmToWav, ConvertsAtRatesThatSpeechUsesAndRepeatsEverySampleForTwoChannels) {
  constexpr PcmCase kCases[] = {{6000, 16000, 22050, 16, 1},
                                {6000, 16000, 22050, 16, 2},
                                {6000, 3000, 96000, 16, 5},
                                {1, 8000, 16000, 16, 1}};
  for (const auto& [size, inRate, outRate, bits, channels] : kCases) {
    const auto usedOutRate = std::min(outRate, 48000), written = std::min(channels, 2);
    const Samples input = noise(3000), used = noise(static_cast<std::size_t>(size / 2));
    const Samples samples = convertedByModel(used, std::max(inRate, 4000), usedOutRate);
    std::int32_t bytes = size;
    EXPECT_EQ(RATEAPI_PCM2WAV(input.data(), &bytes, inRate, outRate, bits, channels, out.c_str()), 1);
    const PcmFile expected = pcmFile({samples, samples}, written, usedOutRate, 16);
    EXPECT_EQ(bytes, static_cast<std::int32_t>(expected.data.size()));
    EXPECT_TRUE(readBytes(out) == expected.bytes()) << channels << " channels";
  }
}

TEST_F(PcmToWav, MakesNoFileOfWhatItRefusesAndTellsTheSizeOfOneThatCannotBeMade) {
  const Samples input = noise(20000);
  constexpr PcmCase kCases[] = {{0, 8000, 48000, 16, 1},
                                {-2, 8000, 48000, 16, 1},
                                {40000, 8000, 48000, 24, 1},
                                {40000, 8000, 48000, 16, 0},
                                {40000, 4000, 48000, 16, 1}};
  for (const auto& [size, inRate, outRate, bits, channels] : kCases) {
    std::int32_t bytes = size;
    EXPECT_EQ(RATEAPI_PCM2WAV(input.data(), &bytes, inRate, outRate, bits, channels, out.c_str()), -1);
    EXPECT_EQ(bytes, size);
    EXPECT_FALSE(std::filesystem::exists(out));
  }
  std::int32_t bytes = 20;
  const std::string nowhere = folder.file("missing/out.wav");
  EXPECT_EQ(RATEAPI_PCM2WAV(input.data(), &bytes, 8000, 16000, 16, 2, nowhere.c_str()), -1);
  EXPECT_EQ(bytes, 80);
}

using WavToWav = RateFiles;

TEST_F(WavToWav, ConvertsEveryChannelFromAndToEitherWidth) {
  for (int shape = 0; shape < 16; ++shape) {
    const int inBits = shape & 1 ? 8 : 16, outBits = shape & 2 ? 8 : 16;
    const int inChannels = shape & 4 ? 2 : 1, outChannels = shape & 8 ? 2 : 1;
    // More than one block of the file.
    std::vector<Samples> input{noise(17000, 1), noise(17000, 2)}, output;
    const PcmFile file = pcmFile(input, inChannels, 22050, inBits);
    for (Samples& samples : input) {
      for (std::int16_t& sample : samples) {
        if (inBits == 8) sample = static_cast<std::int16_t>(sample - sample % 256);
      }
      output.push_back(convertedByModel(samples, 22050, 16000));
    }
    if (inChannels == 1) output[1] = output[0];
    for (auto* const wrapper : kWrappers) {
      // From 8 to 16 bits the wide wrapper has a way of its own.
      if (inBits == 8 && outBits == 16 && wrapper == RATEAPI_WAV2WAV_EX) continue;
      EXPECT_EQ(convert(wrapper, file.bytes(), 16000, outBits, outChannels), 1);
      EXPECT_TRUE(readBytes(out) == pcmFile(output, outChannels, 16000, outBits).bytes()) << shape;
    }
  }
}

TEST_F(WavToWav, KeepsItsRatesWhichTheMemoryWrappersClamp) {
  const Samples input = noise(5000);
  EXPECT_EQ(convert(RATEAPI_WAV2WAV, pcmFile({input}, 1, 3000, 16).bytes(), 2000, 16, 1), 1);
  EXPECT_TRUE(readBytes(out) == pcmFile({convertedByModel(input, 3000, 2000)}, 1, 2000, 16).bytes());
  for (const std::uint32_t rate : {0u, 1u, 96000u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
    const PcmFile file{.sampleRate = rate, .data = data};
    EXPECT_EQ(convert(RATEAPI_WAV2WAV, file.bytes(), static_cast<std::int32_t>(rate), 16, 1), 1) << rate;
    const Bytes written = readBytes(out);
    EXPECT_TRUE(std::ranges::equal(std::span(written).subspan(44), data)) << rate;
  }
}

struct Copy {
  const char* what;
  decltype(&RATEAPI_WAV2WAV) wrapper;
  PcmFile input;
  std::int32_t bits, channels;
  PcmFile output;
};

TEST_F(WavToWav, ReadsUnusualShapesAsItAlwaysDid) {
  const Bytes pairs{1, 0, 2, 0, 3, 0}, twoThenSilence{1, 0, 2, 0, 3, 0, 0, 0, 0, 0, 0, 0};
  const Bytes triples{1, 0, 99, 2, 0, 99, 3, 0, 99}, codes{128, 129, 255};
  const Bytes mixed{0, 0, 0, 1, 0, 127}, spread{1, 0, 2, 0, 4, 0, 5, 0, 2, 0, 0, 0, 5, 0, 0, 0};
  const Bytes wider{1, 0, 9, 9, 4, 0, 9, 9, 2, 0, 9, 9, 5, 0, 9, 9};
  const auto narrow = RATEAPI_WAV2WAV, wide = RATEAPI_WAV2WAV_EX;
  const Copy cases[] = {
      {"no samples", narrow, {}, 8, 5, {.channels = 2, .bits = 8}},
      {"no samples, wide", wide, {}, 8, 5, {.channels = 2, .bits = 8}},
      {"the tag of eight bits", narrow, {.tag = 153, .bits = 8, .data = codes}, 16, 1, {.data = mixed}},
      {"no channel", narrow, {.channels = 0, .data = pairs}, 16, 1, {.data = pairs}},
      {"three channels", narrow, {.channels = 3, .data = pairs}, 16, 1, {.data = pairs}},
      {"65535 channels", narrow, {.channels = 65535, .data = pairs}, 16, 1, {.data = pairs}},
      // Other widths are read as pairs of bytes, and silence.
      {"0 bits", narrow, {.bits = 0, .data = pairs}, 16, 1, {.data = twoThenSilence}},
      {"12 bits", narrow, {.bits = 12, .data = pairs}, 16, 1, {.data = twoThenSilence}},
      {"24 bits", narrow, {.bits = 24, .data = pairs}, 16, 1, {.data = twoThenSilence}},
      // The wide wrapper gives the low-order bytes of a sample, and takes it in the input's width: every
      // sample goes on into the next one.
      {"24 to 8", wide, {.bits = 24, .data = triples}, 8, 1, {.bits = 8, .data = {128, 128, 128}}},
      {"24 to 16", wide, {.bits = 24, .data = triples}, 16, 1, {.data = {1, 0, 2, 2, 0, 3, 3, 0, 0}}},
      {"32", wide, {.channels = 2, .bits = 32, .data = wider}, 16, 2, {.channels = 2, .data = spread}},
      {"8 to 8", wide, {.bits = 8, .data = codes}, 8, 1, {.bits = 8, .data = codes}},
      // One byte of every sample, the lower one, under a header for 16 bits.
      {"8 to 16", wide, {.bits = 8, .data = codes}, 16, 1, {.data = {0, 0, 0}}},
      {"12 to 16", wide, {.bits = 12, .data = {1, 2, 3}}, 16, 1, {.data = {1, 2, 3}}},
      {"4 to 16", wide, {.bits = 4, .data = {1, 2, 3}}, 16, 1, {}},
      {"4 to 8", wide, {.bits = 4, .data = {1, 2, 3}}, 8, 1, {.bits = 8, .data = {128, 128, 128}}}};
  for (const auto& [what, wrapper, input, bits, channels, output] : cases) {
    EXPECT_EQ(convert(wrapper, input.bytes(), 8000, bits, channels), 1) << what;
    EXPECT_THAT(readBytes(out), ElementsAreArray(output.bytes())) << what;
  }
}

TEST_F(WavToWav, NamesItsWidthAsFormatCodeWhenAskedForThirtyTwoBits) {
  const PcmFile file{.bits = 32, .data = {1, 0, 9, 9, 2, 0, 9, 9}};
  EXPECT_EQ(convert(RATEAPI_WAV2WAV_EX, file.bytes(), 8000, 32, 1), 1);
  ByteWriter expected;
  expected.text("RIFF").u32(58).text("WAVEfmt ").u32(18).u16(0).u16(1).u32(8000).u32(0).u16(0).u16(32).u16(0);
  expected.text("fact").u32(4).u32(4).text("data").u32(8).samples({1, 2, 2, 0});
  EXPECT_THAT(readBytes(out), ElementsAreArray(expected.bytes));
}

// The data chunk ends where the file does, and a frame that it cuts is left out.
TEST_F(WavToWav, ConvertsWhatIsThereOfAFileThatAnnouncesMore) {
  for (const std::uint32_t size : {11u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFEu}) {
    for (const int length : {36, 43, 44, 47, 48, 53, 54}) {
      PcmFile file{.channels = 2, .data = Bytes(10, 3), .dataSize = size};
      Bytes cut = file.bytes();
      cut.resize(static_cast<std::size_t>(length));
      file.data.resize(static_cast<std::size_t>(std::max(length - 44, 0) / 4 * 4));
      file.dataSize = 0xFFFFFFFF;
      for (auto* const wrapper : kWrappers) {
        EXPECT_EQ(convert(wrapper, cut, 8000, 16, 2), 1) << length;
        EXPECT_THAT(readBytes(out), ElementsAreArray(file.bytes())) << length << " bytes";
      }
    }
  }
}

TEST_F(WavToWav, RefusesLiesAboutRateAndFormatAndWidthsThatThereAreNot) {
  for (const std::uint32_t rate : {0u, 0x80000000u, 0xFFFFFFFFu, 0x7FFFFFFFu, 1u}) {
    expectRefused(PcmFile{.sampleRate = rate, .data = data}.bytes());
  }
  for (const std::uint32_t tag : {0u, 2u, 6u, 0xFFFEu})
    expectRefused(PcmFile{.tag = tag, .data = data}.bytes());
  for (const std::size_t length : {0u, 1u, 20u, 24u}) {
    Bytes cut = PcmFile{.data = data}.bytes();
    cut.resize(length);
    expectRefused(cut);
  }
  const Bytes good = PcmFile{.data = data}.bytes();
  for (auto* const wrapper : kWrappers) {
    for (const int bits : {0, 4, 24, -8, 64}) EXPECT_EQ(convert(wrapper, good, 8000, bits, 1), -1) << bits;
    EXPECT_EQ(convert(wrapper, good, 8000, 16, 0), -1);
    for (const int rate : {0, -16000}) EXPECT_EQ(convert(wrapper, good, rate, 16, 1), -1) << rate;
  }
  EXPECT_EQ(convert(RATEAPI_WAV2WAV, good, 8000, 32, 1), -1);
}

using FilePaths = RateFiles;

TEST_F(FilePaths, ThatDoNotLeadToFilesAreRefused) {
  const Bytes file = PcmFile{.data = data}.bytes();
  writeBytes(in, file);
  const std::string missing = folder.file("missing.wav"), nowhere = folder.file("missing/out.wav");
  const std::string directory = folder.path().string();
  const auto none = static_cast<const char*>(nullptr);
  for (auto* const wrapper : kWrappers) {
    for (const char* const source : {missing.c_str(), directory.c_str(), "", none}) {
      writeBytes(out, data);
      EXPECT_EQ(wrapper(source, 8000, 16, 1, out.c_str()), -1);
      EXPECT_THAT(readBytes(out), IsEmpty()) << "the output is created nevertheless";
    }
    for (const char* const target : {nowhere.c_str(), directory.c_str(), "", none}) {
      EXPECT_EQ(wrapper(in.c_str(), 8000, 16, 1, target), -1);
    }
    // The input itself, by two names, stays whole.
    for (const std::string& path : {in, folder.file("./in.wav")}) {
      EXPECT_EQ(wrapper(in.c_str(), 16000, 16, 1, path.c_str()), -1);
      EXPECT_TRUE(readBytes(in) == file);
    }
  }
}

TEST_F(FilePaths, ThatFailLeaveNoFileOpen) {
  const std::string nowhere = folder.file("missing/out.wav");
  writeBytes(in, PcmFile{.tag = 6, .data = data}.bytes());
  for (int i = 0; i < 1100; ++i) {
    ASSERT_EQ(RATEAPI_WAV2WAV(in.c_str(), 8000, 16, 1, i % 2 == 0 ? nowhere.c_str() : out.c_str()), -1);
  }
  EXPECT_EQ(convert(RATEAPI_WAV2WAV, PcmFile{.data = data}.bytes(), 8000, 16, 1), 1);
}

#ifdef __linux__
TEST_F(FilePaths, OnADiskThatIsFullAreRefused) {
  for (const std::size_t size : {0u, 100000u}) {
    writeBytes(in, PcmFile{.data = Bytes(size, 1)}.bytes());
    EXPECT_EQ(RATEAPI_WAV2WAV(in.c_str(), 8000, 16, 1, "/dev/full"), -1);
  }
}
#endif

}  // namespace
