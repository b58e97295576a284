#pragma once

#include <windows.h>

#include <psapi.h>
#include <tlhelp32.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <set>
#include <stdexcept>

#include "win32/unique_handle.h"

namespace speech::test {

/// The kernel handles that this process has open, tried one by one: Wine does not count them for
/// GetProcessHandleCount. They are multiples of 4, and the lowest free one is taken.
inline int openHandleCount() {
  int count = 0;
  for (std::uintptr_t value = 4; value < 0x4000; value += 4) {
    DWORD flags = 0;
    if (GetHandleInformation(reinterpret_cast<HANDLE>(value), &flags)) ++count;
  }
  return count;
}

/// The threads of this process.
inline std::set<DWORD> threadIds() {
  const UniqueHandle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0));
  THREADENTRY32 thread = {};
  thread.dwSize = sizeof thread;
  std::set<DWORD> ids;
  for (BOOL more = Thread32First(snapshot.get(), &thread); more;
       more = Thread32Next(snapshot.get(), &thread)) {
    if (thread.th32OwnerProcessID == GetCurrentProcessId()) ids.insert(thread.th32ThreadID);
  }
  return ids;
}

/// The bytes in use on all heaps of this process.
inline std::size_t busyHeapBytes() {
  std::array<HANDLE, 64> heaps = {};
  const DWORD heapCount = GetProcessHeaps(heaps.size(), heaps.data());
  if (heapCount > heaps.size()) throw std::runtime_error("more heaps than are looked at");
  std::size_t sum = 0;
  for (DWORD i = 0; i < heapCount; ++i) {
    PROCESS_HEAP_ENTRY entry = {};
    HeapLock(heaps[i]);
    while (HeapWalk(heaps[i], &entry)) {
      if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) sum += entry.cbData;
    }
    HeapUnlock(heaps[i]);
  }
  return sum;
}

/// What this process holds.
struct ProcessFigures {
  std::size_t handles = 0;
  std::size_t threads = 0;
  std::size_t heapBytes = 0;
  /// Memory that the system keeps for it, stacks included.
  std::size_t committedBytes = 0;

  static ProcessFigures now() {
    PROCESS_MEMORY_COUNTERS memory = {};
    GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof memory);
    return {static_cast<std::size_t>(openHandleCount()), threadIds().size(), busyHeapBytes(),
            memory.PagefileUsage};
  }
};

inline std::ostream& operator<<(std::ostream& out, const ProcessFigures& figures) {
  return out << figures.handles << " handles, " << figures.threads << " threads, heap "
             << figures.heapBytes / 1024 << " KiB, committed " << figures.committedBytes / 1024 << " KiB";
}

}  // namespace speech::test
