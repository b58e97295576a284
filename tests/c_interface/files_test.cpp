// Files, samples and dictionaries through the C interface.

#include <numeric>

#include "tests/c_interface/c_interface_fixture.h"
#include "tests/support/file_content.h"
#include "tests/support/scoped_environment.h"
#include "tests/support/temporary_folder.h"

namespace speech::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class CFiles : public CInterfaceTest {
 protected:
  static std::ptrdiff_t filesIn(const std::filesystem::path& folder) {
    return std::distance(std::filesystem::directory_iterator(folder), {});
  }

  void TearDown() override {
    CInterfaceTest::TearDown();
    EXPECT_EQ(filesIn(temporary_.path()), 0) << "temporary files are left";
  }

  TemporaryFolder folder_;
  TemporaryFolder temporary_;
  ScopedEnvironment variable_{L"TMP", temporary_.path()};
};

TEST_F(CFiles, AnExportReachesAPathThatTheCodePageLacks) {
  recording().audio = {1, 2, 3, 4};
  SpeechEngine const engine = open();
  const std::filesystem::path path = folder_ / L"\u65e5\u672c \u017c.xyz";
  ASSERT_EQ(speech_export_w(engine, L"x", 0, SPEECH_FORMAT_WAV, 0, path.c_str()), SPEECH_OK);
  EXPECT_EQ(readFile(path), std::string("\1\2\3\4"));
  EXPECT_EQ(filesIn(folder_.path()), 1);
}

TEST_F(CFiles, AFailedExportLeavesWhatWasThere) {
  SpeechEngine const engine = open();
  const std::filesystem::path path = folder_ / L"old.wav";
  writeFile(path, "old");
  recording().answer("LXAPI_TextToFile", LX_ERROR_BAD_TEXT);
  EXPECT_EQ(speech_export_w(engine, L"x", 0, SPEECH_FORMAT_WAV, 0, path.c_str()), SPEECH_ERROR_REFUSED);
  EXPECT_EQ(speech_export_w(engine, L"x", 0, SPEECH_FORMAT_ALAW, 8000, path.c_str()),
            SPEECH_ERROR_UNSUPPORTED);
  EXPECT_EQ(speech_export_w(engine, L"x", 0, 8, 0, path.c_str()), SPEECH_ERROR_UNSUPPORTED);
  EXPECT_EQ(readFile(path), "old");
  EXPECT_THAT(takeEvents(), IsEmpty());
  EXPECT_EQ(filesIn(folder_.path()), 1);
}

TEST_F(CFiles, AFolderThatDoesNotExistIsNamed) {
  recording().audio = {1, 2};
  SpeechEngine const engine = open();
  const std::string path = folder_.file("missing\\x.wav");
  EXPECT_EQ(speech_export(engine, "x", 0, SPEECH_FORMAT_WAV, 0, path.c_str()), SPEECH_ERROR_FILE);
  EXPECT_THAT(detail(), HasSubstr("missing\\x.wav"));

  const std::filesystem::path taken = folder_ / L"taken";
  std::filesystem::create_directory(taken);
  EXPECT_EQ(speech_export_w(engine, L"x", 0, SPEECH_FORMAT_WAV, 0, taken.c_str()), SPEECH_ERROR_FILE);
  EXPECT_EQ(filesIn(folder_.path()), 1) << "nothing but the folder that was in the way";
  std::int32_t count = 0;
  EXPECT_EQ(speech_voice_count(&count), SPEECH_OK);
  EXPECT_EQ(detail(), "");
}

TEST_F(CFiles, AMissingToolIsNamedBeforeAnythingIsSynthesized) {
  SpeechEngine const engine = open();
  ASSERT_EQ(speech_set_tool_folder_w(engine, folder_.path().c_str()), SPEECH_OK);
  recording().takeCalls();
  for (const int format : {SPEECH_FORMAT_OGG, SPEECH_FORMAT_GSM, SPEECH_FORMAT_MP3}) {
    EXPECT_EQ(speech_export(engine, "x", 0, format, 0, "x"), SPEECH_ERROR_TOOL);
    EXPECT_THAT(detail(), HasSubstr("\\sox.exe"));
    const short sample[1] = {};
    EXPECT_EQ(speech_export_samples(engine, sample, 2, 8000, format, "x"), SPEECH_ERROR_TOOL);
  }
  EXPECT_THAT(recording().takeCalls(), IsEmpty());
}

