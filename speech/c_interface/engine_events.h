#pragma once

// From the library's notices to the events of the C interface: the window that receives notices, and the
// text whose words they report.

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>

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
  void post(UINT message) const { PostMessageW(window_, message, 0, 0); }

  /// Dispatches the messages that wait for this window. The window may be gone afterwards.
  static void deliverPending(HWND window);

  /// Discards the notices that wait; true when a failure notice was among them.
  bool dropNotices() const;

 private:
  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

  Receiver receiver_;
  HWND window_ = nullptr;
};

/// A place in a text, in units of one of its two forms.
struct TextRange {
  std::uint32_t offset = 0;
  std::uint32_t length = 0;
};

/// The text of a speech and how far it has been heard.
class SpokenText {
 public:
  explicit SpokenText(std::wstring text = {}) : text_(std::move(text)) {}

  const std::wstring& text() const { return text_; }

  /// A word is heard: keeps its range within the text. False for a place outside.
  bool hear(TextRange& word);

  /// The same place in the text's UTF-8 form: in "äh 😀 ok" the word at 6+2 lies at 9+2, behind one letter of
  /// two bytes and one of four. Quick for words that come in order.
  TextRange inUtf8(TextRange word);

  /// The notice of the end looks like a word of one letter at offset 3858. It is that word when the text has
  /// one there and nothing behind it was heard.
  bool expectsOneLetterWordAt(std::size_t offset) const;

 private:
  std::wstring text_;
  std::size_t heardUpTo_ = 0;
  // A place whose UTF-8 offset is known.
  std::size_t knownUnit_ = 0;
  std::size_t knownByte_ = 0;
};

}  // namespace speech::c_interface
