#include "lxapi/bundled/speech_queue.h"

#include <algorithm>

#include "lxapi/bundled/synthesizer.h"

namespace speech::lxapi {
namespace {

// Rendering goes on while less than this is waiting.
constexpr size_t kEnoughSamples = 4 * kSynthesizerRateHz;

}  // namespace

bool SpeechQueue::samples(std::span<const int16_t> samples) {
  {
    const std::lock_guard guard(mutex_);
    if (isClosed_) return false;
    blocks_.emplace_back(samples.begin(), samples.end());
    sampleCount_ += samples.size();
  }
  wake_();
  return true;
}

void SpeechQueue::event(const SpeechEvent& event) {
  {
    const std::lock_guard guard(mutex_);
    if (isClosed_) return;
    events_.push_back(event);
  }
  wake_();
}

bool SpeechQueue::wantsMore() {
  std::unique_lock guard(mutex_);
  drained_.wait(guard, [this] { return isClosed_ || sampleCount_ < kEnoughSamples; });
  return !isClosed_;
}

void SpeechQueue::finish() {
  {
    const std::lock_guard guard(mutex_);
    isFinished_ = true;
  }
  wake_();
}

void SpeechQueue::close() {
  const std::lock_guard guard(mutex_);
  isClosed_ = true;
  blocks_.clear();
  events_.clear();
  frontUsed_ = sampleCount_ = 0;
  drained_.notify_all();
}

size_t SpeechQueue::take(std::span<int16_t> output) {
  const std::lock_guard guard(mutex_);
  size_t taken = 0;
  while (taken < output.size() && !blocks_.empty()) {
    const std::span<const int16_t> front = std::span<const int16_t>(blocks_.front()).subspan(frontUsed_);
    const size_t count = std::min(front.size(), output.size() - taken);
    std::copy_n(front.begin(), count, output.begin() + static_cast<ptrdiff_t>(taken));
    taken += count;
    frontUsed_ += count;
    if (count == front.size()) {
      blocks_.pop_front();
      frontUsed_ = 0;
    }
  }
  sampleCount_ -= taken;
  if (sampleCount_ < kEnoughSamples) drained_.notify_all();
  return taken;
}

std::optional<SpeechEvent> SpeechQueue::takeEvent(uint64_t frame) {
  const std::lock_guard guard(mutex_);
  if (events_.empty() || events_.front().frame > frame) return std::nullopt;
  SpeechEvent event = std::move(events_.front());
  events_.pop_front();
  return event;
}

std::optional<uint64_t> SpeechQueue::nextEventFrame() const {
  const std::lock_guard guard(mutex_);
  return events_.empty() ? std::nullopt : std::optional(events_.front().frame);
}

bool SpeechQueue::isDone() const {
  const std::lock_guard guard(mutex_);
  return isClosed_ || (isFinished_ && sampleCount_ == 0);
}

}  // namespace speech::lxapi
