#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "engines/cloud/decoder.h"
#include "engines/cloud/reference_comparison.h"
#include "engines/cloud/temporary_names.h"
#include "tests/support/file_content.h"
#include "tests/support/temporary_folder.h"
#include "win32/file.h"

namespace speech {
namespace {

const std::filesystem::path kSamples = SPEECH_MP3_SAMPLES;

std::vector<std::int16_t> toSamples(std::string_view bytes) {
  std::vector<std::int16_t> samples(bytes.size() / sizeof(std::int16_t));
  std::memcpy(samples.data(), bytes.data(), samples.size() * sizeof(std::int16_t));
  return samples;
}

std::uint32_t number(std::string_view bytes, std::size_t offset, int byteCount) {
  std::uint32_t value = 0;
  for (int i = byteCount; i-- > 0;)
    value = value << 8 | static_cast<unsigned char>(bytes[offset + static_cast<std::size_t>(i)]);
  return value;
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

struct Sample {
  const char* name;
  int channels;
  int rateHz;
};

class Mp3Kind : public Mp3Decoding, public testing::WithParamInterface<Sample> {};

TEST_P(Mp3Kind, DecodesAsAnotherDecoderDoes) {
  const auto [name, channels, rateHz] = GetParam();
  const std::string wav = decode(sample(name));
  const auto expected = toSamples(test::readFile(kSamples / (std::string(name) + ".raw")));
  const auto decoded = toSamples(std::string_view(wav).substr(44));
  ASSERT_GT(expected.size(), static_cast<std::size_t>(rateHz * channels));
  ASSERT_GE(decoded.size(), expected.size());

  // The other decoder leaves out the frame that only says how many frames there are.
  const std::size_t extra = decoded.size() - expected.size();
  ASSERT_LE(extra, static_cast<std::size_t>(1152 * channels));
  const double decibels = closeness(expected, decoded, extra);
  RecordProperty("decibels", std::to_string(decibels));
  EXPECT_GT(decibels, 90) << extra;
}

TEST_P(Mp3Kind, WritesTheWholeHeader) {
  const auto [name, channels, rateHz] = GetParam();
  const std::string wav = decode(sample(name));
  const auto dataBytes = static_cast<std::uint32_t>(wav.size()) - 44;
  EXPECT_EQ(wav.substr(0, 4) + wav.substr(8, 8) + wav.substr(36, 4), "RIFFWAVEfmt data");
  EXPECT_EQ(number(wav, 4, 4), dataBytes + 36);
  EXPECT_EQ(number(wav, 16, 4), 16u);
  EXPECT_EQ(number(wav, 20, 2), 1u);
  EXPECT_EQ(number(wav, 22, 2), static_cast<std::uint32_t>(channels));
  EXPECT_EQ(number(wav, 24, 4), static_cast<std::uint32_t>(rateHz));
  EXPECT_EQ(number(wav, 28, 4), static_cast<std::uint32_t>(rateHz * channels * 2));
  EXPECT_EQ(number(wav, 32, 2), static_cast<std::uint32_t>(channels * 2));
  EXPECT_EQ(number(wav, 34, 2), 16u);
  EXPECT_EQ(number(wav, 40, 4), dataBytes);
}

INSTANTIATE_TEST_SUITE_P(
    , Mp3Kind,
    testing::Values(Sample{"mpeg1_stereo_constant", 2, 44100}, Sample{"mpeg1_mono_variable", 1, 48000},
                    Sample{"mpeg1_stereo_variable", 2, 32000}, Sample{"mpeg2_mono_constant", 1, 22050},
                    Sample{"mpeg2_stereo_variable", 2, 24000}, Sample{"mpeg2_mono_variable", 1, 16000},
                    Sample{"mpeg25_mono_constant", 1, 8000}, Sample{"mpeg25_stereo_constant", 2, 11025},
                    Sample{"mpeg25_mono_variable", 1, 12000}),
    [](const auto& instance) { return instance.param.name; });

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
    EXPECT_EQ(number(wav, 40, 4), 0u);
  }
  EXPECT_EQ(decodeFile((folder_ / L"missing.mp3").c_str()).size(), 44u);
  EXPECT_EQ(decodeFile(folder_.path().c_str()).size(), 44u);
}

TEST_F(Mp3Decoding, AnUnreadableFileLoadsAsAnEmptyPayload) {
  CDecoder decoder;
  const CStringW output = CDecoder::decodeMp3ToWav((folder_ / L"missing.mp3").c_str());
  EXPECT_EQ(decoder.openWav(output), CDecoder::kOpened);
  EXPECT_EQ(decoder.payloadSize(), 0u);
  DeleteFileW(output);
}

TEST_F(Mp3Decoding, AnswersANullPathWithAnEmptyOne) {
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
    ASSERT_EQ(number(wav, 40, 4), wav.size() - 44);
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
  ASSERT_EQ(name.size(), 36u);
  for (std::size_t i = 0; i < name.size(); ++i) {
    if (i == 8 || i == 13 || i == 18 || i == 23) {
      EXPECT_EQ(name[i], L'-');
    } else {
      EXPECT_NE(std::wstring(L"0123456789ABCDEF").find(name[i]), std::wstring::npos);
    }
  }
  EXPECT_NE(name, makeGuidName().GetString());
  const std::wstring folder = getTempFolder().GetString();
  EXPECT_EQ(folder.back(), L'\\');
  EXPECT_EQ(std::wstring(makeTempPath(L".wav").GetString()).find(folder), 0u);
}

}  // namespace
}  // namespace speech
