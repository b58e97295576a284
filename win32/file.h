#pragma once

#include <cstdio>
#include <memory>

namespace speech {

struct FileCloser {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

/// An open stdio stream; null is "not open".
using File = std::unique_ptr<std::FILE, FileCloser>;

inline File openFile(const wchar_t* path, const wchar_t* mode) { return File(_wfopen(path, mode)); }
inline File openFile(const char* path, const char* mode) { return File(std::fopen(path, mode)); }

}  // namespace speech
