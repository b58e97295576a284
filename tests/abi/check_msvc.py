#!/usr/bin/env python3
"""Compiles every source file of the product and every public header with clang in Microsoft's mode, with the options
that CMake gives to the Microsoft compiler. It compiles only what has changed.

usage: check_msvc.py CMAKE BUILD_FOLDER
"""

import re
import sys

from msvc_build import SOURCE, MsvcBuild

# What the toolchain file and clang's own needs add.
NOT_OURS = re.compile(r"-imsvc.*|--target=.*|-fms-compatibility-version=.*|/clang:.*|-Werror|-mssse3")
# It is minimp3's own code, and takes the compiler's intrinsics whole: clang's header and mingw's exclude each other.
LEFT_OUT = "/minimp3.cpp.obj"
MICROSOFTS = re.compile(r"[-/](nologo|T[PC]|c|w|W4|wd\d+|D.+|I.+|F[Ido].+|EH\w+|M[DT]d?|permissive-|utf-8|arch:\w+|std:.+)")


def foreign_options(command):
    """Options that the Microsoft compiler would not know."""
    options = command[:command.index("--")]  # the source file is behind that
    ours = [word for before, word in zip(options, options[1:]) if before != "-imsvc" and not NOT_OURS.fullmatch(word)]
    return [word for word in ours if not MICROSOFTS.fullmatch(word)]


def main():
    build = MsvcBuild(*sys.argv[1:3])
    complaints = {f"{source}: the Microsoft compiler has no option {word}"
                  for source, command in build.commands.items() for word in foreign_options(command)}
    if complaints:
        raise SystemExit("\n".join(sorted(complaints)))

    missing = sorted(path.relative_to(SOURCE).as_posix()
                     for folder in "apps audio engines lxapi speech win32".split()
                     for path in (SOURCE / folder).rglob("*.cpp") if str(path) not in build.commands)
    if missing:
        raise SystemExit("Not part of the build for the Microsoft compiler: " + " ".join(missing))

    objects = [name for name in build.object_files() if not name.endswith(LEFT_OUT)]
    build.run(["ninja", "-C", build.folder, "-j", "2", "-k", "0", *objects])
    print(f"{len(objects)} files compile")


if __name__ == "__main__":
    main()
