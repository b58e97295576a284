#include "engines/cloud/decoder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "base/file.h"
#include "tests/support/file_content.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/wav_files.h"

namespace speech {
namespace {

using test::chunk;
using test::pcmFormat;
using test::riff;
using test::wavFile;

const std::filesystem::path kMp3Samples = SPEECH_MP3_SAMPLES;
const std::string kFormat = pcmFormat(1, 22050, 16);

class Decoder : public testing::Test {
 protected:
  std::filesystem::path file(std::string_view content) const {
    test::writeFile(folder_ / L"sound", content);
    return folder_ / L"sound";
  }

  int open(std::string_view content) { return decoder_.openWav(file(content).c_str()); }

  std::string payload() const {
    const auto bytes = decoder_.sharedPayload();
    return bytes ? std::string(reinterpret_cast<const char*>(bytes.get()), decoder_.payloadSize())
                 : std::string();
  }

  /// The file that an MP3 file is decoded into, which is deleted, and the line that says how it went.
  static std::string decode(const std::filesystem::path& mp3, std::string* line = nullptr) {
    testing::internal::CaptureStdout();
    const CStringW output = CDecoder::decodeMp3ToWav(mp3.c_str());
    std::fflush(stdout);
    const std::string printed = testing::internal::GetCapturedStdout();
    if (line != nullptr) *line = printed;
    std::string wav = test::readFile(output.GetString());
    EXPECT_TRUE(DeleteFileW(output));
    return wav;
  }

