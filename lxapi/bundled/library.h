#pragma once

// The library's state between LXAPI_Init and LXAPI_Exit: installed engines, handles, buffers.

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string_view>
#include <vector>

#include "lxapi/bundled/handle_objects.h"
#include "lxapi/bundled/installed_engines.h"
#include "lxapi/lxapi.h"

namespace speech::lxapi {

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

  uint32_t addLexicon(std::shared_ptr<const Dictionary> lexicon);
  std::shared_ptr<const Dictionary> lexicon(uint32_t handle);

  uint32_t createCsvSession();
  std::shared_ptr<CsvSession> csvSession(intptr_t handle);

  /// Hands samples out until they are released or the library ends. Null for no samples.
  void* lend(std::vector<int16_t> samples);
  bool release(const void* samples);

  /// LX_ERROR_NOT_STARTED, or LX_ERROR_BAD_HANDLE while the library runs: why a handle was not found.
  int32_t handleError();

  /// Stops what the synthesis speaks and renders, and waits until it is over.
  void stop(Synthesis& synthesis);

  /// Does so for every synthesis that an engine is bound to.
  void stopSpeechesOf(const Engine& engine);

  /// Keeps a stopped speech alive while its own thread is the caller.
  void retire(std::shared_ptr<Speech> speech);

 private:
  Library() = default;

  uint32_t nextHandle();

  std::mutex mutex_;
  int32_t startCount_ = 0;
  uint32_t lastHandle_ = 0;
  std::unique_ptr<const InstalledEngines> installed_;
  std::map<uint32_t, std::shared_ptr<Synthesis>> syntheses_;
  std::map<uint32_t, std::shared_ptr<Engine>> engines_;
  std::map<size_t, uint32_t> engineHandles_;  ///< By index in `installed_`.
  std::map<uint32_t, std::shared_ptr<const Dictionary>> lexicons_;
  std::map<uint32_t, std::shared_ptr<CsvSession>> csvSessions_;
  std::vector<std::shared_ptr<Speech>> retired_;
  std::map<const void*, std::vector<int16_t>> lent_;
};

}  // namespace speech::lxapi
