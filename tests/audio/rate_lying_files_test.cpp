// WAV files that are not what they say: an error or a well-formed file, never a crash, and never memory or
// time for samples that only a header knows of.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <span>
#include <string>

#include <speech/audio.h>
#include "tests/support/binary_file.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/wav_files.h"

namespace {

using speech::test::Bytes;
using speech::test::isWellFormedWav;
using speech::test::PcmFile;
using speech::test::readBytes;
using speech::test::TemporaryFolder;
using speech::test::writeBytes;
using testing::ElementsAreArray;
using testing::IsEmpty;

class LyingWav : public testing::Test {
 protected:
  /// Both wrappers refuse the input and leave an empty file.
  void expectRefused(const Bytes& input) {
    writeBytes(in, input);
    EXPECT_EQ(RATEAPI_WAV2WAV(in.c_str(), 16000, 16, 1, out.c_str()), -1);
    EXPECT_THAT(readBytes(out), IsEmpty());
    EXPECT_EQ(RATEAPI_WAV2WAV_EX(in.c_str(), 16000, 8, 2, out.c_str()), -1);
    EXPECT_THAT(readBytes(out), IsEmpty());
  }

  /// Both wrappers write `output` as stereo of 16 bits if the input is.
  void expectConverted(const Bytes& input, std::int32_t sampleRate, const Bytes& output) {
    writeBytes(in, input);
    for (auto* const convert : {RATEAPI_WAV2WAV, RATEAPI_WAV2WAV_EX}) {
      EXPECT_EQ(convert(in.c_str(), sampleRate, 16, output[22], out.c_str()), 1) << input.size();
      EXPECT_THAT(readBytes(out), ElementsAreArray(output)) << input.size() << " bytes";
    }
  }

