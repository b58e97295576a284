// A window that reads texts aloud: the library in a desktop program.

#include <windows.h>

#include <commctrl.h>

#include "reader.h"
#include "reader_view.h"
#include "resource.h"

namespace {

/// The program's one window: passes on what the user does.
class ReaderWindow {
 public:
  /// Makes the window, not yet shown. It ends the message loop when it is closed, and must not outlive this
  /// object.
  /// @return null when it could not be made
  HWND create(HINSTANCE instance);

 private:
  static LRESULT CALLBACK windowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
  LRESULT handle(UINT message, WPARAM wParam, LPARAM lParam);
  void obey(int command, int notification);

  HWND window_ = nullptr;
  HWND focusBefore_ = nullptr;  // the focused control, while another program is in front
  ReaderView view_;
  Reader reader_{view_};
};

HWND ReaderWindow::create(HINSTANCE instance) {
  constexpr wchar_t kClassName[] = L"SpeechReader";
  WNDCLASSEXW windowClass = {};
  windowClass.cbSize = sizeof windowClass;
  windowClass.lpfnWndProc = windowProcedure;
  windowClass.hInstance = instance;
  windowClass.hIcon = LoadIconW(nullptr, IDI_APPLICATION);
  windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  windowClass.hbrBackground = GetSysColorBrush(COLOR_3DFACE);
  windowClass.lpszClassName = kClassName;
  RegisterClassExW(&windowClass);
  return CreateWindowExW(WS_EX_CONTROLPARENT, kClassName, L"Reader", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN,
                         CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, nullptr, nullptr,
                         instance, this);
}

LRESULT CALLBACK ReaderWindow::windowProcedure(HWND window, UINT message, WPARAM wParam,
                                               LPARAM lParam) noexcept {
  if (message == WM_NCCREATE) {
    auto* created = static_cast<ReaderWindow*>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams);
    created->window_ = window;
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(created));
  }
  auto* self = reinterpret_cast<ReaderWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  return self != nullptr ? self->handle(message, wParam, lParam)
                         : DefWindowProcW(window, message, wParam, lParam);
}

/// As a dialog does it: a text box that the Tab key reaches is selected whole, unless it asks not to be.
void moveFocus(HWND control) {
  if (SendMessageW(control, WM_GETDLGCODE, 0, 0) & DLGC_HASSETSEL) SendMessageW(control, EM_SETSEL, 0, -1);
  SetFocus(control);
}

LRESULT ReaderWindow::handle(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_CREATE:
      view_.build(window_);
      return 0;
    case WM_SIZE:
      view_.arrange();
      return 0;
    case WM_GETMINMAXINFO: {
      const SIZE smallest = view_.controls().smallestSize();
      reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = {smallest.cx, smallest.cy};
      return 0;
    }
    case WM_DPICHANGED: {
      view_.setResolution(LOWORD(wParam));
      const RECT& place = *reinterpret_cast<const RECT*>(lParam);
      SetWindowPos(window_, nullptr, place.left, place.top, place.right - place.left,
                   place.bottom - place.top, SWP_NOZORDER | SWP_NOACTIVATE);
      return 0;
    }
    case WM_ACTIVATE:
      if (LOWORD(wParam) == WA_INACTIVE) focusBefore_ = GetFocus();
      break;
    case WM_SETFOCUS:
      SetFocus(focusBefore_ != nullptr ? focusBefore_ : view_.controls().text);
      return 0;
    // IsDialogMessage sends these two, which a dialog's own procedure would answer.
    case WM_NEXTDLGCTL:
      moveFocus(LOWORD(lParam) != 0 ? reinterpret_cast<HWND>(wParam)
                                    : GetNextDlgTabItem(window_, GetFocus(), wParam != 0));
      return 0;
    case DM_GETDEFID:
      return MAKELRESULT(IDC_SPEAK, DC_HASDEFID);
    case WM_CTLCOLORSTATIC:
      // A locked text box looks like one that is not.
      if (reinterpret_cast<HWND>(lParam) != view_.controls().text) break;
      SetTextColor(reinterpret_cast<HDC>(wParam), GetSysColor(COLOR_WINDOWTEXT));
      SetBkColor(reinterpret_cast<HDC>(wParam), GetSysColor(COLOR_WINDOW));
      return reinterpret_cast<LRESULT>(GetSysColorBrush(COLOR_WINDOW));
    case WM_COMMAND:
      obey(LOWORD(wParam), HIWORD(wParam));
      return 0;
    case WM_HSCROLL:
      view_.applySlider(reinterpret_cast<HWND>(lParam));
      return 0;
    case WM_NOTIFY: {
      const NMHDR& notice = *reinterpret_cast<const NMHDR*>(lParam);
      if (notice.idFrom == IDC_VOICES && notice.code == LVN_ITEMCHANGED) view_.showVoice();
      break;
    }
    case WM_TIMER:
      reader_.continueExport();
      return 0;
    case WM_CLOSE:
      if (reader_.canClose()) DestroyWindow(window_);
      return 0;
    case WM_DESTROY:
      reader_.end();
      PostQuitMessage(0);
      return 0;
    default:
      break;
  }
  return DefWindowProcW(window_, message, wParam, lParam);
}

void ReaderWindow::obey(int command, int notification) {
  switch (command) {
    case IDC_FILTER:
      if (notification == EN_CHANGE) view_.filterVoices();
      return;
    case IDC_SPEAK:
      return reader_.speak();
    case IDC_PAUSE:
      return reader_.pauseOrResume();
    case IDC_STOP:
      return reader_.stop();
    case IDC_EXPORT:
      return reader_.beginExport(window_);
    case IDC_SELECT_ALL:
      SendMessageW(GetFocus(), EM_SETSEL, 0, -1);
      return;
    default:
      return;
  }
}

}  // namespace

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
    // Before the dialog's keys, for which Esc in a text box means to close the window.
    if (TranslateAcceleratorW(window, keys, &message) || IsDialogMessageW(window, &message)) continue;
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  return static_cast<int>(message.wParam);
}
