#ifndef SPEECH_SPEECH_C_H
#define SPEECH_SPEECH_C_H

/*
 * The library's plain C interface, for programs in C, C#, Delphi, Python or anything else that can call a
 * DLL.
 *
 *   static void SPEECH_CALL on_event(void* user, const SpeechEvent* event) {
 *     if (event->kind == SPEECH_EVENT_WORD) printf("%u ", (unsigned)event->utf8_offset);
 *   }
 *
 *   SpeechEngine engine;
 *   int32_t error = speech_engine_open(0, on_event, NULL, &engine);
 *   if (error == SPEECH_OK) error = speech_speak(engine, "Hello, world.", 0);
 *   if (error == SPEECH_OK) error = speech_wait(engine, -1);
 *   if (error != SPEECH_OK) puts(speech_error_text(error));
 *   speech_release();
 *
 * Results: SPEECH_OK or a negative SpeechError. What a function hands out comes through pointers, which are
 * left alone when it fails. No exception leaves a function; null pointers, handles of closed engines and
 * malformed text are errors, never crashes.
 *
 * Text: functions take UTF-8; those whose names end in _w take UTF-16. Every text is zero-terminated. A text
 * that the library hands out goes into the caller's buffer, terminated; `length` (may be null) receives its
 * length without the terminator, in bytes of UTF-8 or units of UTF-16, also when the buffer is too small
 * (SPEECH_ERROR_BUFFER; a null buffer of capacity 0 asks for the length).
 *
 * Thread: the first call makes its thread the library's until speech_release; other threads get
 * SPEECH_ERROR_WRONG_THREAD. Events arrive on that thread while it dispatches window messages or is inside
 * speech_wait. A callback may call any function, speech_engine_close and speech_release included, but what
 * runs a program (exports, the dictionary editor) dispatches messages meanwhile: a callback that comes then
 * gets SPEECH_ERROR_BUSY from every function that needs the library.
 *
 * One engine at a time: the process has one live engine. To change voices close the engine and open another.
 * A program uses either this interface or the C++ one, not both at once.
 *
 * Calling convention: cdecl. It is the default of C compilers, its export names carry no decoration whatever
 * the compiler, and every language that can call DLLs knows it. Pointers and size_t are 32 bit.
 *
 * Stability: functions, numbers and fields stay as they are; new ones are added behind them.
 */

#include <stddef.h>
#include <stdint.h>

#include "audio/export.h"

#ifdef _WIN32
#define SPEECH_CALL __cdecl
#else
#define SPEECH_CALL
#endif

