#pragma once

// The functions of an engine that hosts call by name.

#include <cstdint>
#include <span>
#include <string_view>

#include "lxapi/bundled/library.h"

namespace lxapi {

/// What a call by name brings along; see LXAPI_CallEngineInternal.
struct InternalCall {
  const Engine& engine;
  int32_t* result;
  char* text;
  void* word;
  std::span<const intptr_t> arguments;
};

/// @return LX_OK, LX_ERROR_UNKNOWN_ATTRIBUTE for an unknown name or number, or LX_ERROR_BAD_ARGUMENT
int32_t callInternalFunction(std::string_view name, const InternalCall& call);

}  // namespace lxapi
