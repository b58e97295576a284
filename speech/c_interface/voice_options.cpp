// The settings of a voice.

#include <cstddef>
#include <iterator>

#include "speech/c_interface/catalogue.h"
#include "speech/c_interface/open_engine.h"
#include "speech/c_interface/session.h"

namespace speech::c_interface {
namespace {

using Options = TextToSpeech_Options;

struct Setting {
  int (Options::*get)() const;
  void (Options::*set)(int value);
  int (Options::*getDefault)();
  void (Options::*getRange)(int& minimum, int& maximum);
};

/// By SpeechOption.
constexpr Setting kSettings[] = {
    {&Options::getSpeed, &Options::setSpeed, &Options::getDefSpeed, &Options::getSpeedRange},
    {&Options::getVolume, &Options::setVolume, &Options::getDefVolume, &Options::getVolumeRange},
    {&Options::getPitch, &Options::setPitch, &Options::getDefPitch, &Options::getPitchRange},
    {&Options::getPause, &Options::setPause, &Options::getDefPause, &Options::getPauseRange},
    {&Options::getCommaPause, &Options::setCommaPause, &Options::getDefCommaPause,
     &Options::getCommaPauseRange},
};

const Setting& settingOf(std::int32_t option) {
  if (option < 0 || static_cast<std::size_t>(option) >= std::size(kSettings))
    throw Failure(SPEECH_ERROR_ARGUMENT);
  return kSettings[option];
}

void applyToOpenEngine(std::int32_t voice) {
  const auto engine = session().engine;
  if (engine != nullptr && engine->isCurrent() && engine->voice() == voice) engine->applyOptions();
}

}  // namespace
}  // namespace speech::c_interface

using namespace speech::c_interface;

int32_t SPEECH_CALL speech_option_range(int32_t voice, int32_t option, int32_t* minimum, int32_t* maximum,
                                        int32_t* standard) {
  return answered([&] {
    const Setting& setting = settingOf(option);
    Options& options = *voiceAt(voice).getOptions();
    int lowest = 0;
    int highest = 0;
    (options.*setting.getRange)(lowest, highest);
    if (minimum != nullptr) *minimum = lowest;
    if (maximum != nullptr) *maximum = highest;
    if (standard != nullptr) *standard = (options.*setting.getDefault)();
  });
}

int32_t SPEECH_CALL speech_option_get(int32_t voice, int32_t option, int32_t* value) {
  return answered([&] {
    required(value);
    const Setting& setting = settingOf(option);
    *value = (voiceAt(voice).getOptions()->*setting.get)();
  });
}

int32_t SPEECH_CALL speech_option_set(int32_t voice, int32_t option, int32_t value) {
  return answeredWhenFree([&] {
    const Setting& setting = settingOf(option);
    Options& options = *voiceAt(voice).getOptions();
    int lowest = 0;
    int highest = 0;
    (options.*setting.getRange)(lowest, highest);
    if (value < lowest || value > highest) throw Failure(SPEECH_ERROR_RANGE);
    (options.*setting.set)(value);
    applyToOpenEngine(voice);
  });
}

int32_t SPEECH_CALL speech_option_reset(int32_t voice) {
  return answeredWhenFree([&] {
    voiceAt(voice).getOptions()->reset();
    applyToOpenEngine(voice);
  });
}