TEST_F(CFiles, ExportsWaitForTheSpeechToEnd) {
  SpeechEngine const engine = open();
  SpeechAudio audio = {};
  ASSERT_EQ(speech_speak(engine, "x", 0), SPEECH_OK);
  EXPECT_EQ(speech_export(engine, "x", 0, SPEECH_FORMAT_WAV, 0, "x"), SPEECH_ERROR_BUSY);
  EXPECT_EQ(speech_synthesize(engine, "x", 0, 0, &audio), SPEECH_ERROR_BUSY);
  EXPECT_EQ(audio.samples, nullptr);
}

TEST_F(CFiles, ShortAndLongSamplesAreWrittenWhole) {
  SpeechEngine const engine = open();
  for (const std::size_t count : {0u, 3u, 32767u, 32768u, 100000u}) {
    std::vector<std::int16_t> samples(count + 1);
    std::iota(samples.begin(), samples.end(), std::int16_t{1});
    const auto byteCount = static_cast<std::uint32_t>(count * 2);
    const std::string bytes(reinterpret_cast<const char*>(samples.data()), byteCount);
    const std::string pcm = folder_.file("a.pcm");
    const std::string wav = folder_.file("a.wav");
    ASSERT_EQ(speech_export_samples(engine, samples.data(), byteCount, 11025, SPEECH_FORMAT_PCM, pcm.c_str()),
              SPEECH_OK);
    EXPECT_EQ(readFile(pcm), bytes);
    ASSERT_EQ(speech_export_samples(engine, samples.data(), byteCount, 11025, SPEECH_FORMAT_WAV, wav.c_str()),
              SPEECH_OK);
    const std::string content = readFile(wav);
    ASSERT_EQ(content.size(), byteCount + 44);
    EXPECT_EQ(content.substr(24, 4), std::string("\x11\x2B\0\0", 4)) << "11025 Hz";
    EXPECT_EQ(content.substr(44), bytes);
  }
}

TEST_F(CFiles, SamplesComeAtTheVoicesRateOrAnyOther) {
  recording().audio.assign(4001, 0);  // half a sample too many
  SpeechEngine const engine = open();
  SpeechAudio audio = {};
  ASSERT_EQ(speech_synthesize(engine, "x", 0, 0, &audio), SPEECH_OK);
  EXPECT_EQ(audio.byte_count, 4000u);
  EXPECT_EQ(audio.sample_rate, 22050);
  speech_audio_free(&audio);
  EXPECT_EQ(audio.samples, nullptr);
  speech_audio_free(&audio);

  ASSERT_EQ(speech_synthesize(engine, "x", 0, 11025, &audio), SPEECH_OK);
  EXPECT_EQ(audio.byte_count, 2000u);
  EXPECT_EQ(audio.sample_rate, 11025);
  speech_audio_free(&audio);
  EXPECT_EQ(speech_synthesize(engine, "x", 0, 1, &audio), SPEECH_ERROR_UNSUPPORTED);

  recording().answer("LXAPI_BufferOpen", LX_ERROR_BAD_TEXT);
  EXPECT_EQ(speech_synthesize(engine, "x", 0, 0, &audio), SPEECH_ERROR_REFUSED);
  EXPECT_EQ(audio.samples, nullptr);
}

