// Synthesis to memory and to files: what is heard depends on settings and text as it should.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <numeric>
#include <thread>

#include "tests/lxapi/session.h"
#include "tests/support/binary_file.h"
#include "tests/support/temporary_folder.h"

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

/// The period at which the samples repeat themselves best, as a frequency: the pitch of the voice, averaged
/// over what is loud enough to be a vowel.
double pitchHz(const std::vector<int16_t>& samples) {
  constexpr size_t kWindow = 1024;
  constexpr size_t kShortestLag = kSampleRateHz / 400;
  constexpr size_t kLongestLag = kSampleRateHz / 50;
  const double average = loudness(samples);
  std::vector<double> found;
  for (size_t begin = 0; begin + kWindow + kLongestLag < samples.size(); begin += kWindow) {
    const std::vector<int16_t> window(samples.begin() + static_cast<ptrdiff_t>(begin),
                                      samples.begin() + static_cast<ptrdiff_t>(begin + kWindow));
    if (loudness(window) < average) continue;
    double best = 0;
    size_t bestLag = kShortestLag;
    for (size_t lag = kShortestLag; lag < kLongestLag; ++lag) {
      double sum = 0;
      for (size_t index = 0; index < kWindow; ++index)
        sum += static_cast<double>(window[index] * samples[begin + index + lag]);
      if (sum > best) {
        best = sum;
        bestLag = lag;
      }
    }
    found.push_back(static_cast<double>(kSampleRateHz) / static_cast<double>(bestLag));
  }
  if (found.empty()) return 0;
  std::nth_element(found.begin(), found.begin() + static_cast<ptrdiff_t>(found.size() / 2), found.end());
  return found[found.size() / 2];
}

TEST(Buffer, HoldsTheWholeText) {
  const Session session;
  const std::vector<int16_t> first = session.samples(kSentence);
  EXPECT_GT(milliseconds(first), 1500);
  EXPECT_LT(milliseconds(first), 5000);
  EXPECT_GT(loudness(first), 1000);
  EXPECT_LT(peak(first), 32767);
  expectSameSpeech(session.samples(kSentence), first);
}

