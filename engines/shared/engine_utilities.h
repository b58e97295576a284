#pragma once

// What both engines answer alike. Paths are the host's; a null text counts as empty. The code page is the one
// in which a path goes to the audio utilities.

#include <speech/product.h>

#include "win32/text.h"

namespace speech {

/// Sample rate in hertz by its index, or -1: the rates that a host can ask an export for.
int sampleRateAt(int index);

/// The index of a sample rate, or -1.
int sampleRateIndexOf(int sampleRateHz);

/// `text` with & < > ' " replaced by XML entities; entities in it are escaped once more.
CStringW escapedXml(const CStringW& text);

/// Writes a file that holds a WAV header only. 0, or -1.
int writeWavHeaderFile(const wchar_t* path, int dataSize, int sampleRateHz, int bitsPerSample, int channels,
                       CodePage codePage = CodePage::kThread);

/// Converts a WAV file to another rate, sample width and channel count. 1, or -1.
int convertWavFile(const wchar_t* input, int rateHz, int bits, int channels, const wchar_t* output,
                   CodePage codePage = CodePage::kThread);

/// Runs a product's dictionary editor on `dictionary` (empty: the product's own) with `extra` appended to the
/// command line, and waits for it to end. False when it could not be started.
bool runDictionaryEditor(const LXAPIProduct& product, const wchar_t* dictionary, const wchar_t* extra);

}  // namespace speech
