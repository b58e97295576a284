#include "lxapi/bundled/library.h"

#include <algorithm>

namespace speech::lxapi {

Library& Library::instance() {
  // Never destroyed: threads may still be running when the process ends.
  static auto* const library = new Library;
  return *library;
}

int32_t Library::start() {
  const std::lock_guard guard(mutex_);
  if (startCount_ == 0) installed_ = std::make_unique<const InstalledEngines>(libraryFolder());
  ++startCount_;
  return LX_OK;
}

int32_t Library::end() {
  std::map<uint32_t, std::shared_ptr<Synthesis>> syntheses;
  std::vector<std::shared_ptr<Speech>> retired;
  {
    const std::lock_guard guard(mutex_);
    if (startCount_ == 0) return LX_ERROR_NOT_STARTED;
    if (--startCount_ > 0) return LX_OK;
    syntheses.swap(syntheses_);
    retired.swap(retired_);
    engines_.clear();
    engineHandles_.clear();
    lexicons_.clear();
    csvSessions_.clear();
    lent_.clear();
    installed_.reset();
  }
  for (const auto& [handle, synthesis] : syntheses) stop(*synthesis);
  for (const auto& speech : retired) speech->join();
  return LX_OK;
}

bool Library::isStarted() {
  const std::lock_guard guard(mutex_);
  return startCount_ > 0;
}

const InstalledEngine* Library::installedEngine(uint32_t cursor) {
  const std::lock_guard guard(mutex_);
  if (!installed_ || cursor == 0 || cursor > installed_->engines().size()) return nullptr;
  return &installed_->engines()[cursor - 1];
}

/// Handles are never used twice, so that one from before cannot mean another thing now.
uint32_t Library::nextHandle() { return ++lastHandle_; }

uint32_t Library::createSynthesis() {
  const std::lock_guard guard(mutex_);
  if (startCount_ == 0) return 0;
  const uint32_t handle = nextHandle();
  syntheses_.emplace(handle, std::make_shared<Synthesis>(handle));
  return handle;
}

uint32_t Library::openEngine(std::string_view key1, std::string_view key2) {
  const std::lock_guard guard(mutex_);
  if (!installed_) return 0;
  const std::optional<size_t> index = installed_->find(key1, key2);
  if (!index) return 0;
  uint32_t& handle = engineHandles_[*index];
  if (handle == 0) {
    auto engine = std::make_shared<Engine>(installed_->engines()[*index]);
    handle = nextHandle();
    engines_.emplace(handle, std::move(engine));
  }
  return handle;
}

std::shared_ptr<Synthesis> Library::synthesis(uint32_t handle) {
  const std::lock_guard guard(mutex_);
  const auto found = syntheses_.find(handle);
  return found == syntheses_.end() ? nullptr : found->second;
}

std::shared_ptr<Engine> Library::engine(uint32_t handle) {
  const std::lock_guard guard(mutex_);
  const auto found = engines_.find(handle);
  return found == engines_.end() ? nullptr : found->second;
}

uint32_t Library::addLexicon(std::shared_ptr<const Dictionary> lexicon) {
  const std::lock_guard guard(mutex_);
  if (startCount_ == 0) return 0;
  const uint32_t handle = nextHandle();
  lexicons_.emplace(handle, std::move(lexicon));
  return handle;
}

std::shared_ptr<const Dictionary> Library::lexicon(uint32_t handle) {
  const std::lock_guard guard(mutex_);
  const auto found = lexicons_.find(handle);
  return found == lexicons_.end() ? nullptr : found->second;
}

uint32_t Library::createCsvSession() {
  const std::lock_guard guard(mutex_);
  if (startCount_ == 0) return 0;
  const uint32_t handle = nextHandle();
  csvSessions_.emplace(handle, std::make_shared<CsvSession>());
  return handle;
}

std::shared_ptr<CsvSession> Library::csvSession(intptr_t handle) {
  const std::lock_guard guard(mutex_);
  const auto found = csvSessions_.find(static_cast<uint32_t>(handle));
  return found == csvSessions_.end() ? nullptr : found->second;
}

void* Library::lend(std::vector<int16_t> samples) {
  if (samples.empty()) return nullptr;
  void* const address = samples.data();
  const std::lock_guard guard(mutex_);
  lent_.emplace(address, std::move(samples));
  return address;
}

bool Library::release(const void* samples) {
  const std::lock_guard guard(mutex_);
  return lent_.erase(samples) == 1;
}

int32_t Library::handleError() { return isStarted() ? LX_ERROR_BAD_HANDLE : LX_ERROR_NOT_STARTED; }

void Library::stopSpeechesOf(const Engine& engine) {
  std::vector<std::shared_ptr<Synthesis>> bound;
  {
    const std::lock_guard guard(mutex_);
    for (const auto& [handle, synthesis] : syntheses_) bound.push_back(synthesis);
  }
  for (const auto& synthesis : bound) {
    bool isBound = false;
    {
      const std::lock_guard guard(synthesis->mutex);
      isBound = synthesis->engine.get() == &engine;
    }
    if (isBound) stop(*synthesis);
  }
}

void Library::retire(std::shared_ptr<Speech> speech) {
  if (!speech) return;
  std::vector<std::shared_ptr<Speech>> over;
  {
    const std::lock_guard guard(mutex_);
    const auto firstOver = std::stable_partition(retired_.begin(), retired_.end(),
                                                 [](const auto& retired) { return !retired->isOver(); });
    over.assign(firstOver, retired_.end());
    retired_.erase(firstOver, retired_.end());
    retired_.push_back(std::move(speech));
  }
  for (const auto& retired : over) retired->join();
}

void Library::stop(Synthesis& synthesis) {
  std::shared_ptr<Speech> speech;
  {
    const std::lock_guard guard(synthesis.mutex);
    speech = std::move(synthesis.speech);
    synthesis.speech.reset();
    synthesis.stopOutput.request_stop();
    // Silenced before anybody else can start a new speech on the handle.
    if (speech) speech->stop();
  }
  if (speech && !speech->join()) retire(std::move(speech));
}

}  // namespace speech::lxapi
