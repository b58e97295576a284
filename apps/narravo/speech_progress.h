#pragma once

// Tells the notices of one speech apart.

#include <cstddef>
#include <string_view>

#include <windows.h>

namespace narravo {

class SpeechProgress {
 public:
  enum class Kind { kWord, kStarted, kEnded, kFailed, kOther };

  struct Step {
    Kind kind;
    std::wstring_view word;  ///< For kWord: the part of the text that is heard now.
    /// For kWord: the same with what stands between it and the last one. An engine may speak several words as
    /// one and announce the first only.
    std::wstring_view wordInContext;
  };

  /// @param text     what was given to speak; must outlive this object
  /// @param isCloud  whether a voice of the speech service speaks: its notices differ
  SpeechProgress(std::wstring_view text, bool isCloud) : text_(text), isCloud_(isCloud) {}

  Step read(WPARAM wParam, LPARAM lParam);

  /// What stands behind the last word that was heard.
  std::wstring_view rest() const { return text_.substr(heardUpTo_); }

 private:
  bool isOneLetterWord(std::size_t offset) const;

  std::wstring_view text_;
  bool isCloud_;
  std::size_t heardUpTo_ = 0;
};

}  // namespace narravo
