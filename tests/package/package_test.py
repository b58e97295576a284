"""Does with the package what its users do, in an empty place: nothing of the source tree is on any path but the compiler's
settings. The documents' commands are run as they stand there.

usage: package_test.py WINDOW_DRIVER TOOLCHAIN_FILE VERSION PACKAGE COMMAND...   (the command that makes the package)
"""

import concurrent.futures
import os
import pathlib
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import time
import types
import unittest
import wave
import zipfile

HERE = pathlib.Path(__file__).resolve().parent
COMMANDS = HERE.parent / "docs" / "commands"
sys.path.append(str(HERE.parent / "support"))
import wav_measure  # noqa: E402
from sound_monitor import RATE, SoundMonitor  # noqa: E402

DRIVER, TOOLCHAIN, VERSION, PACKAGE, *MAKE_PACKAGE = sys.argv[1:]
OWN_PROGRAMS = ("speech.dll", "liblxapi.dll", "narravo.exe")

# How programs that are not ours turn each format into a WAV file: {0} becomes {1}.
DECODERS = {
    "wav": "sox {0} {1}",
    "pcm": "sox -t raw -r 22050 -e signed -b 16 -c 1 {0} {1}",
    "ogg": "oggdec -Q {0} -o {1}",
    "gsm": "sox -r 8000 -c 1 {0} -b 16 -e signed {1}",
    "mp3": "mpg123 -q -w {1} {0}",
}

place = types.SimpleNamespace()  # what the tests share


def windows_path(path):
    return "Z:" + str(path).replace("/", "\\")


def run_quietly(*command, **options):
    subprocess.run(command, check=True, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                   **options)


def make_package(folder):
    folder.mkdir()
    run_quietly(*MAKE_PACKAGE, folder / PACKAGE)
    return folder / PACKAGE


def build(*command):
    flags = "-Wall -Wextra -Wconversion -Wshadow -Werror"
    # The folder's name changes from run to run, which is nothing to compile anew for.
    run_quietly(*command, cwd=place.root, env=dict(
        os.environ, CMAKE_TOOLCHAIN_FILE=TOOLCHAIN, CMAKE_GENERATOR="Ninja", CFLAGS=flags, CXXFLAGS=flags,
        CCACHE_BASEDIR=str(place.work), CCACHE_NOHASHDIR="1", CMAKE_CXX_COMPILER_LAUNCHER="ccache"))


def make_wine_prefix():
    place.environment = {name: value for name, value in os.environ.items() if not name.startswith("WINE")}
    place.environment.update(
        HOME=str(place.work), LC_ALL="C.UTF-8", WINEPREFIX=str(place.work / "prefix"), WINEARCH="win32", WINEDEBUG="-all",
        WINEDLLOVERRIDES="mscoree,mshtml=", WINEPATH=windows_path(place.root / "bin"))
    run_quietly("wineboot", "-i", env=place.environment)
    run_quietly("wineserver", "-k", "-w", env=place.environment)
    # Wine draws on a desktop of its own: there is no window manager that would give windows the keyboard.
    with open(place.work / "prefix" / "user.reg", "a", encoding="ascii") as registry:
        registry.write('\n[Software\\\\Wine\\\\Explorer]\n"Desktop"="Default"\n'
                       '\n[Software\\\\Wine\\\\Explorer\\\\Desktops]\n"Default"="1024x768"\n')
    # While the server stays, programs start at once. Its helpers, which come with the first program, would keep a test's
    # pipes open.
    run_quietly("wineserver", "-p600", env=place.environment)
    unittest.addModuleCleanup(run_quietly, "wineserver", "-k", env=place.environment)
    run_quietly("wine", "cmd", "/c", "exit", env=place.environment)


def setUpModule():
    place.work = pathlib.Path(unittest.enterModuleContext(tempfile.TemporaryDirectory(prefix="speech package ")))
    place.archive = make_package(place.work / "first")
    with zipfile.ZipFile(place.archive) as package:
        package.extractall(place.work)
    place.root = place.work / place.archive.stem
    # Making a prefix is mostly waiting, and compilers need none.
    with concurrent.futures.ThreadPoolExecutor(1) as builder:
        reader = builder.submit(build, "sh", "-c", "cmake -S samples/reader -B build/reader && cmake --build build/reader")
        make_wine_prefix()
        reader.result()


class PackageTestCase(unittest.TestCase):
    def run_program(self, *command, result=0):
        """What a Windows program prints, line by line."""
        finished = subprocess.run(["wine", *command], cwd=place.root, env=place.environment, stdin=subprocess.DEVNULL,
                                  stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=240, check=False)
        self.assertEqual(finished.returncode, result, finished.stderr.decode(errors="replace"))
        return finished.stdout.decode().splitlines()

    def run_batch(self, name):
        return self.run_program("cmd", "/q", "/c", windows_path(COMMANDS / name))

    def assert_is_speech(self, path):
        """The length of the speech in a WAV file, in seconds."""
        with wave.open(str(path)) as file:
            self.assertEqual((file.getnchannels(), file.getsampwidth()), (1, 2))
        sound = wav_measure.read_wav(path)
        self.assertGreater(wav_measure.peak(sound.samples), 2000)
        self.assertGreater(wav_measure.heard_seconds(sound), 0.25)
        return wav_measure.heard_seconds(sound)


