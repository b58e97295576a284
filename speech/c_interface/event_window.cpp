#include "speech/c_interface/event_window.h"

#include <speech/notices.h>

#include "engines/shared/guarded.h"
#include "speech/c_interface/failure.h"
#include "speech/c_interface/module_folder.h"

namespace speech::c_interface {
namespace {

constexpr wchar_t kClassName[] = L"SpeechEventWindow";

}  // namespace

EventWindow::EventWindow(Receiver receiver) : receiver_(std::move(receiver)) {
  WNDCLASSW description = {};
  description.lpfnWndProc = procedure;
  description.hInstance = thisModule();
  description.lpszClassName = kClassName;
  RegisterClassW(&description);
  window_ = CreateWindowExW(0, kClassName, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, thisModule(), nullptr);
  if (window_ == nullptr) throw Failure(SPEECH_ERROR_MEMORY, "Windows made no window.");
  SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
}

EventWindow::~EventWindow() {
  SetWindowLongPtrW(window_, GWLP_USERDATA, 0);
  DestroyWindow(window_);
  // The class must not outlive the library's code.
  UnregisterClassW(kClassName, thisModule());
}

void EventWindow::deliverPending(HWND window) {
  MSG message;
  while (IsWindow(window) && PeekMessageW(&message, window, kNotice, kFailed, PM_REMOVE))
    DispatchMessageW(&message);
}

bool EventWindow::dropNotices() const {
  bool hadFailure = false;
  MSG message;
  while (PeekMessageW(&message, window_, kNotice, kNotice, PM_REMOVE)) {
    hadFailure |= message.wParam == kNoticeFinishedOrFailed && message.lParam == kDetailFinishedOrFailed;
  }
  return hadFailure;
}

LRESULT CALLBACK EventWindow::procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  const auto* const self = reinterpret_cast<const EventWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  const bool isOurs = (message >= kNotice && message <= kFailed) || message == WM_COPYDATA;
  if (self == nullptr || !isOurs) return DefWindowProcW(window, message, wParam, lParam);
  guarded([&] {
    const Receiver receiver = self->receiver_;  // outlives the window, which it may destroy
    receiver(message, wParam, lParam);
  });
  return TRUE;
}

}  // namespace speech::c_interface
