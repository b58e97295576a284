#pragma once

// The host's side of the notices: a message-only window that receives them, a loop that waits for them, and
// what they say of a speech.

#include <cstddef>
#include <exception>
#include <functional>
#include <string>
#include <string_view>

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

  /// Called for every notice, on this thread. An exception ends run(), which rethrows it.
  void onNotice(NoticeHandler handler) { handler_ = std::move(handler); }

  /// Pumps messages until finish() or Ctrl-C. @return false after Ctrl-C
  bool run();
  void finish() { isRunning_ = false; }

  /// The speech service's message about its last failure; empty if there is none.
  const std::string& serviceMessage() const { return serviceMessage_; }

 private:
  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  void notify(WPARAM wParam, LPARAM lParam);
  LRESULT receive(UINT message, WPARAM wParam, LPARAM lParam);

  HWND window_ = nullptr;
  NoticeHandler handler_;
  std::string serviceMessage_;
  std::exception_ptr failure_;
  bool isRunning_ = true;
  bool isInterrupted_ = false;
};

/// Reads the notices of one speech.
class SpeechProgress {
 public:
  enum class Kind { kWord, kStarted, kEnded, kFailed, kOther };

  struct Step {
    Kind kind;
    std::wstring_view word;  ///< For kWord: the part of the text that is heard now.
    /// For kWord: the word and what precedes it since the last one. An engine may speak several words as one
    /// and report only the first.
    std::wstring_view wordInContext;
  };

  /// @param text     what was given to speak; must outlive this object
  /// @param isCloud  whether the voice belongs to the speech service, whose notices differ
  SpeechProgress(std::wstring_view text, bool isCloud) : text_(text), isCloud_(isCloud) {}

  Step read(WPARAM wParam, LPARAM lParam);

  /// The text after the last word that was heard.
  std::wstring_view rest() const { return text_.substr(heardUpTo_); }

 private:
  bool isOneLetterWord(std::size_t offset) const;

  std::wstring_view text_;
  bool isCloud_;
  std::size_t heardUpTo_ = 0;
};

}  // namespace narravo
