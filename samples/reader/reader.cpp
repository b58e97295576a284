#include "reader.h"

#include <utility>

namespace {

constexpr UINT_PTR kExportTimer = 1;

}  // namespace

Reader::Reader(ReaderView& view)
    : view_(view), engine_([this](const SpeechEvent& event) { onSpeechEvent(event); }) {}

bool Reader::openEngine() {
  const std::int32_t result = engine_.use(view_.chosenVoice());
  if (result != SPEECH_OK) view_.showStatus(describeError(result));
  return result == SPEECH_OK;
}

void Reader::speak() {
  if (view_.activity() != Activity::kIdle || view_.chosenVoice() == VoiceList::kNone) return;
  const std::optional<std::wstring> text = view_.textToSay();
  if (!text) return;

  view_.showStatus(L"Asking for the speech\u2026");  // which takes a moment with a voice from the network
  if (!openEngine()) return;
  const std::int32_t result = speech_speak_w(engine_.handle(), text->c_str(), 0);
  if (result != SPEECH_OK) return view_.showStatus(describeError(result));
  view_.setActivity(Activity::kSpeaking);
  view_.showStatus(L"Speaking.");
}

void Reader::pauseOrResume() {
  const bool isSpeaking = view_.activity() == Activity::kSpeaking;
  if (!isSpeaking && view_.activity() != Activity::kPaused) return;
  const std::int32_t result = isSpeaking ? speech_pause(engine_.handle()) : speech_resume(engine_.handle());
  if (result != SPEECH_OK) return view_.showStatus(describeError(result));
  view_.setActivity(isSpeaking ? Activity::kPaused : Activity::kSpeaking);
  view_.showStatus(isSpeaking ? L"Paused." : L"Speaking.");
}

void Reader::stop() {
  const Activity activity = view_.activity();
  if (activity == Activity::kSpeaking || activity == Activity::kPaused) {
    const std::int32_t result = speech_stop(engine_.handle());
    const std::wstring status = result == SPEECH_OK ? L"Stopped." : describeError(result);
    view_.text().unmark();
    view_.setActivity(Activity::kIdle);
    view_.showStatus(status);
  } else if (activity == Activity::kRendering) {
    endExport(L"The export was cancelled. Nothing was written.");
  }
}

void Reader::onSpeechEvent(const SpeechEvent& event) {
  if (event.kind == SPEECH_EVENT_WORD) {
    view_.text().markWord(event.utf16_offset, event.utf16_length);
  } else if (event.kind == SPEECH_EVENT_FINISHED) {
    view_.text().unmark();
    view_.setActivity(Activity::kIdle);
    view_.showStatus(L"Finished.");
  }
  // SPEECH_EVENT_FAILED adds nothing to the result of speech_speak_w.
}

void Reader::beginExport(HWND window) {
  if (view_.activity() != Activity::kIdle || view_.chosenVoice() == VoiceList::kNone) return;
  std::optional<std::wstring> text = view_.textToSay();
  if (!text) return;
  std::optional<ExportTarget> target = askForTarget(window);
  if (!target || !openEngine()) return;

  export_.emplace(engine_.handle(), std::move(*text), std::move(*target));
  view_.showProgress(0, export_->length());
  view_.setActivity(Activity::kRendering);
  view_.showStatus(L"Exporting to " + export_->target().path);
  // Windows delivers timer messages last: between two pieces the window handles all that its user has done.
  window_ = window;
  SetTimer(window_, kExportTimer, USER_TIMER_MINIMUM, nullptr);
}

void Reader::continueExport() {
  if (view_.activity() == Activity::kRendering && !export_->isRendered()) {
    const std::int32_t result = export_->renderNext();
    if (result != SPEECH_OK) return endExport(describeError(result));
    view_.showProgress(export_->position(), export_->length());
  } else if (view_.activity() == Activity::kRendering) {
    // The next timer message writes; until then the window shows that it can no longer be cancelled.
    view_.setActivity(Activity::kWriting);
    view_.showStatus(L"Writing " + export_->target().path);
  } else if (view_.activity() == Activity::kWriting) {
    KillTimer(window_, kExportTimer);
    const std::int32_t result = export_->write();
    endExport(result == SPEECH_OK ? L"Exported to " + export_->target().path : describeError(result));
    const bool closes = closesWhenWritten_ && result == SPEECH_OK;
    closesWhenWritten_ = false;
    if (closes) DestroyWindow(window_);
  }
}

void Reader::endExport(const std::wstring& message) {
  KillTimer(window_, kExportTimer);
  export_.reset();
  view_.setActivity(Activity::kIdle);
  view_.showStatus(message);
}

bool Reader::canClose() {
  // The library is still inside the call that writes, which dispatches messages such as this one.
  if (view_.activity() != Activity::kWriting) return true;
  closesWhenWritten_ = true;
  view_.showStatus(L"The window closes as soon as the file is written.");
  return false;
}

void Reader::end() {
  export_.reset();
  engine_.close();
}
