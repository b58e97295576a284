#pragma once

// Names of temporary files: a fresh GUID in the user's temporary folder.

#include "framework/framework.h"

namespace speech {

/// The user's folder for temporary files, with its trailing backslash.
CStringW getTempFolder();

/// A fresh GUID in upper-case hexadecimal without braces, such as "5F0C…-1A2B-3C4D-5E6F-708192A3B4C5".
CStringW makeGuidName();

/// A path in the temporary folder that no file has yet. `extension` comes with its dot.
CStringW makeTempPath(const wchar_t* extension);

}  // namespace speech
