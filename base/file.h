#pragma once

// The owner of an open stdio stream.

#include <cstdio>
#include <memory>

namespace speech {

struct FileCloser {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

/// An open stdio stream; null is "not open".
using File = std::unique_ptr<std::FILE, FileCloser>;

inline File openFile(const char* path, const char* mode) { return File(std::fopen(path, mode)); }
#ifdef _WIN32
inline File openFile(const wchar_t* path, const wchar_t* mode) { return File(_wfopen(path, mode)); }
#endif

/// Closes a file that was written. False when what was still buffered could not be written.
inline bool closeWritten(File file) { return std::fclose(file.release()) == 0; }

}  // namespace speech
