"""speak.py TEXT: speaks a text with the first English voice. Needs a 32-bit Python, as speech.dll is 32-bit.

The library is looked for in the package's bin; SPEECH_DLL names another place.
"""

import ctypes
import os
import pathlib
import sys
from ctypes import c_char_p, c_int32, c_uint32, c_void_p

BIN = pathlib.Path(__file__).resolve().parents[2] / "bin"
VOICE_LANGUAGE = 4
EVENT_WORD = 2


class Event(ctypes.Structure):
    _fields_ = [("size", c_uint32), ("kind", c_int32), ("engine", c_void_p),
                ("utf8_offset", c_uint32), ("utf8_length", c_uint32),
                ("utf16_offset", c_uint32), ("utf16_length", c_uint32),
                ("error", c_int32), ("message", c_char_p)]


Callback = ctypes.CFUNCTYPE(None, c_void_p, ctypes.POINTER(Event))  # cdecl, as all of the library
speech = ctypes.CDLL(os.environ.get("SPEECH_DLL", str(BIN / "speech.dll")))
speech.speech_error_text.restype = c_char_p
speech.speech_engine_open.argtypes = [c_int32, Callback, c_void_p, ctypes.POINTER(c_void_p)]
speech.speech_speak.argtypes = [c_void_p, c_char_p, c_uint32]
speech.speech_wait.argtypes = [c_void_p, c_int32]


def check(result):
    if result != 0:
        sys.exit(speech.speech_error_text(result).decode())


def first_voice(language):
    code = ctypes.create_string_buffer(16)
    voice = 0
    while True:
        check(speech.speech_voice_text(voice, VOICE_LANGUAGE, code, len(code), None))
        if code.value.decode().startswith(language):
            return voice
        voice += 1


text = sys.argv[1].encode()


@Callback  # keep a reference for as long as the engine is open
def on_event(user, event):
    if event[0].kind == EVENT_WORD:
        start = event[0].utf8_offset
        print(text[start:start + event[0].utf8_length].decode(), flush=True)


engine = c_void_p()
check(speech.speech_engine_open(first_voice("en"), on_event, None, ctypes.byref(engine)))
check(speech.speech_speak(engine, text, 0))
check(speech.speech_wait(engine, -1))
speech.speech_release()
