#pragma once

/// @file
/// Sample-rate conversion of a stream, block by block; libsoxr does the work.
///
///     const RateStream stream = RATEAPI_MULTI_INIT(44100, 16000, 1);
///     while (const std::int32_t inputBytes = record(input)) {
///       const std::int32_t bytes = RATEAPI_MULTI_PROCESS(stream, input, inputBytes, output, sizeof output);
///       if (bytes > 0) play(output, bytes);
///     }
///     RATEAPI_MULTI_UNINIT(stream);
///
/// Samples are signed 16-bit, interleaved by channel, and dithered: two runs differ by 2 at most. A stream
/// belongs to one thread at a time; different streams may be used at once.

#include <cstdint>

#include "audio/export.h"

/// A running conversion, 0 for none: 32 bits wide in a 32-bit program.
using RateStream = std::uintptr_t;

/// What RATEAPI_MULTI_PROCESS answers instead of a byte count.
enum RateStreamError : std::int32_t {
  kRateStreamNoHandle = -1,      ///< The stream is 0.
  kRateStreamNoInput = -10,      ///< `input` is null.
  kRateStreamEmptyInput = -20,   ///< `inputBytes` is 0 or below.
  kRateStreamNoOutput = -30,     ///< `output` is null.
  kRateStreamEmptyOutput = -40,  ///< `outputBytes` is 0 or below.
};

extern "C" {

/// Starts a conversion.
/// @param inRate    rate of the input in hertz
/// @param outRate   rate of the output in hertz
/// @param channels  interleaved channels, 1 to 1024
/// @return the conversion, which the caller ends with RATEAPI_MULTI_UNINIT; 0 when the rates are not
///   above 0 or more than 65536 to 1 apart, for other numbers of channels, and when memory is short
SPEECH_API RateStream RATEAPI_MULTI_INIT(double inRate, double outRate, std::int32_t channels);

/// Converts the next block: one half of `inputBytes` and of `outputBytes` is taken as the number of frames at
/// `input` and of frames that `output` has room for. For one channel the byte counts are true. For more, both
/// buffers are that many times as large as the byte counts say.
///
/// Give `output` room for what a block makes, and a little more: what does not fit is kept for the next call.
/// The end of a stream stays in the filter, a few milliseconds; follow it with silence where that matters.
/// @param stream       from RATEAPI_MULTI_INIT
/// @param input        samples
/// @param inputBytes   twice their frames
/// @param output       receives samples
/// @param outputBytes  twice the frames that it has room for
/// @return two bytes for every frame stored, or a RateStreamError; the arguments are looked at in the
///   order of those errors
SPEECH_API std::int32_t RATEAPI_MULTI_PROCESS(RateStream stream, const void* input, std::int32_t inputBytes,
                                              void* output, std::int32_t outputBytes);

/// Ends a conversion.
/// @param stream  0 is allowed
SPEECH_API void RATEAPI_MULTI_UNINIT(RateStream stream);

}  // extern "C"
