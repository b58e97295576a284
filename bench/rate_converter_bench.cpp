// How fast the converters are, one benchmark per pair of rates and converter, all on the same noise.

#include <benchmark/benchmark.h>

#include <array>
#include <random>
#include <string>
#include <vector>

#include "bench/converters.h"

namespace {

struct Pair {
  int inputRate;
  int outputRate;
};

constexpr std::array kPairs = {Pair{48000, 16000}, Pair{44100, 22050}, Pair{22050, 16000},
                               Pair{16000, 22050}, Pair{22050, 44100}, Pair{8000, 16000},
                               Pair{16000, 48000}, Pair{44100, 48000}};
constexpr int kSeconds = 2;

std::vector<std::int16_t> noise(std::size_t count) {
  std::minstd_rand random(1);
  std::uniform_int_distribution<int> amplitude(-16000, 16000);
  std::vector<std::int16_t> samples(count);
  for (std::int16_t& sample : samples) sample = static_cast<std::int16_t>(amplitude(random));
  return samples;
}

void convert(benchmark::State& state, const Converter& converter, const Pair& pair) {
  const auto input = noise(static_cast<std::size_t>(pair.inputRate) * kSeconds);
  std::vector<std::int16_t> output(static_cast<std::size_t>(pair.outputRate) * kSeconds);
  for (auto _ : state) {
    benchmark::DoNotOptimize(converter.convert(input, pair.inputRate, pair.outputRate, output));
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(input.size()));
  state.counters["times_real_time"] =
      benchmark::Counter(static_cast<double>(state.iterations()) * kSeconds, benchmark::Counter::kIsRate);
}

}  // namespace

int main(int argc, char** argv) {
  for (const Pair& pair : kPairs) {
    for (const Converter& converter : converters()) {
      const std::string name =
          std::to_string(pair.inputRate) + "/" + std::to_string(pair.outputRate) + "/" + converter.name;
      benchmark::RegisterBenchmark(name.c_str(), [&](benchmark::State& state) {
        convert(state, converter, pair);
      })->Unit(benchmark::kMicrosecond);
    }
  }
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
