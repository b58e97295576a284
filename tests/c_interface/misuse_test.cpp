// What callers get wrong.

#include <functional>
#include <thread>

#include "tests/c_interface/c_interface_fixture.h"
#include "tests/support/host_window.h"

namespace speech::test {
namespace {

using CMisuse = CInterfaceTest;

struct EngineCall {
  const char* name;
  std::function<std::int32_t(SpeechEngine)> call;
};

SpeechAudio g_audio;
std::int32_t g_number;
std::intptr_t g_reader;
const short kSamples[4] = {};

const EngineCall kEngineCalls[] = {
    {"window", [](SpeechEngine e) { return speech_engine_window(e, nullptr, 0); }},
    {"voice", [](SpeechEngine e) { return speech_engine_voice(e, &g_number); }},
    {"events", [](SpeechEngine e) { return speech_engine_events(e, 1); }},
    {"unload engine", speech_engine_unload},
    {"load engine", speech_engine_load},
    {"reload", speech_engine_reload},
    {"close", speech_engine_close},
    {"tool folder", [](SpeechEngine e) { return speech_set_tool_folder(e, "C:\\"); }},
    {"device", [](SpeechEngine e) { return speech_set_output_device(e, 0); }},
    {"speak", [](SpeechEngine e) { return speech_speak(e, "x", 0); }},
    {"pause", speech_pause},
    {"resume", speech_resume},
    {"stop", speech_stop},
    {"state", [](SpeechEngine e) { return speech_state(e, &g_number); }},
    {"wait", [](SpeechEngine e) { return speech_wait(e, 0); }},
    {"export", [](SpeechEngine e) { return speech_export(e, "x", 0, SPEECH_FORMAT_WAV, 0, "x.wav"); }},
    {"samples",
     [](SpeechEngine e) { return speech_export_samples(e, kSamples, 8, 8000, SPEECH_FORMAT_PCM, "x.pcm"); }},
    {"synthesize", [](SpeechEngine e) { return speech_synthesize(e, "x", 0, 0, &g_audio); }},
    {"load", [](SpeechEngine e) { return speech_dictionary_load(e, "x.csv"); }},
    {"unload", [](SpeechEngine e) { return speech_dictionary_unload(e, 0); }},
    {"ask", [](SpeechEngine e) { return speech_dictionary_ask(e, 0, 0, &g_number); }},
    {"edit", [](SpeechEngine e) { return speech_dictionary_edit(e, nullptr, nullptr); }},
    {"csv reader", [](SpeechEngine e) { return speech_csv_reader(e, &g_reader); }},
    {"csv read", [](SpeechEngine e) { return speech_csv_read(e, 1, nullptr, &g_number); }},
    {"csv count", [](SpeechEngine e) { return speech_csv_field_count(e, 1, &g_number); }},
    {"csv field", [](SpeechEngine e) { return speech_csv_field(e, 1, 0, nullptr, 0, nullptr); }},
    {"csv make", [](SpeechEngine e) { return speech_csv_make(e, "a", "b", nullptr, 0, nullptr); }},
};

TEST_F(CMisuse, NoEngineAnswersAWrongHandle) {
  SpeechEngine const stale = open();
  ASSERT_EQ(speech_engine_close(stale), SPEECH_OK);
  SpeechEngine const current = open();
  EXPECT_NE(stale, current);
  recording().takeCalls();
  for (SpeechEngine const wrong :
       {SpeechEngine{nullptr}, stale, reinterpret_cast<SpeechEngine>(~std::uintptr_t{0})}) {
    for (const EngineCall& call : kEngineCalls) EXPECT_EQ(call.call(wrong), SPEECH_ERROR_HANDLE) << call.name;
  }
  EXPECT_THAT(recording().takeCalls(), ::testing::IsEmpty());
}

TEST_F(CMisuse, NullPointersAreErrors) {
  SpeechEngine const engine = open();
  EXPECT_EQ(speech_voice_count(nullptr), SPEECH_ERROR_ARGUMENT);
  EXPECT_EQ(speech_language_count(nullptr), SPEECH_ERROR_ARGUMENT);
  EXPECT_EQ(speech_voice_number(0, 0, nullptr), SPEECH_ERROR_ARGUMENT);
  EXPECT_EQ(speech_option_get(0, 0, nullptr), SPEECH_ERROR_ARGUMENT);
  EXPECT_EQ(speech_option_range(0, 0, nullptr, nullptr, nullptr), SPEECH_OK);
  EXPECT_EQ(speech_engine_open(0, nullptr, nullptr, nullptr), SPEECH_ERROR_ARGUMENT);
  EXPECT_EQ(speech_engine_voice(engine, nullptr), SPEECH_ERROR_ARGUMENT);
  EXPECT_EQ(speech_state(engine, nullptr), SPEECH_ERROR_ARGUMENT);
  EXPECT_EQ(speech_speak(engine, nullptr, 0), SPEECH_ERROR_ARGUMENT);
  EXPECT_EQ(speech_speak_w(engine, nullptr, 0), SPEECH_ERROR_ARGUMENT);
  EXPECT_EQ(speech_set_tool_folder(engine, nullptr), SPEECH_ERROR_ARGUMENT);
  EXPECT_EQ(speech_export(engine, nullptr, 0, SPEECH_FORMAT_WAV, 0, "x"), SPEECH_ERROR_ARGUMENT);
  EXPECT_EQ(speech_export(engine, "x", 0, SPEECH_FORMAT_WAV, 0, nullptr), SPEECH_ERROR_ARGUMENT);
  EXPECT_EQ(speech_export_samples(engine, nullptr, 8, 8000, SPEECH_FORMAT_WAV, "x"), SPEECH_ERROR_ARGUMENT);
  EXPECT_EQ(speech_synthesize(engine, "x", 0, 0, nullptr), SPEECH_ERROR_ARGUMENT);
  EXPECT_EQ(speech_dictionary_load(engine, nullptr), SPEECH_ERROR_ARGUMENT);
  EXPECT_EQ(speech_dictionary_ask(engine, 0, 0, nullptr), SPEECH_ERROR_ARGUMENT);
  EXPECT_EQ(speech_option_changed(0, nullptr), SPEECH_ERROR_ARGUMENT);
  EXPECT_EQ(speech_csv_reader(engine, nullptr), SPEECH_ERROR_ARGUMENT);
  EXPECT_EQ(speech_csv_read(engine, 1, "a,b", nullptr), SPEECH_ERROR_ARGUMENT);
  EXPECT_EQ(speech_csv_field_count(engine, 1, nullptr), SPEECH_ERROR_ARGUMENT);
  EXPECT_EQ(speech_csv_make(engine, nullptr, "b", nullptr, 0, nullptr), SPEECH_ERROR_ARGUMENT);
  EXPECT_EQ(speech_escape_xml(nullptr, nullptr, 0, nullptr), SPEECH_ERROR_ARGUMENT);
  speech_audio_free(nullptr);
}

TEST_F(CMisuse, MalformedTextReachesNoEngine) {
  SpeechEngine const engine = open();
  for (const char* const text : {"\xFF", "caf\xC3", "\xC0\x80", "\xED\xA0\x80"}) {
    EXPECT_EQ(speech_speak(engine, text, 0), SPEECH_ERROR_TEXT);
    EXPECT_EQ(speech_dictionary_load(engine, text), SPEECH_ERROR_TEXT);
    EXPECT_EQ(speech_csv_read(engine, 1, text, &g_number), SPEECH_ERROR_TEXT);
    EXPECT_EQ(speech_csv_make(engine, "a", text, nullptr, 0, nullptr), SPEECH_ERROR_TEXT);
  }
  const wchar_t lone[] = {L'a', 0xD83D, L'b', 0};
  EXPECT_EQ(speech_speak_w(engine, lone, 0), SPEECH_ERROR_TEXT);
  EXPECT_THAT(recording().takeCalls(), ::testing::IsEmpty());
}

TEST_F(CMisuse, UnknownNumbersAreErrors) {
  SpeechEngine const engine = open();
  EXPECT_EQ(speech_speak(engine, "x", SPEECH_FLAG_LOG), SPEECH_ERROR_ARGUMENT);
  EXPECT_EQ(speech_export(engine, "x", SPEECH_FLAG_INTERRUPT, SPEECH_FORMAT_WAV, 0, "x"),
            SPEECH_ERROR_ARGUMENT);
  EXPECT_EQ(speech_export(engine, "x", 0, 14, 0, "x"), SPEECH_ERROR_ARGUMENT);
  EXPECT_EQ(speech_export(engine, "x", 0, -1, 0, "x"), SPEECH_ERROR_ARGUMENT);
  EXPECT_EQ(speech_export(engine, "x", 0, SPEECH_FORMAT_WAV, 11025, "x"), SPEECH_ERROR_UNSUPPORTED);
  EXPECT_EQ(speech_export_samples(engine, kSamples, 7, 8000, SPEECH_FORMAT_WAV, "x"), SPEECH_ERROR_ARGUMENT);
  EXPECT_EQ(speech_export_samples(engine, kSamples, 8, 0, SPEECH_FORMAT_WAV, "x"), SPEECH_ERROR_ARGUMENT);
  EXPECT_EQ(speech_synthesize(engine, "x", 0, -1, &g_audio), SPEECH_ERROR_ARGUMENT);
  EXPECT_EQ(speech_set_output_device(engine, -2), SPEECH_ERROR_ARGUMENT);
  EXPECT_EQ(speech_dictionary_ask(engine, 7, 0, &g_number), SPEECH_ERROR_ARGUMENT);
  EXPECT_THAT(recording().takeCalls(), ::testing::IsEmpty());
}

TEST_F(CMisuse, ASecondEngineIsRefusedAndTheFirstLivesOn) {
  SpeechEngine const first = open();
  SpeechEngine second = nullptr;
  EXPECT_EQ(speech_engine_open(1, nullptr, nullptr, &second), SPEECH_ERROR_ENGINE_OPEN);
  EXPECT_EQ(second, nullptr);
  EXPECT_EQ(speech_speak(first, "x", 0), SPEECH_OK);
}

TEST_F(CMisuse, AnEngineThatCannotBeLoadedDoesNotBarTheNext) {
  recording().answer("LXAPI_LoadEngine(101)", LX_ERROR_FAILED);
  SpeechEngine engine = nullptr;
  EXPECT_EQ(speech_engine_open(0, nullptr, nullptr, &engine), SPEECH_ERROR_LOAD);
  EXPECT_EQ(speech_engine_open(7, nullptr, nullptr, &engine), SPEECH_ERROR_VOICE);
  EXPECT_EQ(speech_engine_open(1, nullptr, nullptr, &engine), SPEECH_OK);
}

TEST_F(CMisuse, AnotherThreadIsTurnedAway) {
  SpeechEngine const engine = open();
  std::thread([&] {
    for (const EngineCall& call : kEngineCalls)
      EXPECT_EQ(call.call(engine), SPEECH_ERROR_WRONG_THREAD) << call.name;
    EXPECT_EQ(speech_release(), SPEECH_ERROR_WRONG_THREAD);
  }).join();
  ASSERT_EQ(speech_release(), SPEECH_OK);
  std::thread([] {
    std::int32_t count = 0;
    EXPECT_EQ(speech_voice_count(&count), SPEECH_OK);
    EXPECT_EQ(speech_release(), SPEECH_OK);
  }).join();
}

TEST_F(CMisuse, TheCppInterfacesEngineIsLeftAlone) {
  HostWindow window;
  LXAPIProduct* const product = ITextToSpeech::getLXAPIProductList()->GetHead();
  ASSERT_NE(ITextToSpeech::getInstance(window.handle(), HostWindow::kNoticeMessage, product), nullptr);
  SpeechEngine engine = nullptr;
  EXPECT_EQ(speech_engine_open(0, nullptr, nullptr, &engine), SPEECH_ERROR_ENGINE_OPEN);
  EXPECT_EQ(speech_release(), SPEECH_ERROR_ENGINE_OPEN);
  EXPECT_TRUE(ITextToSpeech::reloadEngine());
  ITextToSpeech::releaseInstance();
}

TEST_F(CMisuse, AReleaseByTheCppInterfaceMakesHandlesStale) {
  SpeechEngine const engine = open();
  ITextToSpeech::releaseInstance();
  for (const EngineCall& call : kEngineCalls) EXPECT_EQ(call.call(engine), SPEECH_ERROR_HANDLE) << call.name;
  open();
}

}  // namespace
}  // namespace speech::test
