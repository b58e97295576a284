#pragma once

#include <cstdio>
#include <memory>
#include <stdexcept>

#include "tests/support/binary_file.h"
#include "tests/support/temporary_folder.h"

namespace speech::test {

/// A file that is open for reading and writing and that goes away with its folder.
class ScratchFile {
 public:
  explicit ScratchFile(const Bytes& content = {})
      : file_(std::fopen(folder_.file("scratch").c_str(), "w+b")) {
    if (!file_) throw std::runtime_error("no scratch file could be made");
    if (!content.empty()) std::fwrite(content.data(), 1, content.size(), file_.get());
    std::rewind(file_.get());
  }

  std::FILE* get() const { return file_.get(); }

  Bytes content() const {
    std::fflush(file_.get());
    return readBytes(folder_.file("scratch"));
  }

 private:
  struct Closer {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  TemporaryFolder folder_;
  std::unique_ptr<std::FILE, Closer> file_;
};

}  // namespace speech::test
