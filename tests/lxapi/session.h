#pragma once

// A host of the engine library for tests: the started library, a loaded engine and a handle bound to it, and
// a record of the events.

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "lxapi/lxapi.h"

namespace speech::test {

struct Event {
  uint32_t tts;
  int32_t number;
  uint32_t word1;
  uint32_t word2;
  std::string name;
  std::chrono::steady_clock::time_point at;
};

/// Keeps events from any thread. The procedure has no argument of the host's own, so there is one record.
class EventRecord {
 public:
  static EventRecord& instance() {
    static EventRecord record;
    return record;
  }

  static void LXAPI_CALL procedure(uint32_t tts, int32_t number, const LXEVENT* event) {
    instance().keep({tts, number, event->word1, event->word2, event->name, std::chrono::steady_clock::now()});
  }

  void clear() {
    const std::lock_guard guard(mutex_);
    events_.clear();
    reaction_ = nullptr;
  }

  /// Runs on the library's thread for every event from now on.
  void react(std::function<void(const Event&)> reaction) {
    const std::lock_guard guard(mutex_);
    reaction_ = std::move(reaction);
  }

  std::vector<Event> events() const {
    const std::lock_guard guard(mutex_);
    return events_;
  }

  size_t count(int32_t number) const {
    return static_cast<size_t>(std::ranges::count(events(), number, &Event::number));
  }

  /// Waits until `wanted` events of the kind have come; false when they do not come in a long time.
  bool waitFor(int32_t number, size_t wanted = 1) {
    std::unique_lock guard(mutex_);
    return changed_.wait_for(guard, std::chrono::seconds(60), [&] {
      return std::ranges::count(events_, number, &Event::number) >= static_cast<ptrdiff_t>(wanted);
    });
  }

 private:
  void keep(const Event& event) {
    std::function<void(const Event&)> reaction;
    {
      const std::lock_guard guard(mutex_);
      events_.push_back(event);
      reaction = reaction_;
    }
    changed_.notify_all();
    if (reaction) reaction(event);
  }

  mutable std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<Event> events_;
  std::function<void(const Event&)> reaction_;
};

class Session {
 public:
  static constexpr int32_t kAllEvents = 63;

  explicit Session(const char* voice = "English (America)", const char* variety = "Male") {
    started = LXAPI_Init();
    engine = LXAPI_GetEngine(voice, variety);
    tts = LXAPI_CreateHandle();
    LXAPI_SetEngineHandle(tts, engine);
    LXAPI_LoadEngine(engine);
    EventRecord::instance().clear();
    LXAPI_SetEvent(tts, EventRecord::procedure, kAllEvents);
  }
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  ~Session() { LXAPI_Exit(); }

  int32_t speak(const std::string& text, int32_t flags = LX_SPEAK_ASYNC) const {
    return LXAPI_Speak(tts, text.c_str(), -1, flags);
  }

  /// The samples of a text, empty when it is refused.
  std::vector<int16_t> samples(const std::string& text, int32_t flags = LX_SPEAK_ASYNC,
                               int32_t length = -1) const {
    if (LXAPI_BufferOpen(tts, text.c_str(), length, flags, 0) != LX_OK) return {};
    void* buffer = nullptr;
    const int32_t byteCount = LXAPI_GetBuffer(tts, &buffer);
    const auto* const first = static_cast<const int16_t*>(buffer);
    std::vector<int16_t> result(first, first + byteCount / 2);
    LXAPI_FreeBuffer(buffer);
    LXAPI_BufferClose(tts);
    return result;
  }

  int32_t started;
  uint32_t engine;
  uint32_t tts;
};

inline constexpr int32_t kSampleRateHz = 22050;

/// Length of samples in milliseconds.
inline int32_t milliseconds(const std::vector<int16_t>& samples) {
  return static_cast<int32_t>(samples.size() * 1000 / kSampleRateHz);
}

}  // namespace speech::test