#ifdef __cplusplus
extern "C" {
#endif

/** Results of all functions. */
enum SpeechError {
  SPEECH_OK = 0,
  SPEECH_ERROR_ARGUMENT = -1,     /**< A null pointer, or a number that means nothing. */
  SPEECH_ERROR_HANDLE = -2,       /**< The handle is null, or its engine has been closed. */
  SPEECH_ERROR_ENGINE_OPEN = -3,  /**< Another engine is open; close it first. */
  SPEECH_ERROR_WRONG_THREAD = -4, /**< The library belongs to another thread. */
  SPEECH_ERROR_BUSY = -5,         /**< The engine is speaking, or a call is under way that must end first. */
  SPEECH_ERROR_STATE = -6,        /**< Nothing is being spoken that could be paused or resumed. */
  SPEECH_ERROR_TEXT = -7,         /**< Malformed UTF-8 or UTF-16. */
  SPEECH_ERROR_RANGE = -8,        /**< The value is outside the range of the option. */
  SPEECH_ERROR_BUFFER = -9,       /**< The buffer is too small; the length says what is needed. */
  SPEECH_ERROR_VOICE = -10,       /**< There is no voice or language of that index. */
  SPEECH_ERROR_LOAD = -11,        /**< The voice's engine could not be loaded. */
  SPEECH_ERROR_REFUSED = -12,     /**< The engine refused the text or the setting. */
  SPEECH_ERROR_SERVICE = -13,     /**< The speech service failed; speech_error_detail has its words. */
  SPEECH_ERROR_UNSUPPORTED = -14, /**< The voice cannot do this, or not in that format or at that rate. */
  SPEECH_ERROR_TOOL = -15,        /**< A program that this needs is missing or could not be started. */
  SPEECH_ERROR_FILE = -16,        /**< A file could not be opened, read or written. */
  SPEECH_ERROR_DICTIONARY = -17,  /**< The engine refused the dictionary; speech_error_detail says more. */
  SPEECH_ERROR_TIMEOUT = -18,     /**< The time was over before the speech. */
  SPEECH_ERROR_QUIT = -19,        /**< The program was asked to quit (WM_QUIT) while it waited. */
  SPEECH_ERROR_MEMORY = -20,      /**< Out of memory. */
  SPEECH_ERROR_INTERNAL = -21     /**< A fault of the library. */
};

/** An open engine. Numbers in disguise: a stale one is recognised, never followed. */
typedef struct SpeechEngineHandle* SpeechEngine;

/** What has happened to a speech. */
enum SpeechEventKind {
  SPEECH_EVENT_STARTED = 1, /**< The text was accepted (local voice), or its playback begins (cloud voice). */
  SPEECH_EVENT_WORD = 2,    /**< A word is heard. Local voices only. */
  SPEECH_EVENT_FINISHED = 3, /**< The speech ran to its end. Not after speech_stop. */
  SPEECH_EVENT_FAILED = 4    /**< speech_speak failed: the engine or the service refused the text. */
};

/** An event. Belongs to the library; valid while the callback or the message is being handled. */
typedef struct SpeechEvent {
  uint32_t size;         /**< Size of this record in bytes; later versions may be longer. */
  int32_t kind;          /**< SpeechEventKind. */
  SpeechEngine engine;   /**< The engine that spoke. */
  uint32_t utf8_offset;  /**< Word: its place in the text, in bytes of the text's UTF-8 form. */
  uint32_t utf8_length;  /**< Word: its length in bytes. */
  uint32_t utf16_offset; /**< Word: its place in the text, in units of the text's UTF-16 form. */
  uint32_t utf16_length; /**< Word: its length in units. */
  int32_t error;         /**< Failed: what speech_speak returned; otherwise SPEECH_OK. */
  const char* message;   /**< Failed: what the service or the engine said, UTF-8; never null, often empty. */
} SpeechEvent;

/** Receives events on the library's thread. Must not throw. */
typedef void(SPEECH_CALL* SpeechCallback)(void* user, const SpeechEvent* event);

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
  SPEECH_VOICE_INFO4 = 8,              /**< Likewise. */
  SPEECH_VOICE_INFO5 = 9,              /**< Likewise. */
  SPEECH_VOICE_INFO7 = 10,             /**< Likewise. */
  SPEECH_VOICE_ENGINE_INFO1 = 11,      /**< Free text of the engine itself. */
  SPEECH_VOICE_ENGINE_INFO2 = 12,      /**< Likewise. */
  SPEECH_VOICE_DICTIONARY_EDITOR = 13, /**< Path of the voice's dictionary editor. */
  SPEECH_VOICE_DICTIONARY_PATH2 = 14,  /**< Path of a dictionary file of the voice. */
  SPEECH_VOICE_DICTIONARY_PATH3 = 15   /**< Likewise; what the editor opens by itself. */
};

/** Numbers of a voice (speech_voice_number). */
enum SpeechVoiceNumber {
  SPEECH_VOICE_SAMPLE_RATE = 0, /**< In hertz. */
  SPEECH_VOICE_INFO9 = 1,       /**< Free number of the engine library. */
  SPEECH_VOICE_IS_CLOUD = 2     /**< 1 for a voice of the cloud service, else 0. */
};

/** Settings of a voice. Speed, pitch and volume: 100 is the voice's own; pauses are in the engine's unit (the
 * bundled engine library: milliseconds). */
enum SpeechOption {
  SPEECH_OPTION_SPEED = 0,
  SPEECH_OPTION_VOLUME = 1,
  SPEECH_OPTION_PITCH = 2,
  SPEECH_OPTION_PAUSE = 3,      /**< Pause at the end of a sentence. */
  SPEECH_OPTION_COMMA_PAUSE = 4 /**< Pause at a comma. */
};

/** How a text is to be taken: any of these together, or 0. */
enum SpeechFlag {
  SPEECH_FLAG_SSML = 1,      /**< The text is an SSML document. */
  SPEECH_FLAG_INTERRUPT = 2, /**< speech_speak: stop what is being spoken first, where it would be "busy". */
  SPEECH_FLAG_LOG = 4        /**< speech_export: add a line to the daily log. */
};

