#pragma once

// What the audio utilities know of the host and of files.

#include <atomic>
#include <cstdint>
#include <cstdio>

namespace speech::audio {

/// -1 until settled, 0 on a little-endian host, positive on a big-endian one. Atomic, because conversions on
/// several threads may settle it at once.
extern std::atomic<std::int32_t> hostBigEndianFlag;

/// Settles the flag first if necessary.
bool hostIsBigEndian();

/// The length of `file` in bytes, also beyond 2 GB, or -1 if it cannot seek. Leaves the file at its start.
std::int64_t measureFile(std::FILE* file);

/// Whether `path` (in the thread's code page) leads to the file that `file` has open.
bool isSameFile(std::FILE* file, const char* path);

}  // namespace speech::audio
