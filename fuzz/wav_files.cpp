// Any file: the WAV wrappers of the rate converter refuse it and leave nothing, or write a well-formed file.
//
// An input is the file, then, read from its end, what to ask for.

#include <fuzzer/FuzzedDataProvider.h>
#include <sys/mman.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <speech/audio.h>
#include "tests/support/wav_files.h"

namespace {

/// The path of a new file in memory.
std::string memoryFile(const char* name) {
  const int descriptor = memfd_create(name, 0);
  if (descriptor < 0) std::abort();
  return "/proc/self/fd/" + std::to_string(descriptor);
}

constexpr std::int32_t kRates[] = {8000, 16000, 22050, 44100, 48000, 1, 96000};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t byteCount) {
  static const std::string input = memoryFile("input"), output = memoryFile("output");

  FuzzedDataProvider data(bytes, byteCount);
  auto* const convert = data.ConsumeBool() ? RATEAPI_WAV2WAV : RATEAPI_WAV2WAV_EX;
  const std::int32_t rate = data.ConsumeIntegralInRange(0, 7) == 0 ? data.ConsumeIntegral<std::int32_t>()
                                                                   : data.PickValueInArray(kRates);
  const std::int32_t bits = data.PickValueInArray({8, 16, 32, 24});
  const std::int32_t channels = data.ConsumeIntegralInRange(0, 3);
  speech::test::writeBytes(input, data.ConsumeRemainingBytes<std::uint8_t>());
  speech::test::writeBytes(output, {1, 2, 3});

  const std::int32_t answer = convert(input.c_str(), rate, bits, channels, output.c_str());
  const auto written = speech::test::readBytes(output);
  const bool right = answer == 1 ? speech::test::isWellFormedWav(written) : answer == -1 && written.empty();
  if (!right) {
    std::fprintf(stderr, "to %d Hz, %d bits, %d channels: answer %d with %zu bytes\n", rate, bits, channels,
                 answer, written.size());
    std::abort();
  }
  return 0;
}
