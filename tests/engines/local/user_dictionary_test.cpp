#include "engines/local/orvane_lxapi.h"
#include "tests/engines/local/local_engine_test.h"
#include "tests/support/file_content.h"
#include "tests/support/temporary_folder.h"
#include "win32/text.h"

namespace speech::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class LocalDictionary : public LocalEngineTest {
 protected:
  unsigned short load(const char* path) {
    return dynamic_cast<OrvaneLXAPI&>(*engine_).loadUserDict(
        path, [this](const wchar_t* text) { messages_.emplace_back(text); });
  }

  std::string file(const char* name, const char* content) const {
    writeFile(folder_ / name, content);
    return toSystemCodePage((folder_ / name).wstring());
  }

  static std::wstring failure(const std::string& path, const wchar_t* codes) {
    return L"User dictionary load failed.\nFile name : " + fromSystemCodePage(path) + L"\nError code : " +
           codes;
  }

  std::vector<std::wstring> messages_;
  TemporaryFolder folder_{L"\u00e9l\u00e8ve"};
};

TEST_F(LocalDictionary, AWordListReplacesDictionaryZero) {
  for (const char* const name : {"words.csv", "WORDS2.CSV"}) {
    const std::string path = file(name, "a,b\n");
    EXPECT_EQ(load(path.c_str()), 0);
    EXPECT_THAT(recording().takeCalls(),
                ElementsAre("LXAPI_UnloadUserDict(101, 0)", "LXAPI_LoadUserDict(101, 0, \"" + path + "\")"));
  }
  EXPECT_THAT(messages_, IsEmpty());
}

TEST_F(LocalDictionary, AnEmptyOrMissingWordListIsPassedOverInSilence) {
  EXPECT_EQ(load(file("empty.csv", "").c_str()), 0);
  EXPECT_EQ(load((folder_ / "missing.csv").string().c_str()), 0);
  EXPECT_THAT(recording().takeCalls(), IsEmpty());
  EXPECT_THAT(messages_, IsEmpty());
}

TEST_F(LocalDictionary, ARefusedWordListIsShownWithBothResults) {
  const std::string path = file("words.csv", "a,b\n");
  recording().answer("LXAPI_UnloadUserDict", 0x1FFFE);  // -2 in 16 bits
  recording().answer("LXAPI_LoadUserDict", -9);
  EXPECT_EQ(load(path.c_str()), 65527);
  EXPECT_THAT(messages_, ElementsAre(failure(path, L"-2 -9")));
}

TEST_F(LocalDictionary, EverythingElseIsALexiconAndAlwaysAnswers65535) {
  for (const char* const path : {"C:\\a.lex", "C:\\noextension", "C:\\a.csv.bak"}) {
    start({.key1 = L"A"});
    EXPECT_EQ(load(path), 65535);
    EXPECT_THAT(recording().takeCalls(),
                ElementsAre("LXAPI_CreateLexiconHandle(\"" + std::string(path) + "\")",
                            "LXAPI_SetLexiconHandle(1, 2)", "LXAPI_SetAttr(1, 4, 0)"));
  }
  EXPECT_THAT(messages_, IsEmpty());

  recording().answer("LXAPI_SetAttr", -7);
  EXPECT_EQ(load("C:\\a.lex"), 65535);
  EXPECT_THAT(messages_, ElementsAre(L"LXAPI_SetAttr failed."));

  messages_.clear();
  recording().answer("LXAPI_SetLexiconHandle", -2);
  recording().takeCalls();
  EXPECT_EQ(load("C:\\a.lex"), 65535);
  EXPECT_THAT(messages_, ElementsAre(failure("C:\\a.lex", L"-1 -1")));
  EXPECT_EQ(recording().takeCalls().size(), 2u);

  EXPECT_EQ(load(nullptr), 65535);
}

