#pragma once

// Raw PCM files: making them out of WAV files, and WAV files out of them.

#include <cstdio>
#include <memory>

namespace speech {

/// The header that the rate converter and the engines write in front of 16-bit PCM samples.
constexpr long kWavHeaderSize = 44;

/// What becomes of a last block of exactly 65,535 bytes, which is no different from a full one.
enum class LastFullBlock { kDropped, kWritten };

/// Copies samples into a WAV file whose header is written, in blocks of 65,535 bytes.
/// Kept: 65,535 bytes or less become silence of that length; the source is not read.
/// @param source       raw samples; missing ones are written as silence
/// @param destination  positioned where the samples go
/// @param byteCount    size of the samples
void appendSamples(std::FILE* source, std::FILE* destination, int byteCount, LastFullBlock lastFullBlock);

/// Writes a WAV file's bytes from the 45th on to another file, which may be the same.
/// @return false when either file cannot be opened
bool stripWavHeader(const wchar_t* wavPath, const wchar_t* rawPath);

}  // namespace speech
