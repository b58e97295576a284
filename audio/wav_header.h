#pragma once

// Headers of RIFF/WAVE files: build one in memory, account for the samples written, write it.
//
//   WFHeader header;
//   LXUTIL_Initialize_WFHeader(&header, 16000, kWaveFormatALaw, 1);
//   LXUTIL_Write_WFHeader(&header, 0, file);            // room for the header
//   ... encode 2000 bytes of 16-bit samples and write the 1000 bytes they give ...
//   LXUTIL_Write_WFHeader(&header, 2000, file);         // the header again, with the true sizes
//
// A record and its file belong to one thread at a time; different ones may be used at once.

#include <cstdint>
#include <cstdio>

#include "audio/export.h"

/// The format codes of LXUTIL_Initialize_WFHeader. Every other code is taken as kWaveFormatUnknown.
enum WaveFormatCode : std::uint32_t {
  kWaveFormatUnknown = 0,
  kWaveFormatPcm16 = 1,
  kWaveFormatMsAdpcm = 2,
  kWaveFormatALaw = 6,
  kWaveFormatMuLaw = 7,
  kWaveFormatImaAdpcm = 17,
  kWaveFormatSamples32 = 32,  // 32-bit samples; such a file carries the tag 0
  kWaveFormatGsm610 = 49,
  kWaveFormatPcm8 = 153,  // unsigned 8-bit samples; such a file carries the tag of PCM
};

/// Predictor coefficients of Microsoft ADPCM.
struct WFCoefficientPair {
  std::int16_t first;
  std::int16_t second;
};

inline constexpr int kWFCoefficientPairs = 7;

/// Everything that a header can hold, in file order; what a format does not write is 0.
struct WFHeader {
  char riffId[4];
  std::uint32_t riffSize;  // bytes after this field; the header's own length until the first update
  char waveId[4];
  char fmtId[4];
  std::uint32_t fmtSize;
  std::uint16_t formatTag;
  std::uint16_t channels;
  std::uint32_t samplesPerSec;
  std::uint32_t averageBytesPerSec;
  std::uint16_t blockAlign;
  std::uint16_t bitsPerSample;
  std::uint16_t extensionSize;     // written when the tag is not 1, as is the fact chunk
  std::uint16_t samplesPerBlock;   // written for the tags 2, 17 and 49
  std::uint16_t coefficientCount;  // written for the tag 2, as are the pairs
  WFCoefficientPair coefficients[kWFCoefficientPairs];
  char factId[4];
  std::uint32_t factSize;
  std::uint32_t factSampleCount;
  char dataId[4];
  std::uint32_t dataSize;  // bytes of sample data so far
};

extern "C" {

/// Fills every field of `header` for a file of `samplesPerSec` (Hz) and `channels` in the format `formatCode`
/// (WaveFormatCode), without samples. Only the low 16 bits of code and channels count. Returns 1.
SPEECH_API std::int32_t LXUTIL_Initialize_WFHeader(WFHeader* header, std::int32_t samplesPerSec,
                                                   std::uint32_t formatCode, std::uint32_t channels);

/// Accounts for samples that were encoded into the file since the last update: `byteCount` is their size in
/// bytes as 16-bit samples, for PCM of either width the size of the data itself. Returns 1.
SPEECH_API std::int32_t LXUTIL_Update_WFHeader(WFHeader* header, std::int32_t byteCount);

/// LXUTIL_Update_WFHeader, then writes the header at the start of `file`, whose position is then just after
/// it. Sizes add up: write with 0 first and with the total last, or with the total once. Returns 1 even when
/// the file could not be written; the caller finds that out from the stream.
SPEECH_API std::int32_t LXUTIL_Write_WFHeader(WFHeader* header, std::int32_t byteCount, std::FILE* file);

/// Creates or empties the file at `path` (in the thread's code page) and writes the PCM header for
/// `dataBytes` bytes of samples that someone else appends. More than 2 channels count as 2. Returns 0; -1
/// when `bitsPerSample` is neither 8 nor 16 (no file is made then) or the file cannot be written.
SPEECH_API std::int32_t WAVHEADER_MAKER(const char* path, std::int32_t dataBytes, std::int32_t samplesPerSec,
                                        std::int32_t bitsPerSample, std::int32_t channels);

}  // extern "C"
