#include "lxapi/lxapi.h"
#include "speech/product_engine.h"
#include "win32/text.h"

namespace speech {
namespace {

/// Where the record keeps a setting, and the information numbers of its bounds and default.
struct Setting {
  void (TextToSpeech_Options::*setRange)(int minimum, int maximum);
  void (TextToSpeech_Options::*setDefault)(int value);
  std::int32_t minimum;
  std::int32_t maximum;
  std::int32_t standard;
};

using Options = TextToSpeech_Options;

/// In the order in which an engine is asked.
constexpr Setting kSettings[] = {
    {&Options::setSpeedRange, &Options::setDefSpeed,  //
     LX_INFO_SPEED_MINIMUM, LX_INFO_SPEED_MAXIMUM, LX_INFO_SPEED_DEFAULT},
    {&Options::setPitchRange, &Options::setDefPitch,  //
     LX_INFO_PITCH_MINIMUM, LX_INFO_PITCH_MAXIMUM, LX_INFO_PITCH_DEFAULT},
    {&Options::setVolumeRange, &Options::setDefVolume,  //
     LX_INFO_VOLUME_MINIMUM, LX_INFO_VOLUME_MAXIMUM, LX_INFO_VOLUME_DEFAULT},
    {&Options::setPauseRange, &Options::setDefPause,  //
     LX_INFO_PAUSE_MINIMUM, LX_INFO_PAUSE_MAXIMUM, LX_INFO_PAUSE_DEFAULT},
    {&Options::setCommaPauseRange, &Options::setDefCommaPause,  //
     LX_INFO_COMMA_PAUSE_MINIMUM, LX_INFO_COMMA_PAUSE_MAXIMUM, LX_INFO_COMMA_PAUSE_DEFAULT},
};

constexpr int kCloudMinimum = 0;
constexpr int kCloudMaximum = 5000;
constexpr int kCloudDefault = 100;

int ask(std::uint32_t engine, std::int32_t information) {
  constexpr int kWithoutAnswer = 100;
  std::int32_t answer = -1;
  LXAPI_CallEngineInternal(engine, "LX_GetTTSInfo", &answer, nullptr, nullptr, 1,
                           static_cast<std::intptr_t>(information));
  // Kept: a bound that the engine does not know becomes 100 like a default.
  return answer < 0 ? kWithoutAnswer : answer;
}

}  // namespace

std::uint32_t findEngine(const CStringW& key1, const CStringW& key2) {
  return LXAPI_GetEngine(toThreadCodePage(textOrEmpty(key1)).c_str(),
                         toThreadCodePage(textOrEmpty(key2)).c_str());
}

void fillOptionsFromEngine(TextToSpeech_Options& options, std::uint32_t engine) {
  for (const Setting& setting : kSettings) {
    const int minimum = ask(engine, setting.minimum);
    const int maximum = ask(engine, setting.maximum);
    (options.*setting.setRange)(minimum, maximum);
    (options.*setting.setDefault)(ask(engine, setting.standard));
  }
}

void fillOptionsOfCloudVoice(TextToSpeech_Options& options) {
  for (const Setting& setting : kSettings) {
    (options.*setting.setRange)(kCloudMinimum, kCloudMaximum);
    (options.*setting.setDefault)(kCloudDefault);
  }
}

}  // namespace speech
