#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <string>

namespace speech::test {

/// A fresh folder that is deleted, with what it holds, at the end of the scope.
class TemporaryFolder {
 public:
  explicit TemporaryFolder(const std::wstring& name = L"speech") {
    static std::atomic<unsigned> counter;
    const auto unique = reinterpret_cast<std::uintptr_t>(this) ^ (counter++ * 7919u);
    do {
      path_ = std::filesystem::temp_directory_path() / (name + L"-" + std::to_wstring(unique + counter++));
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