  test::TemporaryFolder folder_;
  CDecoder decoder_;
};

TEST_F(Decoder, LoadsExactlyTheDataChunkOfAWavFile) {
  const std::string list = chunk("LIST", "INFOodd"), format = chunk("fmt ", kFormat);
  for (const auto& [file, expected] : {
           std::pair{wavFile(kFormat, "abcd"), "abcd"},
           {wavFile(pcmFormat(2, 44100, 16), "abcdefgh"), "abcdefgh"},
           {wavFile(pcmFormat(1, 8000, 8), "abcde"), "abcde"},
           {wavFile(kFormat, ""), ""},
           {wavFile(kFormat + std::string(2, '\0'), "abcd"), "abcd"},
           {riff(list + format + chunk("fact", "1234") + chunk("odd ", "x") + chunk("data", "abcd")), "abcd"},
           {riff(format + chunk("data", "abc") + list), "abc"},
       }) {
    ASSERT_EQ(open(file), CDecoder::kOpened) << testing::PrintToString(file);
    EXPECT_EQ(payload(), expected);
  }
  const auto kept = decoder_.sharedPayload();
  decoder_.close();
  EXPECT_EQ(decoder_.payloadSize(), 0u);
  EXPECT_EQ(decoder_.sharedPayload(), nullptr);
  EXPECT_EQ(std::string_view(reinterpret_cast<const char*>(kept.get()), 3), "abc");
}

TEST_F(Decoder, RefusesAFaultyWavFileAndLeavesThePayloadAlone) {
  const std::string format = chunk("fmt ", kFormat), data = chunk("data", "abcd");
  ASSERT_EQ(open(wavFile(kFormat, "before")), CDecoder::kOpened);
  for (const auto& [fault, result, file] : {
           std::tuple{"empty", CDecoder::kNoWaveData, std::string()},
           {"not RIFF", CDecoder::kNoWaveData, "just a line of text, long enough to hold a header"},
           {"not WAVE", CDecoder::kNoWaveData, riff(format + data, "AVI ")},
           {"header only", CDecoder::kNoFormat, riff("")},
           {"no format", CDecoder::kNoFormat, riff(data)},
           {"format cut short", CDecoder::kNoFormat, riff(chunk("fmt ", kFormat.substr(0, 8), 16))},
           {"format too long", CDecoder::kNoFormat, wavFile(kFormat + std::string(26, '\0'), "abcd")},
           {"format says 4 MB", CDecoder::kNoFormat, riff(chunk("fmt ", kFormat, 4'000'000) + data)},
           {"no data", CDecoder::kNoWaveData, riff(format)},
           {"data first", CDecoder::kNoWaveData, riff(data + format)},
           {"data cut short", CDecoder::kNoWaveData, riff(format + chunk("data", "abcd", 1000))},
           {"data of 4 GB", CDecoder::kNoMemory, riff(format + chunk("data", "abcd", 0xFFFFFFFF))},
       }) {
    EXPECT_EQ(open(file), result) << fault;
    EXPECT_EQ(payload(), "before") << fault;
    EXPECT_EQ(decoder_.format().Format.nSamplesPerSec, 22050u) << fault;
  }
  EXPECT_EQ(decoder_.openWav(nullptr), CDecoder::kNoPath);
  EXPECT_EQ(decoder_.openWav((folder_ / L"missing.wav").c_str()), CDecoder::kNotOpened);
  EXPECT_EQ(decoder_.openWav(folder_.path().c_str()), CDecoder::kNotOpened);
}

TEST_F(Decoder, ReadsTheFormatChunkWholeAndLeavesTheFieldsBehindAShortOneAsTheyWere) {
  const std::string extension =
      std::string("\x16\0\x10\0\x04\0\0\0\x01\0\0\0\0\0\x10\0\x80\0\0\xAA\0\x38\x9B\x71", 24);
  ASSERT_EQ(open(wavFile(kFormat + extension, "abcd")), CDecoder::kOpened);
  EXPECT_EQ(decoder_.format().Format.cbSize, 22);
  EXPECT_EQ(decoder_.format().dwChannelMask, 4u);
  EXPECT_EQ(decoder_.format().SubFormat.Data4[7], 0x71);
  ASSERT_EQ(open(wavFile(pcmFormat(2, 8000, 8).substr(0, 14), "abcd")), CDecoder::kOpened);
  EXPECT_EQ(decoder_.format().Format.nSamplesPerSec, 8000u);
  EXPECT_EQ(decoder_.format().Format.wBitsPerSample, 16);
  EXPECT_EQ(decoder_.format().Format.cbSize, 22);
  decoder_.close();
  ASSERT_EQ(open(wavFile(kFormat, "abcd")), CDecoder::kOpened);
  EXPECT_EQ(decoder_.format().Format.cbSize, 0);
}

TEST_F(Decoder, DecodesEveryKindOfMp3FileAsAnotherDecoderDoes) {
  int kinds = 0;
  for (const auto& entry : std::filesystem::directory_iterator(kMp3Samples)) {
    auto path = entry.path();
    int rateHz = 0, channels = 0;
    if (path.extension() != L".mp3") continue;
    SCOPED_TRACE(path.string());
    ASSERT_EQ(std::sscanf(path.filename().string().c_str(), "%dx%d", &rateHz, &channels), 2);
    ++kinds;
    std::string line;
    const std::string wav = decode(path, &line);
    EXPECT_EQ(line, "rate=" + std::to_string(rateHz) + " samples=0 max_diff=0 PSNR=99.000000\n");
    ASSERT_GE(wav.size(), 44u);
    const std::string decoded = wav.substr(44), expected = test::readFile(path.replace_extension(L".raw"));
    EXPECT_EQ(wav, wavFile(pcmFormat(channels, rateHz, 16), decoded)) << "the header";
    ASSERT_GT(expected.size(), static_cast<std::size_t>(rateHz * channels * 2));
    // The other decoder leaves out the frame that only says how many frames there are.
    const std::size_t extra = decoded.size() - expected.size();
    ASSERT_LE(extra, static_cast<std::size_t>(1152 * channels * 2));
    for (std::size_t i = 0; i < expected.size(); i += 2) {
      const auto sampleAt = [](const char* bytes) {
        return bytes[1] * 256 + static_cast<unsigned char>(*bytes);
      };
      ASSERT_NEAR(sampleAt(&decoded[i + extra]), sampleAt(&expected[i]), 3) << i;
    }
  }
  EXPECT_EQ(kinds, 9);
}

TEST_F(Decoder, SkipsTagsAndTheFrameThatEndsEarly) {
  const std::string mp3 = test::readFile(kMp3Samples / "22050x1.mp3"),
                    whole = decode(kMp3Samples / "22050x1.mp3");
  const std::string front = std::string("ID3\x04\0\0\0\0\x02\x01", 10) + std::string(257, 'x');
  EXPECT_EQ(decode(file(front + mp3)), whole);
  EXPECT_EQ(decode(file(mp3 + "TAG" + std::string(125, ' '))), whole);
  const std::string half = decode(file(mp3.substr(0, mp3.size() / 2)));
  ASSERT_GT(half.size(), whole.size() / 3);
  EXPECT_EQ(half.substr(44), whole.substr(44, half.size() - 44));
}

TEST_F(Decoder, MakesAWavFileWithoutSamplesOfWhatIsNoMp3) {
  const std::string empty = wavFile(pcmFormat(0, 0, 16), "");
  for (const std::string& content : {std::string(), std::string("x"), std::string(5000, '\xFF')}) {
    EXPECT_EQ(decode(file(content)), empty);
  }
  EXPECT_EQ(decode(folder_ / L"missing.mp3"), empty);
  EXPECT_EQ(decode(folder_.path()), empty);
  EXPECT_TRUE(CDecoder::decodeMp3ToWav(nullptr).IsEmpty());
}

// Files that differ from sound ones in a few bytes, or end early.
TEST_F(Decoder, SurvivesDamagedFiles) {
  const std::string wav = riff(chunk("LIST", "INFOodd") + chunk("fmt ", kFormat + std::string(2, '\0')) +
                               chunk("fact", "1234") + chunk("data", std::string(200, 'd')));
  const std::string mp3 = test::readFile(kMp3Samples / "11025x2.mp3").substr(0, 3000);
  std::mt19937 random(20);
  const auto below = [&](std::size_t limit) { return static_cast<std::size_t>(random()) % limit; };
  for (int round = 0; round < 400; ++round) {
    const bool isMp3 = round % 4 == 0;
    std::string damaged = isMp3 ? mp3 : wav;
    for (int change = 0; change < (isMp3 ? 20 : 2); ++change)
      damaged[below(isMp3 ? 3000 : 80)] = "\0\1\x7F\x80\xFF"[below(5)];
    if (below(3) == 0) damaged.resize(below(damaged.size()));
    if (isMp3) damaged = decode(file(damaged));
    decoder_.close();
    const int result = open(damaged);
    ASSERT_THAT(result, isMp3 ? testing::Matcher<int>(0) : testing::AllOf(testing::Ge(-6), testing::Le(0)));
    ASSERT_LE(decoder_.payloadSize(), damaged.size());
  }
}

TEST_F(Decoder, LoadsAFileFromItsBeginningWhereverTheStreamStands) {
  const std::string content("a\0b\x1A\r\nc", 7);
  const File stream = openFile(file(content).c_str(), L"rb");
  std::fseek(stream.get(), 3, SEEK_SET);
  std::size_t size = 0;
  const auto bytes = CDecoder::loadWholeFile(stream.get(), size);
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(bytes.get()), size), content);
}

TEST_F(Decoder, EndsTheProcessWhenAFileCannotBeReadToItsEnd) {
  const File stream = openFile(file("content").c_str(), L"ab");  // not for reading
  std::size_t size = 0;
  EXPECT_EXIT(CDecoder::loadWholeFile(stream.get(), size), testing::ExitedWithCode(1), "");
}

}  // namespace
}  // namespace speech
