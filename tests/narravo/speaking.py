"""The host with sound: what it plays is recorded from the sound server and compared with what it saves."""

import os
import signal
import subprocess
import threading
import time
import unittest

import narravo_program
from narravo_program import HANG_SECONDS, HostTest

import wav_measure
from sound_monitor import SoundMonitor

EXIT_ENGINE, EXIT_INTERRUPTED = 1, 130
LONG_TEXT = "This is a long text. " * 100


def read_lines(stream, moments):
    """Notes when each line of a program's output came."""
    for line in stream:
        moments[line.decode("utf-8").strip()] = time.monotonic()


class Speaking(HostTest):
    def saved(self, *arguments):
        path = self.folder / "saved.wav"
        self.assert_runs("save", path, *arguments)
        return wav_measure.read_wav(path)

    def test_is_heard_as_it_would_be_saved(self):
        text = "Hello, world. This is a test of the speech."
        with SoundMonitor() as monitor:
            process = narravo_program.start("speak", "--verbose", text)
            moments = {}
            reader = threading.Thread(target=read_lines, args=(process.stderr, moments))
            reader.start()
            shown = process.stdout.read().decode("utf-8")
            self.assertEqual(process.wait(HANG_SECONDS), 0)
            ended = time.monotonic()
            reader.join()
            process.stdout.close()
            process.stderr.close()
            time.sleep(0.5)  # what the server still holds
        accepted = moments["narravo: accepted"]
        heard = wav_measure.heard_seconds(monitor.wav())
        saved = wav_measure.heard_seconds(self.saved(text))
        self.assertGreater(heard, 1)
        print(f"sound began {1000 * (monitor.first_sound() - accepted):.0f} ms after the call was accepted; "
              f"the program ended {1000 * (ended - monitor.last_sound()):.0f} ms after the last sound; "
              f"heard {heard:.2f} s, saved {saved:.2f} s")
        self.assertAlmostEqual(heard, saved, delta=0.1 * saved)
        self.assertEqual(shown, text + "\n")

    def test_shows_words_while_they_are_heard(self):
        process = narravo_program.start("speak", "One two three four five six seven eight nine ten eleven twelve")
        first = process.stdout.read(3)
        started = time.monotonic()
        rest = process.stdout.read()
        spread = time.monotonic() - started
        self.assertEqual(process.wait(HANG_SECONDS), 0)
        process.stdout.close()
        process.stderr.close()
        self.assertEqual((first + rest).split()[-1], b"twelve")
        # All at once, before or after the sound, would take no time.
        self.assertGreater(spread, 1)

    def test_shows_words_beyond_ascii(self):
        text = "Žluťoučký kůň 😀 úpěl"
        shown = self.assert_runs("speak", "--voice", "cs", "--ssml", f"<speak>{text}</speak>")
        self.assertEqual(shown, text + "\n")

    def test_stops_at_once_on_interrupt(self):
        with SoundMonitor() as monitor:
            process = narravo_program.start("speak", LONG_TEXT)
            process.stdout.read(8)
            pressed = time.monotonic()
            process.send_signal(signal.SIGINT)
            rest, errors = process.communicate(timeout=HANG_SECONDS)
            ended = time.monotonic()
            time.sleep(1)
        print(f"after Ctrl-C the last sound came within {1000 * (monitor.last_sound() - pressed):.0f} ms, "
              f"the program's end after {1000 * (ended - pressed):.0f} ms")
        self.assertEqual(process.returncode, EXIT_INTERRUPTED, errors)
        self.assertEqual(errors, b"")
        self.assertLess(len(rest), 200)
        self.assertLess(wav_measure.heard_seconds(monitor.wav()), 10)

    def test_reports_a_missing_sound_device(self):
        environment = dict(os.environ, PULSE_SERVER="unix:/nonexistent", ALSA_CONFIG_PATH=os.devnull)
        code, _, errors = narravo_program.run("speak", "Hello", env=environment)
        self.assertEqual(code, EXIT_ENGINE)
        # The line before it may be the sound system's own.
        self.assertRegex(errors.splitlines()[-1], r"\Anarravo: .*sound device")


if __name__ == "__main__":
    narravo_program.main()
