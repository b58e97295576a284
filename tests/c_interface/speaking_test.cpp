// Speaking through the C interface, and the events that come of it.

#include "engines/shared/module_state.h"
#include "tests/c_interface/c_interface_fixture.h"
#include "tests/support/host_window.h"
#include "tests/support/waiting.h"

namespace speech::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class CSpeaking : public CInterfaceTest {
 protected:
  void hearWord(std::uint32_t offset, std::uint32_t length) {
    recording().raise(kFirstTts, LX_EVENT_WORD, offset, length);
  }
  void end() { recording().raise(kFirstTts, LX_EVENT_END); }
};

TEST_F(CSpeaking, WordsAreToldInUnitsOfBothEncodings) {
  SpeechEngine const engine = open();
  ASSERT_EQ(speech_speak(engine, "\xC3\xA4h \xF0\x9F\x98\x80 ok", 0), SPEECH_OK);  // "äh 😀 ok"
  EXPECT_THAT(recording().takeCalls(),
              ElementsAre("LXAPI_Speak(1, \"\xC3\xA4h \xF0\x9F\x98\x80 ok\", -1, 2)"));
  hearWord(0, 2);
  hearWord(3, 2);
  hearWord(6, 2);
  hearWord(0, 2);   // an engine may go back
  hearWord(6, 99);  // a length is kept within the text
  hearWord(8, 1);   // there is nothing any more
  end();
  EXPECT_EQ(speech_wait(engine, kWaitLimitMilliseconds), SPEECH_OK);
  EXPECT_THAT(takeEvents(), ElementsAre("started", "word 0+3 (0+2)", "word 4+4 (3+2)", "word 9+2 (6+2)",
                                        "word 0+3 (0+2)", "word 9+2 (6+2)", "finished"));
  EXPECT_EQ(stateOf(engine), SPEECH_STATE_IDLE);
}

TEST_F(CSpeaking, WaitingWithoutTimeDeliversWhatIsDue) {
  SpeechEngine const engine = open();
  ASSERT_EQ(speech_speak_w(engine, L"hello", SPEECH_FLAG_SSML), SPEECH_OK);
  EXPECT_THAT(recording().takeCalls(), ElementsAre("LXAPI_Speak(1, \"hello\", -1, 130)"));
  EXPECT_THAT(takeEvents(), IsEmpty());
  EXPECT_EQ(speech_wait(engine, 0), SPEECH_ERROR_TIMEOUT);
  EXPECT_THAT(takeEvents(), ElementsAre("started"));
  EXPECT_EQ(stateOf(engine), SPEECH_STATE_SPEAKING);
}

TEST_F(CSpeaking, ARefusedTextFailsOnceAndNeverStarts) {
  recording().answer("LXAPI_Speak", LX_ERROR_DEVICE);
  SpeechEngine const engine = open();
  EXPECT_EQ(speech_speak(engine, "hello", 0), SPEECH_ERROR_REFUSED);
  EXPECT_EQ(stateOf(engine), SPEECH_STATE_IDLE);
  EXPECT_EQ(speech_wait(engine, kWaitLimitMilliseconds), SPEECH_OK);
  EXPECT_THAT(takeEvents(), ElementsAre("failed -12 []"));
}

TEST_F(CSpeaking, AFailureDoesNotTouchTheNextSpeech) {
  recording().answer("LXAPI_Speak(1, \"no\", -1, 2)", LX_ERROR_DEVICE);
  SpeechEngine const engine = open();
  EXPECT_EQ(speech_speak(engine, "no", 0), SPEECH_ERROR_REFUSED);
  EXPECT_EQ(speech_speak(engine, "yes", 0), SPEECH_OK);
  end();
  EXPECT_EQ(speech_wait(engine, kWaitLimitMilliseconds), SPEECH_OK);
  EXPECT_THAT(takeEvents(), ElementsAre("failed -12 []", "started", "finished"));
}

TEST_F(CSpeaking, WhatWasUnderWayIsNotHeardAfterAStop) {
  SpeechEngine const engine = open();
  ASSERT_EQ(speech_speak(engine, "one two", 0), SPEECH_OK);
  hearWord(0, 3);
  end();
  ASSERT_EQ(speech_stop(engine), SPEECH_OK);
  hearWord(4, 3);
  EXPECT_EQ(speech_wait(engine, kWaitLimitMilliseconds), SPEECH_OK);
  EXPECT_THAT(takeEvents(), IsEmpty());
}