TEST_F(LocalDictionary, AnEngineOfTypeNvUnloadsDictionaryOne) {
  recording().answer("LXAPI_UnloadUserDict", -9);
  EXPECT_EQ(engine_->unloadUserDict(3), -9);
  EXPECT_THAT(recording().takeCalls(), ElementsAre("LXAPI_UnloadUserDict(101, 3)"));
  start({.key1 = L"A", .type = L"Nv"});
  engine_->unloadUserDict(3);
  const std::string path = file("words.csv", "a,b\n");
  engine_->loadUserDict(path.c_str());
  EXPECT_THAT(recording().takeCalls(),
              ElementsAre("LXAPI_UnloadUserDict(101, 1)", "LXAPI_UnloadUserDict(101, 1)",
                          "LXAPI_LoadUserDict(101, 0, \"" + path + "\")"));
}

TEST_F(LocalDictionary, TheEnginesOwnFunctionsGetTheirArgumentsUnread) {
  const struct {
    int (*call)(ITextToSpeech&);
    std::string name, arguments;
  } cases[] = {
      {[](ITextToSpeech& e) { return e.getUserDictLimit(-1); }, "LX_GetUserDictLimit", "-1"},
      {[](ITextToSpeech& e) { return e.checkUserDictSourceLen(5); }, "LX_CheckUserDict_SourceLen", "5"},
      {[](ITextToSpeech& e) { return e.checkUserDictSourceNorm(5); }, "LX_CheckUserDict_SourceNorm", "5"},
      {[](ITextToSpeech& e) { return e.checkUserDictTargetNorm(5); }, "LX_CheckUserDict_TargetNorm", "5"},
      {[](ITextToSpeech& e) { return e.checkUserDictTargetPhon(5); }, "LX_CheckUserDict_TargetPhon", "5"},
      {[](ITextToSpeech& e) { return e.checkUserDictSubstitution(5); }, "LX_CheckUserDict_Substitution", "5"},
      {[](ITextToSpeech& e) { return e.csvParserParsing(5, 6); }, "LX_CsvParser_Parsing", "5, 6, 2"},
      {[](ITextToSpeech& e) { return e.csvParserGetNfields(5); }, "LX_CsvParser_GetNfields", "5"},
      {[](ITextToSpeech& e) { return e.csvParserMakeCsv(5, 6, 7, 8); }, "LX_CsvParser_MakeCsv", "5, 6, 7, 8"},
      {[](ITextToSpeech& e) { return e.getPinyinActiveInfo(5, 6); }, "LX_GetPinyinActiveInfo", "5, 6"},
  };
  for (const auto& [call, name, arguments] : cases) {
    EXPECT_EQ(call(*engine_), -1) << name;
    const auto count = std::to_string(1 + std::count(arguments.begin(), arguments.end(), ','));
    EXPECT_THAT(recording().takeCalls(), ElementsAre("LXAPI_CallEngineInternal(101, \"" + name +
                                                     "\", result, 0, 0, " + count + ", " + arguments + ")"));
    recording().answerInternal(name + '(' + arguments + ')', 77);
    recording().answer("LXAPI_CallEngineInternal", -7);
    EXPECT_EQ(call(*engine_), 77) << name;
    recording().takeCalls();
  }
}

TEST_F(LocalDictionary, TheParserAndItsFieldsUseOtherOutputs) {
  recording().answerInternal("LX_CsvParser_Init()", 4711);
  EXPECT_EQ(engine_->csvParserInit(), 4711);
  recording().answerInternal("LX_CsvParser_GetField(4711, 1)", "second");
  EXPECT_STREQ(engine_->csvParserGetField(4711, 1), "second");
  EXPECT_STREQ(engine_->csvParserGetField(4711, 2), "");
  const std::string longest(1000, 'x');
  recording().answerInternal("LX_CsvParser_GetField(4711, 3)", longest);
  EXPECT_EQ(engine_->csvParserGetField(4711, 3), longest) << "without a terminator of its own";
  EXPECT_THAT(
      recording().takeCalls(),
      ElementsAre("LXAPI_CallEngineInternal(101, \"LX_CsvParser_Init\", 0, 0, word, 0)",
                  "LXAPI_CallEngineInternal(101, \"LX_CsvParser_GetField\", 0, text, 0, 2, 4711, 1)",
                  "LXAPI_CallEngineInternal(101, \"LX_CsvParser_GetField\", 0, text, 0, 2, 4711, 2)",
                  "LXAPI_CallEngineInternal(101, \"LX_CsvParser_GetField\", 0, text, 0, 2, 4711, 3)"));
}

}  // namespace
}  // namespace speech::test
