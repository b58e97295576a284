#include "option_slider.h"

#include <commctrl.h>
#include <speech/speech_c.h>

#include <algorithm>
#include <string>

std::int32_t OptionSlider::showVoice(std::int32_t voice) {
  std::int32_t minimum = 0, maximum = 0, standard = 0, value = 0;
  std::int32_t result = speech_option_range(voice, option_, &minimum, &maximum, &standard);
  if (result == SPEECH_OK) result = speech_option_get(voice, option_, &value);
  if (result != SPEECH_OK) return result;

  voice_ = voice;
  SendMessageW(slider_, TBM_SETRANGEMIN, FALSE, minimum);
  SendMessageW(slider_, TBM_SETRANGEMAX, FALSE, maximum);
  SendMessageW(slider_, TBM_SETLINESIZE, 0, std::max(1, (maximum - minimum) / 100));
  SendMessageW(slider_, TBM_SETPAGESIZE, 0, std::max(1, (maximum - minimum) / 10));
  SendMessageW(slider_, TBM_CLEARTICS, FALSE, 0);
  SendMessageW(slider_, TBM_SETTIC, 0, standard);
  // By way of another position: the same number would leave the thumb where it was in the former range.
  SendMessageW(slider_, TBM_SETPOS, TRUE, minimum);
  SendMessageW(slider_, TBM_SETPOS, TRUE, value);
  showValue(value);
  return SPEECH_OK;
}

std::int32_t OptionSlider::apply() {
  const auto value = static_cast<std::int32_t>(SendMessageW(slider_, TBM_GETPOS, 0, 0));
  showValue(value);
  return speech_option_set(voice_, option_, value);
}

void OptionSlider::showValue(std::int32_t value) const {
  SetWindowTextW(value_, (std::to_wstring(value) + L" %").c_str());
}
