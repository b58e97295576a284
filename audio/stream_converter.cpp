#include <speech/audio.h>

#include <soxr.h>

#include <cmath>
#include <cstddef>
#include <cstdint>

namespace {

// libsoxr itself never returns from, or crashes on, rates far outside these bounds.
constexpr double kLargestRatio = 65536;
constexpr std::int32_t kLargestChannelCount = 1024;

bool canBeConverted(double inRate, double outRate) {
  return std::isfinite(inRate) && std::isfinite(outRate) && inRate > 0 && outRate > 0 &&
         inRate / outRate <= kLargestRatio && outRate / inRate <= kLargestRatio;
}

soxr_t converterOf(RateStream stream) { return reinterpret_cast<soxr_t>(stream); }

/// Kept: 2 bytes per frame, whatever the channel count; hosts with more channels size their buffers by it.
constexpr std::int32_t kBytesPerFrame = 2;

}  // namespace

RateStream RATEAPI_MULTI_INIT(double inRate, double outRate, std::int32_t channels) {
  if (!canBeConverted(inRate, outRate) || channels < 1 || channels > kLargestChannelCount) return 0;
  const soxr_io_spec_t samples = soxr_io_spec(SOXR_INT16_I, SOXR_INT16_I);
  const soxr_quality_spec_t quality = soxr_quality_spec(SOXR_LQ, 0);
  const soxr_runtime_spec_t oneThread = soxr_runtime_spec(1);
  soxr_error_t error = nullptr;
  const soxr_t converter =
      soxr_create(inRate, outRate, static_cast<unsigned>(channels), &error, &samples, &quality, &oneThread);
  return error == nullptr ? reinterpret_cast<RateStream>(converter) : 0;
}

std::int32_t RATEAPI_MULTI_PROCESS(RateStream stream, const void* input, std::int32_t inputBytes,
                                   void* output, std::int32_t outputBytes) {
  if (stream == 0) return kRateStreamNoHandle;
  if (input == nullptr) return kRateStreamNoInput;
  if (inputBytes < 1) return kRateStreamEmptyInput;
  if (output == nullptr) return kRateStreamNoOutput;
  if (outputBytes < 1) return kRateStreamEmptyOutput;
  std::size_t framesDone = 0;
  soxr_process(converterOf(stream), input, static_cast<std::size_t>(inputBytes / kBytesPerFrame), nullptr,
               output, static_cast<std::size_t>(outputBytes / kBytesPerFrame), &framesDone);
  return static_cast<std::int32_t>(framesDone) * kBytesPerFrame;
}

void RATEAPI_MULTI_UNINIT(RateStream stream) {
  if (stream != 0) soxr_delete(converterOf(stream));
}
