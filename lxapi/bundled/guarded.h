#pragma once

#include <cstdint>
#include <new>

#include "lxapi/lxapi.h"

namespace lxapi {

/// Runs the body of an exported function; no exception leaves the library.
template <typename Body>
int32_t guarded(const Body& body) noexcept {
  try {
    return body();
  } catch (const std::bad_alloc&) {
    return LX_ERROR_MEMORY;
  } catch (...) {
    return LX_ERROR_FAILED;
  }
}

/// The same for a function that answers with a handle or a cursor, 0 on failure.
template <typename Body>
uint32_t guardedHandle(const Body& body) noexcept {
  try {
    return body();
  } catch (...) {
    return 0;
  }
}

}  // namespace lxapi
