#ifndef SPEECH_C_SPEAKING_H
#define SPEECH_C_SPEAKING_H

/** @file
 * The plain C interface: speaking to the sound device. */

#include <speech/c/base.h>

#ifdef __cplusplus
extern "C" {
#endif

/** How a text is to be taken: any of these together, or 0. */
enum SpeechFlag {
  SPEECH_FLAG_SSML = 1,      /**< The text is an SSML document. */
  SPEECH_FLAG_INTERRUPT = 2, /**< speech_speak: stop what is being spoken first, where it would be "busy". */
  SPEECH_FLAG_LOG = 4        /**< speech_export: add a line to the daily log. */
};

/** What an engine is doing (speech_state). */
enum SpeechState {
  SPEECH_STATE_IDLE = 0,     /**< Nothing is spoken. */
  SPEECH_STATE_SPEAKING = 1, /**< A text is spoken. */
  SPEECH_STATE_PAUSED = 2    /**< A text is halted. */
};

/** @name Speaking
 * Every accepted text leads to one STARTED, to WORD as its words are heard, and to one FINISHED unless it is
 * stopped before. Every text that the engine or the service refuses leads to one FAILED, besides the result.
 * @{ */

/** Speaks a text and returns once it is accepted. A cloud voice is asked for its sound first, which can
 * take as long as the network does. Events that are due are delivered first.
 * @param engine  an open engine
 * @param text    what to speak
 * @param flags   SPEECH_FLAG_SSML, SPEECH_FLAG_INTERRUPT
 * @return SPEECH_OK, ARGUMENT, HANDLE, TEXT, REFUSED, SERVICE, WRONG_THREAD; BUSY while the engine speaks
 *   or pauses */
SPEECH_API int32_t SPEECH_CALL speech_speak(SpeechEngine engine, const char* text, uint32_t flags);
/** As speech_speak, in UTF-16. @copydetails speech_speak */
SPEECH_API int32_t SPEECH_CALL speech_speak_w(SpeechEngine engine, const wchar_t* text, uint32_t flags);

/** Halts playback. Harmless when it is halted.
 * @param engine  an open engine
 * @return SPEECH_OK, HANDLE, STATE, WRONG_THREAD */
SPEECH_API int32_t SPEECH_CALL speech_pause(SpeechEngine engine);

/** Goes on after speech_pause. Harmless when nothing is paused but a speech runs.
 * @param engine  an open engine
 * @return SPEECH_OK, HANDLE, STATE, WRONG_THREAD */
SPEECH_API int32_t SPEECH_CALL speech_resume(SpeechEngine engine);

/** Silences at once and forgets the rest of the text. No event of that speech comes after this. Harmless
 * when nothing is spoken.
 * @param engine  an open engine
 * @return SPEECH_OK, HANDLE, WRONG_THREAD */
SPEECH_API int32_t SPEECH_CALL speech_stop(SpeechEngine engine);

/** What the engine is doing. A speech counts as running until its FINISHED is delivered.
 * @param engine  an open engine
 * @param state   receives a SpeechState
 * @return SPEECH_OK, ARGUMENT, HANDLE, WRONG_THREAD */
SPEECH_API int32_t SPEECH_CALL speech_state(SpeechEngine engine, int32_t* state);

/** Dispatches this thread's window messages, and with them events, until nothing is spoken any more.
 * @param engine      an open engine
 * @param timeout_ms  the longest time in milliseconds; 0 delivers what is due; negative: as long as it
 *   takes
 * @return SPEECH_OK, WRONG_THREAD, TIMEOUT, QUIT; HANDLE also when a callback closed the engine */
SPEECH_API int32_t SPEECH_CALL speech_wait(SpeechEngine engine, int32_t timeout_ms);

/** @} */

/** @name Text
 * @{ */

/** A text with & < > ' " replaced by XML entities, to be put into an SSML document. Any thread.
 * @param text      any text
 * @param buffer    receives the text; may be null when `capacity` is 0
 * @param capacity  size of `buffer` in bytes (_w: in units)
 * @param length    receives the text's length in bytes (_w: in units); may be null
 * @return SPEECH_OK, ARGUMENT, TEXT, BUFFER, MEMORY */
SPEECH_API int32_t SPEECH_CALL speech_escape_xml(const char* text, char* buffer, uint32_t capacity,
                                                 uint32_t* length);
/** As speech_escape_xml, in UTF-16. @copydetails speech_escape_xml */
SPEECH_API int32_t SPEECH_CALL speech_escape_xml_w(const wchar_t* text, wchar_t* buffer, uint32_t capacity,
                                                   uint32_t* length);

/** @} */

#ifdef __cplusplus
} /* extern "C" */
#endif

#endif /* SPEECH_C_SPEAKING_H */
