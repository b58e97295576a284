#pragma once

// One engine, for as long as a command needs it.

#include <optional>
#include <string>

#include <speech/text_to_speech.h>
#include <CLI/CLI.hpp>

#include "apps/narravo/speech_notices.h"
#include "apps/narravo/voices.h"

namespace narravo {

/// What every speaking command lets the user choose. Unset numbers keep the voice's own setting.
struct VoiceArguments {
  VoiceWish wish;
  std::optional<int> speed;
  std::optional<int> pitch;
  std::optional<int> volume;
};

void addVoiceArguments(CLI::App& command, VoiceArguments& arguments);

/// Window, voice and engine, with the settings applied. Ends the engine and the catalogue when it goes.
class SpeechSession {
 public:
  /// Throws HostError when no voice fits, a setting is out of its range or the engine cannot be loaded.
  explicit SpeechSession(const VoiceArguments& arguments);

  HostWindow& window() { return window_; }
  ITextToSpeech& engine() { return *engine_; }
  const Voice& voice() const { return voice_; }

  /// Whether the voice belongs to the speech service.
  bool isCloud() const;

  /// The error for a text that the engine refused, with what the service said if it said anything.
  [[noreturn]] void reportRefusal(const std::string& what) const;

 private:
  HostWindow window_;
  LibraryRelease release_;
  Voice voice_;
  ITextToSpeech* engine_ = nullptr;
};

}  // namespace narravo
