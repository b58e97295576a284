// What the window does with voices and speech.

#include "reader_window.h"

void ReaderWindow::chooseVoice() {
  const std::int32_t voice = voices_.chosen();
  if (voice == VoiceList::kNone) return;
  for (OptionSlider& slider : sliders_) {
    const std::int32_t result = slider.showVoice(voice);
    if (result != SPEECH_OK) showStatus(describeError(result));
  }
}

void ReaderWindow::applySlider(HWND slider) {
  for (OptionSlider& known : sliders_) {
    if (known.slider() != slider) continue;
    const std::int32_t result = known.apply();
    if (result != SPEECH_OK) showStatus(describeError(result));
  }
}

void ReaderWindow::speak() {
  const std::int32_t voice = voices_.chosen();
  if (activity_ != Activity::kIdle || voice == VoiceList::kNone) return;
  const std::optional<std::wstring> text = textToSay();
  if (!text) return;

  showStatus(L"Asking for the speech\u2026");  // which takes a moment with a voice from the network
  UpdateWindow(controls_.status);
  std::int32_t result = engine_.use(voice);
  if (result == SPEECH_OK) result = speech_speak_w(engine_.handle(), text->c_str(), 0);
  if (result != SPEECH_OK) return showStatus(describeError(result));
  setActivity(Activity::kSpeaking);
  showStatus(L"Speaking.");
}

void ReaderWindow::pauseOrResume() {
  if (activity_ != Activity::kSpeaking && activity_ != Activity::kPaused) return;
  const bool pauses = activity_ == Activity::kSpeaking;
  const std::int32_t result = pauses ? speech_pause(engine_.handle()) : speech_resume(engine_.handle());
  if (result != SPEECH_OK) return showStatus(describeError(result));
  setActivity(pauses ? Activity::kPaused : Activity::kSpeaking);
  showStatus(pauses ? L"Paused." : L"Speaking.");
}

void ReaderWindow::stop() {
  if (activity_ == Activity::kSpeaking || activity_ == Activity::kPaused) {
    const std::int32_t result = speech_stop(engine_.handle());
    const std::wstring status = result == SPEECH_OK ? L"Stopped." : describeError(result);
    text_.unmark();
    setActivity(Activity::kIdle);
    showStatus(status);
  } else if (activity_ == Activity::kRendering) {
    endExport(L"The export was cancelled. Nothing was written.");
  }
}

void ReaderWindow::onSpeechEvent(const SpeechEvent& event) {
  if (event.kind == SPEECH_EVENT_WORD) {
    text_.markWord(event.utf16_offset, event.utf16_length);
  } else if (event.kind == SPEECH_EVENT_FINISHED) {
    text_.unmark();
    setActivity(Activity::kIdle);
    showStatus(L"Finished.");
  }
  // SPEECH_EVENT_FAILED says what the result of speech_speak_w says too.
}
