#pragma once

/// @file
/// Sample-rate conversion of whole recordings, in memory and from file to file, over RATEAPI's large filter.
///
///     if (RATEAPI_WAV2WAV("speech44.wav", 16000, 16, 1, "speech16.wav") != 1) return false;
///
/// Samples in memory are signed 16-bit mono. Every function answers -1 for a failure and may be called on
/// several threads at once. Paths are in the thread's code page. About 90 KB of the caller's stack are used.

#include <cstdint>

#include "audio/export.h"

extern "C" {

/// Converts samples into a buffer of its own.
/// @param input        16-bit mono samples
/// @param inputBytes   their size in bytes
/// @param inRate       their rate, held to 4000 to 48000 Hz
/// @param outRate      the new rate, likewise
/// @param outBits      8 divides every sample by 256 but keeps it a signed 16-bit word; any other width
///   leaves it as it is
/// @param outChannels  2 stores every sample twice; the buffer then holds twice as many bytes as the answer
///   says
/// @param resultOut    receives the buffer, which the caller releases with ExternFree
/// @return two bytes for every converted sample; -1 for an empty input or where memory is short, and
///   nothing is stored then
SPEECH_API std::int32_t RATEAPI_PCM2PCM(const std::int16_t* input, const std::int32_t* inputBytes,
                                        std::int32_t inRate, std::int32_t outRate, std::int32_t outBits,
                                        std::int32_t outChannels, std::int16_t** resultOut);

/// Converts samples in place.
/// @param buffer      16-bit mono samples, with room for the result; null asks for that room
/// @param inOutBytes  size of the samples in bytes, then of the result
/// @param inRate      their rate, held to 4000 to 48000 Hz
/// @param outRate     the new rate, likewise
/// @return the result's size in bytes, without a buffer the size that it will have at most; -1 on a failure,
///   and both are left as they were
SPEECH_API std::int32_t RATEAPI_interface(std::int16_t* buffer, std::int32_t* inOutBytes, std::int32_t inRate,
                                          std::int32_t outRate);

/// Converts samples and writes them as a WAV file.
/// @param input       16-bit mono samples
/// @param inOutBytes  their size in bytes, then the size of the sample data in the file
/// @param inRate      their rate, held to 4000 to 48000 Hz
/// @param outRate     the file's rate, likewise
/// @param bits        8 or 16
/// @param channels    1, or 2 for each sample twice; more count as 2
/// @param path        the file to write
/// @return 1; -1 for an empty input, another width, less than one channel and a file that cannot be written
SPEECH_API std::int32_t RATEAPI_PCM2WAV(const std::int16_t* input, std::int32_t* inOutBytes,
                                        std::int32_t inRate, std::int32_t outRate, std::int32_t bits,
                                        std::int32_t channels, const char* path);

/// Converts a WAV file into another. Rates are taken as they are.
/// @param inPath       PCM of 8 or 16 bits whose samples begin at offset 44
/// @param outRate      the new rate in hertz
/// @param outBits      8 or 16
/// @param outChannels  1 (of a stereo input the left channel) or 2; more count as 2
/// @param outPath      the file to write
/// @return 1; -1 when the input cannot be read, is not PCM, or has a rate that the converter cannot take; for
///   other widths, less than one channel, and an output that cannot be written or is the input file itself.
///   What was at `outPath` is lost then, even where there is no input, save in that last case. Where the
///   header announces more samples than the file holds, those that are there are converted.
SPEECH_API std::int32_t RATEAPI_WAV2WAV(const char* inPath, std::int32_t outRate, std::int32_t outBits,
                                        std::int32_t outChannels, const char* outPath);

/// RATEAPI_WAV2WAV for wider samples: they are read in the width that the input's header names, of which the
/// two low-order bytes count.
/// @param inPath       as for RATEAPI_WAV2WAV
/// @param outRate      as for RATEAPI_WAV2WAV
/// @param outBits      8, 16 or 32; with 16 and 32 samples are written in the input's width, and with 32 the
///   header's format code (WaveFormatCode) is the input's bits per sample
/// @param outChannels  as for RATEAPI_WAV2WAV
/// @param outPath      as for RATEAPI_WAV2WAV
/// @return as RATEAPI_WAV2WAV
SPEECH_API std::int32_t RATEAPI_WAV2WAV_EX(const char* inPath, std::int32_t outRate, std::int32_t outBits,
                                           std::int32_t outChannels, const char* outPath);

}  // extern "C"
