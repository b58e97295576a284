#pragma once

// ComPtr: owner of one reference to a COM interface.

#include <windows.h>

#include <unknwn.h>

#include <utility>

namespace speech {

template <class Interface>
class ComPtr {
 public:
  ComPtr() = default;
  ComPtr(ComPtr&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
  ComPtr& operator=(ComPtr&& other) noexcept {
    std::swap(pointer_, other.pointer_);
    return *this;
  }
  ~ComPtr() { reset(); }

  /// Gives the reference back.
  void reset() {
    if (Interface* const released = std::exchange(pointer_, nullptr)) released->Release();
  }

  /// Where a call stores a reference that it hands out. Whatever was owned is given back first.
  Interface** put() {
    reset();
    return &pointer_;
  }
  void** putVoid() { return reinterpret_cast<void**>(put()); }

  Interface* get() const { return pointer_; }
  Interface* operator->() const { return pointer_; }
  explicit operator bool() const { return pointer_ != nullptr; }

 private:
  Interface* pointer_ = nullptr;
};

}  // namespace speech
