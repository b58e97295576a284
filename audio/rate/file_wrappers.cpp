// The rate converter's wrappers that read and write WAV files.

#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <utility>

#include <speech/audio.h>
#include "audio/file_io.h"
#include "audio/rate/arrays.h"
#include "audio/wav_file.h"
#include "base/file.h"

namespace speech::audio::rate {
namespace {

constexpr std::int64_t kSamplesOffset = 44;  // after the header that LXUTIL_Read_WFHeader reads

/// Which widths RATEAPI_WAV2WAV and RATEAPI_WAV2WAV_EX read and write.
enum class WidthRule { kEightOrSixteenBits, kWidthOfInput };

/// How a file is written.
struct OutputFormat {
  std::uint32_t code;  // a WaveFormatCode, or the input's bits per sample
  SampleWidth width;
  std::int32_t sampleRate;
  std::int32_t channels;
};

/// Writes a whole file. For two channels without `right` the left samples are written twice.
/// @return 1 or -1, as the wrappers do.
std::int32_t writeFile(File file, const OutputFormat& format, std::int32_t dataBytes,
                       std::span<const std::int16_t> left, std::span<const std::int16_t> right) {
  WFHeader header;
  LXUTIL_Initialize_WFHeader(&header, format.sampleRate, format.code,
                             static_cast<std::uint32_t>(format.channels));
  LXUTIL_Write_WFHeader(&header, dataBytes, file.get());
  std::fseek(file.get(), 0, SEEK_END);
  if (format.channels == 1) {
    right = {};
  } else if (right.empty()) {
    right = left;
  }
  const bool written = writeFrames(file.get(), format.width, left, right) && std::ferror(file.get()) == 0;
  return closeWritten(std::move(file)) && written ? 1 : -1;
}

/// The size of the sample data; nothing if it exceeds 32 bits.
std::optional<std::int32_t> dataSize(std::int32_t frameCount, const OutputFormat& format) {
  const std::int64_t bytes = std::int64_t{frameCount} * format.channels * format.width.bytes;
  if (bytes > std::numeric_limits<std::int32_t>::max()) return std::nullopt;
  return static_cast<std::int32_t>(bytes);
}

/// What a conversion needs to know of its input.
struct InputFormat {
  std::int32_t sampleRate;
  std::int32_t channels;  // 1 or 2
  std::int32_t bitsPerSample;
  std::int32_t frameCount;
  SampleWidth width;
};

/// Reads the header of `file` and leaves the file at its samples; nothing if it is not PCM.
std::optional<InputFormat> readFormat(std::FILE* file, WidthRule rule) {
  constexpr std::uint32_t kLargest = std::numeric_limits<std::int32_t>::max();
  const std::int64_t dataInFile = std::max<std::int64_t>(measureFile(file) - kSamplesOffset, 0);
  WFHeader header;
  LXUTIL_Read_WFHeader(file, &header);
  if (header.formatTag != kWaveFormatPcm16 && header.formatTag != kWaveFormatPcm8) return std::nullopt;
  const auto dataBytes = static_cast<std::uint32_t>(std::min<std::int64_t>(header.dataSize, dataInFile));

  // Kept: any number of channels but 2 is read as 1, and only the widths below reduce the number of frames,
  // on which the length of the output depends. If the file then ends too early, silence follows.
  const bool wide = rule == WidthRule::kWidthOfInput;
  const std::uint32_t bits = header.bitsPerSample;
  const std::uint32_t channels = header.channels == 2 ? 2 : 1;
  std::uint32_t frames = dataBytes / channels;
  if (wide && bits > 8) frames /= bits / 8;
  if (!wide && bits == 16) frames /= 2;
  if (frames > kLargest) return std::nullopt;

  SampleWidth width = kUnsignedByte;
  if (bits != 8)
    width = wide ? SampleWidth{SampleWidth::Kind::kSlot, static_cast<std::int32_t>(bits / 8)} : kWord;
  return InputFormat{static_cast<std::int32_t>(header.samplesPerSec), static_cast<std::int32_t>(channels),
                     static_cast<std::int32_t>(bits), static_cast<std::int32_t>(frames), width};
}

/// The format to write; empty if the width or the number of channels is unsupported.
std::optional<OutputFormat> chooseFormat(const InputFormat& input, WidthRule rule, std::int32_t sampleRate,
                                         std::int32_t bits, std::int32_t channels) {
  if (channels < 1) return std::nullopt;
  channels = std::min(channels, 2);
  const bool wide = rule == WidthRule::kWidthOfInput;
  // Kept: for any width but 8 bits the wide wrapper writes samples in the width of the input, whatever its
  // header says.
  const SampleWidth width = wide ? SampleWidth{SampleWidth::Kind::kSlot, input.bitsPerSample / 8} : kWord;
  switch (bits) {
    case 8:
      return OutputFormat{kWaveFormatPcm8, kUnsignedByte, sampleRate, channels};
    case 16:
      return OutputFormat{kWaveFormatPcm16, width, sampleRate, channels};
    case 32:
      // Kept: the format code is the input's bits per sample, and 32 happens to be a code.
      if (wide)
        return OutputFormat{static_cast<std::uint32_t>(input.bitsPerSample), width, sampleRate, channels};
      return std::nullopt;
    default:
      return std::nullopt;
  }
}

std::int32_t convertFile(const char* inPath, std::int32_t outRate, std::int32_t outBits,
                         std::int32_t outChannels, const char* outPath, WidthRule rule) {
  if (outPath == nullptr) return -1;
  File input = inPath == nullptr ? nullptr : openFile(inPath, "rb");
  if (input && isSameFile(input.get(), outPath)) return -1;
  // Kept: the output is created, and so emptied, even if there is no input.
  File output = openFile(outPath, "wb");
  if (!input || !output) return -1;

  const std::optional<InputFormat> from = readFormat(input.get(), rule);
  if (!from) return -1;
  const std::optional<OutputFormat> to = chooseFormat(*from, rule, outRate, outBits, outChannels);
  if (!to) return -1;

  const RatePair rates{from->sampleRate, outRate};
  const bool both = from->channels == 2 && to->channels == 2;
  auto left = InPlaceConversion::prepare(from->frameCount, rates);
  auto right = both ? InPlaceConversion::prepare(from->frameCount, rates) : std::nullopt;
  if (!left || (both && !right)) return -1;
  readFrames(input.get(), from->width, from->channels, left->input(),
             both ? right->input() : std::span<std::int16_t>{});
  input.reset();

  const auto convertedLeft = left->convert();
  const auto convertedRight = both ? right->convert() : std::span<const std::int16_t>{};
  if (!convertedLeft || !convertedRight) return -1;

  const std::optional<std::int32_t> dataBytes =
      dataSize(static_cast<std::int32_t>(convertedLeft->size()), *to);
  if (!dataBytes) return -1;
  return writeFile(std::move(output), *to, *dataBytes, *convertedLeft, *convertedRight);
}

}  // namespace
}  // namespace speech::audio::rate

