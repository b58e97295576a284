#pragma once

/// @file
/// The audio utilities: WAV headers, sample-rate conversion, little-endian file fields, and memory that may
/// cross the library's boundary. Plain functions for C and C++.
///
///     int16_t* converted = NULL;
///     int32_t bytes = RATEAPI_PCM2PCM(samples, &sample_bytes, 22050, 8000, 16, 1, &converted);
///     if (bytes > 0) play(converted, bytes);
///     ExternFree(converted);
///
/// Samples in memory are signed 16-bit. Paths are in the thread's code page. Every function may be called
/// from any thread and on several at once; one file, header or stream belongs to one thread at a time.

// NOLINTBEGIN(modernize-*): hosts in C include this header too.
#include <stddef.h>
#include <stdint.h>
#include <stdio.h>

#include <speech/export.h>

#ifdef __cplusplus
extern "C" {
#endif

/// @name WAV headers
/// Build a header in memory, count the samples that are written, write it.
///
///     WFHeader header;
///     LXUTIL_Initialize_WFHeader(&header, 16000, kWaveFormatALaw, 1);
///     LXUTIL_Write_WFHeader(&header, 0, file);      // makes room for the header
///     ... encode 2000 bytes of 16-bit samples, write the 1000 bytes that they give ...
///     LXUTIL_Write_WFHeader(&header, 2000, file);   // the header again, with its true sizes
/// @{

/// Format codes of LXUTIL_Initialize_WFHeader. Any other code counts as kWaveFormatUnknown.
enum WaveFormatCode {
  kWaveFormatUnknown = 0,     ///< Any other code; such a file has the tag 0.
  kWaveFormatPcm16 = 1,       ///< 16-bit samples.
  kWaveFormatMsAdpcm = 2,     ///< Microsoft ADPCM.
  kWaveFormatALaw = 6,        ///< A-law.
  kWaveFormatMuLaw = 7,       ///< mu-law.
  kWaveFormatImaAdpcm = 17,   ///< IMA ADPCM.
  kWaveFormatSamples32 = 32,  ///< 32-bit samples; such a file has the tag 0.
  kWaveFormatGsm610 = 49,     ///< GSM 06.10.
  kWaveFormatPcm8 = 153       ///< Unsigned 8-bit samples; such a file has the tag of PCM, 1.
};

/// Predictor coefficients of Microsoft ADPCM.
typedef struct WFCoefficientPair {
  int16_t first;   ///< For the previous sample.
  int16_t second;  ///< For the one before that.
} WFCoefficientPair;

/// Number of coefficient pairs in a header.
enum { kWFCoefficientPairs = 7 };

/// Every field that a header can have, in file order. Fields that a format does not write are 0.
typedef struct WFHeader {
  char riffId[4];               ///< "RIFF".
  uint32_t riffSize;            ///< Bytes after this field; the header's own length until the first update.
  char waveId[4];               ///< "WAVE".
  char fmtId[4];                ///< "fmt ".
  uint32_t fmtSize;             ///< Bytes of the format chunk.
  uint16_t formatTag;           ///< The format's number in the file.
  uint16_t channels;            ///< 1 or more.
  uint32_t samplesPerSec;       ///< Hz.
  uint32_t averageBytesPerSec;  ///< Bytes in one second of sound.
  uint16_t blockAlign;          ///< Bytes that are decoded together.
  uint16_t bitsPerSample;       ///< In one channel.
  uint16_t extensionSize;       ///< Written unless the tag is 1, like the fact chunk.
  uint16_t samplesPerBlock;     ///< Written for the tags 2, 17 and 49.
  uint16_t coefficientCount;    ///< Written for the tag 2, like the pairs.
  WFCoefficientPair coefficients[kWFCoefficientPairs];  ///< The standard ones.
  char factId[4];                                       ///< "fact".
  uint32_t factSize;                                    ///< Bytes of the fact chunk.
  uint32_t factSampleCount;                             ///< 16-bit samples encoded so far.
  char dataId[4];                                       ///< "data".
  uint32_t dataSize;                                    ///< Bytes of sample data so far.
} WFHeader;

/// Fills every field of a header for a file without samples.
/// @param header         receives the fields
/// @param samplesPerSec  sample rate in Hz
/// @param formatCode     a WaveFormatCode
/// @param channels       number of channels; only the low 16 bits are kept
/// @return 1
SPEECH_API int32_t LXUTIL_Initialize_WFHeader(WFHeader* header, int32_t samplesPerSec, uint32_t formatCode,
                                              uint32_t channels);

/// Counts samples that were encoded into the file since the last update.
/// @param header     the file's header
/// @param byteCount  size of these samples in bytes as 16-bit samples; for PCM of either width the size of
/// the
///   data itself
/// @return 1
SPEECH_API int32_t LXUTIL_Update_WFHeader(WFHeader* header, int32_t byteCount);

/// Calls LXUTIL_Update_WFHeader, then writes the header at the start of the file and leaves the position just
/// after it. Sizes add up: write with 0 first and with the total last, or with the total once.
/// @param header     the file's header
/// @param byteCount  as for LXUTIL_Update_WFHeader
/// @param file       open for writing
/// @return 1, even if the file could not be written: check the stream
SPEECH_API int32_t LXUTIL_Write_WFHeader(WFHeader* header, int32_t byteCount, FILE* file);

/// Creates or empties a file and writes the header for PCM samples that the caller appends.
/// @param path           file to write
/// @param dataBytes      size of the samples in bytes
/// @param samplesPerSec  sample rate in Hz
/// @param bitsPerSample  8 or 16
/// @param channels       number of channels; more than 2 count as 2
/// @return 0; -1 if the file cannot be written, or if `bitsPerSample` is neither 8 nor 16, which creates no
///   file
SPEECH_API int32_t WAVHEADER_MAKER(const char* path, int32_t dataBytes, int32_t samplesPerSec,
                                   int32_t bitsPerSample, int32_t channels);

/// @}
/// @name Rate conversion
/// A table-driven converter for whole recordings. It uses about 90 KB of the caller's stack.
///
///     RateRequest request = {eight_khz, sixteen_khz, count, count * 2, 8000, 16000, 0, kRateQualityLarge};
///     int32_t stored = RATEAPI(&request);
/// @{

/// Methods of RATEAPI: the low byte of RateRequest::quality. Any other nonzero value selects the small
/// filter.
enum RateQuality {
  kRateQualityLinear = 0,  ///< Linear interpolation: fastest, no filter against aliases.
  kRateQualitySmall = 1,   ///< 6 zero crossings on each side.
  kRateQualityLarge = 2    ///< 32 zero crossings on each side. Every wrapper uses it.
};

/// One conversion, filled in by the caller.
typedef struct RateRequest {
  const int16_t* input;    ///< `inputCount` samples, mono.
  int16_t* output;         ///< The caller's room for `outputCapacity` samples.
  int32_t inputCount;      ///< Samples; 0 or less converts nothing.
  int32_t outputCapacity;  ///< Samples; the most that are stored, except at equal rates.
  int32_t inputRate;       ///< Hz, at least 1 unless the rates are equal.
  int32_t outputRate;      ///< Hz, at least 1 unless the rates are equal.
  uint16_t reserved;       ///< Ignored.
  uint16_t quality;        ///< A RateQuality in the low byte; the high byte is ignored.
} RateRequest;

/// Converts a whole array. Allocates nothing.
///
/// Equal rates, whatever they are, copy `inputCount` samples unchanged and ignore the capacity. At other
/// rates the output is filled to its capacity; what the input does not give comes from old contents of a
/// buffer. So ask for inputCount * outputRate / inputRate samples, not more.
/// @param request  what to convert, how and where to
/// @return samples stored; 0 for an empty input, and for a single sample at another rate; -1 for
///   - a null pointer, or a rate below 1,
///   - rates too far apart for the filter (from about 61 to 1 down with the large filter, 291 with the small
///     one, 32768 with none) or for the clock (above 65536 to 1 up),
///   - a block of about 4000 input samples that would store more than 40962 samples. Samples of earlier
///   blocks
///     have been stored by then. From 16 to 1 up a block may also lose samples instead.
SPEECH_API int32_t RATEAPI(const RateRequest* request);

/// Converts mono samples into a new buffer.
/// @param input        16-bit mono samples
/// @param inputBytes   their size in bytes
/// @param inRate       input rate, limited to 4000 to 48000 Hz
/// @param outRate      output rate, limited likewise
/// @param outBits      8 divides every sample by 256 but keeps it as a signed 16-bit word; any other width
///   leaves samples as they are
/// @param outChannels  2 stores every sample twice; the buffer then holds twice the returned size
/// @param resultOut    receives the buffer; release it with ExternFree
/// @return two bytes for each converted sample; -1 if the input is empty or memory is short, and `resultOut`
///   is not set
SPEECH_API int32_t RATEAPI_PCM2PCM(const int16_t* input, const int32_t* inputBytes, int32_t inRate,
                                   int32_t outRate, int32_t outBits, int32_t outChannels,
                                   int16_t** resultOut);

/// Converts mono samples in place.
/// @param buffer      16-bit mono samples, with room for the result; null to ask for its size
/// @param inOutBytes  size of the samples in bytes; receives the size of the result
/// @param inRate      input rate, limited to 4000 to 48000 Hz
/// @param outRate     output rate, limited likewise
/// @return size of the result in bytes, or without a buffer the size that it has at most; -1 on failure,
/// which
///   changes nothing
SPEECH_API int32_t RATEAPI_interface(int16_t* buffer, int32_t* inOutBytes, int32_t inRate, int32_t outRate);

/// Converts mono samples and writes them to a WAV file.
/// @param input       16-bit mono samples
/// @param inOutBytes  their size in bytes; receives the size of the sample data in the file
/// @param inRate      input rate, limited to 4000 to 48000 Hz
/// @param outRate     rate of the file, limited likewise
/// @param bits        8 or 16
/// @param channels    1, or 2 to write each sample twice; more count as 2
/// @param path        file to write
/// @return 1; -1 if the input is empty, the width is another, there is no channel, or the file cannot be
///   written
SPEECH_API int32_t RATEAPI_PCM2WAV(const int16_t* input, int32_t* inOutBytes, int32_t inRate, int32_t outRate,
                                   int32_t bits, int32_t channels, const char* path);

/// Converts a WAV file to another. Rates are taken as they are. If the header announces more samples than the
/// file holds, those in the file are converted.
/// @param inPath       PCM of 8 or 16 bits, with its samples at offset 44
/// @param outRate      new rate in Hz
/// @param outBits      8 or 16
/// @param outChannels  1 (the left channel of a stereo file) or 2; more count as 2
/// @param outPath      file to write
/// @return 1; -1 if the input cannot be read, is not PCM or has a rate that the converter cannot take, if the
///   width or the channels are others, or if the output cannot be written. A file at `outPath` is emptied
///   even then, but an output that is the input file itself is refused and stays whole.
SPEECH_API int32_t RATEAPI_WAV2WAV(const char* inPath, int32_t outRate, int32_t outBits, int32_t outChannels,
                                   const char* outPath);

/// RATEAPI_WAV2WAV for wider samples. They are read in the width that the input's header names; the two
/// low-order bytes count.
/// @param inPath       as for RATEAPI_WAV2WAV
/// @param outRate      as for RATEAPI_WAV2WAV
/// @param outBits      8, 16 or 32. With 16 and 32 samples are written in the input's width; with 32 the
///   header's format code is the input's bits per sample.
/// @param outChannels  as for RATEAPI_WAV2WAV
/// @param outPath      as for RATEAPI_WAV2WAV
/// @return as RATEAPI_WAV2WAV
SPEECH_API int32_t RATEAPI_WAV2WAV_EX(const char* inPath, int32_t outRate, int32_t outBits,
                                      int32_t outChannels, const char* outPath);

/// @}
/// @name Streaming conversion
/// Conversion of interleaved 16-bit samples block by block, done by libsoxr. The output is dithered: two runs
/// differ by 2 at most.
///
///     RateStream stream = RATEAPI_MULTI_INIT(44100, 16000, 1);
///     while ((input_bytes = record(input)) > 0) {
///       int32_t bytes = RATEAPI_MULTI_PROCESS(stream, input, input_bytes, output, sizeof output);
///       if (bytes > 0) play(output, bytes);
///     }
///     RATEAPI_MULTI_UNINIT(stream);
/// @{

/// A running conversion, 0 for none: 32 bits wide in a 32-bit program.
typedef uintptr_t RateStream;

/// Failures of RATEAPI_MULTI_PROCESS.
enum RateStreamError {
  kRateStreamNoHandle = -1,     ///< The stream is 0.
  kRateStreamNoInput = -10,     ///< `input` is null.
  kRateStreamEmptyInput = -20,  ///< `inputBytes` is 0 or less.
  kRateStreamNoOutput = -30,    ///< `output` is null.
  kRateStreamEmptyOutput = -40  ///< `outputBytes` is 0 or less.
};

/// Starts a conversion.
/// @param inRate    input rate in Hz
/// @param outRate   output rate in Hz
/// @param channels  interleaved channels, 1 to 1024
/// @return the conversion, to be ended with RATEAPI_MULTI_UNINIT; 0 if a rate is not above 0, the rates are
///   more than 65536 to 1 apart, the number of channels is another, or memory is short
SPEECH_API RateStream RATEAPI_MULTI_INIT(double inRate, double outRate, int32_t channels);

/// Converts the next block. Half of `inputBytes` is taken as the number of frames at `input`, half of
/// `outputBytes` as the number that `output` has room for. So with one channel they are true sizes; with
/// more, both buffers must be that many times as large.
///
/// Give `output` a little more room than the block needs: what does not fit is kept for the next call. The
/// last few milliseconds of a stream stay in the filter; append silence if they matter.
/// @param stream       from RATEAPI_MULTI_INIT
/// @param input        samples
/// @param inputBytes   twice the number of frames
/// @param output       receives samples
/// @param outputBytes  twice the number of frames that there is room for
/// @return two bytes for each frame stored, or a RateStreamError; arguments are checked in the order of those
///   errors
SPEECH_API int32_t RATEAPI_MULTI_PROCESS(RateStream stream, const void* input, int32_t inputBytes,
                                         void* output, int32_t outputBytes);

/// Ends a conversion.
/// @param stream  may be 0
SPEECH_API void RATEAPI_MULTI_UNINIT(RateStream stream);

/// @}
/// @name Little-endian file fields
///
///     uint16_t levels[2];
///     if (FREAD(levels, 2, 2, file) == 4) { ... }   // levels in the host's order
/// @{

/// Settles the host's byte order: little-endian, the only one that the library is built for.
SPEECH_API void set_endian_info(void);

/// Copies little-endian elements into the host's order, which on a little-endian host is a plain copy.
/// Elements of 1 byte or more than 8 are always copied as they are. Copies nothing if a pointer is null or
/// `elementSize * count` is not positive.
/// @param dst          receives the elements; may equal `src`
/// @param src          the elements
/// @param elementSize  bytes of one element
/// @param count        number of elements
/// @return 1
SPEECH_API int32_t swapdata(void* dst, const void* src, int32_t elementSize, int32_t count);

/// Like swapdata, but reverses elements of 2 to 8 bytes on every host.
/// @param dst,src,elementSize,count  as for swapdata
/// @return 1
SPEECH_API int32_t swapdata_forced(void* dst, const void* src, int32_t elementSize, int32_t count);

/// Reads little-endian elements.
/// @param buffer       receives them in the host's order
/// @param elementSize  bytes of one element
/// @param count        number of elements
/// @param file         open for reading
/// @return for elements of 1 byte: 1 if all were read, else 0; for elements of 2 to 8 bytes: the bytes read,
///   fewer at the end of the file; for any other size 0, and nothing is read
SPEECH_API int32_t FREAD(void* buffer, int32_t elementSize, int32_t count, FILE* file);

/// Writes elements with their bytes reversed on every host, which only big-endian hosts want.
/// @param buffer       the elements
/// @param elementSize  bytes of one element
/// @param count        number of elements
/// @param file         open for writing
/// @return for elements of 1 byte: the bytes written; for larger ones: the bytes written of the last element;
///   0 if there is nothing to write
SPEECH_API int32_t FWRITE(const void* buffer, int32_t elementSize, int32_t count, FILE* file);

/// Measures a file and leaves it at its start.
/// @param file     open in binary mode
/// @param sizeOut  receives the length in bytes, modulo 2^32
/// @return 1
SPEECH_API int32_t get_filesize(FILE* file, uint32_t* sizeOut);

/// @}
/// @name Memory
/// The library's own heap: what it hands out is released here.
/// @{

/// Allocates memory.
/// @param size  in bytes
/// @return the block; null on failure
SPEECH_API void* ExternMalloc(size_t size);

/// Resizes a block.
/// @param pointer  a block of ExternMalloc's, or null to allocate one
/// @param size     in bytes
/// @return the block; null on failure, and the old block stays as it was
SPEECH_API void* ExternRealloc(void* pointer, size_t size);

/// Frees a block of ExternMalloc's, or one that the library handed out.
/// @param pointer  may be null
SPEECH_API void ExternFree(void* pointer);

/// @}

#ifdef __cplusplus
}
#endif
// NOLINTEND(modernize-*)
