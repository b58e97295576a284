// Speaking, stopping, pausing and going on, on a sound device that plays in real time.

#include <thread>

#include "lxapi/bundled/wave_output.h"
#include "tests/lxapi/session.h"
#include "tests/support/process_figures.h"

namespace speech::test {
namespace {

using namespace std::chrono_literals;

const std::string kLong = "This longer sentence, of some seconds, leaves the time to do some things to it.";

struct Playback : testing::Test {
  Playback() { LXAPI_SetAttr(session.tts, LX_ATTR_SPEED, 200); }

  void startSpeaking(EventRecord::Reaction reaction = {}) const {
    record.clear(std::move(reaction));
    ASSERT_EQ(session.speak(kLong), LX_OK);
    record.waitFor(LX_EVENT_WORD);
  }

  void speakToTheEnd(const std::string& text, EventRecord::Reaction reaction = {}, size_t ends = 1) const {
    record.clear(std::move(reaction));
    ASSERT_EQ(session.speak(text), LX_OK) << text;
    record.waitFor(LX_EVENT_END, ends);
    std::this_thread::sleep_for(50ms);
    EXPECT_EQ(record.count(LX_EVENT_END), ends) << text;
  }

  void expectNoMoreEvents(std::chrono::milliseconds time) const {
    const size_t count = record.events().size();
    std::this_thread::sleep_for(time);
    EXPECT_EQ(record.events().size(), count);
    EXPECT_EQ(record.count(LX_EVENT_END), 0U);
  }

