// Any request: the converter answers as the model does and stays within its buffers.

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "audio/rate/converter.h"
#include "tests/audio/rate_model.h"

namespace {

namespace rate = speech::audio::rate;

constexpr std::array kCommonRates = {6000,  6024,  7000,  8000,  11025, 12000, 16000,
                                     22050, 24000, 32000, 32075, 44100, 48000, 96000};

std::int32_t consumeRate(FuzzedDataProvider& data) {
  switch (data.ConsumeIntegralInRange(0, 3)) {
    case 0:
      return data.ConsumeIntegral<std::int32_t>();
    case 1:
      return data.ConsumeIntegralInRange(-1, 70000);
    default:
      return data.PickValueInArray(kCommonRates);
  }
}

/// Mostly short conversions, which are quick; one input in 64, by all of its bytes, whose samples end near a
/// block's end, or which makes as many samples as a block may.
void consumeSize(FuzzedDataProvider& data, std::uint32_t hash, RateRequest& request) {
  const bool isLong = hash >> 26 == 0;
  const int kind = isLong ? data.ConsumeIntegralInRange(0, 2) : 3;
  const std::int32_t lowest[] = {8192 - 300, 4096 - 300, 0, 0}, spread[] = {400, 400, 1000, 100};
  request.inputCount = lowest[kind] + data.ConsumeIntegralInRange(0, spread[kind]);
  const double natural = static_cast<double>(request.inputCount) * std::max(request.outputRate, 1) /
                         std::max(request.inputRate, 1);
  const auto capacity = static_cast<std::int32_t>(std::min(natural + 0.5, isLong ? 50000.0 : 200.0));
  request.outputCapacity = data.ConsumeIntegralInRange(0, 3) != 0
                               ? capacity
                               : data.ConsumeIntegralInRange(-1, capacity + (isLong ? 5000 : 100));
}

std::vector<std::int16_t> consumeSamples(FuzzedDataProvider& data, std::size_t length) {
  std::vector<std::int16_t> samples(length);
  auto state = data.ConsumeIntegral<std::uint32_t>();
  const bool extremes = data.ConsumeBool();
  for (std::int16_t& sample : samples) {
    // What the data does not say, a generator does.
    state = state * 1664525 + 1013904223;
    sample = data.remaining_bytes() >= 2 ? data.ConsumeIntegral<std::int16_t>()
                                         : static_cast<std::int16_t>(state >> 16);
    if (extremes) sample = sample < 0 ? -32768 : 32767;
  }
  return samples;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t byteCount) {
  std::uint32_t hash = 2166136261;
  for (std::size_t i = 0; i < byteCount; ++i) hash = (hash ^ bytes[i]) * 16777619;
  FuzzedDataProvider data(bytes, byteCount);
  RateRequest request{};
  request.inputRate = consumeRate(data);
  request.outputRate = consumeRate(data);
  request.quality = data.ConsumeIntegral<std::uint16_t>();
  const auto level = data.PickValueInArray({rate::Level::kPlain, rate::Level::kSse2, rate::Level::kAvx2});
  if (!rate::hasLevel(level)) return 0;
  consumeSize(data, hash, request);
  const auto input = consumeSamples(data, static_cast<std::size_t>(request.inputCount));
  request.input = input.data();

  // Equal rates copy the whole input whatever the capacity.
  std::vector<std::int16_t> expected(
      static_cast<std::size_t>(std::max(request.outputCapacity, request.inputCount)));
  std::vector<std::int16_t> output(expected.size());
  request.output = expected.data();
  const std::int32_t answer = speech::test::RateModel(request).convert();
  request.output = output.data();
  if (rate::convert(request, level) != answer || output != expected) {
    std::fprintf(stderr, "%d to %d Hz, quality %d, %d samples, room for %d: not the model's samples\n",
                 request.inputRate, request.outputRate, request.quality, request.inputCount,
                 request.outputCapacity);
    std::abort();
  }
  return 0;
}