class PackageTest(PackageTestCase):
    def test_holds_what_it_promises(self):
        wanted = [f"bin/{name}" for name in OWN_PROGRAMS] + """
            bin/sox.exe bin/engines.ini bin/espeak-ng-data/phontab bin/libstdc++-6.dll bin/libgcc_s_dw2-1.dll
            bin/libwinpthread-1.dll include/speech/text_to_speech.h include/speech/speech_c.h include/lxapi/lxapi.h
            lib/libspeech.dll.a samples/console_c/main.c docs/architecture.md README.md licences/speech.txt
            licences/espeak-ng.txt licences/sox.txt licences/curl.txt licences/soxr.txt licences/README.txt""".split()
        self.assertEqual([name for name in wanted if not (place.root / name).is_file()], [])
        for name in OWN_PROGRAMS:
            content = (place.root / "bin" / name).read_bytes()
            high, low = struct.unpack_from("<II", content, content.index(struct.pack("<I", 0xFEEF04BD)) + 16)
            self.assertEqual(f"{high >> 16}.{high & 0xFFFF}.{low >> 16}", VERSION, name)

    def test_is_the_same_whenever_and_wherever_it_is_made(self):
        self.assertEqual(make_package(place.work / "second").read_bytes(), place.archive.read_bytes())
        source = str(pathlib.Path(TOOLCHAIN).parent.parent)
        marks = [source.encode(), re.sub(r"\W", "_", source).encode()]  # some tools make symbols of paths
        with zipfile.ZipFile(place.archive) as package:
            self.assertEqual(package.namelist(), sorted(package.namelist()))
            self.assertEqual(len({entry.date_time for entry in package.infolist()}), 1)
            self.assertEqual([name for name in package.namelist() if name.endswith((".dll", ".exe", ".cmake", ".a", ".h"))
                              and any(mark in package.read(name) for mark in marks)], [])

    def test_first_sound(self):
        with SoundMonitor() as monitor:
            self.assertGreater(len(self.run_batch("first_sound.bat")), 100)
            self.assertIsNotNone(monitor.first_sound())

    def test_the_command_line_host_exports_every_format(self):
        lengths = {}
        for name, decoder in DECODERS.items():
            exported, decoded = place.work / f"export.{name}", place.work / f"{name}.decoded.wav"
            self.run_program("bin/narravo.exe", "export", windows_path(exported), "The quick brown fox jumps.")
            subprocess.run([part.format(exported, decoded) for part in decoder.split()], check=True)
            lengths[name] = self.assert_is_speech(decoded)
        for name, length in lengths.items():
            self.assertAlmostEqual(length, lengths["wav"], delta=0.1 * lengths["wav"], msg=name)

    def test_user_dictionaries_are_checked(self):
        self.assertEqual(self.run_batch("dict_check.bat"), ["good entries: 5"])
        self.assert_is_speech(place.root / "hello.wav")
        shutil.copy(COMMANDS.parent / "bad_words.csv", place.root)
        self.assertEqual(self.run_program("bin/narravo.exe", "dict", "check", "bad_words.csv", result=4),
                         (COMMANDS.parent / "bad_words.txt").read_text().splitlines())

    def test_the_cpp_sample_is_built_and_speaks(self):
        build("bash", "-eu", COMMANDS / "build_sample.sh")
        self.assertEqual(self.run_batch("run_sample.bat"), ["Hello", "world"])

    def test_the_c_sample_and_an_engine_library_that_takes_the_place_of_the_bundled_one(self):
        compilers = place.work / "compilers"
        compilers.mkdir()
        (compilers / "gcc").symlink_to(shutil.which("i686-w64-mingw32-gcc"))
        run_quietly("bash", "-eu", COMMANDS / "compile_c.sh", cwd=place.root,
                    env=dict(os.environ, PATH=f"{compilers}:{os.environ['PATH']}"))
        build("bash", "-eu", COMMANDS / "build_engine.sh")
        own = place.work / "own engine"
        shutil.copytree(place.root / "bin", own, ignore=shutil.ignore_patterns("espeak-ng-data"))
        shutil.copy(place.root / "build" / "engine_library" / "liblxapi.dll", own)
        self.assertEqual(self.run_program(own / "narravo.exe", "voices")[-1].split()[0], "Beeper-Plain")
        for folder in (place.root / "bin", own):
            self.assertEqual(self.run_program(folder / "hello.exe", "One, two."), ["One", "two"])
            self.run_program(folder / "hello.exe", "One, two.", windows_path(place.work / "file.wav"))
            self.assert_is_speech(place.work / "file.wav")
        self.run_program(own / "narravo.exe", "save", windows_path(place.work / "memory.wav"), "One, two.")
        self.assert_is_speech(place.work / "memory.wav")

    def test_a_program_of_the_microsoft_abi_uses_the_c_interface(self):
        run_quietly("sh", "-ec", f"""
            clang --target=i686-pc-windows-msvc -ffreestanding -Wall -Werror -I../include -c '{HERE}/microsoft_abi.c'
            i686-w64-mingw32-dlltool -d ../lib/speech.def -D speech.dll -l speech.lib
            i686-w64-mingw32-gcc -nostdlib -Wl,-e,_start -o microsoft.exe microsoft_abi.o speech.lib""",
                    cwd=place.root / "bin")
        self.run_program("bin/microsoft.exe", result=42)


