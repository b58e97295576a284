#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <string>

#include "tests/lxapi/session.h"

namespace speech::test {
namespace {

struct Listed {
  std::wstring key1, key2, gender, language, type;
  int32_t number, rateHz;
};

std::vector<Listed> listEngines() {
  std::vector<Listed> result;
  for (uint32_t cursor = LXAPI_GetFirstInstalledEngine(); cursor != 0;
       cursor = LXAPI_GetNextInstalledEngine(cursor)) {
    const wchar_t *key1 = L"", *key2 = L"", *gender = L"", *language = L"", *type = L"";
    int32_t number = 0, rateHz = 0;
    EXPECT_EQ(LXAPI_GetEngineInfoFieldEx2(cursor, &key1, &key2, &number, nullptr, nullptr, nullptr, &gender,
                                          nullptr, &rateHz, nullptr, &language, &type),
              LX_OK);
    result.push_back({key1, key2, gender, language, type, number, rateHz});
  }
  return result;
}

/// A text in the code page of these tests, 1252, which for the letters here is the number of each.
std::string narrow(const std::wstring& text) {
  std::string result;
  for (const wchar_t letter : text) result.push_back(static_cast<char>(letter));
  return result;
}

TEST(Catalogue, ListsAMaleAndAFemaleEngineForEveryVoiceAndTheListedOnes) {
  const Session session;
  ASSERT_EQ(session.started, LX_OK);
  const std::vector<Listed> engines = listEngines();
  std::set<std::wstring> languages;
  size_t male = 0, female = 0, cloud = 0;
  for (const Listed& engine : engines) {
    EXPECT_EQ(engine.number, &engine - engines.data());
    EXPECT_FALSE(engine.key1.empty());
    EXPECT_EQ(engine.key2.find(L'N'), std::wstring::npos) << "hosts call such an engine differently";
    if (engine.type == L"skyvo") {
      ++cloud;
      continue;
    }
    EXPECT_EQ(engine.type, L"espeak");
    EXPECT_EQ(engine.rateHz, kSampleRateHz);
    languages.insert(engine.language);
    (engine.gender == L"F" ? female : male) += 1;
  }
  EXPECT_GT(languages.size(), 100U);
  EXPECT_GT(male, 100U);
  EXPECT_EQ(male, female);
  EXPECT_GT(cloud, 0U);
}

TEST(Catalogue, TheKeysOfEveryEngineFindItAgainAndItSpeaks) {
  // Digits, Latin, Cyrillic and Cherokee letters: every voice knows some of them.
  const std::string text = "1 2 3 aoi \xD0\xB0\xD0\xBE \xE1\x8E\xA0\xE1\x8E\xB3";
  const Session session;
  std::set<uint32_t> handles;
  for (const Listed& engine : listEngines()) {
    if (engine.key1.find(L'\u0101') != std::wstring::npos) continue;  // not in the code page
    const std::string key1 = narrow(engine.key1);
    const uint32_t handle = LXAPI_GetEngine(key1.c_str(), narrow(engine.key2).c_str());
    ASSERT_NE(handle, 0U) << key1;
    handles.insert(handle);
    LXTTSINFO info;
    ASSERT_EQ(LXAPI_GetTTSInfo(handle, &info), LX_OK);
    EXPECT_EQ(info.name, engine.key1);
    if (engine.type != L"espeak") continue;
    ASSERT_EQ(LXAPI_SetEngineHandle(session.tts, handle), LX_OK) << key1;
    ASSERT_EQ(LXAPI_LoadEngine(handle), LX_OK);
    EXPECT_GT(milliseconds(session.samples(text)), 300) << key1;
  }
  EXPECT_GT(handles.size(), 200U);
  EXPECT_EQ(LXAPI_GetEngine("ENGLISH (america)", "mALE"), session.engine) << "letter case does not matter";
  EXPECT_EQ(LXAPI_GetEngine("Norwegian Bokm\xE5l", "Male"), LXAPI_GetEngine("norwegian bokm\xC5L", "Male"));
  EXPECT_EQ(LXAPI_GetEngine("No such voice", "Male"), 0U);
  EXPECT_EQ(LXAPI_GetEngine("English (America)", "Child"), 0U);
  EXPECT_EQ(LXAPI_GetEngine("", ""), 0U);
  EXPECT_EQ(LXAPI_GetEngine(std::string(1'000'000, 'x').c_str(), "Male"), 0U);
}

TEST(Catalogue, AnEngineTellsItsVersionFolderAndRanges) {
  const Session session;
  LXTTSINFO info;
  ASSERT_EQ(LXAPI_GetTTSInfo(session.engine, &info), LX_OK);
  EXPECT_STREQ(info.name, L"English (America)");
  EXPECT_STRNE(info.version, L"");
  EXPECT_STRNE(info.text2, L"");
  EXPECT_TRUE(std::ifstream(narrow(info.folder) + "\\engines.ini").is_open());

  const auto ask = [&](int32_t number) {
    int32_t answer = -1;
    EXPECT_EQ(LXAPI_CallEngineInternal(session.engine, "LX_GetTTSInfo", &answer, nullptr, nullptr, 1, number),
              LX_OK);
    return answer;
  };
  for (const int32_t maximum : {LX_INFO_PITCH_MAXIMUM, LX_INFO_SPEED_MAXIMUM, LX_INFO_VOLUME_MAXIMUM,
                                LX_INFO_PAUSE_MAXIMUM, LX_INFO_COMMA_PAUSE_MAXIMUM}) {
    EXPECT_GE(ask(maximum + 2), 0);
    EXPECT_LT(ask(maximum + 2), ask(maximum + 1));
    EXPECT_LT(ask(maximum + 1), ask(maximum));
  }
}

TEST(Catalogue, TheLibraryEndsWithTheLastOfItsStarts) {
  const Session session;
  ASSERT_EQ(LXAPI_Init(), LX_OK);
  EXPECT_EQ(LXAPI_Exit(), LX_OK);
  EXPECT_EQ(LXAPI_Pause(session.tts), LX_OK) << "the session's own start still counts";
  ASSERT_EQ(LXAPI_Exit(), LX_OK);
  EXPECT_EQ(LXAPI_Pause(session.tts), LX_ERROR_NOT_STARTED);
  EXPECT_EQ(LXAPI_GetFirstInstalledEngine(), 0U);
  EXPECT_EQ(LXAPI_CreateHandle(), 0U);
  EXPECT_EQ(LXAPI_Exit(), LX_ERROR_NOT_STARTED);
  ASSERT_EQ(LXAPI_Init(), LX_OK);
  EXPECT_EQ(LXAPI_Pause(session.tts), LX_ERROR_BAD_HANDLE) << "handles of before stay invalid";
  EXPECT_NE(LXAPI_GetFirstInstalledEngine(), 0U);
}

}  // namespace
}  // namespace speech::test
