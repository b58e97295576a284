#pragma once

// TextToSpeech_Options: the voice settings that a host wants, with the bounds and defaults of an engine.
//
//   TextToSpeech_Options& options = *product->getOptions();
//   int slowest = 0, fastest = 0;
//   options.getSpeedRange(slowest, fastest);
//   options.setSpeed(fastest);
//   if (options.isChanged()) {
//     engine->applyOptions(options);
//     options.applied();
//   }

#include "audio/export.h"

/// A plain record: nothing is checked, clamped or reported; bounds are kept for the host to read. Copying
/// copies everything, the changed flag included. A fresh record holds -1 in every value and bound, which
/// means "not set".
class SPEECH_API TextToSpeech_Options {
 public:
  /// Output format. Only the value that reset() restores has a meaning to this library.
  enum OPTION_FORMAT : int { OPTION_FORMAT_DEFAULT = 1 };

  /// Room for any value as decimal text: "-2147483648" and its terminator.
  static constexpr int kTextLength = 12;

  /// Leaves the five defaults unset: call the setDef… setters before reset().
  TextToSpeech_Options();

  // Current values. A setter marks the record changed when the value differs from the current one.
  int getSpeed() const;
  int getVolume() const;
  int getPitch() const;
  int getPause() const;  ///< Pause at a sentence end, in the engine's unit (the bundled one: milliseconds).
  int getCommaPause() const;  ///< Pause at a comma, likewise.
  void setSpeed(int value);
  void setVolume(int value);
  void setPitch(int value);
  void setPause(int value);
  void setCommaPause(int value);

  // Defaults, which reset() restores. Setting one never marks the record changed.
  int getDefSpeed();
  int getDefVolume();
  int getDefPitch();
  int getDefPause();
  int getDefCommaPause();
  void setDefSpeed(int value);
  void setDefVolume(int value);
  void setDefPitch(int value);
  void setDefPause(int value);
  void setDefCommaPause(int value);

  // Bounds, stored as given. Setting them never marks the record changed nor touches the current value.
  void getSpeedRange(int& minimum, int& maximum);
  void getVolumeRange(int& minimum, int& maximum);
  void getPitchRange(int& minimum, int& maximum);
  void getPauseRange(int& minimum, int& maximum);
  void getCommaPauseRange(int& minimum, int& maximum);
  void setSpeedRange(int minimum, int maximum);
  void setVolumeRange(int minimum, int maximum);
  void setPitchRange(int minimum, int maximum);
  void setPauseRange(int minimum, int maximum);
  void setCommaPauseRange(int minimum, int maximum);

  // The current value as decimal text. The text belongs to the record and is valid until the same getter is
  // called again on it, or the record ends.
  const wchar_t* getSpeedToString() const;
  const wchar_t* getVolumeToString() const;
  const wchar_t* getPitchToString() const;
  const wchar_t* getPauseToString() const;
  const wchar_t* getCommaPauseToString() const;

  /// True when a value has changed since the record was made or applied() was called.
  bool isChanged() const;
  /// Clears the changed flag; call it after applyOptions.
  void applied();
  /// Restores the defaults, format 1 and ALD 0. Marks the record changed where something differed.
  void reset();

  OPTION_FORMAT getFormat() const;
  void setFormat(OPTION_FORMAT value);
  int getALDEnable() const;
  void setALDEnable(int value);

 private:
  bool changed_;
  int speed_;
  int volume_;
  int pitch_;
  int pause_;
  int commaPause_;
  int speedMinimum_;
  int volumeMinimum_;
  int pitchMinimum_;
  int pauseMinimum_;
  int commaPauseMinimum_;
  int speedMaximum_;
  int volumeMaximum_;
  int pitchMaximum_;
  int pauseMaximum_;
  int commaPauseMaximum_;
  int speedDefault_;
  int volumeDefault_;
  int pitchDefault_;
  int pauseDefault_;
  int commaPauseDefault_;
  OPTION_FORMAT format_;
  int aldEnable_;

  // The texts that the ToString getters hand out.
  mutable wchar_t speedText_[kTextLength];
  mutable wchar_t volumeText_[kTextLength];
  mutable wchar_t pitchText_[kTextLength];
  mutable wchar_t pauseText_[kTextLength];
  mutable wchar_t commaPauseText_[kTextLength];
};
