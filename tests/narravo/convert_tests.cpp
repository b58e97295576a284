// What the host takes for a WAV file.

#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "apps/narravo/commands.h"
#include "apps/narravo/wav_format.h"
#include "tests/support/wav_files.h"

namespace narravo {
namespace {

using speech::test::Bytes;
using speech::test::PcmFile;

WavFormat formatOf(const Bytes& bytes) {
  std::istringstream file(std::string(bytes.begin(), bytes.end()));
  return readWavFormat(file, "in.wav");
}

TEST(WavFormatOfAFile, IsReadFromItsHeader) {
  const WavFormat format =
      formatOf(PcmFile{.channels = 2, .sampleRate = 22050, .bits = 16, .data = Bytes(44100 * 4, 0)}.bytes());
  EXPECT_EQ(format.channels, 2);
  EXPECT_EQ(format.bitsPerSample, 16);
  EXPECT_EQ(format.sampleRateHz, 22050);
  EXPECT_EQ(format.seconds(), 2);
}

TEST(WavFormatOfAFile, IsRefusedWithItsReason) {
  struct Refusal {
    Bytes file;
    const char* reason;
  };
  const Bytes data(20, 0);
  const Bytes whole = PcmFile{.data = data}.bytes();
  Bytes longFormat = whole, otherChunk = whole;
  longFormat[16] = 18;
  otherChunk[36] = 'L';
  for (const auto& [file, reason] : {
           Refusal{{}, "not a WAV file"},
           Refusal{Bytes(whole.begin(), whole.begin() + 43), "not a WAV file"},
           Refusal{PcmFile{.data = data, .dataSize = 0x7FFFFFFF}.bytes(), "shorter than its header says"},
           Refusal{PcmFile{.tag = 6, .bits = 8, .data = data}.bytes(), "not PCM"},
           Refusal{PcmFile{.channels = 3, .data = data}.bytes(), "not PCM"},
           Refusal{PcmFile{.sampleRate = 0, .data = data}.bytes(), "no sample rate"},
           Refusal{longFormat, "more in its header"},
           Refusal{otherChunk, "more in its header"},
       }) {
    try {
      formatOf(file);
      ADD_FAILURE() << "taken, though it is " << reason;
    } catch (const HostError& error) {
      EXPECT_EQ(error.code(), kExitFile);
      EXPECT_THAT(error.what(), testing::AllOf(testing::StartsWith("in.wav "), testing::HasSubstr(reason)));
    }
  }
}

}  // namespace
}  // namespace narravo
