#pragma once

// How an operation of the C interface fails: it throws Failure, and the exported function around it returns
// the code.
//
//   int32_t SPEECH_CALL speech_voice_count(int32_t* count) {
//     return answered([&] { *required(count) = voiceCount(); });
//   }

#include <cstdint>
#include <new>
#include <string>
#include <utility>

#include <speech/speech_c.h>

#include "framework/framework.h"

namespace speech::c_interface {

struct Failure {
  std::int32_t error;  ///< SpeechError.
  std::string detail;  ///< For speech_error_detail, UTF-8.

  explicit Failure(std::int32_t code, std::string said = {}) : error(code), detail(std::move(said)) {}
};

/// Runs an operation; its failure is the result. Nothing else leaves it.
template <class Operation>
std::int32_t resultOf(std::string& detail, Operation&& operation) noexcept {
  try {
    std::forward<Operation>(operation)();
    return SPEECH_OK;
  } catch (Failure& failure) {
    detail.swap(failure.detail);
    return failure.error;
  } catch (const std::bad_alloc&) {
    return SPEECH_ERROR_MEMORY;
  } catch (CException* exception) {
    exception->Delete();
  } catch (...) {  // NOLINT(bugprone-empty-catch): the result below is the report
  }
  return SPEECH_ERROR_INTERNAL;
}

/// A pointer that may not be null.
template <class Pointer>
Pointer required(Pointer pointer) {
  if (pointer == nullptr) throw Failure(SPEECH_ERROR_ARGUMENT);
  return pointer;
}

}  // namespace speech::c_interface
