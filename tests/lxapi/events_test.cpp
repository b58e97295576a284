// Events of speech that is really played.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "tests/lxapi/session.h"
#include "tests/support/waiting.h"

namespace speech::test {
namespace {

using testing::ElementsAre;
using namespace std::chrono_literals;

class Events : public testing::Test {
 protected:
  Events() { LXAPI_SetAttr(session.tts, LX_ATTR_SPEED, 250); }

  void speakToTheEnd(const std::string& text, int32_t flags = LX_SPEAK_ASYNC) {
    ASSERT_EQ(session.speak(text, flags), LX_OK);
    ASSERT_TRUE(record.waitFor(LX_EVENT_END));
  }

  /// Words, taken from the caller's text, and the names of bookmarks, in the order in which they were heard.
  std::vector<std::u16string> heard(const std::u16string& text) const {
    std::vector<std::u16string> result;
    for (const Event& event : record.events()) {
      if (event.number == LX_EVENT_WORD) result.push_back(text.substr(event.word1, event.word2));
      if (event.number == LX_EVENT_BOOKMARK) result.emplace_back(event.name.begin(), event.name.end());
    }
    return result;
  }

  Session session;
  EventRecord& record = EventRecord::instance();
};

TEST_F(Events, WordsCarryOffsetsAndLengthsInUtf16UnitsAndTheEndComesLastAndOnce) {
  speakToTheEnd("Hello, w\xC3\xB6rld! \xF0\x9D\x92\xB3 isn't 2nd.");
  std::this_thread::sleep_for(200ms);
  EXPECT_THAT(heard(u"Hello, w\u00F6rld! \U0001D4B3 isn't 2nd."),
              ElementsAre(u"Hello", u"w\u00F6rld", u"\U0001D4B3", u"isn't", u"2nd"));
  EXPECT_EQ(record.count(LX_EVENT_END), 1U);
  EXPECT_EQ(record.events().back().number, LX_EVENT_END);
  EXPECT_EQ(record.count(LX_EVENT_SENTENCE), 2U);
  for (const Event& event : record.events()) EXPECT_EQ(event.tts, session.tts);
}

TEST_F(Events, SsmlRaisesItsMarksAmongItsWords) {
  const std::string text =
      "<speak>One <mark name=\"#first\"/>two <break time=\"300ms\"/> big &amp; small "
      "<emphasis>three</emphasis>"
      "<mark name=\"#last\"/></speak>";
  speakToTheEnd(text, LX_SPEAK_ASYNC | LX_SPEAK_SSML);
  EXPECT_THAT(heard({text.begin(), text.end()}),
              ElementsAre(u"One", u"#first", u"two", u"big", u"&amp;", u"small", u"three", u"#last"));
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
  waitUntil("the end of the speech", [&] { return session.speak("") != LX_ERROR_BUSY; });
  EXPECT_TRUE(record.events().empty());
}

// Rendering is far ahead of playing: an event that came when its word was computed would come in the first
// moments.
TEST_F(Events, WordsComeWhenTheyAreHeard) {
  const int32_t length = milliseconds(session.samples("One two three four five six seven eight nine ten."));
  speakToTheEnd("One two three four five six seven eight nine ten.");
  std::vector<std::chrono::steady_clock::time_point> times;
  for (const Event& event : record.events()) {
    if (event.number == LX_EVENT_WORD || event.number == LX_EVENT_END) times.push_back(event.at);
  }
  ASSERT_EQ(times.size(), 11U);
  // A machine that is slow makes these spans longer, never shorter.
  EXPECT_GT(times[9] - times[0], std::chrono::milliseconds(length / 2));
  EXPECT_GT(times[10] - times[0], std::chrono::milliseconds(length * 3 / 4));
}

// The synthesizer gets a text of this length in two pieces, cut behind its first sentence.
TEST_F(Events, EventsOfLongTextPointIntoTheWholeOfIt) {
  const std::string blanks(400, ' ');
  speakToTheEnd("\xF0\x9D\x92\xB3 " + blanks + "one. Two three");
  std::u16string text = u"\U0001D4B3 ";
  text.append(blanks.begin(), blanks.end()).append(u"one. Two three");
  EXPECT_THAT(heard(text), ElementsAre(u"\U0001D4B3", u"one", u"Two", u"three"));
}

}  // namespace
}  // namespace speech::test
