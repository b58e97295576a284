#include "audio/file_io.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <utility>

#include <speech/audio.h>
#include "tests/support/scratch_file.h"

namespace {

using speech::audio::hostBigEndianFlag;
using namespace speech::test;
using namespace testing;

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

TEST(SwapData, ReversesElementsOfTwoToEightBytesOnly) {
  const Bytes input{1, 2, 3, 4, 5, 6, 7, 8, 9};
  for (const auto& [elementSize, reversed] : {std::pair{1, input},
                                              {2, {2, 1, 4, 3, 6, 5, 8, 7}},
                                              {3, {3, 2, 1, 6, 5, 4, 9, 8, 7}},
                                              {8, {8, 7, 6, 5, 4, 3, 2, 1}},
                                              {9, input}}) {
    const auto count = static_cast<std::int32_t>(reversed.size()) / elementSize;
    Bytes plain(reversed.size()), inPlace(input.begin(), input.begin() + elementSize * count),
        bigEndian = plain;
    EXPECT_EQ(swapdata(plain.data(), input.data(), elementSize, count), 1);
    EXPECT_EQ(plain, inPlace);
    EXPECT_EQ(swapdata_forced(inPlace.data(), inPlace.data(), elementSize, count), 1);
    EXPECT_EQ(inPlace, reversed);
    const PretendBigEndian pretend;
    EXPECT_EQ(swapdata(bigEndian.data(), input.data(), elementSize, count), 1);
    EXPECT_EQ(bigEndian, reversed);
  }
}

TEST(SwapData, TouchesNothingWhereItsArgumentsDescribeNoMemory) {
  constexpr auto kSmallest = std::numeric_limits<std::int32_t>::min();
  const Bytes source{1, 2, 3, 4};
  Bytes target(4, 9);
  for (auto* const swap : {swapdata, swapdata_forced}) {
    for (const auto& [elementSize, count] : {std::pair{2, 0},
                                             {2, -1},
                                             {0, 4},
                                             {1, -4},
                                             {-1, 4},
                                             {9, kSmallest},
                                             {kSmallest, 1},
                                             {kSmallest, -(kSmallest + 1)}}) {
      EXPECT_EQ(swap(target.data(), source.data(), elementSize, count), 1);
    }
    EXPECT_EQ(swap(nullptr, source.data(), 1, 4), 1);
    EXPECT_EQ(swap(target.data(), nullptr, 2, 2), 1);
  }
  EXPECT_THAT(target, ElementsAre(9, 9, 9, 9));
}

TEST(FRead, AnswersOneForABlockOfBytesAndTheByteCountForLargerElements) {
  const ScratchFile file({1, 2, 3, 4, 5, 6, 7});
  Bytes buffer(8);
  for (const auto& [elementSize, count] : {std::pair{16, 1}, {9, 1}, {0, 4}, {-1, -4}, {1, -1}, {2, 0}}) {
    EXPECT_EQ(FREAD(buffer.data(), elementSize, count, file.get()), 0) << elementSize << " x " << count;
  }
  EXPECT_EQ(std::ftell(file.get()), 0);
  EXPECT_EQ(FREAD(buffer.data(), 1, 3, file.get()), 1);
  EXPECT_THAT(buffer, ElementsAre(1, 2, 3, 0, 0, 0, 0, 0));
  EXPECT_EQ(FREAD(buffer.data(), 2, 4, file.get()), 4) << "the file ends after two elements";
  EXPECT_THAT(buffer, ElementsAre(4, 5, 6, 7, 0, 0, 0, 0));
  EXPECT_EQ(FREAD(buffer.data(), 2, 4, file.get()), 0);
  EXPECT_EQ(FREAD(buffer.data(), 1, 1, file.get()), 0);
  std::rewind(file.get());
  const PretendBigEndian pretend;
  EXPECT_EQ(FREAD(buffer.data(), 2, 1, file.get()), 2);
  EXPECT_THAT(buffer, ElementsAre(2, 1, 6, 7, 0, 0, 0, 0));
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
  std::uint32_t size = 0;
  EXPECT_EQ(get_filesize(file.get(), &size), 1);
  EXPECT_EQ(size, 17u);
  EXPECT_EQ(std::ftell(file.get()), 0);
}

}  // namespace
