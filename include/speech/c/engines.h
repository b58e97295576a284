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
 * @param user  what speech_engine_open was given */
typedef void(SPEECH_CALL* SpeechCallback)(void* user, const SpeechEvent* event);

/** @name Engines
 * @{ */

/** Opens the engine of a voice and loads it. It looks for sox.exe beside the library.
 * @param callback  receives the events; may be null
 * @param user      handed to the callback as it is
 * @return also LOAD, ENGINE_OPEN, BUSY */
SPEECH_API int32_t SPEECH_CALL speech_engine_open(int32_t voice, SpeechCallback callback, void* user,
                                                  SpeechEngine* engine);

/** Sends every event to a window as well: `message` with the kind in wParam and the SpeechEvent's address in
 * lParam. It is sent, not posted, so that the record is valid while the window handles it.
 * @param window   a window (HWND) of this thread, else SPEECH_ERROR_ARGUMENT; null to end it
 * @param message  a message number of the program's own */
SPEECH_API int32_t SPEECH_CALL speech_engine_window(SpeechEngine engine, void* window, uint32_t message);

/** Switches the delivery of events off (0) or on again. An engine is opened with it on. What happens while it
 * is off is not delivered later. speech_state and speech_wait follow the speech all the same. */
SPEECH_API int32_t SPEECH_CALL speech_engine_events(SpeechEngine engine, int32_t on);

/** The voice of an engine. */
SPEECH_API int32_t SPEECH_CALL speech_engine_voice(SpeechEngine engine, int32_t* voice);

/** Stops the speech, unloads the engine and loads it again, for instance after its data have changed.
 * @return also LOAD */
SPEECH_API int32_t SPEECH_CALL speech_engine_reload(SpeechEngine engine);

/** Stops the speech and frees the memory that the engine needs. Until speech_engine_load it refuses texts.
 * @return also LOAD when the engine refuses, as one does that is unloaded twice */
SPEECH_API int32_t SPEECH_CALL speech_engine_unload(SpeechEngine engine);
/** Loads the engine again after speech_engine_unload.
 * @return also LOAD */
SPEECH_API int32_t SPEECH_CALL speech_engine_load(SpeechEngine engine);

/** Stops and unloads the engine. No event comes after this. */
SPEECH_API int32_t SPEECH_CALL speech_engine_close(SpeechEngine engine);

/** Names the folder that holds sox.exe, with or without a backslash at its end. */
SPEECH_API int32_t SPEECH_CALL speech_set_tool_folder(SpeechEngine engine, const char* folder);
/** As speech_set_tool_folder, in UTF-16. */
SPEECH_API int32_t SPEECH_CALL speech_set_tool_folder_w(SpeechEngine engine, const wchar_t* folder);

/** Chooses the sound device for the next speech of a local voice.
 * @param device  from 0; -1 for the system's default */
SPEECH_API int32_t SPEECH_CALL speech_set_output_device(SpeechEngine engine, int32_t device);

/** @} */

#ifdef __cplusplus
} /* extern "C" */
#endif
/* NOLINTEND(modernize-*) */

#endif /* SPEECH_C_ENGINES_H */
