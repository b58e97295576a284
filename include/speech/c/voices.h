#ifndef SPEECH_C_VOICES_H
#define SPEECH_C_VOICES_H

/** @file
 * The plain C interface: installed voices and their options. */

#include <speech/c/base.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Texts of a voice (speech_voice_text). */
enum SpeechVoiceText {
  SPEECH_VOICE_NAME = 0,               /**< The engine's name and version, for people. */
  SPEECH_VOICE_LABEL = 1,              /**< Both keys and a text, for a list. */
  SPEECH_VOICE_KEY1 = 2,               /**< The keys name a voice from one run of a program to the next. */
  SPEECH_VOICE_KEY2 = 3,               /**< The second key. */
  SPEECH_VOICE_LANGUAGE = 4,           /**< Such as "en-US". */
  SPEECH_VOICE_GENDER = 5,             /**< "FEMALE", "MALE" or "UNKNOWN". */
  SPEECH_VOICE_ENGINE_TYPE = 6,        /**< "skyvo" in any case: a voice of the cloud service. */
  SPEECH_VOICE_INFO3 = 7,              /**< Free text of the engine library. */
  SPEECH_VOICE_INFO4 = 8,              /**< More of it. */
  SPEECH_VOICE_INFO5 = 9,              /**< More of it. */
  SPEECH_VOICE_INFO7 = 10,             /**< More of it. */
  SPEECH_VOICE_ENGINE_INFO1 = 11,      /**< Free text of the engine itself. */
  SPEECH_VOICE_ENGINE_INFO2 = 12,      /**< More of it. */
  SPEECH_VOICE_DICTIONARY_EDITOR = 13, /**< Path of the voice's dictionary editor. */
  SPEECH_VOICE_DICTIONARY_PATH2 = 14,  /**< Path of a dictionary file of the voice. */
  SPEECH_VOICE_DICTIONARY_PATH3 = 15,  /**< The one that the editor opens by itself. */
  SPEECH_VOICE_GENDER_CODE = 16        /**< As the engine library has it, such as "F". */
};

/** Numbers of a voice (speech_voice_number). */
enum SpeechVoiceNumber {
  SPEECH_VOICE_SAMPLE_RATE = 0, /**< In hertz. */
  SPEECH_VOICE_INFO9 = 1,       /**< Free number of the engine library. */
  SPEECH_VOICE_IS_CLOUD = 2,    /**< 1 for a voice of the cloud service, else 0. */
  /** The voice's synthesis handle, as 32 bits, for programs that call the engine library themselves. */
  SPEECH_VOICE_SYNTHESIS_HANDLE = 3,
  SPEECH_VOICE_ENGINE_HANDLE = 4 /**< The voice's engine handle, in the same way. */
};

/** Settings of a voice. Speed, pitch and volume: 100 is the voice's own. Pauses are in the engine's unit,
 * milliseconds in the bundled engine library. The last two are kept with the voice for the program's own use:
 * no engine gets them, and any number will do. */
enum SpeechOption {
  SPEECH_OPTION_SPEED = 0,       /**< Speaking rate. */
  SPEECH_OPTION_VOLUME = 1,      /**< Loudness. */
  SPEECH_OPTION_PITCH = 2,       /**< Pitch. */
  SPEECH_OPTION_PAUSE = 3,       /**< Pause at the end of a sentence. */
  SPEECH_OPTION_COMMA_PAUSE = 4, /**< Pause at a comma. */
  SPEECH_OPTION_FORMAT = 5,      /**< Output format; 1 at first. */
  SPEECH_OPTION_ALD = 6          /**< ALD; 0 at first. */
};

/** @name Voices
 * Voices are numbered from 0 in the engine library's order, which stays the same until speech_release. The
 * first call that needs them takes a moment: it asks the engine library for all of them.
 * @{ */

/** How many voices are installed. */
SPEECH_API int32_t SPEECH_CALL speech_voice_count(int32_t* count);

/** A text of a voice. @param which SpeechVoiceText */
SPEECH_API int32_t SPEECH_CALL speech_voice_text(int32_t voice, int32_t which, char* buffer,
                                                 uint32_t capacity, uint32_t* length);
/** As speech_voice_text, in UTF-16. */
SPEECH_API int32_t SPEECH_CALL speech_voice_text_w(int32_t voice, int32_t which, wchar_t* buffer,
                                                   uint32_t capacity, uint32_t* length);

/** A number of a voice. @param which SpeechVoiceNumber */
SPEECH_API int32_t SPEECH_CALL speech_voice_number(int32_t voice, int32_t which, int32_t* value);

/** How many different language codes the voices have. */
SPEECH_API int32_t SPEECH_CALL speech_language_count(int32_t* count);

/** A language code by its place from 0, in the order of the voices. Codes that differ only in case are one.
 * @return VOICE when there is no such place */
SPEECH_API int32_t SPEECH_CALL speech_language(int32_t index, char* buffer, uint32_t capacity,
                                               uint32_t* length);
/** As speech_language, in UTF-16. */
SPEECH_API int32_t SPEECH_CALL speech_language_w(int32_t index, wchar_t* buffer, uint32_t capacity,
                                                 uint32_t* length);

/** @} */

/** @name Options
 * Options belong to voices and live until speech_release. While a voice's engine is open, its options take
 * effect with the next text.
 * @{ */

/** The bounds and the default of an option. Each pointer may be null. */
SPEECH_API int32_t SPEECH_CALL speech_option_range(int32_t voice, int32_t option, int32_t* minimum,
                                                   int32_t* maximum, int32_t* standard);

/** The value of an option. */
SPEECH_API int32_t SPEECH_CALL speech_option_get(int32_t voice, int32_t option, int32_t* value);

/** Changes an option.
 * @return also RANGE, BUSY, and REFUSED when the open engine does not take it */
SPEECH_API int32_t SPEECH_CALL speech_option_set(int32_t voice, int32_t option, int32_t value);

/** Gives every option of a voice its default.
 * @return also BUSY, and REFUSED when the open engine does not take them */
SPEECH_API int32_t SPEECH_CALL speech_option_reset(int32_t voice);

/** Whether options have changed that no engine has got yet, 1 or 0. The voice's engine gets them when it is
 * opened. */
SPEECH_API int32_t SPEECH_CALL speech_option_changed(int32_t voice, int32_t* changed);

/** @} */

#ifdef __cplusplus
} /* extern "C" */
#endif

#endif /* SPEECH_C_VOICES_H */