/** What an engine is doing (speech_state). */
enum SpeechState { SPEECH_STATE_IDLE = 0, SPEECH_STATE_SPEAKING = 1, SPEECH_STATE_PAUSED = 2 };

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

/** Questions about entries of a user dictionary (speech_dictionary_ask). */
enum SpeechDictionaryQuestion {
  SPEECH_DICTIONARY_LIMIT = 0,         /**< The largest number of entries. */
  SPEECH_DICTIONARY_SOURCE_LENGTH = 1, /**< Is the source's length allowed? */
  SPEECH_DICTIONARY_SOURCE_NORM = 2,   /**< Is the source well formed? */
  SPEECH_DICTIONARY_TARGET_NORM = 3,   /**< Is the replacement well formed? */
  SPEECH_DICTIONARY_TARGET_PHON = 4,   /**< Is the pronunciation well formed? */
  SPEECH_DICTIONARY_SUBSTITUTION = 5   /**< Is the entry as a whole allowed? */
};

/** @name The library as a whole
 * @{ */

/** The library's version: major * 65536 + minor * 256 + patch. Any thread. */
SPEECH_API uint32_t SPEECH_CALL speech_version(void);

/** The same as text, such as "1.2.3". Lives as long as the library. Any thread. */
SPEECH_API const char* SPEECH_CALL speech_version_text(void);

/** One English sentence for a result; a sentence saying so for a number that is none. ASCII, never null,
 * lives as long as the library. Any thread. */
SPEECH_API const char* SPEECH_CALL speech_error_text(int32_t error);

/** What the engine, the service or the system said of the last failure; empty when it said nothing. Every
 * function but this one and those for any thread forgets it.
 * @param buffer    receives the text; may be null when `capacity` is 0
 * @param capacity  size of `buffer` in bytes
 * @param length    receives the text's length in bytes; may be null
 * @return SPEECH_OK, ARGUMENT, BUFFER or WRONG_THREAD */
SPEECH_API int32_t SPEECH_CALL speech_error_detail(char* buffer, uint32_t capacity, uint32_t* length);

/** Closes the engine, forgets the voices with their options, and gives the thread free. Harmless when there
 * is nothing to release. The next call starts anew. A program that unloads the library (FreeLibrary) calls this
 * before; one that just ends need not.
 * @return SPEECH_OK, WRONG_THREAD, BUSY; ENGINE_OPEN when the live engine belongs to the C++ interface */
SPEECH_API int32_t SPEECH_CALL speech_release(void);

/** @}
 * @name Voices
 * Voices are numbered from 0 in the engine library's order, which stays the same until speech_release. The
 * first call that needs them takes a moment: it asks the engine library for all of them.
 * @{ */

/** How many voices are installed. @param count receives the number @return SPEECH_OK, ARGUMENT, WRONG_THREAD
 */
SPEECH_API int32_t SPEECH_CALL speech_voice_count(int32_t* count);

/** A text of a voice.
 * @param voice     from 0
 * @param which     SpeechVoiceText
 * @param buffer    receives the text; may be null when `capacity` is 0
 * @param capacity  size of `buffer` in bytes (_w: in units)
 * @param length    receives the text's length in bytes (_w: in units); may be null
 * @return SPEECH_OK, ARGUMENT, VOICE, BUFFER, WRONG_THREAD */
SPEECH_API int32_t SPEECH_CALL speech_voice_text(int32_t voice, int32_t which, char* buffer,
                                                 uint32_t capacity, uint32_t* length);
/** As speech_voice_text, in UTF-16. */
SPEECH_API int32_t SPEECH_CALL speech_voice_text_w(int32_t voice, int32_t which, wchar_t* buffer,
                                                   uint32_t capacity, uint32_t* length);

/** A number of a voice.
 * @param which  SpeechVoiceNumber
 * @param value  receives the number
 * @return SPEECH_OK, ARGUMENT, VOICE, WRONG_THREAD */
SPEECH_API int32_t SPEECH_CALL speech_voice_number(int32_t voice, int32_t which, int32_t* value);

