#ifndef SPEECH_C_DICTIONARIES_H
#define SPEECH_C_DICTIONARIES_H

/** @file
 * The plain C interface: user dictionaries. */

#include <speech/c/base.h>

#ifdef __cplusplus
extern "C" {
#endif

/** What editors of user dictionaries ask the engine (speech_dictionary_ask). */
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
 * @return also DICTIONARY, and FILE when it cannot be read or is empty */
SPEECH_API int32_t SPEECH_CALL speech_dictionary_load(SpeechEngine engine, const char* path);
/** As speech_dictionary_load, in UTF-16. */
SPEECH_API int32_t SPEECH_CALL speech_dictionary_load_w(SpeechEngine engine, const wchar_t* path);

/** Unloads a word list.
 * @param number  0 for the one that speech_dictionary_load loaded
 * @return also DICTIONARY */
SPEECH_API int32_t SPEECH_CALL speech_dictionary_unload(SpeechEngine engine, int32_t number);

/** Asks the engine about a dictionary or an entry of it, by the engine's own rules.
 * @param question  SpeechDictionaryQuestion
 * @param argument  the number or address that the engine expects; handed on unread
 * @return also UNSUPPORTED when the engine has no answer */
SPEECH_API int32_t SPEECH_CALL speech_dictionary_ask(SpeechEngine engine, int32_t question, intptr_t argument,
                                                     int32_t* answer);

/** Runs the voice's dictionary editor and returns once the user has closed it; messages are dispatched
 * meanwhile.
 * @param path   the file to edit; null for the voice's own
 * @param extra  further parameters for the editor's command line; may be null
 * @return also TOOL */
SPEECH_API int32_t SPEECH_CALL speech_dictionary_edit(SpeechEngine engine, const char* path,
                                                      const char* extra);
/** As speech_dictionary_edit, in UTF-16. */
SPEECH_API int32_t SPEECH_CALL speech_dictionary_edit_w(SpeechEngine engine, const wchar_t* path,
                                                        const wchar_t* extra);

/** @}
 * @name Lines of word lists
 * The engine's own reader and writer of CSV text, by which it reads a word list. Local voices only; a cloud
 * voice answers SPEECH_ERROR_UNSUPPORTED.
 * @{ */

/** A new reader. It is released with the engine library, by speech_release.
 * @return also UNSUPPORTED when the engine has none to give */
SPEECH_API int32_t SPEECH_CALL speech_csv_reader(SpeechEngine engine, intptr_t* reader);

/** Reads a text's first record, or the next one.
 * @param reader  from speech_csv_reader
 * @param text    the text, which is copied; null for the next record of the text before
 * @param line    receives the line on which the record begins, from 1; 0 behind the last record
 * @return also UNSUPPORTED, and DICTIONARY when the record is malformed or has fewer than two fields */
SPEECH_API int32_t SPEECH_CALL speech_csv_read(SpeechEngine engine, intptr_t reader, const char* text,
                                               int32_t* line);
/** As speech_csv_read, in UTF-16. */
SPEECH_API int32_t SPEECH_CALL speech_csv_read_w(SpeechEngine engine, intptr_t reader, const wchar_t* text,
                                                 int32_t* line);

/** How many fields the record has.
 * @return also UNSUPPORTED */
SPEECH_API int32_t SPEECH_CALL speech_csv_field_count(SpeechEngine engine, intptr_t reader, int32_t* count);

/** A field of the record, from 0, cut to what fits into 999 bytes of UTF-8; empty when there is no such
 * field.
 * @return also UNSUPPORTED */
SPEECH_API int32_t SPEECH_CALL speech_csv_field(SpeechEngine engine, intptr_t reader, int32_t index,
                                                char* buffer, uint32_t capacity, uint32_t* length);
/** As speech_csv_field, in UTF-16. */
SPEECH_API int32_t SPEECH_CALL speech_csv_field_w(SpeechEngine engine, intptr_t reader, int32_t index,
                                                  wchar_t* buffer, uint32_t capacity, uint32_t* length);

/** The record of an entry, quoted where that is needed.
 * @param source  the word
 * @param target  what is said instead
 * @return also REFUSED, UNSUPPORTED */
SPEECH_API int32_t SPEECH_CALL speech_csv_make(SpeechEngine engine, const char* source, const char* target,
                                               char* buffer, uint32_t capacity, uint32_t* length);
/** As speech_csv_make, in UTF-16. */
SPEECH_API int32_t SPEECH_CALL speech_csv_make_w(SpeechEngine engine, const wchar_t* source,
                                                 const wchar_t* target, wchar_t* buffer, uint32_t capacity,
                                                 uint32_t* length);

/** @} */

#ifdef __cplusplus
} /* extern "C" */
#endif

#endif /* SPEECH_C_DICTIONARIES_H */
