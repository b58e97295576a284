#pragma once

#include <cstdio>

namespace speech::audio {

/// Whether `path` (in the thread's code page) leads to the file that `file` has open.
bool isSameFile(std::FILE* file, const char* path);

}  // namespace speech::audio
