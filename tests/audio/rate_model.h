#pragma once

// A second rate converter, written down as plainly as possible and sharing no code with the library's: the
// library is held against it. It walks one block at a time over one buffer, sample by sample and tap by tap,
// and makes its own tables. Its clock has 64 bits.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <random>
#include <stdexcept>
#include <vector>

#include <speech/audio.h>

namespace speech::test {

/// The numbers of a pair of rates, for one method.
struct ModelSetting {
  bool isLinear, isLarge;
  std::int64_t step = 0, coefStep = 0, gain = 0, guard = 10;

  explicit ModelSetting(const RateRequest& request)
      : isLinear((request.quality & 255) == 0), isLarge((request.quality & 255) == 2) {
    if (request.inputRate < 1 || request.outputRate < 1) return;
    const float factor = static_cast<float>(request.outputRate) / static_cast<float>(request.inputRate);
    const double narrowing = std::min<double>(factor, 1);
    step = static_cast<std::int64_t>(static_cast<double>(1.0f / factor) * 32768 + 0.5);
    coefStep = static_cast<std::int64_t>(narrowing * 256 * 128 + 0.5);
    if (isLinear) return;
    gain = static_cast<std::int64_t>(narrowing * (isLarge ? 14008 : 12471) + 0.5);
    guard = static_cast<std::int64_t>(1.0 / narrowing * (isLarge ? 33 : 7)) + 10;
    // The two rows of the known table that its rule does not give.
    if (request.inputRate == 48000 && (request.outputRate == 8000 || request.outputRate == 16000)) ++guard;
  }
};

/// One wing of a filter and the steps from entry to entry: a sinc that cuts off at 0.9 of the lower Nyquist
/// frequency, under a Kaiser window.
struct ModelFilter {
  std::vector<int> coef, delta;

  explicit ModelFilter(int crossings) {
    const auto bessel = [](long double x) {
      long double sum = 1, term = 1;
      for (int k = 1; k < 60; ++k) sum += term *= (x / 2 / k) * (x / 2 / k);
      return sum;
    };
    for (int i = 0; i < crossings * 256; ++i) {
      const long double angle = std::numbers::pi_v<long double> * 0.9L * i / 256;
      const long double place = static_cast<long double>(i) / (crossings * 256 - 1);
      const long double window = bessel(9 * std::sqrt(1 - place * place)) / bessel(9);
      coef.push_back(static_cast<int>(32767 * (i == 0 ? 1 : std::sin(angle) / angle) * window + 0.5L));
    }
    for (std::size_t i = 1; i < coef.size(); ++i) delta.push_back(coef[i] - coef[i - 1]);
    delta.push_back(-coef.back());
  }
};

class RateModel {
 public:
  explicit RateModel(const RateRequest& request) : request_(request), setting_(request) {}

  /// What RATEAPI has to answer, for a request with its pointers; the samples go to request.output.
  std::int32_t convert() {
    if (request_.inputCount <= 0) return 0;
    if (request_.inputRate == request_.outputRate) {
      std::copy_n(request_.input, request_.inputCount, request_.output);
      return request_.inputCount;
    }
    if (setting_.step < 1 || setting_.step >= 1 << 30 || setting_.guard >= 2048) return -1;

    const std::int64_t guard = setting_.guard;
    std::int64_t blockLength = 4096 - 2 * guard;
    std::int64_t fillPosition = guard, clock = guard << 15, total = 0, last = 0;
    while (total < request_.outputCapacity) {
      if (last == 0) {
        last = read(fillPosition);
        // Below the guard nothing was left to read.
        if (last >= guard && last - guard < blockLength) blockLength = last - guard;
        if (blockLength == 0) break;
      }
      const std::int64_t made = ((blockLength << 15) + setting_.step - 1) / setting_.step;
      const std::int64_t count = std::min<std::int64_t>(made & 0xFFFF, request_.outputCapacity - total);
      if (count > 40962) return -1;
      for (std::int64_t i = 0; i < count; ++i) {
        request_.output[total + i] = static_cast<std::int16_t>(sample(clock + i * setting_.step));
      }
      total += count;

      clock += made * setting_.step - (blockLength << 15);
      std::int64_t readPosition = guard + blockLength;
      const std::int64_t overshoot = (clock >> 15) - guard;
      clock -= overshoot << 15;
      readPosition += overshoot;
      for (std::int64_t from = readPosition - guard, to = 0; from < 4096;) work_[to++] = work_[from++];
      if (last != 0) {
        last = last - readPosition + (setting_.isLinear ? 0 : 1);
        if (setting_.isLinear && last == 0) last = 1;
        if (count == 0 && last != 0) return -1;  // for ever
      }
      fillPosition = 4096 - readPosition + guard;
    }
    return static_cast<std::int32_t>(total);
  }

