#pragma once

// What has been rendered and not yet been played: samples, and the events among them.

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <span>
#include <vector>

#include "lxapi/bundled/speech_renderer.h"

namespace speech::lxapi {

/// One renderer fills it, one player empties it. The renderer is made to wait between two pieces of text
/// while enough is there; within a piece it never waits.
class SpeechQueue final : public SpeechSink {
 public:
  /// @param wake  called, without a lock held, when the player may find something new
  explicit SpeechQueue(std::function<void()> wake) : wake_(std::move(wake)) {}

  bool samples(std::span<const int16_t> samples) override;
  void event(const SpeechEvent& event) override;
  bool wantsMore() override;

  /// Nothing more will come.
  void finish();

  /// Drops everything, now and from now on.
  void close();

  /// Moves samples out; returns how many.
  size_t take(std::span<int16_t> output);

  /// Moves out the first event that is due at `frame` or earlier.
  std::optional<SpeechEvent> takeEvent(uint64_t frame);

  /// The frame of the first event that is waiting.
  std::optional<uint64_t> nextEventFrame() const;

  /// True when nothing is left and nothing more will come.
  bool isDone() const;

 private:
  const std::function<void()> wake_;
  mutable std::mutex mutex_;
  std::condition_variable drained_;
  std::deque<std::vector<int16_t>> blocks_;
  size_t frontUsed_ = 0;
  size_t sampleCount_ = 0;
  std::deque<SpeechEvent> events_;
  bool isFinished_ = false;
  bool isClosed_ = false;
};

}  // namespace speech::lxapi
