#include "engines/shared/raw_pcm.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/file_content.h"
#include "tests/support/temporary_folder.h"
#include "win32/file.h"

namespace speech {
namespace {

using test::readFile;
using test::writeFile;

class RawPcm : public ::testing::Test {
 protected:
  /// What appendSamples makes of `source`.
  std::string appended(const std::string& source, int byteCount, LastFullBlock lastFullBlock) {
    writeFile(folder_ / "in", source);
    {
      const File in = openFile((folder_ / "in").c_str(), L"rb");
      const File out = openFile((folder_ / "out").c_str(), L"wb");
      appendSamples(in.get(), out.get(), byteCount, lastFullBlock);
    }
    return readFile(folder_ / "out");
  }

  test::TemporaryFolder folder_;
};

TEST_F(RawPcm, UpToABlockBecomesSilence) {
  EXPECT_EQ(appended(std::string(1000, 's'), 1000, LastFullBlock::kDropped), std::string(1000, '\0'));
  EXPECT_EQ(appended(std::string(70'000, 's'), 65'535, LastFullBlock::kDropped), std::string(65'535, '\0'));
  EXPECT_EQ(appended("sss", 0, LastFullBlock::kDropped), "");
  EXPECT_EQ(appended("sss", -5, LastFullBlock::kWritten), "");
}

TEST_F(RawPcm, MoreThanABlockIsCopied) {
  const std::string samples(2 * 65'535 + 100, 's');
  EXPECT_EQ(appended(samples, 65'536, LastFullBlock::kDropped), samples.substr(0, 65'536));
  EXPECT_EQ(appended(samples, 2 * 65'535 + 100, LastFullBlock::kWritten), samples);
}

TEST_F(RawPcm, ALastBlockOfExactlyABlockIsTheEnginesChoice) {
  const std::string samples(2 * 65'535, 's');
  EXPECT_EQ(appended(samples, 2 * 65'535, LastFullBlock::kDropped), samples.substr(0, 65'535));
  EXPECT_EQ(appended(samples, 2 * 65'535, LastFullBlock::kWritten), samples);
}

TEST_F(RawPcm, MissingSamplesBecomeSilence) {
  EXPECT_EQ(appended(std::string(65'600, 's'), 70'000, LastFullBlock::kDropped),
            std::string(65'600, 's') + std::string(4400, '\0'));
}

TEST_F(RawPcm, StrippingTakesTheFirst44Bytes) {
  const auto path = folder_ / "x.wav";
  writeFile(path, std::string(44, 'h') + "samples");
  EXPECT_TRUE(stripWavHeader(path.c_str(), path.c_str()));
  EXPECT_EQ(readFile(path), "samples");
  EXPECT_TRUE(stripWavHeader(path.c_str(), path.c_str()));
  EXPECT_EQ(readFile(path), "") << "shorter than a header";

  EXPECT_FALSE(stripWavHeader((folder_ / "missing").c_str(), path.c_str()));
  EXPECT_FALSE(stripWavHeader(path.c_str(), folder_.path().c_str()));
}

}  // namespace
}  // namespace speech
