// Dictionaries as files, and what they do to the text.

#include "lxapi/bundled/dictionary.h"

#include <gtest/gtest.h>

#include "lxapi/bundled/segmenter.h"
#include "lxapi/bundled/word_tracker.h"

namespace speech::lxapi {
namespace {

DictionaryList dictionary(std::string_view csv, DictionaryKind kind = DictionaryKind::kText) {
  const DictionaryResult result = parseDictionary(csv, kind);
  EXPECT_EQ(result.error, LX_OK) << "line " << result.line;
  return {result.dictionary};
}

std::string spoken(const std::string& text, const DictionaryList& substitutions, bool ssml = false) {
  return Segmenter(text, ssml, substitutions).next()->utf8;
}

TEST(Dictionary, ReplacesWholeWordsTheLongestFirst) {
  const DictionaryList words =
      dictionary("cat,dog\ncat food,kibble\nC++,see plus plus\n\xC3\xA9t\xC3\xA9,summer\nUS,United States\n");
  EXPECT_EQ(spoken("A cat, cats and cat food.", words), "A dog, cats and kibble.");
  EXPECT_EQ(spoken("cat foods", words), "dog foods");
  EXPECT_EQ(spoken("C++11 C++ tomcat", words), "see plus plus11 see plus plus tomcat");
  EXPECT_EQ(spoken("\xC3\x89T\xC3\x89! Cat", words), "summer! dog");
  EXPECT_EQ(spoken("US us", words), "United States us") << "capitals in a source mean themselves";
}

TEST(Dictionary, TheFirstOfSeveralDictionariesCounts) {
  DictionaryList words = dictionary("a b,first\n");
  words.push_back(dictionary("a b,second\nc,third\n").front());
  EXPECT_EQ(spoken("a b c", words), "first third");
}

TEST(Dictionary, TagsAreLeftAloneAndReplacementsAreText) {
  const DictionaryList words = dictionary("b,\"x < y & z\"\nspeak,talk\n");
  EXPECT_EQ(spoken("<speak>b <b>b</b> speak</speak>", words, true),
            "<speak>x &lt; y &amp; z <b>x &lt; y &amp; z</b> talk</speak>");
}

TEST(Dictionary, LexiconsBringPhonemesAndCallersCannot) {
  const DictionaryList lexicon = dictionary("tomato,t@m'A:toU\n", DictionaryKind::kPhonemes);
  const std::optional<Segment> piece = Segmenter("A tomato [[x]]", false, lexicon).next();
  EXPECT_EQ(piece->utf8, "A [[t@m'A:toU]] [ x]]");
  EXPECT_TRUE(piece->hasPhonemes);
  EXPECT_FALSE(Segmenter("A potato", false, lexicon).next()->hasPhonemes);
}

TEST(Dictionary, WordsStillPointIntoTheCallersText) {
  const std::string text = "\xF0\x9F\x98\x80 SQL\xF0\x9F\x98\x80 is";
  const Segment segment =
      *Segmenter(text, false, dictionary("SQL\xF0\x9F\x98\x80,structured query language\n")).next();
  WordTracker tracker(segment);
  using Word = std::pair<uint32_t, uint32_t>;
  std::vector<Word> words;
  for (const WordTracker::Events& events :
       {tracker.word(3, 10, 1), tracker.word(14, 5, 2), tracker.word(20, 8, 3), tracker.word(29, 2, 4),
        tracker.flush(31, 5)}) {
    for (const SpeechEvent& event : events) words.emplace_back(event.offset, event.length);
  }
  EXPECT_EQ(words, (std::vector<Word>{{3, 5}, {9, 2}})) << "three spoken words stand for one written";
}

TEST(Dictionary, EveryFaultHasItsCodeAndLine) {
  struct Case {
    std::string text;
    int32_t error;
    size_t line;
  };
  std::string duplicates;
  for (int index = 0; index < 100'000; ++index) duplicates += "same,other\n";
  std::string many;
  for (size_t index = 0; index <= kMostDictionaryEntries; ++index)
    many.append("k").append(std::to_string(index)).append(",v\n");
  for (const Case& fault :
       {Case{"", LX_ERROR_DICT_EMPTY, 0}, Case{"\xEF\xBB\xBF\n \n", LX_ERROR_DICT_EMPTY, 0},
        Case{"a,b\n\"c,d\n", LX_ERROR_DICT_FORMAT, 2}, Case{"a,b\nc\n", LX_ERROR_DICT_FORMAT, 2},
        Case{"\"a\"b,c\n", LX_ERROR_DICT_FORMAT, 1}, Case{"a,b\nc,\n", LX_ERROR_DICT_ENTRY, 2},
        Case{",b\n", LX_ERROR_DICT_ENTRY, 1}, Case{"?!,b\n", LX_ERROR_DICT_ENTRY, 1},
        Case{"\"a\nb\",c\n", LX_ERROR_DICT_ENTRY, 1},
        Case{std::string(101, 'a') + ",b\n", LX_ERROR_DICT_ENTRY, 1},
        Case{"a," + std::string(201, 'b'), LX_ERROR_DICT_ENTRY, 1}, Case{"a,b\xFF\n", LX_ERROR_BAD_TEXT, 0},
        Case{std::string("a,b\n\0c,d\n", 9), LX_ERROR_BAD_TEXT, 0},
        Case{"a,b\nc,d\na,e\n", LX_ERROR_DICT_DUPLICATE, 3}, Case{duplicates, LX_ERROR_DICT_DUPLICATE, 2},
        Case{many, LX_ERROR_DICT_SIZE, kMostDictionaryEntries + 1},
        Case{std::string(100'000'000, 'a'), LX_ERROR_DICT_SIZE, 0}}) {
    const DictionaryResult result = parseDictionary(fault.text, DictionaryKind::kText);
    EXPECT_EQ(result.error, fault.error) << fault.text.substr(0, 40);
    EXPECT_EQ(result.line, fault.line) << fault.text.substr(0, 40);
    EXPECT_EQ(result.dictionary, nullptr);
  }
}

TEST(Dictionary, ChecksTellWhyAnEntryIsRefused) {
  EXPECT_EQ(checkSource("caf\xC3\xA9"), LX_DICT_OK);
  EXPECT_EQ(checkSource(""), LX_DICT_EMPTY);
  EXPECT_EQ(checkSourceLength(std::string(100, 'x')), LX_DICT_OK);
  EXPECT_EQ(checkSourceLength(std::string(101, 'x')), LX_DICT_TOO_LONG);
  EXPECT_EQ(checkSource("\xC3"), LX_DICT_BAD_TEXT);
  EXPECT_EQ(checkSource("a\tb"), LX_DICT_CONTROL);
  EXPECT_EQ(checkSource("--"), LX_DICT_NO_WORD);
  EXPECT_EQ(checkTargetPhonemes("h@l'oU"), LX_DICT_OK);
  EXPECT_EQ(checkTargetPhonemes("a]]b"), LX_DICT_BAD_PHONEMES);
  EXPECT_EQ(checkTargetPhonemes("caf\xC3\xA9"), LX_DICT_BAD_PHONEMES);
  EXPECT_EQ(checkRecord("a,b,noun"), LX_DICT_OK);
  EXPECT_EQ(checkRecord("a"), LX_DICT_BAD_RECORD);
  EXPECT_EQ(checkRecord("\"a,b"), LX_DICT_BAD_RECORD);
  EXPECT_EQ(checkRecord("a,"), LX_DICT_EMPTY);
}

// A dictionary that blows every word up does not take the memory with it.
TEST(Dictionary, ReplacementsHaveALimitInEachPiece) {
  const DictionaryList words = dictionary("a," + std::string(200, 'b') + "\n");
  std::string text;
  for (int index = 0; index < 5000; ++index) text += "a ";
  Segmenter segmenter(text, false, words);
  while (const std::optional<Segment> piece = segmenter.next()) EXPECT_LT(piece->characters.size(), 20'000U);
}

}  // namespace
}  // namespace speech::lxapi
