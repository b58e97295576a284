// Synthesis to memory and to files: what is heard depends on settings and text as it should.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <numeric>
#include <thread>
#include <tuple>

#include "tests/lxapi/session.h"
#include "tests/support/binary_file.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/waiting.h"
#include "tests/support/wav_files.h"

namespace speech::test {
namespace {

const std::string kSentence = "The quick brown fox jumps over the lazy dog.";

double loudness(const std::vector<int16_t>& samples) {
  const double sum = std::accumulate(samples.begin(), samples.end(), 0.0,
                                     [](double total, int16_t sample) { return total + sample * sample; });
  return std::sqrt(sum / static_cast<double>(std::max<size_t>(samples.size(), 1)));
}

int peak(const std::vector<int16_t>& samples) {
  int result = 0;
  for (const int16_t sample : samples) result = std::max(result, std::abs(static_cast<int>(sample)));
  return result;
}

/// The synthesizer lets a voice waver a little, as people's do: no text sounds exactly the same twice.
void expectSameSpeech(const std::vector<int16_t>& actual, const std::vector<int16_t>& expected,
                      const std::string& what = {}) {
  EXPECT_NEAR(milliseconds(actual), milliseconds(expected), std::max(5, milliseconds(expected) / 100))
      << what;
  EXPECT_NEAR(loudness(actual), loudness(expected), loudness(expected) / 20) << what;
}

/// The pitch of the voice: the period at which the samples repeat themselves best.
double pitchHz(const std::vector<int16_t>& samples) {
  size_t bestLag = 1;
  double best = 0;
  for (size_t lag = kSampleRateHz / 250; lag < kSampleRateHz / 70; ++lag) {
    const double sum = std::inner_product(samples.begin() + static_cast<ptrdiff_t>(lag), samples.end(),
                                          samples.begin(), 0.0, std::plus<>(), std::multiplies<double>());
    if (sum > best) std::tie(best, bestLag) = std::pair(sum, lag);
  }
  return static_cast<double>(kSampleRateHz) / static_cast<double>(bestLag);
}

TEST(Buffer, HoldsTheWholeText) {
  const Session session;
  const std::vector<int16_t> first = session.samples(kSentence);
  EXPECT_GT(milliseconds(first), 1500);
  EXPECT_LT(milliseconds(first), 5000);
  EXPECT_GT(loudness(first), 1000);
  EXPECT_LT(peak(first), 32767);
  expectSameSpeech(session.samples(kSentence), first);
  const Session female("English (America)", "Female");
  EXPECT_GT(pitchHz(female.samples(kSentence)), pitchHz(first) * 1.1);
}

TEST(Buffer, CallsOutOfOrderAreAnswered) {
  const Session session;
  void* buffer = &buffer;
  EXPECT_EQ(LXAPI_GetBuffer(session.tts, &buffer), LX_ERROR_FAILED);
  EXPECT_EQ(buffer, nullptr);
  EXPECT_EQ(LXAPI_BufferClose(session.tts), LX_ERROR_FAILED);
  EXPECT_EQ(LXAPI_FreeBuffer(&buffer), LX_ERROR_BAD_ARGUMENT) << "not a buffer of the library's";
  ASSERT_EQ(LXAPI_BufferOpen(session.tts, "one", -1, 2, 0), LX_OK);
  ASSERT_GT(LXAPI_GetBuffer(session.tts, &buffer), 0);
  EXPECT_EQ(LXAPI_BufferClose(session.tts), LX_OK);
  static_cast<int16_t*>(buffer)[0] = 1;  // the caller's until it is freed
  EXPECT_EQ(LXAPI_FreeBuffer(buffer), LX_OK);
  EXPECT_EQ(LXAPI_FreeBuffer(buffer), LX_ERROR_BAD_ARGUMENT) << "freed twice";
}

TEST(Text, LengthCountsBytesAndAZeroByteEndsIt) {
  const Session session;
  const std::vector<int16_t> one = session.samples("one");
  expectSameSpeech(session.samples("one two three", 2, 3), one);
  expectSameSpeech(session.samples("one", 2, INT32_MAX), one);
  for (const char* const nothing : {"", " ", "\n\n"}) EXPECT_LT(milliseconds(session.samples(nothing)), 500);
  EXPECT_TRUE(session.samples("one", 2, 0).empty());
}

TEST(Text, MalformedUtf8IsRefused) {
  const Session session;
  for (const char* const text :
       {"\x80", "a\xC3", "\xED\xA0\x80 lone surrogate", "\xF8\x88\x80\x80\x80", "ok \xFF"}) {
    EXPECT_EQ(LXAPI_BufferOpen(session.tts, text, -1, 2, 0), LX_ERROR_BAD_TEXT);
    EXPECT_EQ(LXAPI_Speak(session.tts, text, -1, 2), LX_ERROR_BAD_TEXT);
  }
  EXPECT_EQ(LXAPI_BufferOpen(session.tts, "\xC3\xA9", 1, 2, 0), LX_ERROR_BAD_TEXT)
      << "the length cuts a character";
}

TEST(Text, BrokenSsmlIsSpokenAsFarAsItGoesAndHarmsNothingAfterIt) {
  const Session session;
  const std::vector<int16_t> plain = session.samples("one");
  for (const char* const broken :
       {"<speak><prosody rate=\"x-slow\" pitch=\"200%\">one", "<speak><voice xml:lang=\"de\">one",
        "one</prosody></speak>", "<speak>one<", "<<<>>>one", "<speak><break time=\"99999999s\"",
        "<voice name=\"nobody\">one</voice>", "<say-as interpret-as=\"characters\">one",
        "<audio src=\"C:\\windows\\media\\ding.wav\">one", "&bogus;one&#xFFFFFFFF;", "<sub alias=\"\">one",
        "&#1;50S one", "<prosody volume=\"silent\">one"}) {
    ASSERT_EQ(LXAPI_BufferOpen(session.tts, broken, -1, 2 | LX_SPEAK_SSML, 0), LX_OK) << broken;
    expectSameSpeech(session.samples("one"), plain, broken);
  }
}

TEST(Text, SsmlIsObeyed) {
  const Session session;
  const auto ssml = [&](const std::string& text) {
    return milliseconds(session.samples(text, 2 | LX_SPEAK_SSML));
  };
  const int32_t plain = ssml("<speak>one two</speak>");
  EXPECT_NEAR(ssml("<speak>one <break time=\"2000ms\"/> two</speak>") - plain, 2000, 400);
  EXPECT_GT(ssml("<speak><prosody rate=\"50%\">one two</prosody></speak>"), plain * 5 / 4);
  EXPECT_GT(milliseconds(session.samples("<speak>one two</speak>")), plain + 500)
      << "without the flag tags are read out";
}

TEST(Attributes, SpeedPitchAndVolumeChangeWhatIsHeard) {
  const Session session;
  const auto with = [&](LxAttribute attribute, int32_t value) {
    EXPECT_EQ(LXAPI_SetAttr(session.tts, attribute, value), LX_OK);
    const std::vector<int16_t> result = session.samples(kSentence);
    EXPECT_EQ(LXAPI_SetAttr(session.tts, attribute, 100), LX_OK);
    return result;
  };
  const std::vector<int16_t> normal = session.samples(kSentence);
  expectSameSpeech(with(LX_ATTR_SPEED, 100), normal);
  EXPECT_NEAR(milliseconds(with(LX_ATTR_SPEED, 200)), milliseconds(normal) / 2, milliseconds(normal) / 6);
  EXPECT_NEAR(milliseconds(with(LX_ATTR_SPEED, 50)), milliseconds(normal) * 2, milliseconds(normal) / 3);
  EXPECT_GT(pitchHz(with(LX_ATTR_PITCH, 180)), pitchHz(normal) * 1.1);
  EXPECT_LT(pitchHz(with(LX_ATTR_PITCH, 20)), pitchHz(normal) / 1.1);
  EXPECT_NEAR(loudness(with(LX_ATTR_VOLUME, 50)), loudness(normal) / 2, loudness(normal) / 20);
  EXPECT_EQ(peak(with(LX_ATTR_VOLUME, 0)), 0);
  const std::vector<int16_t> loud = with(LX_ATTR_VOLUME, 200);
  EXPECT_GT(loudness(loud), loudness(normal) * 1.4);
  EXPECT_LT(peak(loud), 32767);
}

TEST(Attributes, PausesHaveTheLengthThatWasSet) {
  const Session session;
  const auto lengthWith = [&](int32_t sentenceMs, int32_t commaMs) {
    EXPECT_EQ(LXAPI_SetAttr(session.tts, LX_ATTR_SENTENCE_PAUSE, sentenceMs), LX_OK);
    EXPECT_EQ(LXAPI_SetEngineAttr(session.engine, LX_ATTR_COMMA_PAUSE, commaMs), LX_OK);
    return milliseconds(session.samples("One, two. Three, four. Five."));
  };
  const int32_t none = lengthWith(0, 0);
  EXPECT_NEAR(lengthWith(1000, 0) - none, 2000, 20);
  EXPECT_NEAR(lengthWith(0, 700) - none, 1400, 20);
  EXPECT_NEAR(lengthWith(300, 100) - none, 800, 20);
  EXPECT_NEAR(lengthWith(99'999, 0) - none, 10'000, 20) << "brought into range";
}

class File : public testing::Test {
 protected:
  int32_t write(const std::string& name, int32_t code) {
    path = folder.path() / name;
    const int32_t set = LXAPI_SetOutputFile(session.tts, path.string().c_str(), code);
    const int32_t written = LXAPI_TextToFile(session.tts, kSentence.c_str(), -1, LX_SPEAK_ASYNC);
    return set == LX_OK ? written : set;
  }

  TemporaryFolder folder;
  Session session;
  std::filesystem::path path;
};

std::vector<int16_t> samplesOf(const Bytes& bytes, size_t from) {
  std::vector<int16_t> samples((bytes.size() - from) / 2);
  std::memcpy(samples.data(), bytes.data() + from, samples.size() * 2);
  return samples;
}

TEST_F(File, PcmIsThereWithoutAndWithItsHeader) {
  const std::vector<int16_t> samples = session.samples(kSentence);
  ASSERT_EQ(write("raw.pcm", LX_FILE_PCM), LX_OK);
  expectSameSpeech(samplesOf(readBytes(path), 0), samples);
  ASSERT_EQ(write("speech.wav", LX_FILE_WAV), LX_OK);
  const Bytes wav = readBytes(path);
  EXPECT_EQ(wav, (PcmFile{.sampleRate = 22050, .data = {wav.begin() + 44, wav.end()}}.bytes()));
  expectSameSpeech(samplesOf(wav, 44), samples);
}

TEST_F(File, CompandedFilesHoldOneCodeForEachSample) {
  const double sampleCount = static_cast<double>(session.samples(kSentence).size());
  for (const auto& [code, tag] : {std::pair(LX_FILE_ALAW, 6U), {LX_FILE_MULAW, 7U}}) {
    ASSERT_EQ(write("companded.wav", code), LX_OK);
    const Bytes wav = readBytes(path);
    const auto size = static_cast<uint32_t>(wav.size()) - 58;
    ByteWriter header;
    header.text("RIFF")
        .u32(size + 50)
        .text("WAVEfmt ")
        .u32(18)
        .u16(tag)
        .u16(1)
        .u32(22050)
        .u32(22050)
        .u16(1)
        .u16(8);
    header.u16(0).text("fact").u32(4).u32(size).text("data").u32(size);
    EXPECT_EQ(Bytes(wav.begin(), wav.begin() + 58), header.bytes);
    EXPECT_NEAR(size, sampleCount, sampleCount / 100);
    // Both laws put the sign into the highest bit; speech is about as often above zero as below.
    const auto positive =
        std::count_if(wav.begin() + 58, wav.end(), [](uint8_t byte) { return byte >= 0x80; });
    EXPECT_NEAR(static_cast<double>(positive), size / 2.0, size / 4.0);
  }
}

TEST_F(File, OtherCodesAreRefusedAndTouchNoFile) {
  writeBytes(folder.path() / "kept.bin", {1, 2, 3});
  for (const int32_t code : {-1, 1, 2, 3, 4, 8, 9, 255}) {
    EXPECT_EQ(write("refused.bin", code), LX_ERROR_UNSUPPORTED) << code;
    EXPECT_FALSE(std::filesystem::exists(path)) << code;
    EXPECT_EQ(write("kept.bin", code), LX_ERROR_UNSUPPORTED) << code;
    EXPECT_EQ(readBytes(path), (Bytes{1, 2, 3}));
  }
}

TEST_F(File, APathThatCannotBeWrittenIsAnError) {
  EXPECT_EQ(write("no/such/folder/x.wav", LX_FILE_WAV), LX_ERROR_FILE);
  EXPECT_EQ(write(".", LX_FILE_WAV), LX_ERROR_FILE);
  EXPECT_EQ(write(std::string(5000, 'x'), LX_FILE_WAV), LX_ERROR_FILE);
  const uint32_t fresh = LXAPI_CreateHandle();
  LXAPI_SetEngineHandle(fresh, session.engine);
  EXPECT_EQ(LXAPI_TextToFile(fresh, "a", -1, 2), LX_ERROR_FILE) << "no file was named";
}

TEST_F(File, StoppingEndsALongRenderingAndLeavesNoFile) {
  std::string text;
  for (int index = 0; index < 20'000; ++index) text += kSentence + " ";
  path = folder.path() / "long.wav";
  ASSERT_EQ(LXAPI_SetOutputFile(session.tts, path.string().c_str(), LX_FILE_WAV), LX_OK);
  int32_t result = LX_OK;
  std::jthread writer([&] { result = LXAPI_TextToFile(session.tts, text.c_str(), -1, LX_SPEAK_ASYNC); });
  waitUntil("the file", [&] { return std::filesystem::exists(path); });
  EXPECT_EQ(LXAPI_Stop(session.tts), LX_OK);
  writer.join();
  EXPECT_EQ(result, LX_ERROR_FAILED);
  EXPECT_FALSE(std::filesystem::exists(path));
}

// The synthesizer has one state for the whole process.
TEST(Concurrency, HandlesRenderAtTheSameTimeWithoutMixing) {
  const Session english;
  Session french("French (France)", "Female");
  LXAPI_SetAttr(french.tts, LX_ATTR_SPEED, 150);
  std::string text;
  for (int index = 0; index < 9; ++index) text += kSentence + " ";
  const std::vector<int16_t> englishSamples = english.samples(text), frenchSamples = french.samples(text);
  std::thread thread([&] {
    for (int round = 0; round < 10; ++round) expectSameSpeech(french.samples(text), frenchSamples);
  });
  for (int round = 0; round < 10; ++round) expectSameSpeech(english.samples(text), englishSamples);
  thread.join();
}

}  // namespace
}  // namespace speech::test
