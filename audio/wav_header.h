#pragma once

/// @file
/// Headers of RIFF/WAVE files: build one in memory, account for the samples written, write it.
///
///     WFHeader header;
///     LXUTIL_Initialize_WFHeader(&header, 16000, kWaveFormatALaw, 1);
///     LXUTIL_Write_WFHeader(&header, 0, file);            // room for the header
///     ... encode 2000 bytes of 16-bit samples and write the 1000 bytes they give ...
///     LXUTIL_Write_WFHeader(&header, 2000, file);         // the header again, with the true sizes
///
/// A record and its file belong to one thread at a time; different ones may be used at once.

#include <cstdint>
#include <cstdio>

#include "audio/export.h"

/// The format codes of LXUTIL_Initialize_WFHeader. Every other code is taken as kWaveFormatUnknown.
enum WaveFormatCode : std::uint32_t {
  kWaveFormatUnknown = 0,     ///< Any other code.
  kWaveFormatPcm16 = 1,       ///< 16-bit samples.
  kWaveFormatMsAdpcm = 2,     ///< Microsoft ADPCM.
  kWaveFormatALaw = 6,        ///< A-law.
  kWaveFormatMuLaw = 7,       ///< mu-law.
  kWaveFormatImaAdpcm = 17,   ///< IMA ADPCM.
  kWaveFormatSamples32 = 32,  ///< 32-bit samples; such a file carries the tag 0
  kWaveFormatGsm610 = 49,     ///< GSM 06.10.
  kWaveFormatPcm8 = 153,      ///< unsigned 8-bit samples; such a file carries the tag of PCM
};

/// Predictor coefficients of Microsoft ADPCM.
struct WFCoefficientPair {
  std::int16_t first;   ///< Of the sample before.
  std::int16_t second;  ///< Of the one before that.
};

/// How many pairs a header holds.
inline constexpr int kWFCoefficientPairs = 7;

/// Everything that a header can hold, in file order; what a format does not write is 0.
struct WFHeader {
  char riffId[4];               ///< "RIFF".
  std::uint32_t riffSize;       ///< Bytes after this field; the header's own length until the first update.
  char waveId[4];               ///< "WAVE".
  char fmtId[4];                ///< "fmt ".
  std::uint32_t fmtSize;        ///< Bytes of the format chunk.
  std::uint16_t formatTag;      ///< What the file calls its format.
  std::uint16_t channels;       ///< 1 or more.
  std::uint32_t samplesPerSec;  ///< Rate in hertz.
  std::uint32_t averageBytesPerSec;  ///< Of one second of sound.
  std::uint16_t blockAlign;          ///< Bytes that are decoded together.
  std::uint16_t bitsPerSample;       ///< Of one channel.
  std::uint16_t extensionSize;       ///< Written when the tag is not 1, as is the fact chunk.
  std::uint16_t samplesPerBlock;     ///< Written for the tags 2, 17 and 49.
  std::uint16_t coefficientCount;    ///< Written for the tag 2, as are the pairs.
  WFCoefficientPair coefficients[kWFCoefficientPairs];  ///< The standard ones.
  char factId[4];                                       ///< "fact".
  std::uint32_t factSize;                               ///< Bytes of the fact chunk.
  std::uint32_t factSampleCount;                        ///< Samples of a channel so far.
  char dataId[4];                                       ///< "data".
  std::uint32_t dataSize;                               ///< Bytes of sample data so far.
};

extern "C" {

/// Fills every field of a header for a file without samples.
/// @param header         to be filled
/// @param samplesPerSec  rate in hertz
/// @param formatCode     WaveFormatCode
/// @param channels       only the low 16 bits count
/// @return 1
SPEECH_API std::int32_t LXUTIL_Initialize_WFHeader(WFHeader* header, std::int32_t samplesPerSec,
                                                   std::uint32_t formatCode, std::uint32_t channels);

/// Accounts for samples that were encoded into the file since the last update.
/// @param header     of the file
/// @param byteCount  their size in bytes as 16-bit samples, for PCM of either width the size of the data
///   itself
/// @return 1
SPEECH_API std::int32_t LXUTIL_Update_WFHeader(WFHeader* header, std::int32_t byteCount);

/// LXUTIL_Update_WFHeader, then writes the header at the start of the file, whose position is then just after
/// it. Sizes add up: write with 0 first and with the total last, or with the total once.
/// @param header     of the file
/// @param byteCount  as for LXUTIL_Update_WFHeader
/// @param file       open for writing
/// @return 1, even when the file could not be written; the caller finds that out from the stream
SPEECH_API std::int32_t LXUTIL_Write_WFHeader(WFHeader* header, std::int32_t byteCount, std::FILE* file);

/// Creates or empties a file and writes the header for PCM samples that someone else appends.
/// @param path           in the thread's code page
/// @param dataBytes      size of the samples
/// @param samplesPerSec  rate in hertz
/// @param bitsPerSample  8 or 16
/// @param channels       more than 2 count as 2
/// @return 0; -1 when `bitsPerSample` is another (no file is made then) or the file cannot be written
SPEECH_API std::int32_t WAVHEADER_MAKER(const char* path, std::int32_t dataBytes, std::int32_t samplesPerSec,
                                        std::int32_t bitsPerSample, std::int32_t channels);

}  // extern "C"
