// Speaking, stopping, pausing and going on, on a sound device that plays in real time.

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "tests/lxapi/session.h"
#include "tests/support/waiting.h"

namespace speech::test {
namespace {

using namespace std::chrono_literals;

const std::string kLong =
    "This is a longer sentence, which goes on for some seconds, so that there is time to do things to it.";

class Playback : public testing::Test {
 protected:
  Playback() { LXAPI_SetAttr(session.tts, LX_ATTR_SPEED, 200); }

  void expectNoMoreEvents(std::chrono::milliseconds time) const {
    const size_t count = record.events().size();
    std::this_thread::sleep_for(time);
    EXPECT_EQ(record.events().size(), count);
    EXPECT_EQ(record.count(LX_EVENT_END), 0U);
  }

  Session session;
  EventRecord& record = EventRecord::instance();
};

TEST_F(Playback, SpeakingReturnsWhileTheTextIsStillHeard) {
  ASSERT_EQ(session.speak(kLong), LX_OK);
  EXPECT_EQ(record.count(LX_EVENT_END), 0U);
  EXPECT_EQ(session.speak("Another."), LX_ERROR_BUSY);
  EXPECT_EQ(LXAPI_SynthesizeAsync(session.tts, "Another.", -1, LX_SPEAK_ASYNC, -1), LX_ERROR_BUSY);
  EXPECT_GT(milliseconds(session.samples("One.")), 100) << "memory is another output";
  ASSERT_EQ(LXAPI_Stop(session.tts), LX_OK);
  ASSERT_EQ(session.speak("One."), LX_OK) << "a stopped handle is free at once";
  EXPECT_TRUE(record.waitFor(LX_EVENT_END));
  EXPECT_EQ(LXAPI_Stop(session.tts), LX_OK);
  EXPECT_EQ(LXAPI_Resume(session.tts), LX_OK);
  EXPECT_EQ(record.count(LX_EVENT_END), 1U);
}

TEST_F(Playback, NoEventComesAfterAStop) {
  for (int round = 0; round < 6; ++round) {
    record.clear();
    ASSERT_EQ(session.speak(kLong), LX_OK);
    ASSERT_TRUE(record.waitFor(LX_EVENT_WORD));
    ASSERT_EQ(LXAPI_Stop(session.tts), LX_OK);
    expectNoMoreEvents(100ms);
  }
}

TEST_F(Playback, PausedSpeechHoldsStillAndGoesOnToItsOneEnd) {
  ASSERT_EQ(session.speak(kLong), LX_OK);
  ASSERT_TRUE(record.waitFor(LX_EVENT_WORD, 2));
  ASSERT_EQ(LXAPI_Pause(session.tts), LX_OK);
  std::this_thread::sleep_for(300ms);
  const size_t atPause = record.events().size();
  expectNoMoreEvents(800ms);
  EXPECT_EQ(session.speak("x"), LX_ERROR_BUSY) << "paused is not over";
  ASSERT_EQ(LXAPI_Resume(session.tts), LX_OK);
  ASSERT_TRUE(record.waitFor(LX_EVENT_END));
  EXPECT_GT(record.events().size(), atPause + 2);
  std::this_thread::sleep_for(100ms);
  EXPECT_EQ(record.count(LX_EVENT_END), 1U);
}

TEST_F(Playback, PausedSpeechCanBeStopped) {
  EXPECT_EQ(LXAPI_Pause(session.tts), LX_OK) << "nothing yet";
  ASSERT_EQ(session.speak(kLong), LX_OK);
  ASSERT_EQ(LXAPI_Pause(session.tts), LX_OK) << "before anything was heard";
  ASSERT_EQ(LXAPI_Pause(session.tts), LX_OK) << "twice";
  ASSERT_EQ(LXAPI_Stop(session.tts), LX_OK);
  EXPECT_EQ(record.count(LX_EVENT_END), 0U);
  ASSERT_EQ(session.speak("One."), LX_OK) << "the next speech is not paused";
  EXPECT_TRUE(record.waitFor(LX_EVENT_END));
}

TEST_F(Playback, TheEventProcedureMayStopAndSpeak) {
  record.react([&](const Event& event) {
    if (event.number == LX_EVENT_WORD) {
      EXPECT_EQ(LXAPI_Stop(session.tts), LX_OK);
    }
  });
  ASSERT_EQ(session.speak(kLong), LX_OK);
  ASSERT_TRUE(record.waitFor(LX_EVENT_WORD));
  expectNoMoreEvents(200ms);
  EXPECT_EQ(record.count(LX_EVENT_WORD), 1U);

  record.clear();
  record.react([&](const Event& event) {
    if (event.number == LX_EVENT_END && record.count(LX_EVENT_END) < 3) {
      EXPECT_EQ(session.speak("Two."), LX_OK);
    }
  });
  ASSERT_EQ(session.speak("One."), LX_OK);
  EXPECT_TRUE(record.waitFor(LX_EVENT_END, 3));
}

TEST_F(Playback, EndingTheLibraryEndsSpeech) {
  ASSERT_EQ(session.speak(kLong), LX_OK);
  ASSERT_TRUE(record.waitFor(LX_EVENT_WORD));
  ASSERT_EQ(LXAPI_Exit(), LX_OK);
  expectNoMoreEvents(200ms);
  EXPECT_EQ(LXAPI_Stop(session.tts), LX_ERROR_NOT_STARTED);
  ASSERT_EQ(LXAPI_Init(), LX_OK);
}

TEST_F(Playback, TheEventProcedureMayEndTheLibrary) {
  record.react([&](const Event& event) {
    if (event.number == LX_EVENT_WORD) LXAPI_Exit();
  });
  ASSERT_EQ(session.speak(kLong), LX_OK);
  ASSERT_TRUE(record.waitFor(LX_EVENT_WORD));
  waitUntil("the end of the library", [&] { return LXAPI_Stop(session.tts) != LX_OK; });
  EXPECT_EQ(record.count(LX_EVENT_END), 0U);
  ASSERT_EQ(LXAPI_Init(), LX_OK);
}

TEST_F(Playback, UnloadingTheEngineSilencesItsSpeech) {
  ASSERT_EQ(session.speak(kLong), LX_OK);
  ASSERT_EQ(LXAPI_UnloadEngine(session.engine), LX_OK);
  EXPECT_EQ(session.speak(kLong), LX_ERROR_NOT_LOADED);
  expectNoMoreEvents(100ms);
}

TEST_F(Playback, TwoHandlesSpeakAtTheSameTime) {
  const Session other("French (France)", "Female");
  ASSERT_EQ(session.speak("One two three."), LX_OK);
  ASSERT_EQ(other.speak("Un deux trois."), LX_OK);
  ASSERT_TRUE(record.waitFor(LX_EVENT_END, 2));
}

TEST_F(Playback, ADeviceThatDoesNotExistIsRefused) {
  ASSERT_EQ(LXAPI_SetOutputAudio(session.tts, LXAUDIOOUT{1, 16, kSampleRateHz, 500}), LX_OK);
  EXPECT_EQ(session.speak("One."), LX_ERROR_DEVICE);
  ASSERT_EQ(LXAPI_SetOutputAudio(session.tts, LXAUDIOOUT{1, 16, kSampleRateHz, 0}), LX_OK);
  ASSERT_EQ(session.speak("One."), LX_OK) << "the first device by its number";
  EXPECT_TRUE(record.waitFor(LX_EVENT_END));
}

}  // namespace
}  // namespace speech::test
