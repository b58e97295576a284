#pragma once

// Endian-aware file fields and memory that may be handed across the library's boundary.

#include <cstddef>

#include "audio/export.h"

extern "C" {

/// Allocates `size` bytes from the library's C runtime. Free with ExternFree. Null on failure.
SPEECH_API void* ExternMalloc(std::size_t size);

}  // extern "C"
