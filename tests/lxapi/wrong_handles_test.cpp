#include <gtest/gtest.h>

#include <functional>

#include "tests/lxapi/session.h"

namespace speech::test {
namespace {

const LXAUDIOOUT kDefaultDevice{1, 16, kSampleRateHz, -1};

struct Call {
  const char* name;
  std::function<int32_t(uint32_t)> call;
};

const Call kSynthesisCalls[] = {
    {"LXAPI_SetAttr", [](uint32_t tts) { return LXAPI_SetAttr(tts, LX_ATTR_SPEED, 100); }},
    {"LXAPI_SetOutputAudio", [](uint32_t tts) { return LXAPI_SetOutputAudio(tts, kDefaultDevice); }},
    {"LXAPI_SetEvent", [](uint32_t tts) { return LXAPI_SetEvent(tts, EventRecord::procedure, 63); }},
    {"LXAPI_Speak", [](uint32_t tts) { return LXAPI_Speak(tts, "a", -1, 2); }},
    {"LXAPI_SynthesizeAsync", [](uint32_t tts) { return LXAPI_SynthesizeAsync(tts, "a", -1, 2, -1); }},
    {"LXAPI_Stop", [](uint32_t tts) { return LXAPI_Stop(tts); }},
    {"LXAPI_Pause", [](uint32_t tts) { return LXAPI_Pause(tts); }},
    {"LXAPI_Resume", [](uint32_t tts) { return LXAPI_Resume(tts); }},
    {"LXAPI_SetOutputFile", [](uint32_t tts) { return LXAPI_SetOutputFile(tts, "x.wav", LX_FILE_WAV); }},
    {"LXAPI_TextToFile", [](uint32_t tts) { return LXAPI_TextToFile(tts, "a", -1, 2); }},
    {"LXAPI_SetOutputBuffer", [](uint32_t tts) { return LXAPI_SetOutputBuffer(tts, 0); }},
    {"LXAPI_BufferOpen", [](uint32_t tts) { return LXAPI_BufferOpen(tts, "a", -1, 2, 0); }},
    {"LXAPI_GetBuffer",
     [](uint32_t tts) {
       void* buffer = nullptr;
       return LXAPI_GetBuffer(tts, &buffer);
     }},
    {"LXAPI_BufferClose", [](uint32_t tts) { return LXAPI_BufferClose(tts); }},
    {"LXAPI_SetLexiconHandle", [](uint32_t tts) { return LXAPI_SetLexiconHandle(tts, 0); }},
    {"LXAPI_SetEngineHandle", [](uint32_t tts) { return LXAPI_SetEngineHandle(tts, 1); }},
};

const Call kEngineCalls[] = {
    {"LXAPI_LoadEngine", [](uint32_t engine) { return LXAPI_LoadEngine(engine); }},
    {"LXAPI_UnloadEngine", [](uint32_t engine) { return LXAPI_UnloadEngine(engine); }},
    {"LXAPI_SetEngineAttr",
     [](uint32_t engine) { return LXAPI_SetEngineAttr(engine, LX_ATTR_COMMA_PAUSE, 1); }},
    {"LXAPI_GetTTSInfo",
     [](uint32_t engine) {
       LXTTSINFO info;
       return LXAPI_GetTTSInfo(engine, &info);
     }},
    {"LXAPI_LoadUserDict", [](uint32_t engine) { return LXAPI_LoadUserDict(engine, 0, "x.csv"); }},
    {"LXAPI_UnloadUserDict", [](uint32_t engine) { return LXAPI_UnloadUserDict(engine, 0); }},
    {"LXAPI_CallEngineInternal",
     [](uint32_t engine) {
       int32_t result = 0;
       return LXAPI_CallEngineInternal(engine, "LX_GetTTSInfo", &result, nullptr, nullptr, 1, 14);
     }},
};

TEST(WrongHandles, EveryFunctionAnswersWithAnError) {
  const Session session;
  for (const Call& call : kSynthesisCalls) {
    for (const uint32_t wrong : {0U, session.engine, session.tts + 1000, UINT32_MAX}) {
      EXPECT_EQ(call.call(wrong), LX_ERROR_BAD_HANDLE) << call.name << " of " << wrong;
    }
  }
  for (const Call& call : kEngineCalls) {
    for (const uint32_t wrong : {0U, session.tts, session.tts + 1000, UINT32_MAX}) {
      EXPECT_EQ(call.call(wrong), LX_ERROR_BAD_HANDLE) << call.name << " of " << wrong;
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
  EXPECT_EQ(LXAPI_GetTTSInfo(session.engine, nullptr), LX_ERROR_BAD_ARGUMENT);
  EXPECT_EQ(LXAPI_Speak(tts, nullptr, -1, 2), LX_ERROR_BAD_ARGUMENT);
  EXPECT_EQ(LXAPI_BufferOpen(tts, nullptr, 5, 2, 0), LX_ERROR_BAD_ARGUMENT);
  EXPECT_EQ(LXAPI_BufferOpen(tts, "abc", -2, 2, 0), LX_ERROR_BAD_ARGUMENT);
  EXPECT_EQ(LXAPI_BufferOpen(tts, "abc", INT32_MIN, 2, 0), LX_ERROR_BAD_ARGUMENT);
  EXPECT_EQ(LXAPI_SetOutputFile(tts, nullptr, LX_FILE_WAV), LX_ERROR_BAD_ARGUMENT);
  EXPECT_EQ(LXAPI_SetOutputFile(tts, "", LX_FILE_WAV), LX_ERROR_BAD_ARGUMENT);
  EXPECT_EQ(LXAPI_SetOutputBuffer(tts, 1), LX_ERROR_BAD_ARGUMENT);
  EXPECT_EQ(LXAPI_CallEngineInternal(session.engine, nullptr, nullptr, nullptr, nullptr, 0),
            LX_ERROR_BAD_ARGUMENT);
  EXPECT_EQ(LXAPI_CallEngineInternal(session.engine, "LX_GetTTSInfo", nullptr, nullptr, nullptr, 1, 14),
            LX_ERROR_BAD_ARGUMENT);
  int32_t untouched = 77;
  for (const int32_t count : {-1, 0, 1'000'000}) {
    EXPECT_EQ(LXAPI_CallEngineInternal(session.engine, "LX_GetTTSInfo", &untouched, nullptr, nullptr, count),
              LX_ERROR_BAD_ARGUMENT);
  }
  EXPECT_EQ(LXAPI_CallEngineInternal(session.engine, "LX_NoSuchThing", &untouched, nullptr, nullptr, 0),
            LX_ERROR_UNKNOWN_ATTRIBUTE);
  EXPECT_EQ(LXAPI_CallEngineInternal(session.engine, "LX_GetTTSInfo", &untouched, nullptr, nullptr, 1, 9999),
            LX_ERROR_UNKNOWN_ATTRIBUTE);
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
