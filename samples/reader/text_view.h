#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

/// The text box. It marks the word that is heard, and can be edited only while nothing reads from it.
class TextView {
 public:
  /// Takes over a multi-line EDIT control.
  void attach(HWND edit);

  /// The whole text. Lines end in CR LF as in the control, so that places in it are places in the control.
  std::wstring text() const;

  /// Keeps the text from being changed.
  void setLocked(bool locked) const;

  /// Marks a word and brings it into view; both numbers in UTF-16 units of text().
  void markWord(std::uint32_t offset, std::uint32_t length) const;

  /// Leaves the caret where the marked word begins.
  void unmark() const;

 private:
  HWND edit_ = nullptr;
};
