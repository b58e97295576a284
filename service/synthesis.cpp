#include "service/synthesis.h"

#include <stdexcept>
#include <system_error>

#include "service/child_process.h"
#include "service/synthesizer_exit.h"

namespace speech::service {
namespace {

constexpr int kBytesPerSample = 2;

std::string describe(const ChildResult& result) {
  switch (result.end) {
    case ChildEnd::kExited:
      if (result.code == static_cast<int>(SynthesizerExit::kNoEngine)) return "it cannot find the voice data";
      return "it ended with code " + std::to_string(result.code);
    case ChildEnd::kKilled:
      return "it was ended by signal " + std::to_string(result.code);
    case ChildEnd::kTimedOut:
      return "it took too long";
    case ChildEnd::kCannotBeStarted:
      break;
  }
  return "it cannot be started: " + std::generic_category().message(result.code);
}

}  // namespace

std::vector<std::string> Synthesis::command() const {
  std::vector<std::string> arguments = {settings_.program};
  if (!settings_.voiceData.empty()) {
    arguments.insert(arguments.end(), {"--voice-data", settings_.voiceData});
  }
  return arguments;
}

VoiceList Synthesis::listVoices() const {
  auto arguments = command();
  arguments.emplace_back("--list");
  const SpoolFile noInput;
  const SpoolFile listing;
  const ChildResult result = runChild(arguments, noInput, listing, settings_.timeLimit);
  if (result.end != ChildEnd::kExited || result.code != static_cast<int>(SynthesizerExit::kSpoken)) {
    throw std::runtime_error("the synthesizer " + settings_.program + " does not work: " + describe(result));
  }
  std::string text(listing.size(), '\0');
  text.resize(listing.readAt(0, text));
  VoiceList voices = VoiceList::fromListing(text);
  if (voices.voices().empty()) {
    throw std::runtime_error("the synthesizer " + settings_.program + " offers no voices");
  }
  return voices;
}

std::variant<SpoolFile, Refusal> Synthesis::speak(const SpeechRequest& request) const {
  const auto maxBytes =
      static_cast<uint64_t>(settings_.longestSpeech.count()) * kSampleRateHz * kBytesPerSample;
  auto arguments = command();
  arguments.insert(arguments.end(),
                   {"--voice", request.voice.engine, "--max-bytes", std::to_string(maxBytes)});
  if (request.isSsml) arguments.emplace_back("--ssml");

  SpoolFile text;
  text.append(request.text);
  text.rewind();
  SpoolFile samples;
  const ChildResult result = runChild(arguments, text, samples, settings_.timeLimit);

  if (result.end == ChildEnd::kTimedOut) {
    return Refusal{503, "the synthesis was ended because it took more than " +
                            std::to_string(settings_.timeLimit.count() / 1000) + " seconds"};
  }
  if (result.end != ChildEnd::kExited) return Refusal{500, "the synthesizer failed: " + describe(result)};
  switch (static_cast<SynthesizerExit>(result.code)) {
    case SynthesizerExit::kSpoken:
      if (samples.size() < kBytesPerSample) return Refusal{422, "the text holds nothing that can be spoken"};
      return samples;
    case SynthesizerExit::kTooLong:
      return Refusal{413, "the speech would be longer than " +
                              std::to_string(settings_.longestSpeech.count()) + " seconds"};
    case SynthesizerExit::kOutputFailed:
      return Refusal{500, "there is no room for the speech on this machine"};
    default:
      return Refusal{500, "the synthesizer failed: " + describe(result)};
  }
}

}  // namespace speech::service