class ReaderTest(PackageTestCase):
    """The sample window, used with the keyboard alone. Controls go by their names in its resource.h."""

    def setUp(self):
        resources = (place.root / "samples" / "reader" / "resource.h").read_text()
        self.controls = dict(re.findall(r"#define (IDC_\w+) (\d+)", resources))
        silent = {"env": place.environment, "stderr": subprocess.DEVNULL}
        self.reader = subprocess.Popen(["wine", place.root / "build/reader/reader.exe"], stdin=subprocess.DEVNULL,
                                       stdout=subprocess.DEVNULL, **silent)
        self.addCleanup(lambda: (self.reader.kill(), self.reader.wait()))
        self.driver = subprocess.Popen(["wine", DRIVER, "SpeechReader"], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                       encoding="utf-8", **silent)
        self.addCleanup(self.driver.communicate)

    def ask(self, command, argument=""):
        self.driver.stdin.write(f"{command} {self.controls.get(argument, argument)}\n")
        self.driver.stdin.flush()
        return self.driver.stdout.readline().rstrip("\n")

    def wait(self, wanted, *question):
        """Asks until the answer matches; fails after a time that is far beyond what anything here takes."""
        deadline = time.monotonic() + 90
        while not re.search(wanted, answer := self.ask(*question)):
            self.assertLess(time.monotonic(), deadline, f"{question} is {answer!r}, not {wanted!r}")
            time.sleep(0.02)

    def wait_for_status(self, wanted):
        self.wait(wanted, "text", "IDC_STATUS")

    def write(self, text):
        self.ask("keys", "alt+t")
        self.ask("keys", "ctrl+a")
        self.ask("type", text)
        self.wait(f"^{re.escape(text)}$", "text", "IDC_TEXT")

    def selection(self):
        return tuple(map(int, self.ask("selection", "IDC_TEXT").split()))

    def export(self, path):
        self.ask("keys", "ctrl+s")
        self.wait("^Export speech$", "front")
        self.ask("type", windows_path(path))
        self.ask("keys", "enter")

    def test_speaks_marks_words_pauses_stops_and_exports(self):
        self.wait("^Reader$", "front")
        self.wait_for_status("voices")
        self.write(" ")
        self.ask("keys", "f5")
        self.wait_for_status("^Nothing to read")

        self.write(text := "Eight words are marked while they are heard.")
        with SoundMonitor() as monitor:
            marks = []
            self.ask("keys", "f5")
            self.wait_for_status("Speaking")
            while "Speaking" in self.ask("text", "IDC_STATUS"):
                if (mark := self.selection()) not in marks and mark[0] < mark[1]:
                    marks.append(mark)
            self.wait_for_status("Finished")
        # A word that is heard while the window is asked something else may be missed, but not many are.
        self.assertGreaterEqual(len(marks), 4)
        self.assertEqual(marks, sorted(marks))
        self.assertLessEqual({text[begin:end] for begin, end in marks}, set(re.findall(r"\w+", text)))
        self.assertGreater(wav_measure.heard_seconds(monitor.wav()), 1.5)
        self.export(place.work / "reader.wav")
        self.wait_for_status(r"^Exported to .*reader\.wav$")
        self.assert_is_speech(place.work / "reader.wav")
        self.export(place.work / "no such folder" / "x.ogg")
        self.wait_for_status("could not be.*no such folder")

        self.write("This is a long text, and it goes on. " * 15)
        with SoundMonitor() as monitor:
            self.ask("keys", "f5")
            self.wait("^[1-9]", "selection", "IDC_TEXT")
            self.ask("keys", "f6")
            self.wait_for_status("Paused")
            paused_at = len(monitor.samples())
            while len(samples := monitor.samples()) < paused_at + 2 * RATE:
                time.sleep(0.1)
            self.assertEqual(wav_measure.peak(samples[-RATE:]), 0)
            mark = self.selection()
            self.ask("keys", "f6")
            while self.selection() <= mark:
                time.sleep(0.02)
            self.ask("keys", "esc")
            self.wait_for_status("Stopped")
        self.ask("keys", "alt+f4")
        self.assertEqual(self.reader.wait(90), 0)


unittest.main(argv=sys.argv[:1])