 private:
  std::int64_t read(std::int64_t fillPosition) {
    const std::int64_t begin = readPosition_;
    for (std::int64_t place = fillPosition; place < 4096; ++place, ++readPosition_) {
      if (place >= 0) work_[place] = readPosition_ < request_.inputCount ? request_.input[readPosition_] : 0;
    }
    return readPosition_ < request_.inputCount ? 0 : request_.inputCount - begin + fillPosition - 1;
  }

  std::int64_t sample(std::int64_t clock) const {
    const int i = static_cast<int>(clock >> 15), fraction = static_cast<int>(clock & 0x7FFF);
    if (setting_.isLinear) return rounded(at(i + 1) * fraction + at(i) * (32768 - fraction), 15);
    const std::int64_t sum = wing(i, fraction, -1) + wing(i + 1, -fraction & 0x7FFF, 1);
    return rounded((sum >> 2) * setting_.gain, 13);
  }

  int wing(int place, int phase, int direction) const {
    static const ModelFilter small(6), large(32);
    const ModelFilter& filter = setting_.isLarge ? large : small;
    const int end = static_cast<int>(filter.coef.size()) - (direction > 0 ? 1 : 0);
    // In table entries, Q7.
    const bool down = request_.outputRate < request_.inputRate;
    const int step = down ? static_cast<int>(setting_.coefStep) : 256 << 7;
    int position = down ? static_cast<int>((phase * setting_.coefStep) >> 15) : phase;
    if (direction > 0 && phase == 0) position += step;
    int sum = 0;
    for (; position >> 7 < end; position += step, place += direction) {
      const auto entry = static_cast<std::size_t>(position >> 7);
      const int coef = filter.coef[entry] + ((filter.delta[entry] * (position & 127)) >> 7);
      int product = coef * at(place);
      if ((product & 1 << 13) != 0) product += 8192;
      sum += product >> 14;
    }
    return sum;
  }

  /// Nothing is ever looked at outside the buffer.
  int at(int place) const {
    return place >= 0 && place < 4096 ? work_[place] : throw std::out_of_range("the work buffer");
  }

  static std::int64_t rounded(std::int64_t value, int bits) {
    return std::clamp<std::int64_t>((value + (1 << (bits - 1))) >> bits, -32768, 32767);
  }

  const RateRequest request_;
  const ModelSetting setting_;
  std::int16_t work_[4096] = {};
  std::int64_t readPosition_ = 0;
};

using Samples = std::vector<std::int16_t>;

/// What the wrappers have to give: the large filter with the natural capacity. Empty on failure.
inline Samples convertedByModel(const Samples& input, std::int32_t inputRate, std::int32_t outputRate) {
  const float factor = static_cast<float>(outputRate) / static_cast<float>(inputRate);
  const double natural = static_cast<double>(factor * static_cast<float>(input.size())) + 0.5;
  Samples output(static_cast<std::size_t>(natural));
  const auto count = static_cast<std::int32_t>(input.size()), capacity = static_cast<std::int32_t>(natural);
  const RateRequest request{input.data(), output.data(), count, capacity, inputRate, outputRate, 0, 2};
  output.resize(static_cast<std::size_t>(std::max(RateModel(request).convert(), 0)));
  return output;
}

/// Full-scale noise, different for every seed.
inline Samples noise(std::size_t count, unsigned seed = 1) {
  std::minstd_rand random(seed);
  Samples samples(count);
  for (std::int16_t& sample : samples) sample = static_cast<std::int16_t>(random() >> 8);
  return samples;
}

}  // namespace speech::test
