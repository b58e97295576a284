// How good the converters are: tones go in, and what comes out is compared with the tone.
//
// Prints one line of tab-separated numbers per pair of rates and converter:
//   inputRate outputRate converter gainDb edgeHz distortionDb aliasDb
// gainDb        of a tone of 1 kHz
// edgeHz        where the gain has fallen by 3 dB against that
// distortionDb  everything but the tone itself, 997 Hz at 1 dB below full scale
// aliasDb       the worst that a sweep of tones puts where no tone is: from tones up to 85 % of the lower
// Nyquist
//               frequency, and from those above it that would come down into that band

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <numbers>
#include <vector>

#include "bench/converters.h"

namespace {

struct Pair {
  int inputRate;
  int outputRate;
};

constexpr std::array kPairs = {Pair{22050, 16000}, Pair{48000, 16000}, Pair{16000, 22050},
                               Pair{16000, 48000}};
constexpr double kFullScale = 32767;
const double kTestAmplitude = kFullScale * std::pow(10.0, -1.0 / 20);
constexpr double kUsableBand = 0.85;  // of the lower Nyquist frequency

double decibels(double ratio) { return 20 * std::log10(std::max(ratio, 1e-9)); }

/// A tone found in samples.
struct Fit {
  double amplitude;
  double rest;  // rms of everything else
};

struct Quadrature {
  double inPhase;
  double offPhase;
};

Quadrature correlate(const std::vector<double>& samples, double radiansPerSample) {
  Quadrature sum{0, 0};
  double weights = 0;
  for (std::size_t i = 0; i < samples.size(); ++i) {
    const double place = (static_cast<double>(i) + 0.5) / static_cast<double>(samples.size());
    const double window = 0.5 - 0.5 * std::cos(2 * std::numbers::pi * place);
    const double angle = radiansPerSample * static_cast<double>(i);
    sum.inPhase += window * samples[i] * std::cos(angle);
    sum.offPhase += window * samples[i] * std::sin(angle);
    weights += window;
  }
  return {2 * sum.inPhase / weights, 2 * sum.offPhase / weights};
}

double rms(const std::vector<double>& samples) {
  double sum = 0;
  for (const double sample : samples) sum += sample * sample;
  return std::sqrt(sum / static_cast<double>(samples.size()));
}

/// The frequency is corrected by the phase's drift over the samples: a converter that meets the rate to a few
/// parts per million only is not distorting.
Fit fitTone(std::vector<double> samples, double frequency, double sampleRateHz) {
  double radiansPerSample = 2 * std::numbers::pi * frequency / sampleRateHz;
  const std::size_t half = samples.size() / 2;
  const std::vector<double> first(samples.begin(), samples.begin() + static_cast<std::ptrdiff_t>(half));
  const std::vector<double> second(samples.begin() + static_cast<std::ptrdiff_t>(half), samples.end());
  for (int round = 0; round < 3; ++round) {
    const Quadrature a = correlate(first, radiansPerSample);
    const Quadrature b = correlate(second, radiansPerSample);
    const double drift = std::atan2(a.offPhase, a.inPhase) - std::atan2(b.offPhase, b.inPhase) -
                         radiansPerSample * static_cast<double>(half);
    radiansPerSample += std::remainder(drift, 2 * std::numbers::pi) / static_cast<double>(half);
  }
  const Quadrature tone = correlate(samples, radiansPerSample);
  for (std::size_t i = 0; i < samples.size(); ++i) {
    const double angle = radiansPerSample * static_cast<double>(i);
    samples[i] -= tone.inPhase * std::cos(angle) + tone.offPhase * std::sin(angle);
  }
  return {std::hypot(tone.inPhase, tone.offPhase), rms(samples)};
}

/// Half a second of the converted tone, its ends cut off.
std::vector<double> convertTone(const Converter& converter, const Pair& pair, double frequency) {
  constexpr double kSeconds = 0.7;
  std::vector<std::int16_t> input(static_cast<std::size_t>(pair.inputRate * kSeconds));
  for (std::size_t i = 0; i < input.size(); ++i) {
    const double angle = 2 * std::numbers::pi * frequency * static_cast<double>(i) / pair.inputRate;
    input[i] = static_cast<std::int16_t>(std::lround(kTestAmplitude * std::sin(angle)));
  }
  std::vector<std::int16_t> output(static_cast<std::size_t>(pair.outputRate * kSeconds));
  output.resize(converter.convert(input, pair.inputRate, pair.outputRate, output));
  const auto cut = static_cast<std::ptrdiff_t>(pair.outputRate / 10);
  return {output.begin() + cut, output.end() - cut};
}

double gainAt(const Converter& converter, const Pair& pair, double frequency) {
  return fitTone(convertTone(converter, pair, frequency), frequency, pair.outputRate).amplitude /
         kTestAmplitude;
}

double edgeOf(const Converter& converter, const Pair& pair, double reference) {
  double low = 1000;
  double high = std::min(pair.inputRate, pair.outputRate) / 2.0 - 10;
  while (high - low > 5) {
    const double middle = (low + high) / 2;
    (gainAt(converter, pair, middle) > reference * std::sqrt(0.5) ? low : high) = middle;
  }
  return low;
}

double worstAlias(const Converter& converter, const Pair& pair) {
  const double lowerNyquist = std::min(pair.inputRate, pair.outputRate) / 2.0;
  double worst = 0;
  for (double frequency = 200; frequency < lowerNyquist * kUsableBand; frequency += 170) {
    worst =
        std::max(worst, fitTone(convertTone(converter, pair, frequency), frequency, pair.outputRate).rest);
  }
  for (double frequency = lowerNyquist * (2 - kUsableBand); frequency < pair.inputRate / 2.0;
       frequency += 170) {
    worst = std::max(worst, rms(convertTone(converter, pair, frequency)));
  }
  return worst * std::numbers::sqrt2 / kTestAmplitude;
}

}  // namespace

int main() {
  for (const Pair& pair : kPairs) {
    for (const Converter& converter : converters()) {
      if (converter.name.starts_with("plain")) continue;  // the same samples as ours
      const double gain = gainAt(converter, pair, 1000);
      const Fit tone = fitTone(convertTone(converter, pair, 997), 997, pair.outputRate);
      std::printf("%d\t%d\t%s\t%.2f\t%.0f\t%.1f\t%.1f\n", pair.inputRate, pair.outputRate,
                  converter.name.c_str(), decibels(gain), edgeOf(converter, pair, gain),
                  decibels(tone.rest * std::numbers::sqrt2 / tone.amplitude),
                  decibels(worstAlias(converter, pair)));
      std::fflush(stdout);
    }
  }
  return 0;
}
