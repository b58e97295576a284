#include "lxapi/bundled/word_tracker.h"

#include <algorithm>
#include <string_view>

#include "lxapi/bundled/utf8.h"

namespace lxapi {
namespace {

// How far off the synthesizer's positions are at most, in characters, and how long an entity such as "&amp;"
// is.
constexpr size_t kPositionSlack = 2;
constexpr size_t kLongestEntity = 10;

bool isApostrophe(char32_t value) { return value == '\'' || value == 0x2019; }

bool startsWith(std::u32string_view text, std::u32string_view prefix) { return text.starts_with(prefix); }

}  // namespace

WordTracker::Events WordTracker::word(int64_t position, int32_t count, uint64_t frame) {
  const std::optional<size_t> begin = locate(position);
  if (!begin) return {};
  const std::u32string& text = segment_.characters;
  const size_t wordCount = static_cast<size_t>(std::max(count, 1));
  size_t end = *begin + std::min(wordCount, text.size() - *begin);
  if (ssml_ && text[*begin] == '&') {
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
  const size_t limit = static_cast<size_t>(std::max<int64_t>(position, 0));
  return finish(std::min(limit, segment_.characters.size()), frame);
}

/// Index of the character that a word mark means, or nothing where no word is.
std::optional<size_t> WordTracker::locate(int64_t position) const {
  const std::u32string& text = segment_.characters;
  if (position < 1 || static_cast<uint64_t>(position) > text.size()) return std::nullopt;
  size_t index = static_cast<size_t>(position) - 1;
  if (isSpace(text[index]) || tagBegin(index)) return std::nullopt;
  if (ssml_ && text[index] == ';') {
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

/// Ends the waiting word at the end of its letters, and adds the words from there up to `limit`, which is
/// reached at `frame`.
WordTracker::Events WordTracker::finish(size_t limit, uint64_t frame) {
  if (!pending_) return {};
  const std::u32string& text = segment_.characters;
  const Word word = *pending_;
  pending_.reset();
  limit = std::max(limit, word.end);
  const auto endOfLetters = [&](size_t index) {
    while (index < limit) {
      const bool joined = isApostrophe(text[index]) && index + 1 < limit && isWordCharacter(text[index + 1]);
      if (!isWordCharacter(text[index]) && !joined) break;
      ++index;
    }
    return index;
  };
  size_t end = endOfLetters(word.end);
  while (end > word.begin + 1 && (isSpace(text[end - 1]) || tagBegin(end - 1))) --end;
  lastEnd_ = end;
  Events events{makeEvent(LX_EVENT_WORD, word.begin, end, word.frame)};

  for (size_t index = end; index < limit;) {
    if (const std::optional<size_t> tag = tagEnd(index)) {
      index = *tag;
    } else if (!isWordCharacter(text[index])) {
      ++index;
    } else {
      // A mark other than a word's may lie a letter or two inside the word that follows it.
      const size_t runEnd = endOfLetters(index);
      if (runEnd == limit && limit < text.size() && isWordCharacter(text[limit])) break;
      const uint64_t elapsed =
          (frame - std::min(word.frame, frame)) * (index - word.begin) / (limit - word.begin);
      if (segment_.source[index].begin >= heardUntil_) {
        events.push_back(makeEvent(LX_EVENT_WORD, index, runEnd, word.frame + elapsed));
        heardUntil_ = segment_.source[index].end;
      }
      index = lastEnd_ = runEnd;
    }
  }
  return events;
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
  bool ended = false;
  for (size_t index = *begin; index < text.size() && !(ended && isSpace(text[index])); ++index) {
    if (const std::optional<size_t> tag = tagEnd(index)) {
      index = *tag - 1;
      continue;
    }
    if (!isSpace(text[index])) end = index + 1;
    ended = isSentenceEnd(text[index]) || (ended && isClosing(text[index]));
  }
  return makeEvent(LX_EVENT_SENTENCE, *begin, end, frame);
}

WordTracker::Pause WordTracker::pauseAt(int64_t position) const {
  const std::u32string& text = segment_.characters;
  size_t index = std::min(static_cast<size_t>(std::max<int64_t>(position, 0)), text.size());
  if (segment_.last && !hasWordsFrom(index)) return Pause::None;
  size_t lineEnds = 0;
  while (index > 0) {
    const char32_t before = text[index - 1];
    if (const std::optional<size_t> tag = tagBegin(index - 1)) {
      const std::u32string_view rest = std::u32string_view(text).substr(*tag);
      if (startsWith(rest, U"<break")) return Pause::None;
      for (const std::u32string_view structure : {U"<p>", U"</p", U"<s>", U"</s"}) {
        if (startsWith(rest, structure)) return Pause::Sentence;
      }
      index = *tag;
      continue;
    }
    if (isSentenceEnd(before)) return Pause::Sentence;
    if (isClauseEnd(before)) return Pause::Comma;
    if (before == '\n' && ++lineEnds == 2) return Pause::Sentence;
    if (!isSpace(before) && !isClosing(before)) return Pause::None;
    --index;
  }
  return Pause::None;
}

/// Where the tag begins that holds the character at `index`, or nothing outside of tags.
std::optional<size_t> WordTracker::tagBegin(size_t index) const {
  if (!ssml_) return std::nullopt;
  const std::u32string& text = segment_.characters;
  if (text[index] != '>' && text[index] != '<') {
    const size_t bracket = text.find_last_of(U"<>", index);
    if (bracket == std::u32string::npos || text[bracket] == '>') return std::nullopt;
    return bracket;
  }
  const size_t begin = text.rfind(U'<', index);
  return begin == std::u32string::npos ? std::nullopt : std::optional(begin);
}

/// Where the tag ends that starts at `index`, or nothing where none starts.
std::optional<size_t> WordTracker::tagEnd(size_t index) const {
  const std::u32string& text = segment_.characters;
  if (!ssml_ || text[index] != '<') return std::nullopt;
  const size_t end = text.find(U'>', index);
  return end == std::u32string::npos ? text.size() : end + 1;
}

bool WordTracker::hasWordsFrom(size_t index) const {
  const std::u32string& text = segment_.characters;
  if (index < text.size()) index = tagBegin(index).value_or(index);
  while (index < text.size()) {
    if (const std::optional<size_t> tag = tagEnd(index)) {
      index = *tag;
    } else if (isWordCharacter(text[index++])) {
      return true;
    }
  }
  return false;
}

}  // namespace lxapi
