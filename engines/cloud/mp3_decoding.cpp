// Decoding an MP3 file into a temporary WAV file.

#include <minimp3.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <span>

#include "base/file.h"
#include "engines/cloud/decoder.h"
#include "engines/cloud/reference_comparison.h"
#include "engines/cloud/temporary_names.h"
#include "win32/text.h"

namespace speech {
namespace {

constexpr int kBitsPerSample = 16;

using WavHeader = std::array<unsigned char, 44>;

// The header's text, with letters where the numbers go.
constexpr char kHeaderTemplate[] = "RIFFsizeWAVEfmt \x10\0\0\0\x01\0ch_hz_abpsbabsdatasize";
static_assert(sizeof kHeaderTemplate - 1 == sizeof(WavHeader));

void putNumber(WavHeader& header, std::size_t offset, int byteCount, std::uint32_t value) {
  for (int i = 0; i < byteCount; ++i)
    header[offset + static_cast<std::size_t>(i)] = (value >> (8 * i)) & 0xFF;
}

WavHeader wavHeader(std::uint32_t dataBytes, int channels, int sampleRateHz, int bitsPerSample) {
  const auto blockAlign = static_cast<std::uint32_t>(channels * bitsPerSample / 8);
  WavHeader header = {};
  std::memcpy(header.data(), kHeaderTemplate, header.size());
  putNumber(header, 4, 4, dataBytes + 36);
  putNumber(header, 22, 2, static_cast<std::uint32_t>(channels));
  putNumber(header, 24, 4, static_cast<std::uint32_t>(sampleRateHz));
  putNumber(header, 28, 4, static_cast<std::uint32_t>(sampleRateHz) * blockAlign);
  putNumber(header, 32, 2, blockAlign);
  putNumber(header, 34, 2, static_cast<std::uint32_t>(bitsPerSample));
  putNumber(header, 40, 4, dataBytes);
  return header;
}

void write(std::FILE* file, std::span<const unsigned char> bytes) {
  if (file != nullptr) std::fwrite(bytes.data(), 1, bytes.size(), file);
}

// A tag at the very end would make the decoder doubt the last frame, which no other frame follows.
std::span<const unsigned char> withoutTrailingTag(std::span<const unsigned char> mp3) {
  constexpr std::size_t kTagBytes = 128;
  const bool isTagged = mp3.size() >= kTagBytes && std::memcmp(&mp3[mp3.size() - kTagBytes], "TAG", 3) == 0;
  return isTagged ? mp3.first(mp3.size() - kTagBytes) : mp3;
}

struct DecodedFormat {
  int channels = 0;
  int sampleRateHz = 0;
};

// Kept: one decoder state for the module, so that one decode runs at a time.
mp3dec_t g_decoderState;

// Decodes frame by frame; the format is that of the last frame that held samples.
DecodedFormat decodeFrames(std::span<const unsigned char> mp3, std::FILE* output,
                           ReferenceComparison& comparison) {
  DecodedFormat format;
  mp3dec_init(&g_decoderState);
  for (;;) {
    std::array<std::int16_t, MINIMP3_MAX_SAMPLES_PER_FRAME> pcm;
    mp3dec_frame_info_t info = {};
    const int sampleCount =
        mp3dec_decode_frame(&g_decoderState, mp3.data(), static_cast<int>(mp3.size()), pcm.data(), &info);
    if (sampleCount > 0) {
      const std::span<const std::int16_t> samples(pcm.data(),
                                                  static_cast<std::size_t>(sampleCount * info.channels));
      write(output, {reinterpret_cast<const unsigned char*>(samples.data()), samples.size_bytes()});
      comparison.add(samples);
      format = {info.channels, info.hz};
    }
    if (info.frame_bytes <= 0) return format;
    mp3 = mp3.subspan(static_cast<std::size_t>(info.frame_bytes));
  }
}

std::uint32_t bytesBehindHeader(std::FILE* file) {
  const long position = std::ftell(file);
  constexpr long kHeaderBytes = sizeof(WavHeader);
  return position > kHeaderBytes ? static_cast<std::uint32_t>(position - kHeaderBytes) : 0;
}

}  // namespace

CDecoder::MallocBlock CDecoder::loadWholeFile(std::FILE* stream, std::size_t& size) {
  size = 0;
  if (std::fseek(stream, 0, SEEK_END) != 0) return nullptr;
  const long end = std::ftell(stream);
  if (end < 0 || std::fseek(stream, 0, SEEK_SET) != 0) return nullptr;
  const auto byteCount = static_cast<std::size_t>(end);
  MallocBlock block(
      static_cast<unsigned char*>(std::malloc(byteCount + 1)));  // never of size 0, which may be null
  if (!block) return nullptr;
  // Kept: a file that cannot be read to its end ends the process.
  if (std::fread(block.get(), 1, byteCount, stream) != byteCount) std::exit(1);
  size = byteCount;
  return block;
}

CStringW CDecoder::decodeMp3ToWav(const wchar_t* mp3Path) {
  if (mp3Path == nullptr) return {};
  // Kept: a reference under a fresh name, which nobody has written, so the comparison passes.
  const CStringW referencePath = makeTempPath(L".wav");
  CStringW outputPath = makeTempPath(L".wav");
  File mp3 = openFile(toThreadCodePage(mp3Path).c_str(), "rb");
  File reference = openFile(toThreadCodePage(referencePath.GetString()).c_str(), "rb");
  File output = openFile(toThreadCodePage(outputPath.GetString()).c_str(), "wb");

  std::size_t mp3Size = 0;
  std::size_t referenceSize = 0;
  MallocBlock mp3Bytes = mp3 ? loadWholeFile(mp3.get(), mp3Size) : nullptr;
  const MallocBlock referenceBytes = reference ? loadWholeFile(reference.get(), referenceSize) : nullptr;

  write(output.get(), wavHeader(0, 0, 0, 0));
  ReferenceComparison comparison(
      {reinterpret_cast<const std::int16_t*>(referenceBytes.get()), referenceSize / sizeof(std::int16_t)});
  const DecodedFormat format =
      decodeFrames(withoutTrailingTag({mp3Bytes.get(), mp3Size}), output.get(), comparison);
  mp3Bytes.reset();
  comparison.reportAndEnforce(format.sampleRateHz);

  if (output) {
    const std::uint32_t dataBytes = bytesBehindHeader(output.get());
    std::rewind(output.get());
    write(output.get(), wavHeader(dataBytes, format.channels, format.sampleRateHz, kBitsPerSample));
  }
  mp3.reset();
  reference.reset();
  output.reset();
  DeleteFileW(referencePath);
  return outputPath;
}

}  // namespace speech
