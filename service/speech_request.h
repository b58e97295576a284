#pragma once

// A form turned into something to speak, or into the reason why it cannot be spoken.

#include <cstddef>
#include <string>
#include <string_view>
#include <variant>

#include "service/voices.h"

namespace speech::service {

enum class AudioFormat { kWav, kMp3 };

struct SpeechRequest {
  ChosenVoice voice;
  bool isSsml = false;
  std::string text;  // well-formed UTF-8 without zero bytes
  size_t characterCount = 0;
  AudioFormat format = AudioFormat::kWav;
};

// An error reply: an HTTP status and one line of text.
struct Refusal {
  int status = 0;
  std::string message;
};

struct RequestRules {
  std::string key;               // what the "key" field must hold
  size_t maxTextCharacters = 0;  // longest text, in code points
};

// Reads the fields streaming, key, voice, lang, text or ssml, and audioformat; unknown fields are left alone.
std::variant<SpeechRequest, Refusal> readSpeechRequest(std::string_view body, const VoiceList& voices,
                                                       const RequestRules& rules);

}  // namespace speech::service
