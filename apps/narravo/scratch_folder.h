#pragma once

#include <filesystem>
#include <string>

#include <windows.h>

#include "apps/narravo/host_error.h"

namespace narravo {

/// A fresh folder for a command's own files, deleted with them.
class ScratchFolder {
 public:
  ScratchFolder()
      : path_(std::filesystem::temp_directory_path() / ("narravo-" + std::to_string(GetCurrentProcessId()))) {
    std::error_code error;
    std::filesystem::create_directory(path_, error);
    if (error) throw HostError(kExitFile, "no temporary folder can be made: " + error.message());
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace narravo
