#pragma once

// Renders a whole text, piece by piece, into samples and events.

#include <cstdint>
#include <span>
#include <stop_token>
#include <string>

#include "lxapi/bundled/dictionary.h"
#include "lxapi/bundled/voice_settings.h"
#include "lxapi/bundled/word_tracker.h"

namespace speech::lxapi {

/// Everything that one speech needs, copied when the text is accepted: what is set later is for the next one.
struct SpeechRequest {
  std::string text;  ///< Valid UTF-8.
  bool isSsml = false;
  std::string voice;
  VoiceSettings settings;
  DictionaryList dictionaries;
};

/// Receives a speech. Called on the rendering thread, `samples` and `event` under the synthesizer's lock:
/// they must not wait.
class SpeechSink {
 public:
  virtual ~SpeechSink() = default;

  /// 16-bit mono samples at kSynthesizerRateHz. Returns false to give up.
  virtual bool samples(std::span<const int16_t> samples) = 0;

  /// Events come in the order in which they are due, none later than the samples that they belong to.
  virtual void event(const SpeechEvent& /*event*/) {}

  /// Called between two pieces; may wait until more is wanted. Returns false to give up.
  virtual bool wantsMore() { return true; }
};

/// @return LX_OK when the whole text has been rendered, LX_ERROR_FAILED when it has not
int32_t renderSpeech(const SpeechRequest& request, SpeechSink& sink, const std::stop_token& stop);

}  // namespace speech::lxapi
