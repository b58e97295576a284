#pragma once

// Attributes of a voice, their ranges, and the information numbers by which hosts ask for the ranges.

#include <cstdint>
#include <optional>

#include "lxapi/lxapi.h"

namespace speech::lxapi {

struct AttributeRange {
  int32_t minimum;
  int32_t normal;
  int32_t maximum;

  constexpr int32_t clamp(int32_t value) const {
    return value < minimum ? minimum : value > maximum ? maximum : value;
  }
};

// The speeds are those that the synthesizer can do: 87 to 437 words a minute, 175 being normal.
inline constexpr AttributeRange kSpeedRange{50, 100, 250};
inline constexpr AttributeRange kPitchRange{0, 100, 200};
inline constexpr AttributeRange kVolumeRange{0, 100, 200};
// The normal pauses are about those that the synthesizer makes by itself at normal speed. In milliseconds.
inline constexpr AttributeRange kSentencePauseRange{0, 350, 5000};
inline constexpr AttributeRange kCommaPauseRange{0, 150, 5000};

/// What a synthesis handle and its engine ask of one speech.
struct VoiceSettings {
  int32_t pitch = kPitchRange.normal;
  int32_t speed = kSpeedRange.normal;
  int32_t volume = kVolumeRange.normal;
  int32_t sentencePauseMs = kSentencePauseRange.normal;
  int32_t commaPauseMs = kCommaPauseRange.normal;
};

/// Sets an attribute of a synthesis handle (`attribute` as in LxAttribute), brought into its range.
/// @return LX_OK or LX_ERROR_UNKNOWN_ATTRIBUTE
int32_t setSynthesisAttribute(VoiceSettings& settings, int32_t attribute, int32_t value);

/// The answer to an information number (LxInformation), or nothing for an unknown one.
std::optional<int32_t> voiceInformation(int64_t number);

}  // namespace speech::lxapi
