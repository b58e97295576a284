#pragma once

#include <windows.h>

#include <psapi.h>
#include <tlhelp32.h>

#include <array>
#include <cstddef>

#include "tests/support/handle_count.h"
#include "win32/unique_handle.h"

namespace speech::test {

/// What this process holds.
struct ProcessFigures {
  std::size_t handles = 0;
  std::size_t threads = 0;
  /// Blocks that are in use on all of its heaps.
  std::size_t heapBytes = 0;
  /// Memory that the system keeps for it, stacks included.
  std::size_t committedBytes = 0;

  static ProcessFigures now();
};

namespace figures {

inline std::size_t countThreads() {
  const UniqueHandle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0));
  THREADENTRY32 thread = {};
  thread.dwSize = sizeof thread;
  std::size_t count = 0;
  for (BOOL more = Thread32First(snapshot.get(), &thread); more;
       more = Thread32Next(snapshot.get(), &thread)) {
    count += thread.th32OwnerProcessID == GetCurrentProcessId();
  }
  return count;
}

inline std::size_t sumHeaps() {
  std::array<HANDLE, 64> heaps = {};
  const DWORD heapCount = GetProcessHeaps(heaps.size(), heaps.data());
  std::size_t sum = 0;
  for (DWORD i = 0; i < heapCount; ++i) {
    PROCESS_HEAP_ENTRY entry = {};
    HeapLock(heaps[i]);
    while (HeapWalk(heaps[i], &entry)) {
      if (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) sum += entry.cbData;
    }
    HeapUnlock(heaps[i]);
  }
  return sum;
}

inline std::size_t committed() {
  PROCESS_MEMORY_COUNTERS memory = {};
  GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof memory);
  return memory.PagefileUsage;
}

}  // namespace figures

inline ProcessFigures ProcessFigures::now() {
  return {static_cast<std::size_t>(openHandleCount()), figures::countThreads(), figures::sumHeaps(),
          figures::committed()};
}

}  // namespace speech::test