/** How many different language codes the voices have. @param count receives the number
 * @return SPEECH_OK, ARGUMENT, WRONG_THREAD */
SPEECH_API int32_t SPEECH_CALL speech_language_count(int32_t* count);

/** A language code by its place, in the order in which the voices bring them up; codes that differ in case
 * only are one. Arguments as for speech_voice_text.
 * @return SPEECH_OK, ARGUMENT, VOICE, BUFFER, WRONG_THREAD */
SPEECH_API int32_t SPEECH_CALL speech_language(int32_t index, char* buffer, uint32_t capacity,
                                               uint32_t* length);
/** As speech_language, in UTF-16. */
SPEECH_API int32_t SPEECH_CALL speech_language_w(int32_t index, wchar_t* buffer, uint32_t capacity,
                                                 uint32_t* length);

/** @}
 * @name Options
 * Options belong to voices and live until speech_release. While a voice's engine is open, its options take
 * effect with the next text.
 * @{ */

/** The bounds and the default of an option. Each pointer may be null.
 * @param option  SpeechOption
 * @return SPEECH_OK, ARGUMENT, VOICE, WRONG_THREAD */
SPEECH_API int32_t SPEECH_CALL speech_option_range(int32_t voice, int32_t option, int32_t* minimum,
                                                   int32_t* maximum, int32_t* standard);

/** The value of an option. @return SPEECH_OK, ARGUMENT, VOICE, WRONG_THREAD */
SPEECH_API int32_t SPEECH_CALL speech_option_get(int32_t voice, int32_t option, int32_t* value);

/** Changes an option.
 * @return SPEECH_OK, ARGUMENT, VOICE, RANGE, WRONG_THREAD; REFUSED when the open engine does not take it */
SPEECH_API int32_t SPEECH_CALL speech_option_set(int32_t voice, int32_t option, int32_t value);

/** Gives every option of a voice its default. @return as speech_option_set */
SPEECH_API int32_t SPEECH_CALL speech_option_reset(int32_t voice);

/** @}
 * @name Engines
 * @{ */

/** Opens the engine of a voice and loads it. Programs that are needed (sox.exe) are looked for beside the
 * library.
 * @param voice     from 0
 * @param callback  receives the events; may be null
 * @param user      handed to the callback as it is
 * @param engine    receives the handle
 * @return SPEECH_OK, ARGUMENT, VOICE, LOAD, ENGINE_OPEN, WRONG_THREAD */
SPEECH_API int32_t SPEECH_CALL speech_engine_open(int32_t voice, SpeechCallback callback, void* user,
                                                  SpeechEngine* engine);

/** Has every event sent to a window as well: `message` with the kind in wParam and the SpeechEvent's address
 * in lParam. It is sent, not posted, so that the record is valid while the window handles it.
 * @param window   a window (HWND) of this thread; null to end it
 * @param message  a message number of the program's own
 * @return SPEECH_OK, HANDLE, WRONG_THREAD; ARGUMENT when it is no window of this thread */
SPEECH_API int32_t SPEECH_CALL speech_engine_window(SpeechEngine engine, void* window, uint32_t message);

/** The voice of an engine. @param voice receives its index @return SPEECH_OK, ARGUMENT, HANDLE, WRONG_THREAD
 */
SPEECH_API int32_t SPEECH_CALL speech_engine_voice(SpeechEngine engine, int32_t* voice);

/** Unloads the engine and loads it again, for instance after its data have changed. Speech is stopped first.
 * @return SPEECH_OK, HANDLE, LOAD, WRONG_THREAD */
SPEECH_API int32_t SPEECH_CALL speech_engine_reload(SpeechEngine engine);

/** Stops and unloads the engine. No event comes after this. @return SPEECH_OK, HANDLE, BUSY, WRONG_THREAD */
SPEECH_API int32_t SPEECH_CALL speech_engine_close(SpeechEngine engine);

/** Names the folder that holds sox.exe, with or without a backslash at its end.
 * @return SPEECH_OK, ARGUMENT, HANDLE, TEXT, WRONG_THREAD */
SPEECH_API int32_t SPEECH_CALL speech_set_tool_folder(SpeechEngine engine, const char* folder);
/** As speech_set_tool_folder, in UTF-16. */
SPEECH_API int32_t SPEECH_CALL speech_set_tool_folder_w(SpeechEngine engine, const wchar_t* folder);

