#pragma once

#include <windows.h>

#include <functional>

namespace speech::c_interface {

/// The message-only window that the library's notices reach, on the thread that makes it.
class EventWindow {
 public:
  static constexpr UINT kNotice = WM_APP + 1;   ///< What the engines post.
  static constexpr UINT kStarted = WM_APP + 2;  ///< What the C interface posts to itself.
  static constexpr UINT kFailed = WM_APP + 3;

  /// Receives those three and WM_COPYDATA. It may destroy the window.
  using Receiver = std::function<void(UINT message, WPARAM wParam, LPARAM lParam)>;

  /// Fails when Windows has no window to give.
  explicit EventWindow(Receiver receiver);
  EventWindow(const EventWindow&) = delete;
  EventWindow& operator=(const EventWindow&) = delete;
  ~EventWindow();

  HWND handle() const { return window_; }
  void post(UINT message, WPARAM wParam) const { PostMessageW(window_, message, wParam, 0); }

  /// Dispatches what waits for this window. The window may be gone afterwards.
  static void deliverPending(HWND window);

  /// Throws away the notices that wait; true when a failure notice was among them.
  bool dropNotices() const;

 private:
  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

  Receiver receiver_;
  HWND window_ = nullptr;
};

}  // namespace speech::c_interface
