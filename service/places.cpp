#include "service/places.h"

namespace speech::service {

std::optional<Places::Place> Places::enter(bool isLong, std::chrono::milliseconds patience) {
  std::unique_lock lock(mutex_);
  const bool isFree = changed_.wait_for(
      lock, patience, [&] { return taken_ < count_ && (!isLong || longTaken_ < longCount_); });
  if (!isFree) return std::nullopt;
  ++taken_;
  if (isLong) ++longTaken_;
  return std::optional<Place>(std::in_place, this, isLong);
}

void Places::leave(bool isLong) {
  {
    const std::lock_guard lock(mutex_);
    --taken_;
    if (isLong) --longTaken_;
  }
  // Everyone, because the one that wakes might be a long text for which this place does not do.
  changed_.notify_all();
}

}  // namespace speech::service
