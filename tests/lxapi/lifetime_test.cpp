// Nothing is left behind by many speeches.

#include <gtest/gtest.h>
#include <windows.h>

#include <psapi.h>
#include <tlhelp32.h>

#include <iostream>

#include "tests/lxapi/session.h"

namespace speech::test {
namespace {

struct Usage {
  uintptr_t nextHandle = 0;
  size_t threads = 0;
  size_t kilobytes = 0;
};

Usage currentUsage() {
  Usage usage;
  // Handles are given out from the lowest free number, so a leak shows in the number of the next one.
  const HANDLE next = CreateEventW(nullptr, FALSE, FALSE, nullptr);
  usage.nextHandle = reinterpret_cast<uintptr_t>(next) / 4;
  CloseHandle(next);
  HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
  THREADENTRY32 thread{};
  thread.dwSize = sizeof(thread);
  for (BOOL more = Thread32First(snapshot, &thread); more != FALSE; more = Thread32Next(snapshot, &thread)) {
    usage.threads += thread.th32OwnerProcessID == GetCurrentProcessId() ? 1 : 0;
  }
  CloseHandle(snapshot);
  PROCESS_MEMORY_COUNTERS memory{};
  GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof(memory));
  usage.kilobytes = memory.PagefileUsage / 1024;
  return usage;
}

std::ostream& operator<<(std::ostream& out, const Usage& usage) {
  return out << "next handle " << usage.nextHandle << ", " << usage.threads << " threads, " << usage.kilobytes
             << " KB";
}

void speakAndStop(const Session& session) {
  ASSERT_EQ(session.speak("A sentence of which little is heard."), LX_OK);
  ASSERT_EQ(LXAPI_Stop(session.tts), LX_OK);
}

TEST(Lifetime, ManySpeechesLeaveNoHandleThreadOrMemory) {
  constexpr int kCycles = 120;
  const Session session;
  for (int warmUp = 0; warmUp < 20; ++warmUp) speakAndStop(session);
  const Usage before = currentUsage();
  const ULONGLONG start = GetTickCount64();
  for (int cycle = 0; cycle < kCycles; ++cycle) speakAndStop(session);
  const ULONGLONG spent = GetTickCount64() - start;
  const Usage after = currentUsage();
  std::cout << "[ measured ] before: " << before << "; after " << kCycles << " speeches in " << spent
            << " ms: " << after << "\n";
  // A leak of one in each cycle would be more than a hundred.
  EXPECT_LT(after.nextHandle, before.nextHandle + 20);
  EXPECT_LE(after.threads, before.threads + 2);
  EXPECT_LT(after.kilobytes, before.kilobytes + 4096);
}

TEST(Lifetime, StartingAndEndingTheLibraryLeavesNothing) {
  constexpr int kCycles = 30;
  const auto cycle = [] {
    const Session session;
    ASSERT_EQ(session.speak("One."), LX_OK);
    ASSERT_FALSE(session.samples("One.").empty());
  };
  for (int warmUp = 0; warmUp < 5; ++warmUp) cycle();
  const Usage before = currentUsage();
  for (int index = 0; index < kCycles; ++index) cycle();
  const Usage after = currentUsage();
  std::cout << "[ measured ] before: " << before << "; after " << kCycles << " starts: " << after << "\n";
  EXPECT_LT(after.nextHandle, before.nextHandle + 15);
  EXPECT_LE(after.threads, before.threads + 2);
  EXPECT_LT(after.kilobytes, before.kilobytes + 4096);
}

}  // namespace
}  // namespace speech::test
