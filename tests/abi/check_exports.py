#!/usr/bin/env python3
"""Holds the export table of speech.dll against what hosts link to: plain functions by their unmangled names, the
operations of the exported classes, and nothing else.

usage: check_exports.py DLL
"""

import pathlib
import re
import struct
import sys

from slots import FOLDER, read_slots

FUNCTIONS = set("""
    LXUTIL_Initialize_WFHeader LXUTIL_Update_WFHeader LXUTIL_Write_WFHeader WAVHEADER_MAKER
    RATEAPI RATEAPI_PCM2PCM RATEAPI_interface RATEAPI_PCM2WAV RATEAPI_WAV2WAV RATEAPI_WAV2WAV_EX
    RATEAPI_MULTI_INIT RATEAPI_MULTI_PROCESS RATEAPI_MULTI_UNINIT
    set_endian_info FREAD FWRITE swapdata swapdata_forced get_filesize
    ExternMalloc ExternRealloc ExternFree
""".split())

# The plain C interface's headers are the list of its functions.
for header in (FOLDER.parent.parent / "include/speech/c").glob("*.h"):
    FUNCTIONS.update(re.findall(r"\bSPEECH_CALL (speech_\w+)\(", header.read_text()))

SETTINGS = ["Speed", "Volume", "Pitch", "Pause", "CommaPause"]

OPERATIONS = {
    "ITextToSpeech": """getInstance releaseInstance reloadEngine setEventHandle getCurrentProduct
        getLXAPIProductList getISOCodeList getISOListAt getISOListCount""".split(),
    "LXAPIProduct": [re.search(r"(\w+)\(", signature).group(1) for signature in read_slots()["LXAPIProduct"]],
    "TextToSpeech_Options": [form.format(setting) for setting in SETTINGS for form in (
        "get{}", "set{}", "getDef{}", "setDef{}", "get{}Range", "set{}Range", "get{}ToString")]
    + "isChanged applied reset getFormat setFormat getALDEnable setALDEnable".split(),
    "LXAPIProductList": ["build"],
}


def exported_names(path):
    image = pathlib.Path(path).read_bytes()
    pe = struct.unpack_from("<I", image, 0x3C)[0]
    assert image[pe:pe + 4] == b"PE\0\0", "not a Windows program"
    section_count, optional_size = struct.unpack_from("<H12xH", image, pe + 6)
    export_table = struct.unpack_from("<I", image, pe + 24 + 96)[0]
    sections = [struct.unpack_from("<IIII", image, pe + 24 + optional_size + 40 * i + 8) for i in range(section_count)]

    def place(address):
        for virtual_size, virtual, raw_size, raw in sections:
            if virtual <= address < virtual + max(virtual_size, raw_size):
                return raw + address - virtual
        raise SystemExit(f"address {address:#x} is in no section")

    table = place(export_table)
    name_count = struct.unpack_from("<I", image, table + 24)[0]
    names = struct.unpack_from(f"<{name_count}I", image, place(struct.unpack_from("<I", image, table + 32)[0]))
    return {image[place(name):image.index(b"\0", place(name))].decode() for name in names}


def main():
    names = exported_names(sys.argv[1])
    complaints = []

    plain = {name for name in names if not name.startswith("_Z")}
    complaints += [f"missing: {name}" for name in sorted(FUNCTIONS - plain)]
    complaints += [f"unexpected: {name}" for name in sorted(plain - FUNCTIONS)]

    for class_name, operations in OPERATIONS.items():
        for operation in operations:
            mangled = re.compile(rf"_ZNK?{len(class_name)}{class_name}{len(operation)}{operation}E")
            if not any(mangled.match(name) for name in names):
                complaints.append(f"missing: {class_name}::{operation}")
    classes = "|".join(f"{len(name)}{name}" for name in OPERATIONS)
    complaints += [f"unexpected: {name}" for name in sorted(names - plain)
                   if not re.match(rf"_Z(NK?|T[VIS])({classes})", name)]

    print("\n".join(complaints) or f"{len(plain)} functions and {len(names - plain)} class members are exported")
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
