#pragma once

#include <optional>
#include <string>

namespace speech {

/// The user's documents folder, without a trailing backslash; empty when the shell cannot name it.
std::optional<std::wstring> documentsFolder();

/// The user's folder for temporary files, with its trailing backslash.
std::wstring temporaryFolder();

}  // namespace speech
