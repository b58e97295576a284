#pragma once

// The library's state between LXAPI_Init and LXAPI_Exit: installed engines, handles, buffers.

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

#include "lxapi/bundled/catalogue.h"
#include "lxapi/bundled/csv_parser.h"
#include "lxapi/bundled/speech.h"
#include "lxapi/bundled/substitutions.h"
#include "lxapi/bundled/voice_settings.h"
#include "lxapi/lxapi.h"

namespace lxapi {

/// An engine that a host has asked for.
struct Engine {
  explicit Engine(InstalledEngine entry) : installed(std::move(entry)) {}

  const InstalledEngine installed;
  std::mutex mutex;
  bool loaded = false;
  int32_t commaPauseMs = kCommaPauseRange.normal;
  std::map<int32_t, std::shared_ptr<const Substitutions>> dictionaries;
};

/// What a synthesis handle stands for.
struct Synthesis {
  explicit Synthesis(uint32_t number) : handle(number) {}

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
  bool bufferOpen = false;
  std::vector<int16_t> buffer;
  std::shared_ptr<const Substitutions> lexicon;
  /// Held during a synthesis to a file or to memory, one at a time; `stopOutput` ends it.
  std::mutex outputMutex;
  std::stop_source stopOutput;
};

/// A host's CSV parser. Calls on one at a time.
struct CsvSession {
  std::mutex mutex;
  std::string text;
  std::optional<CsvParser> parser;
  std::vector<std::string> fields;
};

class Library {
 public:
  static Library& instance();

  int32_t start();
  int32_t end();
  bool isStarted();

  /// The installed engine behind a cursor, or null. Lives until the library ends.
  const InstalledEngine* installedEngine(uint32_t cursor);

  uint32_t createSynthesis();
  uint32_t openEngine(std::string_view key1, std::string_view key2);

  std::shared_ptr<Synthesis> synthesis(uint32_t handle);
  std::shared_ptr<Engine> engine(uint32_t handle);

  uint32_t addLexicon(std::shared_ptr<const Substitutions> lexicon);
  std::shared_ptr<const Substitutions> lexicon(uint32_t handle);

  uint32_t createCsvSession();
  std::shared_ptr<CsvSession> csvSession(intptr_t handle);

  /// Hands samples out until they are released or the library ends. Null for no samples.
  void* lend(std::vector<int16_t> samples);
  bool release(const void* samples);

  /// LX_ERROR_NOT_STARTED, or LX_ERROR_BAD_HANDLE while the library runs: why a handle was not found.
  int32_t handleError();

  /// Silences the speeches of an engine that is being unloaded.
  void stopSpeechesOf(const Engine& engine);

  /// Keeps a stopped speech whose thread is the caller's own until that thread is over.
  void retire(std::shared_ptr<Speech> speech);

 private:
  Library() = default;

  uint32_t nextHandle();

  std::mutex mutex_;
  int32_t startCount_ = 0;
  uint32_t lastHandle_ = 0;
  std::unique_ptr<const Catalogue> catalogue_;
  std::map<uint32_t, std::shared_ptr<Synthesis>> syntheses_;
  std::map<uint32_t, std::shared_ptr<Engine>> engines_;
  std::map<size_t, uint32_t> engineHandles_;  ///< By index in the catalogue.
  std::map<uint32_t, std::shared_ptr<const Substitutions>> lexicons_;
  std::map<uint32_t, std::shared_ptr<CsvSession>> csvSessions_;
  std::vector<std::shared_ptr<Speech>> retired_;
  std::map<const void*, std::vector<int16_t>> lent_;
};

/// Stops what the handle speaks and renders, and waits until it is over.
void stopSynthesis(Synthesis& synthesis);

}  // namespace lxapi
