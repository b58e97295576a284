#pragma once

/// @file
/// The table-driven sample-rate converter for 16-bit mono sound.
///
///     std::vector<std::int16_t> sixteen(eight.size() * 2);
///     const RateRequest request{eight.data(), sixteen.data(), static_cast<std::int32_t>(eight.size()),
///                               static_cast<std::int32_t>(sixteen.size()), 8000, 16000, 0,
///                               kRateQualityLarge};
///     const std::int32_t count = RATEAPI(&request);

#include <cstdint>

#include "audio/export.h"

/// The low byte of RateRequest::quality. Every other nonzero value selects the small filter.
enum RateQuality : std::uint16_t {
  kRateQualityLinear = 0,  ///< linear interpolation: fastest, no filter against aliases
  kRateQualitySmall = 1,   ///< 6 zero crossings a side
  kRateQualityLarge = 2,   ///< 32 zero crossings a side: what every wrapper uses
};

/// One conversion, filled in by the caller.
struct RateRequest {
  const std::int16_t* input;    ///< `inputCount` samples, mono
  std::int16_t* output;         ///< room for `outputCapacity` samples; the caller's own
  std::int32_t inputCount;      ///< samples; 0 or below converts nothing
  std::int32_t outputCapacity;  ///< samples; the most that are ever stored, save at equal rates
  std::int32_t inputRate;       ///< Hz, at least 1 unless they are equal
  std::int32_t outputRate;      ///< Hz, at least 1
  std::uint16_t reserved;       ///< ignored
  std::uint16_t quality;        ///< RateQuality in the low byte; the high byte is ignored
};

extern "C" {

/// Converts a whole array in one call.
///
/// Equal rates, whatever they are, copy `inputCount` samples unchanged and ignore the capacity. Otherwise the
/// capacity is always filled, and what the input does not give comes from what the work buffer still holds:
/// ask for inputCount * outputRate / inputRate samples, not more.
///
/// @param request  what to convert, how and where to
/// @return the samples stored; 0 for an empty input, and for a single sample at another rate; -1 for a null
///   pointer, a rate below 1, rates too far apart for the filter (more than about 61 to 1 down with the
///   large one, 291 with the small one, 32767 with none) or for the clock (65536 to 1 up), and when one
///   block of about 4000 input samples would have to store more than 40962 samples. Samples of earlier
///   blocks have then been stored already. Rates more than 16 to 1 up leave out whole runs of samples.
///
/// Any thread; calls share nothing. Takes about 90 KB of the caller's stack and allocates nothing.
SPEECH_API std::int32_t RATEAPI(const RateRequest* request);

}  // extern "C"
