#pragma once

// Lengths of open files beyond 2 GB, where `long` has 32 bits too. Not exported.

#include <cstdint>
#include <cstdio>

namespace speech::audio {

/// The length of `file` in bytes, or -1 where it cannot seek; leaves the file at its start.
inline std::int64_t measureFile(std::FILE* file) {
  std::fseek(file, 0, SEEK_SET);
#ifdef _WIN32
  _fseeki64(file, 0, SEEK_END);
  const std::int64_t size = _ftelli64(file);
#else
  fseeko(file, 0, SEEK_END);
  const std::int64_t size = ftello(file);
#endif
  std::fseek(file, 0, SEEK_SET);
  return size;
}

}  // namespace speech::audio
