#include "text_view.h"

#include <commctrl.h>

#include "window_text.h"

namespace {

/// Without this a dialog selects the whole text when it moves the focus here, and the next key would replace
/// it.
LRESULT CALLBACK keepSelection(HWND edit, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                               DWORD_PTR /*data*/) {
  if (message == WM_NCDESTROY) RemoveWindowSubclass(edit, keepSelection, id);
  const LRESULT result = DefSubclassProc(edit, message, wParam, lParam);
  return message == WM_GETDLGCODE ? result & ~DLGC_HASSETSEL : result;
}

}  // namespace

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
