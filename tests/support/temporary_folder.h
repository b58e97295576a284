#pragma once

#include <filesystem>
#include <random>
#include <string>

namespace speech::test {

/// A fresh folder that is deleted, with what it holds, at the end of the scope.
class TemporaryFolder {
 public:
  explicit TemporaryFolder(const std::wstring& name = L"speech") {
    // Random, so that no run meets what an earlier one left, as in logs that name files.
    std::random_device random;
    do {
      path_ = std::filesystem::temp_directory_path() / (name + L"-" + std::to_wstring(random()));
    } while (!std::filesystem::create_directory(path_));
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  const std::filesystem::path& path() const { return path_; }
  std::filesystem::path operator/(const std::filesystem::path& name) const { return path_ / name; }
  /// The path of a file in the folder as the functions that take narrow paths want it.
  std::string file(const std::string& name) const { return (path_ / name).string(); }

 private:
  std::filesystem::path path_;
};

}  // namespace speech::test
