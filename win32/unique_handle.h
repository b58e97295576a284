#pragma once

// Owners of kernel objects, which say what "empty" means.

#include <windows.h>

#include <memory>

namespace speech {

struct HandleCloser {
  using pointer = HANDLE;
  void operator()(HANDLE handle) const { CloseHandle(handle); }
};

/// A kernel object whose empty value is null: an event, a thread, a process.
using UniqueHandle = std::unique_ptr<HANDLE, HandleCloser>;

/// What CreateFileW and its like return, INVALID_HANDLE_VALUE on failure, as an owner that is then empty.
inline UniqueHandle ownedFileHandle(HANDLE handle) {
  return UniqueHandle(handle == INVALID_HANDLE_VALUE ? nullptr : handle);
}

}  // namespace speech
