// From the library's notices to the events of the C interface.

#include <speech/notices.h>

#include "speech/c_interface/open_engine.h"
#include "speech/c_interface/text.h"

namespace speech::c_interface {

void OpenEngine::receive(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case EventWindow::kNotice:
      // What comes while nothing is spoken is late, or belongs to an export.
      if (state_ != SPEECH_STATE_IDLE) receiveNotice(wParam, lParam);
      break;
    case EventWindow::kStarted:
      if (state_ != SPEECH_STATE_IDLE && wParam == speechNumber_) deliver(SPEECH_EVENT_STARTED);
      break;
    case EventWindow::kFailed:
      if (!failures_.empty() && failures_.front().number == wParam) {
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
  if (wParam == kNoticeFinishedOrFailed && lParam == kDetailFinishedOrFailed &&
      !spoken_.expectsOneLetterWordAt(wParam)) {
    finish();
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
    finish();
    deliver(SPEECH_EVENT_FINISHED);
  }
}

void OpenEngine::finish() {
  state_ = SPEECH_STATE_IDLE;
  ++speechNumber_;
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
