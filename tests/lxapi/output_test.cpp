// Synthesis to memory and to files: what is heard depends on settings, dictionaries and text as it should.

#include <windows.h>

#include <array>
#include <cmath>
#include <numeric>
#include <thread>

#include "tests/lxapi/session.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/wav_files.h"

namespace speech::test {
namespace {

using Samples = std::vector<int16_t>;

const std::string kSentence = "The quick brown fox jumps over the lazy dog.";

double loudness(const Samples& samples) {
  const double sum = std::inner_product(samples.begin(), samples.end(), samples.begin(), 0.0);
  return std::sqrt(sum / static_cast<double>(std::max<size_t>(samples.size(), 1)));
}

/// The synthesizer lets a voice waver a little, as people's do: no text sounds exactly the same twice.
void expectSameSpeech(const Samples& actual, const Samples& expected, const std::string& what = {}) {
  EXPECT_NEAR(milliseconds(actual), milliseconds(expected), std::max(5, milliseconds(expected) / 100))
      << what;
  EXPECT_NEAR(loudness(actual), loudness(expected), loudness(expected) / 20) << what;
}

/// The pitch of the voice: the period at which the samples repeat themselves best.
double pitchHz(const Samples& samples) {
  std::pair<double, int> best;
  const auto begin = samples.begin();
  for (int lag = kSampleRateHz / 250; lag < kSampleRateHz / 70; ++lag)
    best = std::max(best, {std::inner_product(begin + lag, samples.end(), begin, 0.0), lag});
  return static_cast<double>(kSampleRateHz) / best.second;
}

TEST(Buffer, HoldsTheTextUpToItsLengthOrAZeroByteUntilItIsFreed) {
  const Session session;
  void* buffer = &buffer;
  EXPECT_EQ(LXAPI_GetBuffer(session.tts, &buffer), LX_ERROR_FAILED);
  EXPECT_EQ(LXAPI_BufferClose(session.tts), LX_ERROR_FAILED);
  ASSERT_EQ(LXAPI_BufferOpen(session.tts, "one", -1, 2, 0), LX_OK);
  ASSERT_GT(LXAPI_GetBuffer(session.tts, &buffer), 0);
  EXPECT_EQ(LXAPI_BufferClose(session.tts), LX_OK);
  EXPECT_EQ(LXAPI_FreeBuffer(buffer), LX_OK) << "closing leaves it with the caller";
  EXPECT_EQ(LXAPI_FreeBuffer(buffer), LX_ERROR_BAD_ARGUMENT) << "freed twice";
  const Samples one = session.samples("one");
  expectSameSpeech(session.samples("one two three", 2, 3), one);
  expectSameSpeech(session.samples("one", 2, INT32_MAX), one);
  for (const char* const nothing : {"", " ", "\n\n"}) EXPECT_LT(milliseconds(session.samples(nothing)), 500);
  EXPECT_EQ(LXAPI_BufferOpen(session.tts, "\xC3\xA9", 1, 2, 0), LX_ERROR_BAD_TEXT) << "a cut character";
}

TEST(Ssml, IsObeyedAndWhereItIsBrokenHarmsNothingAfterIt) {
  const Session session;
  const auto ssml = [&](const char* text) { return milliseconds(session.samples(text, LX_SPEAK_SSML)); };
  const int32_t plain = ssml("<speak>one two</speak>");
  EXPECT_NEAR(ssml("<speak>one <break time=\"2000ms\"/> two</speak>") - plain, 2000, 400);
  EXPECT_GT(ssml("<speak><prosody rate=\"50%\">one two</prosody></speak>"), plain * 5 / 4);
  EXPECT_GT(milliseconds(session.samples("<speak>one two</speak>")), plain + 500) << "tags are read out";
  const Samples one = session.samples("one");
  for (const char* const broken :
       {"<speak><prosody rate=\"x-slow\" pitch=\"200%\">one", "<speak><voice xml:lang=\"de\">one",
        "<<<>>>one", "one</prosody></speak><", "<speak><break time=\"99999999s\"",
        "<voice name=\"nobody\">one</voice>", "<audio src=\"C:\\windows\\media\\ding.wav\">one",
        "&bogus;&#xFFFFFFFF;", "&#1;50S one"}) {
    ASSERT_EQ(LXAPI_BufferOpen(session.tts, broken, -1, LX_SPEAK_SSML, 0), LX_OK) << broken;
    expectSameSpeech(session.samples("one"), one, broken);
  }
}

TEST(Attributes, ChangeWhatIsHeard) {
  const Session session;
  const auto with = [&](LxAttribute attribute, int32_t value) {
    EXPECT_EQ(LXAPI_SetAttr(session.tts, attribute, value), LX_OK);
    const Samples result = session.samples(kSentence);
    EXPECT_EQ(LXAPI_SetAttr(session.tts, attribute, 100), LX_OK);
    return result;
  };
  const Samples normal = session.samples(kSentence), loud = with(LX_ATTR_VOLUME, 200);
  EXPECT_NEAR(milliseconds(with(LX_ATTR_SPEED, 200)), milliseconds(normal) / 2, milliseconds(normal) / 6);
  EXPECT_NEAR(milliseconds(with(LX_ATTR_SPEED, 50)), milliseconds(normal) * 2, milliseconds(normal) / 3);
  EXPECT_GT(pitchHz(with(LX_ATTR_PITCH, 180)), pitchHz(normal) * 1.1);
  EXPECT_LT(pitchHz(with(LX_ATTR_PITCH, 20)), pitchHz(normal) / 1.1);
  EXPECT_GT(pitchHz(Session("English (America)", "Female").samples(kSentence)), pitchHz(normal) * 1.1);
  EXPECT_NEAR(loudness(with(LX_ATTR_VOLUME, 50)), loudness(normal) / 2, loudness(normal) / 20);
  EXPECT_EQ(loudness(with(LX_ATTR_VOLUME, 0)), 0);
  EXPECT_GT(loudness(loud), loudness(normal) * 1.4);
  EXPECT_LT(*std::ranges::max_element(loud), INT16_MAX) << "bent, not cut off";

  const auto lengthWith = [&](int32_t sentenceMs, int32_t commaMs) {
    EXPECT_EQ(LXAPI_SetAttr(session.tts, LX_ATTR_SENTENCE_PAUSE, sentenceMs), LX_OK);
    EXPECT_EQ(LXAPI_SetEngineAttr(session.engine, LX_ATTR_COMMA_PAUSE, commaMs), LX_OK);
    return milliseconds(session.samples("One, two. Three, four. Five."));
  };
  EXPECT_NEAR(lengthWith(300, 99'999) - lengthWith(0, 0), 10'600, 20) << "brought into range";
}

struct File : testing::Test {
  int32_t write(const std::string& path, int32_t code, const std::string& text = "One. Two.") const {
    const int32_t set = LXAPI_SetOutputFile(session.tts, path.c_str(), code);
    const int32_t written = LXAPI_TextToFile(session.tts, text.c_str(), -1, LX_SPEAK_ASYNC);
    return set == LX_OK ? written : set;
  }

  const TemporaryFolder folder;
  const Session session;
};

TEST_F(File, HoldsTheSpeechInEveryServedFormat) {
  const Samples samples = session.samples("One. Two.");
  // A narrow path is in the system's code page, whatever the thread's own: here that of Russian.
  std::thread([&] {
    SetThreadLocale(0x0419);
    ASSERT_EQ(write(folder.file("caf") + "\xE9", LX_FILE_PCM), LX_OK);
  }).join();
  const std::string raw = readFile(folder / L"caf\u00E9");
  const auto* const written = reinterpret_cast<const int16_t*>(raw.data());
  expectSameSpeech(Samples(written, written + raw.size() / 2), samples);
  using Case = std::array<int, 5>;
  for (const auto& [code, tag, sampleBytes, headerBytes, silence] :
       {Case{LX_FILE_WAV, 1, 2, 44, 0}, Case{LX_FILE_ALAW, 6, 1, 58, 0xD5},
        Case{LX_FILE_MULAW, 7, 1, 58, 0xFF}}) {
    ASSERT_EQ(write(folder.file("x.wav"), code), LX_OK);
    const Bytes wav = readBytes(folder / "x.wav");
    EXPECT_TRUE(isWellFormedWav(wav)) << code;
    EXPECT_EQ(wav[20], tag);
    EXPECT_EQ(littleEndian32(wav, 24), 22050U);
    const auto dataBytes = static_cast<int>(wav.size()) - headerBytes;
    EXPECT_EQ(littleEndian32(wav, static_cast<size_t>(headerBytes) - 4), static_cast<uint32_t>(dataBytes));
    EXPECT_NEAR(dataBytes / sampleBytes, static_cast<double>(samples.size()), 500);
    EXPECT_GT(std::count(wav.begin() + headerBytes, wav.end(), silence), kSampleRateHz / 4) << "the pause";
  }
}

TEST_F(File, ThatIsRefusedOrCannotBeWrittenIsLeftAlone) {
  writeFile(folder / "kept.bin", "123");
  for (const int32_t code : {-1, 1, 2, 3, 4, 8, 9, 255}) {
    EXPECT_EQ(write(folder.file("new.bin"), code), LX_ERROR_UNSUPPORTED) << code;
    EXPECT_EQ(write(folder.file("kept.bin"), code), LX_ERROR_UNSUPPORTED) << code;
  }
  EXPECT_FALSE(std::filesystem::exists(folder / "new.bin"));
  EXPECT_EQ(readFile(folder / "kept.bin"), "123");
  EXPECT_EQ(write(folder.file("no/such/folder/x.wav"), LX_FILE_WAV), LX_ERROR_FILE);
  EXPECT_EQ(write(folder.file(std::string(5000, 'x')), LX_FILE_WAV), LX_ERROR_FILE);
  const Session fresh;
  EXPECT_EQ(LXAPI_TextToFile(fresh.tts, "a", -1, 2), LX_ERROR_FILE) << "no file was named";
}

TEST_F(File, IsGoneWhenItsRenderingIsStopped) {
  std::string text;
  for (int index = 0; index < 20'000; ++index) text += kSentence + " ";
  int32_t result = LX_OK;
  std::thread writer([&] { result = write(folder.file("long.wav"), LX_FILE_WAV, text); });
  while (!std::filesystem::exists(folder / "long.wav")) std::this_thread::yield();
  EXPECT_EQ(LXAPI_Stop(session.tts), LX_OK);
  writer.join();
  EXPECT_EQ(result, LX_ERROR_FAILED);
  EXPECT_FALSE(std::filesystem::exists(folder / "long.wav"));
}

struct UserDictionary : File {
  /// The path of a file with the content.
  std::string file(const std::string& content) const {
    writeFile(folder / "words", content);
    return folder.file("words");
  }
  int32_t load(const std::string& content, int32_t number = 0) const {
    return LXAPI_LoadUserDict(session.engine, number, file(content).c_str());
  }
  int32_t length(const std::string& text) const { return milliseconds(session.samples(text)); }
  template <class... Arguments>
  int32_t ask(const char* name, Arguments... arguments) const {
    int32_t result = -1;
    LXAPI_CallEngineInternal(session.engine, name, &result, nullptr, nullptr, sizeof...(arguments),
                             (intptr_t)(arguments)...);
    return result;
  }
};

TEST_F(UserDictionary, ChangesWhatIsHeardUntilItIsUnloaded) {
  const int32_t plain = length("xyz"), expected = length("antidisestablishmentarianism");
  ASSERT_EQ(load("xyz,antidisestablishmentarianism,noun\r\n"), LX_OK);
  ASSERT_EQ(load("xyz,a\n", 1), LX_OK);
  EXPECT_NEAR(length("xyz"), expected, 20) << "the lower number comes first";
  EXPECT_EQ(load("a,b\na,c\n"), LX_ERROR_DICT_DUPLICATE);
  EXPECT_EQ(LXAPI_LoadUserDict(session.engine, 0, folder.file("missing").c_str()), LX_ERROR_FILE);
  EXPECT_NEAR(length("xyz"), expected, 20) << "a refused file leaves the one before";
  ASSERT_EQ(LXAPI_UnloadUserDict(session.engine, 1), LX_OK);
  ASSERT_EQ(LXAPI_UnloadUserDict(session.engine, 0), LX_OK);
  EXPECT_EQ(LXAPI_UnloadUserDict(session.engine, 0), LX_ERROR_NOT_LOADED);
  EXPECT_NEAR(length("xyz"), plain, 20);
  const uint32_t lexicon = LXAPI_CreateLexiconHandle(file("xyz,h@l'oU h@l'oU h@l'oU h@l'oU\n").c_str());
  ASSERT_EQ(LXAPI_SetLexiconHandle(session.tts, lexicon), LX_OK);
  EXPECT_GT(length("xyz"), plain + 300);
  EXPECT_EQ(LXAPI_CreateLexiconHandle(file("xyz,\xC3\xA9\n").c_str()), 0U);
}

TEST_F(UserDictionary, LimitsAndChecksAnswerByName) {
  std::string limits;
  for (int which = LX_DICT_LIMIT_ENTRIES; which <= LX_DICT_LIMIT_NUMBERS + 1; ++which)
    limits += std::to_string(ask("LX_GetUserDictLimit", which)) + " ";
  EXPECT_EQ(limits, "200000 100 200 33554432 16 -1 ");
  EXPECT_EQ(ask("LX_CheckUserDict_SourceLen", "?"), LX_DICT_OK);
  EXPECT_EQ(ask("LX_CheckUserDict_SourceNorm", "?"), LX_DICT_NO_WORD);
  EXPECT_EQ(ask("LX_CheckUserDict_TargetNorm", "a[b"), LX_DICT_OK);
  EXPECT_EQ(ask("LX_CheckUserDict_TargetPhon", "a[b"), LX_DICT_BAD_PHONEMES);
  EXPECT_EQ(ask("LX_CheckUserDict_Substitution", "one"), LX_DICT_BAD_RECORD);
  EXPECT_EQ(ask("LX_GetPinyinActiveInfo", 0, 0), 0);
}

TEST_F(UserDictionary, TheCsvParserReadsRecordAfterRecordAndMakesThem) {
  intptr_t parser = 0;
  LXAPI_CallEngineInternal(session.engine, "LX_CsvParser_Init", nullptr, nullptr, &parser, 0);
  const auto parse = [&](const char* text) { return ask("LX_CsvParser_Parsing", parser, text, 2); };
  const auto field = [&](intptr_t index) {
    char text[1000] = "untouched";
    LXAPI_CallEngineInternal(session.engine, "LX_CsvParser_GetField", nullptr, text, nullptr, 2, parser,
                             index);
    return std::string(text);
  };
  EXPECT_EQ(parse(nullptr), LX_ERROR_BAD_ARGUMENT) << "no text yet";
  EXPECT_EQ(parse(("one,\"two\n2\"," + std::string(5000, 'x') + "\nlonely\n").c_str()), 1);
  EXPECT_EQ(ask("LX_CsvParser_GetNfields", parser), 3);
  EXPECT_EQ(field(0) + "|" + field(1) + "|" + field(3) + "|" + field(-1), "one|two\n2|untouched|untouched");
  EXPECT_EQ(field(2).size(), 999U);
  EXPECT_EQ(parse(nullptr), LX_ERROR_DICT_FORMAT);
  EXPECT_EQ(parse(nullptr), 0);
  EXPECT_EQ(parse("\xFF,b"), LX_ERROR_BAD_TEXT);
  EXPECT_EQ(ask("LX_CsvParser_Parsing", parser + 1000, "a,b", 2), -1) << "no such parser";
  char buffer[8] = "";
  EXPECT_EQ(ask("LX_CsvParser_MakeCsv", "a,", "b", buffer, 8), -3) << "too small for the zero byte";
  EXPECT_EQ(ask("LX_CsvParser_MakeCsv", ",", "b", buffer, 8), 7);
  EXPECT_STREQ(buffer, "\",\",b\r\n");
}

// The synthesizer has one state for the whole process.
TEST(Concurrency, HandlesRenderAtTheSameTimeWithoutMixing) {
  const Session english, french("French (France)", "Female");
  const auto renderOften = [](const Session& session) {
    const Samples expected = session.samples(kSentence + kSentence);
    for (int round = 0; round < 10; ++round)
      expectSameSpeech(session.samples(kSentence + kSentence), expected);
  };
  std::thread thread(renderOften, std::cref(french));
  renderOften(english);
  thread.join();
}

}  // namespace
}  // namespace speech::test