/** Chooses the sound device for the next speech of a local voice.
 * @param device  device number from 0; -1 for the system's default
 * @return SPEECH_OK, ARGUMENT, HANDLE, WRONG_THREAD */
SPEECH_API int32_t SPEECH_CALL speech_set_output_device(SpeechEngine engine, int32_t device);

/** @}
 * @name Speaking
 * Every accepted text leads to one STARTED, to WORD as its words are heard, and to one FINISHED unless it is
 * stopped before. Every text that the engine or the service refuses leads to one FAILED, besides the result.
 * @{ */

/** Speaks a text and returns once it is accepted. A cloud voice is asked for its sound first, which can take
 * as long as the network does. Events that are due are delivered first.
 * @param flags  SPEECH_FLAG_SSML, SPEECH_FLAG_INTERRUPT
 * @return SPEECH_OK, ARGUMENT, HANDLE, TEXT, REFUSED, SERVICE, WRONG_THREAD; BUSY while the engine speaks or
 * pauses */
SPEECH_API int32_t SPEECH_CALL speech_speak(SpeechEngine engine, const char* text, uint32_t flags);
/** As speech_speak, in UTF-16. */
SPEECH_API int32_t SPEECH_CALL speech_speak_w(SpeechEngine engine, const wchar_t* text, uint32_t flags);

/** Halts playback. Harmless when it is halted. @return SPEECH_OK, HANDLE, STATE, WRONG_THREAD */
SPEECH_API int32_t SPEECH_CALL speech_pause(SpeechEngine engine);

/** Goes on after speech_pause. Harmless when nothing is paused but a speech runs.
 * @return SPEECH_OK, HANDLE, STATE, WRONG_THREAD */
SPEECH_API int32_t SPEECH_CALL speech_resume(SpeechEngine engine);

/** Silences at once and forgets the rest of the text. No event of that speech comes after this. Harmless when
 * nothing is spoken. @return SPEECH_OK, HANDLE, WRONG_THREAD */
SPEECH_API int32_t SPEECH_CALL speech_stop(SpeechEngine engine);

/** What the engine is doing. A speech counts as running until its FINISHED is delivered.
 * @param state  receives a SpeechState
 * @return SPEECH_OK, ARGUMENT, HANDLE, WRONG_THREAD */
SPEECH_API int32_t SPEECH_CALL speech_state(SpeechEngine engine, int32_t* state);

/** Dispatches this thread's window messages, and with them events, until nothing is spoken any more.
 * @param timeout_ms  the longest time in milliseconds; 0 delivers what is due; negative: as long as it takes
 * @return SPEECH_OK, WRONG_THREAD, TIMEOUT, QUIT; HANDLE also when a callback closed the engine */
SPEECH_API int32_t SPEECH_CALL speech_wait(SpeechEngine engine, int32_t timeout_ms);

/** @}
 * @name Files and samples
 * @{ */

/** Synthesizes a text into a sound file. The file appears complete or not at all: a failure leaves a file
 * that was there before as it was.
 * @param flags        SPEECH_FLAG_SSML, SPEECH_FLAG_LOG
 * @param format       SpeechFormat; the path's extension does not matter
 * @param sample_rate  8000, 16000, 22050, 44100 or 48000 Hz; 0 for the voice's own (22050 where that is none
 * of them)
 * @param path         the file
 * @return SPEECH_OK, ARGUMENT, HANDLE, TEXT, REFUSED, SERVICE, UNSUPPORTED, TOOL, FILE, WRONG_THREAD; BUSY
 * while the engine speaks */
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
 * @param path         the file
 * @return SPEECH_OK, ARGUMENT, HANDLE, TEXT, UNSUPPORTED, TOOL, FILE, BUSY, WRONG_THREAD */
SPEECH_API int32_t SPEECH_CALL speech_export_samples(SpeechEngine engine, const void* samples,
                                                     uint32_t byte_count, int32_t sample_rate, int32_t format,
                                                     const char* path);
/** As speech_export_samples, with a UTF-16 path. */
SPEECH_API int32_t SPEECH_CALL speech_export_samples_w(SpeechEngine engine, const void* samples,
                                                       uint32_t byte_count, int32_t sample_rate,
                                                       int32_t format, const wchar_t* path);

