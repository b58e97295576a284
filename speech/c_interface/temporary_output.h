#pragma once

#include <string>

namespace speech::c_interface {

/// A path that the engine library and SoX can open: they take paths in the thread's code page, which may lack
/// characters of `path`. Falls back to the short form; fails when that does not help.
std::wstring narrowPath(const std::wstring& path);

/// Where a file is made before it appears under its own name. Deleted at the end of the scope.
class TemporaryOutput {
 public:
  /// @param extension  with its dot: programs go by it
  explicit TemporaryOutput(const wchar_t* extension);
  TemporaryOutput(const TemporaryOutput&) = delete;
  TemporaryOutput& operator=(const TemporaryOutput&) = delete;
  ~TemporaryOutput();

  const std::wstring& path() const { return path_; }
  bool hasContent() const;
  /// Moves the file to its place, over what is there. Fails when it cannot be written.
  void moveTo(const std::wstring& destination);

 private:
  std::wstring reserved_;  ///< Keeps the name for us.
  std::wstring path_;
};

}  // namespace speech::c_interface
