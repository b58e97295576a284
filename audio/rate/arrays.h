#pragma once

// Conversion of whole arrays, as all wrappers of the rate converter do it.

#include <cstdint>
#include <optional>
#include <span>

#include <speech/audio.h>
#include "base/memory.h"

namespace speech::audio::rate {

/// Samples in memory that may be handed to the host, which releases them with ExternFree.
using SampleArray = MallocBlock<std::int16_t[]>;

/// Room for `count` samples with any content; null if memory is short.
SampleArray allocateSamples(std::int64_t count);

/// Rates in Hz.
struct RatePair {
  std::int32_t input;
  std::int32_t output;
};

/// The pair with each rate limited to 4000 to 48000 Hz, as the memory wrappers take it.
RatePair clampedRates(std::int32_t inputRate, std::int32_t outputRate);

/// The number of samples that `inputCount` (0 or more) become; nothing if it exceeds 32 bits, or if the rates
/// differ and one is below 1.
std::optional<std::int32_t> estimateOutputCount(std::int32_t inputCount, RatePair rates);

struct ConvertedSamples {
  SampleArray samples;
  std::int32_t count;

  std::span<const std::int16_t> view() const { return {samples.get(), static_cast<std::size_t>(count)}; }
};

/// Converts `input` with the large filter; nothing if the converter fails or memory is short.
std::optional<ConvertedSamples> convertSamples(std::span<const std::int16_t> input, RatePair rates);

/// A conversion whose result replaces its input in memory, for long recordings.
class InPlaceConversion {
 public:
  /// Room for `inputCount` samples and for what becomes of them; nothing if the rates are out of the
  /// converter's reach or memory is short.
  static std::optional<InPlaceConversion> prepare(std::int32_t inputCount, RatePair rates);

  /// To be filled before convert.
  std::span<std::int16_t> input();

  /// Converts with the large filter; nothing if the converter fails. The result lives as long as this
  /// object.
  std::optional<std::span<const std::int16_t>> convert();

 private:
  InPlaceConversion(SampleArray samples, std::int64_t room, RateRequest request);

  SampleArray samples_;
  RateRequest request_;
};

}  // namespace speech::audio::rate
