#pragma once

// Standard streams and reports of progress. A console gets UTF-16, a file or a pipe UTF-8, whatever the code
// page is.

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

namespace narravo {

/// Writes at once, without buffering. Throws HostError when the output cannot be written.
void writeOutput(std::wstring_view text);
void writeOutput(std::string_view utf8);

/// "narravo: MESSAGE" on standard error. Never throws: there is nowhere left to report to.
void writeErrorLine(std::string_view utf8) noexcept;

/// Whether a user watches standard error as it is written.
bool errorIsConsole();

/// Everything up to the end of standard input, as UTF-8.
std::string readInput();

/// Reports on standard error that a long call is still at work: what it does, for how many seconds, and how
/// far it is if that can be counted. On a console one line is rewritten; elsewhere each report is a line.
/// Once it has reported, the end is reported too.
class WorkingNotice {
 public:
  struct Pace {
    std::chrono::milliseconds first;  ///< How long it keeps quiet; 0 reports in any case.
    std::chrono::milliseconds interval;
  };
  /// The pace for a call that is usually short.
  static Pace usualPace();

  /// @param what   "exporting hello.ogg"
  /// @param extent what has been done so far, ", 62 % written", or the empty text; called on another thread
  WorkingNotice(std::string what, Pace pace, std::function<std::string()> extent = nullptr);
  WorkingNotice(const WorkingNotice&) = delete;
  WorkingNotice& operator=(const WorkingNotice&) = delete;
  ~WorkingNotice();

 private:
  void run();
  void report();

  std::string what_;
  Pace pace_;
  std::function<std::string()> extent_;
  bool isConsole_;
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
  std::mutex mutex_;
  std::condition_variable ended_;
  bool isEnding_ = false;
  std::thread thread_;
};

}  // namespace narravo
