#include "speech/c_interface/spoken_text.h"

#include <algorithm>
#include <cwctype>
#include <string_view>

namespace speech::c_interface {
namespace {

bool isSurrogate(wchar_t unit) { return unit >= 0xD800 && unit <= 0xDFFF; }

/// Bytes of the UTF-8 form; a surrogate counts half of its pair's four.
std::size_t utf8Size(std::wstring_view units) {
  std::size_t bytes = 0;
  for (const wchar_t unit : units) bytes += unit < 0x80 ? 1u : unit < 0x800 || isSurrogate(unit) ? 2u : 3u;
  return bytes;
}

}  // namespace

bool SpokenText::hear(TextRange& word) {
  if (word.length == 0 || word.offset >= text_.size()) return false;
  word.length = static_cast<std::uint32_t>(std::min<std::size_t>(word.length, text_.size() - word.offset));
  heardUpTo_ = std::max<std::size_t>(heardUpTo_, word.offset + word.length);
  return true;
}

TextRange SpokenText::inUtf8(TextRange word) {
  if (word.offset < knownUnit_) knownUnit_ = knownByte_ = 0;
  const std::wstring_view text = text_;
  knownByte_ += utf8Size(text.substr(knownUnit_, word.offset - knownUnit_));
  knownUnit_ = word.offset;
  return {static_cast<std::uint32_t>(knownByte_),
          static_cast<std::uint32_t>(utf8Size(text.substr(word.offset, word.length)))};
}

bool SpokenText::expectsOneLetterWordAt(std::size_t offset) const {
  const auto isLetter = [this](std::size_t at) { return at < text_.size() && std::iswalnum(text_[at]) != 0; };
  return heardUpTo_ <= offset && isLetter(offset) && !isLetter(offset - 1) && !isLetter(offset + 1);
}

}  // namespace speech::c_interface
