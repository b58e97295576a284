#ifndef SPEECH_C_ENGINES_H
#define SPEECH_C_ENGINES_H

/** @file
 * The plain C interface: engines, and the events that they raise. */

/* NOLINTBEGIN(modernize-*): this is C. */
#include <speech/c/base.h>

#ifdef __cplusplus
extern "C" {
#endif

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

/** Receives events on the library's thread. Must not throw.
 * @param user   what speech_engine_open was given
 * @param event  valid during the call */
typedef void(SPEECH_CALL* SpeechCallback)(void* user, const SpeechEvent* event);

/** @name Engines
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

/** Has every event sent to a window as well: `message` with the kind in wParam and the SpeechEvent's
 * address in lParam. It is sent, not posted, so that the record is valid while the window handles it.
 * @param engine   an open engine
 * @param window   a window (HWND) of this thread; null to end it
 * @param message  a message number of the program's own
 * @return SPEECH_OK, HANDLE, WRONG_THREAD; ARGUMENT when it is no window of this thread */
SPEECH_API int32_t SPEECH_CALL speech_engine_window(SpeechEngine engine, void* window, uint32_t message);

/** Switches the delivery of events off, or on again; an engine is opened with it on. What comes meanwhile
 * is not delivered later. speech_state and speech_wait follow the speech all the same.
 * @param engine  an open engine
 * @param on      0 for off, anything else for on
 * @return SPEECH_OK, HANDLE, WRONG_THREAD */
SPEECH_API int32_t SPEECH_CALL speech_engine_events(SpeechEngine engine, int32_t on);

/** The voice of an engine.
 * @param engine  an open engine
 * @param voice   receives its index
 * @return SPEECH_OK, ARGUMENT, HANDLE, WRONG_THREAD */
SPEECH_API int32_t SPEECH_CALL speech_engine_voice(SpeechEngine engine, int32_t* voice);

/** Unloads the engine and loads it again, for instance after its data have changed. Speech is stopped
 * first.
 * @param engine  an open engine
 * @return SPEECH_OK, HANDLE, LOAD, WRONG_THREAD */
SPEECH_API int32_t SPEECH_CALL speech_engine_reload(SpeechEngine engine);

/** Gives back what the engine holds in memory, and loads it again: a program that speaks seldom does
 * without meanwhile. An unloaded engine refuses texts. Speech is stopped first.
 * @param engine  an open engine
 * @return SPEECH_OK, HANDLE, WRONG_THREAD; LOAD when the engine refuses, as one does that is unloaded
 *   twice */
SPEECH_API int32_t SPEECH_CALL speech_engine_unload(SpeechEngine engine);
/** As speech_engine_unload, but loads. @copydetails speech_engine_unload */
SPEECH_API int32_t SPEECH_CALL speech_engine_load(SpeechEngine engine);

/** Stops and unloads the engine. No event comes after this.
 * @param engine  an open engine
 * @return SPEECH_OK, HANDLE, BUSY, WRONG_THREAD */
SPEECH_API int32_t SPEECH_CALL speech_engine_close(SpeechEngine engine);

/** Names the folder that holds sox.exe, with or without a backslash at its end.
 * @param engine  an open engine
 * @param folder  the folder
 * @return SPEECH_OK, ARGUMENT, HANDLE, TEXT, WRONG_THREAD */
SPEECH_API int32_t SPEECH_CALL speech_set_tool_folder(SpeechEngine engine, const char* folder);
/** As speech_set_tool_folder, in UTF-16. @copydetails speech_set_tool_folder */
SPEECH_API int32_t SPEECH_CALL speech_set_tool_folder_w(SpeechEngine engine, const wchar_t* folder);

/** Chooses the sound device for the next speech of a local voice.
 * @param engine  an open engine
 * @param device  device number from 0; -1 for the system's default
 * @return SPEECH_OK, ARGUMENT, HANDLE, WRONG_THREAD */
SPEECH_API int32_t SPEECH_CALL speech_set_output_device(SpeechEngine engine, int32_t device);

/** @} */

#ifdef __cplusplus
} /* extern "C" */
#endif
/* NOLINTEND(modernize-*) */

#endif /* SPEECH_C_ENGINES_H */
