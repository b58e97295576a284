#pragma once

// How the engines call SoX. The output's type follows from its extension.

#include "framework/framework.h"

namespace speech::sox {

/// The program in a folder that ends in a backslash.
CStringW programPath(const CStringW& folder);

/// True when there is such a file.
bool isAccessible(const CStringW& program);

/// Command line: a WAV file to another type at a rate in Hz.
CStringW convertAtRate(const CStringW& wavPath, int rateHz, const CStringW& outputPath);

/// Command line: a WAV file to MP3 at 320 kbit/s, or the most that its rate allows.
CStringW convertToMp3(const CStringW& wavPath, const CStringW& outputPath);

/// Command line: raw 16-bit mono samples at a rate in Hz to another type.
CStringW convertRaw(const CStringW& pcmPath, int rateHz, const CStringW& outputPath);

}  // namespace speech::sox
