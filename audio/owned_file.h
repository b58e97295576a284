#pragma once

#include <cstdio>
#include <memory>

namespace speech::audio {

struct FileCloser {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

/// An open file; null when none is.
using OwnedFile = std::unique_ptr<std::FILE, FileCloser>;

}  // namespace speech::audio
