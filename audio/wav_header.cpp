#include <speech/audio.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "audio/file_io.h"
#include "audio/wav_file.h"
#include "base/file.h"

namespace speech::audio {
namespace {

constexpr std::uint16_t kTagUnknown = 0;
constexpr std::uint16_t kTagPcm = 1;

/// What the format code decides. Sizes that count per channel say so.
struct FormatRow {
  std::uint32_t code;
  std::uint16_t tag;
  std::uint16_t bitsPerSample;
  std::uint16_t blockAlignPerChannel;
  std::uint16_t blockAlignFixed;
  std::uint16_t samplesPerBlock;  // 0: the format has no such field
  std::uint16_t extensionSize;
};

// A block of Microsoft ADPCM has 7 bytes of preamble per channel, which hold 2 samples, and two samples in
// every other byte; a block of IMA ADPCM has 4 bytes of preamble per channel, which hold 1 sample.
constexpr std::uint16_t kMsAdpcmBlock = 128;  // Kept: not the common 256; encoders of hosts fill such blocks.
constexpr std::uint16_t kMsAdpcmSamples = (kMsAdpcmBlock - 7) * 2 + 2;
constexpr std::uint16_t kImaAdpcmBlock = 256;
constexpr std::uint16_t kImaAdpcmSamples = (kImaAdpcmBlock - 4) / 4 * 8 + 1;

constexpr FormatRow kFormats[] = {
    {kWaveFormatPcm16, kTagPcm, 16, 2, 0, 0, 0},
    {kWaveFormatPcm8, kTagPcm, 8, 1, 0, 0, 0},
    {kWaveFormatMsAdpcm, 2, 4, kMsAdpcmBlock, 0, kMsAdpcmSamples, 32},
    {kWaveFormatALaw, 6, 8, 1, 0, 0, 0},
    {kWaveFormatMuLaw, 7, 8, 1, 0, 0, 0},
    {kWaveFormatImaAdpcm, 17, 4, kImaAdpcmBlock, 0, kImaAdpcmSamples, 2},
    {kWaveFormatGsm610, 49, 0, 0, 65, 320, 2},
    // Kept: 32-bit samples, like every unknown code, get the tag 0 and neither block size nor byte rate.
    {kWaveFormatSamples32, kTagUnknown, 32, 0, 0, 0, 0},
};
constexpr FormatRow kUnknownFormat = {kWaveFormatUnknown, kTagUnknown, 16, 0, 0, 0, 0};

constexpr WFCoefficientPair kMsAdpcmCoefficients[kWFCoefficientPairs] = {
    {256, 0}, {512, -256}, {0, 0}, {192, 64}, {240, 0}, {460, -208}, {392, -232}};

const FormatRow& findFormat(std::uint32_t formatCode) {
  const auto* row = std::ranges::find(kFormats, formatCode, &FormatRow::code);
  return row == std::end(kFormats) ? kUnknownFormat : *row;
}

/// Bytes per second, rounded. Rates below zero and beyond 32 bits wrap.
std::uint32_t averageBytesPerSec(std::uint16_t blockAlign, std::int32_t samplesPerSec,
                                 const FormatRow& format) {
  const int samplesPerBlock = std::max<int>(format.samplesPerBlock, 1);
  const double bytes = static_cast<double>(blockAlign) * samplesPerSec / samplesPerBlock + 0.5;
  return static_cast<std::uint32_t>(static_cast<std::int64_t>(bytes));
}

enum class Presence { kAlways, kUnlessPcm, kInBlockFormats, kInMsAdpcm };

/// One row of the header as it stands in a file; rows follow one another without gaps.
struct HeaderField {
  std::size_t offset;  // in WFHeader
  std::int32_t elementSize;
  std::int32_t count;
  Presence presence;
};

constexpr HeaderField kLayout[] = {
    {offsetof(WFHeader, riffId), 1, 4, Presence::kAlways},
    {offsetof(WFHeader, riffSize), 4, 1, Presence::kAlways},
    {offsetof(WFHeader, waveId), 1, 4, Presence::kAlways},
    {offsetof(WFHeader, fmtId), 1, 4, Presence::kAlways},
    {offsetof(WFHeader, fmtSize), 4, 1, Presence::kAlways},
    {offsetof(WFHeader, formatTag), 2, 1, Presence::kAlways},
    {offsetof(WFHeader, channels), 2, 1, Presence::kAlways},
    {offsetof(WFHeader, samplesPerSec), 4, 1, Presence::kAlways},
    {offsetof(WFHeader, averageBytesPerSec), 4, 1, Presence::kAlways},
    {offsetof(WFHeader, blockAlign), 2, 1, Presence::kAlways},
    {offsetof(WFHeader, bitsPerSample), 2, 1, Presence::kAlways},
    {offsetof(WFHeader, extensionSize), 2, 1, Presence::kUnlessPcm},
    {offsetof(WFHeader, samplesPerBlock), 2, 1, Presence::kInBlockFormats},
    {offsetof(WFHeader, coefficientCount), 2, 1, Presence::kInMsAdpcm},
    {offsetof(WFHeader, coefficients), 2, 2 * kWFCoefficientPairs, Presence::kInMsAdpcm},
    {offsetof(WFHeader, factId), 1, 4, Presence::kUnlessPcm},
    {offsetof(WFHeader, factSize), 4, 1, Presence::kUnlessPcm},
    {offsetof(WFHeader, factSampleCount), 4, 1, Presence::kUnlessPcm},
    {offsetof(WFHeader, dataId), 1, 4, Presence::kAlways},
    {offsetof(WFHeader, dataSize), 4, 1, Presence::kAlways},
};

bool isWritten(Presence presence, std::uint16_t tag) {
  switch (presence) {
    case Presence::kAlways:
      return true;
    case Presence::kUnlessPcm:
      return tag != kTagPcm;
    case Presence::kInBlockFormats:
      return tag == kWaveFormatMsAdpcm || tag == kWaveFormatImaAdpcm || tag == kWaveFormatGsm610;
    case Presence::kInMsAdpcm:
      return tag == kWaveFormatMsAdpcm;
  }
  return false;
}

/// How many bytes the file holds for `byteCount` bytes of 16-bit samples.
std::uint32_t encodedBytes(std::uint16_t tag, std::int32_t byteCount) {
  switch (tag) {
    case kWaveFormatMsAdpcm:
    case kWaveFormatImaAdpcm:
    case kWaveFormatGsm610:
      return static_cast<std::uint32_t>(byteCount) / 4;
    case kWaveFormatALaw:
    case kWaveFormatMuLaw:
    case kWaveFormatPcm8:
      return static_cast<std::uint32_t>(byteCount / 2);
    default:
      return static_cast<std::uint32_t>(byteCount);
  }
}

}  // namespace
}  // namespace speech::audio

