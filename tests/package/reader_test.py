"""The sample window, used with the keyboard alone."""

import pathlib
import re
import subprocess
import threading
import time

import package_place
from package_place import PackageTestCase, windows_path

import wav_measure
from sound_monitor import RATE, SoundMonitor

# Far beyond what anything here takes: ends a hang, measures nothing.
HANG_SECONDS = 90
LONG_TEXT = "This is a long text, and it goes on. " * 15


class Reader:
    """A running reader and a driver for it; controls go by their names in the sample's resource.h."""

    def __init__(self, place):
        self.controls = dict(re.findall(r"#define (IDC_\w+) (\d+)",
                                        (place.root / "samples" / "reader" / "resource.h").read_text()))
        silent = dict(env=place.environment, stderr=subprocess.DEVNULL)
        self.program = subprocess.Popen(["wine", place.sample("reader")], stdin=subprocess.DEVNULL,
                                        stdout=subprocess.DEVNULL, **silent)
        self._driver = subprocess.Popen(["wine", package_place.DRIVER, "SpeechReader"], stdin=subprocess.PIPE,
                                        stdout=subprocess.PIPE, text=True, encoding="utf-8", **silent)
        self._watchdog = threading.Timer(3 * HANG_SECONDS, self._driver.kill)
        self._watchdog.start()

    def end(self):
        self._watchdog.cancel()
        self._driver.stdin.close()
        self._driver.wait(HANG_SECONDS)
        self._driver.stdout.close()
        self.program.kill()
        self.program.wait()

    def ask(self, command, argument=""):
        """An answer of the driver; a control's name stands for its number."""
        self._driver.stdin.write(f"{command} {self.controls.get(argument, argument)}\n")
        self._driver.stdin.flush()
        return self._driver.stdout.readline().rstrip("\n")

    def do(self, *command):
        answer = self.ask(*command)
        if answer != "ok":
            raise AssertionError(f"{command}: {answer}")

    def wait(self, wanted, *question):
        """Asks until the answer has something in it that matches; the answer."""
        deadline = time.monotonic() + HANG_SECONDS
        while not re.search(wanted, answer := self.ask(*question)):
            if time.monotonic() > deadline:
                raise AssertionError(f"{question} is {answer!r}, not {wanted!r}")
            time.sleep(0.02)
        return answer

    def wait_for_status(self, wanted):
        return self.wait(wanted, "text", "IDC_STATUS")

    def go_to(self, keys, control):
        self.do("keys", keys)
        self.wait(f"^{self.controls[control]}$", "focus")

    def write(self, text, control="IDC_TEXT", keys="alt+t"):
        self.go_to(keys, control)
        self.do("keys", "ctrl+a")
        self.do("type", text)
        self.wait(f"^{re.escape(text)}$", "text", control)

    def selection(self):
        return tuple(map(int, self.ask("selection", "IDC_TEXT").split()))

    def export(self, path):
        """Goes through the dialog as far as the status says where the file goes."""
        self.do("keys", "ctrl+s")
        self.wait("^Export speech$", "front")
        self.do("type", windows_path(path))
        self.do("keys", "enter")


def falls_silent(monitor):
    """Whether a second of silence comes within fifteen; the long text, which has none, takes longer than that."""
    begin = len(monitor.samples())
    while len(samples := monitor.samples()) < begin + 15 * RATE:
        if len(samples) > begin + RATE and wav_measure.peak(samples[-RATE:]) == 0:
            return True
        time.sleep(0.1)
    return False


