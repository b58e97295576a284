#include "lxapi/bundled/speech.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <system_error>

#include "lxapi/bundled/synthesizer.h"

namespace speech::lxapi {
namespace {

// The device reports its position in steps of its own; asking more often shows nothing new.
constexpr DWORD kShortestWaitMs = 5;

}  // namespace

Speech::Speech(uint32_t tts, SpeechRequest request, EventReceiver receiver)
    : tts_(tts), request_(std::move(request)), receiver_(receiver), queue_([this] { output_.wake(); }) {}

Speech::~Speech() {
  // The last owner may be one of the threads themselves, about to end.
  if (renderer_.joinable()) renderer_.detach();
  if (player_.joinable()) player_.detach();
}

int32_t Speech::start(int32_t device) {
  if (!output_.open(device, kSynthesizerRateHz)) return LX_ERROR_DEVICE;
  try {
    renderer_ = std::thread([self = shared_from_this()] { self->render(); });
    player_ = std::thread([self = shared_from_this()] { self->play(); });
  } catch (const std::system_error&) {
    stop();
    if (renderer_.joinable()) renderer_.join();
    return LX_ERROR_MEMORY;
  }
  return LX_OK;
}

void Speech::stop() {
  isRunning_ = false;
  stop_.request_stop();
  output_.silence();
  queue_.close();
  output_.wake();
}

bool Speech::join() {
  if (playerId_ == GetCurrentThreadId()) return false;
  const std::lock_guard guard(joining_);
  if (renderer_.joinable()) renderer_.join();
  if (player_.joinable()) player_.join();
  return true;
}

void Speech::render() {
  try {
    renderSpeech(request_, queue_, stop_.get_token());
  } catch (const std::bad_alloc&) {
    // What has been rendered is heard; there is no room for the rest.
  }
  queue_.finish();
}

void Speech::play() {
  playerId_ = GetCurrentThreadId();
  while (!stop_.stop_requested() && playSome()) {
    WaitForSingleObject(output_.wakeEvent(), millisecondsToNextEvent());
  }
  raiseDue(UINT64_MAX);
  output_.close();
  // Exactly one of stopping and coming to the end happens.
  if (bool expected = true; isRunning_.compare_exchange_strong(expected, false)) {
    SpeechEvent end;
    end.number = LX_EVENT_END;
    raise(end);
  }
  // A later thread may be given the same number.
  playerId_ = 0;
  isOver_ = true;
}

/// Feeds the device and raises what is due; returns false when all has been heard.
bool Speech::playSome() {
  const bool working = output_.play([this](std::span<int16_t> samples) { return queue_.take(samples); });
  // A device that is gone ends the speech; hosts wait for its end.
  if (!working) return false;
  const bool heard = queue_.isDone() && output_.isIdle();
  if (heard) return false;
  raiseDue(output_.position());
  return true;
}

void Speech::raiseDue(uint64_t frame) {
  while (!stop_.stop_requested()) {
    const std::optional<SpeechEvent> event = queue_.takeEvent(frame);
    if (!event) return;
    raise(*event);
  }
}

void Speech::raise(const SpeechEvent& event) const {
  if (receiver_.procedure == nullptr || (receiver_.mask & event.number) == 0) return;
  LXEVENT record{};
  record.word1 = event.offset;
  record.word2 = event.length;
  const size_t nameLength = std::min(event.name.size(), sizeof(record.name) - 1);
  std::memcpy(record.name, event.name.data(), nameLength);
  receiver_.procedure(tts_, event.number, &record);
}

DWORD Speech::millisecondsToNextEvent() {
  const std::optional<uint64_t> next = queue_.nextEventFrame();
  if (!next || output_.isPaused()) return INFINITE;
  const uint64_t position = output_.position();
  const uint64_t frames = *next > position ? *next - position : 0;
  return std::max<DWORD>(kShortestWaitMs, static_cast<DWORD>(frames * 1000 / kSynthesizerRateHz));
}

}  // namespace speech::lxapi
