// Reading a WAV file by its RIFF chunks, and decoding an MP3 file into one.

#include "engines/cloud/decoder.h"

#include <windows.h>

#include <mmsystem.h>

// The one place that holds the MP3 decoder's code, which counts on these names.
#include <cstdint>
#define MINIMP3_IMPLEMENTATION
#include <minimp3.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cmath>
#include <cstring>
#include <new>
#include <span>
#include <string>

#include <speech/audio.h>
#include "base/file.h"
#include "engines/exporting/samples.h"
#include "win32/paths.h"
#include "win32/text.h"

namespace speech {
namespace {

// WAV files.

struct MmioCloser {
  using pointer = HMMIO;
  void operator()(HMMIO file) const { mmioClose(file, 0); }
};
using UniqueMmio = std::unique_ptr<HMMIO__, MmioCloser>;

constexpr FOURCC fourCc(const char (&name)[5]) {
  return static_cast<FOURCC>(name[0]) | static_cast<FOURCC>(name[1]) << 8 |
         static_cast<FOURCC>(name[2]) << 16 | static_cast<FOURCC>(name[3]) << 24;
}

bool descend(HMMIO file, MMCKINFO& chunk, const MMCKINFO* parent, UINT search) {
  return mmioDescend(file, &chunk, parent, search) == MMSYSERR_NOERROR;
}

bool readExactly(HMMIO file, void* destination, DWORD size) {
  return size <= LONG_MAX &&
         mmioRead(file, static_cast<HPSTR>(destination), static_cast<LONG>(size)) == static_cast<LONG>(size);
}

// MP3 files.

using Samples = std::span<const std::int16_t>;

/// How far decoded samples are from those of a reference decoder.
class ReferenceComparison {
 public:
  explicit ReferenceComparison(Samples reference) : remaining_(reference) {}

  /// Compares decoded samples with the next reference samples; those without a counterpart do not count.
  void add(Samples decoded) {
    const std::size_t count = std::min(decoded.size(), remaining_.size());
    for (std::size_t i = 0; i < count; ++i) {
      const int difference = std::abs(decoded[i] - remaining_[i]);
      largestDifference_ = std::max(largestDifference_, difference);
      squaredSum_ += static_cast<double>(difference) * difference;
    }
    comparedCount_ += static_cast<int>(count);
    remaining_ = remaining_.subspan(count);
  }

  /// Prints the figures, with the ratio of signal to noise in decibels.
  /// Kept: below 96 dB the process ends with exit code 1.
  void reportAndEnforce(int sampleRateHz) const {
    constexpr double kSquaredFullScale = 32767.0 * 32767.0, kNoDifference = 99, kRequired = 96;
    const double mean = squaredSum_ / std::max(comparedCount_, 1);
    const double decibels = mean > 0 ? 10 * std::log10(kSquaredFullScale / mean) : kNoDifference;
    std::printf("rate=%d samples=%d max_diff=%d PSNR=%f\n", sampleRateHz, comparedCount_, largestDifference_,
                decibels);
    if (decibels < kRequired) {
      std::printf("PSNR compliance failed\n");
      std::exit(1);
    }
  }

