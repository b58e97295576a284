#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "engines/cloud/decoder.h"
#include "tests/engines/cloud/wav_bytes.h"
#include "tests/support/file_content.h"
#include "tests/support/temporary_folder.h"

namespace speech {
namespace {

using test::chunk;
using test::pcmFormat;
using test::riff;
using test::wavFile;

std::string payloadOf(const CDecoder& decoder) {
  const auto bytes = decoder.sharedPayload();
  return bytes ? std::string(reinterpret_cast<const char*>(bytes.get()), decoder.payloadSize())
               : std::string();
}

class WavReading : public testing::Test {
 protected:
  int open(std::string_view content) {
    const auto path = folder_ / L"sound.wav";
    test::writeFile(path, content);
    return decoder_.openWav(path.c_str());
  }

  test::TemporaryFolder folder_;
  CDecoder decoder_;
};

const std::string kFormat = pcmFormat(1, 22050, 16);

TEST_F(WavReading, LoadsExactlyTheDataChunk) {
  const std::string list = chunk("LIST", "INFOodd"), format = chunk("fmt ", kFormat);
  for (const auto& [file, payload] : {
           std::pair{wavFile(kFormat, "abcd"), "abcd"},
           {wavFile(pcmFormat(2, 44100, 16), "abcdefgh"), "abcdefgh"},
           {wavFile(pcmFormat(1, 8000, 8), "abcde"), "abcde"},
           {wavFile(pcmFormat(2, 8000, 8), "abcdef"), "abcdef"},
           {wavFile(kFormat, ""), ""},
           {wavFile(kFormat + std::string(2, '\0'), "abcd"), "abcd"},
           {riff(list + format + chunk("fact", "1234") + chunk("odd ", "x") + chunk("data", "abcd")), "abcd"},
           {riff(format + chunk("data", "abc") + list), "abc"},
       }) {
    ASSERT_EQ(open(file), CDecoder::kOpened) << testing::PrintToString(file);
    EXPECT_EQ(payloadOf(decoder_), payload);
  }
}

TEST_F(WavReading, RefusesAFaultyFileAndLeavesThePayloadAlone) {
  const std::string format = chunk("fmt ", kFormat), data = chunk("data", "abcd");
  ASSERT_EQ(open(wavFile(kFormat, "before")), CDecoder::kOpened);
  for (const auto& [fault, result, file] : {
           std::tuple{"empty", CDecoder::kNoWaveData, std::string()},
           {"not RIFF", CDecoder::kNoWaveData, "just a line of text, long enough to hold a header"},
           {"not WAVE", CDecoder::kNoWaveData, riff(format + data, "AVI ")},
           {"RF64", CDecoder::kNoWaveData, riff(format + chunk("data", "abcd", 0xFFFFFFFF), "WAVE", "RF64")},
           {"header only", CDecoder::kNoFormat, riff("")},
           {"no format", CDecoder::kNoFormat, riff(data)},
           {"format cut short", CDecoder::kNoFormat, riff(chunk("fmt ", kFormat.substr(0, 8), 16))},
           {"format too long", CDecoder::kNoFormat, wavFile(kFormat + std::string(26, '\0'), "abcd")},
           {"format of 4 MB", CDecoder::kNoFormat, wavFile(std::string(4'000'000, 'x'), "abcd")},
           {"format says 4 MB", CDecoder::kNoFormat, riff(chunk("fmt ", kFormat, 4'000'000) + data)},
           {"no data", CDecoder::kNoWaveData, riff(format)},
           {"data first", CDecoder::kNoWaveData, riff(data + format)},
           {"data cut short", CDecoder::kNoWaveData, riff(format + chunk("data", "abcd", 1000))},
           {"data of 4 GB", CDecoder::kNoMemory, riff(format + chunk("data", "abcd", 0xFFFFFFFF))},
       }) {
    EXPECT_EQ(open(file), result) << fault;
    EXPECT_EQ(payloadOf(decoder_), "before") << fault;
    EXPECT_EQ(decoder_.format().Format.nSamplesPerSec, 22050u) << fault;
  }
}

TEST_F(WavReading, RefusesWhatIsNoFile) {
  EXPECT_EQ(decoder_.openWav(nullptr), CDecoder::kNoPath);
  EXPECT_EQ(decoder_.openWav((folder_ / L"missing.wav").c_str()), CDecoder::kNotOpened);
  EXPECT_EQ(decoder_.openWav(folder_.path().c_str()), CDecoder::kNotOpened);
  EXPECT_EQ(decoder_.openWav(L""), CDecoder::kNotOpened);
}

TEST_F(WavReading, ReadsTheFormatChunkWhole) {
  const std::string extension = test::littleEndian(22, 2) + test::littleEndian(16, 2) +
                                test::littleEndian(4, 4) +
                                std::string("\x01\0\0\0\0\0\x10\0\x80\0\0\xAA\0\x38\x9B\x71", 16);
  ASSERT_EQ(open(wavFile(kFormat + extension, "abcd")), CDecoder::kOpened);
  EXPECT_EQ(decoder_.format().Format.cbSize, 22);
  EXPECT_EQ(decoder_.format().dwChannelMask, 4u);
  EXPECT_EQ(decoder_.format().SubFormat.Data4[7], 0x71);
}

TEST_F(WavReading, LeavesFieldsBehindAShortFormatChunkAsTheyWere) {
  ASSERT_EQ(open(wavFile(pcmFormat(1, 8000, 8) + test::littleEndian(7, 2), "abcd")), CDecoder::kOpened);
  ASSERT_EQ(open(wavFile(kFormat.substr(0, 14), "abcd")), CDecoder::kOpened);
  EXPECT_EQ(decoder_.format().Format.nSamplesPerSec, 22050u);
  EXPECT_EQ(decoder_.format().Format.wBitsPerSample, 8);
  EXPECT_EQ(decoder_.format().Format.cbSize, 7);
  decoder_.close();
  ASSERT_EQ(open(wavFile(kFormat, "abcd")), CDecoder::kOpened);
  EXPECT_EQ(decoder_.format().Format.cbSize, 0);
}

TEST_F(WavReading, PayloadOutlivesTheDecoderThatLoadedIt) {
  ASSERT_EQ(open(wavFile(kFormat, "abcd")), CDecoder::kOpened);
  const auto payload = decoder_.sharedPayload();
  decoder_.close();
  EXPECT_EQ(decoder_.payloadSize(), 0u);
  EXPECT_EQ(decoder_.sharedPayload(), nullptr);
  EXPECT_EQ(std::string_view(reinterpret_cast<const char*>(payload.get()), 4), "abcd");
}

// Every file that differs from a sound one in a few bytes, or ends early, gets one of the codes.
TEST_F(WavReading, SurvivesDamagedFiles) {
  const std::string sound = riff(chunk("LIST", "INFOodd") + chunk("fmt ", kFormat + std::string(2, '\0')) +
                                 chunk("fact", "1234") + chunk("data", std::string(200, 'd')));
  const std::string interesting("\0\1\x7F\x80\xFF", 5);
  std::mt19937 random(20);
  const auto below = [&](std::size_t limit) { return static_cast<std::size_t>(random()) % limit; };
  int refused = 0;
  for (int round = 0; round < 500; ++round) {
    std::string damaged = sound;
    for (std::size_t changes = 1 + below(4); changes > 0; --changes) {
      damaged[below(80)] = interesting[below(interesting.size())];
    }
    if (below(3) == 0) damaged.resize(below(damaged.size()));
    decoder_.close();
    const int result = open(damaged);
    ASSERT_THAT(result, testing::AllOf(testing::Ge(-6), testing::Le(0))) << "round " << round;
    ASSERT_LE(decoder_.payloadSize(), damaged.size()) << "round " << round;
    refused += result != CDecoder::kOpened;
  }
  EXPECT_GT(refused, 50);
  EXPECT_LT(refused, 450);
}

}  // namespace
}  // namespace speech
