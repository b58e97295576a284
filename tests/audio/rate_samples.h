#pragma once

// What the wrappers of the rate converter have to give: the converter's own result for the natural capacity.

#include <cmath>
#include <cstdint>
#include <vector>

#include <speech/audio.h>

namespace speech::test {

using Samples = std::vector<std::int16_t>;

/// A loud chirp with clicks, different for every seed.
inline Samples chirp(std::size_t count, std::size_t seed = 0) {
  Samples samples(count);
  for (std::size_t i = 0; i < count; ++i) {
    const auto time = static_cast<double>(i);
    const double tone = 30000 * std::sin(time * (0.02 + time * 1e-5) + static_cast<double>(seed));
    samples[i] = i % 1000 == seed ? std::int16_t{-32768} : static_cast<std::int16_t>(std::lround(tone));
  }
  return samples;
}

inline Samples converted(const Samples& input, std::int32_t inputRate, std::int32_t outputRate) {
  const auto capacity = static_cast<std::int32_t>(
      static_cast<float>(outputRate) / static_cast<float>(inputRate) * static_cast<float>(input.size()) +
      0.5);
  Samples output(static_cast<std::size_t>(capacity));
  const RateRequest request{input.data(),   output.data(),    static_cast<std::int32_t>(input.size()),
                            capacity,       inputRate,        outputRate,
                            /*reserved=*/0, kRateQualityLarge};
  const std::int32_t count = RATEAPI(&request);
  output.resize(count < 0 ? 0 : static_cast<std::size_t>(count));
  return output;
}

}  // namespace speech::test