TEST(Buffer, EmptyTextHasNoSamples) {
  const Session session;
  for (const char* const text : {"", " ", "\n\n"}) {
    ASSERT_EQ(LXAPI_BufferOpen(session.tts, text, -1, LX_SPEAK_ASYNC, 0), LX_OK);
    void* buffer = &buffer;
    EXPECT_LT(LXAPI_GetBuffer(session.tts, &buffer), kSampleRateHz);
    EXPECT_EQ(LXAPI_FreeBuffer(buffer), LX_OK);
    EXPECT_EQ(LXAPI_BufferClose(session.tts), LX_OK);
  }
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
  const auto rendered = [&](const char* text, int32_t length) {
    void* buffer = nullptr;
    EXPECT_EQ(LXAPI_BufferOpen(session.tts, text, length, 2, 0), LX_OK);
    const int32_t byteCount = LXAPI_GetBuffer(session.tts, &buffer);
    const auto* const first = static_cast<const int16_t*>(buffer);
    std::vector<int16_t> samples(first, first + byteCount / 2);
    LXAPI_FreeBuffer(buffer);
    return samples;
  };
  expectSameSpeech(rendered("one two three", 3), one);
  expectSameSpeech(rendered("one", INT32_MAX), one);
  EXPECT_TRUE(rendered("one", 0).empty());
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
  EXPECT_EQ(std::count_if(loud.begin(), loud.end(), [](int16_t sample) { return std::abs(sample) >= 32767; }),
            0);
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

TEST(Attributes, VarietiesAndLanguagesSoundDifferent) {
  std::vector<int16_t> male;
  {
    const Session session("English (America)", "Male");
    male = session.samples(kSentence);
  }
  const Session session("English (America)", "Female");
  EXPECT_NE(session.samples(kSentence), male);
}

// Long text crosses many pieces: the sound is what one sentence after another gives.
TEST(Text, LongTextHasTheLengthOfItsSentences) {
  const Session session;
  std::string text;
  for (int index = 0; index < 40; ++index) text += kSentence + " ";
  const int32_t one = milliseconds(session.samples(kSentence));
  EXPECT_NEAR(milliseconds(session.samples(text)), 40 * one + 39 * 350, 40 * 200);
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

uint32_t numberAt(const Bytes& bytes, size_t position, int size) {
  uint32_t value = 0;
  for (int index = size - 1; index >= 0; --index)
    value = value << 8 | bytes.at(position + static_cast<size_t>(index));
  return value;
}

std::string textAt(const Bytes& bytes, size_t position) {
  return {bytes.begin() + position, bytes.begin() + position + 4};
}

std::vector<int16_t> samplesOf(const Bytes& bytes, size_t from) {
  std::vector<int16_t> samples((bytes.size() - from) / 2);
  for (size_t index = 0; index < samples.size(); ++index) {
    samples[index] = static_cast<int16_t>(numberAt(bytes, from + index * 2, 2));
  }
  return samples;
}

TEST_F(File, RawFilesHoldSamplesAndNothingElse) {
  ASSERT_EQ(write("raw.pcm", LX_FILE_PCM), LX_OK);
  const Bytes raw = readBytes(path);
  EXPECT_EQ(raw.size() % 2, 0U);
  expectSameSpeech(samplesOf(raw, 0), session.samples(kSentence));
}

TEST_F(File, WavFilesTellWhatTheyHold) {
  ASSERT_EQ(write("speech.wav", LX_FILE_WAV), LX_OK);
  const Bytes wav = readBytes(path);
  EXPECT_EQ(textAt(wav, 0) + textAt(wav, 8) + textAt(wav, 36), "RIFFWAVEdata");
  EXPECT_EQ(numberAt(wav, 4, 4), wav.size() - 8);
  EXPECT_EQ(numberAt(wav, 20, 2), 1U);
  EXPECT_EQ(numberAt(wav, 22, 2), 1U);
  EXPECT_EQ(numberAt(wav, 24, 4), 22050U);
  EXPECT_EQ(numberAt(wav, 34, 2), 16U);
  EXPECT_EQ(numberAt(wav, 40, 4), wav.size() - 44);
  expectSameSpeech(samplesOf(wav, 44), session.samples(kSentence));
}

TEST_F(File, CompandedFilesHoldOneCodeForEachSample) {
  const std::vector<int16_t> samples = session.samples(kSentence);
  for (const auto& [code, tag] : {std::tuple(LX_FILE_ALAW, 6U), std::tuple(LX_FILE_MULAW, 7U)}) {
    ASSERT_EQ(write("companded.wav", code), LX_OK);
    const Bytes wav = readBytes(path);
    EXPECT_EQ(numberAt(wav, 20, 2), tag);
    EXPECT_EQ(numberAt(wav, 24, 4), 22050U);
    EXPECT_EQ(numberAt(wav, 34, 2), 8U);
    const Bytes data{'d', 'a', 't', 'a'};
    const auto header = std::search(wav.begin(), wav.end(), data.begin(), data.end());
    const auto position = static_cast<size_t>(header - wav.begin());
    ASSERT_LT(position, 100U);
    EXPECT_EQ(numberAt(wav, position + 4, 4), wav.size() - position - 8);
    EXPECT_NEAR(static_cast<double>(wav.size()), static_cast<double>(samples.size()),
                static_cast<double>(samples.size()) / 100);
    // Both laws put the sign into the highest bit; speech is about as often above zero as below.
    const auto positive =
        std::count_if(wav.begin() + 100, wav.end(), [](uint8_t byte) { return byte >= 0x80; });
    EXPECT_NEAR(static_cast<double>(positive), static_cast<double>(wav.size()) / 2,
                static_cast<double>(wav.size()) / 4);
  }
}

TEST_F(File, OtherCodesAreRefusedAndTouchNoFile) {
  for (const int32_t code : {-1, 1, 2, 3, 4, 8, 9, 255}) {
    EXPECT_EQ(write("refused.bin", code), LX_ERROR_UNSUPPORTED) << code;
    EXPECT_FALSE(std::filesystem::exists(path)) << code;
  }
  writeBytes(folder.path() / "kept.bin", {1, 2, 3});
  EXPECT_EQ(write("kept.bin", LX_FILE_CODE_3), LX_ERROR_UNSUPPORTED);
  EXPECT_EQ(readBytes(path), (Bytes{1, 2, 3}));
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
  std::thread writer([&] { result = LXAPI_TextToFile(session.tts, text.c_str(), -1, LX_SPEAK_ASYNC); });
  while (!std::filesystem::exists(path)) std::this_thread::yield();
  EXPECT_EQ(LXAPI_Stop(session.tts), LX_OK);
  writer.join();
  EXPECT_EQ(result, LX_ERROR_FAILED);
  EXPECT_FALSE(std::filesystem::exists(path));
}

// The synthesizer has one state for the whole process.
TEST(Concurrency, HandlesRenderAtTheSameTimeWithoutMixing) {
  const Session session;
  const uint32_t french = LXAPI_GetEngine("French (France)", "Female");
  ASSERT_EQ(LXAPI_LoadEngine(french), LX_OK);
  const uint32_t other = LXAPI_CreateHandle();
  ASSERT_EQ(LXAPI_SetEngineHandle(other, french), LX_OK);
  LXAPI_SetAttr(other, LX_ATTR_SPEED, 150);
  const std::string text = kSentence + " " + kSentence + " " + kSentence + " " + kSentence + " " + kSentence +
                           " " + kSentence + " " + kSentence + " " + kSentence + " " + kSentence;
  const auto render = [&](uint32_t tts) {
    void* buffer = nullptr;
    EXPECT_EQ(LXAPI_BufferOpen(tts, text.c_str(), -1, 2, 0), LX_OK);
    const int32_t byteCount = LXAPI_GetBuffer(tts, &buffer);
    const auto* const first = static_cast<const int16_t*>(buffer);
    std::vector<int16_t> samples(first, first + byteCount / 2);
    LXAPI_FreeBuffer(buffer);
    return samples;
  };
  const std::vector<int16_t> english = render(session.tts);
  const std::vector<int16_t> frenchSamples = render(other);
  std::thread thread([&] {
    for (int round = 0; round < 10; ++round) expectSameSpeech(render(other), frenchSamples);
  });
  for (int round = 0; round < 10; ++round) expectSameSpeech(render(session.tts), english);
  thread.join();
}

}  // namespace
}  // namespace speech::test
