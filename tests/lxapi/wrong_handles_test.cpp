#include <gtest/gtest.h>

#include "tests/lxapi/session.h"

namespace speech::test {
namespace {

void* buffer;
LXTTSINFO info;
int32_t number;

#define CALL(function, ...)                                                                \
  {                                                                                        \
#function, [](uint32_t handle) { return function(handle __VA_OPT__(, ) __VA_ARGS__); } \
  }

constexpr struct Call {
  const char* name;
  int32_t (*call)(uint32_t handle);
} kSynthesisCalls[] =
    {
        CALL(LXAPI_SetAttr, LX_ATTR_SPEED, 100),
        CALL(LXAPI_SetOutputAudio, LXAUDIOOUT{1, 16, kSampleRateHz, -1}),
        CALL(LXAPI_SetEvent, EventRecord::procedure, 63),
        CALL(LXAPI_Speak, "a", -1, 2),
        CALL(LXAPI_SynthesizeAsync, "a", -1, 2, -1),
        CALL(LXAPI_Stop),
        CALL(LXAPI_Pause),
        CALL(LXAPI_Resume),
        CALL(LXAPI_SetOutputFile, "x.wav", LX_FILE_WAV),
        CALL(LXAPI_TextToFile, "a", -1, 2),
        CALL(LXAPI_SetOutputBuffer, 0),
        CALL(LXAPI_BufferOpen, "a", -1, 2, 0),
        CALL(LXAPI_GetBuffer, &buffer),
        CALL(LXAPI_BufferClose),
        CALL(LXAPI_SetLexiconHandle, 0),
        CALL(LXAPI_SetEngineHandle, 1),
},
  kEngineCalls[] = {
      CALL(LXAPI_LoadEngine),
      CALL(LXAPI_UnloadEngine),
      CALL(LXAPI_SetEngineAttr, LX_ATTR_COMMA_PAUSE, 1),
      CALL(LXAPI_GetTTSInfo, &info),
      CALL(LXAPI_LoadUserDict, 0, "x.csv"),
      CALL(LXAPI_UnloadUserDict, 0),
      CALL(LXAPI_CallEngineInternal, "LX_GetTTSInfo", &number, nullptr, nullptr, 1, 14),
};

TEST(WrongHandles, EveryFunctionAnswersWithAnError) {
  const Session session;
  const uint32_t never = session.tts + 1000;
  for (const auto& [name, call] : kSynthesisCalls) {
    for (const uint32_t wrong : {0U, session.engine, never, UINT32_MAX}) {
      EXPECT_EQ(call(wrong), LX_ERROR_BAD_HANDLE) << name << " of " << wrong;
    }
  }
  for (const auto& [name, call] : kEngineCalls) {
    for (const uint32_t wrong : {0U, session.tts, never, UINT32_MAX}) {
      EXPECT_EQ(call(wrong), LX_ERROR_BAD_HANDLE) << name << " of " << wrong;
    }
  }
  EXPECT_EQ(LXAPI_SetEngineHandle(session.tts, session.tts), LX_ERROR_BAD_HANDLE);
}

TEST(WrongHandles, NothingWorksBeforeTheLibraryIsStarted) {
  for (const Call& call : kSynthesisCalls) EXPECT_EQ(call.call(1), LX_ERROR_NOT_STARTED) << call.name;
  for (const Call& call : kEngineCalls) EXPECT_EQ(call.call(1), LX_ERROR_NOT_STARTED) << call.name;
  EXPECT_EQ(LXAPI_GetEngine("English (America)", "Male"), 0U);
  EXPECT_EQ(LXAPI_CreateLexiconHandle("x.csv"), 0U);
  EXPECT_EQ(LXAPI_FreeBuffer(nullptr), LX_ERROR_NOT_STARTED);
}

TEST(WrongHandles, CursorsOutOfTheListAreNoEngines) {
  const Session session;
  EXPECT_EQ(LXAPI_GetNextInstalledEngine(UINT32_MAX - 1), 0U);
  EXPECT_EQ(LXAPI_GetNextInstalledEngine(100'000), 0U);
  for (const uint32_t cursor : {0U, 100'000U, UINT32_MAX}) {
    EXPECT_EQ(LXAPI_GetEngineInfoFieldEx2(cursor, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                          nullptr, nullptr, nullptr, nullptr, nullptr, nullptr),
              LX_ERROR_BAD_HANDLE);
  }
  EXPECT_EQ(LXAPI_GetEngineInfoFieldEx2(1, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                        nullptr, nullptr, nullptr, nullptr, nullptr),
            LX_OK)
      << "every output may be left out";
}

TEST(WrongArguments, NullPointersAndNumbersOutOfRangeAreRefused) {
  const Session session;
  const uint32_t tts = session.tts;
  EXPECT_EQ(LXAPI_GetEngine(nullptr, "Male"), 0U);
  EXPECT_EQ(LXAPI_GetEngine("English (America)", nullptr), 0U);
  int32_t untouched = 77;
  const auto ask = [&](const char* name, int32_t count, int32_t which = 0, int32_t* result = nullptr) {
    return LXAPI_CallEngineInternal(session.engine, name, result, nullptr, nullptr, count, which);
  };
  for (const int32_t answer :
       {LXAPI_GetTTSInfo(session.engine, nullptr), LXAPI_Speak(tts, nullptr, -1, 2),
        LXAPI_BufferOpen(tts, nullptr, 5, 2, 0), LXAPI_BufferOpen(tts, "abc", -2, 2, 0),
        LXAPI_BufferOpen(tts, "abc", INT32_MIN, 2, 0), LXAPI_SetOutputFile(tts, nullptr, LX_FILE_WAV),
        LXAPI_SetOutputFile(tts, "", LX_FILE_WAV), LXAPI_SetOutputBuffer(tts, 1), ask(nullptr, 0),
        ask("LX_GetTTSInfo", 1, 14), ask("LX_GetTTSInfo", -1, 14, &untouched),
        ask("LX_GetTTSInfo", 0, 14, &untouched), ask("LX_GetTTSInfo", 1'000'000, 14, &untouched)}) {
    EXPECT_EQ(answer, LX_ERROR_BAD_ARGUMENT);
  }
  EXPECT_EQ(ask("LX_NoSuchThing", 0, 0, &untouched), LX_ERROR_UNKNOWN_ATTRIBUTE);
  EXPECT_EQ(ask("LX_GetTTSInfo", 1, 9999, &untouched), LX_ERROR_UNKNOWN_ATTRIBUTE);
  EXPECT_EQ(untouched, 77);
}

TEST(WrongArguments, UnknownAttributesAreToldFromKnownOnes) {
  const Session session;
  for (const int32_t attribute : {LX_ATTR_PITCH, LX_ATTR_SPEED, LX_ATTR_VOLUME, LX_ATTR_SENTENCE_PAUSE,
                                  LX_ATTR_LEXICON, LX_ATTR_RESERVED}) {
    EXPECT_EQ(LXAPI_SetAttr(session.tts, attribute, 0), LX_OK) << attribute;
  }
  for (const int32_t attribute : {-1, static_cast<int32_t>(LX_ATTR_COMMA_PAUSE), 7, INT32_MAX}) {
    EXPECT_EQ(LXAPI_SetAttr(session.tts, attribute, 0), LX_ERROR_UNKNOWN_ATTRIBUTE) << attribute;
  }
  EXPECT_EQ(LXAPI_SetEngineAttr(session.engine, LX_ATTR_COMMA_PAUSE, 0), LX_OK);
  EXPECT_EQ(LXAPI_SetEngineAttr(session.engine, LX_ATTR_SPEED, 0), LX_ERROR_UNKNOWN_ATTRIBUTE);
}

TEST(WrongArguments, AnEngineMustBeBoundAndLoaded) {
  const Session session;
  const uint32_t fresh = LXAPI_CreateHandle();
  EXPECT_EQ(LXAPI_Speak(fresh, "a", -1, 2), LX_ERROR_NOT_LOADED);
  EXPECT_EQ(LXAPI_BufferOpen(fresh, "a", -1, 2, 0), LX_ERROR_NOT_LOADED);
  EXPECT_EQ(LXAPI_LoadEngine(session.engine), LX_OK) << "loading again harms nothing";
  EXPECT_EQ(LXAPI_UnloadEngine(session.engine), LX_OK);
  EXPECT_EQ(LXAPI_UnloadEngine(session.engine), LX_ERROR_NOT_LOADED);
  EXPECT_EQ(LXAPI_BufferOpen(session.tts, "a", -1, 2, 0), LX_ERROR_NOT_LOADED);
  const uint32_t cloud = LXAPI_GetEngine("English (America)+f2", "Cloud");
  ASSERT_NE(cloud, 0U);
  EXPECT_EQ(LXAPI_LoadEngine(cloud), LX_ERROR_UNSUPPORTED) << "a cloud voice speaks elsewhere";
}

}  // namespace
}  // namespace speech::test
