#ifndef SPEECH_AUDIO_C_H
#define SPEECH_AUDIO_C_H

/** @file
 * The audio utilities for programs in C: WAV headers, sample-rate conversion, little-endian files, memory.
 *
 *     int16_t* converted = NULL;
 *     int32_t bytes = RATEAPI_PCM2PCM(samples, &sample_bytes, 22050, 8000, 16, 1, &converted);
 *     ...
 *     ExternFree(converted);
 *
 * C++ programs get the headers that describe every function whole; here stands what C needs, with the same
 * names, types and meaning. Failures are -1 (or null) unless a function says otherwise. Paths are in the
 * thread's code page. Any thread may call; one FILE, header or stream belongs to one thread at a time.
 */

#ifdef __cplusplus

#include "audio/file_io.h"
#include "audio/rate_converter.h"
#include "audio/rate_wrappers.h"
#include "audio/stream_converter.h"
#include "audio/wav_header.h"

#else

#include <stddef.h>
#include <stdint.h>
#include <stdio.h>

#include "audio/export.h"

/** Format codes of LXUTIL_Initialize_WFHeader. Every other code is taken as unknown. */
enum WaveFormatCode {
  kWaveFormatUnknown = 0,    /**< Any other code. */
  kWaveFormatPcm16 = 1,      /**< 16-bit samples. */
  kWaveFormatMsAdpcm = 2,    /**< Microsoft ADPCM. */
  kWaveFormatALaw = 6,       /**< A-law. */
  kWaveFormatMuLaw = 7,      /**< mu-law. */
  kWaveFormatImaAdpcm = 17,  /**< IMA ADPCM. */
  kWaveFormatSamples32 = 32, /**< 32-bit samples; such a file carries the tag 0. */
  kWaveFormatGsm610 = 49,    /**< GSM 06.10. */
  kWaveFormatPcm8 = 153      /**< Unsigned 8-bit samples; such a file carries the tag of PCM. */
};

/** Predictor coefficients of Microsoft ADPCM. */
typedef struct WFCoefficientPair {
  int16_t first;
  int16_t second;
} WFCoefficientPair;

/** How many pairs a header holds. */
enum { kWFCoefficientPairs = 7 };

/** Everything that a WAV header can hold, in file order. */
typedef struct WFHeader {
  char riffId[4];
  uint32_t riffSize;
  char waveId[4];
  char fmtId[4];
  uint32_t fmtSize;
  uint16_t formatTag;
  uint16_t channels;
  uint32_t samplesPerSec;
  uint32_t averageBytesPerSec;
  uint16_t blockAlign;
  uint16_t bitsPerSample;
  uint16_t extensionSize;
  uint16_t samplesPerBlock;
  uint16_t coefficientCount;
  WFCoefficientPair coefficients[kWFCoefficientPairs];
  char factId[4];
  uint32_t factSize;
  uint32_t factSampleCount;
  char dataId[4];
  uint32_t dataSize;
} WFHeader;

/** How RATEAPI converts: the low byte of RateRequest::quality. */
enum RateQuality {
  kRateQualityLinear = 0, /**< Linear interpolation: fastest, no filter against aliases. */
  kRateQualitySmall = 1,  /**< 6 zero crossings a side. */
  kRateQualityLarge = 2   /**< 32 zero crossings a side. */
};

/** One conversion of 16-bit mono samples. */
typedef struct RateRequest {
  const int16_t* input;
  int16_t* output;
  int32_t inputCount;     /**< Samples. */
  int32_t outputCapacity; /**< Samples. */
  int32_t inputRate;      /**< Hz. */
  int32_t outputRate;     /**< Hz. */
  uint16_t reserved;
  uint16_t quality; /**< RateQuality. */
} RateRequest;

/** A running conversion, 0 for none. */
typedef uintptr_t RateStream;

/** What RATEAPI_MULTI_PROCESS answers instead of a byte count. */
enum RateStreamError {
  kRateStreamNoHandle = -1,    /**< The stream is 0. */
  kRateStreamNoInput = -10,    /**< `input` is null. */
  kRateStreamEmptyInput = -20, /**< `inputBytes` is 0 or below. */
  kRateStreamNoOutput = -30,   /**< `output` is null. */
  kRateStreamEmptyOutput = -40 /**< `outputBytes` is 0 or below. */
};

