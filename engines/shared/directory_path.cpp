#include "engines/shared/directory_path.h"

#include <direct.h>
#include <io.h>

#include <string>
#include <string_view>

namespace speech {
namespace {

constexpr const char* kSeparators = "\\/";

bool exists(const std::string& path) { return _access(path.c_str(), 0) == 0; }

/// Another process may make the same folder in between, so what counts is that it exists afterwards.
bool ensureFolder(const std::string& path) {
  return exists(path) || _mkdir(path.c_str()) == 0 || exists(path);
}

}  // namespace

bool makeDirectoryPath(const char* path) {
  std::string_view rest = path;
  if (rest.empty()) return false;

  std::string made;
  if (rest.starts_with("\\\\")) {
    // A server is not a folder that could be made.
    const std::size_t serverEnd = rest.find('\\', 2);
    if (serverEnd == std::string_view::npos) return false;
    made = rest.substr(0, serverEnd);
    rest.remove_prefix(serverEnd + 1);
  } else if (rest.find_first_of(kSeparators) == std::string_view::npos) {
    made = ".";
  }

  // A path from the root has an empty element in front, and so begins with the joining slash.
  bool join = !made.empty() || rest.find_first_of(kSeparators) == 0;
  while (!rest.empty()) {
    const std::string_view element = rest.substr(0, rest.find_first_of(kSeparators));
    rest.remove_prefix(element.size() < rest.size() ? element.size() + 1 : element.size());
    if (element.empty()) continue;
    if (join) made += '/';
    join = true;
    made += element;
    if (!ensureFolder(made)) return false;
  }
  return true;
}

}  // namespace speech
