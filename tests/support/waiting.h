#pragma once

#include <chrono>
#include <stdexcept>
#include <string>
#include <thread>

namespace speech::test {

/// How long a test waits for what must come. After that it fails, so that a lost notice costs seconds and
/// names its case.
constexpr int kWaitLimitMilliseconds = 5000;

[[noreturn]] inline void failWaitingFor(const std::string& awaited) {
  throw std::runtime_error(awaited + " did not come within " + std::to_string(kWaitLimitMilliseconds) +
                           " ms");
}

/// Asks again and again until the condition is met.
/// @param awaited  names it in the failure
template <class Condition>
void waitUntil(const std::string& awaited, Condition isMet) {
  using Clock = std::chrono::steady_clock;
  const auto end = Clock::now() + std::chrono::milliseconds(kWaitLimitMilliseconds);
  while (!isMet()) {
    if (Clock::now() >= end) failWaitingFor(awaited);
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
}

}  // namespace speech::test
