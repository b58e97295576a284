#pragma once

// A nameless file in the temporary folder (TMPDIR), gone when its last descriptor closes, whatever becomes of
// the process. An hour of speech is 159 MB, so replies are kept there and not in memory.

#include <unistd.h>

#include <cstdint>
#include <span>
#include <string_view>
#include <utility>

namespace speech::service {

// The owner of a POSIX file descriptor; -1 is empty.
class FileDescriptor {
 public:
  explicit FileDescriptor(int descriptor = -1) : descriptor_(descriptor) {}
  FileDescriptor(FileDescriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
  }
  ~FileDescriptor() {
    if (descriptor_ >= 0) ::close(descriptor_);
  }

  int get() const { return descriptor_; }
  explicit operator bool() const { return descriptor_ >= 0; }

 private:
  int descriptor_;
};

// Every operation throws std::system_error when the system refuses it (no room, no permission).
class SpoolFile {
 public:
  SpoolFile();

  void append(std::string_view bytes);
  void rewind();
  uint64_t size() const;

  // Reads at the offset without moving the file's own position; fewer bytes than asked for only at the end.
  size_t readAt(uint64_t offset, std::span<char> bytes) const;

  int descriptor() const { return descriptor_.get(); }

 private:
  FileDescriptor descriptor_;
};

}  // namespace speech::service
