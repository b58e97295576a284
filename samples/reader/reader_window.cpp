#include "reader_window.h"

#include <commctrl.h>

#include <array>

#include "resource.h"
#include "window_text.h"

namespace {

constexpr wchar_t kClassName[] = L"SpeechReader";
constexpr wchar_t kTitle[] = L"Reader";
constexpr wchar_t kFirstText[] =
    L"Type or paste a text here and press F5 to hear it.\r\n\r\n"
    L"Each word is marked while it is spoken. Choose a voice on the left; speed, pitch and volume count "
    L"from the next text on. Export turns the text into a sound file.";

}  // namespace

ReaderWindow::ReaderWindow() : engine_([this](const SpeechEvent& event) { onSpeechEvent(event); }) {}

HWND ReaderWindow::create(HINSTANCE instance) {
  WNDCLASSEXW windowClass = {};
  windowClass.cbSize = sizeof windowClass;
  windowClass.lpfnWndProc = windowProcedure;
  windowClass.hInstance = instance;
  windowClass.hIcon = LoadIconW(nullptr, IDI_APPLICATION);
  windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  windowClass.hbrBackground = GetSysColorBrush(COLOR_3DFACE);
  windowClass.lpszClassName = kClassName;
  RegisterClassExW(&windowClass);
  return CreateWindowExW(WS_EX_CONTROLPARENT, kClassName, kTitle, WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN,
                         CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, nullptr, nullptr,
                         instance, this);
}

LRESULT CALLBACK ReaderWindow::windowProcedure(HWND window, UINT message, WPARAM wParam,
                                               LPARAM lParam) noexcept {
  if (message == WM_NCCREATE) {
    auto* reader = static_cast<ReaderWindow*>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams);
    reader->window_ = window;
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(reader));
  }
  auto* reader = reinterpret_cast<ReaderWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  return reader != nullptr ? reader->handle(message, wParam, lParam)
                           : DefWindowProcW(window, message, wParam, lParam);
}

LRESULT ReaderWindow::handle(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_CREATE:
      build();
      return 0;
    case WM_SIZE:
      controls_.arrange();
      voices_.fitColumns();
      return 0;
    case WM_GETMINMAXINFO: {
      const SIZE smallest = controls_.smallestSize();
      reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = {smallest.cx, smallest.cy};
      return 0;
    }
    case WM_DPICHANGED: {
      setResolution(LOWORD(wParam));
      const RECT& place = *reinterpret_cast<const RECT*>(lParam);
      SetWindowPos(window_, nullptr, place.left, place.top, place.right - place.left,
                   place.bottom - place.top, SWP_NOZORDER | SWP_NOACTIVATE);
      return 0;
    }
    case WM_ACTIVATE:
      if (LOWORD(wParam) == WA_INACTIVE) focusBefore_ = GetFocus();
      break;
    case WM_SETFOCUS:
      SetFocus(focusBefore_ != nullptr ? focusBefore_ : controls_.text);
      return 0;
    // IsDialogMessage asks for these two, which a dialog's own procedure would answer.
    case WM_NEXTDLGCTL:
      moveFocus(LOWORD(lParam) != 0 ? reinterpret_cast<HWND>(wParam)
                                    : GetNextDlgTabItem(window_, GetFocus(), wParam != 0));
      return 0;
    case DM_GETDEFID:
      return MAKELRESULT(IDC_SPEAK, DC_HASDEFID);
    case WM_CTLCOLORSTATIC:
      // A locked text box is to look like one that is not.
      if (reinterpret_cast<HWND>(lParam) != controls_.text) break;
      SetTextColor(reinterpret_cast<HDC>(wParam), GetSysColor(COLOR_WINDOWTEXT));
      SetBkColor(reinterpret_cast<HDC>(wParam), GetSysColor(COLOR_WINDOW));
      return reinterpret_cast<LRESULT>(GetSysColorBrush(COLOR_WINDOW));
    case WM_COMMAND:
      obey(LOWORD(wParam), HIWORD(wParam));
      return 0;
    case WM_HSCROLL:
      applySlider(reinterpret_cast<HWND>(lParam));
      return 0;
    case WM_NOTIFY: {
      const NMHDR& notice = *reinterpret_cast<const NMHDR*>(lParam);
      if (notice.idFrom == IDC_VOICES && notice.code == LVN_ITEMCHANGED) chooseVoice();
      break;
    }
    case WM_TIMER:
      continueExport();
      return 0;
    case WM_CLOSE:
      close();
      return 0;
    case WM_DESTROY:
      engine_.close();
      PostQuitMessage(0);
      return 0;
    default:
      break;
  }
  return DefWindowProcW(window_, message, wParam, lParam);
}