TEST_F(CSpeaking, ASecondTextWaitsOrInterrupts) {
  SpeechEngine const engine = open();
  ASSERT_EQ(speech_speak(engine, "one", 0), SPEECH_OK);
  recording().takeCalls();
  EXPECT_EQ(speech_speak(engine, "two", 0), SPEECH_ERROR_BUSY);
  EXPECT_THAT(recording().takeCalls(), IsEmpty());
  EXPECT_EQ(speech_speak(engine, "two", SPEECH_FLAG_INTERRUPT), SPEECH_OK);
  EXPECT_THAT(recording().takeCalls(), ElementsAre("LXAPI_Stop(1)", "LXAPI_Speak(1, \"two\", -1, 2)"));
  end();
  EXPECT_EQ(speech_speak(engine, "three", 0), SPEECH_OK) << "the end that is due counts";
  EXPECT_THAT(takeEvents(), ElementsAre("started", "started", "finished"));
}

TEST_F(CSpeaking, TheEndIsToldFromTheWordThatLooksLikeIt) {
  constexpr std::uint32_t kPlace = 3858;
  SpeechEngine const engine = open();
  const std::string withWord = std::string(kPlace - 1, 'x') + " I am";
  ASSERT_EQ(speech_speak(engine, withWord.c_str(), 0), SPEECH_OK);
  hearWord(kPlace, 1);
  hearWord(kPlace + 2, 2);
  end();
  EXPECT_EQ(speech_wait(engine, kWaitLimitMilliseconds), SPEECH_OK);
  EXPECT_THAT(takeEvents(),
              ElementsAre("started", "word 3858+1 (3858+1)", "word 3860+2 (3860+2)", "finished"));

  const std::string withoutWord(kPlace + 5, 'x');
  ASSERT_EQ(speech_speak(engine, withoutWord.c_str(), 0), SPEECH_OK);
  end();
  EXPECT_EQ(speech_wait(engine, kWaitLimitMilliseconds), SPEECH_OK);
  EXPECT_THAT(takeEvents(), ElementsAre("started", "finished"));
}

TEST_F(CSpeaking, PausingAndResumingAreNoToggle) {
  SpeechEngine const engine = open();
  EXPECT_EQ(speech_pause(engine), SPEECH_ERROR_STATE);
  EXPECT_EQ(speech_resume(engine), SPEECH_ERROR_STATE);
  ASSERT_EQ(speech_speak(engine, "one", 0), SPEECH_OK);
  recording().takeCalls();
  for (int i = 0; i < 2; ++i) EXPECT_EQ(speech_pause(engine), SPEECH_OK);
  EXPECT_EQ(stateOf(engine), SPEECH_STATE_PAUSED);
  for (int i = 0; i < 2; ++i) EXPECT_EQ(speech_resume(engine), SPEECH_OK);
  EXPECT_THAT(recording().takeCalls(), ElementsAre("LXAPI_Pause(1)", "LXAPI_Resume(1)"));
}

TEST_F(CSpeaking, APauseThatIsStoppedIsNotThereInTheNextSpeech) {
  SpeechEngine const engine = open();
  ASSERT_EQ(speech_speak(engine, "one", 0), SPEECH_OK);
  ASSERT_EQ(speech_pause(engine), SPEECH_OK);
  ASSERT_EQ(speech_stop(engine), SPEECH_OK);
  ASSERT_EQ(speech_speak(engine, "two", 0), SPEECH_OK);
  recording().takeCalls();
  EXPECT_EQ(speech_pause(engine), SPEECH_OK);
  EXPECT_THAT(recording().takeCalls(), ElementsAre("LXAPI_Pause(1)"));
}

TEST_F(CSpeaking, IsFollowedWhileEventsAreOff) {
  SpeechEngine const engine = open();
  EXPECT_EQ(speech_engine_events(engine, 0), SPEECH_OK);
  ASSERT_EQ(speech_speak(engine, "one", 0), SPEECH_OK);
  hearWord(0, 3);
  end();
  EXPECT_EQ(speech_wait(engine, kWaitLimitMilliseconds), SPEECH_OK);
  EXPECT_EQ(stateOf(engine), SPEECH_STATE_IDLE);
  EXPECT_EQ(speech_engine_events(engine, 1), SPEECH_OK);
  EXPECT_THAT(takeEvents(), IsEmpty());
  ASSERT_EQ(speech_speak(engine, "two", 0), SPEECH_OK);
  end();
  EXPECT_EQ(speech_wait(engine, kWaitLimitMilliseconds), SPEECH_OK);
  EXPECT_THAT(takeEvents(), ElementsAre("started", "finished"));
}

