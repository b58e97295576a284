#pragma once

#include <speech/speech_c.h>

#include <cstdint>
#include <functional>
#include <string>

/// One sentence for a failed call and what the engine or the system adds to it. Call it right after the
/// failure: the next call discards the addition.
std::wstring describeError(std::int32_t error);

/// The library's one live engine, opened when a voice is first needed and replaced when another voice is.
class Engine {
 public:
  using Listener = std::function<void(const SpeechEvent&)>;

  /// @param listener  called on this thread, while it dispatches messages
  explicit Engine(Listener listener) : listener_(std::move(listener)) {}
  Engine(const Engine&) = delete;
  Engine& operator=(const Engine&) = delete;
  ~Engine() { speech_release(); }

  /// Makes a voice's engine the live one. @return SPEECH_OK or a SpeechError
  std::int32_t use(std::int32_t voice);

  /// Stops whatever is spoken and unloads the engine.
  void close();

  /// The live engine, or null, for which every function of the library returns an error.
  SpeechEngine handle() const { return handle_; }

 private:
  Listener listener_;
  SpeechEngine handle_ = nullptr;
};
