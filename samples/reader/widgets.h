#pragma once

// The controls that do more than Windows makes them do: the list of voices, the sliders and the text box.

#include <windows.h>

#include <commctrl.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// What counts as blank in a text.
inline constexpr std::wstring_view kSpaces = L" \t\r\n\u3000";

inline bool isBlank(std::wstring_view text) { return text.find_first_not_of(kSpaces) == text.npos; }

inline std::wstring windowText(HWND window) {
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
  text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
  return text;
}

/// A voice as people see it.
struct Voice {
  std::wstring name;      // such as "English (America)"
  std::wstring variety;   // such as "Female"
  std::wstring language;  // such as "en-US"
};

/// The voices in a list view, of which a filter may hide some.
class VoiceList {
 public:
  static constexpr std::int32_t kNone = -1;

  /// Asks the library for its voices and shows them all. @return SPEECH_OK or a SpeechError
  std::int32_t attach(HWND listView);

  /// Shows the voices whose name or language has a word that begins with the filter; all of them when it is
  /// empty. The chosen voice stays chosen if it is shown, otherwise the first one takes its place.
  void show(std::wstring_view filter);

  /// Chooses, of those shown, a voice of a locale such as "de-AT", else one of its language, else the first.
  void chooseFor(std::wstring_view locale);

  /// Shares the list's width among its columns.
  void fitColumns() const;

  /// The library's number of the chosen voice, or kNone.
  std::int32_t chosen() const;

  std::size_t count() const { return voices_.size(); }
  int shownCount() const { return ListView_GetItemCount(list_); }

 private:
  std::int32_t voiceOf(int item) const;
  void choose(int item) const;

  HWND list_ = nullptr;
  std::vector<Voice> voices_;  // in the library's order
};

/// A slider for one setting of a voice, and the value beside it. A change applies from the next text.
class OptionSlider {
 public:
  /// @param option  SpeechOption
  /// @param slider  a trackbar
  /// @param value   a static text
  OptionSlider(std::int32_t option, HWND slider, HWND value)
      : option_(option), slider_(slider), value_(value) {}

  HWND slider() const { return slider_; }

  /// Shows a voice's range, with a tick at the default, and its present value. @return SPEECH_OK or a
  /// SpeechError
  std::int32_t showVoice(std::int32_t voice);

  /// Gives the slider's position to the voice that is shown. @return SPEECH_OK or a SpeechError
  std::int32_t apply();

 private:
  void showValue(std::int32_t value) const;

  std::int32_t option_;
  std::int32_t voice_ = -1;
  HWND slider_;
  HWND value_;
};

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
