#include "lxapi/bundled/voice_settings.h"

namespace speech::lxapi {
namespace {

struct Information {
  LxInformation number;
  int32_t value;
};

constexpr Information kInformation[] = {
    {LX_INFO_PITCH_MAXIMUM, kPitchRange.maximum},
    {LX_INFO_PITCH_DEFAULT, kPitchRange.normal},
    {LX_INFO_PITCH_MINIMUM, kPitchRange.minimum},
    {LX_INFO_SPEED_MAXIMUM, kSpeedRange.maximum},
    {LX_INFO_SPEED_DEFAULT, kSpeedRange.normal},
    {LX_INFO_SPEED_MINIMUM, kSpeedRange.minimum},
    {LX_INFO_VOLUME_MAXIMUM, kVolumeRange.maximum},
    {LX_INFO_VOLUME_DEFAULT, kVolumeRange.normal},
    {LX_INFO_VOLUME_MINIMUM, kVolumeRange.minimum},
    {LX_INFO_PAUSE_MAXIMUM, kSentencePauseRange.maximum},
    {LX_INFO_PAUSE_DEFAULT, kSentencePauseRange.normal},
    {LX_INFO_PAUSE_MINIMUM, kSentencePauseRange.minimum},
    {LX_INFO_COMMA_PAUSE_MAXIMUM, kCommaPauseRange.maximum},
    {LX_INFO_COMMA_PAUSE_DEFAULT, kCommaPauseRange.normal},
    {LX_INFO_COMMA_PAUSE_MINIMUM, kCommaPauseRange.minimum},
};

}  // namespace

int32_t setSynthesisAttribute(VoiceSettings& settings, int32_t attribute, int32_t value) {
  switch (attribute) {
    case LX_ATTR_PITCH:
      settings.pitch = kPitchRange.clamp(value);
      return LX_OK;
    case LX_ATTR_SPEED:
      settings.speed = kSpeedRange.clamp(value);
      return LX_OK;
    case LX_ATTR_VOLUME:
      settings.volume = kVolumeRange.clamp(value);
      return LX_OK;
    case LX_ATTR_SENTENCE_PAUSE:
      settings.sentencePauseMs = kSentencePauseRange.clamp(value);
      return LX_OK;
    // Hosts set these two to 0; no other value means anything here.
    case LX_ATTR_LEXICON:
    case LX_ATTR_RESERVED:
      return value == 0 ? LX_OK : LX_ERROR_BAD_ARGUMENT;
    default:
      return LX_ERROR_UNKNOWN_ATTRIBUTE;
  }
}

std::optional<int32_t> voiceInformation(int64_t number) {
  for (const Information& information : kInformation) {
    if (information.number == number) return information.value;
  }
  return std::nullopt;
}

}  // namespace speech::lxapi
