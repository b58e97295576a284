"""An empty place with the unpacked package and a new Wine prefix, shared by all tests of one run. Nothing of the source
tree is on any path but the compiler's settings."""

import concurrent.futures
import contextlib
import functools
import os
import pathlib
import subprocess
import sys
import tempfile
import time
import unittest
import wave
import zipfile

DRIVER, TOOLCHAIN, VERSION, PACKAGE, *MAKE_PACKAGE = sys.argv[1:]
CMAKE, SOURCE, BUILD = MAKE_PACKAGE[2:5]
SAMPLES = ("console_c", "reader")

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import wav_measure  # noqa: E402

# Wine draws what it shows on a desktop of its own: there is no window manager that would give windows frames.
REGISTRY = """REGEDIT4

[HKEY_CURRENT_USER\\Software\\Wine\\Explorer]
"Desktop"="Default"

[HKEY_CURRENT_USER\\Software\\Wine\\Explorer\\Desktops]
"Default"="1024x768"

[HKEY_CURRENT_USER\\Control Panel\\Desktop]
"FontSmoothing"="2"
"FontSmoothingType"=dword:00000001
"""


def make_package(folder):
    """Packs what is built; the package's path."""
    pathlib.Path(folder).mkdir()
    package = pathlib.Path(folder) / PACKAGE
    subprocess.run([*MAKE_PACKAGE, package], check=True, stdout=subprocess.DEVNULL)
    return package


def windows_path(path):
    return "Z:" + str(path).replace("/", "\\")


class PackagePlace:
    def __init__(self, resources):
        self.work = pathlib.Path(resources.enter_context(tempfile.TemporaryDirectory(prefix="speech package ")))
        self.archive = make_package(self.work / "first")
        start = time.monotonic()
        with zipfile.ZipFile(self.archive) as package:
            package.extractall(self.work)
        self.root = self.work / self.archive.stem
        self.unpacking_seconds = time.monotonic() - start

        self.environment = {name: value for name, value in os.environ.items() if not name.startswith("WINE")}
        self.environment.update(
            HOME=str(self.work), LC_ALL="C.UTF-8", WINEPREFIX=str(self.work / "prefix"), WINEARCH="win32",
            WINEDEBUG="-all", WINEDLLOVERRIDES="mscoree,mshtml=", WINEPATH=windows_path(self.root / "bin"))
        resources.callback(self.run_quietly, "wineserver", "-k")

        # Creating a prefix is mostly waiting, and compilers need no prefix.
        builder = resources.enter_context(concurrent.futures.ThreadPoolExecutor(1))
        self._samples = {name: builder.submit(self._build, name) for name in SAMPLES}
        self._create_prefix()

    def run_quietly(self, *command):
        subprocess.run(command, env=self.environment, check=True, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                       stderr=subprocess.DEVNULL)

    def change_registry(self, text):
        path = self.work / "change.reg"
        path.write_text(text)
        self.run_quietly("wine", "regedit", windows_path(path))

    def _create_prefix(self):
        # The signs on the buttons of window frames: Wine finds the fonts of its own package only in the user's folder.
        fonts = self.work / ".local" / "share" / "fonts"
        fonts.mkdir(parents=True)
        (fonts / "marlett.ttf").symlink_to("/usr/share/wine/fonts/marlett.ttf")
        self.run_quietly("wineboot", "-i")
        self.change_registry(REGISTRY)
        # The desktop is made when the server starts; while that stays, programs start at once. Its helpers, which come
        # with the first program, would keep a test's pipes open.
        self.run_quietly("wineserver", "-k", "-w")
        self.run_quietly("wineserver", "-p600")
        self.run_quietly("wine", "cmd", "/c", "exit")

    def _build(self, name):
        """Builds a sample with the package's own CMake files, as its CMakeLists.txt says."""
        build = self.work / "build" / name
        # The folder's name changes from run to run, which is nothing to compile anew for.
        flags = "-Wall -Wextra -Wconversion -Wshadow -Werror"
        environment = dict(os.environ, CFLAGS=flags, CXXFLAGS=flags, CCACHE_BASEDIR=str(self.work), CCACHE_NOHASHDIR="1",
                           CMAKE_C_COMPILER_LAUNCHER="ccache", CMAKE_CXX_COMPILER_LAUNCHER="ccache")
        for command in ([CMAKE, "-G", "Ninja", "-S", self.root / "samples" / name, "-B", build,
                         f"-DCMAKE_TOOLCHAIN_FILE={TOOLCHAIN}", f"-Dspeech_DIR={self.root / 'lib/cmake/speech'}",
                         "-DCMAKE_BUILD_TYPE=Release"],
                        [CMAKE, "--build", build]):
            subprocess.run(command, env=environment, check=True, stdout=subprocess.DEVNULL)
        return build / f"{name}.exe"

    def sample(self, name):
        """Path of a sample's program."""
        return self._samples[name].result()


_resources = contextlib.ExitStack()


@functools.cache
def place():
    return PackagePlace(_resources)


class PackageTestCase(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.place = place()
        cls.work, cls.root, cls.environment = cls.place.work, cls.place.root, cls.place.environment

    def built_sample(self, name):
        return self.place.sample(name)

    def run_program(self, program, *arguments):
        """What a Windows program prints."""
        finished = subprocess.run(["wine", str(program), *arguments], env=self.environment,
                                  stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=120)
        self.assertEqual(finished.returncode, 0, finished.stderr.decode(errors="replace"))
        return finished.stdout.decode().splitlines()

    def assert_is_speech(self, path):
        """The length of the speech in a WAV file, in seconds."""
        with wave.open(str(path)) as file:
            self.assertEqual((file.getnchannels(), file.getsampwidth()), (1, 2))
        sound = wav_measure.read_wav(path)
        self.assertGreater(wav_measure.peak(sound.samples), 2000)
        self.assertGreater(wav_measure.heard_seconds(sound), 0.25)
        return wav_measure.heard_seconds(sound)


def main():
    with _resources:
        unittest.main(module="__main__", argv=sys.argv[:1])
