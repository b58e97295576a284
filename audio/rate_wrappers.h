#pragma once

// Sample-rate conversion of whole recordings, in memory and from file to file, over RATEAPI's large filter.
//
//   if (RATEAPI_WAV2WAV("speech44.wav", 16000, 16, 1, "speech16.wav") != 1) return false;
//
// Samples in memory are signed 16-bit mono. Every function answers -1 for a failure and may be called on
// several threads at once. Paths are in the thread's code page. About 90 KB of the caller's stack are used.

#include <cstdint>

#include "audio/export.h"

extern "C" {

/// Converts `*inputBytes` bytes of samples at `input` and stores in `*resultOut` a buffer that the caller
/// releases with ExternFree. Rates are held to 4000 to 48000 Hz. `outBits` 8 divides every sample by 256 but
/// keeps it a signed 16-bit word; any other width leaves it as it is. `outChannels` 2 stores every sample
/// twice; the buffer then holds twice as many bytes as the answer says. Returns two bytes for every converted
/// sample; -1 for an empty input or where memory is short, and nothing is stored then.
SPEECH_API std::int32_t RATEAPI_PCM2PCM(const std::int16_t* input, const std::int32_t* inputBytes,
                                        std::int32_t inRate, std::int32_t outRate, std::int32_t outBits,
                                        std::int32_t outChannels, std::int16_t** resultOut);

/// Converts the `*inOutBytes` bytes of samples at `buffer` in place, stores the new size there and returns
/// it. Rates are held to 4000 to 48000 Hz. With a null buffer it returns the size in bytes that the result
/// will have at most: make the buffer that large. Returns -1 on a failure, and leaves both as they were.
SPEECH_API std::int32_t RATEAPI_interface(std::int16_t* buffer, std::int32_t* inOutBytes, std::int32_t inRate,
                                          std::int32_t outRate);

/// Converts `*inOutBytes` bytes of samples and writes them as a WAV file of `bits` 8 or 16 with 1 channel or,
/// each sample twice, 2. Rates are held to 4000 to 48000 Hz; more channels count as 2. `*inOutBytes` is then
/// the size of the sample data in the file. Returns 1; -1 for an empty input, another width, less than one
/// channel and a file that cannot be written.
SPEECH_API std::int32_t RATEAPI_PCM2WAV(const std::int16_t* input, std::int32_t* inOutBytes,
                                        std::int32_t inRate, std::int32_t outRate, std::int32_t bits,
                                        std::int32_t channels, const char* path);

/// Converts the WAV file at `inPath`, PCM of 8 or 16 bits whose samples begin at offset 44, into one at
/// `outPath` of `outRate` Hz, `outBits` 8 or 16, and `outChannels` 1 (of a stereo input the left channel) or
/// 2; more count as 2. Rates are taken as they are. Returns 1. Returns -1 when the input cannot be read, is
/// not PCM, announces more samples than the file holds, or has a rate that the converter cannot take; for
/// other widths, less than one channel, and an output that cannot be written or is the input file itself.
/// What was at `outPath` is lost then, save in that last case.
SPEECH_API std::int32_t RATEAPI_WAV2WAV(const char* inPath, std::int32_t outRate, std::int32_t outBits,
                                        std::int32_t outChannels, const char* outPath);

/// RATEAPI_WAV2WAV for wider samples: they are read in the width that the input's header names, of which the
/// two low-order bytes count. `outBits` may be 8, 16 or 32; with 16 and 32 samples are written in the input's
/// width, and with 32 the header's format code (WaveFormatCode) is the input's bits per sample.
SPEECH_API std::int32_t RATEAPI_WAV2WAV_EX(const char* inPath, std::int32_t outRate, std::int32_t outBits,
                                           std::int32_t outChannels, const char* outPath);

}  // extern "C"