void ReaderWindow::build() {
  controls_ = Controls::create(window_);
  const std::array<std::int32_t, 3> options = {SPEECH_OPTION_SPEED, SPEECH_OPTION_PITCH,
                                               SPEECH_OPTION_VOLUME};
  for (std::size_t i = 0; i < options.size(); ++i) {
    sliders_.emplace_back(options[i], controls_.sliders[i].slider, controls_.sliders[i].value);
  }
  text_.attach(controls_.text);
  SetWindowTextW(controls_.text, kFirstText);
  SendMessageW(controls_.filter, EM_SETCUEBANNER, TRUE, reinterpret_cast<LPARAM>(L"All voices"));

  const std::int32_t result = voices_.attach(controls_.voices);
  setActivity(Activity::kIdle);
  showStatus(result == SPEECH_OK ? std::to_wstring(voices_.count()) +
                                       L" voices.\nF5 speaks, F6 pauses, Esc stops, Ctrl+S exports."
                                 : describeError(result));

  setResolution(dpiOf(window_));
  const SIZE size = controls_.initialSize();
  SetWindowPos(window_, nullptr, 0, 0, size.cx, size.cy, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);

  // Now that the list has its size, the chosen voice can be brought into view.
  std::array<wchar_t, LOCALE_NAME_MAX_LENGTH> locale = {};
  GetUserDefaultLocaleName(locale.data(), static_cast<int>(locale.size()));
  voices_.chooseFor(locale.data());
}

void ReaderWindow::setResolution(UINT dpi) {
  controls_.setResolution(dpi);
  controls_.arrange();
  voices_.fitColumns();
}

void ReaderWindow::moveFocus(HWND control) {
  if (SendMessageW(control, WM_GETDLGCODE, 0, 0) & DLGC_HASSETSEL) SendMessageW(control, EM_SETSEL, 0, -1);
  SetFocus(control);
}

void ReaderWindow::obey(int command, int notification) {
  switch (command) {
    case IDC_FILTER:
      if (notification != EN_CHANGE) return;
      voices_.show(windowText(controls_.filter));
      setActivity(activity_);
      showStatus(voices_.shownCount() == 0 ? L"No voice has such a name or language."
                                           : std::to_wstring(voices_.shownCount()) + L" of " +
                                                 std::to_wstring(voices_.count()) + L" voices.");
      return;
    case IDC_SPEAK:
      return speak();
    case IDC_PAUSE:
      return pauseOrResume();
    case IDC_STOP:
      return stop();
    case IDC_EXPORT:
      return beginExport();
    case IDC_SELECT_ALL:
      SendMessageW(GetFocus(), EM_SETSEL, 0, -1);
      return;
    default:
      return;
  }
}

void ReaderWindow::close() {
  // The library is still inside the call that writes, which dispatches messages such as this one.
  if (activity_ == Activity::kWriting) {
    closesWhenWritten_ = true;
    showStatus(L"The window closes as soon as the file is written.");
    return;
  }
  export_.reset();
  DestroyWindow(window_);
}

void ReaderWindow::setActivity(Activity activity) {
  activity_ = activity;
  const bool isIdle = activity == Activity::kIdle;
  const bool hasSpeech = activity == Activity::kSpeaking || activity == Activity::kPaused;
  const bool canBegin = isIdle && voices_.chosen() != VoiceList::kNone;
  EnableWindow(controls_.speak, canBegin);
  EnableWindow(controls_.exportSpeech, canBegin);
  EnableWindow(controls_.pause, hasSpeech);
  EnableWindow(controls_.stop, hasSpeech || activity == Activity::kRendering);
  SetWindowTextW(controls_.pause, activity == Activity::kPaused ? L"&Resume" : L"&Pause");
  SetWindowTextW(controls_.stop, isExporting() ? L"Ca&ncel" : L"St&op");
  text_.setLocked(!isIdle);

  // What an export has begun it ends with the same voice and settings.
  EnableWindow(controls_.filter, !isExporting());
  EnableWindow(controls_.voices, !isExporting());
  for (const OptionSlider& slider : sliders_) EnableWindow(slider.slider(), !isExporting());
  ShowWindow(controls_.progress, isExporting() ? SW_SHOWNA : SW_HIDE);
  controls_.arrange();

  HWND focused = GetFocus();
  const bool isInFront = GetActiveWindow() == window_;
  if (isInFront && (focused == nullptr || !IsWindowEnabled(focused))) SetFocus(controls_.text);
}

std::optional<std::wstring> ReaderWindow::textToSay() const {
  std::wstring text = text_.text();
  if (!isBlank(text)) return text;
  showStatus(L"There is no text. Type one first.");
  return std::nullopt;
}

void ReaderWindow::showStatus(const std::wstring& text) const {
  SetWindowTextW(controls_.status, text.c_str());
}
