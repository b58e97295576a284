#include "lxapi/bundled/word_tracker.h"

#include <algorithm>
#include <string_view>

#include "lxapi/bundled/characters.h"

namespace speech::lxapi {
namespace {

// How many characters the synthesizer's positions are off at most.
constexpr size_t kPositionSlack = 2;

// The most characters before the semicolon of an entity such as "&amp;".
constexpr size_t kLongestEntity = 10;

bool isApostrophe(char32_t value) { return value == '\'' || value == 0x2019; }

}  // namespace

WordTracker::Events WordTracker::word(int64_t position, int32_t count, uint64_t frame) {
  const std::optional<size_t> begin = locate(position);
  if (!begin) return {};
  const std::u32string& text = segment_.characters;
  const size_t wordCount = static_cast<size_t>(std::max(count, 1));
  size_t end = *begin + std::min(wordCount, text.size() - *begin);
  if (segment_.isSsml && text[*begin] == '&') {
    const size_t semicolon = text.find(U';', *begin);
    if (semicolon <= *begin + kLongestEntity) end = semicolon + 1;
  }
  if (pending_ && *begin < pending_->end) return {};
  if (segment_.source[*begin].begin < heardUntil_) return {};
  Events before = finish(*begin, frame);
  pending_ = Word{*begin, end, frame};
  heardUntil_ = segment_.source[*begin].end;
  return before;
}

WordTracker::Events WordTracker::flush(int64_t position, uint64_t frame) {
  const size_t length = segment_.characters.size();
  size_t limit = std::min(static_cast<size_t>(std::max<int64_t>(position, 0)), length);
  // A mark right behind a word may lie a letter or two inside it.
  if (pending_) limit = std::max(limit, endOfLetters(pending_->end, length));
  return finish(limit, frame);
}

/// Index of the character that a word mark means, or nothing where no word is.
std::optional<size_t> WordTracker::locate(int64_t position) const {
  const std::u32string& text = segment_.characters;
  if (position < 1 || static_cast<uint64_t>(position) > text.size()) return std::nullopt;
  size_t index = static_cast<size_t>(position) - 1;
  if (isSpace(text[index]) || segment_.isMarkup(index)) return std::nullopt;
  if (segment_.isSsml && text[index] == ';') {
    const size_t from = index > kLongestEntity ? index - kLongestEntity : 0;
    const size_t ampersand = text.rfind(U'&', index);
    if (ampersand != std::u32string::npos && ampersand >= from) index = ampersand;
  }
  const size_t bound = std::max(lastEnd_, pending_ ? pending_->end : 0);
  for (size_t step = 0; step < kPositionSlack && index > bound; ++step, --index) {
    if (!isWordCharacter(text[index]) || !isWordCharacter(text[index - 1])) break;
  }
  if (index < bound || segment_.source[index].begin == segment_.source[index].end) return std::nullopt;
  return index;
}

/// Ends the pending word at the end of its letters, and adds the words from there up to `limit`, which is
/// reached at `frame`: the time between the two is shared among them by their places.
WordTracker::Events WordTracker::finish(size_t limit, uint64_t frame) {
  if (!pending_) return {};
  const std::u32string& text = segment_.characters;
  const Word word = *pending_;
  pending_.reset();
  size_t end = endOfLetters(word.end, limit);
  while (end > word.begin + 1 && (isSpace(text[end - 1]) || segment_.isMarkup(end - 1))) --end;
  lastEnd_ = end;
  Events events{makeEvent(LX_EVENT_WORD, word.begin, end, word.frame)};

  const uint64_t duration = frame - std::min(word.frame, frame);
  for (size_t index = end; index < limit;) {
    if (const TagRange* const tag = segment_.tagAt(index)) {
      index = tag->end;
    } else if (!isWordCharacter(text[index])) {
      ++index;
    } else {
      // A mark other than a word's may lie a letter or two inside the word that follows it.
      const size_t runEnd = endOfLetters(index, limit);
      if (runEnd == limit && limit < text.size() && isWordCharacter(text[limit])) break;
      if (segment_.source[index].begin >= heardUntil_) {
        const uint64_t elapsed = duration * (index - word.begin) / (limit - word.begin);
        events.push_back(makeEvent(LX_EVENT_WORD, index, runEnd, word.frame + elapsed));
        heardUntil_ = segment_.source[index].end;
      }
      index = lastEnd_ = runEnd;
    }
  }
  return events;
}

/// Where the letters that go on at `index` end; an apostrophe between two of them belongs to them.
size_t WordTracker::endOfLetters(size_t index, size_t limit) const {
  const std::u32string& text = segment_.characters;
  while (index < limit) {
    const bool isJoint = isApostrophe(text[index]) && index + 1 < limit && isWordCharacter(text[index + 1]);
    if (!isWordCharacter(text[index]) && !isJoint) break;
    ++index;
  }
  return index;
}

SpeechEvent WordTracker::makeEvent(LxEventNumber number, size_t begin, size_t end, uint64_t frame) const {
  SpeechEvent event;
  event.frame = frame;
  event.number = number;
  event.offset = segment_.source[begin].begin;
  event.length = std::max(segment_.source[end - 1].end, event.offset) - event.offset;
  return event;
}

std::optional<SpeechEvent> WordTracker::sentence(int64_t position, uint64_t frame) const {
  const std::optional<size_t> begin = locate(position);
  if (!begin) return std::nullopt;
  const std::u32string& text = segment_.characters;
  size_t end = *begin + 1;
  bool hasEnded = false;
  for (size_t index = *begin; index < text.size() && !(hasEnded && isSpace(text[index])); ++index) {
    if (const TagRange* const tag = segment_.tagAt(index)) {
      index = tag->end - 1;
      continue;
    }
    if (!isSpace(text[index])) end = index + 1;
    hasEnded = isSentenceEnd(text[index]) || (hasEnded && isClosing(text[index]));
  }
  return makeEvent(LX_EVENT_SENTENCE, *begin, end, frame);
}

WordTracker::Pause WordTracker::pauseAt(int64_t position) const {
  const std::u32string& text = segment_.characters;
  size_t index = std::min(static_cast<size_t>(std::max<int64_t>(position, 0)), text.size());
  if (segment_.isLast && !hasWordsFrom(index)) return Pause::kNone;
  size_t lineEnds = 0;
  while (index > 0) {
    const char32_t before = text[index - 1];
    if (const TagRange* const tag = segment_.tagAt(index - 1)) {
      const std::u32string_view rest = std::u32string_view(text).substr(tag->begin);
      if (rest.starts_with(U"<break")) return Pause::kNone;
      for (const std::u32string_view structure : {U"<p>", U"</p", U"<s>", U"</s"}) {
        if (rest.starts_with(structure)) return Pause::kSentence;
      }
      index = tag->begin;
      continue;
    }
    if (isSentenceEnd(before)) return Pause::kSentence;
    if (isClauseEnd(before)) return Pause::kComma;
    if (before == '\n' && ++lineEnds == 2) return Pause::kSentence;
    if (!isSpace(before) && !isClosing(before)) return Pause::kNone;
    --index;
  }
  return Pause::kNone;
}

bool WordTracker::hasWordsFrom(size_t index) const {
  const std::u32string& text = segment_.characters;
  while (index < text.size()) {
    if (const TagRange* const tag = segment_.tagAt(index)) {
      index = tag->end;
    } else if (isWordCharacter(text[index++])) {
      return true;
    }
  }
  return false;
}

}  // namespace speech::lxapi
