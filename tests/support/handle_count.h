#pragma once

#include <windows.h>

#include <winternl.h>

#include <algorithm>
#include <stdexcept>
#include <vector>

namespace speech::test {

/// How many kernel handles this process has open. Asked of the system's list of all handles, because Wine
/// does not count them for GetProcessHandleCount.
inline int openHandleCount() {
  struct Entry {
    USHORT processId;
    USHORT creator;
    UCHAR objectType;
    UCHAR attributes;
    USHORT handle;
    void* object;
    ULONG access;
  };
  struct List {
    ULONG count;
    Entry entries[1];
  };
  constexpr auto kSystemHandleInformation = static_cast<SYSTEM_INFORMATION_CLASS>(16);
  constexpr NTSTATUS kBufferTooSmall = static_cast<NTSTATUS>(0xC0000004);

  std::vector<unsigned char> buffer(1 << 16);
  NTSTATUS status = 0;
  while ((status = NtQuerySystemInformation(kSystemHandleInformation, buffer.data(),
                                            static_cast<ULONG>(buffer.size()), nullptr)) == kBufferTooSmall) {
    buffer.resize(buffer.size() * 2);
  }
  if (status < 0) throw std::runtime_error("the system does not list its handles");
  const auto* const list = reinterpret_cast<const List*>(buffer.data());
  const auto own = static_cast<USHORT>(GetCurrentProcessId());
  const auto count = std::count_if(list->entries, list->entries + list->count,
                                   [&](const Entry& entry) { return entry.processId == own; });
  if (count == 0) throw std::runtime_error("the system lists no handle of this process");
  return static_cast<int>(count);
}

}  // namespace speech::test
