#pragma once

// Paths: well-known folders, names for temporary files, and the narrow form for functions that take no other.

#include <windows.h>

#include <optional>
#include <string>
#include <string_view>

#include "win32/text.h"

namespace speech {

/// The user's documents folder, without a trailing backslash; empty when the shell cannot name it.
std::optional<std::wstring> documentsFolder();

/// The user's folder for temporary files, with its trailing backslash. Empty when it is longer than MAX_PATH.
std::wstring temporaryFolder();

/// The program or DLL that holds this code.
HMODULE thisModule();

/// The folder of a program or DLL, with its trailing backslash. Null stands for the running program.
std::wstring moduleFolder(HMODULE module);

/// A fresh GUID in upper-case hexadecimal without braces, such as "5F0C91D2-1A2B-3C4D-5E6F-708192A3B4C5".
std::wstring guidName();

/// A path in the temporary folder that no file has yet.
/// @param extension  with its dot: programs go by it
std::wstring newTemporaryPath(std::wstring_view extension);

/// Whether there is a file or folder of this name.
bool pathExists(const wchar_t* path);

/// A path as narrow file functions take it: itself where the code page holds all of it, else the short form
/// of the file or folder that it names.
/// @param codePage  the one in which the path will be read: the C runtime and the system read kSystem
/// @param longest   in bytes; the short form is also taken where the path itself is longer
/// @return empty when neither form can be had
std::optional<std::string> narrowPath(std::wstring_view path, CodePage codePage = CodePage::kSystem,
                                      std::size_t longest = std::string::npos);

/// The same for a file that need not exist yet: where its own name does not fit, the short form of its folder
/// is taken.
std::optional<std::string> narrowPathOfNewFile(std::wstring_view path, CodePage codePage = CodePage::kSystem);

}  // namespace speech
