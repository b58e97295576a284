#include "bench/converters.h"

#include <samplerate.h>
#include <soxr.h>
#include <speex/speex_resampler.h>

#include <stdexcept>

#include "audio/rate/converter.h"

namespace {

namespace rate = speech::audio::rate;

using Samples = std::span<std::int16_t>;
using ConstSamples = std::span<const std::int16_t>;

std::size_t convertOurs(ConstSamples input, int inputRate, int outputRate, Samples output,
                        std::uint16_t quality, rate::Level level) {
  const RateRequest request{input.data(),
                            output.data(),
                            static_cast<std::int32_t>(input.size()),
                            static_cast<std::int32_t>(output.size()),
                            inputRate,
                            outputRate,
                            0,
                            quality};
  const std::int32_t count = rate::convert(request, level);
  if (count < 0) throw std::runtime_error("rate converter");
  return static_cast<std::size_t>(count);
}

std::size_t convertSoxr(ConstSamples input, int inputRate, int outputRate, Samples output,
                        unsigned long recipe) {
  const soxr_io_spec_t io = soxr_io_spec(SOXR_INT16_I, SOXR_INT16_I);
  const soxr_quality_spec_t quality = soxr_quality_spec(recipe, 0);
  const soxr_runtime_spec_t runtime = soxr_runtime_spec(1);
  std::size_t used = 0;
  std::size_t done = 0;
  if (soxr_oneshot(inputRate, outputRate, 1, input.data(), input.size(), &used, output.data(), output.size(),
                   &done, &io, &quality, &runtime) != nullptr) {
    throw std::runtime_error("libsoxr");
  }
  return done;
}

// The library works on floating-point samples and has functions of its own to get there and back.
std::size_t convertSamplerate(ConstSamples input, int inputRate, int outputRate, Samples output, int recipe) {
  static thread_local std::vector<float> from;
  static thread_local std::vector<float> to;
  from.resize(input.size());
  to.resize(output.size());
  src_short_to_float_array(input.data(), from.data(), static_cast<int>(input.size()));
  SRC_DATA data{};
  data.data_in = from.data();
  data.data_out = to.data();
  data.input_frames = static_cast<long>(input.size());
  data.output_frames = static_cast<long>(output.size());
  data.src_ratio = static_cast<double>(outputRate) / inputRate;
  if (src_simple(&data, recipe, 1) != 0) throw std::runtime_error("libsamplerate");
  src_float_to_short_array(to.data(), output.data(), static_cast<int>(data.output_frames_gen));
  return static_cast<std::size_t>(data.output_frames_gen);
}

std::size_t convertSpeex(ConstSamples input, int inputRate, int outputRate, Samples output, int recipe) {
  int error = 0;
  SpeexResamplerState* state = speex_resampler_init(1, static_cast<spx_uint32_t>(inputRate),
                                                    static_cast<spx_uint32_t>(outputRate), recipe, &error);
  if (state == nullptr) throw std::runtime_error("speexdsp");
  auto used = static_cast<spx_uint32_t>(input.size());
  auto done = static_cast<spx_uint32_t>(output.size());
  speex_resampler_process_int(state, 0, input.data(), &used, output.data(), &done);
  speex_resampler_destroy(state);
  return done;
}

Converter ours(const std::string& name, std::uint16_t quality, rate::Level level) {
  return {name, [=](ConstSamples input, int from, int to, Samples output) {
            return convertOurs(input, from, to, output, quality, level);
          }};
}

template <typename Convert, typename Recipe>
Converter peer(const std::string& name, Convert convert, Recipe recipe) {
  return {name, [=](ConstSamples input, int from, int to, Samples output) {
            return convert(input, from, to, output, recipe);
          }};
}

}  // namespace

const std::vector<Converter>& converters() {
  static const std::vector<Converter> all = {
      ours("ours/large", kRateQualityLarge, rate::bestLevel()),
      ours("ours/small", kRateQualitySmall, rate::bestLevel()),
      ours("plain/large", kRateQualityLarge, rate::Level::kPlain),
      ours("plain/small", kRateQualitySmall, rate::Level::kPlain),
      peer("libsoxr/1", convertSoxr, static_cast<unsigned long>(SOXR_LQ)),
      peer("libsoxr/4", convertSoxr, static_cast<unsigned long>(SOXR_HQ)),
      peer("libsamplerate/fastest", convertSamplerate, static_cast<int>(SRC_SINC_FASTEST)),
      peer("libsamplerate/medium", convertSamplerate, static_cast<int>(SRC_SINC_MEDIUM_QUALITY)),
      peer("speexdsp/4", convertSpeex, 4),
      peer("speexdsp/8", convertSpeex, 8),
  };
  return all;
}
