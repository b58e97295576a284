#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace narravo {

/// Tells the user, on standard error, that a call without a report of its own is still at work: the time so
/// far, from two seconds on. On a console the line is rewritten; elsewhere a line comes every ten seconds.
class WorkingNotice {
 public:
  /// @param what  what is being done, "exporting hello.ogg"
  explicit WorkingNotice(std::string what);
  WorkingNotice(const WorkingNotice&) = delete;
  WorkingNotice& operator=(const WorkingNotice&) = delete;
  ~WorkingNotice();

 private:
  void report();

  std::string what_;
  std::mutex mutex_;
  std::condition_variable ended_;
  bool isEnding_ = false;
  std::thread thread_;
};

}  // namespace narravo
