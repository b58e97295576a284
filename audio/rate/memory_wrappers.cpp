// The rate converter's wrappers from memory to memory, and the conversion of arrays that all wrappers use.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <utility>

#include <speech/audio.h>
#include "audio/rate/arrays.h"

namespace speech::audio::rate {
namespace {

constexpr std::int32_t kLowestRate = 4000;
constexpr std::int32_t kHighestRate = 48000;

/// A request for the wrappers' filter and natural capacity, still without its arrays.
std::optional<RateRequest> requestFor(std::int32_t inputCount, RatePair rates) {
  const std::optional<std::int32_t> capacity = estimateOutputCount(inputCount, rates);
  if (!capacity) return std::nullopt;
  return RateRequest{nullptr,     nullptr,      inputCount,     *capacity,
                     rates.input, rates.output, /*reserved=*/0, kRateQualityLarge};
}

/// Samples that a request may store. Equal rates copy the whole input, of which single precision may have
/// lost some samples.
std::int32_t roomFor(const RateRequest& request) {
  return request.inputRate == request.outputRate ? std::max(request.outputCapacity, request.inputCount)
                                                 : request.outputCapacity;
}

}  // namespace

SampleArray allocateSamples(std::int64_t count) {
  const std::int64_t bytes = std::max<std::int64_t>(count, 1) * std::int64_t{sizeof(std::int16_t)};
  if (bytes > std::numeric_limits<std::ptrdiff_t>::max()) return nullptr;
  return SampleArray(static_cast<std::int16_t*>(ExternMalloc(static_cast<std::size_t>(bytes))));
}

RatePair clampedRates(std::int32_t inputRate, std::int32_t outputRate) {
  return {std::clamp(inputRate, kLowestRate, kHighestRate),
          std::clamp(outputRate, kLowestRate, kHighestRate)};
}

std::optional<std::int32_t> estimateOutputCount(std::int32_t inputCount, RatePair rates) {
  const bool areEqual = rates.input == rates.output;
  if (!areEqual && (rates.input < 1 || rates.output < 1)) return std::nullopt;
  // Kept: single precision, which decides the last samples of long recordings.
  const float factor = areEqual ? 1 : static_cast<float>(rates.output) / static_cast<float>(rates.input);
  const float samples = factor * static_cast<float>(inputCount);
  const double rounded = static_cast<double>(samples) + 0.5;
  if (rounded > std::numeric_limits<std::int32_t>::max()) return std::nullopt;
  return static_cast<std::int32_t>(rounded);
}

std::optional<ConvertedSamples> convertSamples(std::span<const std::int16_t> input, RatePair rates) {
  if (input.size() > std::numeric_limits<std::int32_t>::max()) return std::nullopt;
  std::optional<RateRequest> request = requestFor(static_cast<std::int32_t>(input.size()), rates);
  if (!request) return std::nullopt;
  SampleArray output = allocateSamples(roomFor(*request));
  if (!output) return std::nullopt;
  request->input = input.data();
  request->output = output.get();
  const std::int32_t count = RATEAPI(&*request);
  if (count < 0) return std::nullopt;
  return ConvertedSamples{std::move(output), count};
}

std::optional<InPlaceConversion> InPlaceConversion::prepare(std::int32_t inputCount, RatePair rates) {
  const std::optional<RateRequest> request = requestFor(inputCount, rates);
  if (!request) return std::nullopt;
  // The input lies at the end of the memory and the output grows from its start. The converter copies a block
  // of input to its work buffer before it stores the samples of that block, and there is room for the longer
  // of the two, so that it overwrites no input that it has not read. Only its step, a 15-bit fraction, may
  // make it run ahead, by at most 1 in 6000 where more than one block is possible.
  const std::int64_t lead = inputCount / 4096 + 64;
  const std::int64_t room = std::max<std::int64_t>(roomFor(*request), inputCount) + lead;
  SampleArray samples = allocateSamples(room);
  if (!samples) return std::nullopt;
  return InPlaceConversion(std::move(samples), room, *request);
}

InPlaceConversion::InPlaceConversion(SampleArray samples, std::int64_t room, RateRequest request)
    : samples_(std::move(samples)), request_(request) {
  request_.input = samples_.get() + (room - request_.inputCount);
  request_.output = samples_.get();
}

std::span<std::int16_t> InPlaceConversion::input() {
  return {samples_.get() + (request_.input - samples_.get()), static_cast<std::size_t>(request_.inputCount)};
}

std::optional<std::span<const std::int16_t>> InPlaceConversion::convert() {
  const std::int32_t count = RATEAPI(&request_);
  if (count < 0) return std::nullopt;
  return std::span<const std::int16_t>(samples_.get(), static_cast<std::size_t>(count));
}

}  // namespace speech::audio::rate

using namespace speech::audio::rate;

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

  // There is room for all channels that the caller names, although two are filled at most.
  SampleArray result = allocateSamples(std::int64_t{converted->count} * std::max(outChannels, 1));
  if (!result) return -1;
  std::int16_t* to = result.get();
  for (const std::int16_t sample : converted->view()) {
    // Kept: 8 bits are a signed word without an offset, rounded toward zero.
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
