// SoX reads files with our headers: an independent reader has to find in them what its own writer put there.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <string_view>

#include <speech/audio.h>
#include "audio/owned_file.h"
#include "tests/support/binary_file.h"
#include "tests/support/temporary_folder.h"

namespace {

using speech::audio::OwnedFile;
using speech::test::Bytes;
using speech::test::readBytes;
using speech::test::TemporaryFolder;
using testing::ElementsAreArray;

struct SoxFormat {
  const char* name;
  std::uint32_t code;
  const char* encoding;  // SoX's options for this format
  std::uint32_t channels;
  std::int32_t inputBytesPerDataByte;  // what LXUTIL_Write_WFHeader takes for one byte of sample data
};

void PrintTo(const SoxFormat& format, std::ostream* out) { *out << format.name; }

class SoxReadsOurHeader : public testing::TestWithParam<SoxFormat> {
 protected:
  /// Runs SoX in the folder; what it has to say goes to a file.
  void sox(const std::string& arguments) {
    const std::string command = "cd '" + folder.path().string() + "' && sox -R " + arguments + " 2>>messages";
    ASSERT_EQ(std::system(command.c_str()), 0) << command;
  }

  TemporaryFolder folder;
};

/// The content of the data chunk, which is the last one that SoX writes.
Bytes dataChunk(const Bytes& file) {
  const std::string_view id = "data";
  return {std::search(file.begin(), file.end(), id.begin(), id.end()) + 8, file.end()};
}

/// The first `kept` bytes of every `blockSize` bytes.
Bytes headsOfBlocks(const Bytes& bytes, std::size_t blockSize, std::size_t kept) {
  Bytes heads;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (i % blockSize < kept) heads.push_back(bytes[i]);
  }
  return heads;
}

TEST_P(SoxReadsOurHeader, AndFindsTheSameSamples) {
  const SoxFormat& format = GetParam();
  const std::string channels = std::to_string(format.channels);
  sox("-n -r 16000 -c " + channels + " " + format.encoding +
      " theirs.wav synth 1.5625 sine 440 sine 660 vol 0.5");
  sox("theirs.wav -e signed -b 16 -t raw theirs.raw");
  Bytes data = dataChunk(readBytes(folder.file("theirs.wav")));
  Bytes samples = readBytes(folder.file("theirs.raw"));
  ASSERT_GE(samples.size(), 25000 * 2 * format.channels);
  if (format.code == kWaveFormatMsAdpcm) {
    // SoX's blocks have 256 bytes and 500 samples per channel, ours 128 and 244. A block is decoded from its
    // front, so the first half of one of theirs is one of ours.
    data = headsOfBlocks(data, 256 * format.channels, 128 * format.channels);
    samples = headsOfBlocks(samples, 500 * 2 * format.channels, 244 * 2 * format.channels);
  }

  {
    const OwnedFile ours(std::fopen(folder.file("ours.wav").c_str(), "wb"));
    ASSERT_TRUE(ours);
    WFHeader header;
    LXUTIL_Initialize_WFHeader(&header, 16000, format.code, format.channels);
    LXUTIL_Write_WFHeader(&header, static_cast<std::int32_t>(data.size()) * format.inputBytesPerDataByte,
                          ours.get());
    ASSERT_EQ(header.dataSize, data.size());
    std::fwrite(data.data(), 1, data.size(), ours.get());
  }
  sox("ours.wav -e signed -b 16 -t raw ours.raw");
  EXPECT_THAT(readBytes(folder.file("messages")), testing::IsEmpty());
  EXPECT_THAT(readBytes(folder.file("ours.raw")), ElementsAreArray(samples));
}

INSTANTIATE_TEST_SUITE_P(Formats, SoxReadsOurHeader,
                         testing::Values(SoxFormat{"Pcm16", kWaveFormatPcm16, "-e signed -b 16", 2, 1},
                                         SoxFormat{"Pcm8", kWaveFormatPcm8, "-e unsigned -b 8", 2, 1},
                                         SoxFormat{"ALaw", kWaveFormatALaw, "-e a-law", 2, 2},
                                         SoxFormat{"MuLaw", kWaveFormatMuLaw, "-e mu-law", 2, 2},
                                         SoxFormat{"ImaMono", kWaveFormatImaAdpcm, "-e ima-adpcm", 1, 4},
                                         SoxFormat{"ImaStereo", kWaveFormatImaAdpcm, "-e ima-adpcm", 2, 4},
                                         SoxFormat{"MsMono", kWaveFormatMsAdpcm, "-e ms-adpcm", 1, 4},
                                         SoxFormat{"MsStereo", kWaveFormatMsAdpcm, "-e ms-adpcm", 2, 4},
                                         SoxFormat{"Gsm", kWaveFormatGsm610, "-e gsm-full-rate", 1, 4}),
                         [](const auto& test) { return test.param.name; });

}  // namespace
