#include "speech/c_interface/engine_events.h"

#include <algorithm>
#include <cwctype>
#include <string_view>

#include <speech/notices.h>

#include "engines/guarded.h"
#include "speech/c_interface/open_engine.h"
#include "speech/c_interface/session.h"
#include "speech/c_interface/text.h"
#include "win32/paths.h"

namespace speech::c_interface {
namespace {

constexpr wchar_t kClassName[] = L"SpeechEventWindow";

bool isEndOrFailure(WPARAM wParam, LPARAM lParam) {
  return wParam == kNoticeFinishedOrFailed && lParam == kDetailFinishedOrFailed;
}

bool isSurrogate(wchar_t unit) { return unit >= 0xD800 && unit <= 0xDFFF; }

/// Bytes of the UTF-8 form; a surrogate counts for half of its pair's four.
std::size_t utf8Size(std::wstring_view units) {
  std::size_t bytes = 0;
  for (const wchar_t unit : units) bytes += unit < 0x80 ? 1u : unit < 0x800 || isSurrogate(unit) ? 2u : 3u;
  return bytes;
}

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
  while (PeekMessageW(&message, window_, kNotice, kNotice, PM_REMOVE))
    hadFailure |= isEndOrFailure(message.wParam, message.lParam);
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

bool SpokenText::hear(TextRange& word) {
  if (word.length == 0 || word.offset >= text_.size()) return false;
  word.length = static_cast<std::uint32_t>(std::min<std::size_t>(word.length, text_.size() - word.offset));
  heardUpTo_ = std::max<std::size_t>(heardUpTo_, word.offset + word.length);
  return true;
}

TextRange SpokenText::inUtf8(TextRange word) {
  if (word.offset < knownUnit_) knownUnit_ = knownByte_ = 0;
  const std::wstring_view text = text_;
  knownByte_ += utf8Size(text.substr(knownUnit_, word.offset - knownUnit_));
  knownUnit_ = word.offset;
  return {static_cast<std::uint32_t>(knownByte_),
          static_cast<std::uint32_t>(utf8Size(text.substr(word.offset, word.length)))};
}

bool SpokenText::expectsOneLetterWordAt(std::size_t offset) const {
  const auto isLetter = [this](std::size_t at) { return at < text_.size() && std::iswalnum(text_[at]) != 0; };
  return heardUpTo_ <= offset && isLetter(offset) && !isLetter(offset - 1) && !isLetter(offset + 1);
}

void OpenEngine::receive(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case EventWindow::kNotice:
      // What comes while nothing is spoken is late, or belongs to an export.
      if (state_ != SPEECH_STATE_IDLE) receiveNotice(wParam, lParam);
      break;
    case EventWindow::kStarted:
      // A text that was refused, or stopped since, does not start.
      if (state_ != SPEECH_STATE_IDLE) deliver(SPEECH_EVENT_STARTED);
      break;
    case EventWindow::kFailed:
      if (!failures_.empty()) {
        const SpeakFailure failure = std::move(failures_.front());
        failures_.pop_front();
        SpeechEvent event = newEvent(SPEECH_EVENT_FAILED);
        event.error = failure.error;
        event.message = failure.message.c_str();
        deliver(event);
      }
      break;
    case WM_COPYDATA:
      if (const auto* const data = reinterpret_cast<const COPYDATASTRUCT*>(lParam);
          data != nullptr && data->lpData != nullptr) {
        serviceMessage_ = utf8OfUnknown({static_cast<const char*>(data->lpData), data->cbData});
      }
      break;
    default:
      break;
  }
}

void OpenEngine::receiveNotice(WPARAM wParam, LPARAM lParam) {
  if (isCloud_) {
    receiveCloudNotice(wParam);
    return;
  }
  if (isEndOrFailure(wParam, lParam) && !spoken_.expectsOneLetterWordAt(wParam)) {
    state_ = SPEECH_STATE_IDLE;
    deliver(SPEECH_EVENT_FINISHED);
    return;
  }
  TextRange word{static_cast<std::uint32_t>(wParam), static_cast<std::uint32_t>(lParam)};
  if (!spoken_.hear(word)) return;
  const TextRange inUtf8 = spoken_.inUtf8(word);
  SpeechEvent event = newEvent(SPEECH_EVENT_WORD);
  event.utf8_offset = inUtf8.offset;
  event.utf8_length = inUtf8.length;
  event.utf16_offset = word.offset;
  event.utf16_length = word.length;
  deliver(event);
}

void OpenEngine::receiveCloudNotice(WPARAM wParam) {
  if (wParam == kNoticePlaybackStarted) {
    playbackStarted_ = true;
    deliver(SPEECH_EVENT_STARTED);
  } else if (wParam == kNoticePlaybackEnded && playbackStarted_) {
    state_ = SPEECH_STATE_IDLE;
    deliver(SPEECH_EVENT_FINISHED);
  }
}

SpeechEvent OpenEngine::newEvent(SpeechEventKind kind) const {
  SpeechEvent event = {};
  event.size = sizeof event;
  event.kind = kind;
  event.engine = handle_;
  event.message = "";
  return event;
}

void OpenEngine::deliver(SpeechEventKind kind) { deliver(newEvent(kind)); }

void OpenEngine::deliver(const SpeechEvent& event) {
  const Listener listener = listener_;  // the callback may close the engine
  if (!listener.isOn) return;
  if (listener.callback != nullptr) listener.callback(listener.user, &event);
  if (listener_.window != nullptr) {
    SendMessageW(listener_.window, listener_.message, static_cast<WPARAM>(event.kind),
                 reinterpret_cast<LPARAM>(&event));
  }
}

}  // namespace speech::c_interface
