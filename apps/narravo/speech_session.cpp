#include "apps/narravo/speech_session.h"

#include <array>

#include "apps/narravo/commands.h"
#include "win32/text.h"

namespace narravo {
namespace {

std::string userLanguage() {
  std::array<wchar_t, LOCALE_NAME_MAX_LENGTH> name{};
  GetUserDefaultLocaleName(name.data(), static_cast<int>(name.size()));
  return speech::toUtf8(name.data());
}

/// One setting of the options record, under the name that the user knows.
struct Setting {
  const char* option;
  std::optional<int> VoiceArguments::*wanted;
  void (TextToSpeech_Options::*getRange)(int&, int&);
  void (TextToSpeech_Options::*set)(int);
};

// Addresses of imported functions are known at load time only.
const Setting kSettings[] = {
    {"--speed", &VoiceArguments::speed, &TextToSpeech_Options::getSpeedRange,
     &TextToSpeech_Options::setSpeed},
    {"--pitch", &VoiceArguments::pitch, &TextToSpeech_Options::getPitchRange,
     &TextToSpeech_Options::setPitch},
    {"--volume", &VoiceArguments::volume, &TextToSpeech_Options::getVolumeRange,
     &TextToSpeech_Options::setVolume},
};

/// The record itself takes any value, so the bounds are the host's to keep.
void adjust(TextToSpeech_Options& options, const VoiceArguments& arguments) {
  for (const Setting& setting : kSettings) {
    const std::optional<int> wanted = arguments.*setting.wanted;
    if (!wanted) continue;
    int minimum = 0;
    int maximum = 0;
    (options.*setting.getRange)(minimum, maximum);
    if (*wanted < minimum || *wanted > maximum) {
      throw HostError(kExitUsage, std::string(setting.option) + " " + std::to_string(*wanted) +
                                      " is out of this voice's range, " + std::to_string(minimum) + " to " +
                                      std::to_string(maximum));
    }
    (options.*setting.set)(*wanted);
  }
}

/// The service's words as one line, whatever they are encoded in.
std::string oneLine(const std::string& text) {
  std::string line;
  for (const char byte : text) {
    const bool isPlain = byte >= ' ' && byte <= '~';
    line += isPlain ? byte : ' ';
  }
  return line;
}

}  // namespace

void addVoiceArguments(CLI::App& command, VoiceArguments& arguments) {
  command.add_option(
      "--voice", arguments.wish.voice,
      "Voice by name, language code (en, en-US) or part of its name; default: the user's language");
  command.add_option("--gender", arguments.wish.gender, "Take a female or a male voice")
      ->check(CLI::IsMember({"female", "male"}, CLI::ignore_case));
  command.add_option("--speed", arguments.speed, "Speaking rate; 100 is the voice's own");
  command.add_option("--pitch", arguments.pitch, "Pitch; 100 is the voice's own");
  command.add_option("--volume", arguments.volume, "Loudness; 100 is the voice's own");
}

SpeechSession::SpeechSession(const VoiceArguments& arguments)
    : voice_(chooseVoice(installedVoices(), arguments.wish, userLanguage())) {
  TextToSpeech_Options& options = *voice_.product->getOptions();
  adjust(options, arguments);

  engine_ = ITextToSpeech::getInstance(window_.handle(), HostWindow::kNoticeMessage, voice_.product);
  if (engine_ == nullptr)
    throw HostError(kExitEngineFailed, "the voice " + voice_.name + " could not be loaded");
  engine_->applyOptions(options);
  options.applied();
}

bool SpeechSession::isCloud() const { return voice_.product->getEngineType().CompareNoCase(L"skyvo") == 0; }

void SpeechSession::reportRefusal(const std::string& what) const {
  const std::string& said = window_.serviceMessage();
  throw HostError(kExitEngineFailed, said.empty() ? what : what + ": " + oneLine(said));
}

}  // namespace narravo
