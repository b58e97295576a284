// Speaking through the C interface, and the events that come of it.

#include "engines/host_notices.h"
#include "tests/c_interface/c_interface_fixture.h"
#include "tests/support/host_window.h"

namespace speech::test {
namespace {

using namespace ::testing;

class CSpeaking : public CInterfaceTest {
 protected:
  void speak(const std::string& text) {
    EXPECT_EQ(speech_speak(engine_, text.c_str(), 0), SPEECH_OK);
    recording().takeCalls();
  }
  static void hearWord(std::uint32_t offset, std::uint32_t length) {
    recording().raise(1, LX_EVENT_WORD, offset, length);
  }
  static void end() { recording().raise(1, LX_EVENT_END); }
};

TEST_F(CSpeaking, WordsAreToldInUnitsOfBothEncodings) {
  EXPECT_EQ(speech_speak(engine_, "\xC3\xA4h \xF0\x9F\x98\x80 ok", 0), SPEECH_OK);  // "äh 😀 ok"
  EXPECT_THAT(recording().takeCalls(),
              ElementsAre("LXAPI_Speak(1, \"\xC3\xA4h \xF0\x9F\x98\x80 ok\", -1, 2)"));
  hearWord(0, 2);
  hearWord(3, 2);
  hearWord(6, 2);
  hearWord(0, 2);   // an engine may go back
  hearWord(6, 99);  // a length is kept within the text
  hearWord(8, 1);   // there is nothing any more
  end();
  EXPECT_THAT(eventsToTheEnd(), ElementsAre("started", "word 0+3 (0+2)", "word 4+4 (3+2)", "word 9+2 (6+2)",
                                            "word 0+3 (0+2)", "word 9+2 (6+2)", "finished"));
}

TEST_F(CSpeaking, TheEndIsToldFromTheWordThatLooksLikeIt) {
  speak(std::string(3857, 'x') + " I am");
  hearWord(3858, 1);
  hearWord(3860, 2);
  end();
  EXPECT_THAT(eventsToTheEnd(),
              ElementsAre("started", "word 3858+1 (3858+1)", "word 3860+2 (3860+2)", "finished"));
  speak(std::string(3863, 'x'));
  end();
  EXPECT_THAT(eventsToTheEnd(), ElementsAre("started", "finished"));
}

TEST_F(CSpeaking, ASecondTextWaitsOrInterruptsButNotOneThatWasRefused) {
  recording().answer("LXAPI_Speak(1, \"no\", -1, 2)", LX_ERROR_DEVICE);
  EXPECT_EQ(speech_speak(engine_, "no", 0), SPEECH_ERROR_REFUSED);
  speak("one");
  EXPECT_EQ(speech_speak(engine_, "two", 0), SPEECH_ERROR_BUSY);
  EXPECT_THAT(recording().takeCalls(), IsEmpty());
  EXPECT_EQ(speech_speak(engine_, "two", SPEECH_FLAG_INTERRUPT), SPEECH_OK);
  EXPECT_THAT(recording().takeCalls(), ElementsAre("LXAPI_Stop(1)", "LXAPI_Speak(1, \"two\", -1, 2)"));
  end();
  speak("three");
  EXPECT_THAT(takeEvents(), ElementsAre("failed -12 []", "started", "started", "finished"));
  hearWord(0, 3);
  EXPECT_EQ(speech_stop(engine_), SPEECH_OK);
  hearWord(0, 3);
  end();
  EXPECT_THAT(eventsToTheEnd(), IsEmpty()) << "what was under way when it was stopped";
}

TEST_F(CSpeaking, PausingAndResumingAreNoToggle) {
  std::int32_t idle = -1, speaking = -1, paused = -1, resumed = -1;
  expectEach(SPEECH_ERROR_STATE, {speech_pause(engine_), speech_resume(engine_)});
  expectEach(SPEECH_OK, {speech_state(engine_, &idle), speech_speak_w(engine_, L"one", SPEECH_FLAG_SSML),
                         speech_state(engine_, &speaking), speech_pause(engine_), speech_pause(engine_),
                         speech_state(engine_, &paused), speech_resume(engine_), speech_resume(engine_),
                         speech_state(engine_, &resumed), speech_pause(engine_)});
  EXPECT_THAT((std::array{idle, speaking, paused, resumed}), ElementsAre(0, 1, 2, 1));
  EXPECT_EQ(speech_wait(engine_, 0), SPEECH_ERROR_TIMEOUT);
  EXPECT_THAT(recording().takeCalls(), ElementsAre("LXAPI_Speak(1, \"one\", -1, 130)", "LXAPI_Pause(1)",
                                                   "LXAPI_Resume(1)", "LXAPI_Pause(1)"));
  EXPECT_EQ(speech_stop(engine_), SPEECH_OK);
  speak("two");
  EXPECT_EQ(speech_pause(engine_), SPEECH_OK);
  EXPECT_THAT(recording().takeCalls(), ElementsAre("LXAPI_Pause(1)")) << "the next speech was not paused";
}

TEST_F(CSpeaking, EventsReachCallbackAndWindowUnlessTheyAreOff) {
  HostWindow window;
  expectEach(SPEECH_OK, {speech_engine_window(engine_, window.handle(), HostWindow::kNoticeMessage),
                         speech_engine_events(engine_, 0)});
  speak("one");
  hearWord(0, 3);
  end();
  EXPECT_THAT(eventsToTheEnd(), IsEmpty());
  EXPECT_EQ(speech_engine_events(engine_, 1), SPEECH_OK);
  speak("two");
  end();
  EXPECT_THAT(eventsToTheEnd(), ElementsAre("started", "finished"));
  EXPECT_THAT(window.takeNotices(), ElementsAre(Field(&Notice::wParam, WPARAM{SPEECH_EVENT_STARTED}),
                                                Field(&Notice::wParam, WPARAM{SPEECH_EVENT_FINISHED})));
  EXPECT_EQ(speech_engine_window(engine_, GetDesktopWindow(), WM_APP), SPEECH_ERROR_ARGUMENT);
}

TEST_F(CSpeaking, UnloadingStopsAndLoadingTakesTheEngineBack) {
  speak("one");
  expectEach(SPEECH_OK, {speech_engine_unload(engine_), speech_wait(engine_, 0), speech_engine_load(engine_),
                         speech_engine_reload(engine_), speech_set_output_device(engine_, 0),
                         speech_set_output_device(engine_, -1)});
  EXPECT_THAT(recording().takeCalls(),
              ElementsAre("LXAPI_Stop(1)", "LXAPI_UnloadEngine(101)", "LXAPI_LoadEngine(101)",
                          "LXAPI_Stop(1)", "LXAPI_UnloadEngine(101)", "LXAPI_LoadEngine(101)",
                          "LXAPI_SetOutputAudio(1, {1, 16, 22050, 0})",
                          "LXAPI_SetOutputAudio(1, {1, 16, 22050, -1})"));
  recording().answer("LXAPI_UnloadEngine", LX_ERROR_NOT_LOADED);
  recording().answer("LXAPI_LoadEngine", LX_ERROR_FAILED);
  expectEach(SPEECH_ERROR_LOAD, {speech_engine_unload(engine_), speech_engine_load(engine_)});
}

TEST_F(CSpeaking, ACallbackMaySpeakTheNextTextAndCloseTheEngine) {
  reaction_ = [this](const SpeechEvent& event) {
    if (event.kind == SPEECH_EVENT_FINISHED) speak("two");
  };
  speak("one");
  end();
  EXPECT_EQ(speech_wait(engine_, 0), SPEECH_ERROR_TIMEOUT);
  EXPECT_THAT(takeEvents(), ElementsAre("started", "finished", "started"));
  reaction_ = [](const SpeechEvent& event) { EXPECT_EQ(speech_engine_close(event.engine), SPEECH_OK); };
  hearWord(0, 3);
  end();
  EXPECT_EQ(speech_wait(engine_, kWaitLimitMilliseconds), SPEECH_ERROR_HANDLE);
  EXPECT_THAT(takeEvents(), ElementsAre("word 0+3 (0+3)"));
  EXPECT_THAT(recording().takeCalls(), ElementsAre("LXAPI_Stop(1)", "LXAPI_UnloadEngine(101)"));
  EXPECT_EQ(g_hostWindow.load(), nullptr) << "where the engine's thread would post";
}

/// Posts the next message while handling one.
LRESULT CALLBACK postNext(HWND window, UINT message, WPARAM left, LPARAM) {
  if (left > 0) PostMessageW(window, message, left - 1, 0);
  return 0;
}

TEST_F(CSpeaking, WaitingEndsWithTheSpeechOrTheProgramThoughTheQueueNeverEmpties) {
  HostWindow window;
  SetWindowLongPtrW(window.handle(), GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(postNext));
  PostMessageW(window.handle(), WM_APP, 100'000, 0);
  speak("one");
  end();
  EXPECT_THAT(eventsToTheEnd(), ElementsAre("started", "finished"));
  MSG message = {};
  EXPECT_TRUE(PeekMessageW(&message, window.handle(), WM_APP, WM_APP, PM_REMOVE));
  speak("two");
  PostQuitMessage(3);
  EXPECT_EQ(speech_wait(engine_, -1), SPEECH_ERROR_QUIT);
  EXPECT_TRUE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
  EXPECT_EQ(message.wParam, 3u);
}

}  // namespace
}  // namespace speech::test
