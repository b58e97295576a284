// The rate converter's wrappers from memory to memory.

#include <algorithm>
#include <cstdint>
#include <limits>

#include <speech/audio.h>
#include "audio/rate_arrays.h"

using namespace speech::audio;

namespace {

std::span<const std::int16_t> samplesAt(const std::int16_t* samples, std::int32_t bytes) {
  return {samples, static_cast<std::size_t>(bytes) / 2};
}

}  // namespace

std::int32_t RATEAPI_PCM2PCM(const std::int16_t* input, const std::int32_t* inputBytes, std::int32_t inRate,
                             std::int32_t outRate, std::int32_t outBits, std::int32_t outChannels,
                             std::int16_t** resultOut) {
  if (input == nullptr || inputBytes == nullptr || resultOut == nullptr || *inputBytes < 1) return -1;
  const auto converted = convertSamples(samplesAt(input, *inputBytes), clampedRates(inRate, outRate));
  if (!converted || converted->count > std::numeric_limits<std::int32_t>::max() / 2) return -1;

  // Room for as many channels as asked for, though no more than two are filled.
  SampleArray result = allocateSamples(std::int64_t{converted->count} * std::max(outChannels, 1));
  if (!result) return -1;
  std::int16_t* to = result.get();
  for (const std::int16_t sample : converted->view()) {
    // Kept: eight bits as a signed word without offset, rounded towards zero.
    const std::int16_t value = outBits == 8 ? static_cast<std::int16_t>(sample / 256) : sample;
    *to++ = value;
    if (outChannels == 2) *to++ = value;
  }
  *resultOut = result.release();
  // Kept: the size of one channel, also for two.
  return converted->count * 2;
}

std::int32_t RATEAPI_interface(std::int16_t* buffer, std::int32_t* inOutBytes, std::int32_t inRate,
                               std::int32_t outRate) {
  if (inOutBytes == nullptr || *inOutBytes < 0) return -1;
  const RatePair rates = clampedRates(inRate, outRate);
  const std::optional<std::int32_t> estimate = estimateOutputCount(*inOutBytes / 2, rates);
  if (!estimate || *estimate > std::numeric_limits<std::int32_t>::max() / 2) return -1;
  if (buffer == nullptr) return *estimate * 2;

  const auto converted = convertSamples(samplesAt(buffer, *inOutBytes), rates);
  if (!converted) return -1;
  std::ranges::copy(converted->view(), buffer);
  *inOutBytes = converted->count * 2;
  return *inOutBytes;
}
