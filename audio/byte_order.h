#pragma once

// The host's byte order, as the file functions see it. Not exported.

#include <atomic>
#include <cstdint>

namespace speech::audio {

/// -1 until settled, 0 on a little-endian host, positive on a big-endian one. Atomic, because conversions on
/// several threads may settle it at once.
extern std::atomic<std::int32_t> hostBigEndianFlag;

/// Settles the flag when that is still to be done.
void settleByteOrder();

/// The flag, settled.
bool hostIsBigEndian();

}  // namespace speech::audio
