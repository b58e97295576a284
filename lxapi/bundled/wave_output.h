#pragma once

// A sound device that plays 16-bit mono samples through a few short buffers.

#include <windows.h>

#include <mmsystem.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <span>
#include <vector>

#include "win32/unique_handle.h"

namespace speech::lxapi {

class WaveOutput {
 public:
  WaveOutput();
  ~WaveOutput();
  WaveOutput(const WaveOutput&) = delete;
  WaveOutput& operator=(const WaveOutput&) = delete;

  /// @param device  device number from 0, or -1 for the system's default
  bool open(int32_t device, uint32_t sampleRateHz);

  /// Fills every free buffer from `source`, which stores samples and returns how many, and plays it. Returns
  /// false when the device fails.
  bool play(const std::function<size_t(std::span<int16_t>)>& source);

  /// How many samples have been heard.
  uint64_t position();

  /// True when every buffer has been played.
  bool isIdle();

  void pause();
  void resume();
  bool isPaused();

  /// Silences at once and for good; play does nothing from now on.
  void silence();

  /// Gives the device back. Nothing but this and the wake event may be used from then on.
  void close();

  /// Signalled whenever a buffer has been played; `wake` signals it too.
  HANDLE wakeEvent() const { return wake_.get(); }
  void wake() { SetEvent(wake_.get()); }

 private:
  // Thirty buffers of 40 ms: the first sound waits for one; with ten a busy machine stutters.
  static constexpr size_t kBufferCount = 30;
  static constexpr uint32_t kBuffersPerSecond = 25;

  struct Buffer {
    WAVEHDR header{};
    std::vector<int16_t> samples;
  };

  UniqueHandle wake_;
  std::mutex mutex_;
  HWAVEOUT device_ = nullptr;
  bool isSilenced_ = false;
  bool isPaused_ = false;
  std::array<Buffer, kBufferCount> buffers_;
};

}  // namespace speech::lxapi
