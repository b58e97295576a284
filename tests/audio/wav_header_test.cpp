#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>

#include <speech/audio.h>
#include "audio/file_io.h"
#include "audio/wav_file.h"
#include "tests/support/scratch_file.h"
#include "tests/support/wav_files.h"

namespace {

using namespace speech::test;
using namespace testing;

using Words = std::vector<std::int16_t>;

/// The format table that hosts and file readers know: one row per format code, for 16000 Hz and 2 channels.
struct FormatCase {
  std::uint32_t code, tag, bits, blockAlign, bytesPerSecond;
  Words extension;             // cbSize and what follows it in the fmt chunk; none for PCM
  std::uint32_t dataBytes;     // after 2000 bytes of 16-bit input
  std::uint32_t headerLength;  // where the samples begin
};

const Words kMsAdpcm{32, 244, 7, 256, 0, 512, -256, 0, 0, 192, 64, 240, 0, 460, -208, 392, -232};

Bytes expectedHeader(const FormatCase& format) {
  const auto fmtSize = static_cast<std::uint32_t>(16 + format.extension.size() * 2);
  ByteWriter file;
  file.text("RIFF").u32(format.headerLength - 8 + format.dataBytes).text("WAVE");
  file.text("fmt ").u32(fmtSize).u16(format.tag).u16(2).u32(16000).u32(format.bytesPerSecond);
  file.u16(format.blockAlign).u16(format.bits).samples(format.extension);
  if (format.tag != 1) file.text("fact").u32(4).u32(1000);
  return file.text("data").u32(format.dataBytes).bytes;
}

TEST(WavHeader, IsTheFormatsOwnByteForByte) {
  for (const FormatCase& format : {FormatCase{kWaveFormatPcm16, 1, 16, 4, 64000, {}, 2000, 44},
                                   {kWaveFormatPcm8, 1, 8, 2, 32000, {}, 2000, 44},
                                   {kWaveFormatMsAdpcm, 2, 4, 256, 16787, kMsAdpcm, 500, 90},
                                   {kWaveFormatALaw, 6, 8, 2, 32000, {0}, 1000, 58},
                                   {kWaveFormatMuLaw, 7, 8, 2, 32000, {0}, 1000, 58},
                                   {kWaveFormatImaAdpcm, 17, 4, 512, 16222, {2, 505}, 500, 60},
                                   {kWaveFormatGsm610, 49, 0, 65, 3250, {2, 320}, 500, 60},
                                   {kWaveFormatSamples32, 0, 32, 0, 0, {0}, 2000, 58},
                                   {kWaveFormatUnknown, 0, 16, 0, 0, {0}, 2000, 58},
                                   {3, 0, 16, 0, 0, {0}, 2000, 58},
                                   {0x10006, 0, 16, 0, 0, {0}, 2000, 58}}) {
    SCOPED_TRACE(format.code);
    const ScratchFile file;
    WFHeader header;
    EXPECT_EQ(LXUTIL_Initialize_WFHeader(&header, 16000, format.code, 2), 1);
    EXPECT_EQ(header.riffSize, format.headerLength) << "before the first update";
    EXPECT_EQ(header.dataSize, 0u);
    EXPECT_EQ(header.factSampleCount, 0u);
    EXPECT_EQ(LXUTIL_Write_WFHeader(&header, 2000, file.get()), 1);
    EXPECT_EQ(std::ftell(file.get()), static_cast<long>(format.headerLength));
    EXPECT_THAT(file.content(), ElementsAreArray(expectedHeader(format)));
  }
}

TEST(WavHeader, AddsUpTheSizesOfItsWritesAndRoundsEachOne) {
  struct Update {
    std::uint32_t code;
    std::vector<std::int32_t> sizes;
    std::uint32_t dataSize, factSampleCount, riffSize;
  };
  const Update updates[] = {{kWaveFormatPcm16, {100, 200}, 300, 0, 336},
                            {kWaveFormatImaAdpcm, {7, 7}, 2, 6, 54},
                            {kWaveFormatGsm610, {-4}, 0x3FFFFFFF, 0xFFFFFFFE, 0x40000033},
                            {kWaveFormatMuLaw, {2000, -1000}, 500, 500, 550}};
  for (const auto& [code, sizes, dataSize, factSampleCount, riffSize] : updates) {
    const ScratchFile file;
    WFHeader header;
    LXUTIL_Initialize_WFHeader(&header, 8000, code, 1);
    for (const std::int32_t size : sizes) LXUTIL_Write_WFHeader(&header, size, file.get());
    EXPECT_EQ(header.dataSize, dataSize) << code;
    EXPECT_EQ(header.factSampleCount, factSampleCount) << code;
    EXPECT_EQ(header.riffSize, riffSize) << code;
    EXPECT_LE(file.content().size(), 60u) << "the second header replaces the first";
  }
  WFHeader header;
  LXUTIL_Initialize_WFHeader(&header, 8000, kWaveFormatPcm8, 1);
  header.formatTag = kWaveFormatPcm8;  // no file of ours carries it, but a host may
  LXUTIL_Update_WFHeader(&header, 2000);
  EXPECT_EQ(header.dataSize, 1000u);
}

TEST(WavHeader, KeepsWhatItsFieldsCanHoldOfAnyChannelCountAndRate) {
  struct Case {
    std::uint32_t code, channels;
    std::int32_t rate;
    std::uint32_t keptChannels, blockAlign, bytesPerSecond;
  };
  for (const auto& [code, channels, rate, keptChannels, blockAlign, bytesPerSecond] :
       {Case{49, 0, 8000, 0, 65, 1625},
        {2, 0, 8000, 0, 0, 0},
        {17, 0xFFFF0001, 8000, 1, 256, 4055},
        {1, 40000, 2, 40000, 80000 - 65536, 2 * (80000 - 65536)},
        {1, 2, -1, 2, 4, static_cast<std::uint32_t>(-3)},  // -3.5, truncated
        {1, 2, 0x7FFFFFFF, 2, 4, 0xFFFFFFFC}}) {
    WFHeader header;
    EXPECT_EQ(LXUTIL_Initialize_WFHeader(&header, rate, code, channels), 1);
    EXPECT_EQ(header.channels, keptChannels);
    EXPECT_EQ(header.samplesPerSec, static_cast<std::uint32_t>(rate));
    EXPECT_EQ(header.blockAlign, blockAlign);
    EXPECT_EQ(header.averageBytesPerSec, bytesPerSecond);
  }
}

TEST(WavHeader, ReversesItsNumbersOnABigEndianHost) {
  WFHeader header, readBack;
  LXUTIL_Initialize_WFHeader(&header, 16000, kWaveFormatALaw, 1);
  const ScratchFile file;
  speech::audio::hostBigEndianFlag = 1;
  LXUTIL_Write_WFHeader(&header, 0, file.get());
  LXUTIL_Read_WFHeader(file.get(), &readBack);
  speech::audio::hostBigEndianFlag = 0;
  const Bytes bytes = file.content();
  ASSERT_EQ(bytes.size(), 58u);
  EXPECT_EQ(std::string(bytes.begin(), bytes.begin() + 4), "RIFF") << "texts keep their order";
  EXPECT_THAT(Bytes(bytes.begin() + 20, bytes.begin() + 28),
              ElementsAreArray({0, 6, 0, 1, 0, 0, 0x3E, 0x80}));
  EXPECT_EQ(readBack.formatTag, 6);
  EXPECT_EQ(readBack.samplesPerSec, 16000u);
}

TEST(WavHeaderReader, TakesWhatFollowsTheFormatForTheDataAndReadsZerosWhereTheFileEnds) {
  Bytes content = PcmFile{.channels = 2, .sampleRate = 22050, .data = Bytes(8, 's'), .dataSize = 26}.bytes();
  std::copy_n("LIST", 4, content.begin() + 36);
  const ScratchFile file(content), end({'R', 'I', 'F', 'F'});
  WFHeader read;
  EXPECT_EQ(LXUTIL_Read_WFHeader(file.get(), &read), 1);
  EXPECT_EQ(std::ftell(file.get()), 44);
  EXPECT_EQ(std::string(read.dataId, 4), "LIST");
  EXPECT_THAT(
      (std::vector<std::uint32_t>{read.formatTag, read.channels, read.samplesPerSec, read.averageBytesPerSec,
                                  read.blockAlign, read.bitsPerSample, read.dataSize, read.riffSize}),
      testing::ElementsAre(1, 2, 22050, 88200, 4, 16, 26, 62));
  EXPECT_EQ(LXUTIL_Read_WFHeader(end.get(), &read), 1);
  EXPECT_EQ(read.formatTag + read.dataSize, 0u);
}

TEST(WavHeaderMaker, WritesTheCanonicalHeaderOfTwoChannelsAtMost) {
  const TemporaryFolder folder;
  const std::string path = folder.file("header.wav");
  for (const int bits : {0, 4, 24, 32, -8}) EXPECT_EQ(WAVHEADER_MAKER(path.c_str(), 0, 8000, bits, 1), -1);
  EXPECT_FALSE(std::filesystem::exists(path));
  writeBytes(path, Bytes(100, 1));
  EXPECT_EQ(WAVHEADER_MAKER(path.c_str(), 1000, 16000, 16, 1), 0);
  EXPECT_THAT(readBytes(path), ElementsAreArray(PcmFile{.sampleRate = 16000, .dataSize = 1000}.bytes()));
  for (const auto& [channels, written] : {std::pair{2, 2u}, {5, 2u}, {0, 0u}, {-1, 0xFFFFu}}) {
    EXPECT_EQ(WAVHEADER_MAKER(path.c_str(), 0, 8000, 8, channels), 0);
    EXPECT_THAT(readBytes(path), ElementsAreArray(PcmFile{.channels = written, .bits = 8}.bytes()));
  }
  EXPECT_EQ(WAVHEADER_MAKER(folder.file("missing/header.wav").c_str(), 0, 8000, 16, 1), -1);
  EXPECT_EQ(WAVHEADER_MAKER(nullptr, 0, 8000, 16, 1), -1);
#ifdef __linux__
  EXPECT_EQ(WAVHEADER_MAKER("/dev/full", 0, 8000, 16, 1), -1);
#endif
}

}  // namespace
