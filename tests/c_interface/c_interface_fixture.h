#pragma once

#include <gmock/gmock.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <speech/speech_c.h>
#include <speech/text_to_speech.h>

#include "tests/support/recording_engine.h"

namespace speech::test {

/// An event in the form "word 3+2 (2+1)": bytes of UTF-8, then units of UTF-16.
inline std::string describe(const SpeechEvent& event) {
  const auto range = [](std::uint32_t offset, std::uint32_t length) {
    return std::to_string(offset) + "+" + std::to_string(length);
  };
  switch (event.kind) {
    case SPEECH_EVENT_STARTED:
      return "started";
    case SPEECH_EVENT_WORD:
      return "word " + range(event.utf8_offset, event.utf8_length) + " (" +
             range(event.utf16_offset, event.utf16_length) + ")";
    case SPEECH_EVENT_FINISHED:
      return "finished";
    case SPEECH_EVENT_FAILED:
      return "failed " + std::to_string(event.error) + " [" + event.message + "]";
    default:
      return "?";
  }
}

/// Two installed voices, over the recording engine library.
class CInterfaceTest : public ::testing::Test {
 protected:
  static constexpr std::uint32_t kFirstTts = 1;

  void SetUp() override {
    ITextToSpeech::releaseInstance();
    recording().reset();
    recording().install({.key1 = L"zo\u00eb", .key2 = L"m", .gender = L"M", .language = L"en-US"});
    recording().install(
        {.key1 = L"ann", .key2 = L"f", .gender = L"F", .sampleRateHz = 16000, .language = L"de-DE"});
  }
  void TearDown() override {
    EXPECT_EQ(speech_release(), SPEECH_OK);
    ITextToSpeech::releaseInstance();
  }

  SpeechEngine open(std::int32_t voice = 0) {
    SpeechEngine engine = nullptr;
    EXPECT_EQ(speech_engine_open(voice, &CInterfaceTest::onEvent, this, &engine), SPEECH_OK);
    recording().takeCalls();
    return engine;
  }

  static std::string detail() {
    char text[500] = "";
    EXPECT_EQ(speech_error_detail(text, sizeof text, nullptr), SPEECH_OK);
    return text;
  }

  std::vector<std::string> takeEvents() { return std::exchange(events_, {}); }

  static int stateOf(SpeechEngine engine) {
    std::int32_t state = -1;
    EXPECT_EQ(speech_state(engine, &state), SPEECH_OK);
    return state;
  }

  /// Called for every event, after it has been noted.
  std::function<void(const SpeechEvent&)> reaction_ = [](const SpeechEvent&) {};

 private:
  static void SPEECH_CALL onEvent(void* user, const SpeechEvent* event) {
    auto* const self = static_cast<CInterfaceTest*>(user);
    self->events_.push_back(describe(*event));
    self->reaction_(*event);
  }

  std::vector<std::string> events_;
};

}  // namespace speech::test
