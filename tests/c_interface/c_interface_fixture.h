#pragma once

#include <gmock/gmock.h>

#include <array>
#include <functional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <speech/speech_c.h>
#include <speech/text_to_speech.h>

#include "tests/support/recording_engine.h"
#include "tests/support/waiting.h"

namespace speech::test {

/// Every call, in this order, has the same result.
inline void expectEach(std::int32_t wanted, std::initializer_list<std::int32_t> results) {
  EXPECT_THAT(results, ::testing::Each(wanted));
}

/// An event in the form "word 3+2 (2+1)": bytes of UTF-8, then units of UTF-16.
inline std::string describe(const SpeechEvent& event) {
  constexpr const char* kKinds[] = {"?", "started", "word ", "finished", "failed "};
  std::ostringstream text;
  text << kKinds[event.kind];
  if (event.kind == SPEECH_EVENT_WORD) {
    text << event.utf8_offset << '+' << event.utf8_length << " (" << event.utf16_offset << '+'
         << event.utf16_length << ')';
  }
  if (event.kind == SPEECH_EVENT_FAILED) text << event.error << " [" << event.message << ']';
  return text.str();
}

/// Two installed voices, over the recording engine library. The first one's engine is open.
class CInterfaceTest : public ::testing::Test {
 protected:
  void SetUp() override {
    recording().reset();
    recording().install({.key1 = L"zo\u00eb", .key2 = L"m", .gender = L"M", .language = L"en-US"});
    recording().install({.key1 = L"ann", .gender = L"F", .sampleRateHz = 16000, .language = L"de-DE"});
    recording().install({.key1 = L"cirrus", .language = L"DE-de", .type = L"SkyVo"});
    open(0);
  }
  void TearDown() override { EXPECT_EQ(speech_release(), SPEECH_OK); }

  /// Closes the open engine first.
  void open(std::int32_t voice) {
    speech_engine_close(engine_);
    EXPECT_EQ(speech_engine_open(voice, &CInterfaceTest::onEvent, this, &engine_), SPEECH_OK);
    recording().takeCalls();
  }

  static std::string detail() {
    char text[500] = "";
    EXPECT_EQ(speech_error_detail(text, sizeof text, nullptr), SPEECH_OK);
    return text;
  }

  std::vector<std::string> takeEvents() { return std::exchange(events_, {}); }

  /// The events until nothing is spoken any more.
  std::vector<std::string> eventsToTheEnd() {
    EXPECT_EQ(speech_wait(engine_, kWaitLimitMilliseconds), SPEECH_OK);
    return takeEvents();
  }

  SpeechEngine engine_ = nullptr;
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
