#include <speech/audio.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <limits>
#include <utility>

#include "audio/byte_order.h"
#include "tests/support/scratch_file.h"

namespace {

using speech::audio::hostBigEndianFlag;
using speech::test::Bytes;
using speech::test::ScratchFile;
using testing::ElementsAre;

/// Makes the file functions take this host for a big-endian one.
class PretendBigEndian {
 public:
  PretendBigEndian() { hostBigEndianFlag = 1; }
  ~PretendBigEndian() { hostBigEndianFlag = 0; }
};

TEST(ByteOrder, IsSettledAsLittleEndianByTheFirstSwap) {
  for (auto* const swap : {swapdata, swapdata_forced}) {
    for (const std::int32_t elementSize : {1, 2, 9}) {
      hostBigEndianFlag = -1;
      EXPECT_EQ(swap(nullptr, nullptr, elementSize, 1), 1);
      EXPECT_EQ(hostBigEndianFlag, 0) << elementSize;
    }
  }
  hostBigEndianFlag = 1;
  set_endian_info();
  EXPECT_EQ(hostBigEndianFlag, 0);
}

struct SwapCase {
  std::int32_t elementSize;
  Bytes input;
  Bytes reversed;
};

TEST(SwapData, ReversesElementsOfTwoToEightBytesOnly) {
  for (const auto& [elementSize, input, reversed] :
       {SwapCase{1, {1, 2, 3}, {1, 2, 3}}, SwapCase{2, {1, 2, 3, 4}, {2, 1, 4, 3}},
        SwapCase{3, {1, 2, 3, 4, 5, 6}, {3, 2, 1, 6, 5, 4}},
        SwapCase{8, {1, 2, 3, 4, 5, 6, 7, 8}, {8, 7, 6, 5, 4, 3, 2, 1}},
        SwapCase{9, {1, 2, 3, 4, 5, 6, 7, 8, 9}, {1, 2, 3, 4, 5, 6, 7, 8, 9}}}) {
    const auto count = static_cast<std::int32_t>(input.size()) / elementSize;
    Bytes plain(input.size()), inPlace = input, bigEndian(input.size());
    EXPECT_EQ(swapdata(plain.data(), input.data(), elementSize, count), 1);
    EXPECT_EQ(plain, input);
    EXPECT_EQ(swapdata_forced(inPlace.data(), inPlace.data(), elementSize, count), 1);
    EXPECT_EQ(inPlace, reversed);
    const PretendBigEndian pretend;
    EXPECT_EQ(swapdata(bigEndian.data(), input.data(), elementSize, count), 1);
    EXPECT_EQ(bigEndian, reversed);
  }
}

TEST(SwapDataArguments, ThatDescribeNoMemoryTouchNothing) {
  constexpr auto kLargest = std::numeric_limits<std::int32_t>::max();
  constexpr auto kSmallest = std::numeric_limits<std::int32_t>::min();
  const std::array<std::uint8_t, 4> source{1, 2, 3, 4};
  std::array<std::uint8_t, 4> target{9, 9, 9, 9};
  for (const auto& [elementSize, count] : {std::pair{2, 0},
                                           {2, -1},
                                           {0, 4},
                                           {1, -4},
                                           {-1, 4},
                                           {9, kSmallest},
                                           {kSmallest, 1},
                                           {kSmallest, kLargest}}) {
    EXPECT_EQ(swapdata(target.data(), source.data(), elementSize, count), 1);
    EXPECT_EQ(swapdata_forced(target.data(), source.data(), elementSize, count), 1);
  }
  EXPECT_EQ(swapdata(nullptr, source.data(), 1, 4), 1);
  EXPECT_EQ(swapdata_forced(target.data(), nullptr, 2, 2), 1);
  EXPECT_THAT(target, ElementsAre(9, 9, 9, 9));
}

TEST(FRead, AnswersOneForABlockOfBytesAndTheByteCountForLargerElements) {
  const ScratchFile file({1, 2, 3, 4, 5, 6, 7});
  Bytes buffer(8);
  EXPECT_EQ(FREAD(buffer.data(), 1, 3, file.get()), 1);
  EXPECT_THAT(buffer, ElementsAre(1, 2, 3, 0, 0, 0, 0, 0));
  EXPECT_EQ(FREAD(buffer.data(), 2, 4, file.get()), 4) << "the file ends after two elements";
  EXPECT_THAT(buffer, ElementsAre(4, 5, 6, 7, 0, 0, 0, 0));
  EXPECT_EQ(FREAD(buffer.data(), 2, 4, file.get()), 0);
  EXPECT_EQ(FREAD(buffer.data(), 1, 1, file.get()), 0);
  std::rewind(file.get());
  const PretendBigEndian pretend;
  EXPECT_EQ(FREAD(buffer.data(), 2, 1, file.get()), 2);
  EXPECT_THAT(Bytes(buffer.begin(), buffer.begin() + 2), ElementsAre(2, 1));
}

TEST(FRead, ReadsNothingForSizesThatAreNoElements) {
  const ScratchFile file(Bytes(16, 1));
  Bytes buffer(16, 77);
  for (const auto& [elementSize, count] :
       {std::pair{16, 1}, {9, 1}, {0, 4}, {-1, -4}, {1, -1}, {2, 0}, {4, -1}}) {
    EXPECT_EQ(FREAD(buffer.data(), elementSize, count, file.get()), 0) << elementSize << " x " << count;
  }
  EXPECT_EQ(std::ftell(file.get()), 0);
  EXPECT_THAT(buffer, testing::Each(77));
}

TEST(FWrite, ReversesEveryElementWhateverTheHost) {
  const ScratchFile file;
  const Bytes source{1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
  EXPECT_EQ(FWRITE(source.data(), 1, 3, file.get()), 3);
  EXPECT_EQ(FWRITE(source.data(), 2, 2, file.get()), 2) << "the result of the last element's write";
  EXPECT_EQ(FWRITE(source.data(), 10, 1, file.get()), 10);
  for (const auto& [elementSize, count] : {std::pair{2, 0}, {1, 0}, {1, -1}, {4, -1}, {0, 1}, {-1, -1}}) {
    EXPECT_EQ(FWRITE(source.data(), elementSize, count, file.get()), 0) << elementSize << " x " << count;
  }
  EXPECT_THAT(file.content(), ElementsAre(1, 2, 3, 2, 1, 4, 3, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1));
}

TEST(GetFileSize, LeavesTheFileAtItsStart) {
  const ScratchFile file({1, 2, 3, 4, 5});
  std::fseek(file.get(), 2, SEEK_SET);
  std::uint32_t size = 0;
  EXPECT_EQ(get_filesize(file.get(), &size), 1);
  EXPECT_EQ(size, 5u);
  EXPECT_EQ(std::ftell(file.get()), 0);
}

TEST(ExternMemory, KeepsItsContentWhenItGrows) {
  auto* block = static_cast<std::uint8_t*>(ExternMalloc(1));
  ASSERT_NE(block, nullptr);
  block[0] = 1;
  block = static_cast<std::uint8_t*>(ExternRealloc(block, 100000));
  ASSERT_NE(block, nullptr);
  block[99999] = 3;
  EXPECT_EQ(block[0] + block[99999], 4);
  ExternFree(block);
  ExternFree(nullptr);
}

}  // namespace
