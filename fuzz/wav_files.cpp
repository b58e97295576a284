// Any file: the WAV wrappers of the rate converter refuse it and leave nothing, or write a well-formed file.
//
// An input is the file, then, read from its end, what to ask for.

#include <fuzzer/FuzzedDataProvider.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "audio/rate_wrappers.h"
#include "tests/support/wav_files.h"

namespace {

/// A file in memory that has a path.
class MemoryFile {
 public:
  explicit MemoryFile(const char* name) : descriptor_(memfd_create(name, 0)) {
    if (descriptor_ < 0) std::abort();
  }

  std::string path() const { return "/proc/self/fd/" + std::to_string(descriptor_); }

  void setContent(const std::vector<std::uint8_t>& bytes) const {
    if (ftruncate(descriptor_, 0) != 0) std::abort();
    const auto size = static_cast<ssize_t>(bytes.size());
    if (pwrite(descriptor_, bytes.data(), bytes.size(), 0) != size) std::abort();
  }

  std::vector<std::uint8_t> content() const {
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(lseek(descriptor_, 0, SEEK_END)));
    const auto size = static_cast<ssize_t>(bytes.size());
    if (pread(descriptor_, bytes.data(), bytes.size(), 0) != size) std::abort();
    return bytes;
  }

 private:
  int descriptor_;
};

constexpr std::int32_t kRates[] = {8000, 16000, 22050, 44100, 48000, 1, 96000};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t byteCount) {
  static const MemoryFile input("input"), output("output");
  static const std::string inputPath = input.path(), outputPath = output.path();

  FuzzedDataProvider data(bytes, byteCount);
  auto* const convert = data.ConsumeBool() ? RATEAPI_WAV2WAV : RATEAPI_WAV2WAV_EX;
  const std::int32_t rate = data.ConsumeIntegralInRange(0, 7) == 0 ? data.ConsumeIntegral<std::int32_t>()
                                                                   : data.PickValueInArray(kRates);
  const std::int32_t bits = data.PickValueInArray({8, 16, 32, 24});
  const std::int32_t channels = data.ConsumeIntegralInRange(0, 3);
  input.setContent(data.ConsumeRemainingBytes<std::uint8_t>());
  output.setContent({1, 2, 3});

  const std::int32_t answer = convert(inputPath.c_str(), rate, bits, channels, outputPath.c_str());
  const auto written = output.content();
  const bool right = answer == 1 ? speech::test::isWellFormedWav(written) : answer == -1 && written.empty();
  if (!right) {
    std::fprintf(stderr, "to %d Hz, %d bits, %d channels: answer %d with %zu bytes\n", rate, bits, channels,
                 answer, written.size());
    std::abort();
  }
  return 0;
}
