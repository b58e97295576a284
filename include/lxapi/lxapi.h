#pragma once

/// @file
/// The engine library's interface: what liblxapi.dll exports.
///
/// An engine library enumerates installed synthesis engines, speaks text to a sound device, to a file or to
/// memory, and reports progress through an event procedure. Anybody can supply one: implement every function
/// below, name the DLL liblxapi.dll and put it beside speech.dll.
///
///     LXAPI_Init();
///     uint32_t engine = LXAPI_GetEngine("English (America)", "Male");
///     uint32_t tts = LXAPI_CreateHandle();
///     LXAPI_SetEngineHandle(tts, engine);
///     LXAPI_LoadEngine(engine);
///     LXAPI_Speak(tts, "Hello, world.", -1, LX_SPEAK_ASYNC);
///     ...
///     LXAPI_Exit();
///
/// Handles are 32-bit numbers, 0 is no handle. Results are 32-bit, LX_OK (0) means success, a negative value
/// is one of the LX_ERROR codes. Narrow text is in the calling thread's code page unless it says otherwise.
/// Every function may be called from any thread; calls on one synthesis handle are serialised by the library.

// NOLINTBEGIN(modernize-*): hosts in C include this header too.
#include <stddef.h>
#include <stdint.h>
#include <wchar.h>

/// How the functions are called: __stdcall, and plain names in the DLL's export table.
#ifdef _WIN32
#define LXAPI_CALL __stdcall
#else
#define LXAPI_CALL
#endif

/// How LXAPI_CallEngineInternal is called, because of its open list.
#ifdef _WIN32
#define LXAPI_CDECL __cdecl
#else
#define LXAPI_CDECL
#endif

