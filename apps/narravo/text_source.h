#pragma once

// Where a command's text comes from: the command line, a UTF-8 file or standard input.

#include <string>
#include <vector>

#include <CLI/CLI.hpp>

namespace narravo {

struct TextSource {
  std::vector<std::string> words;  ///< TEXT as given; joined by blanks. "-" alone is standard input.
  std::string file;                ///< Empty when the text is on the command line.
};

void addTextArguments(CLI::App& command, TextSource& source);

/// The text, never empty. Throws HostError when it cannot be read or is not text.
std::wstring readText(const TextSource& source);

/// Decodes UTF-8, with or without a byte order mark. Throws HostError when the bytes are not text.
/// @param name  what the error message calls them
std::wstring decodeText(std::string_view bytes, const std::string& name);

}  // namespace narravo
