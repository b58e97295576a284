#pragma once

// Turns the synthesizer's marks of one piece of text into events on the caller's text.
//
// The synthesizer counts the code points that it reads, splits numbers and abbreviations into several words
// at one place, joins others, and is sometimes a character off behind a tag. Hosts want each written word
// once, whole, and in UTF-16 units of the text that they passed. A word is reported once the next mark bounds
// its end.
//
// An example, without tags, so that the source's offsets are the indexes:
//
//     text     o f   t h e   2 n d   o n e
//     index    0 1 2 3 4 5 6 7 8 9 10
//
//     the synthesizer's mark          what the tracker does
//     word(1, 2) at frame 1000        keeps [0, 2): "of"; it will not mark "the", which it speaks with "of"
//     word(8, 1) at frame 1700        reports "of" at 1000; from 2 to the limit 7 it finds [3, 6), "the", and
//                                     reports it at 1000 + 700 * (3 - 0) / (7 - 0) = 1300; keeps [7, 8)
//     word(12, 3) at frame 2600       goes on from 8 to the end of the letters: reports [7, 10), "2nd", at
//                                     1700; keeps [11, 14)
//     flush(14) at frame 3100         the clause ends: reports "one" at 2600

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "lxapi/bundled/segmenter.h"
#include "lxapi/lxapi.h"

namespace speech::lxapi {

/// An event that is due once `frame` samples of the speech have been heard.
struct SpeechEvent {
  uint64_t frame = 0;
  LxEventNumber number = LX_EVENT_END;
  uint32_t offset = 0;  ///< In the caller's text, in UTF-16 units.
  uint32_t length = 0;
  std::string name;  ///< Of a bookmark.
};

class WordTracker {
 public:
  explicit WordTracker(const Segment& segment) : segment_(segment) {}

  using Events = std::vector<SpeechEvent>;

  /// A word mark, its position in code points from 1; returns the words before it.
  Events word(int64_t position, int32_t count, uint64_t frame);

  /// The words that are left when something other than a word follows at `position`.
  Events flush(int64_t position, uint64_t frame);

  /// The sentence that starts at `position`, up to its punctuation.
  std::optional<SpeechEvent> sentence(int64_t position, uint64_t frame) const;

  enum class Pause { kNone, kComma, kSentence };

  /// The kind of pause that the text asks for where a clause ends, `position` characters having been read.
  /// None where the text gives the pause itself, asks for none, or has nothing left to speak.
  Pause pauseAt(int64_t position) const;

 private:
  /// A word that has begun to be spoken: its marked characters, and when.
  struct Word {
    size_t begin;
    size_t end;
    uint64_t frame;
  };

  std::optional<size_t> locate(int64_t position) const;
  Events finish(size_t limit, uint64_t frame);
  size_t endOfLetters(size_t index, size_t limit) const;
  SpeechEvent makeEvent(LxEventNumber number, size_t begin, size_t end, uint64_t frame) const;
  bool hasWordsFrom(size_t index) const;

  const Segment& segment_;
  std::optional<Word> pending_;
  size_t lastEnd_ = 0;       ///< Where the last reported word ends.
  uint32_t heardUntil_ = 0;  ///< In the caller's text: a word that was replaced by several is reported once.
};

}  // namespace speech::lxapi
