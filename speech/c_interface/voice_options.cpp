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
  int (*get)(const Options& options);
  void (*set)(Options& options, int value);
  int (*getDefault)(Options& options);
  void (*getRange)(Options& options, int& minimum, int& maximum);
};

/// One whose bounds and default are the engine's.
template <auto get, auto set, auto getDefault, auto getRange>
constexpr Setting kOfEngine = {
    [](const Options& options) { return (options.*get)(); },
    [](Options& options, int value) { (options.*set)(value); },
    [](Options& options) { return (options.*getDefault)(); },
    [](Options& options, int& minimum, int& maximum) { (options.*getRange)(minimum, maximum); },
};

void anyNumber(Options& /*options*/, int& minimum, int& maximum) {
  minimum = INT32_MIN;
  maximum = INT32_MAX;
}

/// By SpeechOption.
constexpr Setting kSettings[] = {
    kOfEngine<&Options::getSpeed, &Options::setSpeed, &Options::getDefSpeed, &Options::getSpeedRange>,
    kOfEngine<&Options::getVolume, &Options::setVolume, &Options::getDefVolume, &Options::getVolumeRange>,
    kOfEngine<&Options::getPitch, &Options::setPitch, &Options::getDefPitch, &Options::getPitchRange>,
    kOfEngine<&Options::getPause, &Options::setPause, &Options::getDefPause, &Options::getPauseRange>,
    kOfEngine<&Options::getCommaPause, &Options::setCommaPause, &Options::getDefCommaPause,
              &Options::getCommaPauseRange>,
    {[](const Options& options) -> int { return options.getFormat(); },
     [](Options& options, int value) { options.setFormat(static_cast<Options::OPTION_FORMAT>(value)); },
     [](Options& /*options*/) -> int { return Options::OPTION_FORMAT_DEFAULT; }, anyNumber},
    {[](const Options& options) { return options.getALDEnable(); },
     [](Options& options, int value) { options.setALDEnable(value); }, [](Options& /*options*/) { return 0; },
     anyNumber},
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
    setting.getRange(options, lowest, highest);
    if (minimum != nullptr) *minimum = lowest;
    if (maximum != nullptr) *maximum = highest;
    if (standard != nullptr) *standard = setting.getDefault(options);
  });
}

int32_t SPEECH_CALL speech_option_get(int32_t voice, int32_t option, int32_t* value) {
  return answered([&] {
    required(value);
    const Setting& setting = settingOf(option);
    *value = setting.get(*voiceAt(voice).getOptions());
  });
}

int32_t SPEECH_CALL speech_option_set(int32_t voice, int32_t option, int32_t value) {
  return answeredWhenFree([&] {
    const Setting& setting = settingOf(option);
    Options& options = *voiceAt(voice).getOptions();
    int lowest = 0;
    int highest = 0;
    setting.getRange(options, lowest, highest);
    if (value < lowest || value > highest) throw Failure(SPEECH_ERROR_RANGE);
    setting.set(options, value);
    applyToOpenEngine(voice);
  });
}

int32_t SPEECH_CALL speech_option_reset(int32_t voice) {
  return answeredWhenFree([&] {
    voiceAt(voice).getOptions()->reset();
    applyToOpenEngine(voice);
  });
}

int32_t SPEECH_CALL speech_option_changed(int32_t voice, int32_t* changed) {
  return answered([&] {
    required(changed);
    *changed = voiceAt(voice).getOptions()->isChanged() ? 1 : 0;
  });
}
