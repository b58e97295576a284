#include "service/spool_file.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

namespace speech::service {
namespace {

[[noreturn]] void throwLastError(const char* what) {
  throw std::system_error(errno, std::generic_category(), what);
}

FileDescriptor openNameless() {
  const std::string folder = std::filesystem::temp_directory_path().string();
  FileDescriptor descriptor(::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600));
  if (descriptor) return descriptor;

  // Not every file system can make a file without a name.
  std::string path = folder + "/narravo-XXXXXX";
  descriptor = FileDescriptor(::mkostemp(path.data(), O_CLOEXEC));
  if (!descriptor) throwLastError("no temporary file can be made");
  ::unlink(path.c_str());
  return descriptor;
}

}  // namespace

SpoolFile::SpoolFile() : descriptor_(openNameless()) {}

// These two change the file, if not this object.
// NOLINTBEGIN(readability-make-member-function-const)
void SpoolFile::append(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(descriptor(), bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) throwLastError("the temporary file cannot be written");
    bytes.remove_prefix(static_cast<size_t>(written));
  }
}

void SpoolFile::rewind() {
  if (::lseek(descriptor(), 0, SEEK_SET) < 0) throwLastError("the temporary file cannot be rewound");
}
// NOLINTEND(readability-make-member-function-const)

uint64_t SpoolFile::size() const {
  struct stat status {};
  if (::fstat(descriptor(), &status) != 0) throwLastError("the temporary file cannot be measured");
  return static_cast<uint64_t>(status.st_size);
}

size_t SpoolFile::readAt(uint64_t offset, std::span<char> bytes) const {
  size_t filled = 0;
  while (filled < bytes.size()) {
    const auto rest = bytes.subspan(filled);
    const ssize_t count =
        ::pread(descriptor(), rest.data(), rest.size(), static_cast<off_t>(offset + filled));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) throwLastError("the temporary file cannot be read");
    if (count == 0) break;
    filled += static_cast<size_t>(count);
  }
  return filled;
}

}  // namespace speech::service
