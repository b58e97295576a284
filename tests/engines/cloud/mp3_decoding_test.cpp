#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <regex>

#include "base/file.h"
#include "engines/cloud/decoder.h"
#include "engines/cloud/reference_comparison.h"
#include "engines/cloud/temporary_names.h"
#include "tests/engines/cloud/wav_bytes.h"
#include "tests/support/file_content.h"
#include "tests/support/temporary_folder.h"

namespace speech {
namespace {

const std::filesystem::path kSamples = SPEECH_MP3_SAMPLES;

std::vector<std::int16_t> toSamples(std::string_view bytes) {
  std::vector<std::int16_t> samples(bytes.size() / sizeof(std::int16_t));
  std::memcpy(samples.data(), bytes.data(), samples.size() * sizeof(std::int16_t));
  return samples;
}

/// How close `decoded` comes to `expected` when its first `skipped` samples are left out, in decibels.
double closeness(const std::vector<std::int16_t>& expected, const std::vector<std::int16_t>& decoded,
                 std::size_t skipped) {
  double sum = 0;
  for (std::size_t i = 0; i < expected.size(); ++i) {
    const double difference = expected[i] - decoded[i + skipped];
    sum += difference * difference;
  }
  return 10 * std::log10(32767.0 * 32767.0 * static_cast<double>(expected.size()) / std::max(sum, 1e-3));
}

class Mp3Decoding : public testing::Test {
 protected:
  /// The decoded file's bytes; the file itself is deleted.
  std::string decode(std::string_view mp3) {
    const auto path = folder_ / L"sound.mp3";
    test::writeFile(path, mp3);
    return decodeFile(path.c_str());
  }

  static std::string decodeFile(const wchar_t* path) {
    const CStringW output = CDecoder::decodeMp3ToWav(path);
    std::string bytes = test::readFile(output.GetString());
    EXPECT_NE(DeleteFileW(output), 0);
    return bytes;
  }

  static std::string sample(const char* name) {
    return test::readFile(kSamples / (std::string(name) + ".mp3"));
  }

