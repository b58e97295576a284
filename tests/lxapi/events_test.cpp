// Events of speech that is really played.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "tests/lxapi/session.h"

namespace speech::test {
namespace {

using testing::ElementsAre;
using namespace std::chrono_literals;

/// The texts of the words in the order in which they were heard, taken from the caller's text.
std::vector<std::u16string> heardWords(const std::u16string& text) {
  std::vector<std::u16string> result;
  for (const Event& event : EventRecord::instance().events()) {
    if (event.number == LX_EVENT_WORD) result.push_back(text.substr(event.word1, event.word2));
  }
  return result;
}

class Events : public testing::Test {
 protected:
  Events() { LXAPI_SetAttr(session.tts, LX_ATTR_SPEED, 250); }

  void speakToTheEnd(const std::string& text, int32_t flags = LX_SPEAK_ASYNC) {
    ASSERT_EQ(session.speak(text, flags), LX_OK);
    ASSERT_TRUE(record.waitFor(LX_EVENT_END));
  }

  Session session;
  EventRecord& record = EventRecord::instance();
};

TEST_F(Events, WordsCarryOffsetsAndLengthsInUtf16Units) {
  speakToTheEnd("Hello, w\xC3\xB6rld! \xF0\x9D\x92\xB3 isn't 2nd.");
  const std::u16string text = u"Hello, w\u00F6rld! \U0001D4B3 isn't 2nd.";
  EXPECT_THAT(heardWords(text), ElementsAre(u"Hello", u"w\u00F6rld", u"\U0001D4B3", u"isn't", u"2nd"));
}

TEST_F(Events, EveryEventCarriesTheHandleAndTheEndComesLastAndOnce) {
  speakToTheEnd("One two. Three.");
  std::this_thread::sleep_for(200ms);
  const std::vector<Event> events = record.events();
  EXPECT_EQ(record.count(LX_EVENT_END), 1U);
  EXPECT_EQ(events.back().number, LX_EVENT_END);
  EXPECT_EQ(record.count(LX_EVENT_SENTENCE), 2U);
  for (const Event& event : events) EXPECT_EQ(event.tts, session.tts);
}

TEST_F(Events, SsmlRaisesItsMarksAmongItsWords) {
  const std::string text =
      "<speak>One <mark name=\"first\"/>two <break time=\"300ms\"/> big &amp; small "
      "<emphasis>three</emphasis>"
      "<mark name=\"l\xC3\xA4st\"/></speak>";
  speakToTheEnd(text, LX_SPEAK_ASYNC | LX_SPEAK_SSML);
  std::vector<std::string> heard;
  for (const Event& event : record.events()) {
    if (event.number == LX_EVENT_BOOKMARK) heard.push_back("(" + event.name + ")");
    if (event.number == LX_EVENT_WORD) heard.push_back(text.substr(event.word1, event.word2));
  }
  EXPECT_THAT(heard, ElementsAre("One", "(first)", "two", "big", "&amp;", "small", "three", "(l\xC3\xA4st)"));
}

TEST_F(Events, EmptyTextEndsOnce) {
  for (const char* const text : {"", "   ", "...", "<speak></speak>"}) {
    record.clear();
    speakToTheEnd(text, LX_SPEAK_ASYNC | LX_SPEAK_SSML);
    std::this_thread::sleep_for(50ms);
    EXPECT_EQ(record.count(LX_EVENT_END), 1U) << text;
    EXPECT_EQ(record.count(LX_EVENT_WORD), 0U) << text;
  }
}

TEST_F(Events, OnlyWhatTheMaskNamesIsRaised) {
  LXAPI_SetEvent(session.tts, EventRecord::procedure, LX_EVENT_END);
  speakToTheEnd("One two. Three.");
  EXPECT_EQ(record.events().size(), 1U);
  record.clear();
  LXAPI_SetEvent(session.tts, nullptr, 63);
  ASSERT_EQ(session.speak("One."), LX_OK);
  while (session.speak("") == LX_ERROR_BUSY) std::this_thread::sleep_for(10ms);
  EXPECT_TRUE(record.events().empty());
}

// Rendering is far ahead of playing: an event that came when its word was computed would come in the first
// moments.
TEST_F(Events, WordsComeWhenTheyAreHeard) {
  const int32_t length = milliseconds(session.samples("One two three four five six seven eight nine ten."));
  std::vector<std::chrono::steady_clock::time_point> times;
  record.react([&](const Event& event) {
    if (event.number == LX_EVENT_WORD || event.number == LX_EVENT_END)
      times.push_back(std::chrono::steady_clock::now());
  });
  speakToTheEnd("One two three four five six seven eight nine ten.");
  record.react(nullptr);
  ASSERT_EQ(times.size(), 11U);
  // A machine that is slow makes these spans longer, never shorter.
  EXPECT_GT(times[9] - times[0], std::chrono::milliseconds(length / 2));
  EXPECT_GT(times[10] - times[0], std::chrono::milliseconds(length * 3 / 4));
}

TEST_F(Events, EventsOfLongTextPointIntoTheWholeOfIt) {
  // The first letter is a pair in UTF-16.
  std::u16string text = u"\U0001D4D0 ";
  std::string utf8 = "\xF0\x9D\x93\x90 ";
  for (int index = 0; index < 45; ++index) {
    text += u"of the. ";
    utf8 += "of the. ";
  }
  LXAPI_SetAttr(session.tts, LX_ATTR_SENTENCE_PAUSE, 0);
  ASSERT_EQ(session.speak(utf8), LX_OK);
  ASSERT_TRUE(record.waitFor(LX_EVENT_END));
  const std::vector<std::u16string> words = heardWords(text);
  EXPECT_EQ(std::count(words.begin(), words.end(), u"of"), 45);
  EXPECT_EQ(std::count(words.begin(), words.end(), u"the"), 45);
  uint32_t before = 0;
  for (const Event& event : record.events()) {
    if (event.number != LX_EVENT_WORD) continue;
    EXPECT_GE(event.word1, before);
    before = event.word1;
  }
}

}  // namespace
}  // namespace speech::test