 private:
  Samples remaining_;
  int comparedCount_ = 0;
  int largestDifference_ = 0;
  double squaredSum_ = 0;
};

// A tag at the very end would make the decoder doubt the last frame, which no other frame follows.
std::span<const unsigned char> withoutTrailingTag(std::span<const unsigned char> mp3) {
  constexpr std::size_t kTagBytes = 128;
  const bool isTagged = mp3.size() >= kTagBytes && std::memcmp(&mp3[mp3.size() - kTagBytes], "TAG", 3) == 0;
  return isTagged ? mp3.first(mp3.size() - kTagBytes) : mp3;
}

// Kept: one decoder state for the module, so that one decode runs at a time.
mp3dec_t g_decoderState;

/// Decodes frame by frame into the output, which may be null.
/// @return what the last frame said of itself
mp3dec_frame_info_t decodeFrames(std::span<const unsigned char> mp3, std::FILE* output,
                                 ReferenceComparison& comparison) {
  mp3dec_frame_info_t info = {};
  mp3dec_init(&g_decoderState);
  do {
    std::array<std::int16_t, MINIMP3_MAX_SAMPLES_PER_FRAME> pcm;
    const int sampleCount =
        mp3dec_decode_frame(&g_decoderState, mp3.data(), static_cast<int>(mp3.size()), pcm.data(), &info);
    const Samples samples(pcm.data(), static_cast<std::size_t>(sampleCount * info.channels));
    if (output != nullptr) std::fwrite(samples.data(), sizeof samples[0], samples.size(), output);
    comparison.add(samples);
    mp3 = mp3.subspan(static_cast<std::size_t>(info.frame_bytes));
  } while (info.frame_bytes > 0);
  return info;
}

/// Writes a WAV header at the beginning of a file, which then stands behind it.
void writeHeader(std::FILE* file, const mp3dec_frame_info_t& info, std::uint16_t bitsPerSample,
                 long dataBytes) {
  WFHeader header = {};
  LXUTIL_Initialize_WFHeader(&header, info.hz, kWaveFormatPcm16, static_cast<std::uint32_t>(info.channels));
  header.bitsPerSample = bitsPerSample;
  LXUTIL_Write_WFHeader(&header, static_cast<std::int32_t>(dataBytes), file);
}

}  // namespace

int CDecoder::openWav(const wchar_t* path) {
  if (path == nullptr) return kNoPath;
  std::wstring name(path);  // the call wants a path that it may write to
  const UniqueMmio file(mmioOpenW(name.data(), nullptr, MMIO_READ | MMIO_ALLOCBUF));
  if (!file) return kNotOpened;

  MMCKINFO form = {};
  form.fccType = fourCc("WAVE");
  if (!descend(file.get(), form, nullptr, MMIO_FINDRIFF)) return kNoWaveData;

  MMCKINFO formatChunk = {};
  formatChunk.ckid = fourCc("fmt ");
  if (!descend(file.get(), formatChunk, &form, MMIO_FINDCHUNK)) return kNoFormat;
  WAVEFORMATEXTENSIBLE format = format_;
  if (formatChunk.cksize > sizeof format) return kNoFormat;
  if (!readExactly(file.get(), &format, formatChunk.cksize)) return kNoFormat;
  if (mmioAscend(file.get(), &formatChunk, 0) != MMSYSERR_NOERROR) return kFormatNotLeft;

  MMCKINFO dataChunk = {};
  dataChunk.ckid = fourCc("data");
  if (!descend(file.get(), dataChunk, &form, MMIO_FINDCHUNK)) return kNoWaveData;
  const DWORD size = dataChunk.cksize;
  if (size > LONG_MAX) return kNoMemory;  // no array of a 32-bit process is that long
  std::unique_ptr<unsigned char, ArrayDeleter> bytes(new (std::nothrow) unsigned char[size]);
  if (!bytes) return kNoMemory;
  if (!readExactly(file.get(), bytes.get(), size)) return kNoWaveData;

  payload_ = std::move(bytes);
  payloadSize_ = size;
  format_ = format;
  return kOpened;
}

void CDecoder::close() {
  payload_.reset();
  payloadSize_ = 0;
  format_ = {};
}

MallocBlock<unsigned char> CDecoder::loadWholeFile(std::FILE* stream, std::size_t& size) {
  size = 0;
  if (std::fseek(stream, 0, SEEK_END) != 0) return nullptr;
  const long end = std::ftell(stream);
  if (end < 0 || std::fseek(stream, 0, SEEK_SET) != 0) return nullptr;
  const auto byteCount = static_cast<std::size_t>(end);
  // Never of size 0, which may be null.
  MallocBlock<unsigned char> block(static_cast<unsigned char*>(std::malloc(byteCount + 1)));
  if (!block) return nullptr;
  // Kept: a file that cannot be read to its end ends the process.
  if (std::fread(block.get(), 1, byteCount, stream) != byteCount) std::exit(1);
  size = byteCount;
  return block;
}

CStringW CDecoder::decodeMp3ToWav(const wchar_t* mp3Path) {
  if (mp3Path == nullptr) return {};
  // Kept: a reference under a fresh name, which nobody has written, so the comparison passes.
  const std::wstring referencePath = newTemporaryPath(L".wav");
  const std::wstring outputPath = newTemporaryPath(L".wav");
  File mp3 = openFile(toThreadCodePage(mp3Path).c_str(), "rb");
  File reference = openFile(toThreadCodePage(referencePath).c_str(), "rb");
  const File output = openFile(toThreadCodePage(outputPath).c_str(), "wb");

  std::size_t mp3Size = 0;
  std::size_t referenceSize = 0;
  const auto mp3Bytes = mp3 ? loadWholeFile(mp3.get(), mp3Size) : nullptr;
  const auto referenceBytes = reference ? loadWholeFile(reference.get(), referenceSize) : nullptr;

  // Until the format is known, the header holds its place.
  if (output) writeHeader(output.get(), {}, 0, 0);
  ReferenceComparison comparison(
      {reinterpret_cast<const std::int16_t*>(referenceBytes.get()), referenceSize / sizeof(std::int16_t)});
  const mp3dec_frame_info_t info =
      decodeFrames(withoutTrailingTag({mp3Bytes.get(), mp3Size}), output.get(), comparison);
  comparison.reportAndEnforce(info.hz);
  if (output)
    writeHeader(output.get(), info, 16, std::max(std::ftell(output.get()), kWavHeaderSize) - kWavHeaderSize);

  reference.reset();
  DeleteFileW(referencePath.c_str());
  return outputPath.c_str();
}

}  // namespace speech