#ifdef __cplusplus
extern "C" {
#endif

/// Results. Any other negative value of a foreign engine library is an error without a name here.
enum LxResult {
  LX_OK = 0,                        ///< Done.
  LX_ERROR_FAILED = -1,             ///< No better code fits.
  LX_ERROR_BAD_HANDLE = -2,         ///< The handle is 0, unknown, or of the other kind.
  LX_ERROR_BAD_ARGUMENT = -3,       ///< A null pointer or a number out of range.
  LX_ERROR_BAD_TEXT = -4,           ///< Malformed UTF-8.
  LX_ERROR_NOT_LOADED = -5,         ///< No engine is bound, or it is not loaded.
  LX_ERROR_BUSY = -6,               ///< The handle is already speaking.
  LX_ERROR_UNKNOWN_ATTRIBUTE = -7,  ///< No such attribute, information number or internal function.
  /// The file code is not served (nothing was written), or the engine speaks elsewhere.
  LX_ERROR_UNSUPPORTED = -8,
  LX_ERROR_FILE = -9,          ///< A file could not be opened, read or written.
  LX_ERROR_DEVICE = -10,       ///< The sound device could not be opened.
  LX_ERROR_MEMORY = -11,       ///< Out of memory.
  LX_ERROR_NOT_STARTED = -12,  ///< LXAPI_Init has not been called.
  // A user dictionary or a lexicon is refused; the one that was loaded before stays.
  LX_ERROR_DICT_EMPTY = -13,     ///< It has no entry.
  LX_ERROR_DICT_SIZE = -14,      ///< The file is too large, or has too many entries.
  LX_ERROR_DICT_FORMAT = -15,    ///< A quote is never closed, or a record has fewer than two fields.
  LX_ERROR_DICT_ENTRY = -16,     ///< An entry fails a check (LxDictCheck).
  LX_ERROR_DICT_DUPLICATE = -17  ///< Two entries have the same source.
};

/// Flags of the speak calls.
enum LxSpeakFlag {
  LX_SPEAK_ASYNC = 2,  ///< Return as soon as the text is accepted. Always the behaviour; hosts pass it.
  LX_SPEAK_SSML = 128  ///< The text is an SSML document.
};

/// Attributes of a synthesis handle (LXAPI_SetAttr) and of an engine (LXAPI_SetEngineAttr).
enum LxAttribute {
  LX_ATTR_PITCH = 0,           ///< Synthesis: 100 is the voice's own pitch.
  LX_ATTR_SPEED = 1,           ///< Synthesis: 100 is the voice's own speed.
  LX_ATTR_VOLUME = 2,          ///< Synthesis: 100 is normal.
  LX_ATTR_SENTENCE_PAUSE = 3,  ///< Synthesis: pause at a sentence end, in milliseconds.
  LX_ATTR_LEXICON = 4,         ///< Synthesis: 0.
  LX_ATTR_COMMA_PAUSE = 5,     ///< Engine: pause at a comma, in milliseconds.
  LX_ATTR_RESERVED = 6         ///< Synthesis: 0.
};

/// Events; their values are the bits of LXAPI_SetEvent's mask.
enum LxEventNumber {
  LX_EVENT_BOOKMARK = 1,         ///< An SSML mark was reached; `name` holds its name.
  LX_EVENT_END = 2,              ///< The speech ran to its end. Not raised after LXAPI_Stop.
  LX_EVENT_BOOKMARK_PHRASE = 8,  ///< A bookmark of an engine that raises them by phrase.
  LX_EVENT_WORD = 16,     ///< A word is heard: `word1` its offset, `word2` its length, in UTF-16 units.
  LX_EVENT_SENTENCE = 32  ///< A sentence is heard; words as for LX_EVENT_WORD.
};

/// File codes of LXAPI_SetOutputFile. The bundled engine library refuses those that it marks so.
enum LxFileCode {
  LX_FILE_PCM = 0,     ///< 16-bit mono samples without a header, at the engine's rate.
  LX_FILE_CODE_3 = 3,  ///< An engine's own compressed format; refused by the bundled library.
  LX_FILE_WAV = 5,     ///< A WAV file of 16-bit mono samples at the engine's rate.
  LX_FILE_ALAW = 6,    ///< A WAV file, A-law.
  LX_FILE_MULAW = 7,   ///< A WAV file, mu-law.
  LX_FILE_CODE_8 = 8   ///< An engine's own compressed format; refused by the bundled library.
};

/// Information numbers of the internal function "LX_GetTTSInfo".
enum LxInformation {
  LX_INFO_PITCH_MAXIMUM = 11,        ///< Highest pitch.
  LX_INFO_PITCH_DEFAULT = 12,        ///< Default pitch.
  LX_INFO_PITCH_MINIMUM = 13,        ///< Lowest pitch.
  LX_INFO_SPEED_MAXIMUM = 14,        ///< Highest speed.
  LX_INFO_SPEED_DEFAULT = 15,        ///< Default speed.
  LX_INFO_SPEED_MINIMUM = 16,        ///< Lowest speed.
  LX_INFO_VOLUME_MAXIMUM = 17,       ///< Highest volume.
  LX_INFO_VOLUME_DEFAULT = 18,       ///< Default volume.
  LX_INFO_VOLUME_MINIMUM = 19,       ///< Lowest volume.
  LX_INFO_PAUSE_MAXIMUM = 20,        ///< Longest sentence pause.
  LX_INFO_PAUSE_DEFAULT = 21,        ///< Default sentence pause.
  LX_INFO_PAUSE_MINIMUM = 22,        ///< Shortest sentence pause.
  LX_INFO_COMMA_PAUSE_MAXIMUM = 24,  ///< Longest comma pause.
  LX_INFO_COMMA_PAUSE_DEFAULT = 25,  ///< Default comma pause.
  LX_INFO_COMMA_PAUSE_MINIMUM = 26   ///< Shortest comma pause.
};

/// Results of the checks of a user dictionary's entries.
enum LxDictCheck {
  LX_DICT_OK = 0,            ///< Good.
  LX_DICT_EMPTY = 1,         ///< Empty.
  LX_DICT_TOO_LONG = 2,      ///< Beyond its limit.
  LX_DICT_BAD_TEXT = 3,      ///< Malformed UTF-8.
  LX_DICT_CONTROL = 4,       ///< Control characters, for instance a line end.
  LX_DICT_NO_WORD = 5,       ///< No letter and no digit.
  LX_DICT_BAD_PHONEMES = 6,  ///< Not phonemes in eSpeak NG's notation.
  LX_DICT_BAD_RECORD = 7     ///< Not a CSV record of two fields or more.
};

/// Limits that "LX_GetUserDictLimit" returns.
enum LxDictLimit {
  LX_DICT_LIMIT_ENTRIES = 0,  ///< Most entries.
  LX_DICT_LIMIT_SOURCE = 1,   ///< Longest source, in characters.
  LX_DICT_LIMIT_TARGET = 2,   ///< Longest target, in characters.
  LX_DICT_LIMIT_BYTES = 3,    ///< Largest file.
  LX_DICT_LIMIT_NUMBERS = 4   ///< How many dictionaries an engine can have at a time, numbered from 0.
};

/// Describes an engine. Texts are zero-terminated.
typedef struct LXTTSINFO {
  wchar_t name[128];    ///< The engine's name.
  wchar_t version[32];  ///< Its version.
  wchar_t text1[128];   ///< Free text shown to users, for instance the maker.
  wchar_t text2[128];   ///< Free text shown to users, for instance the licence.
  wchar_t folder[260];  ///< The engine's installation folder, without a trailing backslash.
} LXTTSINFO;

/// Where LXAPI_Speak plays.
typedef struct LXAUDIOOUT {
  int32_t kind;           ///< Always 1: a sound device.
  int32_t bitsPerSample;  ///< Always 16.
  int32_t sampleRateHz;   ///< Rate of the samples.
  int32_t device;         ///< Device number from 0, or -1 for the system's default device.
} LXAUDIOOUT;

/// An event as the event procedure receives it: 288 bytes, owned by the library for the duration of the call.
typedef struct LXEVENT {
  uint32_t reserved;  ///< 0.
  uint32_t word1;     ///< Depends on the event, see LxEventNumber.
  uint32_t word2;     ///< Depends on the event, too.
  char name[276];     ///< Bookmark name, UTF-8, zero-terminated.
} LXEVENT;

/// Receives events, on a thread of the library's own.
/// @param tts     the synthesis handle that speaks
/// @param event   LxEventNumber
/// @param record  the event's details, valid during the call
typedef void(LXAPI_CALL* LXEVENTPROC)(uint32_t tts, int32_t event, const LXEVENT* record);

/// Starts the library. Calls nest: each LXAPI_Init needs its own LXAPI_Exit.
/// @return LX_OK or an error
int32_t LXAPI_CALL LXAPI_Init(void);

/// Ends the library: stops every speech and releases every handle and text.
/// @return LX_OK or LX_ERROR_NOT_STARTED
int32_t LXAPI_CALL LXAPI_Exit(void);

/// Begins the enumeration of installed engines.
/// @return the first engine's cursor, or 0 when none is installed
uint32_t LXAPI_CALL LXAPI_GetFirstInstalledEngine(void);

/// Continues the enumeration.
/// @param cursor  the previous one
/// @return the next cursor, or 0 at the end
uint32_t LXAPI_CALL LXAPI_GetNextInstalledEngine(uint32_t cursor);

/// Describes an installed engine. Every pointer is optional. Texts belong to the library and live until
/// LXAPI_Exit.
/// @param cursor         from the enumeration
/// @param key1,key2      the pair that names the engine to LXAPI_GetEngine
/// @param engineNumber   the engine's place in the enumeration, from 0
/// @param text3,text4,text5,text7  free texts
/// @param gender         "F", "M" or empty
/// @param sampleRateHz   rate of the samples that the engine makes
/// @param number9        free number
/// @param language       language code in the form "en-US"
/// @param engineType     names the kind of engine; "skyvo" is a voice of the cloud service
/// @return LX_OK, LX_ERROR_BAD_HANDLE or LX_ERROR_NOT_STARTED
int32_t LXAPI_CALL LXAPI_GetEngineInfoFieldEx2(uint32_t cursor, const wchar_t** key1, const wchar_t** key2,
                                               int32_t* engineNumber, const wchar_t** text3,
                                               const wchar_t** text4, const wchar_t** text5,
                                               const wchar_t** gender, const wchar_t** text7,
                                               int32_t* sampleRateHz, int32_t* number9,
                                               const wchar_t** language, const wchar_t** engineType);

/// Makes a synthesis handle: what speaks, with settings and outputs of its own.
/// @return the handle, or 0; it lives until LXAPI_Exit
uint32_t LXAPI_CALL LXAPI_CreateHandle(void);

/// Finds an engine by its keys, which are compared without regard to case.
/// @param key1,key2  in the thread's code page
/// @return the engine's handle, or 0; it lives until LXAPI_Exit
uint32_t LXAPI_CALL LXAPI_GetEngine(const char* key1, const char* key2);

/// Describes an engine.
/// @param engine  an engine's handle
/// @param info    receives the answer
/// @return LX_OK, LX_ERROR_BAD_HANDLE, LX_ERROR_BAD_ARGUMENT or LX_ERROR_NOT_STARTED
int32_t LXAPI_CALL LXAPI_GetTTSInfo(uint32_t engine, LXTTSINFO* info);

/// Binds an engine to a synthesis handle.
/// @param tts     the synthesis handle
/// @param engine  the engine's handle
/// @return LX_OK, LX_ERROR_BAD_HANDLE or LX_ERROR_NOT_STARTED
int32_t LXAPI_CALL LXAPI_SetEngineHandle(uint32_t tts, uint32_t engine);

/// Loads an engine; one that is loaded can be loaded again.
/// @param engine  the engine's handle
/// @return LX_OK or an error; LX_ERROR_UNSUPPORTED for an engine that speaks elsewhere
int32_t LXAPI_CALL LXAPI_LoadEngine(uint32_t engine);
/// Unloads an engine; what it speaks is stopped.
/// @param engine  the engine's handle
/// @return LX_OK, LX_ERROR_NOT_LOADED, or another error
int32_t LXAPI_CALL LXAPI_UnloadEngine(uint32_t engine);

/// Sets an attribute of a synthesis handle.
/// @param tts        the synthesis handle
/// @param attribute  LxAttribute
/// @param value      brought into the attribute's range
/// @return LX_OK, LX_ERROR_UNKNOWN_ATTRIBUTE, or another error
int32_t LXAPI_CALL LXAPI_SetAttr(uint32_t tts, int32_t attribute, int32_t value);
/// Sets an attribute of an engine.
/// @param engine     the engine's handle
/// @param attribute  LX_ATTR_COMMA_PAUSE
/// @param value      brought into the attribute's range
/// @return LX_OK, LX_ERROR_UNKNOWN_ATTRIBUTE, or another error
int32_t LXAPI_CALL LXAPI_SetEngineAttr(uint32_t engine, int32_t attribute, int32_t value);

/// Chooses the sound device for the next LXAPI_Speak.
/// @param tts     the synthesis handle
/// @param output  the device
/// @return LX_OK, LX_ERROR_BAD_ARGUMENT, or another error
int32_t LXAPI_CALL LXAPI_SetOutputAudio(uint32_t tts, LXAUDIOOUT output);

/// Registers the event procedure for the speeches that begin from now on.
/// @param tts        the synthesis handle
/// @param procedure  null for none
/// @param mask       the bits of the events that it wants (LxEventNumber)
/// @return LX_OK or an error
int32_t LXAPI_CALL LXAPI_SetEvent(uint32_t tts, LXEVENTPROC procedure, int32_t mask);

/// Speaks a text; returns once it is accepted.
/// @param tts     the synthesis handle
/// @param utf8    the text; copied
/// @param length  in bytes, or -1 when the text is zero-terminated
/// @param flags   LxSpeakFlag
/// @return LX_OK, or LX_ERROR_BUSY while the handle is speaking, or another error
int32_t LXAPI_CALL LXAPI_Speak(uint32_t tts, const char* utf8, int32_t length, int32_t flags);

/// As LXAPI_Speak; hosts call it for engines whose second key holds a capital N.
/// @param tts,utf8,length,flags  as for LXAPI_Speak
/// @param reserved               -1
/// @return as LXAPI_Speak
int32_t LXAPI_CALL LXAPI_SynthesizeAsync(uint32_t tts, const char* utf8, int32_t length, int32_t flags,
                                         int32_t reserved);

/// Silences at once and forgets the rest of the text.
/// @param tts  the synthesis handle
/// @return LX_OK, also when nothing was spoken, or an error
int32_t LXAPI_CALL LXAPI_Stop(uint32_t tts);

/// Halts playback.
/// @param tts  the synthesis handle
/// @return LX_OK, also when nothing is spoken, or an error
int32_t LXAPI_CALL LXAPI_Pause(uint32_t tts);
/// Continues playback.
/// @param tts  the synthesis handle
/// @return as LXAPI_Pause
int32_t LXAPI_CALL LXAPI_Resume(uint32_t tts);

/// Names the file for the next LXAPI_TextToFile.
/// @param tts       the synthesis handle
/// @param path      in the system's code page
/// @param fileCode  LxFileCode
/// @return LX_OK, LX_ERROR_UNSUPPORTED for a code that is not served, or another error
int32_t LXAPI_CALL LXAPI_SetOutputFile(uint32_t tts, const char* path, int32_t fileCode);

/// Synthesizes a text into the file of LXAPI_SetOutputFile; returns when the file is complete.
/// @param tts,utf8,length,flags  as for LXAPI_Speak
/// @return LX_OK or an error; no file is left behind then
int32_t LXAPI_CALL LXAPI_TextToFile(uint32_t tts, const char* utf8, int32_t length, int32_t flags);

/// Begins a synthesis to memory.
/// @param tts       the synthesis handle
/// @param reserved  0
/// @return LX_OK or an error
int32_t LXAPI_CALL LXAPI_SetOutputBuffer(uint32_t tts, int32_t reserved);
/// Renders a whole text for LXAPI_GetBuffer.
/// @param tts,utf8,length,flags  as for LXAPI_Speak
/// @param reserved               0
/// @return LX_OK or an error
int32_t LXAPI_CALL LXAPI_BufferOpen(uint32_t tts, const char* utf8, int32_t length, int32_t flags,
                                    int32_t reserved);
/// Hands out what was rendered.
/// @param tts     the synthesis handle
/// @param buffer  receives the address of 16-bit mono samples at the engine's rate, for LXAPI_FreeBuffer
/// @return their size in bytes, or an error
int32_t LXAPI_CALL LXAPI_GetBuffer(uint32_t tts, void** buffer);
/// Releases samples.
/// @param buffer  from LXAPI_GetBuffer
/// @return LX_OK or an error
int32_t LXAPI_CALL LXAPI_FreeBuffer(void* buffer);
/// Ends the synthesis to memory.
/// @param tts  the synthesis handle
/// @return LX_OK or an error
int32_t LXAPI_CALL LXAPI_BufferClose(uint32_t tts);

/// Loads a user dictionary under a number, in place of the one that has the number.
///
/// A dictionary is a CSV file (RFC 4180) in UTF-8: a word or phrase, what is spoken instead of it, and
/// further fields, which are ignored, such as a part of speech. It works on whole words, the longest source
/// first; of several dictionaries the lowest number comes first. A source without capitals stands for
/// every way of writing it, one with capitals exactly for itself. Speech that is already running is not
/// affected.
/// @param engine  the engine's handle
/// @param number  from 0 to one less than LX_DICT_LIMIT_NUMBERS
/// @param path    in the system's code page
/// @return LX_OK, LX_ERROR_FILE, LX_ERROR_BAD_TEXT, one of the LX_ERROR_DICT codes, or another error
int32_t LXAPI_CALL LXAPI_LoadUserDict(uint32_t engine, int32_t number, const char* path);
/// Unloads a user dictionary.
/// @param engine  the engine's handle
/// @param number  its number
/// @return LX_OK, LX_ERROR_NOT_LOADED when there is none, or another error
int32_t LXAPI_CALL LXAPI_UnloadUserDict(uint32_t engine, int32_t number);

/// Opens a lexicon: a file like a dictionary, with pronunciations in eSpeak NG's phoneme notation, for
/// instance "tomato,t@m'A:toU".
/// @param path  in the system's code page
/// @return the lexicon's handle, or 0; it lives until LXAPI_Exit
uint32_t LXAPI_CALL LXAPI_CreateLexiconHandle(const char* path);
/// Attaches a lexicon to a synthesis handle, in place of the one that is attached. It comes before the
/// dictionaries.
/// @param tts      the synthesis handle
/// @param lexicon  from LXAPI_CreateLexiconHandle
/// @return LX_OK, LX_ERROR_BAD_HANDLE, or another error
int32_t LXAPI_CALL LXAPI_SetLexiconHandle(uint32_t tts, uint32_t lexicon);

/// Calls a function of the engine by its name.
/// @param engine  the engine's handle
/// @param name    the function's name
/// @param result  receives the function's number, untouched when it has none; may be null where it has none
/// @param text    receives the function's text (a buffer of 1000 bytes); may be null where it has none
/// @param word    receives the function's pointer-sized value; may be null where it has none
/// @param count   how many pointer-sized arguments follow
/// @return LX_OK, or LX_ERROR_UNKNOWN_ATTRIBUTE for a name that the engine does not know
///
/// The functions, with their arguments; texts are addresses of zero-terminated UTF-8, and the answer is
/// written through `result` unless the list says otherwise. An argument that makes no sense leaves `result`
/// untouched.
///
/// "LX_GetTTSInfo"                   information number (LxInformation)
/// "LX_GetUserDictLimit"             LxDictLimit
/// "LX_CheckUserDict_SourceLen"      text: is it a source of allowed length? Answers LxDictCheck
/// "LX_CheckUserDict_SourceNorm"     text: is it a good source?
/// "LX_CheckUserDict_TargetNorm"     text: is it a good target of a dictionary?
/// "LX_CheckUserDict_TargetPhon"     text: is it a good target of a lexicon?
/// "LX_CheckUserDict_Substitution"   text: is it a good CSV record of a dictionary?
/// "LX_CsvParser_Init"               none; a new CSV parser through `word`, which lives until LXAPI_Exit
/// "LX_CsvParser_Parsing"            parser, text or 0, least number of fields: reads the text's first
///                                   record (the text is copied), with 0 the next one. Answers the line
///                                   on which the record begins, 0 behind the last one,
///                                   LX_ERROR_DICT_FORMAT for a malformed record or one of too few
///                                   fields, LX_ERROR_BAD_TEXT for malformed UTF-8
/// "LX_CsvParser_GetNfields"         parser: how many fields the record has
/// "LX_CsvParser_GetField"           parser, index from 0: the field, cut to 999 bytes, through `text`
/// "LX_CsvParser_MakeCsv"            source text, target text, address of a buffer, its size in bytes:
///                                   writes their CSV record, zero-terminated. Answers its length in
///                                   bytes, or LX_ERROR_BAD_ARGUMENT where the buffer is too small
/// "LX_GetPinyinActiveInfo"          0, 0: does the engine read Latin letters as pinyin (1) or not (0)?
int32_t LXAPI_CDECL LXAPI_CallEngineInternal(uint32_t engine, const char* name, int32_t* result, char* text,
                                             void* word, int32_t count, ...);

#ifdef __cplusplus
}  // extern "C"

static_assert(sizeof(LXEVENT) == 288 && offsetof(LXEVENT, word1) == 4 && offsetof(LXEVENT, word2) == 8 &&
                  offsetof(LXEVENT, name) == 12,
              "the event record's layout is part of the interface");
#endif
// NOLINTEND(modernize-*)
