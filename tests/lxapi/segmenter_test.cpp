#include "lxapi/bundled/segmenter.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "base/utf8.h"

namespace speech::lxapi {
namespace {

std::vector<Segment> segments(const std::string& text, bool ssml = false) {
  Segmenter segmenter(text, ssml);
  std::vector<Segment> result;
  while (std::optional<Segment> segment = segmenter.next()) result.push_back(*std::move(segment));
  return result;
}

std::string repeated(const std::string& text, size_t count) {
  std::string result;
  for (size_t index = 0; index < count; ++index) result += text;
  return result;
}

/// The characters of the caller's own, with what the pieces opened and closed left out.
std::string original(const std::vector<Segment>& pieces) {
  std::string result;
  for (const Segment& piece : pieces) {
    for (size_t index = 0; index < piece.characters.size(); ++index) {
      if (piece.source[index].begin != piece.source[index].end) appendUtf8(result, piece.characters[index]);
    }
  }
  return result;
}

TEST(Segmenter, PiecesPutTogetherAreTheTextInUtf16Units) {
  const std::string text =
      repeated("A first sentence, with \xF0\x9F\x98\x80 in it. And \xC3\xA9t\xC3\xA9! ", 50);
  const std::vector<Segment> pieces = segments(text);
  ASSERT_GT(pieces.size(), 3U);
  EXPECT_EQ(original(pieces), text);
  uint32_t position = 0;
  for (const Segment& piece : pieces) {
    ASSERT_EQ(piece.characters.size(), piece.source.size());
    for (size_t index = 0; index < piece.source.size(); ++index) {
      EXPECT_EQ(piece.source[index].begin, position);
      position += utf16Length(piece.characters[index]);
      EXPECT_EQ(piece.source[index].end, position);
    }
    EXPECT_EQ(piece.isLast, &piece == &pieces.back());
  }
}

TEST(Segmenter, CutsBetweenSentencesElseAtCommasSpacesOrAnywhere) {
  const std::string chinese = "\xE4\xBD\xA0\xE5\xA5\xBD\xE3\x80\x82";
  struct Case {
    std::string text, end;
    size_t longest;
  };
  for (const auto& [text, end, longest] : {Case{repeated("One two three (\"four five\"). ", 200), ". ", 329},
                                           {repeated(chinese, 500), chinese.substr(6), 302},
                                           {repeated("word word words, ", 700), ", ", 1200},
                                           {repeated("word ", 2000), " ", 1200},
                                           {repeated("\xC3\xA9", 9000), "\xC3\xA9", 1200}}) {
    const std::vector<Segment> pieces = segments(text);
    EXPECT_EQ(original(pieces), text);
    for (const Segment& piece : pieces) {
      EXPECT_LE(piece.characters.size(), longest);
      EXPECT_TRUE(piece.utf8.ends_with(end)) << piece.utf8;
    }
  }
}

TEST(Segmenter, CommandsOfTheSynthesizerBecomeSpaces) {
  EXPECT_EQ(segments("a\x01 9P\x7F\xEE\x80\x80z\n").front().utf8, "a  9P  z\n");
  EXPECT_TRUE(segments("").empty());
}

TEST(Segmenter, APieceOpensAgainWhatThePieceBeforeLeftOpen) {
  const std::string text = "<speak xml:lang=\"de\"><prosody rate=\"slow\">" +
                           repeated("Ein Satz <b>hier</b>. ", 100) + "</prosody>x</speak>";
  const std::vector<Segment> pieces = segments(text, true);
  ASSERT_GT(pieces.size(), 2U);
  EXPECT_EQ(original(pieces), text);
  EXPECT_TRUE(pieces[0].utf8.ends_with("</prosody></speak>"));
  for (size_t index = 1; index < pieces.size(); ++index) {
    EXPECT_TRUE(pieces[index].utf8.starts_with("<speak xml:lang=\"de\"><prosody rate=\"slow\">Ein"))
        << pieces[index].utf8;
  }
}

TEST(Segmenter, NeverCutsATag) {
  for (const Segment& piece : segments(repeated("x <mark name=\"a. b. c. d\"/>", 500), true)) {
    EXPECT_EQ(std::ranges::count(piece.utf8, '<'), std::ranges::count(piece.utf8, '>'));
  }
}

TEST(Segmenter, MalformedSsmlIsTextOrLeftOut) {
  EXPECT_EQ(segments("1 < 2 <b never closed", true).front().utf8, "1   2  b never closed");
  EXPECT_EQ(segments("a<x " + std::string(1000, 'y') + ">b", true).front().utf8, "ab");
  EXPECT_EQ(segments("</p></p>a</speak>", true).front().utf8, "</p></p>a</speak>");
}

// Each of these took time by the square of its length in a careless version: they are here to end.
TEST(Segmenter, HostileSsmlIsCutInOneGo) {
  for (const char* const part : {"<a", "<!--", "<a>", "</a>", "<a>. ", "&", "<"}) {
    const std::string text = repeated(part, 300'000 / std::string_view(part).size());
    size_t characters = 0;
    Segmenter segmenter(text, true);
    while (const std::optional<Segment> segment = segmenter.next()) characters += segment->characters.size();
    EXPECT_GE(characters, text.size()) << part;
  }
}

}  // namespace
}  // namespace speech::lxapi
