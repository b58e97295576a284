"""Does with the package what its users do.

usage: package_test.py WINDOW_DRIVER TOOLCHAIN_FILE VERSION PACKAGE COMMAND...   (the command that makes the package)
"""

import pathlib
import re
import struct
import subprocess
import sys
import time
import zipfile

import package_place
from package_place import PackageTestCase, make_package, windows_path
from reader_test import ReaderTest, ScaledReaderTest  # noqa: F401: run with these, in the same place

from sound_monitor import SoundMonitor

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "docs"))
from package_documents import DocumentedSteps  # noqa: E402

OWN_PROGRAMS = ("speech.dll", "liblxapi.dll", "narravo.exe")
TEXT = "The quick brown fox jumps over the lazy dog."

# How programs that are not ours turn each format into a WAV file: {0} becomes {1}.
DECODERS = {
    "wav": "sox {0} {1}",
    "pcm": "sox -t raw -r 22050 -e signed -b 16 -c 1 {0} {1}",
    "ogg": "oggdec -Q {0} -o {1}",
    "gsm": "sox -r 8000 -c 1 {0} -b 16 -e signed {1}",
    "mp3": "mpg123 -q -w {1} {0}",
}


def product_version(path):
    """Major, minor and patch of a program's version resource."""
    content = path.read_bytes()
    at = content.index(struct.pack("<I", 0xFEEF04BD))
    high, low = struct.unpack_from("<II", content, at + 16)
    return f"{high >> 16}.{high & 0xFFFF}.{low >> 16}"


class PackageTest(DocumentedSteps, PackageTestCase):
    toolchain = package_place.TOOLCHAIN

    def test_holds_what_it_promises(self):
        wanted = [f"bin/{name}" for name in OWN_PROGRAMS] + """
            bin/sox.exe bin/engines.ini bin/espeak-ng-data/phontab bin/libstdc++-6.dll bin/libgcc_s_dw2-1.dll
            bin/libwinpthread-1.dll include/speech/text_to_speech.h include/speech/speech_c.h include/audio/wav_header.h
            include/framework/framework.h include/lxapi/lxapi.h lib/libspeech.dll.a lib/cmake/speech/speechConfig.cmake
            samples/console_c/main.c samples/console_cpp/main.cpp samples/reader/main.cpp docs/architecture.md README.md
            licences/speech.txt licences/espeak-ng.txt licences/sox.txt licences/curl.txt licences/soxr.txt
            licences/README.txt""".split()
        self.assertEqual([name for name in wanted if not (self.root / name).is_file()], [])

    def test_every_program_carries_the_version(self):
        self.assertIn(f"-{package_place.VERSION}-", self.place.archive.name)
        for name in OWN_PROGRAMS:
            self.assertEqual(product_version(self.root / "bin" / name), package_place.VERSION, name)

    def test_names_no_folder_of_the_machine_that_built_it(self):
        source = str(pathlib.Path(package_place.TOOLCHAIN).parent.parent)
        names = [source.encode(), re.sub(r"\W", "_", source).encode()]  # some tools make symbols of paths
        ours = [path for path in self.root.rglob("*") if path.suffix in (".dll", ".exe", ".cmake", ".a", ".h")]
        self.assertEqual([path.name for path in ours if any(name in path.read_bytes() for name in names)], [])

    def test_is_the_same_whenever_it_is_made(self):
        again = make_package(self.work / "second")
        self.assertEqual(again.read_bytes(), self.place.archive.read_bytes())
        with zipfile.ZipFile(self.place.archive) as package:
            self.assertEqual(package.namelist(), sorted(package.namelist()))
            self.assertEqual(len({entry.date_time for entry in package.infolist()}), 1)

    def test_the_command_line_host_lists_voices_and_speaks(self):
        narravo = self.root / "bin" / "narravo.exe"
        with SoundMonitor() as monitor:
            start = time.monotonic()
            self.run_program(narravo, "speak", "Hi.")
            self.assertIsNotNone(monitor.first_sound())
            seconds = self.place.unpacking_seconds + monitor.first_sound() - start
        print(f"{self.place.archive.stat().st_size / 1e6:.1f} MB; {seconds:.1f} s from the ZIP to the first sound")
        self.assertGreater(len(self.run_program(narravo, "voices")), 100)

    def test_the_command_line_host_exports_every_format(self):
        lengths = {}
        for name, decoder in DECODERS.items():
            exported, decoded = self.work / f"export.{name}", self.work / f"{name}.decoded.wav"
            self.run_program(self.root / "bin" / "narravo.exe", "export", windows_path(exported), TEXT)
            subprocess.run([part.format(exported, decoded) for part in decoder.split()], check=True)
            lengths[name] = self.assert_is_speech(decoded)
        for name, length in lengths.items():
            self.assertAlmostEqual(length, lengths["wav"], delta=0.1 * lengths["wav"], msg=name)

    def test_the_c_sample_is_built_speaks_and_writes_a_file(self):
        sample = self.built_sample("console_c")
        self.assertEqual(self.run_program(sample, "One, two."), ["One", "two"])
        self.run_program(sample, "Three, four.", windows_path(self.work / "c.wav"))
        self.assert_is_speech(self.work / "c.wav")


if __name__ == "__main__":
    package_place.main()
