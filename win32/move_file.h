#pragma once

#include <string>

namespace speech {

/// Moves a file, from another disk by copying, over a file that is there. For some moments after a file was
/// written a virus scanner, an indexer or the shell may have it open; so this tries again for two seconds.
/// @return false when the file could not be moved; it is where it was, then, and GetLastError tells why
bool moveFile(const std::wstring& from, const std::wstring& to);

}  // namespace speech
