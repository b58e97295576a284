// Files, samples and dictionaries through the C interface.

#include <algorithm>
#include <filesystem>
#include <numeric>

#include "tests/c_interface/c_interface_fixture.h"
#include "tests/support/file_content.h"
#include "tests/support/scoped_environment.h"
#include "tests/support/temporary_folder.h"
#include "win32/paths.h"

namespace speech::test {
namespace {

using namespace ::testing;

class CFiles : public CInterfaceTest {
 protected:
  static constexpr short kSamples[2] = {1, 2};

  void TearDown() override {
    CInterfaceTest::TearDown();
    EXPECT_EQ(filesIn(temporary_.path()), 0) << "temporary files are left";
  }

  static std::ptrdiff_t filesIn(const std::filesystem::path& folder) {
    return std::distance(std::filesystem::directory_iterator(folder), {});
  }

  TemporaryFolder folder_;
  TemporaryFolder temporary_;
  ScopedEnvironment variable_{L"TMP", temporary_.path()};
};

TEST_F(CFiles, AnExportReachesAPathThatTheCodePageLacks) {
  recording().audio = {1, 2, 3, 4};
  const std::filesystem::path path = folder_ / L"\u65e5\u672c \u017c.xyz";
  const auto exported = [&](std::uint32_t flags) {
    return speech_export_w(engine_, L"x", flags, SPEECH_FORMAT_WAV, 0, path.c_str());
  };
  const auto isLogged = [this] {
    const std::string name = folder_.path().filename().string();
    return std::ranges::any_of(
        std::filesystem::directory_iterator(*documentsFolder() + L"\\Narravo\\log"),
        [&](const auto& log) { return readFile(log).find(name) != std::string::npos; });
  };
  EXPECT_EQ(exported(0), SPEECH_OK);
  EXPECT_THAT(recording().takeCalls(), Contains("LXAPI_TextToFile(1, \"x\", -1, 2)"));
  EXPECT_EQ(readFile(path), std::string("\1\2\3\4"));
  EXPECT_EQ(filesIn(folder_.path()), 1);
  EXPECT_FALSE(isLogged());
  // A line is lost while another program writes to the log.
  waitUntil("the log's line", [&] {
    EXPECT_EQ(exported(SPEECH_FLAG_SSML | SPEECH_FLAG_LOG), SPEECH_OK);
    return isLogged();
  });
  EXPECT_THAT(recording().takeCalls(), Contains("LXAPI_TextToFile(1, \"x\", 1, 130)"));
}

TEST_F(CFiles, AFailedExportSaysWhyAndLeavesWhatWasThere) {
  recording().audio = {1, 2};
  const std::string old = folder_.file("old");
  writeFile(old, "old");
  const auto exported = [&](std::int32_t format, std::int32_t rateHz, const std::string& path) {
    return speech_export(engine_, "x", 0, format, rateHz, path.c_str());
  };
  EXPECT_EQ(exported(SPEECH_FORMAT_WAV, 0, folder_.file("missing\\x.wav")), SPEECH_ERROR_FILE);
  EXPECT_THAT(detail(), HasSubstr("missing\\x.wav"));
  std::filesystem::create_directory(folder_ / L"folder");
  EXPECT_EQ(exported(SPEECH_FORMAT_WAV, 0, folder_.file("folder")), SPEECH_ERROR_FILE);
  EXPECT_EQ(speech_wait(engine_, 0), SPEECH_OK);
  EXPECT_EQ(detail(), "") << "of a call that did not fail";
  recording().audio.clear();
  recording().answer("LXAPI_TextToFile", LX_ERROR_BAD_TEXT);
  EXPECT_EQ(exported(SPEECH_FORMAT_WAV, 0, old), SPEECH_ERROR_REFUSED);
  expectEach(SPEECH_ERROR_UNSUPPORTED, {exported(SPEECH_FORMAT_ALAW, 8000, old), exported(8, 0, old)});
  EXPECT_EQ(readFile(old), "old");
  EXPECT_EQ(filesIn(folder_.path()), 2);
  EXPECT_THAT(takeEvents(), IsEmpty());
}

TEST_F(CFiles, SoxMakesOtherFormatsWhileCallbacksMustWait) {
  const ScopedEnvironment log(L"FAKE_SOX_LOG", folder_ / L"calls");
  EXPECT_EQ(speech_set_tool_folder_w(engine_, folder_.path().c_str()), SPEECH_OK);
  constexpr std::int32_t kFormats[] = {SPEECH_FORMAT_OGG, SPEECH_FORMAT_GSM, SPEECH_FORMAT_MP3};
  for (const std::int32_t format : kFormats) {
    EXPECT_EQ(speech_export(engine_, "x", 0, format, 0, "x"), SPEECH_ERROR_TOOL);
    EXPECT_EQ(speech_export_samples(engine_, kSamples, 2, 8000, format, "x"), SPEECH_ERROR_TOOL);
    EXPECT_THAT(detail(), HasSubstr("\\sox.exe"));
  }
  EXPECT_THAT(recording().takeCalls(), IsEmpty()) << "nothing is synthesized in vain";

  std::filesystem::copy_file(moduleFolder(nullptr) + L"fake_sox.exe", folder_ / L"sox.exe");
  EXPECT_EQ(speech_speak(engine_, "x", 0), SPEECH_OK);
  std::int32_t meanwhile = SPEECH_OK;
  reaction_ = [&](const SpeechEvent& event) { meanwhile = speech_stop(event.engine); };
  for (const std::int32_t format : kFormats) {
    EXPECT_EQ(speech_export_samples(engine_, kSamples, 4, 11025, format, "x"), SPEECH_ERROR_UNSUPPORTED);
    EXPECT_THAT(detail(), HasSubstr("SoX made no file"));
  }
  EXPECT_EQ(meanwhile, SPEECH_ERROR_BUSY);
  EXPECT_THAT(
      readFile(folder_ / L"calls"),
      AllOf(HasSubstr(".wav\" -r 11025 \""), HasSubstr(".wav\" -r 8000 \""), HasSubstr(".wav\" -C 320 \"")));
  SpeechAudio audio = {};
  expectEach(SPEECH_ERROR_BUSY, {speech_export(engine_, "x", 0, SPEECH_FORMAT_WAV, 0, "x"),
                                 speech_synthesize(engine_, "x", 0, 0, &audio)});
}

TEST_F(CFiles, ShortAndLongSamplesAreWrittenWhole) {
  for (const std::size_t count : {0u, 3u, 32767u, 32768u, 100000u}) {
    std::vector<std::int16_t> samples(count + 1);
    std::iota(samples.begin(), samples.end(), std::int16_t{1});
    const std::string bytes(reinterpret_cast<const char*>(samples.data()), count * 2);
    const auto contentOf = [&](std::int32_t format) {
      EXPECT_EQ(speech_export_samples(engine_, samples.data(), static_cast<std::uint32_t>(bytes.size()),
                                      11025, format, folder_.file("a").c_str()),
                SPEECH_OK);
      return readFile(folder_ / L"a");
    };
    EXPECT_EQ(contentOf(SPEECH_FORMAT_PCM), bytes);
    const std::string wav = contentOf(SPEECH_FORMAT_WAV);
    EXPECT_EQ(wav.substr(24, 4), std::string("\x11\x2B\0\0", 4)) << "11025 Hz";
    EXPECT_EQ(wav.substr(44), bytes);
  }
}

TEST_F(CFiles, SamplesComeAtTheVoicesRateOrAnyOther) {
  recording().audio.assign(4001, 0);  // half a sample too many
  SpeechAudio audio = {};
  for (const std::int32_t rateHz : {0, 11025}) {
    ASSERT_EQ(speech_synthesize(engine_, "x", 0, rateHz, &audio), SPEECH_OK);
    EXPECT_EQ(audio.byte_count, rateHz == 0 ? 4000u : 2000u);
    EXPECT_EQ(audio.sample_rate, rateHz == 0 ? 22050 : 11025);
    speech_audio_free(&audio);
    EXPECT_EQ(audio.samples, nullptr);
  }
  EXPECT_EQ(speech_synthesize(engine_, "x", 0, 1, &audio), SPEECH_ERROR_UNSUPPORTED);
  recording().answer("LXAPI_BufferOpen", LX_ERROR_BAD_TEXT);
  EXPECT_EQ(speech_synthesize(engine_, "x", 0, 0, &audio), SPEECH_ERROR_REFUSED);
  EXPECT_EQ(audio.samples, nullptr);
}

TEST_F(CFiles, DictionariesTellFailureWithoutABox) {
  const std::string csv = folder_.file("words.csv"), lexicon = folder_.file("words.lex");
  const auto load = [&](const std::string& path) { return speech_dictionary_load(engine_, path.c_str()); };
  EXPECT_EQ(load(csv), SPEECH_ERROR_FILE) << "it is missing";
  writeFile(csv, "");
  EXPECT_EQ(load(csv), SPEECH_ERROR_FILE) << "it is empty";
  writeFile(csv, "a,b\n");
  writeFile(lexicon, "x");
  expectEach(SPEECH_OK, {load(csv), load(lexicon)});
  EXPECT_THAT(recording().takeCalls(), Contains("LXAPI_LoadUserDict(101, 0, \"" + csv + "\")"));
  recording().answer("LXAPI_LoadUserDict", -9);
  recording().answer("LXAPI_SetLexiconHandle", -2);
  recording().answer("LXAPI_UnloadUserDict", -3);
  expectEach(SPEECH_ERROR_DICTIONARY, {load(lexicon), speech_dictionary_unload(engine_, 0), load(csv)});
  EXPECT_THAT(detail(), HasSubstr("User dictionary load failed."));
}

TEST_F(CFiles, TheEngineAnswersQuestionsAboutEntries) {
  std::int32_t answer = 0, question = 0;
  EXPECT_EQ(speech_dictionary_ask(engine_, question, 5, &answer), SPEECH_ERROR_UNSUPPORTED);
  for (const char* const call :
       {"LX_GetUserDictLimit(5)", "LX_CheckUserDict_SourceLen(5)", "LX_CheckUserDict_SourceNorm(5)",
        "LX_CheckUserDict_TargetNorm(5)", "LX_CheckUserDict_TargetPhon(5)",
        "LX_CheckUserDict_Substitution(5)", "LX_GetPinyinActiveInfo(5, 0)"}) {
    recording().answerInternal(call, 1000 + question);
    EXPECT_EQ(speech_dictionary_ask(engine_, question, 5, &answer), SPEECH_OK);
    EXPECT_EQ(answer, 1000 + question++);
  }
}

TEST_F(CFiles, TheEnginesAnswersAboutCsvAreResultsOrErrors) {
  std::intptr_t reader = 0;
  std::int32_t line = 7, count = 0;
  char text[10] = "";
  expectEach(SPEECH_ERROR_UNSUPPORTED,
             {speech_csv_reader(engine_, &reader), speech_csv_read(engine_, 5, nullptr, &line),
              speech_csv_make(engine_, "a", "b", text, sizeof text, nullptr)});
  EXPECT_THAT(recording().takeCalls(), Contains(EndsWith(", 12)"))) << "as long as the record can be";
  recording().answerInternal("LX_CsvParser_Parsing(5, 0, 2)", LX_ERROR_DICT_FORMAT);
  EXPECT_EQ(speech_csv_read(engine_, 5, nullptr, &line), SPEECH_ERROR_DICTIONARY);
  EXPECT_THAT(detail(), HasSubstr("-15"));
  EXPECT_EQ(line, 7);

  recording().answerInternal("LX_CsvParser_Init()", 5);
  recording().answerInternal("LX_CsvParser_Parsing(5, 0, 2)", 3);
  recording().answerInternal("LX_CsvParser_GetNfields(5)", 4);
  recording().answerInternal("LX_CsvParser_GetField(5, 1)", "na\xEFve\n");  // in the thread's code page
  expectEach(SPEECH_OK, {speech_csv_reader(engine_, &reader), speech_csv_read(engine_, 5, nullptr, &line),
                         speech_csv_field_count(engine_, 5, &count),
                         speech_csv_field(engine_, 5, 1, text, sizeof text, nullptr)});
  EXPECT_THAT((std::array<std::intptr_t, 3>{reader, line, count}), ElementsAre(5, 3, 4));
  EXPECT_STREQ(text, "na\xC3\xAFve\n");
}

}  // namespace
}  // namespace speech::test
