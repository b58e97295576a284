#include "apps/narravo/host_window.h"

#include <atomic>

#include "apps/narravo/host_error.h"

namespace narravo {
namespace {

constexpr wchar_t kClassName[] = L"NarravoHostWindow";
constexpr UINT kInterruptMessage = WM_APP + 2;

// How long the host's thread may take to silence the engine. It cannot answer while it waits for the speech
// service.
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
  while (running_ && !interrupted_ && GetMessageW(&message, nullptr, 0, 0) > 0) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  if (failure_) std::rethrow_exception(failure_);
  return !interrupted_;
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
    running_ = false;
  }
}

LRESULT HostWindow::receive(UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == kNoticeMessage) {
    if (handler_ && running_) notify(wParam, lParam);
  } else if (message == kInterruptMessage) {
    interrupted_ = true;
    if (interruptHandler_) interruptHandler_();
    PostMessageW(window_, WM_NULL, 0, 0);  // a sent message alone does not wake GetMessage
  } else {
    const auto* const data = reinterpret_cast<const COPYDATASTRUCT*>(lParam);
    serviceMessage_.assign(static_cast<const char*>(data->lpData), data->cbData);
  }
  return TRUE;
}

}  // namespace narravo
