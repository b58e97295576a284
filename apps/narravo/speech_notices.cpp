#include "apps/narravo/speech_notices.h"

#include <algorithm>
#include <atomic>
#include <cwctype>
#include <utility>

#include <speech/notices.h>

#include "apps/narravo/commands.h"

namespace narravo {
namespace {

constexpr wchar_t kClassName[] = L"NarravoHostWindow";
constexpr UINT kInterruptMessage = WM_APP + 2;

// How long the host's thread may take to hear of Ctrl-C. While it waits for the speech service it cannot.
constexpr UINT kInterruptTimeoutMs = 1000;

std::atomic<HWND> interruptTarget = nullptr;

/// Runs on a thread that Windows makes for it.
BOOL WINAPI onControlEvent(DWORD event) {
  if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) return FALSE;
  const HWND target = interruptTarget;
  DWORD_PTR answer = 0;
  if (target == nullptr ||
      SendMessageTimeoutW(target, kInterruptMessage, 0, 0, SMTO_NORMAL, kInterruptTimeoutMs, &answer) == 0) {
    // Not ExitProcess, which lets every DLL clean up behind threads that it has cut off in the middle of
    // their work.
    TerminateProcess(GetCurrentProcess(), kExitInterrupted);
  }
  return TRUE;
}

void registerClass(WNDPROC procedure) {
  WNDCLASSEXW description{};
  description.cbSize = sizeof description;
  description.lpfnWndProc = procedure;
  description.hInstance = GetModuleHandleW(nullptr);
  description.lpszClassName = kClassName;
  if (RegisterClassExW(&description) == 0 && GetLastError() != ERROR_CLASS_ALREADY_EXISTS) {
    throw HostError(kExitEngineFailed, "the window class could not be registered");
  }
}

}  // namespace

void watchInterrupts() { SetConsoleCtrlHandler(onControlEvent, TRUE); }

HostWindow::HostWindow() {
  registerClass(&HostWindow::procedure);
  window_ = CreateWindowExW(0, kClassName, L"narravo", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                            GetModuleHandleW(nullptr), nullptr);
  if (window_ == nullptr) throw HostError(kExitEngineFailed, "the host window could not be created");
  SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  interruptTarget = window_;
}

HostWindow::~HostWindow() {
  interruptTarget = nullptr;
  DestroyWindow(window_);
}

bool HostWindow::run() {
  MSG message{};
  while (isRunning_ && !isInterrupted_ && GetMessageW(&message, nullptr, 0, 0) > 0) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  if (failure_) std::rethrow_exception(failure_);
  return !isInterrupted_;
}

LRESULT CALLBACK HostWindow::procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  auto* const self = reinterpret_cast<HostWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (self != nullptr &&
      (message == kNoticeMessage || message == kInterruptMessage || message == WM_COPYDATA)) {
    return self->receive(message, wParam, lParam);
  }
  return DefWindowProcW(window, message, wParam, lParam);
}

/// No exception may pass through the window procedure's caller.
void HostWindow::notify(WPARAM wParam, LPARAM lParam) {
  try {
    handler_(wParam, lParam);
  } catch (...) {
    failure_ = std::current_exception();
    isRunning_ = false;
  }
}

LRESULT HostWindow::receive(UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == kNoticeMessage) {
    if (handler_ && isRunning_) notify(wParam, lParam);
  } else if (message == kInterruptMessage) {
    isInterrupted_ = true;
    PostMessageW(window_, WM_NULL, 0, 0);  // a sent message alone does not wake GetMessage
  } else {
    const auto* const data = reinterpret_cast<const COPYDATASTRUCT*>(lParam);
    serviceMessage_.assign(static_cast<const char*>(data->lpData), data->cbData);
  }
  return TRUE;
}

SpeechProgress::Step SpeechProgress::read(WPARAM wParam, LPARAM lParam) {
  using namespace speech;
  if (isCloud_) {
    if (wParam == kNoticePlaybackStarted) return {Kind::kStarted, {}, {}};
    if (wParam == kNoticePlaybackEnded) return {Kind::kEnded, {}, {}};
    return {wParam == kNoticeFinishedOrFailed ? Kind::kFailed : Kind::kOther, {}, {}};
  }

  const std::size_t offset = wParam;
  // The end of a local speech has the numbers of a word of one letter at offset 3858. It is that word if the
  // text has one there and nothing after it has been heard.
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
