#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

namespace lxapi {

/// `path` in the code page of narrow file functions, by its short form where it cannot be written otherwise
/// in `byteCount` bytes; empty where it cannot be written at all.
std::string narrowPath(const std::filesystem::path& path, size_t byteCount);

}  // namespace lxapi