TEST_F(CSpeaking, ADeviceGoesByItsNumber) {
  SpeechEngine const engine = open();
  for (const std::int32_t device : {0, -1}) {
    EXPECT_EQ(speech_set_output_device(engine, device), SPEECH_OK);
    EXPECT_THAT(recording().takeCalls(),
                ElementsAre("LXAPI_SetOutputAudio(1, {1, 16, 22050, " + std::to_string(device) + "})"));
  }
}

TEST_F(CSpeaking, UnloadingStopsAndLoadingTakesTheEngineBack) {
  SpeechEngine const engine = open();
  ASSERT_EQ(speech_speak(engine, "one", 0), SPEECH_OK);
  recording().takeCalls();
  EXPECT_EQ(speech_engine_unload(engine), SPEECH_OK);
  EXPECT_EQ(stateOf(engine), SPEECH_STATE_IDLE);
  EXPECT_EQ(speech_engine_load(engine), SPEECH_OK);
  EXPECT_THAT(recording().takeCalls(),
              ElementsAre("LXAPI_Stop(1)", "LXAPI_UnloadEngine(101)", "LXAPI_LoadEngine(101)"));
  recording().answer("LXAPI_UnloadEngine", LX_ERROR_NOT_LOADED);
  recording().answer("LXAPI_LoadEngine", LX_ERROR_FAILED);
  EXPECT_EQ(speech_engine_unload(engine), SPEECH_ERROR_LOAD);
  EXPECT_EQ(speech_engine_load(engine), SPEECH_ERROR_LOAD);
}

TEST_F(CSpeaking, ACallbackMaySpeakTheNextText) {
  SpeechEngine const engine = open();
  int left = 2;
  reaction_ = [&](const SpeechEvent& event) {
    if (event.kind != SPEECH_EVENT_FINISHED || left-- == 0) return;
    EXPECT_EQ(speech_speak(event.engine, "next", 0), SPEECH_OK);
    end();
  };
  ASSERT_EQ(speech_speak(engine, "first", 0), SPEECH_OK);
  end();
  EXPECT_EQ(speech_wait(engine, kWaitLimitMilliseconds), SPEECH_OK);
  EXPECT_THAT(takeEvents(), ElementsAre("started", "finished", "started", "finished", "started", "finished"));
}

TEST_F(CSpeaking, ACallbackMayCloseTheEngine) {
  SpeechEngine const engine = open();
  reaction_ = [](const SpeechEvent& event) { EXPECT_EQ(speech_engine_close(event.engine), SPEECH_OK); };
  ASSERT_EQ(speech_speak(engine, "one", 0), SPEECH_OK);
  hearWord(0, 3);
  EXPECT_EQ(speech_wait(engine, kWaitLimitMilliseconds), SPEECH_ERROR_HANDLE);
  EXPECT_THAT(takeEvents(), ElementsAre("started"));
  EXPECT_EQ(g_hostWindow.load(), nullptr) << "where the engine's thread would post";
  reaction_ = [](const SpeechEvent&) {};
  open(1);
}

TEST_F(CSpeaking, AWindowReceivesEveryEventTogetherWithItsKind) {
  HostWindow window;
  SpeechEngine const engine = open();
  ASSERT_EQ(speech_engine_window(engine, window.handle(), HostWindow::kNoticeMessage), SPEECH_OK);
  ASSERT_EQ(speech_speak(engine, "one", 0), SPEECH_OK);
  end();
  EXPECT_EQ(speech_wait(engine, kWaitLimitMilliseconds), SPEECH_OK);
  const std::vector<Notice> notices = window.takeNotices();
  ASSERT_EQ(notices.size(), 2u);
  EXPECT_EQ(notices[0].wParam, WPARAM{SPEECH_EVENT_STARTED});
  EXPECT_EQ(notices[1].wParam, WPARAM{SPEECH_EVENT_FINISHED});
  EXPECT_EQ(speech_engine_window(engine, GetDesktopWindow(), WM_APP), SPEECH_ERROR_ARGUMENT);
  EXPECT_EQ(speech_engine_window(engine, nullptr, 0), SPEECH_OK);
}

TEST_F(CSpeaking, QuittingEndsTheWaitAndReachesTheProgramsOwnLoop) {
  SpeechEngine const engine = open();
  ASSERT_EQ(speech_speak(engine, "one", 0), SPEECH_OK);
  PostQuitMessage(3);
  EXPECT_EQ(speech_wait(engine, -1), SPEECH_ERROR_QUIT);
  MSG message;
  ASSERT_TRUE(PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE));
  EXPECT_EQ(message.message, UINT{WM_QUIT});
  EXPECT_EQ(message.wParam, 3u);
}

}  // namespace
}  // namespace speech::test
