#pragma once

#include <windows.h>

#include <commctrl.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// A voice as people see it.
struct Voice {
  std::wstring name;      // such as "English (America)"
  std::wstring variety;   // such as "Female"
  std::wstring language;  // such as "en-US"
};

/// The voices in a list view, as many as a filter lets through.
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
