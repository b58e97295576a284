#pragma once

// How SoX is called. The output's type follows from its extension. Nobody looks at SoX's exit code: what
// counts is the file that it makes.

#include <string>

#include "engines/exporting/formats.h"

namespace speech::sox {

/// The program in a folder that ends in a backslash.
std::wstring programIn(const std::wstring& folder);

/// Whether the folder has it.
bool isIn(const std::wstring& folder);

/// Makes a compressed file of a WAV file.
/// @param rateHz  of the output; GSM has a rate of its own, and MP3 keeps the input's
/// @return whether SoX could be started
bool compress(const std::wstring& folder, const std::wstring& wavPath, const ExportFormat& format, int rateHz,
              const std::wstring& output);

/// The same of raw 16-bit mono samples at `rateHz`, which the output has too.
bool compressRaw(const std::wstring& folder, const std::wstring& rawPath, int rateHz,
                 const std::wstring& output);

}  // namespace speech::sox