TEST_F(CFiles, DictionariesTellFailureWithoutABox) {
  SpeechEngine const engine = open();
  const std::string csv = folder_.file("words.csv");
  EXPECT_EQ(speech_dictionary_load(engine, csv.c_str()), SPEECH_ERROR_FILE);
  writeFile(csv, "");
  EXPECT_EQ(speech_dictionary_load(engine, csv.c_str()), SPEECH_ERROR_FILE);
  EXPECT_THAT(recording().takeCalls(), IsEmpty());
  writeFile(csv, "a,b\n");
  EXPECT_EQ(speech_dictionary_load(engine, csv.c_str()), SPEECH_OK);
  EXPECT_THAT(recording().takeCalls(),
              ElementsAre("LXAPI_UnloadUserDict(101, 0)", "LXAPI_LoadUserDict(101, 0, \"" + csv + "\")"));
  recording().answer("LXAPI_LoadUserDict", -9);
  EXPECT_EQ(speech_dictionary_load(engine, csv.c_str()), SPEECH_ERROR_DICTIONARY);
  EXPECT_THAT(detail(), HasSubstr("User dictionary load failed."));

  const std::string lexicon = folder_.file("words.lex");
  writeFile(lexicon, "x");
  EXPECT_EQ(speech_dictionary_load(engine, lexicon.c_str()), SPEECH_OK);
  recording().answer("LXAPI_SetLexiconHandle", -2);
  EXPECT_EQ(speech_dictionary_load(engine, lexicon.c_str()), SPEECH_ERROR_DICTIONARY);

  recording().answer("LXAPI_UnloadUserDict", -3);
  EXPECT_EQ(speech_dictionary_unload(engine, 0), SPEECH_ERROR_DICTIONARY);
}

TEST_F(CFiles, TheEngineAnswersQuestionsAboutEntries) {
  SpeechEngine const engine = open();
  std::int32_t answer = 0;
  EXPECT_EQ(speech_dictionary_ask(engine, SPEECH_DICTIONARY_LIMIT, 5, &answer), SPEECH_ERROR_UNSUPPORTED);
  recording().answerInternal("LX_GetUserDictLimit(5)", 1000);
  recording().answerInternal("LX_CheckUserDict_Substitution(6)", 3);
  EXPECT_EQ(speech_dictionary_ask(engine, SPEECH_DICTIONARY_LIMIT, 5, &answer), SPEECH_OK);
  EXPECT_EQ(answer, 1000);
  EXPECT_EQ(speech_dictionary_ask(engine, SPEECH_DICTIONARY_SUBSTITUTION, 6, &answer), SPEECH_OK);
  EXPECT_EQ(answer, 3);
  recording().answerInternal("LX_GetPinyinActiveInfo(0, 0)", 1);
  EXPECT_EQ(speech_dictionary_ask(engine, SPEECH_DICTIONARY_PINYIN, 0, &answer), SPEECH_OK);
  EXPECT_EQ(answer, 1);
}

TEST_F(CFiles, TheEnginesAnswersAboutCsvAreResultsOrErrors) {
  SpeechEngine const engine = open();
  std::intptr_t reader = 0;
  std::int32_t number = 7;
  char text[10] = "";
  EXPECT_EQ(speech_csv_reader(engine, &reader), SPEECH_ERROR_UNSUPPORTED);
  EXPECT_EQ(speech_csv_read(engine, 5, nullptr, &number), SPEECH_ERROR_UNSUPPORTED);
  EXPECT_EQ(speech_csv_make(engine, "a", "b", text, sizeof text, nullptr), SPEECH_ERROR_UNSUPPORTED);
  recording().answerInternal("LX_CsvParser_Parsing(5, 0, 2)", LX_ERROR_DICT_FORMAT);
  EXPECT_EQ(speech_csv_read(engine, 5, nullptr, &number), SPEECH_ERROR_DICTIONARY);
  EXPECT_THAT(detail(), HasSubstr("-15"));
  EXPECT_EQ(number, 7);

  recording().answerInternal("LX_CsvParser_GetField(5, 1)", "na\xEFve\n");  // in the thread's code page
  EXPECT_EQ(speech_csv_field(engine, 5, 1, text, sizeof text, nullptr), SPEECH_OK);
  EXPECT_STREQ(text, "na\xC3\xAFve\n");
}

}  // namespace
}  // namespace speech::test
