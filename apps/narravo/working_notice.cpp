#include "apps/narravo/working_notice.h"

#include <chrono>
#include <utility>

#include "apps/narravo/console.h"

namespace narravo {
namespace {

using std::chrono::seconds;

constexpr seconds kFirstReport{2};
constexpr seconds kConsoleInterval{1};
constexpr seconds kFileInterval{10};

}  // namespace

WorkingNotice::WorkingNotice(std::string what) : what_(std::move(what)), thread_([this] { report(); }) {}

WorkingNotice::~WorkingNotice() {
  {
    const std::lock_guard lock(mutex_);
    isEnding_ = true;
  }
  ended_.notify_one();
  thread_.join();
}

void WorkingNotice::report() {
  const bool isConsole = errorIsConsole();
  const auto start = std::chrono::steady_clock::now();
  bool hasReported = false;
  std::unique_lock lock(mutex_);
  for (seconds wait = kFirstReport; !ended_.wait_for(lock, wait, [this] { return isEnding_; });
       wait = isConsole ? kConsoleInterval : kFileInterval) {
    const auto elapsed =
        std::chrono::duration_cast<seconds>(std::chrono::steady_clock::now() - start).count();
    writeErrorText((isConsole ? "\r" : "") + what_ + ", " + std::to_string(elapsed) + " s" +
                   (isConsole ? "" : "\n"));
    hasReported = true;
  }
  if (hasReported && isConsole) writeErrorText("\n");
}

}  // namespace narravo
