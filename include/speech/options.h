#pragma once

/// @file
/// TextToSpeech_Options: the voice settings that a host wants, with the bounds and defaults of an engine.
///
///     TextToSpeech_Options& options = *product->getOptions();
///     int slowest = 0, fastest = 0;
///     options.getSpeedRange(slowest, fastest);
///     options.setSpeed(fastest);
///     if (options.isChanged()) {
///       engine->applyOptions(options);
///       options.applied();
///     }

#include <speech/export.h>

/// A plain record: nothing is checked, clamped or reported; bounds are kept for the host to read. Copying
/// copies everything, the changed flag included. A fresh record holds -1 in every value and bound, which
/// means "not set".
class SPEECH_API TextToSpeech_Options {
 public:
  /// Output format. Only the value that reset() restores has a meaning to this library.
  enum OPTION_FORMAT : int {
    OPTION_FORMAT_DEFAULT = 1  ///< What reset() restores.
  };

  /// Room for any value as decimal text: "-2147483648" and its terminator.
  static constexpr int kTextLength = 12;

  /// Leaves the five defaults unset: call the setDef… setters before reset().
  TextToSpeech_Options();

  /// @name Current values
  /// Pauses are those at a sentence end and at a comma, in the engine's unit (the bundled one: milliseconds).
  /// @{

  /// @return the current value; -1 while it is not set
  int getSpeed() const;
  int getVolume() const;
  int getPitch() const;
  int getPause() const;
  int getCommaPause() const;

  /// @}
  /// @name Changing current values
  /// @{

  /// Marks the record changed when the value differs from the current one.
  /// @param value  stored as given
  void setSpeed(int value);
  void setVolume(int value);
  void setPitch(int value);
  void setPause(int value);
  void setCommaPause(int value);

  /// @}
  /// @name Defaults
  /// @{

  /// @return what reset() restores; undefined while it is not set
  int getDefSpeed();
  int getDefVolume();
  int getDefPitch();
  int getDefPause();
  int getDefCommaPause();

  /// @}
  /// @name Changing defaults
  /// @{

  /// Never marks the record changed.
  /// @param value  what reset() shall restore
  void setDefSpeed(int value);
  void setDefVolume(int value);
  void setDefPitch(int value);
  void setDefPause(int value);
  void setDefCommaPause(int value);

  /// @}
  /// @name Bounds
  /// @{

  /// @param minimum  receives the lowest value that the engine takes
  /// @param maximum  receives the highest
  void getSpeedRange(int& minimum, int& maximum);
  void getVolumeRange(int& minimum, int& maximum);
  void getPitchRange(int& minimum, int& maximum);
  void getPauseRange(int& minimum, int& maximum);
  void getCommaPauseRange(int& minimum, int& maximum);

  /// @}
  /// @name Changing bounds
  /// @{

  /// Never marks the record changed nor touches the current value.
  /// @param minimum,maximum  stored as given
  void setSpeedRange(int minimum, int maximum);
  void setVolumeRange(int minimum, int maximum);
  void setPitchRange(int minimum, int maximum);
  void setPauseRange(int minimum, int maximum);
  void setCommaPauseRange(int minimum, int maximum);

  /// @}
  /// @name Current values as text
  /// @{

  /// @return the current value in decimal. The text belongs to the record and is valid until the same getter
  ///   is called again on it, or the record ends.
  const wchar_t* getSpeedToString() const;
  const wchar_t* getVolumeToString() const;
  const wchar_t* getPitchToString() const;
  const wchar_t* getPauseToString() const;
  const wchar_t* getCommaPauseToString() const;

  /// @}

  /// @return true when a value has changed since the record was made or applied() was called
  bool isChanged() const;
  /// Clears the changed flag; call it after applyOptions.
  void applied();
  /// Restores the defaults, format 1 and ALD 0. Marks the record changed where something differed.
  void reset();

  /// @return the format, of which only the value that reset() restores has a meaning to this library
  OPTION_FORMAT getFormat() const;
  /// @param value  stored as given; marks the record changed when it differs
  void setFormat(OPTION_FORMAT value);
  /// @return the ALD value, a number of the host's own that this library only keeps
  int getALDEnable() const;
  /// @param value  stored as given; marks the record changed when it differs
  void setALDEnable(int value);

 private:
  bool changed_ = false;
  // -1: not set yet.
  int speed_ = -1;
  int volume_ = -1;
  int pitch_ = -1;
  int pause_ = -1;
  int commaPause_ = -1;
  int speedMinimum_ = -1;
  int volumeMinimum_ = -1;
  int pitchMinimum_ = -1;
  int pauseMinimum_ = -1;
  int commaPauseMinimum_ = -1;
  int speedMaximum_ = -1;
  int volumeMaximum_ = -1;
  int pitchMaximum_ = -1;
  int pauseMaximum_ = -1;
  int commaPauseMaximum_ = -1;
  // Kept: these start with no value at all; hosts set them before the first reset.
  int speedDefault_;
  int volumeDefault_;
  int pitchDefault_;
  int pauseDefault_;
  int commaPauseDefault_;

  OPTION_FORMAT format_ = OPTION_FORMAT_DEFAULT;
  int aldEnable_ = 0;

  // The texts that the ToString getters hand out.
  mutable wchar_t speedText_[kTextLength] = {};
  mutable wchar_t volumeText_[kTextLength] = {};
  mutable wchar_t pitchText_[kTextLength] = {};
  mutable wchar_t pauseText_[kTextLength] = {};
  mutable wchar_t commaPauseText_[kTextLength] = {};
};
