#pragma once

#include <windows.h>

#include <ostream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/waiting.h"

namespace speech::test {

struct Notice {
  WPARAM wParam;
  LPARAM lParam;
  bool operator==(const Notice&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const Notice& notice) {
  return out << '(' << notice.wParam << ", " << notice.lParam << ')';
}

/// A host's message-only window that keeps the notices which reach it. Belongs to the thread that makes it.
class HostWindow {
 public:
  static constexpr UINT kNoticeMessage = WM_APP + 7;

  HostWindow() {
    static const ATOM windowClass = registerClass();
    window_ = CreateWindowExW(0, MAKEINTATOM(windowClass), L"host", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                              GetModuleHandleW(nullptr), this);
    if (window_ == nullptr) throw std::runtime_error("no message-only window");
  }
  HostWindow(const HostWindow&) = delete;
  HostWindow& operator=(const HostWindow&) = delete;
  ~HostWindow() { DestroyWindow(window_); }

  HWND handle() const { return window_; }

  /// What was posted before this call, oldest first. A message of the window's own, posted behind everything
  /// else, marks the end: nothing that is under way is missed, and nothing is waited for.
  std::vector<Notice> takeNotices() {
    PostMessageW(window_, kEndMark, 0, 0);
    dispatchUntil("the end mark", [this] { return endReached_; });
    endReached_ = false;
    return std::exchange(notices_, {});
  }

  /// Dispatches messages until a notice arrives, and returns it.
  Notice waitForNotice() {
    dispatchUntil("a notice", [this] { return !notices_.empty(); });
    const Notice first = notices_.front();
    notices_.erase(notices_.begin());
    return first;
  }

  /// The narrow texts of the WM_COPYDATA messages so far, whose wParam and dwData have to be 0.
  const std::vector<std::string>& copiedTexts() const { return copiedTexts_; }

 private:
  static constexpr UINT kEndMark = WM_APP + 8;

  static ATOM registerClass() {
    WNDCLASSW description = {};
    description.lpfnWndProc = procedure;
    description.hInstance = GetModuleHandleW(nullptr);
    description.lpszClassName = L"speech-test-host";
    return RegisterClassW(&description);
  }

  template <class Condition>
  static void dispatchUntil(const char* awaited, Condition isMet) {
    const ULONGLONG end = GetTickCount64() + kWaitLimitMilliseconds;
    while (!isMet()) {
      MSG message;
      if (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (message.message == WM_QUIT) throw std::runtime_error("the message loop ended");
        DispatchMessageW(&message);
        continue;
      }
      const ULONGLONG now = GetTickCount64();
      if (now >= end) failWaitingFor(awaited);
      MsgWaitForMultipleObjectsEx(0, nullptr, static_cast<DWORD>(end - now), QS_ALLINPUT,
                                  MWMO_INPUTAVAILABLE);
    }
  }

  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NCCREATE) {
      const auto* const creation = reinterpret_cast<const CREATESTRUCTW*>(lParam);
      SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(creation->lpCreateParams));
    }
    auto* const self = reinterpret_cast<HostWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    switch (message) {
      case kNoticeMessage:
        self->notices_.push_back({wParam, lParam});
        return 0;
      case kEndMark:
        self->endReached_ = true;
        return 0;
      case WM_COPYDATA: {
        const auto* const copied = reinterpret_cast<const COPYDATASTRUCT*>(lParam);
        self->copiedTexts_.emplace_back(static_cast<const char*>(copied->lpData), copied->cbData);
        if (wParam != 0 || copied->dwData != 0) self->copiedTexts_.back() += " with numbers that are not 0";
        return TRUE;
      }
      default:
        return DefWindowProcW(window, message, wParam, lParam);
    }
  }

  HWND window_ = nullptr;
  bool endReached_ = false;
  std::vector<Notice> notices_;
  std::vector<std::string> copiedTexts_;
};

}  // namespace speech::test
