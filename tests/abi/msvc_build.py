"""The project configured for the Microsoft compiler, with clang in that compiler's place (msvc/clang-cl.cmake)."""

import json
import os
import pathlib
import shlex
import subprocess

from slots import FOLDER

SOURCE = FOLDER.parent.parent


class MsvcBuild:
    def __init__(self, cmake, folder):
        self.folder = pathlib.Path(folder)
        if not (self.folder / "build.ninja").exists():
            self.run([cmake, "-G", "Ninja", "-S", SOURCE, "-B", self.folder, "-DBUILD_TESTING=OFF",
                      "-DCMAKE_BUILD_TYPE=", f"-DCMAKE_TOOLCHAIN_FILE={FOLDER / 'msvc/clang-cl.cmake'}",
                      f"-DCMAKE_PROJECT_speech_INCLUDE={FOLDER / 'msvc/headers.cmake'}"])
        else:
            self.run(["ninja", "-C", self.folder, "build.ninja"])  # asks CMake again where its files have changed
        entries = json.loads((self.folder / "compile_commands.json").read_text())
        self.commands = {os.path.normpath(entry["file"]): shlex.split(entry["command"]) for entry in entries
                         if entry["file"].endswith((".c", ".cpp"))}

    @staticmethod
    def run(command):
        """What a command prints; its end and the exit when it fails."""
        finished = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        if finished.returncode != 0:
            errors = [line for line in finished.stdout.splitlines() if "error" in line and "clang-cl" not in line]
            raise SystemExit("\n".join(errors[:60]) or finished.stdout[-3000:])
        return finished.stdout

    def object_files(self):
        targets = self.run(["ninja", "-C", self.folder, "-t", "targets", "all"])
        return [line.partition(":")[0] for line in targets.splitlines() if line.partition(":")[0].endswith(".obj")]
