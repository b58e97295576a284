#pragma once

// The owner of memory from the C runtime.

#include <cstdlib>
#include <memory>

namespace speech {

struct MallocDeleter {
  void operator()(void* memory) const { std::free(memory); }
};

/// A block from malloc, calloc or realloc of this module; null is "none".
template <class T>
using MallocBlock = std::unique_ptr<T, MallocDeleter>;

}  // namespace speech
