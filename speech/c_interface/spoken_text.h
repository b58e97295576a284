#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

namespace speech::c_interface {

/// A place in a text, counted in one of its two forms.
struct TextRange {
  std::uint32_t offset = 0;
  std::uint32_t length = 0;
};

/// The text of a speech and how far it has been heard.
class SpokenText {
 public:
  explicit SpokenText(std::wstring text = {}) : text_(std::move(text)) {}

  const std::wstring& text() const { return text_; }

  /// A word is heard: keeps it within the text. False for a place outside.
  bool hear(TextRange& word);

  /// The same place in the text's UTF-8 form. Quick for words that come in order.
  TextRange inUtf8(TextRange word);

  /// The notice of the end looks like the word of one letter at offset 3858. It is that word when the text
  /// has one there and nothing behind it was heard.
  bool expectsOneLetterWordAt(std::size_t offset) const;

 private:
  std::wstring text_;
  std::size_t heardUpTo_ = 0;
  // A place whose UTF-8 offset is known.
  std::size_t knownUnit_ = 0;
  std::size_t knownByte_ = 0;
};

}  // namespace speech::c_interface
