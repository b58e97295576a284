#pragma once

// Little-endian file fields on any host, and memory that may be handed across the library's boundary.
//
//   std::uint16_t levels[2];
//   if (FREAD(levels, 2, 2, file) == 4) { ... }   // levels in host order
//
// Every function may be called from any thread; one FILE at a time belongs to one thread.

#include <cstddef>
#include <cstdint>
#include <cstdio>

#include "audio/export.h"

extern "C" {

/// Settles the host's byte order. The library is built for little-endian hosts and never settles on another.
SPEECH_API void set_endian_info();

/// Copies `count` elements of `elementSize` bytes from little-endian `src` to `dst` in host order; on a
/// little-endian host, and for elements of 1 byte or more than 8, that is a plain copy. `dst` may equal
/// `src`. Copies nothing when a pointer is null or `elementSize * count` is not positive. Returns 1.
SPEECH_API std::int32_t swapdata(void* dst, const void* src, std::int32_t elementSize, std::int32_t count);

/// Like swapdata, but reverses elements of 2 to 8 bytes whatever the host. Returns 1.
SPEECH_API std::int32_t swapdata_forced(void* dst, const void* src, std::int32_t elementSize,
                                        std::int32_t count);

/// Reads `count` little-endian elements of `elementSize` bytes into `buffer`, in host order.
/// Returns 1 for elements of 1 byte when all `count` were read, else 0; for elements of 2 to 8 bytes the
/// number of bytes read, which is short at the end of the file; 0 without reading for any other size.
SPEECH_API std::int32_t FREAD(void* buffer, std::int32_t elementSize, std::int32_t count, std::FILE* file);

/// Writes `count` elements of `elementSize` bytes, each with its bytes reversed whatever the host's order;
/// only big-endian hosts want that. Elements of 1 byte are written as they are. Returns the bytes written for
/// elements of 1 byte; else the result of writing the last element, that is `elementSize` on success. 0 when
/// there is nothing to write.
SPEECH_API std::int32_t FWRITE(const void* buffer, std::int32_t elementSize, std::int32_t count,
                               std::FILE* file);

/// Stores the length of `file` in bytes, modulo 2^32, and leaves the file at its start. Returns 1.
SPEECH_API std::int32_t get_filesize(std::FILE* file, std::uint32_t* sizeOut);

/// Allocates `size` bytes from the library's C runtime. Free with ExternFree. Null on failure.
SPEECH_API void* ExternMalloc(std::size_t size);

/// Resizes a block of ExternMalloc's; null allocates. Null on failure, and the block then stays as it was.
SPEECH_API void* ExternRealloc(void* pointer, std::size_t size);

/// Frees what the library allocated for its caller. Null is allowed.
SPEECH_API void ExternFree(void* pointer);

}  // extern "C"