class ReaderTest(PackageTestCase):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.reader = cls.start()

    @classmethod
    def start(cls):
        reader = Reader(cls.place)
        cls.addClassCleanup(reader.end)
        reader.wait("^Reader$", "front")
        reader.wait_for_status("voices")
        return reader

    def test_speaks_with_a_chosen_voice_and_marks_each_word(self):
        reader = self.reader
        reader.write("germ", "IDC_FILTER", "alt+l")
        reader.wait_for_status(r"^\d of \d+ voices")
        reader.go_to("alt+v", "IDC_VOICES")
        reader.do("keys", "down")  # from the man's voice to the woman's
        text = "Grüße aus Köln.¶¶Heute ist ein schöner Tag."
        reader.write(text)
        with SoundMonitor() as monitor:
            reader.do("keys", "f5")
            reader.wait_for_status("Speaking")
            marks = []
            while "Speaking" in reader.ask("text", "IDC_STATUS"):
                mark = reader.selection()
                if mark[0] < mark[1] and mark not in marks:
                    marks.append(mark)
                    if len(marks) == 4:
                        reader.do("type", "x")  # locked: goes nowhere
                        reader.do("picture", windows_path(pathlib.Path(package_place.BUILD) / "reader.png"))
            reader.wait_for_status("Finished")
        self.assertEqual(reader.ask("text", "IDC_TEXT"), text)
        inside = text.replace("¶", "\r\n")  # as an EDIT control counts
        words = [inside[begin:end] for begin, end in marks]
        # A word that is heard while the window is asked something else may be missed, but not many are.
        self.assertGreaterEqual(len(words), 4, words)
        self.assertLessEqual(set(words), set(re.findall(r"\w+", inside)))
        self.assertEqual(marks, sorted(marks))
        self.assertIn(words[-1], "Heute ist ein schöner Tag")
        self.assertGreater(wav_measure.heard_seconds(monitor.wav()), 1.5)

    def test_pauses_goes_on_and_stops(self):
        reader = self.reader
        reader.write(LONG_TEXT)
        with SoundMonitor() as monitor:
            reader.do("keys", "alt+s")
            reader.wait("^[1-9]", "selection", "IDC_TEXT")
            reader.do("keys", "f6")
            reader.wait_for_status("Paused")
            self.assertTrue(falls_silent(monitor))
            mark = reader.selection()
            self.assertEqual(reader.ask("enabled", "IDC_SPEAK"), "0")
            self.assertEqual(reader.ask("text", "IDC_PAUSE"), "&Resume")
            self.assertEqual(reader.selection(), mark)
            reader.do("keys", "alt+r")
            while reader.selection() <= mark:
                time.sleep(0.02)
            reader.do("keys", "esc")
            reader.wait_for_status("Stopped")
        begin, end = reader.selection()
        self.assertEqual(begin, end)
        self.assertEqual((reader.ask("enabled", "IDC_SPEAK"), reader.ask("enabled", "IDC_STOP")), ("1", "0"))
        reader.write("The text can be changed again.")

    def test_exports_with_the_chosen_speed(self):
        reader, lengths = self.reader, []
        reader.write("One, two, three, four.¶¶Five, six, seven, eight.")
        for key, name in (("alt+d", "slow.wav"), ("end", "fast.wav")):
            reader.go_to("alt+d", "IDC_SPEED")
            reader.do("keys", key)
            path = self.work / name
            reader.export(path)
            reader.wait_for_status(f"^Exported to .*{name}$")
            lengths.append(self.assert_is_speech(path))
        self.assertLess(lengths[1], 0.7 * lengths[0])
        reader.do("keys", "alt+d")

    def test_shows_progress_and_can_be_cancelled(self):
        reader, path = self.reader, self.work / "cancelled.mp3"
        reader.write("a.¶" * 150)
        reader.export(path)
        reader.wait("^1$", "visible", "IDC_PROGRESS")
        positions = [int(reader.ask("progress", "IDC_PROGRESS"))]
        while positions[-1] == positions[0]:
            positions.append(int(reader.ask("progress", "IDC_PROGRESS")))
        self.assertEqual(reader.ask("misplaced"), "")
        reader.do("keys", "esc")
        reader.wait_for_status("cancelled")
        self.assertGreater(positions[-1], positions[0])
        self.assertEqual(reader.ask("visible", "IDC_PROGRESS"), "0")
        self.assertFalse(path.exists())

    def test_says_what_went_wrong(self):
        reader = self.reader
        reader.write("x")
        reader.export(self.work / "no such folder" / "x.ogg")
        self.assertIn("no such folder", reader.wait_for_status("could not be"))
        self.assertEqual(reader.ask("front"), "Reader")
        reader.write("no such voice", "IDC_FILTER", "alt+l")
        reader.wait_for_status("No voice")
        self.assertEqual(reader.ask("enabled", "IDC_SPEAK"), "0")
        reader.write("en", "IDC_FILTER", "alt+l")
        reader.write(" ")
        reader.do("keys", "f5")
        reader.wait_for_status("Nothing to read")


class ScaledReaderTest(PackageTestCase):
    def test_fits_a_finer_screen_and_closes_while_it_speaks(self):
        self.place.change_registry("REGEDIT4\n\n[HKEY_CURRENT_USER\\Control Panel\\Desktop]\n"
                                   '"LogPixels"=dword:00000078\n')
        reader = Reader(self.place)
        self.addCleanup(reader.end)
        reader.wait_for_status("voices")
        self.assertEqual(reader.ask("misplaced"), "")
        reader.write(LONG_TEXT)
        reader.do("keys", "f5")
        reader.wait("^[1-9]", "selection", "IDC_TEXT")
        reader.do("close")
        self.assertEqual(reader.program.wait(HANG_SECONDS), 0)
