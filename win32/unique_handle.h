#pragma once

#include <windows.h>

#include <memory>

namespace speech {

struct HandleCloser {
  using pointer = HANDLE;
  void operator()(HANDLE handle) const { CloseHandle(handle); }
};

/// A kernel object whose empty value is null: an event, a thread, a process.
using UniqueHandle = std::unique_ptr<HANDLE, HandleCloser>;

}  // namespace speech
