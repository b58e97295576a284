#include <speech/audio.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>

#include "audio/byte_order.h"
#include "audio/wav_header_reader.h"
#include "tests/support/binary_file.h"
#include "tests/support/scratch_file.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/wav_files.h"

namespace {

using speech::test::Bytes;
using speech::test::ByteWriter;
using speech::test::PcmFile;
using speech::test::readBytes;
using speech::test::ScratchFile;
using speech::test::TemporaryFolder;
using speech::test::writeBytes;
using testing::ElementsAreArray;

/// The format table that hosts and file readers know: one row per format code, for 16000 Hz and 2 channels.
struct FormatCase {
  std::uint32_t code;
  std::uint32_t tag;
  std::uint32_t bits;
  std::uint32_t blockAlign;
  std::uint32_t bytesPerSecond;
  Bytes extension;             // cbSize and what follows it in the fmt chunk; none for PCM
  std::uint32_t dataBytes;     // after 2000 bytes of 16-bit input
  std::uint32_t headerLength;  // where the samples begin
};

Bytes msAdpcmExtension() {
  return ByteWriter()
      .u16(32)
      .u16(244)
      .u16(7)
      .samples({256, 0, 512, -256, 0, 0, 192, 64, 240, 0, 460, -208, 392, -232})
      .bytes;
}
Bytes blockExtension(std::uint32_t samplesPerBlock) { return ByteWriter().u16(2).u16(samplesPerBlock).bytes; }
Bytes emptyExtension() { return ByteWriter().u16(0).bytes; }

Bytes expectedHeader(const FormatCase& format) {
  const bool isPcm = format.tag == 1;
  const auto fmtSize = static_cast<std::uint32_t>(16 + format.extension.size());
  ByteWriter file;
  file.text("RIFF").u32(format.headerLength - 8 + format.dataBytes).text("WAVE");
  file.text("fmt ").u32(fmtSize).u16(format.tag).u16(2).u32(16000).u32(format.bytesPerSecond);
  file.u16(format.blockAlign).u16(format.bits);
  file.bytes.insert(file.bytes.end(), format.extension.begin(), format.extension.end());
  if (!isPcm) file.text("fact").u32(4).u32(1000);
  file.text("data").u32(format.dataBytes);
  return file.bytes;
}

class WavHeaderLayout : public testing::TestWithParam<FormatCase> {};

TEST_P(WavHeaderLayout, IsTheFormatsOwnByteForByte) {
  const FormatCase& format = GetParam();
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

INSTANTIATE_TEST_SUITE_P(
    Codes, WavHeaderLayout,
    testing::Values(FormatCase{kWaveFormatPcm16, 1, 16, 4, 64000, {}, 2000, 44},
                    FormatCase{kWaveFormatPcm8, 1, 8, 2, 32000, {}, 2000, 44},
                    FormatCase{kWaveFormatMsAdpcm, 2, 4, 256, 16787, msAdpcmExtension(), 500, 90},
                    FormatCase{kWaveFormatALaw, 6, 8, 2, 32000, emptyExtension(), 1000, 58},
                    FormatCase{kWaveFormatMuLaw, 7, 8, 2, 32000, emptyExtension(), 1000, 58},
                    FormatCase{kWaveFormatImaAdpcm, 17, 4, 512, 16222, blockExtension(505), 500, 60},
                    FormatCase{kWaveFormatGsm610, 49, 0, 65, 3250, blockExtension(320), 500, 60},
                    FormatCase{kWaveFormatSamples32, 0, 32, 0, 0, emptyExtension(), 2000, 58},
                    FormatCase{kWaveFormatUnknown, 0, 16, 0, 0, emptyExtension(), 2000, 58},
                    FormatCase{3, 0, 16, 0, 0, emptyExtension(), 2000, 58},
                    FormatCase{0x10006, 0, 16, 0, 0, emptyExtension(), 2000, 58}),
    [](const auto& test) { return "Code" + std::to_string(test.param.code); });

TEST(WavHeader, AddsUpTheSizesOfItsWrites) {
  const ScratchFile file;
  WFHeader header;
  LXUTIL_Initialize_WFHeader(&header, 8000, kWaveFormatPcm16, 1);
  LXUTIL_Write_WFHeader(&header, 100, file.get());
  LXUTIL_Write_WFHeader(&header, 200, file.get());
  EXPECT_EQ(header.dataSize, 300u);
  EXPECT_EQ(header.riffSize, 336u);
  EXPECT_EQ(file.content().size(), 44u) << "the second header replaces the first";
}

struct Update {
  std::uint32_t code;
  std::vector<std::int32_t> sizes;
  std::uint32_t dataSize, factSampleCount;
};

TEST(WavHeader, RoundsWithinEachUpdateAndTakesSizesInTheWidthOfItsFields) {
  for (const auto& [code, sizes, dataSize, factSampleCount] :
       {Update{kWaveFormatImaAdpcm, {7, 7}, 2, 6}, Update{kWaveFormatGsm610, {-4}, 0x3FFFFFFF, 0xFFFFFFFE},
        Update{kWaveFormatMuLaw, {2000, -1000}, 500, 500}}) {
    WFHeader header;
    LXUTIL_Initialize_WFHeader(&header, 8000, code, 1);
    for (const std::int32_t size : sizes) LXUTIL_Update_WFHeader(&header, size);
    EXPECT_EQ(header.dataSize, dataSize) << code;
    EXPECT_EQ(header.factSampleCount, factSampleCount) << code;
  }
  WFHeader header;
  LXUTIL_Initialize_WFHeader(&header, 8000, kWaveFormatPcm8, 1);
  header.formatTag = kWaveFormatPcm8;  // no file of ours carries it, but a host may
  LXUTIL_Update_WFHeader(&header, 2000);
  EXPECT_EQ(header.dataSize, 1000u);
}

TEST(WavHeader, KeepsWhatItsFieldsCanHoldOfAnyChannelCountAndRate) {
  WFHeader header;
  for (const std::uint32_t code : {1u, 2u, 6u, 17u, 32u, 49u, 153u}) {
    EXPECT_EQ(LXUTIL_Initialize_WFHeader(&header, 8000, code, 0), 1);
    EXPECT_EQ(header.channels, 0);
    EXPECT_EQ(header.averageBytesPerSec, code == 49 ? 1625u : 0u);
    EXPECT_EQ(LXUTIL_Initialize_WFHeader(&header, 8000, code, 0xFFFF0001), 1);
    EXPECT_EQ(header.channels, 1);
  }
  LXUTIL_Initialize_WFHeader(&header, 2, kWaveFormatPcm16, 40000);
  EXPECT_EQ(header.blockAlign, 80000 - 65536);
  EXPECT_EQ(header.averageBytesPerSec, 2u * (80000 - 65536));
  LXUTIL_Initialize_WFHeader(&header, -1, kWaveFormatPcm16, 2);
  EXPECT_EQ(header.samplesPerSec, 0xFFFFFFFFu);
  EXPECT_EQ(header.averageBytesPerSec, static_cast<std::uint32_t>(-3)) << "-3.5, truncated";
  LXUTIL_Initialize_WFHeader(&header, 0x7FFFFFFF, kWaveFormatPcm16, 2);
  EXPECT_EQ(header.averageBytesPerSec, 0xFFFFFFFCu);
}

TEST(WavHeader, ReversesItsNumbersOnABigEndianHost) {
  WFHeader header;
  LXUTIL_Initialize_WFHeader(&header, 16000, kWaveFormatALaw, 1);
  const ScratchFile file;
  speech::audio::hostBigEndianFlag = 1;
  LXUTIL_Write_WFHeader(&header, 0, file.get());
  std::rewind(file.get());
  WFHeader readBack;
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

TEST(WavHeaderReader, LeavesTheFileAtTheSamplesOfAPcmFile) {
  ScratchFile file(PcmFile{.channels = 2, .sampleRate = 22050, .data = Bytes(8, 's')}.bytes());
  WFHeader read;
  EXPECT_EQ(LXUTIL_Read_WFHeader(file.get(), &read), 1);
  EXPECT_EQ(std::ftell(file.get()), 44);
  EXPECT_EQ(read.formatTag, 1);
  EXPECT_EQ(read.channels, 2);
  EXPECT_EQ(read.samplesPerSec, 22050u);
  EXPECT_EQ(read.averageBytesPerSec, 88200u);
  EXPECT_EQ(read.blockAlign, 4);
  EXPECT_EQ(read.bitsPerSample, 16);
  EXPECT_EQ(read.dataSize, 8u);
  EXPECT_EQ(read.riffSize, 44u);
}

TEST(WavHeaderReader, TakesAnyChunkAfterTheFormatForTheData) {
  Bytes content = PcmFile{.dataSize = 26}.bytes();
  std::copy_n("LIST", 4, content.begin() + 36);
  const ScratchFile file(content);
  WFHeader header;
  EXPECT_EQ(LXUTIL_Read_WFHeader(file.get(), &header), 1);
  EXPECT_EQ(std::string(header.dataId, 4), "LIST");
  EXPECT_EQ(header.dataSize, 26u);
}

TEST(WavHeaderReader, ReadsZerosWhereTheFileEnds) {
  const ScratchFile file({'R', 'I', 'F', 'F'});
  WFHeader header;
  std::fill_n(reinterpret_cast<char*>(&header), sizeof header, '\x55');
  EXPECT_EQ(LXUTIL_Read_WFHeader(file.get(), &header), 1);
  EXPECT_EQ(header.formatTag, 0);
  EXPECT_EQ(header.dataSize, 0u);
}

TEST(WavHeaderMaker, WritesTheCanonicalHeaderOfTwoChannelsAtMost) {
  const TemporaryFolder folder;
  const std::string path = folder.file("header.wav");
  writeBytes(path, Bytes(100, 1));
  EXPECT_EQ(WAVHEADER_MAKER(path.c_str(), 1000, 16000, 16, 1), 0);
  EXPECT_THAT(readBytes(path), ElementsAreArray(PcmFile{.sampleRate = 16000, .dataSize = 1000}.bytes()));
  for (const auto& [channels, written] : {std::pair{2, 2u}, {5, 2u}, {0, 0u}, {-1, 0xFFFFu}}) {
    EXPECT_EQ(WAVHEADER_MAKER(path.c_str(), 0, 8000, 8, channels), 0);
    EXPECT_THAT(readBytes(path), ElementsAreArray(PcmFile{.channels = written, .bits = 8}.bytes()))
        << channels;
  }
}

TEST(WavHeaderMaker, RefusesWhatItCannotWrite) {
  const TemporaryFolder folder;
  const std::string path = folder.file("header.wav");
  for (const int bits : {0, 4, 15, 24, 32, -8})
    EXPECT_EQ(WAVHEADER_MAKER(path.c_str(), 0, 8000, bits, 1), -1);
  EXPECT_FALSE(std::filesystem::exists(path));
  EXPECT_EQ(WAVHEADER_MAKER(folder.file("missing/header.wav").c_str(), 0, 8000, 16, 1), -1);
  EXPECT_EQ(WAVHEADER_MAKER(folder.path().string().c_str(), 0, 8000, 16, 1), -1) << "a folder";
  EXPECT_EQ(WAVHEADER_MAKER(nullptr, 0, 8000, 16, 1), -1);
}

#ifdef __linux__
TEST(WavHeaderMaker, ReportsADiskThatIsFull) { EXPECT_EQ(WAVHEADER_MAKER("/dev/full", 0, 8000, 16, 1), -1); }
#endif

}  // namespace