  test::TemporaryFolder folder_;
};

TEST_F(Mp3Decoding, DecodesEveryKindAsAnotherDecoderDoes) {
  struct Kind {
    const char* name;
    int channels, rateHz;
  };
  for (const auto& [name, channels, rateHz] :
       {Kind{"mpeg1_stereo_constant", 2, 44100}, Kind{"mpeg1_mono_variable", 1, 48000},
        Kind{"mpeg1_stereo_variable", 2, 32000}, Kind{"mpeg2_mono_constant", 1, 22050},
        Kind{"mpeg2_stereo_variable", 2, 24000}, Kind{"mpeg2_mono_variable", 1, 16000},
        Kind{"mpeg25_mono_constant", 1, 8000}, Kind{"mpeg25_stereo_constant", 2, 11025},
        Kind{"mpeg25_mono_variable", 1, 12000}}) {
    SCOPED_TRACE(name);
    const std::string wav = decode(sample(name));
    ASSERT_GE(wav.size(), 44u);
    EXPECT_EQ(wav, test::wavFile(test::pcmFormat(channels, rateHz, 16), wav.substr(44))) << "the header";
    const auto expected = toSamples(test::readFile(kSamples / (std::string(name) + ".raw")));
    const auto decoded = toSamples(std::string_view(wav).substr(44));
    ASSERT_GT(expected.size(), static_cast<std::size_t>(rateHz * channels));
    ASSERT_GE(decoded.size(), expected.size());
    // The other decoder leaves out the frame that only says how many frames there are.
    const std::size_t extra = decoded.size() - expected.size();
    ASSERT_LE(extra, static_cast<std::size_t>(1152 * channels));
    EXPECT_GT(closeness(expected, decoded, extra), 90) << extra;
  }
}

TEST_F(Mp3Decoding, SkipsTagsInFrontAndBehind) {
  const std::string mp3 = sample("mpeg2_mono_constant");
  const std::string front = std::string("ID3\x04\0\0\0\0\x02\x01", 10) + std::string(257, 'x');
  const std::string behind = "TAG" + std::string(125, ' ');
  const std::string plain = decode(mp3);
  EXPECT_EQ(decode(front + mp3), plain);
  EXPECT_EQ(decode(mp3 + behind), plain);
}

TEST_F(Mp3Decoding, DecodesTheWholeFramesOfATruncatedFile) {
  const std::string mp3 = sample("mpeg2_mono_constant");
  const std::string whole = decode(mp3);
  const std::string half = decode(std::string_view(mp3).substr(0, mp3.size() / 2));
  ASSERT_GT(half.size(), whole.size() / 3);
  ASSERT_LT(half.size(), whole.size());
  EXPECT_EQ(half.substr(44), whole.substr(44, half.size() - 44));
}

TEST_F(Mp3Decoding, GivesAWavFileWithoutSamplesForWhatIsNoMp3) {
  std::string garbage(20'000, '\0');
  for (std::size_t i = 0; i < garbage.size(); ++i) garbage[i] = static_cast<char>(i * 31 % 251);
  for (const std::string& content : {std::string(), std::string("x"), garbage, std::string(5000, '\xFF')}) {
    const std::string wav = decode(content);
    ASSERT_EQ(wav.size(), 44u);
    EXPECT_EQ(wav.substr(40), std::string(4, '\0'));
  }
  EXPECT_EQ(decodeFile((folder_ / L"missing.mp3").c_str()).size(), 44u);
  EXPECT_EQ(decodeFile(folder_.path().c_str()).size(), 44u);
  EXPECT_TRUE(CDecoder::decodeMp3ToWav(nullptr).IsEmpty());
}

TEST_F(Mp3Decoding, SurvivesDamagedFiles) {
  const std::string sound = sample("mpeg25_stereo_constant").substr(0, 3000);
  std::uint32_t seed = 7;
  const auto random = [&] { return (seed = seed * 1664525 + 1013904223) >> 8; };
  for (int round = 0; round < 300; ++round) {
    std::string damaged = sound;
    for (int changes = 0; changes < 20; ++changes)
      damaged[random() % damaged.size()] = static_cast<char>(random());
    const std::string wav = decode(damaged);
    ASSERT_GE(wav.size(), 44u);
    ASSERT_EQ(wav.substr(40, 4), test::littleEndian(static_cast<std::uint32_t>(wav.size()) - 44, 4));
  }
}

TEST(LoadWholeFile, ReadsFromTheBeginningWhereverTheStreamStands) {
  test::TemporaryFolder folder;
  test::writeFile(folder / L"file", std::string("a\0b\x1A\r\nc", 7));
  const File file = openFile((folder / L"file").c_str(), L"rb");
  std::fseek(file.get(), 3, SEEK_SET);
  std::size_t size = 0;
  const auto bytes = CDecoder::loadWholeFile(file.get(), size);
  ASSERT_TRUE(bytes);
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(bytes.get()), size), std::string("a\0b\x1A\r\nc", 7));
}

TEST(LoadWholeFileDeathTest, EndsTheProcessWhenTheFileCannotBeReadToItsEnd) {
  test::TemporaryFolder folder;
  test::writeFile(folder / L"file", "content");
  const File file = openFile((folder / L"file").c_str(), L"ab");  // not for reading
  std::size_t size = 0;
  EXPECT_EXIT(CDecoder::loadWholeFile(file.get(), size), testing::ExitedWithCode(1), "");
}

TEST(ReferenceComparison, CountsOnlySamplesThatHaveACounterpart) {
  const std::vector<std::int16_t> reference = {0, 100, -32768};
  ReferenceComparison comparison(reference);
  comparison.add(std::vector<std::int16_t>{0, 101});
  comparison.add(std::vector<std::int16_t>{-32768, 5, 6});
  EXPECT_NEAR(comparison.peakSignalToNoiseDecibels(), 10 * std::log10(1073676289.0 * 3), 1e-9);
  EXPECT_EQ(ReferenceComparison({}).peakSignalToNoiseDecibels(), 99);
}

TEST(ReferenceComparisonDeathTest, EndsTheProcessBelow96Decibels) {
  const std::vector<std::int16_t> reference = {1000, 1000};
  ReferenceComparison comparison(reference);
  comparison.add(std::vector<std::int16_t>{1000, 1002});
  EXPECT_EXIT(comparison.reportAndEnforce(8000), testing::ExitedWithCode(1), "");
}

TEST(TemporaryNames, AreFreshGuidsInTheTemporaryFolder) {
  const std::wstring name = makeGuidName().GetString();
  EXPECT_TRUE(std::regex_match(name, std::wregex(L"[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}")));
  EXPECT_NE(name, makeGuidName().GetString());
  const std::wstring folder = getTempFolder().GetString();
  EXPECT_EQ(folder.back(), L'\\');
  EXPECT_EQ(std::wstring(makeTempPath(L".wav").GetString()).find(folder), 0u);
}

}  // namespace
}  // namespace speech
