#pragma once

// What the C interface keeps between calls, and the one door that every call passes. An operation fails by
// throwing Failure; the exported function around it returns the code.
//
//   std::int32_t SPEECH_CALL speech_engine_voice(SpeechEngine engine, std::int32_t* voice) {
//     return answeredBy(engine, [&](OpenEngine& open) { *required(voice) = open.voice(); });
//   }

#include <windows.h>

#include <cstdint>
#include <memory>
#include <new>
#include <string>
#include <utility>

#include <speech/speech_c.h>
#include <speech/text_to_speech.h>

#include "framework/framework.h"

namespace speech::c_interface {

class OpenEngine;

struct Failure {
  std::int32_t error;  ///< SpeechError.
  std::string detail;  ///< For speech_error_detail, UTF-8.

  explicit Failure(std::int32_t code, std::string words = {}) : error(code), detail(std::move(words)) {}
};

/// A pointer that may not be null.
template <class Pointer>
Pointer required(Pointer pointer) {
  if (pointer == nullptr) throw Failure(SPEECH_ERROR_ARGUMENT);
  return pointer;
}

/// One per process; belongs to one thread at a time.
struct Session {
  /// The thread of the first call since the start or speech_release; 0 when unowned.
  DWORD thread = 0;
  /// A call that dispatches messages is running; most calls of a callback must wait until it has returned.
  bool busy = false;
  /// What was said about the last failure.
  std::string detail;
  std::shared_ptr<OpenEngine> engine;
  std::uintptr_t lastHandle = 0;
  /// The number of the instance that the C interface made last, open or not.
  std::uint32_t ownInstance = 0;
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

/// The installed voices.
LXAPIProductList& voices();

/// The voice of an index. Fails when there is none.
LXAPIProduct& voiceAt(std::int32_t index);

/// The engine behind a handle. Fails for null and for a closed engine. An engine whose instance the C++
/// interface has replaced or released is closed by this.
std::shared_ptr<OpenEngine> engineOf(SpeechEngine handle);

/// Closes the open engine, if any.
void closeEngine();

/// Fails when the process's live instance was made by the C++ interface.
void requireNoForeignEngine();

/// Fails on any other thread than the library's; an unowned library is claimed by this thread.
void requireThread();

/// Runs an operation and returns its failure, or SPEECH_OK. No exception leaves it.
template <class Operation>
Failure outcomeOf(Operation&& operation) noexcept {
  try {
    std::forward<Operation>(operation)();
    return Failure(SPEECH_OK);
  } catch (Failure& failure) {
    return std::move(failure);
  } catch (const std::bad_alloc&) {
    return Failure(SPEECH_ERROR_MEMORY);
  } catch (CException* exception) {
    exception->Delete();
  } catch (...) {  // NOLINT(bugprone-empty-catch): the result below is the report
  }
  return Failure(SPEECH_ERROR_INTERNAL);
}

/// The door: runs an exported function's operation on the library's thread and keeps what it says of a
/// failure.
template <class Operation>
std::int32_t answered(Operation&& operation) noexcept {
  Failure outcome = outcomeOf([&] {
    requireThread();
    std::forward<Operation>(operation)();
  });
  if (outcome.error != SPEECH_ERROR_WRONG_THREAD) session().detail = std::move(outcome.detail);
  return outcome.error;
}

/// The same for an operation that may not run inside another that dispatches messages.
template <class Operation>
std::int32_t answeredWhenFree(Operation&& operation) noexcept {
  return answered([&] {
    if (session().busy) throw Failure(SPEECH_ERROR_BUSY);
    std::forward<Operation>(operation)();
  });
}

/// The same for an operation on an open engine.
template <class Operation>
std::int32_t answeredBy(SpeechEngine handle, Operation&& operation) noexcept {
  return answeredWhenFree([&] { std::forward<Operation>(operation)(*engineOf(handle)); });
}

}  // namespace speech::c_interface
