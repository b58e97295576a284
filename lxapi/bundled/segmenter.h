#pragma once

// Cuts a long text into pieces that the synthesizer takes one at a time.
//
// The synthesizer renders a piece in one go, so the size of a piece bounds the memory in use and the time for
// which one speech keeps the synthesizer from the others. Cuts fall between sentences; only text without any
// is cut at a comma, at a space or, as a last resort, between two characters.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "lxapi/bundled/dictionary.h"

namespace speech::lxapi {

/// A range of the caller's text, in UTF-16 units.
struct SourceRange {
  uint32_t begin;
  uint32_t end;
};

/// A tag's place among the characters of a segment.
struct TagRange {
  size_t begin;
  size_t end;
};

struct Segment {
  std::string utf8;
  std::u32string characters;  ///< The code points of `utf8`.
  /// Where each code point comes from. What the caller did not write is an empty range.
  std::vector<SourceRange> source;
  /// The tags as the synthesizer sees them, each from its "<" to the next ">", in order.
  std::vector<TagRange> tags;
  bool isSsml = false;
  bool isLast = false;       ///< The last piece of the text.
  bool hasPhonemes = false;  ///< `utf8` holds phonemes between "[[" and "]]".

  void append(char32_t value, SourceRange range);

  /// The tag that holds the character at `index`, or null.
  const TagRange* tagAt(size_t index) const;

  /// True inside of tags and for a ">" that ends none: neither is a word.
  bool isMarkup(size_t index) const;
};

class Segmenter {
 public:
  /// @param text  valid UTF-8
  /// @param isSsml  the text is an SSML document: tags are never cut, and a piece opens again what the pieces
  ///                before it left open
  /// @param dictionaries  what is spoken instead of the text's own words
  Segmenter(std::string text, bool isSsml, DictionaryList dictionaries = {});
  Segmenter(const Segmenter&) = delete;
  Segmenter& operator=(const Segmenter&) = delete;

  /// The next piece, or nothing at the end. An empty text has no piece.
  std::optional<Segment> next();

 private:
  struct OpenTag {
    std::string name;
    std::string_view source;
  };

  size_t findCut() const;
  size_t tagEnd(size_t position) const;
  void append(Segment& segment, std::string_view piece);
  void appendWords(Segment& segment, std::u32string_view text);
  void appendOwn(Segment& segment, char32_t value, char32_t spoken);
  bool substitute(Segment& segment, std::u32string_view text, char32_t before, size_t& length);
  void appendGenerated(Segment& segment, std::string_view text) const;
  void trackOpenTags(std::string_view tag);

  const std::string text_;
  const bool isSsml_;
  const DictionaryList dictionaries_;
  const bool mayHavePhonemes_;
  // Where the last tag and the last comment end: no search for an end can succeed behind these.
  const size_t lastTagEnd_;
  const size_t lastCommentEnd_;
  size_t position_ = 0;
  uint32_t utf16Position_ = 0;
  std::vector<OpenTag> openTags_;
};

}  // namespace speech::lxapi
