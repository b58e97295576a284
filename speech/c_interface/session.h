#pragma once

// What the C interface keeps between calls, and the door that every call passes.

#include <windows.h>

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include <speech/text_to_speech.h>
#include "speech/c_interface/failure.h"

namespace speech::c_interface {

class OpenEngine;

/// One per process; belongs to one thread at a time.
struct Session {
  /// The thread of the first call since the start or speech_release; 0 for nobody's.
  DWORD thread = 0;
  /// A call that dispatches messages is under way; what a callback asks for meanwhile must wait.
  bool busy = false;
  /// What was said of the last failure.
  std::string detail;
  std::shared_ptr<OpenEngine> engine;
  std::uintptr_t lastHandle = 0;
  /// The instance that we made last, open or not; the next one replaces it.
  const ITextToSpeech* own = nullptr;
};

Session& session();

/// Sets the busy flag for a scope.
class Busy {
 public:
  Busy() { session().busy = true; }
  Busy(const Busy&) = delete;
  Busy& operator=(const Busy&) = delete;
  ~Busy() { session().busy = false; }
};

/// Fails on a thread that is not the library's; nobody's library becomes this thread's.
void requireThread();

/// The engine behind a handle. Fails for null, for one that was closed, and when the C++ interface has
/// replaced the instance, which closes it.
std::shared_ptr<OpenEngine> engineOf(SpeechEngine handle);

/// Fails when the module's live instance is the C++ interface's.
void requireNoForeignEngine();

/// Closes the open engine, if any.
void closeEngine();

/// Runs an exported function's operation on the library's thread.
template <class Operation>
std::int32_t answered(Operation&& operation) noexcept {
  std::string detail;
  const std::int32_t result = resultOf(detail, [&] {
    requireThread();
    std::forward<Operation>(operation)();
  });
  if (result != SPEECH_ERROR_WRONG_THREAD) session().detail.swap(detail);
  return result;
}

/// The same for one that may not run inside another that dispatches messages.
template <class Operation>
std::int32_t answeredWhenFree(Operation&& operation) noexcept {
  return answered([&] {
    if (session().busy) throw Failure(SPEECH_ERROR_BUSY);
    std::forward<Operation>(operation)();
  });
}

/// The same for an operation on an engine.
template <class Operation>
std::int32_t answeredBy(SpeechEngine handle, Operation&& operation) noexcept {
  return answeredWhenFree([&] { std::forward<Operation>(operation)(*engineOf(handle)); });
}

}  // namespace speech::c_interface
