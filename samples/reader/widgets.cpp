#include "widgets.h"

#include <speech/speech_c.h>

#include <uxtheme.h>
#include <algorithm>
#include <array>

namespace {

struct Column {
  const wchar_t* title;
  int percent;  // of the list's width
  std::wstring Voice::*text;
};

constexpr std::array<Column, 3> kColumns = {
    {{L"Voice", 50, &Voice::name}, {L"Variety", 24, &Voice::variety}, {L"Language", 26, &Voice::language}}};

std::wstring voiceText(std::int32_t voice, SpeechVoiceText which) {
  std::uint32_t length = 0;
  speech_voice_text_w(voice, which, nullptr, 0, &length);
  std::wstring text(length + 1, L'\0');
  speech_voice_text_w(voice, which, text.data(), length + 1, nullptr);
  text.resize(length);
  return text;
}

std::wstring lowerCase(std::wstring_view text) {
  std::wstring lower(text);
  CharLowerBuffW(lower.data(), static_cast<DWORD>(lower.size()));
  return lower;
}

bool hasWordThatBeginsWith(std::wstring_view text, std::wstring_view start) {
  const std::wstring lower = lowerCase(text);
  for (std::size_t at = lower.find(start); at != lower.npos; at = lower.find(start, at + 1)) {
    if (at == 0 || !IsCharAlphaNumericW(lower[at - 1])) return true;
  }
  return false;
}

/// Without this a dialog selects the whole text when it moves the focus here, and the next key would replace
/// it.
LRESULT CALLBACK keepSelection(HWND edit, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                               DWORD_PTR /*data*/) {
  if (message == WM_NCDESTROY) RemoveWindowSubclass(edit, keepSelection, id);
  const LRESULT result = DefSubclassProc(edit, message, wParam, lParam);
  return message == WM_GETDLGCODE ? result & ~DLGC_HASSETSEL : result;
}

}  // namespace

std::int32_t VoiceList::attach(HWND listView) {
  list_ = listView;
  SetWindowTheme(list_, L"Explorer", nullptr);
  ListView_SetExtendedListViewStyle(list_, LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER | LVS_EX_LABELTIP);
  for (std::size_t i = 0; i < kColumns.size(); ++i) {
    LVCOLUMNW column = {};
    column.mask = LVCF_TEXT;
    column.pszText = const_cast<wchar_t*>(kColumns[i].title);
    ListView_InsertColumn(list_, static_cast<int>(i), &column);
  }

  std::int32_t count = 0;
  const std::int32_t result = speech_voice_count(&count);
  for (std::int32_t i = 0; i < count; ++i) {
    voices_.push_back({voiceText(i, SPEECH_VOICE_KEY1), voiceText(i, SPEECH_VOICE_KEY2),
                       voiceText(i, SPEECH_VOICE_LANGUAGE)});
  }
  show(L"");
  return result;
}

void VoiceList::show(std::wstring_view filter) {
  const std::int32_t former = chosen();
  const std::wstring start = lowerCase(filter);
  int formerItem = 0;

  SendMessageW(list_, WM_SETREDRAW, FALSE, 0);
  ListView_DeleteAllItems(list_);
  for (std::size_t i = 0; i < voices_.size(); ++i) {
    const Voice& voice = voices_[i];
    if (!hasWordThatBeginsWith(voice.name, start) && !hasWordThatBeginsWith(voice.language, start)) continue;
    LVITEMW item = {};
    item.mask = LVIF_PARAM;
    item.iItem = shownCount();
    item.lParam = static_cast<LPARAM>(i);
    item.iItem = ListView_InsertItem(list_, &item);
    for (std::size_t c = 0; c < kColumns.size(); ++c) {
      ListView_SetItemText(list_, item.iItem, static_cast<int>(c),
                           const_cast<wchar_t*>((voice.*kColumns[c].text).c_str()));
    }
    if (static_cast<std::int32_t>(i) == former) formerItem = item.iItem;
  }
  SendMessageW(list_, WM_SETREDRAW, TRUE, 0);
  choose(formerItem);
}

