#pragma once

// Turns requests into samples by running narravo-synthesizer, one process for each request.

#include <chrono>
#include <cstdint>
#include <string>
#include <variant>

#include "service/speech_request.h"
#include "service/spool_file.h"
#include "service/voices.h"

namespace speech::service {

struct SynthesisSettings {
  std::string program;                     // path of narravo-synthesizer
  std::string voiceData;                   // eSpeak NG's data folder; empty: where the program finds it
  std::chrono::seconds longestSpeech{0};   // more sound than this is refused
  std::chrono::milliseconds timeLimit{0};  // a synthesis that takes longer is ended
};

// Has no state beside its settings: any number of threads may call it at once.
class Synthesis {
 public:
  explicit Synthesis(SynthesisSettings settings) : settings_(std::move(settings)) {}

  // Asks the synthesizer for its voices. Throws std::runtime_error, with a reason for the operator, when it
  // does not run or offers none.
  VoiceList listVoices() const;

  // 16-bit mono samples at kSampleRateHz without a header, at least one of them.
  std::variant<SpoolFile, Refusal> speak(const SpeechRequest& request) const;

 private:
  std::vector<std::string> command() const;

  SynthesisSettings settings_;
};

}  // namespace speech::service
