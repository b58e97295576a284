#pragma once

// Reading a header back. Not exported.

#include <speech/audio.h>

extern "C" {

/// Reads the first 44 bytes of `file` into `header` as a PCM header, whose fmt chunk has 16 bytes and is
/// followed by the data chunk, and leaves the file at offset 44. Nothing is checked: what the file is too
/// short for is 0, and any other chunk at offset 36 is taken for the data chunk. Returns 1.
std::int32_t LXUTIL_Read_WFHeader(std::FILE* file, WFHeader* header);

}  // extern "C"