  const Session session;
};

// Rendering is far ahead of playing: an event that came when its word was computed would come in the first
// moments. A machine that is slow makes these spans longer, never shorter.
TEST_F(Playback, WordsComeWhenTheyAreHeardAndTheEndLastAndOnce) {
  const std::string text = "One two three four five six seven eight nine ten.";
  speakToTheEnd(text);
  const std::vector<Event> events = record.events();
  const auto length = std::chrono::milliseconds(milliseconds(session.samples(text)));
  ASSERT_EQ(record.count(LX_EVENT_WORD), 10U);
  EXPECT_EQ(events.back().number, LX_EVENT_END);
  EXPECT_GT(events[events.size() - 2].at - events.front().at, length / 2);
  EXPECT_GT(events.back().at - events.front().at, length * 3 / 4);
  LXAPI_SetEvent(session.tts, keepEvent, LX_EVENT_END);
  speakToTheEnd("One two. Three.");
  EXPECT_EQ(record.events().size(), 1U) << "only what the mask names is raised";
  for (const char* const silent : {"", "   ", "..."}) speakToTheEnd(silent);
}

TEST_F(Playback, AHandleSpeaksOneTextAtATimeAndIsFreeOnceItIsStopped) {
  for (int round = 0; round < 6; ++round) {
    startSpeaking();
    EXPECT_EQ(LXAPI_SynthesizeAsync(session.tts, "Another.", -1, LX_SPEAK_ASYNC, -1), LX_ERROR_BUSY);
    EXPECT_GT(milliseconds(session.samples("One.")), 100) << "memory is another output";
    ASSERT_EQ(LXAPI_Stop(session.tts), LX_OK);
    expectNoMoreEvents(100ms);
  }
  speakToTheEnd("One.");
}

TEST_F(Playback, PausedSpeechHoldsStillAndGoesOnToItsOneEndOrIsStopped) {
  startSpeaking();
  ASSERT_EQ(LXAPI_Pause(session.tts), LX_OK);
  std::this_thread::sleep_for(300ms);
  const size_t atPause = record.events().size();
  expectNoMoreEvents(800ms);
  EXPECT_EQ(session.speak("x"), LX_ERROR_BUSY) << "paused is not over";
  ASSERT_EQ(LXAPI_Resume(session.tts), LX_OK);
  record.waitFor(LX_EVENT_END);
  EXPECT_GT(record.events().size(), atPause + 2);
  ASSERT_EQ(session.speak(kLong), LX_OK);
  ASSERT_EQ(LXAPI_Pause(session.tts), LX_OK) << "before anything was heard";
  ASSERT_EQ(LXAPI_Stop(session.tts), LX_OK);
  speakToTheEnd("One.");
}

TEST_F(Playback, TheEventProcedureMayStopSpeakAndEndTheLibrary) {
  startSpeaking(
      [this](const Event& event) { event.number == LX_EVENT_WORD ? LXAPI_Stop(session.tts) : LX_OK; });
  expectNoMoreEvents(200ms);
  const auto speakTwiceMore = [this](const Event& event) {
    if (event.number == LX_EVENT_END && record.count(LX_EVENT_END) < 3) session.speak("Two.");
  };
  speakToTheEnd("One.", speakTwiceMore, 3);
  startSpeaking([](const Event& event) { event.number == LX_EVENT_WORD ? LXAPI_Exit() : LX_OK; });
  waitUntil("the library's end", [this] { return LXAPI_Stop(session.tts) == LX_ERROR_NOT_STARTED; });
  ASSERT_EQ(LXAPI_Init(), LX_OK);
}

TEST_F(Playback, UnloadingTheEngineAndEndingTheLibrarySilenceTheirSpeech) {
  startSpeaking();
  ASSERT_EQ(LXAPI_UnloadEngine(session.engine), LX_OK);
  expectNoMoreEvents(100ms);
  ASSERT_EQ(LXAPI_LoadEngine(session.engine), LX_OK);
  startSpeaking();
  ASSERT_EQ(LXAPI_Exit(), LX_OK);
  expectNoMoreEvents(200ms);
  ASSERT_EQ(LXAPI_Init(), LX_OK);
}

TEST_F(Playback, TwoHandlesSpeakAtTheSameTimeOnTheDevicesThatTheyChose) {
  const Session other("French (France)", "Female");
  LXAPI_SetOutputAudio(session.tts, {1, 16, kSampleRateHz, 500});
  EXPECT_EQ(session.speak("One."), LX_ERROR_DEVICE) << "there is no such device";
  LXAPI_SetOutputAudio(session.tts, {1, 16, kSampleRateHz, 0});
  ASSERT_EQ(session.speak("One two three."), LX_OK) << "the first device by its number";
  ASSERT_EQ(other.speak("Un deux trois."), LX_OK);
  record.waitFor(LX_EVENT_END, 2);
  EXPECT_GT(std::ranges::count(record.events(), session.tts, &Event::tts), 3);
  EXPECT_GT(std::ranges::count(record.events(), other.tts, &Event::tts), 3);
}

TEST(WaveOutput, ResumingWakesWhoeverWaitsForTheNextEvent) {
  lxapi::WaveOutput output;
  ASSERT_TRUE(output.open(-1, kSampleRateHz));
  output.pause();
  while (WaitForSingleObject(output.wakeEvent(), 0) == WAIT_OBJECT_0) continue;
  output.resume();
  EXPECT_EQ(WaitForSingleObject(output.wakeEvent(), 0), WAIT_OBJECT_0);
}

TEST(Lifetime, ManySpeechesAndStartsOfTheLibraryLeaveNoHandleThreadOrMemory) {
  ProcessFigures before;
  for (int cycle = 0; cycle < 40; ++cycle) {
    if (cycle == 6) before = ProcessFigures::now();
    const Session session;
    ASSERT_EQ(session.speak("A sentence of which little is heard."), LX_OK);
    ASSERT_EQ(LXAPI_Stop(session.tts), LX_OK);
    ASSERT_EQ(session.speak("One."), LX_OK);
  }
  const ProcessFigures after = ProcessFigures::now();
  // A leak of one thing in each cycle would be far more than what is allowed for the sound system.
  EXPECT_LT(after.handles, before.handles + 15);
  EXPECT_LE(after.threads, before.threads + 2);
  EXPECT_LT(after.committedBytes, before.committedBytes + (4 << 20));
}

}  // namespace
}  // namespace speech::test
