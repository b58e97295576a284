#ifndef SPEECH_C_FILES_H
#define SPEECH_C_FILES_H

/** @file
 * The plain C interface: sound files, and samples in memory. */

/* NOLINTBEGIN(modernize-*): this is C. */
#include <speech/c/speaking.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Formats of sound files. Other numbers from 8 to 13 are formats of an engine's own; the bundled one has
 * none. */
enum SpeechFormat {
  SPEECH_FORMAT_PCM = 0,  /**< 16-bit mono samples without a header. */
  SPEECH_FORMAT_OGG = 2,  /**< Ogg Vorbis. Needs sox.exe. */
  SPEECH_FORMAT_GSM = 3,  /**< GSM 06.10, always at 8000 Hz. Needs sox.exe. */
  SPEECH_FORMAT_MP3 = 4,  /**< MP3 at 320 kbit/s or the most that the rate allows. Needs sox.exe. */
  SPEECH_FORMAT_WAV = 5,  /**< WAV, 16-bit mono. */
  SPEECH_FORMAT_ALAW = 6, /**< WAV, A-law, at the voice's own rate only. */
  SPEECH_FORMAT_MULAW = 7 /**< WAV, mu-law, at the voice's own rate only. */
};

/** Samples in memory: 16-bit signed little-endian, mono. */
typedef struct SpeechAudio {
  void* samples;       /**< Owned by the caller once filled in; release with speech_audio_free. */
  uint32_t byte_count; /**< Size of the samples in bytes. */
  int32_t sample_rate; /**< In hertz. */
} SpeechAudio;

/** @name Files and samples
 * @{ */

/** Synthesizes a text into a sound file. The file appears complete or not at all: a failure leaves a file
 * that was there before as it was.
 * @param flags        SPEECH_FLAG_SSML, SPEECH_FLAG_LOG
 * @param format       SpeechFormat; the path's extension does not matter
 * @param sample_rate  8000, 16000, 22050, 44100 or 48000 Hz; 0 for the voice's own (22050 where that is
 *   none of them)
 * @return also REFUSED, SERVICE, UNSUPPORTED, TOOL, FILE, and BUSY while the engine speaks */
SPEECH_API int32_t SPEECH_CALL speech_export(SpeechEngine engine, const char* text, uint32_t flags,
                                             int32_t format, int32_t sample_rate, const char* path);
/** As speech_export, in UTF-16. */
SPEECH_API int32_t SPEECH_CALL speech_export_w(SpeechEngine engine, const wchar_t* text, uint32_t flags,
                                               int32_t format, int32_t sample_rate, const wchar_t* path);

/** Writes samples into a sound file, complete or not at all.
 * @param samples      16-bit mono samples
 * @param byte_count   their size in bytes, even and below 2^31
 * @param sample_rate  their rate in hertz, 1 to 768000
 * @param format       SPEECH_FORMAT_PCM, WAV, OGG, GSM or MP3
 * @return also UNSUPPORTED, TOOL, FILE */
SPEECH_API int32_t SPEECH_CALL speech_export_samples(SpeechEngine engine, const void* samples,
                                                     uint32_t byte_count, int32_t sample_rate, int32_t format,
                                                     const char* path);
/** As speech_export_samples, with a UTF-16 path. */
SPEECH_API int32_t SPEECH_CALL speech_export_samples_w(SpeechEngine engine, const void* samples,
                                                       uint32_t byte_count, int32_t sample_rate,
                                                       int32_t format, const wchar_t* path);

/** Synthesizes a text into memory.
 * @param flags        SPEECH_FLAG_SSML
 * @param sample_rate  in hertz, 0 for the voice's own; a cloud voice knows only those of speech_export
 * @return also REFUSED, SERVICE, UNSUPPORTED, and BUSY while the engine speaks */
SPEECH_API int32_t SPEECH_CALL speech_synthesize(SpeechEngine engine, const char* text, uint32_t flags,
                                                 int32_t sample_rate, SpeechAudio* audio);
/** As speech_synthesize, in UTF-16. */
SPEECH_API int32_t SPEECH_CALL speech_synthesize_w(SpeechEngine engine, const wchar_t* text, uint32_t flags,
                                                   int32_t sample_rate, SpeechAudio* audio);

/** Releases the samples of speech_synthesize and empties the record. Null and empty records are fine. Any
 * thread. */
SPEECH_API void SPEECH_CALL speech_audio_free(SpeechAudio* audio);

/** @} */

#ifdef __cplusplus
} /* extern "C" */
#endif
/* NOLINTEND(modernize-*) */

#endif /* SPEECH_C_FILES_H */
