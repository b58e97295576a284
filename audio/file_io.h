#pragma once

/// @file
/// Little-endian file fields on any host, and memory that may be handed across the library's boundary.
///
///     std::uint16_t levels[2];
///     if (FREAD(levels, 2, 2, file) == 4) { ... }   // levels in host order
///
/// Every function may be called from any thread; one FILE at a time belongs to one thread.

#include <cstddef>
#include <cstdint>
#include <cstdio>

#include "audio/export.h"

extern "C" {

/// Settles the host's byte order. The library is built for little-endian hosts and never settles on another.
SPEECH_API void set_endian_info();

/// Copies little-endian elements into host order; on a little-endian host, and for elements of 1 byte or more
/// than 8, that is a plain copy. Copies nothing when a pointer is null or `elementSize * count` is not
/// positive.
/// @param dst          receives the elements; may equal `src`
/// @param src          the elements
/// @param elementSize  bytes of one
/// @param count        how many
/// @return 1
SPEECH_API std::int32_t swapdata(void* dst, const void* src, std::int32_t elementSize, std::int32_t count);

/// Like swapdata, but reverses elements of 2 to 8 bytes whatever the host.
/// @param dst,src,elementSize,count  as for swapdata
/// @return 1
SPEECH_API std::int32_t swapdata_forced(void* dst, const void* src, std::int32_t elementSize,
                                        std::int32_t count);

/// Reads little-endian elements.
/// @param buffer       receives them in host order
/// @param elementSize  bytes of one
/// @param count        how many
/// @param file         open for reading
/// @return 1 for elements of 1 byte when all were read, else 0; for elements of 2 to 8 bytes the number of
///   bytes read, which is short at the end of the file; 0 without reading for any other size
SPEECH_API std::int32_t FREAD(void* buffer, std::int32_t elementSize, std::int32_t count, std::FILE* file);

/// Writes elements with their bytes reversed whatever the host's order; only big-endian hosts want that.
/// Elements of 1 byte are written as they are.
/// @param buffer       the elements
/// @param elementSize  bytes of one
/// @param count        how many
/// @param file         open for writing
/// @return the bytes written for elements of 1 byte; else the result of writing the last element, that is
///   `elementSize` on success; 0 when there is nothing to write
SPEECH_API std::int32_t FWRITE(const void* buffer, std::int32_t elementSize, std::int32_t count,
                               std::FILE* file);

/// Asks for the length of a file and leaves the file at its start.
/// @param file     open in binary mode
/// @param sizeOut  receives the length in bytes, modulo 2^32
/// @return 1
SPEECH_API std::int32_t get_filesize(std::FILE* file, std::uint32_t* sizeOut);

/// Allocates memory from the library's C runtime.
/// @param size  in bytes
/// @return memory for ExternFree; null on failure
SPEECH_API void* ExternMalloc(std::size_t size);

/// Resizes a block of ExternMalloc's.
/// @param pointer  the block; null allocates one
/// @param size     in bytes
/// @return the block; null on failure, and the old block then stays as it was
SPEECH_API void* ExternRealloc(void* pointer, std::size_t size);

/// Frees what the library allocated for its caller.
/// @param pointer  null is allowed
SPEECH_API void ExternFree(void* pointer);

}  // extern "C"
