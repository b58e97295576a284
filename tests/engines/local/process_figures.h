#pragma once

#include <windows.h>

#include <psapi.h>
#include <tlhelp32.h>
#include <winternl.h>

#include <array>
#include <cstddef>
#include <stdexcept>
#include <vector>

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

// Asked of the system's table of all handles: Wine does not serve GetProcessHandleCount.
inline std::size_t countHandles() {
  struct Entry {
    void* object;
    ULONG_PTR processId;
    ULONG_PTR handle;
    ULONG rest[4];
  };
  int extendedHandleInformation = 64;  // not among the header's names
  std::vector<ULONG_PTR> table(1 << 18);
  while (NtQuerySystemInformation(static_cast<SYSTEM_INFORMATION_CLASS>(extendedHandleInformation),
                                  table.data(), static_cast<ULONG>(table.size() * sizeof table[0]),
                                  nullptr) != 0) {
    if (table.size() > 1 << 24) throw std::runtime_error("the system tells no handles");
    table.resize(table.size() * 2);
  }
  const auto* const entries = reinterpret_cast<const Entry*>(&table[2]);
  std::size_t count = 0;
  for (std::size_t i = 0; i < table[0]; ++i) count += entries[i].processId == GetCurrentProcessId();
  return count;
}

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
  return {figures::countHandles(), figures::countThreads(), figures::sumHeaps(), figures::committed()};
}

}  // namespace speech::test
