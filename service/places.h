#pragma once

// How many syntheses run at once, and who waits.

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <utility>

namespace speech::service {

// A fixed number of places for running syntheses. Long texts may take half of them at most, so that a short
// one never waits behind long ones only.
class Places {
 public:
  // Gives its place back when it goes.
  class Place {
   public:
    Place(Places* owner, bool isLong) : owner_(owner), isLong_(isLong) {}
    Place(Place&& other) noexcept : owner_(std::exchange(other.owner_, nullptr)), isLong_(other.isLong_) {}
    Place& operator=(Place&&) = delete;
    ~Place() {
      if (owner_ != nullptr) owner_->leave(isLong_);
    }

   private:
    Places* owner_;
    bool isLong_;
  };

  // At least one place; of one place, a long text may take it.
  explicit Places(int count) : count_(count), longCount_(count > 1 ? count / 2 : 1) {}

  // Waits for a place until the time is over; nothing when there was none.
  std::optional<Place> enter(bool isLong, std::chrono::milliseconds patience) {
    std::unique_lock lock(mutex_);
    const bool isFree = changed_.wait_for(
        lock, patience, [&] { return taken_ < count_ && (!isLong || longTaken_ < longCount_); });
    if (!isFree) return std::nullopt;
    ++taken_;
    if (isLong) ++longTaken_;
    return std::optional<Place>(std::in_place, this, isLong);
  }

 private:
  void leave(bool isLong) {
    {
      const std::lock_guard lock(mutex_);
      --taken_;
      if (isLong) --longTaken_;
    }
    // Everyone, because the one that wakes might be a long text, for which this place does not do.
    changed_.notify_all();
  }

  const int count_;
  const int longCount_;
  std::mutex mutex_;
  std::condition_variable changed_;
  int taken_ = 0;
  int longTaken_ = 0;
};

}  // namespace speech::service
