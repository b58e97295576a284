#pragma once

#include <windows.h>

#include <cstdint>

/// A slider for one setting of a voice, and the value beside it. What is set takes effect with the next text.
class OptionSlider {
 public:
  /// @param option  SpeechOption
  /// @param slider  a trackbar
  /// @param value   a static text
  OptionSlider(std::int32_t option, HWND slider, HWND value)
      : option_(option), slider_(slider), value_(value) {}

  HWND slider() const { return slider_; }

  /// Shows a voice's range, with a tick at the default, and its present value. @return SPEECH_OK or a
  /// SpeechError
  std::int32_t showVoice(std::int32_t voice);

  /// Gives the slider's position to the voice that is shown. @return SPEECH_OK or a SpeechError
  std::int32_t apply();

 private:
  void showValue(std::int32_t value) const;

  std::int32_t option_;
  std::int32_t voice_ = -1;
  HWND slider_;
  HWND value_;
};
