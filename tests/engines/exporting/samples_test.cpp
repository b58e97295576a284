#include "engines/exporting/samples.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <psapi.h>

#include <string>

#include "base/file.h"
#include "tests/support/file_content.h"
#include "tests/support/temporary_folder.h"

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

  /// The most memory that this process has ever used.
  static std::size_t peakMemory() {
    PROCESS_MEMORY_COUNTERS memory = {};
    GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof memory);
    return memory.PeakWorkingSetSize;
  }

  test::TemporaryFolder folder_;
};

TEST_F(RawPcm, UpToABlockBecomesSilenceAndMoreIsCopied) {
  constexpr auto kDropped = LastFullBlock::kDropped, kWritten = LastFullBlock::kWritten;
  const std::string samples(2 * 65'535 + 100, 's');
  const auto silence = [](std::size_t size) { return std::string(size, '\0'); };
  EXPECT_EQ(appended(samples, 1000, kDropped), silence(1000));
  EXPECT_EQ(appended(samples, 65'535, kDropped), silence(65'535));
  EXPECT_EQ(appended("sss", 0, kDropped), "");
  EXPECT_EQ(appended("sss", -5, kWritten), "");
  EXPECT_EQ(appended(samples, 65'536, kDropped), samples.substr(0, 65'536));
  EXPECT_EQ(appended(samples, 2 * 65'535 + 100, kWritten), samples);
  EXPECT_EQ(appended(samples, 2 * 65'535, kDropped), samples.substr(0, 65'535))
      << "the last block is missing";
  EXPECT_EQ(appended(samples, 2 * 65'535, kWritten), samples.substr(0, 2 * 65'535));
  EXPECT_EQ(appended(samples.substr(0, 65'600), 70'000, kDropped), samples.substr(0, 65'600) + silence(4400));
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

TEST_F(RawPcm, StrippingHoldsTheSamplesOnceInMemory) {
  constexpr std::size_t kSize = 34'000'000;  // just beyond where a doubling buffer grows
  const auto path = folder_ / "x.wav";
  writeFile(path, "");
  std::filesystem::resize_file(path, 44 + kSize);
  const std::size_t before = peakMemory();
  EXPECT_TRUE(stripWavHeader(path.c_str(), (folder_ / "out").c_str()));
  EXPECT_LT(peakMemory() - before, kSize * 3 / 2);
}

}  // namespace
}  // namespace speech
