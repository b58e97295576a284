// A text on its way to the synthesizer: cut into pieces, with words replaced, and its words found again.

#include <gtest/gtest.h>

#include <array>

#include "base/utf8.h"
#include "lxapi/bundled/dictionary.h"
#include "lxapi/bundled/segmenter.h"
#include "lxapi/bundled/word_tracker.h"

namespace speech::lxapi {
namespace {

std::string repeated(const std::string& text, size_t count) {
  std::string result;
  for (size_t index = 0; index < count; ++index) result += text;
  return result;
}

/// The pieces of a text, which must hold the caller's characters one after the other with their places in
/// UTF-16 units, beside the tags that they open and close again.
std::vector<Segment> segments(const std::string& text, bool isSsml = false) {
  Segmenter segmenter(text, isSsml);
  std::vector<Segment> pieces;
  std::string own;
  uint32_t position = 0;
  while (std::optional<Segment> piece = segmenter.next()) {
    for (size_t index = 0; index < piece->characters.size(); ++index) {
      const auto [begin, end] = piece->source.at(index);
      EXPECT_EQ(begin, position);
      if (end != begin) appendUtf8(own, piece->characters[index]);
      position = end;
      EXPECT_TRUE(end == begin || end - begin == utf16Length(piece->characters[index]));
    }
    pieces.push_back(*std::move(piece));
    EXPECT_EQ(pieces.back().isLast, own.size() == text.size());
  }
  EXPECT_EQ(own, text);
  return pieces;
}

std::string spoken(const std::string& text, const DictionaryList& dictionaries, bool isSsml = false) {
  return Segmenter(text, isSsml, dictionaries).next()->utf8;
}

TEST(Segmenter, CutsBetweenSentencesElseAtCommasSpacesOrAnywhere) {
  const std::string chinese = "\xE4\xBD\xA0\xE5\xA5\xBD\xE3\x80\x82";
  using Case = std::tuple<std::string, std::string, size_t>;
  for (const auto& [text, end, longest] :
       {Case(repeated("One \xF0\x9F\x98\x80 two (\"four five\"). ", 200), ". ", 329),
        Case(repeated(chinese, 500), chinese.substr(6), 302),
        Case(repeated("word word words, ", 700), ", ", 1200), Case(repeated("word ", 2000), " ", 1200),
        Case(repeated("\xC3\xA9", 9000), "\xC3\xA9", 1200)}) {
    for (const Segment& piece : segments(text)) {
      EXPECT_LE(piece.characters.size(), longest);
      EXPECT_TRUE(piece.utf8.ends_with(end)) << piece.utf8;
    }
  }
  EXPECT_TRUE(segments("").empty());
}

TEST(Segmenter, CutsNoTagAndOpensAgainWhatThePieceBeforeLeftOpen) {
  const std::string begin = "<speak xml:lang=\"de\"><prosody rate=\"slow\">";
  const std::vector<Segment> pieces = segments(
      begin + repeated("Ein Satz <b>hier</b><mark name=\"a. b. c.\"/>. ", 100) + "</prosody>x</speak>", true);
  ASSERT_GT(pieces.size(), 2U);
  for (const Segment& piece : pieces) {
    EXPECT_TRUE(piece.utf8.starts_with(begin + "Ein")) << piece.utf8;
    EXPECT_TRUE(piece.isLast || piece.utf8.ends_with(". </prosody></speak>")) << piece.utf8;
  }
}

TEST(Segmenter, BrokenSsmlIsTextOrLeftOutAndCommandsOfTheSynthesizerAreBlanks) {
  EXPECT_EQ(spoken("1 < 2 <b never closed", {}, true), "1   2  b never closed");
  EXPECT_EQ(spoken("a<x " + std::string(1000, 'y') + ">b", {}, true), "ab");
  EXPECT_EQ(spoken("</p></p>a</speak>", {}, true), "</p></p>a</speak>");
  EXPECT_EQ(spoken("a\x01 9P\x7F\xEE\x80\x80z\n", {}), "a  9P  z\n");
  // Each of these took time by the square of its length in a careless version: they are here to end.
  for (const char* const part : {"<a", "<!--", "<a>", "</a>", "<a>. ", "&", "<"}) {
    Segmenter segmenter(repeated(part, 100'000), true);
    size_t characters = 0;
    while (const std::optional<Segment> piece = segmenter.next()) characters += piece->characters.size();
    EXPECT_GE(characters, 100'000U) << part;
  }
}

DictionaryList dictionary(std::string_view csv, DictionaryKind kind = DictionaryKind::kText) {
  const DictionaryResult result = parseDictionary(csv, kind);
  EXPECT_EQ(result.error, LX_OK) << "line " << result.line;
  return {result.dictionary};
}

TEST(Dictionary, ReplacesWholeWordsTheLongestFirstAndLeavesTagsAlone) {
  DictionaryList words = dictionary(
      "cat,dog\ncat food,kibble\nC++,see plus plus\n\xC3\xA9t\xC3\xA9,summer\nUS,United States\nb,x < &\n");
  words.push_back(dictionary("cat food,second\ntomcat,third\n").front());
  EXPECT_EQ(spoken("A cat, cats and cat food.", words), "A dog, cats and kibble.");
  EXPECT_EQ(spoken("cat foods", words), "dog foods");
  EXPECT_EQ(spoken("C++11 C++ tomcat", words), "see plus plus11 see plus plus third");
  EXPECT_EQ(spoken("\xC3\x89T\xC3\x89! Cat", words), "summer! dog");
  EXPECT_EQ(spoken("US us", words), "United States us") << "capitals in a source mean themselves";
  EXPECT_EQ(spoken("<b>b</b>", words, true), "<b>x &lt; &amp;</b>");
  const DictionaryList lexicon = dictionary("tomato,t@m'A:toU\n", DictionaryKind::kPhonemes);
  EXPECT_EQ(spoken("A tomato [[x]]", lexicon), "A [[t@m'A:toU]] [ x]]") << "callers cannot bring phonemes";
  // A dictionary that blows every word up does not take the memory with it.
  std::string text;
  for (int index = 0; index < 1200; ++index) text += "a ";
  EXPECT_LT(spoken(text, dictionary("a," + std::string(200, 'b') + "\n")).size(), 20'000U);
}

TEST(Dictionary, EveryFaultHasItsCodeAndLine) {
  std::string duplicates, many;
  for (int index = 0; index < 100'000; ++index) duplicates += "same,other\n";
  for (size_t index = 0; index <= kMostDictionaryEntries; ++index)
    many.append("k").append(std::to_string(index)).append(",v\n");
  using Case = std::tuple<std::string, int32_t, size_t>;
  for (const auto& [text, error, line] :
       {Case("\xEF\xBB\xBF\n \n", LX_ERROR_DICT_EMPTY, 0), Case("a,b\n\"c,d\n", LX_ERROR_DICT_FORMAT, 2),
        Case("a,b\nc\n", LX_ERROR_DICT_FORMAT, 2), Case("\"a\"b,c\n", LX_ERROR_DICT_FORMAT, 1),
        Case("a,b\nc,\n", LX_ERROR_DICT_ENTRY, 2), Case("a,b\xFF\n", LX_ERROR_BAD_TEXT, 0),
        Case({"a,b\n\0c,d\n", 9}, LX_ERROR_BAD_TEXT, 0), Case("a,b\nc,d\na,e\n", LX_ERROR_DICT_DUPLICATE, 3),
        Case(duplicates, LX_ERROR_DICT_DUPLICATE, 2),
        Case(many, LX_ERROR_DICT_SIZE, kMostDictionaryEntries + 1),
        Case(std::string(kMostDictionaryBytes + 1, 'a'), LX_ERROR_DICT_SIZE, 0)}) {
    const DictionaryResult result = parseDictionary(text, DictionaryKind::kText);
    EXPECT_EQ(std::tuple(result.error, result.line), std::tuple(error, line)) << text.substr(0, 40);
  }
}

TEST(Dictionary, ChecksSayWhyAnEntryIsRefused) {
  const std::string longest(100, 'x');
  using Case = std::pair<std::string, LxDictCheck>;
  for (const auto& [record, check] :
       {Case("a,b,noun", LX_DICT_OK), Case("a", LX_DICT_BAD_RECORD), Case("\"a,b", LX_DICT_BAD_RECORD),
        Case("a,", LX_DICT_EMPTY), Case("a\tb,c", LX_DICT_CONTROL), Case("?!,b", LX_DICT_NO_WORD),
        Case("\xC3,b", LX_DICT_BAD_TEXT), Case("\xC3\xA9,b", LX_DICT_OK), Case(longest + ",b", LX_DICT_OK),
        Case(longest + "x,b", LX_DICT_TOO_LONG), Case("a,x" + longest + longest, LX_DICT_TOO_LONG)}) {
    EXPECT_EQ(checkRecord(record), check) << record;
  }
  EXPECT_EQ(checkSourceLength(longest), LX_DICT_OK);
  EXPECT_EQ(checkSourceLength(longest + "x"), LX_DICT_TOO_LONG);
  EXPECT_EQ(checkTargetPhonemes("h@l'oU"), LX_DICT_OK);
  EXPECT_EQ(checkTargetPhonemes("a]]b"), LX_DICT_BAD_PHONEMES);
  EXPECT_EQ(checkTargetPhonemes("caf\xC3\xA9"), LX_DICT_BAD_PHONEMES);
}

using Marks =
    std::vector<std::array<int, 3>>;  // position from 1, count, frame, as the synthesizer reports words
using Words = std::vector<std::tuple<uint32_t, uint32_t, uint64_t>>;  // offset, length, frame

Words track(const Segment& segment, const Marks& marks) {
  WordTracker tracker(segment);
  Words words;
  const auto keep = [&](const WordTracker::Events& events) {
    for (const SpeechEvent& event : events) words.emplace_back(event.offset, event.length, event.frame);
  };
  for (const auto& [position, count, frame] : marks)
    keep(tracker.word(position, count, static_cast<uint64_t>(frame)));
  keep(tracker.flush(static_cast<int64_t>(segment.characters.size()), 9000));
  return words;
}

TEST(WordTracker, WrittenWordsAreReportedWholeAndOnce) {
  using Case = std::tuple<std::string, Marks, std::vector<std::string>, bool>;
  for (const auto& [text, marks, expected, isSsml] : {
           Case("2nd isn't x", {{1, 1}, {5, 3}, {11, 1}}, {"2nd", "isn't", "x"}, false),
           Case("10km", {{1, 2}, {3, 2}}, {"10", "km"}, false),  // spoken apart, so they stay apart
           Case("a 3.14 b", {{1, 1}, {3, 4}, {4, 4}, {4, 4}, {8, 1}}, {"a", "3.14", "b"}, false),
           Case("a b", {{1, 1}, {2, 1}, {3, 1}, {4, 1}, {0, 1}, {-5, 1}, {99, 1}}, {"a", "b"}, false),
           Case("a <break/> or <i>b</i> c", {{1, 1}, {3, 1}, {9, 1}, {24, 1}}, {"a", "or", "b", "c"}, true),
           Case("<p>Yes</p> &amp; no", {{5, 2}, {16, 1}, {18, 2}}, {"Yes", "&amp;", "no"}, true),
           Case("<p>1 > a</p>", {{4, 1}, {6, 1}, {8, 1}}, {"1", "a"}, true),
       }) {
    std::vector<std::string> words;
    for (const auto& [offset, length, frame] : track(*Segmenter(text, isSsml).next(), marks))
      words.push_back(text.substr(offset, length));
    EXPECT_EQ(words, expected) << text;
  }
}

TEST(WordTracker, WordsPointIntoTheCallersTextAndThoseThatArePassedOverShareTheTime) {
  const Segment plain = *Segmenter("\xF0\x9D\x92\xB3o the 2nd \xC3\xA9ne", false).next();
  EXPECT_EQ(track(plain, {{1, 2, 1000}, {8, 1, 1700}, {12, 3, 2600}}),
            (Words{{0, 3, 1000}, {4, 3, 1300}, {8, 3, 1700}, {12, 3, 2600}}));
  const DictionaryList words = dictionary("SQL\xF0\x9F\x98\x80,structured query language\n");
  const Segment replaced = *Segmenter("\xF0\x9F\x98\x80 SQL\xF0\x9F\x98\x80 is", false, words).next();
  EXPECT_EQ(track(replaced, {{3, 10, 1}, {14, 5, 2}, {20, 8, 3}, {29, 2, 4}}), (Words{{3, 5, 1}, {9, 2, 4}}))
      << "three spoken words stand for one written";
}

TEST(WordTracker, TheTextSaysWhichPauseItWants) {
  using enum WordTracker::Pause;
  const auto pauseBetween = [](const std::string& text, const std::string& rest, bool isSsml) {
    const Segment segment = *Segmenter(text + rest, isSsml).next();
    return WordTracker(segment).pauseAt(static_cast<int64_t>(text.size()));
  };
  EXPECT_EQ(pauseBetween("Hello, ", "you", false), kComma);
  EXPECT_EQ(pauseBetween("(Hello.) ", "you", false), kSentence);
  EXPECT_EQ(pauseBetween("Title\n\n", "you", false), kSentence);
  EXPECT_EQ(pauseBetween("Hello ", "you", false), kNone);
  EXPECT_EQ(pauseBetween("Hello\n", "you", false), kNone);
  EXPECT_EQ(pauseBetween("Hello. ", "", false), kNone);
  EXPECT_EQ(pauseBetween("<p>Hello</p>", "you", true), kSentence);
  EXPECT_EQ(pauseBetween("Hello, <b>", "you</b>", true), kComma);
  EXPECT_EQ(pauseBetween("Hello. <break time=\"2s\"/>", "you", true), kNone);
  EXPECT_EQ(pauseBetween("Hello. ", "</speak>", true), kNone);
}

}  // namespace
}  // namespace speech::lxapi
