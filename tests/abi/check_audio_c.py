#!/usr/bin/env python3
"""Holds the C header of the audio utilities against the C++ headers that define them: the same functions, records and
numbers."""

import pathlib
import re
import sys

SOURCE = pathlib.Path(__file__).resolve().parents[2]
CPP_HEADERS = [SOURCE / "audio" / f"{name}.h" for name in
               "wav_header rate_converter rate_wrappers stream_converter file_io".split()]
C_HEADER = SOURCE / "include/speech/audio_c.h"


def declarations(paths):
    """By name: functions with their types, fields of records, values of enumerations, written alike."""
    text = "\n".join(path.read_text() for path in paths)
    text = re.sub(r"//[^\n]*|/\*.*?\*/|^#[^\n]*", "", text, flags=re.DOTALL | re.MULTILINE)
    text = " ".join(text.replace("std::", "").replace("(void)", "()").split())
    found = {match[1]: match[0] for match in re.finditer(r"SPEECH_API [^;(]*?(\w+)\([^;]*;", text)}
    found |= {match[1]: match[2] for match in re.finditer(r"struct (\w+) (\{.*?\})", text)}
    found |= {match[1]: match[2].replace(", }", " }")
              for match in re.finditer(r"enum (\w+)(?: : \w+)? (\{.*?\})", text)}
    return found


def main():
    wanted, found = declarations(CPP_HEADERS), declarations([C_HEADER])
    different = sorted(name for name in wanted.keys() | found.keys() if wanted.get(name) != found.get(name))
    for name in different:
        print(f"{name}:\n  C++: {wanted.get(name)}\n  C:   {found.get(name)}")
    if not different:
        print(f"{len(found)} declarations agree")
    return 1 if different or not found else 0


if __name__ == "__main__":
    sys.exit(main())
