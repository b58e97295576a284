#pragma once

// Turns the synthesizer's marks of one piece of text into events on the caller's text.
//
// The synthesizer counts the code points that it reads, splits numbers and abbreviations into several words
// at one place, and is sometimes a character off behind a tag. Hosts want each written word once, whole, and
// in UTF-16 units of the text that they passed. A word is passed on when the next mark shows where it ends at
// most.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "lxapi/bundled/segmenter.h"
#include "lxapi/bundled/speech_event.h"

namespace lxapi {

class WordTracker {
 public:
  WordTracker(const Segment& segment, bool ssml) : segment_(segment), ssml_(ssml) {}

  using Events = std::vector<SpeechEvent>;

  /// A word mark; returns the words before it.
  Events word(int64_t position, int32_t count, uint64_t frame);

  /// The words that are left when something else than a word follows at `position`.
  Events flush(int64_t position, uint64_t frame);

  /// The sentence that starts at `position`, up to its punctuation.
  std::optional<SpeechEvent> sentence(int64_t position, uint64_t frame) const;

  enum class Pause { None, Comma, Sentence };

  /// The kind of pause that the text asks for where a clause ends, `position` characters having been read.
  /// None where the text says the pause itself, asks for none, or has nothing left to speak.
  Pause pauseAt(int64_t position) const;

 private:
  struct Word {
    size_t begin;
    size_t end;
    uint64_t frame;
  };

  std::optional<size_t> locate(int64_t position) const;
  Events finish(size_t limit, uint64_t frame);
  SpeechEvent makeEvent(LxEventNumber number, size_t begin, size_t end, uint64_t frame) const;
  std::optional<size_t> tagBegin(size_t index) const;
  std::optional<size_t> tagEnd(size_t index) const;
  bool hasWordsFrom(size_t index) const;

  const Segment& segment_;
  const bool ssml_;
  std::optional<Word> pending_;
  size_t lastEnd_ = 0;
  uint32_t heardUntil_ = 0;  ///< In the caller's text: a word that was replaced by several is raised once.
};

}  // namespace lxapi
