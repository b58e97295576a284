#pragma once

// No exception leaves an operation that a host calls.
//
//   bool OrvaneLXAPI::speak(const wchar_t* text, bool flag) {
//     return guarded(false, [&] { ... });
//   }

#include <utility>

#include "framework/framework.h"

namespace speech {

/// Runs `operation`; when it throws (out of memory, a framework exception) the result is `failure`.
template <class Result, class Operation>
Result guarded(Result failure, Operation&& operation) noexcept {
  try {
    return std::forward<Operation>(operation)();
  } catch (CException* exception) {
    exception->Delete();
  } catch (...) {  // NOLINT(bugprone-empty-catch): the failure value is the report
  }
  return failure;
}

/// The same for an operation without a result.
template <class Operation>
void guarded(Operation&& operation) noexcept {
  guarded(false, [&] {
    std::forward<Operation>(operation)();
    return true;
  });
}

}  // namespace speech