using namespace speech::audio;
using namespace speech::audio::rate;

std::int32_t RATEAPI_PCM2WAV(const std::int16_t* input, std::int32_t* inOutBytes, std::int32_t inRate,
                             std::int32_t outRate, std::int32_t bits, std::int32_t channels,
                             const char* path) {
  if (input == nullptr || inOutBytes == nullptr || *inOutBytes < 1 || path == nullptr) return -1;
  if ((bits != 8 && bits != 16) || channels < 1) return -1;
  const RatePair rates = clampedRates(inRate, outRate);
  const auto converted = convertSamples({input, static_cast<std::size_t>(*inOutBytes) / 2}, rates);
  if (!converted) return -1;

  const std::uint32_t code = bits == 8 ? kWaveFormatPcm8 : kWaveFormatPcm16;
  const OutputFormat format{code, bits == 8 ? kUnsignedByte : kWord, rates.output, std::min(channels, 2)};
  const std::optional<std::int32_t> dataBytes = dataSize(converted->count, format);
  if (!dataBytes) return -1;
  // Kept: the size is reported even if the file cannot be created.
  *inOutBytes = *dataBytes;
  speech::File file = speech::openFile(path, "wb");
  if (!file) return -1;
  return writeFile(std::move(file), format, *dataBytes, converted->view(), {});
}

std::int32_t RATEAPI_WAV2WAV(const char* inPath, std::int32_t outRate, std::int32_t outBits,
                             std::int32_t outChannels, const char* outPath) {
  return convertFile(inPath, outRate, outBits, outChannels, outPath, WidthRule::kEightOrSixteenBits);
}

std::int32_t RATEAPI_WAV2WAV_EX(const char* inPath, std::int32_t outRate, std::int32_t outBits,
                                std::int32_t outChannels, const char* outPath) {
  return convertFile(inPath, outRate, outBits, outChannels, outPath, WidthRule::kWidthOfInput);
}