using namespace speech::audio;

std::int32_t LXUTIL_Initialize_WFHeader(WFHeader* header, std::int32_t samplesPerSec,
                                        std::uint32_t formatCode, std::uint32_t channels) {
  const FormatRow& format = findFormat(formatCode);
  *header = WFHeader{};
  std::copy_n("RIFF", 4, header->riffId);
  std::copy_n("WAVE", 4, header->waveId);
  std::copy_n("fmt ", 4, header->fmtId);
  std::copy_n("data", 4, header->dataId);
  header->formatTag = format.tag;
  header->channels = static_cast<std::uint16_t>(channels);
  header->samplesPerSec = static_cast<std::uint32_t>(samplesPerSec);
  header->bitsPerSample = format.bitsPerSample;
  header->blockAlign = static_cast<std::uint16_t>(
      format.blockAlignPerChannel * std::uint32_t{header->channels} + format.blockAlignFixed);
  header->averageBytesPerSec = averageBytesPerSec(header->blockAlign, samplesPerSec, format);
  header->samplesPerBlock = format.samplesPerBlock;
  header->extensionSize = format.extensionSize;
  if (format.tag == kWaveFormatMsAdpcm) {
    header->coefficientCount = kWFCoefficientPairs;
    std::ranges::copy(kMsAdpcmCoefficients, header->coefficients);
  }
  if (format.tag == kTagPcm) {
    header->fmtSize = 16;
    header->riffSize = 44;
  } else {
    header->fmtSize = 18u + format.extensionSize;
    header->riffSize = 58u + format.extensionSize;
    std::copy_n("fact", 4, header->factId);
    header->factSize = 4;
  }
  return 1;
}

std::int32_t LXUTIL_Update_WFHeader(WFHeader* header, std::int32_t byteCount) {
  const std::uint16_t tag = header->formatTag;
  header->dataSize += encodedBytes(tag, byteCount);
  header->riffSize = header->fmtSize + 20 + header->dataSize;
  if (tag != kTagPcm) {
    header->factSampleCount += static_cast<std::uint32_t>(byteCount / 2);
    header->riffSize += header->factSize + 8;
  }
  return 1;
}

std::int32_t LXUTIL_Write_WFHeader(WFHeader* header, std::int32_t byteCount, std::FILE* file) {
  std::fseek(file, 0, SEEK_SET);
  LXUTIL_Update_WFHeader(header, byteCount);
  const auto* record = reinterpret_cast<const unsigned char*>(header);
  for (const HeaderField& field : kLayout) {
    if (!isWritten(field.presence, header->formatTag)) continue;
    if (hostIsBigEndian()) {
      FWRITE(record + field.offset, field.elementSize, field.count, file);
    } else {
      std::fwrite(record + field.offset, static_cast<std::size_t>(field.elementSize),
                  static_cast<std::size_t>(field.count), file);
    }
  }
  return 1;
}

std::int32_t LXUTIL_Read_WFHeader(std::FILE* file, WFHeader* header) {
  std::fseek(file, 0, SEEK_SET);
  *header = WFHeader{};
  auto* record = reinterpret_cast<unsigned char*>(header);
  // Kept: the fields of PCM files only, wherever the chunks of this file may be.
  for (const HeaderField& field : kLayout) {
    if (isWritten(field.presence, kTagPcm))
      FREAD(record + field.offset, field.elementSize, field.count, file);
  }
  return 1;
}

std::int32_t WAVHEADER_MAKER(const char* path, std::int32_t dataBytes, std::int32_t samplesPerSec,
                             std::int32_t bitsPerSample, std::int32_t channels) {
  if (path == nullptr || (bitsPerSample != 8 && bitsPerSample != 16)) return -1;
  speech::File file = speech::openFile(path, "wb");
  if (!file) return -1;
  WFHeader header;
  LXUTIL_Initialize_WFHeader(&header, samplesPerSec, bitsPerSample == 16 ? kWaveFormatPcm16 : kWaveFormatPcm8,
                             static_cast<std::uint32_t>(std::min(channels, 2)));
  LXUTIL_Write_WFHeader(&header, dataBytes, file.get());
  return speech::closeWritten(std::move(file)) ? 0 : -1;
}
