#ifndef SPEECH_C_DICTIONARIES_H
#define SPEECH_C_DICTIONARIES_H

/** @file
 * The plain C interface: user dictionaries. */

#include <speech/c/base.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Questions of those who edit user dictionaries (speech_dictionary_ask). */
enum SpeechDictionaryQuestion {
  SPEECH_DICTIONARY_LIMIT = 0,         /**< The largest number of entries. */
  SPEECH_DICTIONARY_SOURCE_LENGTH = 1, /**< Is the source's length allowed? */
  SPEECH_DICTIONARY_SOURCE_NORM = 2,   /**< Is the source well formed? */
  SPEECH_DICTIONARY_TARGET_NORM = 3,   /**< Is the replacement well formed? */
  SPEECH_DICTIONARY_TARGET_PHON = 4,   /**< Is the pronunciation well formed? */
  SPEECH_DICTIONARY_SUBSTITUTION = 5,  /**< Is the entry as a whole allowed? */
  SPEECH_DICTIONARY_PINYIN = 6         /**< Argument 0: are Latin letters read as pinyin? 1 or 0. */
};

/** @name User dictionaries
 * Local voices only; a cloud voice answers SPEECH_ERROR_UNSUPPORTED.
 * @{ */

/** Loads a user dictionary in place of the one before: a word list when the path ends in ".csv", else a
 * lexicon of pronunciations.
 * @param engine  an open engine
 * @param path    the dictionary
 * @return SPEECH_OK, ARGUMENT, HANDLE, TEXT, DICTIONARY, UNSUPPORTED, WRONG_THREAD; FILE when it cannot be
 *   read or is empty */
SPEECH_API int32_t SPEECH_CALL speech_dictionary_load(SpeechEngine engine, const char* path);
/** As speech_dictionary_load, in UTF-16. @copydetails speech_dictionary_load */
SPEECH_API int32_t SPEECH_CALL speech_dictionary_load_w(SpeechEngine engine, const wchar_t* path);

/** Unloads a word list.
 * @param engine  an open engine
 * @param number  0 for the one that speech_dictionary_load loaded
 * @return SPEECH_OK, HANDLE, DICTIONARY, UNSUPPORTED, WRONG_THREAD */
SPEECH_API int32_t SPEECH_CALL speech_dictionary_unload(SpeechEngine engine, int32_t number);

/** Asks the engine about a dictionary or an entry of it, by the engine's own rules.
 * @param engine    an open engine
 * @param question  SpeechDictionaryQuestion
 * @param argument  number or address that the engine wants for it; handed on unread
 * @param answer    receives the engine's answer
 * @return SPEECH_OK, ARGUMENT, HANDLE, WRONG_THREAD; UNSUPPORTED when the engine has no answer */
SPEECH_API int32_t SPEECH_CALL speech_dictionary_ask(SpeechEngine engine, int32_t question, intptr_t argument,
                                                     int32_t* answer);

/** Runs the voice's dictionary editor and returns once the user has closed it; messages are dispatched
 * meanwhile.
 * @param engine  an open engine
 * @param path    the file to edit; null for the voice's own
 * @param extra   further parameters for the editor's command line; may be null
 * @return SPEECH_OK, HANDLE, TEXT, TOOL, BUSY, WRONG_THREAD */
SPEECH_API int32_t SPEECH_CALL speech_dictionary_edit(SpeechEngine engine, const char* path,
                                                      const char* extra);
/** As speech_dictionary_edit, in UTF-16. @copydetails speech_dictionary_edit */
SPEECH_API int32_t SPEECH_CALL speech_dictionary_edit_w(SpeechEngine engine, const wchar_t* path,
                                                        const wchar_t* extra);

/** @}
 * @name Lines of word lists
 * The engine's own reader and writer of CSV text, by which it will read a word list. Local voices only.
 * @{ */

/** A new reader. It is released with the engine library, by speech_release.
 * @param engine  an open engine
 * @param reader  receives it
 * @return SPEECH_OK, ARGUMENT, HANDLE, WRONG_THREAD; UNSUPPORTED when the engine has none to give */
SPEECH_API int32_t SPEECH_CALL speech_csv_reader(SpeechEngine engine, intptr_t* reader);

/** Reads a text's first record, or the next one.
 * @param engine  an open engine
 * @param reader  from speech_csv_reader
 * @param text    the text, which is copied; null for the next record of the text before
 * @param line    receives the line on which the record begins, from 1; 0 behind the last record
 * @return SPEECH_OK, ARGUMENT, HANDLE, TEXT, UNSUPPORTED, WRONG_THREAD; DICTIONARY when the record is
 *   malformed, or has fewer than two fields */
SPEECH_API int32_t SPEECH_CALL speech_csv_read(SpeechEngine engine, intptr_t reader, const char* text,
                                               int32_t* line);
/** As speech_csv_read, in UTF-16. @copydetails speech_csv_read */
SPEECH_API int32_t SPEECH_CALL speech_csv_read_w(SpeechEngine engine, intptr_t reader, const wchar_t* text,
                                                 int32_t* line);

/** How many fields the record has.
 * @param engine  an open engine
 * @param reader  from speech_csv_reader
 * @param count   receives the number
 * @return SPEECH_OK, ARGUMENT, HANDLE, UNSUPPORTED, WRONG_THREAD */
SPEECH_API int32_t SPEECH_CALL speech_csv_field_count(SpeechEngine engine, intptr_t reader, int32_t* count);

/** A field of the record, cut to what fits into 999 bytes of UTF-8; empty when there is no such field.
 * @param engine    an open engine
 * @param reader    from speech_csv_reader
 * @param index     from 0
 * @param buffer    receives the text; may be null when `capacity` is 0
 * @param capacity  size of `buffer` in bytes (_w: in units)
 * @param length    receives the text's length in bytes (_w: in units); may be null
 * @return SPEECH_OK, ARGUMENT, HANDLE, BUFFER, UNSUPPORTED, WRONG_THREAD */
SPEECH_API int32_t SPEECH_CALL speech_csv_field(SpeechEngine engine, intptr_t reader, int32_t index,
                                                char* buffer, uint32_t capacity, uint32_t* length);
/** As speech_csv_field, in UTF-16. @copydetails speech_csv_field */
SPEECH_API int32_t SPEECH_CALL speech_csv_field_w(SpeechEngine engine, intptr_t reader, int32_t index,
                                                  wchar_t* buffer, uint32_t capacity, uint32_t* length);

/** The record of an entry, quoted where that is needed.
 * @param engine                  an open engine
 * @param source                  the word
 * @param target                  what is said instead
 * @param buffer,capacity,length  as for speech_csv_field
 * @return SPEECH_OK, ARGUMENT, HANDLE, TEXT, BUFFER, REFUSED, UNSUPPORTED, MEMORY, WRONG_THREAD */
SPEECH_API int32_t SPEECH_CALL speech_csv_make(SpeechEngine engine, const char* source, const char* target,
                                               char* buffer, uint32_t capacity, uint32_t* length);
/** As speech_csv_make, in UTF-16. @copydetails speech_csv_make */
SPEECH_API int32_t SPEECH_CALL speech_csv_make_w(SpeechEngine engine, const wchar_t* source,
                                                 const wchar_t* target, wchar_t* buffer, uint32_t capacity,
                                                 uint32_t* length);

/** @} */

#ifdef __cplusplus
} /* extern "C" */
#endif

#endif /* SPEECH_C_DICTIONARIES_H */