void VoiceList::chooseFor(std::wstring_view locale) {
  const std::wstring wanted = lowerCase(locale);
  const std::wstring language = wanted.substr(0, wanted.find(L'-'));
  int best = 0;
  int bestRank = 0;
  for (int item = 0; item < shownCount(); ++item) {
    const std::wstring code = lowerCase(voices_[static_cast<std::size_t>(voiceOf(item))].language);
    const int rank = code == wanted ? 3 : code == language ? 2 : code.starts_with(language + L'-') ? 1 : 0;
    if (rank > bestRank) {
      best = item;
      bestRank = rank;
    }
  }
  choose(best);
}

void VoiceList::fitColumns() const {
  RECT area;
  GetWindowRect(list_, &area);
  // Room for the scroll bar is kept even while it is hidden, so that it does not change the columns.
  const int width = area.right - area.left - GetSystemMetrics(SM_CXVSCROLL) - 2 * GetSystemMetrics(SM_CXEDGE);
  for (std::size_t i = 0; i < kColumns.size(); ++i) {
    ListView_SetColumnWidth(list_, static_cast<int>(i), MulDiv(width, kColumns[i].percent, 100));
  }
}

std::int32_t VoiceList::chosen() const {
  const int item = ListView_GetNextItem(list_, -1, LVNI_SELECTED);
  return item >= 0 ? voiceOf(item) : kNone;
}

std::int32_t VoiceList::voiceOf(int item) const {
  LVITEMW stored = {};
  stored.mask = LVIF_PARAM;
  stored.iItem = item;
  return ListView_GetItem(list_, &stored) ? static_cast<std::int32_t>(stored.lParam) : kNone;
}

void VoiceList::choose(int item) const {
  ListView_SetItemState(list_, item, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
  ListView_EnsureVisible(list_, item, FALSE);
}

std::int32_t OptionSlider::showVoice(std::int32_t voice) {
  std::int32_t minimum = 0, maximum = 0, standard = 0, value = 0;
  std::int32_t result = speech_option_range(voice, option_, &minimum, &maximum, &standard);
  if (result == SPEECH_OK) result = speech_option_get(voice, option_, &value);
  if (result != SPEECH_OK) return result;

  voice_ = voice;
  SendMessageW(slider_, TBM_SETRANGEMIN, FALSE, minimum);
  SendMessageW(slider_, TBM_SETRANGEMAX, FALSE, maximum);
  SendMessageW(slider_, TBM_SETLINESIZE, 0, std::max(1, (maximum - minimum) / 100));
  SendMessageW(slider_, TBM_SETPAGESIZE, 0, std::max(1, (maximum - minimum) / 10));
  SendMessageW(slider_, TBM_CLEARTICS, FALSE, 0);
  SendMessageW(slider_, TBM_SETTIC, 0, standard);
  // First to another position: setting the same number again would leave the thumb where it was in the old
  // range.
  SendMessageW(slider_, TBM_SETPOS, TRUE, minimum);
  SendMessageW(slider_, TBM_SETPOS, TRUE, value);
  showValue(value);
  return SPEECH_OK;
}

std::int32_t OptionSlider::apply() {
  const auto value = static_cast<std::int32_t>(SendMessageW(slider_, TBM_GETPOS, 0, 0));
  showValue(value);
  return speech_option_set(voice_, option_, value);
}

void OptionSlider::showValue(std::int32_t value) const {
  SetWindowTextW(value_, (std::to_wstring(value) + L" %").c_str());
}

void TextView::attach(HWND edit) {
  constexpr WPARAM kNoLimit = 0x7FFFFFFE;  // instead of the 32 KB that users could type by default
  edit_ = edit;
  SendMessageW(edit_, EM_SETLIMITTEXT, kNoLimit, 0);
  SetWindowSubclass(edit_, keepSelection, 0, 0);
}

std::wstring TextView::text() const { return windowText(edit_); }

void TextView::setLocked(bool locked) const { SendMessageW(edit_, EM_SETREADONLY, locked, 0); }

void TextView::markWord(std::uint32_t offset, std::uint32_t length) const {
  const std::uint32_t end = offset + length;
  SendMessageW(edit_, EM_SETSEL, offset, static_cast<LPARAM>(end));
  SendMessageW(edit_, EM_SCROLLCARET, 0, 0);
}

void TextView::unmark() const {
  DWORD start = 0;
  SendMessageW(edit_, EM_GETSEL, reinterpret_cast<WPARAM>(&start), 0);
  SendMessageW(edit_, EM_SETSEL, start, static_cast<LPARAM>(start));
}
