#include <speech/options.h>

#include <cwchar>

namespace {

/// Stores a value and reports whether it differs from the one before.
template <class Value>
bool stored(Value& current, Value value) {
  if (current == value) return false;
  current = value;
  return true;
}

const wchar_t* decimal(wchar_t (&text)[TextToSpeech_Options::kTextLength], int value) {
  std::swprintf(text, TextToSpeech_Options::kTextLength, L"%d", value);
  return text;
}

}  // namespace

TextToSpeech_Options::TextToSpeech_Options() = default;

int TextToSpeech_Options::getSpeed() const { return speed_; }
int TextToSpeech_Options::getVolume() const { return volume_; }
int TextToSpeech_Options::getPitch() const { return pitch_; }
int TextToSpeech_Options::getPause() const { return pause_; }
int TextToSpeech_Options::getCommaPause() const { return commaPause_; }

void TextToSpeech_Options::setSpeed(int value) { changed_ |= stored(speed_, value); }
void TextToSpeech_Options::setVolume(int value) { changed_ |= stored(volume_, value); }
void TextToSpeech_Options::setPitch(int value) { changed_ |= stored(pitch_, value); }
void TextToSpeech_Options::setPause(int value) { changed_ |= stored(pause_, value); }
void TextToSpeech_Options::setCommaPause(int value) { changed_ |= stored(commaPause_, value); }

// Hosts are linked to these by names that say that they are not const.
// NOLINTBEGIN(readability-make-member-function-const)
int TextToSpeech_Options::getDefSpeed() { return speedDefault_; }
int TextToSpeech_Options::getDefVolume() { return volumeDefault_; }
int TextToSpeech_Options::getDefPitch() { return pitchDefault_; }
int TextToSpeech_Options::getDefPause() { return pauseDefault_; }
int TextToSpeech_Options::getDefCommaPause() { return commaPauseDefault_; }

void TextToSpeech_Options::getSpeedRange(int& minimum, int& maximum) {
  minimum = speedMinimum_;
  maximum = speedMaximum_;
}

void TextToSpeech_Options::getVolumeRange(int& minimum, int& maximum) {
  minimum = volumeMinimum_;
  maximum = volumeMaximum_;
}

void TextToSpeech_Options::getPitchRange(int& minimum, int& maximum) {
  minimum = pitchMinimum_;
  maximum = pitchMaximum_;
}

void TextToSpeech_Options::getPauseRange(int& minimum, int& maximum) {
  minimum = pauseMinimum_;
  maximum = pauseMaximum_;
}

void TextToSpeech_Options::getCommaPauseRange(int& minimum, int& maximum) {
  minimum = commaPauseMinimum_;
  maximum = commaPauseMaximum_;
}
// NOLINTEND(readability-make-member-function-const)

void TextToSpeech_Options::setDefSpeed(int value) { speedDefault_ = value; }
void TextToSpeech_Options::setDefVolume(int value) { volumeDefault_ = value; }
void TextToSpeech_Options::setDefPitch(int value) { pitchDefault_ = value; }
void TextToSpeech_Options::setDefPause(int value) { pauseDefault_ = value; }
void TextToSpeech_Options::setDefCommaPause(int value) { commaPauseDefault_ = value; }

void TextToSpeech_Options::setSpeedRange(int minimum, int maximum) {
  speedMinimum_ = minimum;
  speedMaximum_ = maximum;
}

void TextToSpeech_Options::setVolumeRange(int minimum, int maximum) {
  volumeMinimum_ = minimum;
  volumeMaximum_ = maximum;
}

void TextToSpeech_Options::setPitchRange(int minimum, int maximum) {
  pitchMinimum_ = minimum;
  pitchMaximum_ = maximum;
}

void TextToSpeech_Options::setPauseRange(int minimum, int maximum) {
  pauseMinimum_ = minimum;
  pauseMaximum_ = maximum;
}

void TextToSpeech_Options::setCommaPauseRange(int minimum, int maximum) {
  commaPauseMinimum_ = minimum;
  commaPauseMaximum_ = maximum;
}

const wchar_t* TextToSpeech_Options::getSpeedToString() const { return decimal(speedText_, speed_); }
const wchar_t* TextToSpeech_Options::getVolumeToString() const { return decimal(volumeText_, volume_); }
const wchar_t* TextToSpeech_Options::getPitchToString() const { return decimal(pitchText_, pitch_); }
const wchar_t* TextToSpeech_Options::getPauseToString() const { return decimal(pauseText_, pause_); }
const wchar_t* TextToSpeech_Options::getCommaPauseToString() const {
  return decimal(commaPauseText_, commaPause_);
}

bool TextToSpeech_Options::isChanged() const { return changed_; }
void TextToSpeech_Options::applied() { changed_ = false; }

void TextToSpeech_Options::reset() {
  setSpeed(speedDefault_);
  setVolume(volumeDefault_);
  setPitch(pitchDefault_);
  setPause(pauseDefault_);
  setCommaPause(commaPauseDefault_);
  setFormat(OPTION_FORMAT_DEFAULT);
  setALDEnable(0);
}

TextToSpeech_Options::OPTION_FORMAT TextToSpeech_Options::getFormat() const { return format_; }
void TextToSpeech_Options::setFormat(OPTION_FORMAT value) { changed_ |= stored(format_, value); }
int TextToSpeech_Options::getALDEnable() const { return aldEnable_; }
void TextToSpeech_Options::setALDEnable(int value) { changed_ |= stored(aldEnable_, value); }
