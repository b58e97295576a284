#pragma once

// One spoken text: a thread that renders ahead, a thread that plays and reports.

#include <atomic>
#include <cstdint>
#include <memory>
#include <stop_token>
#include <thread>

#include "lxapi/bundled/speech_queue.h"
#include "lxapi/bundled/speech_renderer.h"
#include "lxapi/bundled/wave_output.h"
#include "lxapi/lxapi.h"

namespace speech::lxapi {

struct EventReceiver {
  LXEVENTPROC procedure = nullptr;
  int32_t mask = 0;
};

/// Shared between the handle that it was started for and its own threads; the last one to leave frees it.
class Speech : public std::enable_shared_from_this<Speech> {
 public:
  Speech(uint32_t tts, SpeechRequest request, EventReceiver receiver);
  ~Speech();
  Speech(const Speech&) = delete;
  Speech& operator=(const Speech&) = delete;

  /// Opens the device and starts the threads. @return LX_OK, LX_ERROR_DEVICE or LX_ERROR_MEMORY
  int32_t start(int32_t device);

  void pause() { output_.pause(); }
  void resume() { output_.resume(); }

  /// Silences at once. No event is raised from now on, save one whose raising has already begun.
  void stop();

  /// Waits for both threads. On one of the speech's own threads (a host stops from within its event
  /// procedure) it returns at once and false.
  bool join();

  /// False once the speech is stopped or has come to its end.
  bool isRunning() const { return isRunning_; }

  /// True once nothing of the speech runs any more, so that join does not wait.
  bool isOver() const { return isOver_; }

 private:
  void render();
  void play();
  bool playSome();
  void raiseDue(uint64_t frame);
  void raise(const SpeechEvent& event) const;
  DWORD millisecondsToNextEvent();

  const uint32_t tts_;
  const SpeechRequest request_;
  const EventReceiver receiver_;
  WaveOutput output_;
  SpeechQueue queue_;
  std::stop_source stop_;
  std::atomic<bool> isRunning_ = true;
  std::atomic<bool> isOver_ = false;
  std::atomic<DWORD> playerId_ = 0;
  std::mutex joining_;
  std::thread renderer_;
  std::thread player_;
};

}  // namespace speech::lxapi
