// Speaking, stopping, pausing and going on, on a sound device that plays in real time.

#include <gtest/gtest.h>

#include <chrono>
#include <iostream>
#include <thread>

#include "tests/lxapi/session.h"

namespace speech::test {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

const std::string kLong =
    "This is a longer sentence, which goes on for some seconds, so that there is time to do things to it.";

double millisecondsSince(Clock::time_point start) {
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

class Playback : public testing::Test {
 protected:
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
}

TEST_F(Playback, PlayingTakesAsLongAsTheSamples) {
  const int32_t length = milliseconds(session.samples(kLong));
  const auto start = Clock::now();
  ASSERT_EQ(session.speak(kLong), LX_OK);
  ASSERT_TRUE(record.waitFor(LX_EVENT_END));
  // The device may not be ahead of its clock; how far it is behind depends on the machine.
  EXPECT_GT(millisecondsSince(start), length * 0.9);
  std::cout << "[ measured ] " << length << " ms of sound, end event after " << millisecondsSince(start)
            << " ms\n";
}

TEST_F(Playback, NoEventComesAfterAStop) {
  for (int round = 0; round < 10; ++round) {
    record.clear();
    ASSERT_EQ(session.speak(kLong), LX_OK);
    ASSERT_TRUE(record.waitFor(LX_EVENT_WORD));
    ASSERT_EQ(LXAPI_Stop(session.tts), LX_OK);
    const size_t count = record.events().size();
    std::this_thread::sleep_for(100ms);
    EXPECT_EQ(record.events().size(), count);
    EXPECT_EQ(record.count(LX_EVENT_END), 0U);
  }
}

TEST_F(Playback, StoppingIsQuick) {
  double worst = 0, first = 0;
  for (int round = 0; round < 10; ++round) {
    record.clear();
    const auto start = Clock::now();
    ASSERT_EQ(session.speak(kLong), LX_OK);
    ASSERT_TRUE(record.waitFor(LX_EVENT_WORD));
    first = std::max(first, millisecondsSince(start));
    std::this_thread::sleep_for(150ms);
    const auto stop = Clock::now();
    ASSERT_EQ(LXAPI_Stop(session.tts), LX_OK);
    worst = std::max(worst, millisecondsSince(stop));
  }
  std::cout << "[ measured ] slowest of 10: first word event " << first << " ms after the call, LXAPI_Stop "
            << worst << " ms\n";
}

TEST_F(Playback, PausedSpeechHoldsStillAndGoesOnToItsOneEnd) {
  ASSERT_EQ(session.speak(kLong), LX_OK);
  ASSERT_TRUE(record.waitFor(LX_EVENT_WORD, 2));
  ASSERT_EQ(LXAPI_Pause(session.tts), LX_OK);
  std::this_thread::sleep_for(300ms);
  const size_t atPause = record.events().size();
  std::this_thread::sleep_for(800ms);
  EXPECT_EQ(record.events().size(), atPause);
  EXPECT_EQ(session.speak("x"), LX_ERROR_BUSY) << "paused is not over";
  ASSERT_EQ(LXAPI_Resume(session.tts), LX_OK);
  ASSERT_TRUE(record.waitFor(LX_EVENT_END));
  EXPECT_GT(record.events().size(), atPause + 2);
  std::this_thread::sleep_for(100ms);
  EXPECT_EQ(record.count(LX_EVENT_END), 1U);
}

TEST_F(Playback, PausedSpeechCanBeStopped) {
  ASSERT_EQ(session.speak(kLong), LX_OK);
  ASSERT_EQ(LXAPI_Pause(session.tts), LX_OK) << "before anything was heard";
  ASSERT_EQ(LXAPI_Pause(session.tts), LX_OK) << "twice";
  ASSERT_EQ(LXAPI_Stop(session.tts), LX_OK);
  EXPECT_EQ(record.count(LX_EVENT_END), 0U);
  ASSERT_EQ(session.speak("One."), LX_OK) << "the next speech is not paused";
  EXPECT_TRUE(record.waitFor(LX_EVENT_END));
}

TEST_F(Playback, StopPauseAndResumeOfNothingAreFine) {
  EXPECT_EQ(LXAPI_Stop(session.tts), LX_OK);
  EXPECT_EQ(LXAPI_Pause(session.tts), LX_OK);
  EXPECT_EQ(LXAPI_Resume(session.tts), LX_OK);
  ASSERT_EQ(session.speak("One."), LX_OK);
  ASSERT_TRUE(record.waitFor(LX_EVENT_END));
  EXPECT_EQ(LXAPI_Resume(session.tts), LX_OK);
  EXPECT_EQ(LXAPI_Stop(session.tts), LX_OK);
  EXPECT_EQ(record.count(LX_EVENT_END), 1U);
}

TEST_F(Playback, TheEventProcedureMayStopPauseAndSpeak) {
  record.react([&](const Event& event) {
    if (event.number == LX_EVENT_WORD) {
      EXPECT_EQ(LXAPI_Stop(session.tts), LX_OK);
    }
  });
  ASSERT_EQ(session.speak(kLong), LX_OK);
  ASSERT_TRUE(record.waitFor(LX_EVENT_WORD));
  std::this_thread::sleep_for(200ms);
  EXPECT_EQ(record.count(LX_EVENT_WORD), 1U);
  EXPECT_EQ(record.count(LX_EVENT_END), 0U);

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
  const size_t count = record.events().size();
  std::this_thread::sleep_for(200ms);
  EXPECT_EQ(record.events().size(), count);
  EXPECT_EQ(LXAPI_Stop(session.tts), LX_ERROR_NOT_STARTED);
  ASSERT_EQ(LXAPI_Init(), LX_OK);
}

TEST_F(Playback, TheEventProcedureMayEndTheLibrary) {
  record.react([&](const Event& event) {
    if (event.number == LX_EVENT_WORD) LXAPI_Exit();
  });
  ASSERT_EQ(session.speak(kLong), LX_OK);
  ASSERT_TRUE(record.waitFor(LX_EVENT_WORD));
  while (LXAPI_Stop(session.tts) == LX_OK) std::this_thread::sleep_for(10ms);
  EXPECT_EQ(record.count(LX_EVENT_END), 0U);
  ASSERT_EQ(LXAPI_Init(), LX_OK);
}

TEST_F(Playback, UnloadingTheEngineSilencesItsSpeech) {
  ASSERT_EQ(session.speak(kLong), LX_OK);
  ASSERT_EQ(LXAPI_UnloadEngine(session.engine), LX_OK);
  EXPECT_EQ(session.speak(kLong), LX_ERROR_NOT_LOADED);
  std::this_thread::sleep_for(100ms);
  EXPECT_EQ(record.count(LX_EVENT_END), 0U);
}

TEST_F(Playback, AMegabyteIsStoppedInTheMiddle) {
  std::string text;
  while (text.size() < 1'000'000) text += kLong + " ";
  const auto start = Clock::now();
  ASSERT_EQ(session.speak(text), LX_OK);
  const double accepted = millisecondsSince(start);
  ASSERT_TRUE(record.waitFor(LX_EVENT_WORD, 5));
  const auto stop = Clock::now();
  ASSERT_EQ(LXAPI_Stop(session.tts), LX_OK);
  std::cout << "[ measured ] 1 MB of text: accepted after " << accepted << " ms, LXAPI_Stop "
            << millisecondsSince(stop) << " ms\n";
  EXPECT_EQ(record.count(LX_EVENT_END), 0U);
}

TEST_F(Playback, TwoHandlesSpeakAtTheSameTime) {
  const uint32_t french = LXAPI_GetEngine("French (France)", "Female");
  ASSERT_EQ(LXAPI_LoadEngine(french), LX_OK);
  const uint32_t other = LXAPI_CreateHandle();
  ASSERT_EQ(LXAPI_SetEngineHandle(other, french), LX_OK);
  LXAPI_SetEvent(other, EventRecord::procedure, LX_EVENT_END);
  ASSERT_EQ(session.speak("One two three."), LX_OK);
  ASSERT_EQ(LXAPI_Speak(other, "Un deux trois.", -1, LX_SPEAK_ASYNC), LX_OK);
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
