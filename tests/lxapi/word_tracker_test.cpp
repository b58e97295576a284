#include "lxapi/bundled/word_tracker.h"

#include <gtest/gtest.h>

#include <string_view>

namespace speech::lxapi {
namespace {

Segment segmentOf(const std::string& text, bool ssml = false) { return *Segmenter(text, ssml).next(); }

/// A word mark as the synthesizer reports it, positions from 1.
struct Mark {
  int64_t position;
  int32_t count;
};

std::vector<std::string> words(const std::string& text, std::initializer_list<Mark> marks,
                               bool ssml = false) {
  const Segment segment = segmentOf(text, ssml);
  WordTracker tracker(segment);
  std::vector<std::string> result;
  const auto keep = [&](const WordTracker::Events& events) {
    for (const SpeechEvent& event : events) result.push_back(text.substr(event.offset, event.length));
  };
  for (const Mark& mark : marks) keep(tracker.word(mark.position, mark.count, 0));
  keep(tracker.flush(static_cast<int64_t>(text.size()), 0));
  return result;
}

using Words = std::vector<std::string>;

TEST(WordTracker, WordsAreWholeWhereTheSynthesizerCountsParts) {
  EXPECT_EQ(words("2nd isn't x", {{1, 1}, {5, 3}, {11, 1}}), (Words{"2nd", "isn't", "x"}));
}

TEST(WordTracker, PartsThatItSpeaksApartStayApart) {
  EXPECT_EQ(words("10km", {{1, 2}, {3, 2}}), (Words{"10", "km"}));
}

TEST(WordTracker, AWordIsRaisedOnceHoweverManyPartsAreSpoken) {
  EXPECT_EQ(words("a 3.14 b", {{1, 1}, {3, 4}, {4, 4}, {4, 4}, {8, 1}}), (Words{"a", "3.14", "b"}));
}

TEST(WordTracker, MarksOnSpacesTagsAndBehindTheTextAreDropped) {
  EXPECT_EQ(words("a b", {{1, 1}, {2, 1}, {3, 1}, {4, 1}, {0, 1}, {-5, 1}, {99, 1}}), (Words{"a", "b"}));
  EXPECT_EQ(words("a <break/> b", {{1, 1}, {3, 1}, {9, 1}, {12, 1}}, true), (Words{"a", "b"}));
}

TEST(WordTracker, PositionsBehindTagsAndEntitiesAreCorrected) {
  EXPECT_EQ(words("<p>Yes</p> &amp; no", {{5, 2}, {16, 1}, {18, 2}}, true), (Words{"Yes", "&amp;", "no"}));
}

TEST(WordTracker, OffsetsCountUtf16Units) {
  const Segment segment = segmentOf("\xF0\x9D\x92\xB3\xC3\xA9 ok");
  WordTracker tracker(segment);
  EXPECT_TRUE(tracker.word(1, 2, 7).empty());
  const WordTracker::Events first = tracker.word(4, 2, 8);
  ASSERT_EQ(first.size(), 1U);
  EXPECT_EQ(first[0].offset, 0U);
  EXPECT_EQ(first[0].length, 3U);
  EXPECT_EQ(first[0].frame, 7U);
  const WordTracker::Events second = tracker.flush(5, 9);
  ASSERT_EQ(second.size(), 1U);
  EXPECT_EQ(second[0].offset, 4U);
  EXPECT_EQ(second[0].length, 2U);
}

TEST(WordTracker, WordsThatArePassedOverShareTheTime) {
  const Segment segment = segmentOf("of the best");
  WordTracker tracker(segment);
  tracker.word(1, 2, 1000);
  const WordTracker::Events events = tracker.word(8, 4, 1700);
  ASSERT_EQ(events.size(), 2U);
  EXPECT_EQ(events[0].frame, 1000U);
  EXPECT_EQ(events[1].offset, 3U);
  EXPECT_EQ(events[1].length, 3U);
  EXPECT_EQ(events[1].frame, 1300U);
}

TEST(WordTracker, SentencesReachToTheirPunctuation) {
  const Segment segment = segmentOf("One 3.5 two. \"Three!\" Four");
  const WordTracker tracker(segment);
  EXPECT_EQ(tracker.sentence(1, 0)->length, 12U);
  EXPECT_EQ(tracker.sentence(15, 0)->length, 7U);
  EXPECT_EQ(tracker.sentence(23, 0)->length, 4U);
}

TEST(WordTracker, TheTextSaysWhichPauseItWants) {
  using Pause = WordTracker::Pause;
  const auto pauseAfter = [](const std::string& text, const std::string& rest, bool ssml = false) {
    const Segment segment = segmentOf(text + rest, ssml);
    return WordTracker(segment).pauseAt(static_cast<int64_t>(text.size()));
  };
  EXPECT_EQ(pauseAfter("Hello, ", "you"), Pause::kComma);
  EXPECT_EQ(pauseAfter("(Hello.) ", "you"), Pause::kSentence);
  EXPECT_EQ(pauseAfter("Title\n\n", "you"), Pause::kSentence);
  EXPECT_EQ(pauseAfter("Hello ", "you"), Pause::kNone);
  EXPECT_EQ(pauseAfter("Hello. ", ""), Pause::kNone);
  EXPECT_EQ(pauseAfter("<p>Hello</p>", "you", true), Pause::kSentence);
  EXPECT_EQ(pauseAfter("Hello, <b>", "you</b>", true), Pause::kComma);
  EXPECT_EQ(pauseAfter("Hello. <break time=\"2s\"/>", "you", true), Pause::kNone);
  EXPECT_EQ(pauseAfter("Hello. ", "</speak>", true), Pause::kNone);
}

}  // namespace
}  // namespace speech::lxapi
