#pragma once

// What every exported function does around its own work: it lets no exception out and finds what a handle
// stands for.

#include <cstdint>
#include <memory>
#include <mutex>
#include <new>

#include "lxapi/bundled/library.h"
#include "lxapi/lxapi.h"

namespace speech::lxapi {

/// Runs the body of an exported function that answers with a result.
template <typename Body>
int32_t exportedCall(const Body& body) noexcept {
  try {
    return body();
  } catch (const std::bad_alloc&) {
    return LX_ERROR_MEMORY;
  } catch (...) {
    return LX_ERROR_FAILED;
  }
}

/// Runs the body of an exported function that answers with a handle or a cursor, 0 on failure.
template <typename Body>
uint32_t exportedHandleCall(const Body& body) noexcept {
  try {
    return body();
  } catch (...) {
    return 0;
  }
}

/// Runs `body` on the engine that the handle stands for.
template <typename Body>
int32_t withEngine(uint32_t handle, const Body& body) noexcept {
  return exportedCall([&]() -> int32_t {
    Library& library = Library::instance();
    const std::shared_ptr<Engine> engine = library.engine(handle);
    return engine ? body(*engine) : library.handleError();
  });
}

/// The same under the engine's mutex.
template <typename Body>
int32_t withLockedEngine(uint32_t handle, const Body& body) noexcept {
  return withEngine(handle, [&](Engine& engine) -> int32_t {
    const std::lock_guard guard(engine.mutex);
    return body(engine);
  });
}

/// Runs `body` on what the synthesis handle stands for.
template <typename Body>
int32_t withSynthesis(uint32_t handle, const Body& body) noexcept {
  return exportedCall([&]() -> int32_t {
    Library& library = Library::instance();
    const std::shared_ptr<Synthesis> synthesis = library.synthesis(handle);
    return synthesis ? body(*synthesis) : library.handleError();
  });
}

/// The same under the synthesis's mutex.
template <typename Body>
int32_t withLockedSynthesis(uint32_t handle, const Body& body) noexcept {
  return withSynthesis(handle, [&](Synthesis& synthesis) -> int32_t {
    const std::lock_guard guard(synthesis.mutex);
    return body(synthesis);
  });
}

}  // namespace speech::lxapi