  const TemporaryFolder folder;
  const std::string in = folder.file("in.wav");
  const std::string out = folder.file("out.wav");
  const Bytes data = Bytes(400, 3);
};

TEST_F(LyingWav, AboutItsRateOrItsFormatIsRefused) {
  for (const std::uint32_t rate : {0u, 0x80000000u, 0xFFFFFFFFu, 0x7FFFFFFFu, 1u}) {
    expectRefused(PcmFile{.sampleRate = rate, .data = data}.bytes());
  }
  for (const std::uint32_t tag : {0u, 2u, 3u, 6u, 17u, 0xFFFEu}) {
    expectRefused(PcmFile{.tag = tag, .data = data}.bytes());
  }
  expectRefused(Bytes(500, 0));
  expectRefused(Bytes(500, 0xFF));
}

TEST_F(LyingWav, AtAnyRateIsCopiedToTheSameRate) {
  for (const std::uint32_t rate : {0u, 1u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
    writeBytes(in, PcmFile{.sampleRate = rate, .data = data}.bytes());
    EXPECT_EQ(RATEAPI_WAV2WAV(in.c_str(), static_cast<std::int32_t>(rate), 16, 1, out.c_str()), 1) << rate;
    const Bytes written = readBytes(out);
    ASSERT_EQ(written.size(), 44 + data.size());
    EXPECT_TRUE(std::ranges::equal(std::span(written).subspan(44), data));
  }
}

// The data chunk ends where the file does, and a frame that it cuts is left out.
TEST_F(LyingWav, ThatAnnouncesMoreThanItHoldsIsConvertedAsFarAsItGoes) {
  for (const std::uint32_t size : {11u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFEu}) {
    for (const std::int32_t length : {36, 43, 44, 47, 48, 53, 54}) {
      PcmFile file{.channels = 2, .data = Bytes(10, 3), .dataSize = size};
      Bytes cut = file.bytes();
      cut.resize(static_cast<std::size_t>(length));
      file.data.resize(static_cast<std::size_t>(std::max(length - 44, 0) / 4 * 4));
      file.dataSize = 0xFFFFFFFF;
      expectConverted(cut, 8000, file.bytes());
    }
  }
  for (const std::int32_t length : {0, 1, 20, 24}) {
    Bytes cut = PcmFile{.data = data}.bytes();
    cut.resize(static_cast<std::size_t>(length));
    expectRefused(cut);
  }
}

TEST_F(LyingWav, WithAnyWidthIsRefusedOrWellFormed) {
  for (const std::uint32_t bits : {0u, 6u, 9u, 17u, 24u, 32u, 49u, 153u, 65535u}) {
    for (const std::uint32_t channels : {0u, 2u}) {
      writeBytes(in, PcmFile{.channels = channels, .bits = bits, .data = data}.bytes());
      for (const int outBits : {16, 32}) {
        for (auto* const convert : {RATEAPI_WAV2WAV, RATEAPI_WAV2WAV_EX}) {
          const std::int32_t answer = convert(in.c_str(), 11025, outBits, 2, out.c_str());
          const Bytes written = readBytes(out);
          EXPECT_TRUE(answer == 1 ? isWellFormedWav(written) : written.empty())
              << bits << " bits, " << channels << " channels to " << outBits << " bits";
        }
      }
    }
  }
}

using FilePaths = LyingWav;

TEST_F(FilePaths, ThatDoNotLeadToFilesAreRefused) {
  writeBytes(in, PcmFile{.data = data}.bytes());
  const std::string missing = folder.file("missing.wav"), nowhere = folder.file("missing/out.wav");
  const std::string directory = folder.path().string();
  for (auto* const convert : {RATEAPI_WAV2WAV, RATEAPI_WAV2WAV_EX}) {
    for (const char* const source :
         {missing.c_str(), directory.c_str(), "", static_cast<const char*>(nullptr)}) {
      writeBytes(out, data);
      EXPECT_EQ(convert(source, 8000, 16, 1, out.c_str()), -1);
      EXPECT_THAT(readBytes(out), IsEmpty()) << "the output is created nevertheless";
    }
    for (const char* const target :
         {nowhere.c_str(), directory.c_str(), "", static_cast<const char*>(nullptr)}) {
      EXPECT_EQ(convert(in.c_str(), 8000, 16, 1, target), -1);
    }
  }
}

TEST_F(FilePaths, OfAFileOntoItselfAreRefusedAndLeaveItWhole) {
  const Bytes file = PcmFile{.data = data}.bytes();
  writeBytes(in, file);
  std::filesystem::create_directory(folder.path() / "sub");
  for (const std::string& path : {in, folder.file("sub/../in.wav")}) {
    EXPECT_EQ(RATEAPI_WAV2WAV(in.c_str(), 16000, 16, 1, path.c_str()), -1);
    EXPECT_TRUE(readBytes(in) == file);
  }
}

TEST_F(FilePaths, ThatFailLeaveNoFileOpen) {
  writeBytes(in, PcmFile{.tag = 6, .data = data}.bytes());
  const std::string nowhere = folder.file("missing/out.wav");
#ifdef _WIN32
  constexpr int kMoreThanCanBeOpen = 600;
#else
  constexpr int kMoreThanCanBeOpen = 1100;
#endif
  for (int i = 0; i < kMoreThanCanBeOpen; ++i) {
    ASSERT_EQ(RATEAPI_WAV2WAV(in.c_str(), 8000, 16, 1, i % 2 == 0 ? nowhere.c_str() : out.c_str()), -1);
  }
  writeBytes(in, PcmFile{.data = data}.bytes());
  EXPECT_EQ(RATEAPI_WAV2WAV(in.c_str(), 8000, 16, 1, out.c_str()), 1);
}

TEST_F(FilePaths, WithWishesThatNoFileGrantsAreRefused) {
  writeBytes(in, PcmFile{.data = data}.bytes());
  for (const int bits : {0, 4, 24, -8, 64}) {
    EXPECT_EQ(RATEAPI_WAV2WAV(in.c_str(), 8000, bits, 1, out.c_str()), -1) << bits;
    EXPECT_EQ(RATEAPI_WAV2WAV_EX(in.c_str(), 8000, bits, 1, out.c_str()), -1) << bits;
  }
  EXPECT_EQ(RATEAPI_WAV2WAV(in.c_str(), 8000, 32, 1, out.c_str()), -1);
  for (const int channels : {0, -1})
    EXPECT_EQ(RATEAPI_WAV2WAV(in.c_str(), 8000, 16, channels, out.c_str()), -1);
  for (const int rate : {0, -16000}) EXPECT_EQ(RATEAPI_WAV2WAV(in.c_str(), rate, 16, 1, out.c_str()), -1);
}

#ifdef __linux__
TEST_F(FilePaths, OnADiskThatIsFullAreRefused) {
  writeBytes(in, PcmFile{.data = Bytes(100000, 1)}.bytes());
  EXPECT_EQ(RATEAPI_WAV2WAV(in.c_str(), 8000, 16, 1, "/dev/full"), -1);
  writeBytes(in, PcmFile{}.bytes());
  EXPECT_EQ(RATEAPI_WAV2WAV(in.c_str(), 8000, 16, 1, "/dev/full"), -1);
}
#endif

}  // namespace
