#pragma once

// A host of the engine library for tests: the started library, a loaded engine and a handle bound to it, and
// a record of the events.

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "lxapi/lxapi.h"
#include "tests/support/waiting.h"

namespace speech::test {

struct Event {
  uint32_t tts;
  int32_t number;
  std::chrono::steady_clock::time_point at;
};

/// Keeps events from any thread. The procedure has no argument of the host's own, so there is one record.
class EventRecord {
 public:
  using Reaction = std::function<void(const Event&)>;

  /// Forgets everything. @param reaction  runs on the library's thread for every event from now on
  void clear(Reaction reaction = {}) {
    const std::lock_guard guard(mutex_);
    events_.clear();
    reaction_ = std::move(reaction);
  }

  std::vector<Event> events() const {
    const std::lock_guard guard(mutex_);
    return events_;
  }

  size_t count(int32_t number) const {
    return static_cast<size_t>(std::ranges::count(events(), number, &Event::number));
  }

  void waitFor(int32_t number, size_t wanted = 1) const {
    waitUntil("event " + std::to_string(number), [&] { return count(number) >= wanted; });
  }

  void keep(const Event& event) {
    std::unique_lock guard(mutex_);
    events_.push_back(event);
    const Reaction reaction = reaction_;
    guard.unlock();
    if (reaction) reaction(event);
  }

 private:
  mutable std::mutex mutex_;
  std::vector<Event> events_;
  Reaction reaction_;
};

inline EventRecord record;

inline void LXAPI_CALL keepEvent(uint32_t tts, int32_t number, const LXEVENT*) {
  record.keep({tts, number, std::chrono::steady_clock::now()});
}

struct Session {
  explicit Session(const char* voice = "English (America)", const char* variety = "Male") {
    EXPECT_EQ(LXAPI_Init(), LX_OK);
    engine = LXAPI_GetEngine(voice, variety);
    tts = LXAPI_CreateHandle();
    LXAPI_SetEngineHandle(tts, engine);
    LXAPI_LoadEngine(engine);
    record.clear();
    LXAPI_SetEvent(tts, keepEvent, 63);
  }
  ~Session() { LXAPI_Exit(); }

  int32_t speak(const std::string& text) const { return LXAPI_Speak(tts, text.c_str(), -1, LX_SPEAK_ASYNC); }

  /// The samples of a text, empty when it is refused.
  std::vector<int16_t> samples(const std::string& text, int32_t flags = 0, int32_t length = -1) const {
    if (LXAPI_BufferOpen(tts, text.c_str(), length, flags, 0) != LX_OK) return {};
    void* buffer = nullptr;
    const int32_t count = LXAPI_GetBuffer(tts, &buffer) / 2;
    std::vector<int16_t> result(static_cast<int16_t*>(buffer), static_cast<int16_t*>(buffer) + count);
    LXAPI_FreeBuffer(buffer);
    LXAPI_BufferClose(tts);
    return result;
  }

  uint32_t engine, tts;
};

inline constexpr int32_t kSampleRateHz = 22050;

/// Length of samples in milliseconds.
inline int32_t milliseconds(const std::vector<int16_t>& samples) {
  return static_cast<int32_t>(samples.size() * 1000 / kSampleRateHz);
}

}  // namespace speech::test
