// A window that reads texts aloud: the library in a desktop program.

#include <windows.h>

#include <commctrl.h>

#include "reader_window.h"
#include "resource.h"

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE /*previous*/, PWSTR /*commandLine*/, int show) {
  const INITCOMMONCONTROLSEX classes = {
      sizeof classes, ICC_STANDARD_CLASSES | ICC_LISTVIEW_CLASSES | ICC_BAR_CLASSES | ICC_PROGRESS_CLASS};
  InitCommonControlsEx(&classes);

  ReaderWindow reader;
  HWND window = reader.create(instance);
  if (window == nullptr) return 1;
  ShowWindow(window, show);

  HACCEL keys = LoadAcceleratorsW(instance, MAKEINTRESOURCEW(IDR_KEYS));
  MSG message;
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    // Before the dialog's keys: for those, Esc in a text box means to close the window.
    if (TranslateAcceleratorW(window, keys, &message) || IsDialogMessageW(window, &message)) continue;
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  return static_cast<int>(message.wParam);
}
