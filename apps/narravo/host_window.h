#pragma once

// The host's side of the notices: a message-only window that receives them and a loop that waits for them.

#include <exception>
#include <functional>
#include <string>

#include <windows.h>

namespace narravo {

/// From now on Ctrl-C ends the program with kExitInterrupted, or HostWindow::run() while there is a window.
void watchInterrupts();

/// Belongs to the thread that makes it.
class HostWindow {
 public:
  static constexpr UINT kNoticeMessage = WM_APP + 1;
  using NoticeHandler = std::function<void(WPARAM, LPARAM)>;

  /// Throws HostError when Windows refuses.
  HostWindow();
  ~HostWindow();
  HostWindow(const HostWindow&) = delete;
  HostWindow& operator=(const HostWindow&) = delete;

  HWND handle() const { return window_; }

  /// Called for every notice, on this thread. An exception ends run(), which throws it on.
  void onNotice(NoticeHandler handler) { handler_ = std::move(handler); }

  /// Called when the user presses Ctrl-C, on this thread, before run() returns. Must not throw.
  void onInterrupt(std::function<void()> handler) { interruptHandler_ = std::move(handler); }

  /// Pumps messages until finish() or Ctrl-C. @return false after Ctrl-C
  bool run();
  void finish() { running_ = false; }

  /// What the speech service said of its last failure; empty when it said nothing.
  const std::string& serviceMessage() const { return serviceMessage_; }

 private:
  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  void notify(WPARAM wParam, LPARAM lParam);
  LRESULT receive(UINT message, WPARAM wParam, LPARAM lParam);

  HWND window_ = nullptr;
  NoticeHandler handler_;
  std::function<void()> interruptHandler_;
  std::string serviceMessage_;
  std::exception_ptr failure_;
  bool running_ = true;
  bool interrupted_ = false;
};

}  // namespace narravo
