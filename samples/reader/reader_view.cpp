#include "reader_view.h"

#include <commctrl.h>
#include <speech/speech_c.h>

#include <array>

#include "engine.h"

namespace {

constexpr wchar_t kFirstText[] =
    L"Type or paste a text here and press F5 to hear it.\r\n\r\n"
    L"Each word is marked while it is spoken. Choose a voice on the left and set its speed, pitch and "
    L"volume; "
    L"changes apply from the next Speak. Export turns the text into a sound file.";

}  // namespace

void ReaderView::build(HWND window) {
  window_ = window;
  controls_ = Controls::create(window);
  const std::array<std::int32_t, 3> options = {SPEECH_OPTION_SPEED, SPEECH_OPTION_PITCH,
                                               SPEECH_OPTION_VOLUME};
  for (std::size_t i = 0; i < options.size(); ++i) {
    sliders_.emplace_back(options[i], controls_.sliders[i].slider, controls_.sliders[i].value);
  }
  text_.attach(controls_.text);
  SetWindowTextW(controls_.text, kFirstText);
  SendMessageW(controls_.filter, EM_SETCUEBANNER, TRUE, reinterpret_cast<LPARAM>(L"All voices"));

  const std::int32_t result = voices_.attach(controls_.voices);
  setActivity(Activity::kIdle);
  showStatus(result == SPEECH_OK ? std::to_wstring(voices_.count()) +
                                       L" voices.\nF5 speaks, F6 pauses, Esc stops, Ctrl+S exports."
                                 : describeError(result));

  setResolution(dpiOf(window));
  const SIZE size = controls_.initialSize();
  SetWindowPos(window, nullptr, 0, 0, size.cx, size.cy, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);

  // Only now does the list have its size, so that the chosen voice can be brought into view.
  std::array<wchar_t, LOCALE_NAME_MAX_LENGTH> locale = {};
  GetUserDefaultLocaleName(locale.data(), static_cast<int>(locale.size()));
  voices_.chooseFor(locale.data());
}

void ReaderView::setResolution(UINT dpi) {
  controls_.setResolution(dpi);
  arrange();
}

void ReaderView::arrange() const {
  controls_.arrange();
  voices_.fitColumns();
}

void ReaderView::setActivity(Activity activity) {
  activity_ = activity;
  const bool isIdle = activity == Activity::kIdle;
  const bool hasSpeech = activity == Activity::kSpeaking || activity == Activity::kPaused;
  const bool canBegin = isIdle && chosenVoice() != VoiceList::kNone;
  EnableWindow(controls_.speak, canBegin);
  EnableWindow(controls_.exportSpeech, canBegin);
  EnableWindow(controls_.pause, hasSpeech);
  EnableWindow(controls_.stop, hasSpeech || activity == Activity::kRendering);
  SetWindowTextW(controls_.pause, activity == Activity::kPaused ? L"&Resume" : L"&Pause");
  SetWindowTextW(controls_.stop, isExporting() ? L"Ca&ncel" : L"St&op");
  text_.setLocked(!isIdle);

  // An export keeps the voice and the settings that it began with.
  EnableWindow(controls_.filter, !isExporting());
  EnableWindow(controls_.voices, !isExporting());
  for (const OptionSlider& slider : sliders_) EnableWindow(slider.slider(), !isExporting());
  ShowWindow(controls_.progress, isExporting() ? SW_SHOWNA : SW_HIDE);
  controls_.arrange();

  HWND focused = GetFocus();
  const bool isInFront = GetActiveWindow() == window_;
  if (isInFront && (focused == nullptr || !IsWindowEnabled(focused))) SetFocus(controls_.text);
}

void ReaderView::showStatus(const std::wstring& text) const {
  SetWindowTextW(controls_.status, text.c_str());
  UpdateWindow(controls_.status);
}

void ReaderView::showProgress(std::size_t position, std::size_t length) const {
  SendMessageW(controls_.progress, PBM_SETRANGE32, 0, static_cast<LPARAM>(length));
  SendMessageW(controls_.progress, PBM_SETPOS, position, 0);
}

void ReaderView::filterVoices() {
  const std::wstring filter = windowText(controls_.filter);
  voices_.show(filter);
  setActivity(activity_);
  showStatus(voices_.shownCount() == 0 ? L"No voice matches \u201C" + filter + L"\u201D."
                                       : std::to_wstring(voices_.shownCount()) + L" of " +
                                             std::to_wstring(voices_.count()) + L" voices.");
}

void ReaderView::showVoice() {
  const std::int32_t voice = chosenVoice();
  if (voice == VoiceList::kNone) return;
  for (OptionSlider& slider : sliders_) {
    const std::int32_t result = slider.showVoice(voice);
    if (result != SPEECH_OK) showStatus(describeError(result));
  }
}

void ReaderView::applySlider(HWND slider) {
  for (OptionSlider& known : sliders_) {
    if (known.slider() != slider) continue;
    const std::int32_t result = known.apply();
    if (result != SPEECH_OK) showStatus(describeError(result));
  }
}

std::optional<std::wstring> ReaderView::textToSay() const {
  std::wstring text = text_.text();
  if (!isBlank(text)) return text;
  showStatus(L"Nothing to read. Type or paste some text.");
  return std::nullopt;
}
