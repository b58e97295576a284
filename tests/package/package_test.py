"""Unpacks the package into an empty place and a new Wine prefix, and does there what its users do. Nothing of the
source tree is on any path but the compiler's settings.

usage: package_test.py CMAKE CPACK BUILD_FOLDER TOOLCHAIN_FILE VERSION
"""

import contextlib
import os
import pathlib
import re
import struct
import subprocess
import sys
import tempfile
import time
import unittest
import wave
import zipfile

CMAKE, CPACK, BUILD, TOOLCHAIN, VERSION = sys.argv[1:6]
OWN_PROGRAMS = ("speech.dll", "liblxapi.dll", "narravo.exe")


def make_package(folder):
    """Packs what is built; the package's path."""
    subprocess.run([CPACK, "-B", str(folder)], cwd=BUILD, check=True, stdout=subprocess.DEVNULL)
    [package] = pathlib.Path(folder).glob("*.zip")
    return package


def windows_path(path):
    return "Z:" + str(path).replace("/", "\\")


def product_version(path):
    """Major, minor and patch of a program's version resource."""
    content = path.read_bytes()
    at = content.index(struct.pack("<I", 0xFEEF04BD))
    high, low = struct.unpack_from("<II", content, at + 16)
    return f"{high >> 16}.{high & 0xFFFF}.{low >> 16}"


class PackageTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.resources = contextlib.ExitStack()
        cls.addClassCleanup(cls.resources.close)
        cls.work = pathlib.Path(cls.resources.enter_context(tempfile.TemporaryDirectory(prefix="speech package ")))
        cls.archive = make_package(cls.work / "first")
        start = time.monotonic()
        with zipfile.ZipFile(cls.archive) as package:
            package.extractall(cls.work)
        cls.root = cls.work / cls.archive.stem
        cls.unpacking_seconds = time.monotonic() - start

        cls.environment = {name: value for name, value in os.environ.items() if not name.startswith("WINE")}
        cls.environment.update(
            HOME=str(cls.work), LC_ALL="C.UTF-8", WINEPREFIX=str(cls.work / "prefix"), WINEARCH="win32",
            WINEDEBUG="-all", WINEDLLOVERRIDES="mscoree,mshtml=", WINEPATH=windows_path(cls.root / "bin"))
        subprocess.run(["wineboot", "-i"], env=cls.environment, check=True, stdin=subprocess.DEVNULL,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        cls.resources.callback(subprocess.run, ["wineserver", "-k"], env=cls.environment)

    def run_program(self, program, *arguments):
        """What a Windows program prints."""
        finished = subprocess.run(["wine", str(program), *arguments], env=self.environment, stdin=subprocess.DEVNULL,
                                  stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=120)
        self.assertEqual(finished.returncode, 0, finished.stderr.decode(errors="replace"))
        return finished.stdout.decode().splitlines()

    def built_sample(self, name):
        """Builds a sample with the package's own CMake files, as its CMakeLists.txt says."""
        build = self.work / "build" / name
        subprocess.run([CMAKE, "-G", "Ninja", "-S", self.root / "samples" / name, "-B", build,
                        f"-DCMAKE_TOOLCHAIN_FILE={TOOLCHAIN}", f"-Dspeech_DIR={self.root / 'lib/cmake/speech'}",
                        "-DCMAKE_BUILD_TYPE=Release"], check=True, stdout=subprocess.DEVNULL)
        subprocess.run([CMAKE, "--build", build], check=True, stdout=subprocess.DEVNULL)
        return build / f"{name}.exe"

    def assert_is_speech(self, path):
        with wave.open(str(path)) as sound:
            self.assertEqual((sound.getnchannels(), sound.getsampwidth()), (1, 2))
            samples = struct.unpack(f"<{sound.getnframes()}h", sound.readframes(sound.getnframes()))
            self.assertGreater(len(samples), sound.getframerate() // 4)
        self.assertGreater(max(samples), 2000)

    def test_holds_what_it_promises(self):
        wanted = [f"bin/{name}" for name in OWN_PROGRAMS] + """
            bin/sox.exe bin/engines.ini bin/espeak-ng-data/phontab bin/libstdc++-6.dll bin/libgcc_s_dw2-1.dll
            bin/libwinpthread-1.dll include/speech/text_to_speech.h include/speech/speech_c.h include/audio/wav_header.h
            include/framework/framework.h include/lxapi/lxapi.h lib/libspeech.dll.a lib/cmake/speech/speechConfig.cmake
            samples/console_c/main.c samples/console_cpp/main.cpp docs/architecture.md README.md licences/speech.txt
            licences/espeak-ng.txt licences/sox.txt licences/curl.txt licences/soxr.txt licences/README.txt""".split()
        self.assertEqual([name for name in wanted if not (self.root / name).is_file()], [])

    def test_every_program_carries_the_version(self):
        self.assertIn(f"-{VERSION}-", self.archive.name)
        for name in OWN_PROGRAMS:
            self.assertEqual(product_version(self.root / "bin" / name), VERSION, name)

    def test_names_no_folder_of_the_machine_that_built_it(self):
        source = str(pathlib.Path(TOOLCHAIN).parent.parent)
        names = [source.encode(), re.sub(r"\W", "_", source).encode()]  # some tools make symbols of paths
        ours = [path for path in self.root.rglob("*") if path.suffix in (".dll", ".exe", ".cmake", ".a", ".h")]
        self.assertEqual([path.name for path in ours if any(name in path.read_bytes() for name in names)], [])

    def test_is_the_same_whenever_it_is_made(self):
        self.assertEqual(make_package(self.work / "second").read_bytes(), self.archive.read_bytes())
        with zipfile.ZipFile(self.archive) as package:
            self.assertEqual(package.namelist(), sorted(package.namelist()))
            self.assertEqual(len({entry.date_time for entry in package.infolist()}), 1)

    def test_the_command_line_host_lists_voices_and_speaks(self):
        narravo = self.root / "bin" / "narravo.exe"
        self.assertGreater(len(self.run_program(narravo, "voices")), 100)
        start = time.monotonic()
        self.run_program(narravo, "speak", "Hi.")
        seconds = self.unpacking_seconds + time.monotonic() - start
        print(f"{self.archive.stat().st_size / 1e6:.1f} MB; {seconds:.1f} s from the ZIP to the end of a spoken word")

    def test_the_c_sample_is_built_speaks_and_writes_a_file(self):
        sample = self.built_sample("console_c")
        self.assertEqual(self.run_program(sample, "One, two."), ["One", "two"])
        self.run_program(sample, "Three, four.", windows_path(self.work / "c.wav"))
        self.assert_is_speech(self.work / "c.wav")

    def test_the_cpp_sample_is_built_and_speaks(self):
        sample = self.built_sample("console_cpp")
        self.assertEqual(self.run_program(sample, "One, two."), ["One", "two"])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
