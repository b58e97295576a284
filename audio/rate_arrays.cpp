#include "audio/rate_arrays.h"

#include <algorithm>
#include <cstddef>
#include <limits>

namespace speech::audio {
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

/// How many samples a request may store: equal rates are copied whole, and single precision may have lost
/// some of a long input's count.
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
  // The input stands at the end of the memory, the output grows from its start. The converter takes a block
  // of input into its own work buffer before it stores the samples of that block, and the room is never less
  // than either needs, so it overtakes no input; save for its step, a 15-bit fraction, which may run ahead by
  // 1 in 6000 where a conversion of more than one block is possible at all.
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

}  // namespace speech::audio
