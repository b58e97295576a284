"""Holds the numbers that the documents' tables give against the headers.

usage: check_numbers.py HEADER...
"""

import pathlib
import re
import sys

SOURCE = pathlib.Path(__file__).resolve().parents[2]
LIMITS = SOURCE / "lxapi" / "bundled" / "dictionary.h"


def enumerators(headers):
    text = "\n".join(pathlib.Path(header).read_text(encoding="utf-8") for header in headers)
    return {name: int(value, 0) for name, value in re.findall(r"\b(\w+)\s*=\s*(-?\d\w*)\s*[,/\n}]", text)}


def document(name):
    return (SOURCE / "docs" / name).read_text(encoding="utf-8")


def claims(constants):
    """What a document says, what the headers say, where."""
    for number, name in re.findall(r"(-?\d+) `([A-Z_]+)`", document("troubleshooting.md")):
        yield int(number), constants["SPEECH_OK" if name == "OK" else f"SPEECH_ERROR_{name}"], f"troubleshooting.md, {name}"
    for number, name in re.findall(r"^\| (\w+) \(`(\w+)`\)", document("notices.md"), flags=re.M):
        yield int(number, 0), constants[name], f"notices.md, {name}"
    for number, name, c_name in re.findall(r"^\| (\d+) \| `(\w+)` \| `(\w+)`", document("formats.md"), flags=re.M):
        yield int(number), constants[name], f"formats.md, {name}"
        yield int(number), constants[c_name], f"formats.md, {c_name}"
    errors = {value: name for name, value in constants.items() if name.startswith("LX_ERROR")}
    for code, low_bits in re.findall(r"^\| (-\d+) \| (\d+) \|", document("dictionaries.md"), flags=re.M):
        yield int(low_bits), int(code) & 0xFFFF, f"dictionaries.md, {errors[int(code)]}"
    limits = dict(re.findall(r"(kMost\w+|kLongest\w+) = ([\d']+U? ?<?<? ?\d*)", LIMITS.read_text(encoding="utf-8")))
    stated = document("dictionaries.md").split("## Limits")[1].split("\n## ")[0]
    for pattern, name in ((r"(\d+) MiB", "kMostDictionaryBytes"), (r"entries \| ([\d,]+)", "kMostDictionaryEntries"),
                          (r"phrase \| (\d+)", "kLongestSource"), (r"instead \| (\d+)", "kLongestTarget"),
                          (r"at a time \| (\d+), n", "kMostDictionaries")):
        shown = int(re.search(pattern, stated)[1].replace(",", "")) << (20 if "MiB" in pattern else 0)
        yield shown, eval(limits[name].replace("'", "").replace("U", "")), f"dictionaries.md, {name}"


def main(headers):
    checked = list(claims(enumerators(headers)))
    wrong = [(what, says, true) for says, true, what in checked if says != true]
    for what, says, true in wrong:
        print(f"docs/{what}: {says}, but it is {true}")
    print(f"{len(checked)} numbers, {len(wrong)} wrong")
    return 0 if len(checked) > 45 and not wrong else 1


sys.exit(main(sys.argv[1:]))
