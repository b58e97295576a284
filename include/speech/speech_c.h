#ifndef SPEECH_SPEECH_C_H
#define SPEECH_SPEECH_C_H

/** @file
 * The library's plain C interface, for programs in C, C#, Delphi, Python or anything else that can call a
 * DLL.
 *
 *     static void SPEECH_CALL on_event(void* user, const SpeechEvent* event) {
 *       if (event->kind == SPEECH_EVENT_WORD) printf("%u ", (unsigned)event->utf8_offset);
 *     }
 *
 *     SpeechEngine engine;
 *     int32_t error = speech_engine_open(0, on_event, NULL, &engine);
 *     if (error == SPEECH_OK) error = speech_speak(engine, "Hello, world.", 0);
 *     if (error == SPEECH_OK) error = speech_wait(engine, -1);
 *     if (error != SPEECH_OK) puts(speech_error_text(error));
 *     speech_release();
 *
 * Results: SPEECH_OK or a negative SpeechError. What a function hands out comes through pointers, which are
 * left alone when it fails. No exception leaves a function; null pointers, handles of closed engines and
 * malformed text are errors, never crashes.
 *
 * Every function can answer SPEECH_ERROR_ARGUMENT (a null pointer that may not be null, an unknown number),
 * SPEECH_ERROR_WRONG_THREAD and SPEECH_ERROR_MEMORY, one that takes an engine SPEECH_ERROR_HANDLE and
 * SPEECH_ERROR_BUSY, one that takes a voice SPEECH_ERROR_VOICE, one that takes text SPEECH_ERROR_TEXT, and
 * one that fills a buffer SPEECH_ERROR_BUFFER. The headers name what comes besides.
 *
 * Text: functions take UTF-8; those whose names end in _w do the same in UTF-16. Every text is
 * zero-terminated. A text that the library hands out goes into the caller's buffer, terminated. `capacity` is
 * the buffer's size and `length` (may be null) receives the text's length without the terminator, both in
 * bytes of UTF-8 or units of UTF-16. It receives it also when the buffer is too small (SPEECH_ERROR_BUFFER);
 * a null buffer of capacity 0 asks for the length.
 *
 * Thread: the first call makes its thread the library's until speech_release; other threads get
 * SPEECH_ERROR_WRONG_THREAD. Events arrive on that thread while it dispatches window messages or is inside
 * speech_wait. A callback may call any function, speech_engine_close and speech_release included. But what
 * runs a program (exports, the dictionary editor) dispatches messages meanwhile, and for a callback that
 * comes then most functions answer SPEECH_ERROR_BUSY.
 *
 * One engine at a time: the process has one live engine. To change voices close the engine and open another.
 * A program uses either this interface or the C++ one, not both at once.
 *
 * Calling convention: cdecl. It is the default of C compilers, its export names carry no decoration whatever
 * the compiler, and every language that can call DLLs knows it. Pointers and size_t are 32 bit.
 *
 * Stability: functions, numbers and fields stay as they are; new ones are added behind them.
 */

#include <speech/c/base.h>
#include <speech/c/dictionaries.h>
#include <speech/c/engines.h>
#include <speech/c/files.h>
#include <speech/c/speaking.h>
#include <speech/c/voices.h>

#endif /* SPEECH_SPEECH_C_H */
