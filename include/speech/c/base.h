#ifndef SPEECH_C_BASE_H
#define SPEECH_C_BASE_H

/** @file
 * The plain C interface: results, handles, the library as a whole. Programs include speech/speech_c.h. */

/* NOLINTBEGIN(modernize-*): this is C. */
#include <stddef.h>
#include <stdint.h>

#include <speech/export.h>

/** How the functions are called: cdecl. */
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
  SPEECH_OK = 0,                  /**< Done. */
  SPEECH_ERROR_ARGUMENT = -1,     /**< A null pointer, or a number that means nothing. */
  SPEECH_ERROR_HANDLE = -2,       /**< The handle is null, or its engine has been closed. */
  SPEECH_ERROR_ENGINE_OPEN = -3,  /**< Another engine is open; close it first. */
  SPEECH_ERROR_WRONG_THREAD = -4, /**< The library belongs to another thread. */
  SPEECH_ERROR_BUSY = -5,         /**< The engine is speaking, or a call is under way that must end first. */
  SPEECH_ERROR_STATE = -6,        /**< Nothing is being spoken. */
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
  SPEECH_ERROR_TIMEOUT = -18,     /**< Timed out before the speech ended. */
  SPEECH_ERROR_QUIT = -19,        /**< The program was asked to quit (WM_QUIT) while it waited. */
  SPEECH_ERROR_MEMORY = -20,      /**< Out of memory. */
  SPEECH_ERROR_INTERNAL = -21     /**< A fault of the library. */
};

/** An open engine. A number in disguise: a stale one is recognised, never followed. */
typedef struct SpeechEngineHandle* SpeechEngine;

/** @name The library as a whole
 * @{ */

/** The library's version: major * 65536 + minor * 256 + patch. Any thread. */
SPEECH_API uint32_t SPEECH_CALL speech_version(void);

/** The same as text, such as "1.2.3". Lives as long as the library. Any thread. */
SPEECH_API const char* SPEECH_CALL speech_version_text(void);

/** One English sentence for a result, also for an unknown number. ASCII, never null, lives as long as the
 * library. Any thread. */
SPEECH_API const char* SPEECH_CALL speech_error_text(int32_t error);

/** What the engine, the service or the system said about the last failure, UTF-8; often empty. Every function
 * but this one and those for any thread forgets it. */
SPEECH_API int32_t SPEECH_CALL speech_error_detail(char* buffer, uint32_t capacity, uint32_t* length);

/** Closes the engine, forgets the voices with their options, and releases the thread. Harmless when there is
 * nothing to release. The next call starts anew. A program that unloads the library (FreeLibrary) calls this
 * first; one that just ends need not.
 * @return also BUSY, and ENGINE_OPEN when the live engine belongs to the C++ interface */
SPEECH_API int32_t SPEECH_CALL speech_release(void);

/** @} */

#ifdef __cplusplus
} /* extern "C" */
#endif
/* NOLINTEND(modernize-*) */

#endif /* SPEECH_C_BASE_H */
