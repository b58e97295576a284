#!/usr/bin/env python3
"""Holds the slot numbers of the public headers against slots.txt, as the Microsoft ABI lays them out.

usage: check_slots.py CMAKE BUILD_FOLDER    (the folder of check_msvc.py)
"""

import re
import subprocess
import sys

from msvc_build import MsvcBuild
from slots import FOLDER, read_slots


def dump_layouts(build):
    source = str(FOLDER / "layout.cpp")
    command = [word for word in build.commands[source] if not re.match("/F[do]", word)]
    command[1:1] = ["/Fo/dev/null", "-Xclang", "-fdump-vtable-layouts"]
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True, cwd=build.folder).stdout


def laid_out(dump, class_name):
    """The class's operations in slot order, as slots.txt writes them."""
    block = re.search(rf"^VFTable indices for '{class_name}' .*\n((?: *\d+ \| .*\n)+)", dump, re.MULTILINE)
    if block is None:
        raise SystemExit(f"the compiler laid out no virtual table of {class_name}")
    operations = []
    for line in block.group(1).splitlines():
        number, _, operation = line.partition(" | ")
        assert int(number) == len(operations), line
        operation = operation.replace(f"{class_name}::", "", 1).removesuffix(" [scalar deleting]")
        operations.append(re.sub(r"\*(\w+\()", r"* \1", operation))
    return operations


def main():
    dump = dump_layouts(MsvcBuild(*sys.argv[1:3]))
    failures = 0
    for class_name, expected in read_slots().items():
        actual = laid_out(dump, class_name)
        for slot in range(max(len(expected), len(actual))):
            wanted = expected[slot] if slot < len(expected) else "nothing"
            found = actual[slot] if slot < len(actual) else "nothing"
            if wanted != found:
                failures += 1
                print(f"{class_name} slot {slot}: {found} where {wanted} belongs")
        print(f"{class_name}: {len(actual)} slots")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
