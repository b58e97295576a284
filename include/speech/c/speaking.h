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

/** Speaks a text and returns once it is accepted. The sound of a cloud voice is fetched before that, which
 * can take as long as the network does. Events that are due are delivered first.
 * @param flags  SPEECH_FLAG_SSML, SPEECH_FLAG_INTERRUPT
 * @return also REFUSED, SERVICE, and BUSY while the engine speaks or pauses */
SPEECH_API int32_t SPEECH_CALL speech_speak(SpeechEngine engine, const char* text, uint32_t flags);
/** As speech_speak, in UTF-16. */
SPEECH_API int32_t SPEECH_CALL speech_speak_w(SpeechEngine engine, const wchar_t* text, uint32_t flags);

/** Halts playback. Harmless when it is halted.
 * @return also STATE when nothing is spoken */
SPEECH_API int32_t SPEECH_CALL speech_pause(SpeechEngine engine);

/** Goes on after speech_pause. Harmless when playback is not halted.
 * @return also STATE when nothing is spoken */
SPEECH_API int32_t SPEECH_CALL speech_resume(SpeechEngine engine);

/** Silences at once and drops the rest of the text. No event of that speech comes after this. Harmless when
 * nothing is spoken. */
SPEECH_API int32_t SPEECH_CALL speech_stop(SpeechEngine engine);

/** What the engine is doing. A speech counts as running until its FINISHED is delivered.
 * @param state  receives a SpeechState */
SPEECH_API int32_t SPEECH_CALL speech_state(SpeechEngine engine, int32_t* state);

/** Dispatches this thread's window messages, and with them events, until nothing is spoken any more.
 * @param timeout_ms  the longest time in milliseconds; 0 delivers what is due; negative: as long as it takes
 * @return also TIMEOUT, QUIT, and HANDLE when a callback closed the engine */
SPEECH_API int32_t SPEECH_CALL speech_wait(SpeechEngine engine, int32_t timeout_ms);

/** @} */

/** @name Text
 * @{ */

/** A text with & < > ' " replaced by XML entities, for use in an SSML document. Any thread. */
SPEECH_API int32_t SPEECH_CALL speech_escape_xml(const char* text, char* buffer, uint32_t capacity,
                                                 uint32_t* length);
/** As speech_escape_xml, in UTF-16. */
SPEECH_API int32_t SPEECH_CALL speech_escape_xml_w(const wchar_t* text, wchar_t* buffer, uint32_t capacity,
                                                   uint32_t* length);

/** @} */

#ifdef __cplusplus
} /* extern "C" */
#endif

#endif /* SPEECH_C_SPEAKING_H */
