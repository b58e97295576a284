// User dictionaries, lexicons and the functions by name, through the interface.

#include <gtest/gtest.h>

#include "tests/lxapi/session.h"
#include "tests/support/file_content.h"
#include "tests/support/temporary_folder.h"

namespace speech::test {
namespace {

class UserDictionary : public testing::Test {
 protected:
  std::string write(const std::string& name, const std::string& content) {
    writeFile(folder.path() / name, content);
    return folder.file(name);
  }
  int32_t load(const std::string& content, int32_t number = 0) {
    return LXAPI_LoadUserDict(session.engine, number, write("words.csv", content).c_str());
  }
  int32_t length(const std::string& text, int32_t flags = LX_SPEAK_ASYNC) const {
    return milliseconds(session.samples(text, flags));
  }
  template <class... Arguments>
  int32_t ask(const char* name, Arguments... arguments) const {
    int32_t result = -1;
    LXAPI_CallEngineInternal(session.engine, name, &result, nullptr, nullptr, sizeof...(arguments),
                             reinterpret_cast<intptr_t>(arguments)...);
    return result;
  }

  TemporaryFolder folder;
  Session session;
};

constexpr const char* kPhrase = "antidisestablishmentarianism and more";

TEST_F(UserDictionary, ChangesWhatIsHeardUntilItIsUnloaded) {
  const int32_t plain = length("xyz");
  const int32_t expected = length(kPhrase);
  ASSERT_EQ(load("\xEF\xBB\xBFxyz," + std::string(kPhrase) + ",noun\r\n"), LX_OK);
  EXPECT_NEAR(length("xyz"), expected, 20);
  EXPECT_GT(length("<speak>xyz</speak>", LX_SPEAK_ASYNC | LX_SPEAK_SSML), plain + 500);
  ASSERT_EQ(LXAPI_UnloadUserDict(session.engine, 0), LX_OK);
  EXPECT_NEAR(length("xyz"), plain, 20);
  EXPECT_EQ(LXAPI_UnloadUserDict(session.engine, 0), LX_ERROR_NOT_LOADED);
}

TEST_F(UserDictionary, ARefusedFileLeavesTheOneBefore) {
  ASSERT_EQ(load("xyz," + std::string(kPhrase) + "\n"), LX_OK);
  const int32_t expected = length("xyz");
  std::string binary;
  for (int index = 0; index < 5000; ++index) binary.push_back(static_cast<char>(index * 31));
  EXPECT_EQ(load(""), LX_ERROR_DICT_EMPTY);
  EXPECT_EQ(load("a,\"b"), LX_ERROR_DICT_FORMAT);
  EXPECT_EQ(load(binary), LX_ERROR_BAD_TEXT);
  EXPECT_EQ(load(std::string(100'000'000, 'a')), LX_ERROR_DICT_SIZE);
  EXPECT_EQ(load("a,b\na,c\n"), LX_ERROR_DICT_DUPLICATE);
  EXPECT_EQ(LXAPI_LoadUserDict(session.engine, 0, folder.file("missing.csv").c_str()), LX_ERROR_FILE);
  EXPECT_EQ(LXAPI_LoadUserDict(session.engine, 0, nullptr), LX_ERROR_BAD_ARGUMENT);
  EXPECT_EQ(load("a,b\n", -1), LX_ERROR_BAD_ARGUMENT);
  EXPECT_EQ(load("a,b\n", 16), LX_ERROR_BAD_ARGUMENT);
  EXPECT_NEAR(length("xyz"), expected, 20);
}

// Ends only if neither loading nor looking up walks through all of them again and again.
TEST_F(UserDictionary, AHundredThousandEntriesAreQuick) {
  std::string content, text;
  for (int index = 0; index < 100'000; ++index) {
    content += "word" + std::to_string(index) + " and its friends,replacement\n";
  }
  for (int index = 0; index < 200; ++index)
    text += "The quick brown fox sends word after word to its friends. ";
  const int32_t without = length(text);
  ASSERT_EQ(load(content), LX_OK);
  EXPECT_NEAR(length(text), without, without / 100);
}

TEST_F(UserDictionary, ALexiconGivesPhonemes) {
  const std::string path = write("words.lex", "xyz,h@l'oU h@l'oU h@l'oU h@l'oU\n");
  const uint32_t lexicon = LXAPI_CreateLexiconHandle(path.c_str());
  ASSERT_NE(lexicon, 0U);
  const int32_t plain = length("xyz one");
  ASSERT_EQ(LXAPI_SetLexiconHandle(session.tts, lexicon), LX_OK);
  EXPECT_EQ(LXAPI_SetAttr(session.tts, LX_ATTR_LEXICON, 0), LX_OK);
  EXPECT_GT(length("xyz one"), plain + 300);
  EXPECT_EQ(LXAPI_CreateLexiconHandle(folder.file("missing.lex").c_str()), 0U);
  EXPECT_EQ(LXAPI_CreateLexiconHandle(write("bad.lex", "xyz,\xC3\xA9\n").c_str()), 0U);
  EXPECT_EQ(LXAPI_CreateLexiconHandle(nullptr), 0U);
  EXPECT_EQ(LXAPI_SetLexiconHandle(session.tts, 0), LX_ERROR_BAD_HANDLE);
  EXPECT_EQ(LXAPI_SetLexiconHandle(session.tts, session.engine), LX_ERROR_BAD_HANDLE);
}

TEST_F(UserDictionary, LimitsAndChecksAnswerByName) {
  const auto limit = [&](intptr_t which) {
    return ask("LX_GetUserDictLimit", reinterpret_cast<const char*>(which));
  };
  EXPECT_GE(limit(LX_DICT_LIMIT_ENTRIES), 100'000);
  EXPECT_EQ(limit(LX_DICT_LIMIT_SOURCE), 100);
  EXPECT_EQ(limit(LX_DICT_LIMIT_TARGET), 200);
  EXPECT_EQ(limit(99), -1) << "untouched";
  EXPECT_EQ(ask("LX_CheckUserDict_SourceLen", "word"), LX_DICT_OK);
  EXPECT_EQ(ask("LX_CheckUserDict_SourceNorm", "?"), LX_DICT_NO_WORD);
  EXPECT_EQ(ask("LX_CheckUserDict_TargetNorm", ""), LX_DICT_EMPTY);
  EXPECT_EQ(ask("LX_CheckUserDict_TargetPhon", "a[b"), LX_DICT_BAD_PHONEMES);
  EXPECT_EQ(ask("LX_CheckUserDict_Substitution", "one"), LX_DICT_BAD_RECORD);
  EXPECT_EQ(ask("LX_CheckUserDict_Substitution", "one,two"), LX_DICT_OK);
  for (const char* const name : {"LX_CheckUserDict_SourceLen", "LX_CheckUserDict_Substitution"}) {
    EXPECT_EQ(ask(name, static_cast<const char*>(nullptr)), -1) << "untouched";
  }
  EXPECT_EQ(
      ask("LX_GetPinyinActiveInfo", static_cast<const char*>(nullptr), static_cast<const char*>(nullptr)), 0);
}

TEST_F(UserDictionary, TheCsvParserReadsRecordAfterRecord) {
  intptr_t parser = 0;
  ASSERT_EQ(LXAPI_CallEngineInternal(session.engine, "LX_CsvParser_Init", nullptr, nullptr, &parser, 0),
            LX_OK);
  ASSERT_NE(parser, 0);
  const auto parse = [&](const char* text) {
    int32_t result = -1;
    LXAPI_CallEngineInternal(session.engine, "LX_CsvParser_Parsing", &result, nullptr, nullptr, 3, parser,
                             reinterpret_cast<intptr_t>(text), intptr_t{2});
    return result;
  };
  const auto field = [&](intptr_t index) {
    char text[1000] = "untouched";
    LXAPI_CallEngineInternal(session.engine, "LX_CsvParser_GetField", nullptr, text, nullptr, 2, parser,
                             index);
    return std::string(text);
  };
  EXPECT_EQ(parse(nullptr), LX_ERROR_BAD_ARGUMENT) << "no text yet";
  EXPECT_EQ(parse("one,\"two\n2\",x\nlonely\n"), 1);
  EXPECT_EQ(ask("LX_CsvParser_GetNfields", reinterpret_cast<const char*>(parser)), 3);
  EXPECT_EQ(field(0) + "|" + field(1) + "|" + field(3) + "|" + field(-1), "one|two\n2|untouched|untouched");
  EXPECT_EQ(parse(nullptr), LX_ERROR_DICT_FORMAT);
  EXPECT_EQ(parse(nullptr), 0);
  EXPECT_EQ(parse("\xFF,b"), LX_ERROR_BAD_TEXT);
  EXPECT_EQ(parse(("a," + std::string(5000, 'x')).c_str()), 1);
  EXPECT_EQ(field(1).size(), 999U);
  parser += 1000;
  EXPECT_EQ(parse("a,b"), -1) << "no such parser";
}

TEST_F(UserDictionary, CsvRecordsAreMadeInTheCallersBuffer) {
  char buffer[20] = "";
  const auto make = [&](const char* source, const char* target, intptr_t size) {
    return ask("LX_CsvParser_MakeCsv", source, target, buffer, reinterpret_cast<char*>(size));
  };
  EXPECT_EQ(make("a,b", "say \"c\"", sizeof(buffer)), 19);
  EXPECT_STREQ(buffer, "\"a,b\",\"say \"\"c\"\"\"\r\n");
  EXPECT_EQ(make("a,b", "say \"c\"", 19), LX_ERROR_BAD_ARGUMENT);
  EXPECT_EQ(make(nullptr, "c", sizeof(buffer)), -1);
}

}  // namespace
}  // namespace speech::test
