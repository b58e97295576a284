#include "lxapi/bundled/segmenter.h"

#include <algorithm>

#include "lxapi/bundled/utf8.h"

namespace lxapi {
namespace {

// In code points. Past the wanted length a piece ends with its sentence, past the longest one anywhere.
constexpr size_t kWantedLength = 300;
constexpr size_t kLongest = 1200;

// The synthesizer keeps a tag in a buffer of 500 characters; a longer one says nothing that it could follow.
constexpr size_t kLongestTag = 480;

// Deeper nesting than any document needs; what lies deeper is not opened again behind a cut.
constexpr size_t kDeepestNesting = 32;

bool isAsciiLetter(char value) { return (value >= 'A' && value <= 'Z') || (value >= 'a' && value <= 'z'); }

std::string tagName(std::string_view tag) {
  tag.remove_prefix(tag.starts_with("</") ? 2 : 1);
  std::string name;
  for (const char letter : tag) {
    if (isSpace(static_cast<unsigned char>(letter)) || letter == '/' || letter == '>') break;
    name.push_back(letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter);
  }
  return name;
}

/// Where the last `terminator` ends, or 0.
size_t endOfLast(std::string_view text, std::string_view terminator) {
  const size_t found = text.rfind(terminator);
  return found == std::string_view::npos ? 0 : found + terminator.size();
}

/// What must not reach the synthesizer: it takes control characters and private ones as commands of its own.
char32_t harmless(char32_t value) {
  const bool control = value < 0x20 || (value >= 0x7F && value < 0xA0);
  const bool isPrivate = (value >= 0xE000 && value <= 0xF8FF) || value >= 0xF0000;
  const bool lineEnd = value == '\n' || value == '\r' || value == '\t';
  return (control && !lineEnd) || isPrivate ? U' ' : value;
}

}  // namespace

void Segment::append(char32_t value, SourceRange range) {
  appendUtf8(utf8, value);
  characters.push_back(value);
  source.push_back(range);
}

Segmenter::Segmenter(std::string text, bool ssml)
    : text_(std::move(text)),
      ssml_(ssml),
      lastTagEnd_(endOfLast(text_, ">")),
      lastCommentEnd_(endOfLast(text_, "-->")) {}

std::optional<Segment> Segmenter::next() {
  if (position_ >= text_.size()) return std::nullopt;
  const size_t cut = findCut();
  const std::string_view piece = std::string_view(text_).substr(position_, cut - position_);
  Segment segment;
  segment.last = cut == text_.size();
  for (const OpenTag& tag : openTags_) appendGenerated(segment, tag.source);
  append(segment, piece);
  for (auto tag = openTags_.rbegin(); !segment.last && tag != openTags_.rend(); ++tag) {
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
  enum class Before { Other, Sentence, Clause } before = Before::Other;
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
      if (before == Before::Sentence && length >= kWantedLength) return following;
      if (before == Before::Clause) lastClause = following;
      lastSpace = following;
      before = Before::Other;
    } else if (isSentenceEnd(current.value)) {
      // The full stops of the scripts that do without spaces end a sentence by themselves.
      if (current.value >= 0x3000 && length >= kWantedLength) return following;
      before = Before::Sentence;
    } else if (isClauseEnd(current.value)) {
      before = Before::Clause;
    } else if (!isClosing(current.value)) {
      before = Before::Other;
    }
    if (length >= kLongest) return lastClause != 0 ? lastClause : lastSpace != 0 ? lastSpace : following;
    position = following;
  }
  return text.size();
}

/// The end of the tag at `position`, or 0 where the text has none.
size_t Segmenter::tagEnd(size_t position) const {
  if (!ssml_ || text_[position] != '<' || position + 1 >= text_.size()) return 0;
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
  for (size_t position = position_; position < pieceEnd;) {
    size_t end = tagEnd(position);
    const bool isTag = end != 0;
    if (isTag) {
      follow(piece.substr(position - position_, end - position));
    } else {
      end = position + decodeAt(text_, position).byteCount;
    }
    const bool omit = isTag && end - position > kLongestTag;
    for (; position < end;) {
      const CodePoint current = decodeAt(text_, position);
      const uint32_t units = utf16Length(current.value);
      const SourceRange range{utf16Position_, utf16Position_ + units};
      // A bracket that opens nothing would make the synthesizer swallow what follows as a tag.
      const bool stray = ssml_ && !isTag && current.value == '<';
      if (!omit) segment.append(stray ? U' ' : harmless(current.value), range);
      utf16Position_ += units;
      position += current.byteCount;
    }
  }
}

void Segmenter::appendGenerated(Segment& segment, std::string_view text) const {
  for (size_t position = 0; position < text.size();) {
    const CodePoint current = decodeAt(text, position);
    segment.append(harmless(current.value), {utf16Position_, utf16Position_});
    position += current.byteCount;
  }
}

/// Keeps the list of open tags.
void Segmenter::follow(std::string_view tag) {
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

}  // namespace lxapi
