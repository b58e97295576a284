#pragma once

// Conversion of whole arrays, as all wrappers of the rate converter do it. Not exported.

#include <cstdint>
#include <memory>
#include <optional>
#include <span>

#include <speech/audio.h>

namespace speech::audio {

struct ExternDeleter {
  void operator()(void* memory) const { ExternFree(memory); }
};

/// Samples in memory that may be handed to the host.
using SampleArray = std::unique_ptr<std::int16_t[], ExternDeleter>;

/// Room for `count` samples with any content; null where memory is short.
SampleArray allocateSamples(std::int64_t count);

/// Rates in Hz.
struct RatePair {
  std::int32_t input;
  std::int32_t output;
};

/// The pair as the memory wrappers take it, each rate held to 4000 to 48000 Hz.
RatePair clampedRates(std::int32_t inputRate, std::int32_t outputRate);

/// How many samples `inputCount` (0 or more) become; nothing for a number beyond 32 bits, or for rates below
/// 1 that differ.
std::optional<std::int32_t> estimateOutputCount(std::int32_t inputCount, RatePair rates);

struct ConvertedSamples {
  SampleArray samples;
  std::int32_t count;

  std::span<const std::int16_t> view() const { return {samples.get(), static_cast<std::size_t>(count)}; }
};

/// Converts `input` with the large filter; nothing when the converter fails or memory is short.
std::optional<ConvertedSamples> convertSamples(std::span<const std::int16_t> input, RatePair rates);

/// A conversion whose result takes the memory of its input, for recordings of any length.
class InPlaceConversion {
 public:
  /// Room for `inputCount` samples and for what becomes of them; nothing when the rates are out of the
  /// converter's reach or memory is short.
  static std::optional<InPlaceConversion> prepare(std::int32_t inputCount, RatePair rates);

  /// To be filled before convert.
  std::span<std::int16_t> input();

  /// Converts with the large filter; nothing when the converter fails. The result lives as long as this
  /// object.
  std::optional<std::span<const std::int16_t>> convert();

 private:
  InPlaceConversion(SampleArray samples, std::int64_t room, RateRequest request);

  SampleArray samples_;
  RateRequest request_;
};

}  // namespace speech::audio
