// Any request: the vector code answers as the plain code does and stays within its buffers.

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "audio/rate_conversion.h"
#include "audio/rate_parameters.h"

namespace {

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

struct Size {
  std::size_t inputCount;
  std::int32_t outputCapacity;
};

/// One input in 64, by all of its bytes: a mutation rolls again, so that the corpus does not fill up with
/// slow ones.
bool mayBeLong(const std::uint8_t* bytes, std::size_t byteCount) {
  std::uint32_t hash = 2166136261;
  for (std::size_t i = 0; i < byteCount; ++i) hash = (hash ^ bytes[i]) * 16777619;
  return hash >> 26 == 0;
}

/// Mostly short conversions, which are quick; now and then one whose input ends near a block's end, or one
/// that makes as many samples as a block may.
Size consumeSize(FuzzedDataProvider& data, bool longer, std::int32_t inputRate, std::int32_t outputRate) {
  const int kind = longer ? data.ConsumeIntegralInRange(0, 3) : 4;
  const std::size_t length = kind == 0   ? 8192u - 300 + data.ConsumeIntegralInRange(0u, 400u)
                             : kind == 1 ? 4096u - 300 + data.ConsumeIntegralInRange(0u, 400u)
                             : kind < 4  ? data.ConsumeIntegralInRange(0u, 1000u)
                                         : data.ConsumeIntegralInRange(0u, 100u);
  const std::int32_t most = kind == 2 ? 50000 : kind < 4 ? 5000 : 200;
  const double natural = static_cast<double>(length) * std::max(outputRate, 1) / std::max(inputRate, 1) + 0.5;
  const auto sensible = static_cast<std::int32_t>(std::min<double>(natural, most));
  switch (data.ConsumeIntegralInRange(0, 15)) {
    case 0:
      return {length, data.ConsumeIntegralInRange(-1, most)};
    case 1:
      return {length, data.ConsumeIntegralInRange(0, sensible)};
    case 2:
      return {length, sensible + data.ConsumeIntegralInRange(0, 100)};
    default:
      return {length, sensible};
  }
}

std::vector<std::int16_t> consumeSamples(FuzzedDataProvider& data, std::size_t length) {
  std::vector<std::int16_t> samples(length);
  auto state = data.ConsumeIntegral<std::uint32_t>();
  const bool extremes = data.ConsumeBool();
  std::size_t i = 0;
  // What the data does not say, a generator does.
  for (; i < length && data.remaining_bytes() >= 2; ++i) samples[i] = data.ConsumeIntegral<std::int16_t>();
  for (; i < length; ++i) {
    state = state * 1664525 + 1013904223;
    const auto noise = static_cast<std::int16_t>(state >> 16);
    samples[i] = !extremes ? noise : noise < 0 ? std::int16_t{-32768} : std::int16_t{32767};
  }
  return samples;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t byteCount) {
  FuzzedDataProvider data(bytes, byteCount);
  RateRequest request{};
  request.inputRate = consumeRate(data);
  request.outputRate = consumeRate(data);
  request.quality = data.ConsumeIntegralInRange<std::uint16_t>(0, 3);
  const auto level =
      data.PickValueInArray({rate::Level::sse2, rate::Level::ssse3, rate::Level::avx2, rate::Level::avx2});
  const Size size = consumeSize(data, mayBeLong(bytes, byteCount), request.inputRate, request.outputRate);
  const auto input = consumeSamples(data, size.inputCount);
  request.input = input.data();
  request.inputCount = static_cast<std::int32_t>(size.inputCount);
  request.outputCapacity = size.outputCapacity;

  // Equal rates copy the whole input whatever the capacity.
  const auto room = std::max<std::size_t>(static_cast<std::size_t>(std::max(request.outputCapacity, 0)),
                                          request.inputRate == request.outputRate ? size.inputCount : 0);
  std::vector<std::int16_t> plain(room);
  request.output = plain.data();
  const std::int32_t plainResult = rate::convert(request, rate::Level::plain);
  if (plainResult < -1 || plainResult > static_cast<std::int32_t>(room)) std::abort();

  if (!rate::hasLevel(level)) return 0;
  std::vector<std::int16_t> fast(room);
  request.output = fast.data();
  if (rate::convert(request, level) != plainResult || fast != plain) {
    std::fprintf(stderr, "%d to %d Hz, quality %d, %d samples, room for %d: the levels differ\n",
                 request.inputRate, request.outputRate, request.quality, request.inputCount,
                 request.outputCapacity);
    std::abort();
  }
  return 0;
}
