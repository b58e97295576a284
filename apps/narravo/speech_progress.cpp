#include "apps/narravo/speech_progress.h"

#include <algorithm>
#include <cwctype>
#include <utility>

#include <speech/notices.h>

namespace narravo {

SpeechProgress::Step SpeechProgress::read(WPARAM wParam, LPARAM lParam) {
  using namespace speech;
  if (isCloud_) {
    if (wParam == kNoticePlaybackStarted) return {Kind::kStarted, {}, {}};
    if (wParam == kNoticePlaybackEnded) return {Kind::kEnded, {}, {}};
    return {wParam == kNoticeFinishedOrFailed ? Kind::kFailed : Kind::kOther, {}, {}};
  }

  const std::size_t offset = wParam;
  // The end of a local speech looks like a word of one letter at this very offset. It is that word if the
  // text has one there and nothing behind it was heard yet.
  if (wParam == kNoticeFinishedOrFailed && lParam == kDetailFinishedOrFailed &&
      !(heardUpTo_ <= offset && isOneLetterWord(offset))) {
    return {Kind::kEnded, {}, {}};
  }
  if (lParam <= 0 || offset >= text_.size()) return {Kind::kOther, {}, {}};
  const std::wstring_view word = text_.substr(offset, static_cast<std::size_t>(lParam));
  const std::size_t end = offset + word.size();
  const std::size_t begin = std::exchange(heardUpTo_, std::max(heardUpTo_, end));
  return {Kind::kWord, word, text_.substr(std::min(begin, end), end - std::min(begin, end))};
}

bool SpeechProgress::isOneLetterWord(std::size_t offset) const {
  const auto isLetter = [this](std::size_t at) { return at < text_.size() && std::iswalnum(text_[at]) != 0; };
  return isLetter(offset) && !isLetter(offset - 1) && !isLetter(offset + 1);
}

}  // namespace narravo
