#include "lxapi/bundled/segmenter.h"

#include <algorithm>
#include <limits>

#include "base/ascii.h"
#include "base/utf8.h"
#include "lxapi/bundled/characters.h"

namespace speech::lxapi {
namespace {

// In code points. Past the wanted length a piece ends with its sentence, past the longest one anywhere.
constexpr size_t kWantedLength = 300;
constexpr size_t kLongest = 1200;

// A dictionary that makes every letter a sentence makes no piece much longer than this.
constexpr size_t kMostSubstituted = 8 * kLongest;

// The synthesizer keeps a tag in a buffer of 500 characters and could not follow a longer one.
constexpr size_t kLongestTag = 480;

// Deeper nesting than any document needs; what lies deeper is not opened again behind a cut.
constexpr size_t kDeepestNesting = 32;

/// A tag whose end has not been appended yet.
constexpr size_t kOpenEnd = std::numeric_limits<size_t>::max();

std::string tagName(std::string_view tag) {
  tag.remove_prefix(tag.starts_with("</") ? 2 : 1);
  const auto endsName = [](char letter) {
    return isSpace(static_cast<unsigned char>(letter)) || letter == '/' || letter == '>';
  };
  return lowerAscii({tag.begin(), std::find_if(tag.begin(), tag.end(), endsName)});
}

bool isLexicon(const std::shared_ptr<const Dictionary>& dictionary) {
  return dictionary->kind() == DictionaryKind::kPhonemes;
}

/// Where the last `terminator` ends, or 0.
size_t endOfLast(std::string_view text, std::string_view terminator) {
  const size_t found = text.rfind(terminator);
  return found == std::string_view::npos ? 0 : found + terminator.size();
}

}  // namespace

void Segment::append(char32_t value, SourceRange range) {
  // The segmenter passes a "<" on only where it begins a tag. The synthesizer ends comments like other tags.
  const bool isInTag = !tags.empty() && tags.back().end == kOpenEnd;
  if (isSsml && value == '<' && !isInTag) tags.push_back({characters.size(), kOpenEnd});
  if (value == '>' && isInTag) tags.back().end = characters.size() + 1;
  appendUtf8(utf8, value);
  characters.push_back(value);
  source.push_back(range);
}

const TagRange* Segment::tagAt(size_t index) const {
  const auto after = std::upper_bound(tags.begin(), tags.end(), index,
                                      [](size_t wanted, const TagRange& tag) { return wanted < tag.begin; });
  if (after == tags.begin() || std::prev(after)->end <= index) return nullptr;
  return &*std::prev(after);
}

bool Segment::isMarkup(size_t index) const {
  return tagAt(index) != nullptr || (isSsml && characters[index] == '>');
}

Segmenter::Segmenter(std::string text, bool isSsml, DictionaryList dictionaries)
    : text_(std::move(text)),
      isSsml_(isSsml),
      dictionaries_(std::move(dictionaries)),
      mayHavePhonemes_(std::any_of(dictionaries_.begin(), dictionaries_.end(), isLexicon)),
      lastTagEnd_(endOfLast(text_, ">")),
      lastCommentEnd_(endOfLast(text_, "-->")) {}

std::optional<Segment> Segmenter::next() {
  if (position_ >= text_.size()) return std::nullopt;
  const size_t cut = findCut();
  const std::string_view piece = std::string_view(text_).substr(position_, cut - position_);
  Segment segment;
  segment.isSsml = isSsml_;
  segment.isLast = cut == text_.size();
  for (const OpenTag& tag : openTags_) appendGenerated(segment, tag.source);
  append(segment, piece);
  for (auto tag = openTags_.rbegin(); !segment.isLast && tag != openTags_.rend(); ++tag) {
    appendGenerated(segment, "</" + tag->name + ">");
  }
  position_ = cut;
  return segment;
}

/// Where the piece that starts at the current position ends.
size_t Segmenter::findCut() const {
  const std::string_view text = text_;
  size_t length = 0;
  size_t lastSpace = 0;
  size_t lastClause = 0;
  enum class Before { kOther, kSentence, kClause } before = Before::kOther;
  for (size_t position = position_; position < text.size();) {
    if (const size_t end = tagEnd(position); end != 0) {
      length += end - position;
      position = end;
      if (length >= kLongest) return lastSpace != 0 ? lastSpace : end;
      continue;
    }
    const CodePoint current = decodeAt(text, position);
    const size_t following = position + current.byteCount;
    ++length;
    if (isSpace(current.value)) {
      if (before == Before::kSentence && length >= kWantedLength) return following;
      if (before == Before::kClause) lastClause = following;
      lastSpace = following;
      before = Before::kOther;
    } else if (isSentenceEnd(current.value)) {
      // The full stops of the scripts that do without spaces end a sentence by themselves.
      if (current.value >= 0x3000 && length >= kWantedLength) return following;
      before = Before::kSentence;
    } else if (isClauseEnd(current.value)) {
      before = Before::kClause;
    } else if (!isClosing(current.value)) {
      before = Before::kOther;
    }
    if (length >= kLongest) return lastClause != 0 ? lastClause : lastSpace != 0 ? lastSpace : following;
    position = following;
  }
  return text.size();
}

/// The end of the tag at `position`, or 0 where the text has none.
size_t Segmenter::tagEnd(size_t position) const {
  if (!isSsml_ || text_[position] != '<' || position + 1 >= text_.size()) return 0;
  const std::string_view rest = std::string_view(text_).substr(position);
  const char marker = rest[1];
  if (!isAsciiLetter(marker) && marker != '/' && marker != '!' && marker != '?') return 0;
  const bool comment = rest.starts_with("<!--");
  if (position >= (comment ? lastCommentEnd_ : lastTagEnd_)) return 0;
  const std::string_view terminator = comment ? "-->" : ">";
  const size_t end = rest.find(terminator);
  return end == std::string_view::npos ? 0 : position + end + terminator.size();
}

void Segmenter::append(Segment& segment, std::string_view piece) {
  const size_t pieceEnd = position_ + piece.size();
  std::u32string words;
  for (size_t position = position_; position < pieceEnd;) {
    const size_t end = tagEnd(position);
    if (end == 0) {
      const CodePoint current = decodeAt(text_, position);
      words.push_back(current.value);
      position += current.byteCount;
      continue;
    }
    appendWords(segment, words);
    words.clear();
    const std::string_view tag = piece.substr(position - position_, end - position);
    trackOpenTags(tag);
    while (position < end) {
      const CodePoint current = decodeAt(text_, position);
      if (tag.size() > kLongestTag) {
        utf16Position_ += utf16Length(current.value);
      } else {
        appendOwn(segment, current.value, harmless(current.value));
      }
      position += current.byteCount;
    }
  }
  appendWords(segment, words);
}

/// Appends text that holds no tag.
void Segmenter::appendWords(Segment& segment, std::u32string_view text) {
  for (size_t index = 0; index < text.size();) {
    const char32_t before = index > 0 ? text[index - 1] : U' ';
    size_t length = 0;
    if (substitute(segment, text.substr(index), before, length)) {
      index += length;
      continue;
    }
    const char32_t value = text[index++];
    // A bracket that opens nothing would make the synthesizer swallow what follows, as a tag or as phonemes.
    const bool strayTag = isSsml_ && value == '<';
    const bool strayPhonemes = mayHavePhonemes_ && value == '[' && before == '[';
    appendOwn(segment, value, strayTag || strayPhonemes ? U' ' : harmless(value));
  }
}

/// Appends a character of the caller's, or what stands for it.
void Segmenter::appendOwn(Segment& segment, char32_t value, char32_t spoken) {
  const uint32_t units = utf16Length(value);
  segment.append(spoken, {utf16Position_, utf16Position_ + units});
  utf16Position_ += units;
}

/// Appends what a dictionary has for the start of `text`; false where none has anything.
bool Segmenter::substitute(Segment& segment, std::u32string_view text, char32_t before, size_t& length) {
  if (segment.characters.size() > kMostSubstituted) return false;
  for (const auto& dictionary : dictionaries_) {
    const std::optional<Dictionary::Match> match = dictionary->find(text, before);
    if (!match) continue;
    length = match->length;
    uint32_t units = 0;
    for (const char32_t value : text.substr(0, length)) units += utf16Length(value);
    const SourceRange range{utf16Position_, utf16Position_ + units};
    utf16Position_ = range.end;
    const auto put = [&](std::u32string_view characters) {
      for (const char32_t value : characters) segment.append(value, range);
    };
    if (isLexicon(dictionary)) {
      segment.hasPhonemes = true;
      put(U"[[");
    }
    for (size_t position = 0; position < match->target.size();) {
      const CodePoint current = decodeAt(match->target, position);
      position += current.byteCount;
      if (isSsml_ && current.value == '<') {
        put(U"&lt;");
      } else if (isSsml_ && current.value == '&') {
        put(U"&amp;");
      } else {
        segment.append(harmless(current.value), range);
      }
    }
    if (isLexicon(dictionary)) put(U"]]");
    return true;
  }
  return false;
}

void Segmenter::appendGenerated(Segment& segment, std::string_view text) const {
  for (size_t position = 0; position < text.size();) {
    const CodePoint current = decodeAt(text, position);
    segment.append(harmless(current.value), {utf16Position_, utf16Position_});
    position += current.byteCount;
  }
}

/// Keeps the list of open tags up to date.
void Segmenter::trackOpenTags(std::string_view tag) {
  if (tag[1] == '!' || tag[1] == '?' || tag.ends_with("/>") || tag.size() > kLongestTag) return;
  std::string name = tagName(tag);
  if (tag[1] != '/') {
    if (openTags_.size() < kDeepestNesting) openTags_.push_back({std::move(name), tag});
    return;
  }
  const auto opened = std::find_if(openTags_.rbegin(), openTags_.rend(),
                                   [&name](const OpenTag& open) { return open.name == name; });
  if (opened != openTags_.rend()) openTags_.erase(std::next(opened).base());
}

}  // namespace speech::lxapi
