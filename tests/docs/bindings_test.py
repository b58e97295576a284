"""Runs the samples in Python and C# against a stand-in of the library, built for this machine from the same header.

usage: bindings_test.py STAND_IN
"""

import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

STAND_IN = pathlib.Path(sys.argv[1]).resolve()
SAMPLES = pathlib.Path(__file__).resolve().parents[2] / "samples"


class BindingsTest(unittest.TestCase):
    def assert_speaks(self, *command):
        environment = dict(os.environ, SPEECH_DLL=str(STAND_IN), LD_LIBRARY_PATH=str(STAND_IN.parent), LC_ALL="C.UTF-8")

        def run(text):
            finished = subprocess.run([*command, text], env=environment, stdout=subprocess.PIPE,
                                      stderr=subprocess.PIPE, encoding="utf-8", timeout=60, check=False)
            return finished.returncode, finished.stdout, finished.stderr

        self.assertEqual(run("One, twö."), (0, "One\ntwö\n", ""))
        self.assertEqual(run("Three."), (1, "", "The engine refused the text or the setting.\n"))

    def test_python(self):
        self.assert_speaks(sys.executable, "-B", str(SAMPLES / "python" / "speak.py"))

    def test_csharp(self):
        with tempfile.TemporaryDirectory() as folder:
            program = pathlib.Path(folder) / "Speak.exe"
            subprocess.run(["mcs", "-platform:x86", "-warnaserror", f"-out:{program}",
                            str(SAMPLES / "csharp" / "Speak.cs")], check=True)
            self.assert_speaks("mono", str(program))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