/** Fills a header for a rate in Hz, a WaveFormatCode and a number of channels. 1. */
SPEECH_API int32_t LXUTIL_Initialize_WFHeader(WFHeader* header, int32_t samplesPerSec, uint32_t formatCode,
                                              uint32_t channels);
/** Accounts for encoded samples: their size in bytes as 16-bit samples. 1. */
SPEECH_API int32_t LXUTIL_Update_WFHeader(WFHeader* header, int32_t byteCount);
/** The same, then writes the header at the start of the file. 1. */
SPEECH_API int32_t LXUTIL_Write_WFHeader(WFHeader* header, int32_t byteCount, FILE* file);
/** Makes a file that holds the header of PCM data of that many bytes. 0, or -1. */
SPEECH_API int32_t WAVHEADER_MAKER(const char* path, int32_t dataBytes, int32_t samplesPerSec,
                                   int32_t bitsPerSample, int32_t channels);
/** Converts an array. The samples stored, or -1. */
SPEECH_API int32_t RATEAPI(const RateRequest* request);
/** Converts samples into a buffer that ExternFree releases. Its bytes of one channel, or -1. */
SPEECH_API int32_t RATEAPI_PCM2PCM(const int16_t* input, const int32_t* inputBytes, int32_t inRate,
                                   int32_t outRate, int32_t outBits, int32_t outChannels,
                                   int16_t** resultOut);
/** Converts in place; with a null buffer the bytes that the result takes. Or -1. */
SPEECH_API int32_t RATEAPI_interface(int16_t* buffer, int32_t* inOutBytes, int32_t inRate, int32_t outRate);
/** Converts samples into a WAV file. 1, or -1. */
SPEECH_API int32_t RATEAPI_PCM2WAV(const int16_t* input, int32_t* inOutBytes, int32_t inRate, int32_t outRate,
                                   int32_t bits, int32_t channels, const char* path);
/** Converts a WAV file of 8 or 16 bits. 1, or -1. */
SPEECH_API int32_t RATEAPI_WAV2WAV(const char* inPath, int32_t outRate, int32_t outBits, int32_t outChannels,
                                   const char* outPath);
/** The same for wider samples. */
SPEECH_API int32_t RATEAPI_WAV2WAV_EX(const char* inPath, int32_t outRate, int32_t outBits,
                                      int32_t outChannels, const char* outPath);
/** Starts the conversion of a stream between two rates in Hz. 0 on failure. */
SPEECH_API RateStream RATEAPI_MULTI_INIT(double inRate, double outRate, int32_t channels);
/** Converts the next block. Bytes, or a RateStreamError. */
SPEECH_API int32_t RATEAPI_MULTI_PROCESS(RateStream stream, const void* input, int32_t inputBytes,
                                         void* output, int32_t outputBytes);
/** Ends a conversion. 0 is allowed. */
SPEECH_API void RATEAPI_MULTI_UNINIT(RateStream stream);
/** Settles the host's byte order. */
SPEECH_API void set_endian_info(void);
/** Copies little-endian elements into host order. 1. */
SPEECH_API int32_t swapdata(void* dst, const void* src, int32_t elementSize, int32_t count);
/** Copies elements with their bytes reversed. 1. */
SPEECH_API int32_t swapdata_forced(void* dst, const void* src, int32_t elementSize, int32_t count);
/** Reads little-endian elements: 1 or 0 for single bytes, else the bytes read. */
SPEECH_API int32_t FREAD(void* buffer, int32_t elementSize, int32_t count, FILE* file);
/** Writes elements with their bytes reversed. What the last write answered. */
SPEECH_API int32_t FWRITE(const void* buffer, int32_t elementSize, int32_t count, FILE* file);
/** Stores the length of a file and goes to its start. 1. */
SPEECH_API int32_t get_filesize(FILE* file, uint32_t* sizeOut);
/** Allocates memory. Null on failure. */
SPEECH_API void* ExternMalloc(size_t size);
/** Resizes such memory. Null on failure, and it then stays. */
SPEECH_API void* ExternRealloc(void* pointer, size_t size);
/** Frees it, and what else the library allocated for its caller. Null is allowed. */
SPEECH_API void ExternFree(void* pointer);

#endif /* __cplusplus */

#endif /* SPEECH_AUDIO_C_H */
