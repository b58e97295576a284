#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>
#include <string>

/// Where an export goes, and as what.
struct ExportTarget {
  std::wstring path;
  std::int32_t format;  // SpeechFormat
};

/// Asks for a file. The extension of the name decides about the format; a name with none of the known ones
/// gets that of the type chosen in the dialog. @return nothing if the user thinks better of it
std::optional<ExportTarget> askForTarget(HWND owner);
