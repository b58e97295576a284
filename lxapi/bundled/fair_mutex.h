#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>

namespace lxapi {

/// A mutex that is taken in the order of asking, so that a long export, which takes it again and again,
/// cannot keep it from a speech that is being heard.
class FairMutex {
 public:
  void lock() {
    std::unique_lock guard(mutex_);
    const uint64_t ticket = nextTicket_++;
    turn_.wait(guard, [&] { return ticket == serving_; });
  }

  void unlock() {
    {
      const std::lock_guard guard(mutex_);
      ++serving_;
    }
    turn_.notify_all();
  }

 private:
  std::mutex mutex_;
  std::condition_variable turn_;
  uint64_t nextTicket_ = 0;
  uint64_t serving_ = 0;
};

}  // namespace lxapi
