// speech/c/voices.h: installed voices, their languages and their options.

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string_view>
#include <vector>

#include "engines/engine_kind.h"
#include "speech/c_interface/open_engine.h"
#include "speech/c_interface/session.h"
#include "speech/c_interface/text.h"
#include "speech/facade.h"

namespace speech::c_interface {
namespace {

struct VoiceText {
  std::int32_t which;
  CStringW (LXAPIProduct::*get)() const;
};

constexpr VoiceText kVoiceTexts[] = {
    {SPEECH_VOICE_NAME, &LXAPIProduct::getDisplayName},
    {SPEECH_VOICE_LABEL, &LXAPIProduct::getKeyLabel},
    {SPEECH_VOICE_KEY1, &LXAPIProduct::getEngineKey1},
    {SPEECH_VOICE_KEY2, &LXAPIProduct::getEngineKey2},
    {SPEECH_VOICE_LANGUAGE, &LXAPIProduct::getLanguageCode},
    {SPEECH_VOICE_GENDER, &LXAPIProduct::getGenderText},
    {SPEECH_VOICE_ENGINE_TYPE, &LXAPIProduct::getEngineType},
    {SPEECH_VOICE_INFO3, &LXAPIProduct::getInfoText3},
    {SPEECH_VOICE_INFO4, &LXAPIProduct::getInfoText4},
    {SPEECH_VOICE_INFO5, &LXAPIProduct::getInfoText5},
    {SPEECH_VOICE_INFO7, &LXAPIProduct::getInfoText7},
    {SPEECH_VOICE_ENGINE_INFO1, &LXAPIProduct::getEngineInfo1},
    {SPEECH_VOICE_ENGINE_INFO2, &LXAPIProduct::getEngineInfo2},
    {SPEECH_VOICE_DICTIONARY_EDITOR, &LXAPIProduct::getUserDictEditorPath},
    {SPEECH_VOICE_DICTIONARY_PATH2, &LXAPIProduct::getUserDictPath2},
    {SPEECH_VOICE_DICTIONARY_PATH3, &LXAPIProduct::getUserDictPath3},
    {SPEECH_VOICE_GENDER_CODE, &LXAPIProduct::getGenderCode},
};

template <class Char>
std::int32_t handOutVoiceText(std::int32_t voice, std::int32_t which, Char* buffer, std::uint32_t capacity,
                              std::uint32_t* length) {
  return answered([&] {
    const auto* const row = std::ranges::find(kVoiceTexts, which, &VoiceText::which);
    if (row == std::end(kVoiceTexts)) throw Failure(SPEECH_ERROR_ARGUMENT);
    handOut(viewOf((voiceAt(voice).*row->get)()), buffer, capacity, length);
  });
}

std::int32_t voiceNumber(const LXAPIProduct& voice, std::int32_t which) {
  switch (which) {
    case SPEECH_VOICE_SAMPLE_RATE:
      return voice.getSampleRateHz();
    case SPEECH_VOICE_INFO9:
      return voice.getInfoNumber9();
    case SPEECH_VOICE_IS_CLOUD:
      return isCloudVoice(voice.getEngineType()) ? 1 : 0;
    case SPEECH_VOICE_SYNTHESIS_HANDLE:
      return static_cast<std::int32_t>(voice.getSynthHandle());
    case SPEECH_VOICE_ENGINE_HANDLE:
      return static_cast<std::int32_t>(voice.getEngineRef());
    default:
      throw Failure(SPEECH_ERROR_ARGUMENT);
  }
}

template <class Char>
std::int32_t handOutLanguage(std::int32_t index, Char* buffer, std::uint32_t capacity,
                             std::uint32_t* length) {
  return answered([&] {
    const std::vector<CStringW> codes = distinctLanguages(voices());
    if (index < 0 || static_cast<std::size_t>(index) >= codes.size()) throw Failure(SPEECH_ERROR_VOICE);
    handOut(viewOf(codes[static_cast<std::size_t>(index)]), buffer, capacity, length);
  });
}

using Options = TextToSpeech_Options;

struct Setting {
  int (*get)(const Options& options);
  void (*set)(Options& options, int value);
  int (*getDefault)(Options& options);
  void (*getRange)(Options& options, int& minimum, int& maximum);
};

/// A setting whose bounds and default the engine names.
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

std::int32_t SPEECH_CALL speech_voice_count(std::int32_t* count) {
  return answered([&] { *required(count) = static_cast<std::int32_t>(voices().GetCount()); });
}

std::int32_t SPEECH_CALL speech_voice_text(std::int32_t voice, std::int32_t which, char* buffer,
                                           std::uint32_t capacity, std::uint32_t* length) {
  return handOutVoiceText(voice, which, buffer, capacity, length);
}

std::int32_t SPEECH_CALL speech_voice_text_w(std::int32_t voice, std::int32_t which, wchar_t* buffer,
                                             std::uint32_t capacity, std::uint32_t* length) {
  return handOutVoiceText(voice, which, buffer, capacity, length);
}

std::int32_t SPEECH_CALL speech_voice_number(std::int32_t voice, std::int32_t which, std::int32_t* value) {
  return answered([&] {
    required(value);
    *value = voiceNumber(voiceAt(voice), which);
  });
}

std::int32_t SPEECH_CALL speech_language_count(std::int32_t* count) {
  return answered(
      [&] { *required(count) = static_cast<std::int32_t>(speech::distinctLanguages(voices()).size()); });
}

std::int32_t SPEECH_CALL speech_language(std::int32_t index, char* buffer, std::uint32_t capacity,
                                         std::uint32_t* length) {
  return handOutLanguage(index, buffer, capacity, length);
}

std::int32_t SPEECH_CALL speech_language_w(std::int32_t index, wchar_t* buffer, std::uint32_t capacity,
                                           std::uint32_t* length) {
  return handOutLanguage(index, buffer, capacity, length);
}

std::int32_t SPEECH_CALL speech_option_range(std::int32_t voice, std::int32_t option, std::int32_t* minimum,
                                             std::int32_t* maximum, std::int32_t* standard) {
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

std::int32_t SPEECH_CALL speech_option_get(std::int32_t voice, std::int32_t option, std::int32_t* value) {
  return answered([&] {
    required(value);
    const Setting& setting = settingOf(option);
    *value = setting.get(*voiceAt(voice).getOptions());
  });
}

std::int32_t SPEECH_CALL speech_option_set(std::int32_t voice, std::int32_t option, std::int32_t value) {
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

std::int32_t SPEECH_CALL speech_option_reset(std::int32_t voice) {
  return answeredWhenFree([&] {
    voiceAt(voice).getOptions()->reset();
    applyToOpenEngine(voice);
  });
}

std::int32_t SPEECH_CALL speech_option_changed(std::int32_t voice, std::int32_t* changed) {
  return answered([&] {
    required(changed);
    *changed = voiceAt(voice).getOptions()->isChanged() ? 1 : 0;
  });
}