/** Synthesizes a text into memory.
 * @param flags        SPEECH_FLAG_SSML
 * @param sample_rate  in hertz, 0 for the voice's own; a cloud voice knows those of speech_export only
 * @param audio        receives the samples
 * @return SPEECH_OK, ARGUMENT, HANDLE, TEXT, REFUSED, SERVICE, UNSUPPORTED, MEMORY, WRONG_THREAD; BUSY while
 * the engine speaks */
SPEECH_API int32_t SPEECH_CALL speech_synthesize(SpeechEngine engine, const char* text, uint32_t flags,
                                                 int32_t sample_rate, SpeechAudio* audio);
/** As speech_synthesize, in UTF-16. */
SPEECH_API int32_t SPEECH_CALL speech_synthesize_w(SpeechEngine engine, const wchar_t* text, uint32_t flags,
                                                   int32_t sample_rate, SpeechAudio* audio);

/** Releases the samples and empties the record. Null and empty records are fine. Any thread. */
SPEECH_API void SPEECH_CALL speech_audio_free(SpeechAudio* audio);

/** @}
 * @name User dictionaries
 * Local voices only; a cloud voice answers SPEECH_ERROR_UNSUPPORTED.
 * @{ */

/** Loads a user dictionary in place of the one before: a word list when the path ends in ".csv", else a
 * lexicon of pronunciations.
 * @return SPEECH_OK, ARGUMENT, HANDLE, TEXT, DICTIONARY, UNSUPPORTED, WRONG_THREAD; FILE when it cannot be
 * read or is empty */
SPEECH_API int32_t SPEECH_CALL speech_dictionary_load(SpeechEngine engine, const char* path);
/** As speech_dictionary_load, in UTF-16. */
SPEECH_API int32_t SPEECH_CALL speech_dictionary_load_w(SpeechEngine engine, const wchar_t* path);

/** Unloads a word list. @param number 0 for the one that speech_dictionary_load loaded
 * @return SPEECH_OK, HANDLE, DICTIONARY, UNSUPPORTED, WRONG_THREAD */
SPEECH_API int32_t SPEECH_CALL speech_dictionary_unload(SpeechEngine engine, int32_t number);

/** Asks the engine about a dictionary entry by the engine's own rules.
 * @param question  SpeechDictionaryQuestion
 * @param argument  number or address that the engine wants for it; handed on unread
 * @param answer    receives the engine's answer
 * @return SPEECH_OK, ARGUMENT, HANDLE, WRONG_THREAD; UNSUPPORTED when the engine has no answer */
SPEECH_API int32_t SPEECH_CALL speech_dictionary_ask(SpeechEngine engine, int32_t question, intptr_t argument,
                                                     int32_t* answer);

/** Runs the voice's dictionary editor and returns once the user has closed it; messages are dispatched
 * meanwhile.
 * @param path   the file to edit; null for the voice's own
 * @param extra  further parameters for the editor's command line; may be null
 * @return SPEECH_OK, HANDLE, TEXT, TOOL, BUSY, WRONG_THREAD */
SPEECH_API int32_t SPEECH_CALL speech_dictionary_edit(SpeechEngine engine, const char* path,
                                                      const char* extra);
/** As speech_dictionary_edit, in UTF-16. */
SPEECH_API int32_t SPEECH_CALL speech_dictionary_edit_w(SpeechEngine engine, const wchar_t* path,
                                                        const wchar_t* extra);

/** @}
 * @name Text
 * @{ */

/** A text with & < > ' " replaced by XML entities, to be put into an SSML document. Any thread.
 * @return SPEECH_OK, ARGUMENT, TEXT, BUFFER, MEMORY */
SPEECH_API int32_t SPEECH_CALL speech_escape_xml(const char* text, char* buffer, uint32_t capacity,
                                                 uint32_t* length);
/** As speech_escape_xml, in UTF-16. */
SPEECH_API int32_t SPEECH_CALL speech_escape_xml_w(const wchar_t* text, wchar_t* buffer, uint32_t capacity,
                                                   uint32_t* length);

/** @} */

#ifdef __cplusplus
} /* extern "C" */
#endif

#endif /* SPEECH_SPEECH_C_H */
