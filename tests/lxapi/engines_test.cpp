// Start and end, installed engines, handles and arguments that are wrong.

#include <filesystem>
#include <map>
#include <set>

#include "tests/lxapi/session.h"

namespace speech::test {
namespace {

TEST(Engines, AreAMaleAndAFemaleOneForEveryVoiceThatAllSpeakAndTheListedOnes) {
  const Session session;
  std::set<uint32_t> handles;
  std::set<std::wstring> languages;
  std::map<std::wstring, int> counts;
  for (uint32_t cursor = LXAPI_GetFirstInstalledEngine(), place = 0; cursor != 0;
       cursor = LXAPI_GetNextInstalledEngine(cursor), ++place) {
    const wchar_t *key1 = L"", *key2 = L"", *gender = L"", *language = L"", *type = L"";
    int32_t number = -1, rateHz = 0;
    ASSERT_EQ(LXAPI_GetEngineInfoFieldEx2(cursor, &key1, &key2, &number, nullptr, nullptr, nullptr, &gender,
                                          nullptr, &rateHz, nullptr, &language, &type),
              LX_OK);
    EXPECT_EQ(number, static_cast<int32_t>(place));
    const std::wstring wideName(key1), variety(key2);
    EXPECT_EQ(variety.find(L'N'), std::wstring::npos) << "hosts call such an engine differently";
    if (wideName.find(L'\u0101') != std::wstring::npos) continue;  // not in the code page
    // In the code page of these tests, 1252, the letters here have the same numbers.
    const std::string name(wideName.begin(), wideName.end());
    const uint32_t handle =
        LXAPI_GetEngine(name.c_str(), std::string(variety.begin(), variety.end()).c_str());
    EXPECT_TRUE(handle != 0 && handles.insert(handle).second) << name;
    const bool isCloud = type == std::wstring(L"skyvo");
    EXPECT_EQ(LXAPI_LoadEngine(handle), isCloud ? LX_ERROR_UNSUPPORTED : LX_OK)
        << "a cloud voice speaks elsewhere";
    languages.insert(language);
    ++counts[type + std::wstring(gender)];
    if (isCloud) continue;
    EXPECT_EQ(rateHz, kSampleRateHz);
    ASSERT_EQ(LXAPI_SetEngineHandle(session.tts, handle), LX_OK) << name;
    // Digits, Latin, Cyrillic and Cherokee letters: every voice knows some of them.
    EXPECT_GT(milliseconds(session.samples("1 2 3 aoi \u0430\u043E \u13A0\u13B3")), 300) << name;
  }
  EXPECT_GT(languages.size(), 100U);
  EXPECT_GT(counts[L"espeakM"], 100);
  EXPECT_EQ(counts[L"espeakF"], counts[L"espeakM"]);
  EXPECT_GT(counts[L"skyvoF"], 5);
  EXPECT_EQ(LXAPI_GetEngine("ENGLISH (america)", "mALE"), session.engine) << "letter case does not matter";
  EXPECT_EQ(LXAPI_GetEngine("Norwegian Bokm\xE5l", "Male"), LXAPI_GetEngine("norwegian bokm\xC5L", "Male"));
  for (const uint32_t none : {LXAPI_GetEngine("English (America)", "Child"), LXAPI_GetEngine("", "Male"),
                              LXAPI_GetEngine(nullptr, "Male"), LXAPI_GetEngine("German", nullptr)})
    EXPECT_EQ(none, 0U);
  LXTTSINFO info;
  ASSERT_EQ(LXAPI_GetTTSInfo(session.engine, &info), LX_OK);
  EXPECT_STREQ(info.name, L"English (America)");
  EXPECT_STRNE(info.version, L"");
  EXPECT_TRUE(std::filesystem::exists(std::filesystem::path(info.folder) / "engines.ini"));
}

TEST(Library, EndsWithTheLastOfItsStarts) {
  const Session session;
  ASSERT_EQ(LXAPI_Init(), LX_OK);
  EXPECT_EQ(LXAPI_Exit(), LX_OK);
  EXPECT_EQ(LXAPI_Pause(session.tts), LX_OK) << "the session's own start still counts";
  ASSERT_EQ(LXAPI_Exit(), LX_OK);
  EXPECT_EQ(LXAPI_Exit(), LX_ERROR_NOT_STARTED);
  ASSERT_EQ(LXAPI_Init(), LX_OK);
  EXPECT_GT(LXAPI_CreateHandle(), session.tts) << "no handle is used twice";
  EXPECT_EQ(LXAPI_Pause(session.tts), LX_ERROR_BAD_HANDLE) << "handles of before stay invalid";
}

int32_t ask(uint32_t engine, const char* name, int32_t count, intptr_t argument, int32_t* result) {
  return LXAPI_CallEngineInternal(engine, name, result, nullptr, nullptr, count, argument);
}

void expectRefused(uint32_t tts, uint32_t engine, int32_t error) {
  LXTTSINFO info;
  int32_t number = 0;
  for (const int32_t answer :
       {LXAPI_SetAttr(tts, LX_ATTR_SPEED, 100), LXAPI_Speak(tts, "a", -1, 2), LXAPI_Stop(tts),
        LXAPI_TextToFile(tts, "a", -1, 2), LXAPI_SetEngineHandle(tts, engine), LXAPI_LoadEngine(engine),
        LXAPI_GetTTSInfo(engine, &info), LXAPI_UnloadUserDict(engine, 0),
        ask(engine, "LX_GetTTSInfo", 1, LX_INFO_SPEED_MAXIMUM, &number)})
    EXPECT_EQ(answer, error) << tts << ", " << engine;
}

TEST(Library, AnswersWrongHandlesAndCallsBeforeItsStartWithAnError) {
  expectRefused(1, 1, LX_ERROR_NOT_STARTED);
  EXPECT_EQ(LXAPI_FreeBuffer(nullptr), LX_ERROR_NOT_STARTED);
  for (const uint32_t none : {LXAPI_GetEngine("German", "Male"), LXAPI_CreateHandle(),
                              LXAPI_CreateLexiconHandle("x.csv"), LXAPI_GetFirstInstalledEngine()})
    EXPECT_EQ(none, 0U);
  const Session session;
  for (const uint32_t wrong : {0U, session.tts + 1000, UINT32_MAX}) {
    expectRefused(wrong, wrong, LX_ERROR_BAD_HANDLE);
    EXPECT_EQ(LXAPI_GetEngineInfoFieldEx2(wrong, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                          nullptr, nullptr, nullptr, nullptr, nullptr, nullptr),
              LX_ERROR_BAD_HANDLE);
  }
  expectRefused(session.engine, session.tts, LX_ERROR_BAD_HANDLE);  // each is of the other kind
}

TEST(Library, RefusesNullPointersAndNumbersOutOfRange) {
  const Session session;
  const uint32_t tts = session.tts, engine = session.engine;
  int32_t untouched = 77;
  for (const int32_t answer :
       {LXAPI_GetTTSInfo(engine, nullptr), LXAPI_Speak(tts, nullptr, -1, 2),
        LXAPI_BufferOpen(tts, "abc", -2, 2, 0), LXAPI_SetOutputFile(tts, nullptr, LX_FILE_WAV),
        LXAPI_SetOutputFile(tts, "", LX_FILE_WAV), LXAPI_SetOutputBuffer(tts, 1),
        LXAPI_LoadUserDict(engine, 0, nullptr), LXAPI_LoadUserDict(engine, -1, "x"),
        LXAPI_LoadUserDict(engine, 16, "x"), LXAPI_SetOutputAudio(tts, {0, 16, 22050, -1}),
        LXAPI_SetOutputAudio(tts, {1, 8, 22050, -1}), LXAPI_SetOutputAudio(tts, {1, 16, 0, -1}),
        LXAPI_SetOutputAudio(tts, {1, 16, 22050, -2}), ask(engine, nullptr, 0, 0, &untouched),
        ask(engine, "LX_GetTTSInfo", 1, 14, nullptr), ask(engine, "LX_GetTTSInfo", 0, 14, &untouched),
        ask(engine, "LX_GetTTSInfo", 9, 14, &untouched),
        ask(engine, "LX_CheckUserDict_SourceLen", 1, 0, &untouched)})
    EXPECT_EQ(answer, LX_ERROR_BAD_ARGUMENT);
  EXPECT_EQ(ask(engine, "LX_NoSuchThing", 0, 0, &untouched), LX_ERROR_UNKNOWN_ATTRIBUTE);
  EXPECT_EQ(ask(engine, "LX_GetTTSInfo", 1, 9999, &untouched), LX_ERROR_UNKNOWN_ATTRIBUTE);
  EXPECT_EQ(LXAPI_SetEngineAttr(engine, LX_ATTR_SPEED, 0), LX_ERROR_UNKNOWN_ATTRIBUTE);
  EXPECT_EQ(untouched, 77);
}

TEST(Library, SpeaksWithAnEngineThatIsBoundAndLoadedAndADeviceThatIsThere) {
  const Session session;
  EXPECT_EQ(LXAPI_SetOutputAudio(session.tts, {1, 16, 48000, 0}), LX_OK) << "the system converts";
  EXPECT_EQ(session.speak("Hello."), LX_ERROR_DEVICE) << "these tests have none";
  EXPECT_TRUE(record.events().empty());
  EXPECT_EQ(LXAPI_Speak(LXAPI_CreateHandle(), "a", -1, 2), LX_ERROR_NOT_LOADED);
  EXPECT_EQ(LXAPI_UnloadEngine(session.engine), LX_OK);
  EXPECT_EQ(LXAPI_UnloadEngine(session.engine), LX_ERROR_NOT_LOADED);
  EXPECT_EQ(session.speak("Hello."), LX_ERROR_NOT_LOADED);
}

}  // namespace
}  // namespace speech::test
