#pragma once

// What a host's handles stand for.

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

#include "lxapi/bundled/csv_parser.h"
#include "lxapi/bundled/dictionary.h"
#include "lxapi/bundled/engines_ini.h"
#include "lxapi/bundled/speech.h"
#include "lxapi/bundled/speech_renderer.h"
#include "lxapi/bundled/voice_settings.h"

namespace speech::lxapi {

/// An engine that a host has asked for.
struct Engine {
  explicit Engine(InstalledEngine entry) : installed(std::move(entry)) {}

  const InstalledEngine installed;
  /// Guards everything below.
  std::mutex mutex;
  bool isLoaded = false;
  int32_t commaPauseMs = kCommaPauseRange.normal;
  std::map<int32_t, std::shared_ptr<const Dictionary>> dictionaries;  ///< By number.
};

/// What speaks, with settings and outputs of its own.
struct Synthesis {
  explicit Synthesis(uint32_t number) : handle(number) {}

  /// Checks a host's text and copies it, with all that is set, into `request`. The caller holds the mutex.
  /// @return LX_OK, LX_ERROR_BAD_ARGUMENT, LX_ERROR_BAD_TEXT or LX_ERROR_NOT_LOADED
  int32_t accept(const char* utf8, int32_t length, int32_t flags, SpeechRequest& request) const;

  const uint32_t handle;
  /// Guards everything below. Never held while the event procedure runs or a thread is waited for.
  std::mutex mutex;
  std::shared_ptr<Engine> engine;
  VoiceSettings settings;
  int32_t device = -1;
  EventReceiver receiver;
  std::shared_ptr<Speech> speech;
  std::filesystem::path outputPath;
  int32_t outputCode = -1;
  bool isBufferOpen = false;
  std::vector<int16_t> buffer;
  std::shared_ptr<const Dictionary> lexicon;
  /// Held during a synthesis to a file or to memory, one at a time; `stopOutput` ends it.
  std::mutex outputMutex;
  std::stop_source stopOutput;
};

/// A host's CSV parser. One call at a time works on it.
struct CsvSession {
  std::mutex mutex;
  std::string text;
  std::optional<CsvParser> parser;
  std::vector<std::string> fields;
};

}  // namespace speech::lxapi
