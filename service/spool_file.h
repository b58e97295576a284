// A nameless file in the temporary folder (TMPDIR), gone when its last descriptor closes, whatever becomes of
// the process. An hour of speech is 159 MB, so replies are kept there and not in memory.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "service/file_descriptor.h"

namespace speech::service {

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
