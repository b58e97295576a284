"""The host with sound: what it plays is recorded from the sound server and compared with what it saves."""

import os
import pathlib
import signal
import subprocess
import time
import unittest

import narravo_program
from narravo_program import EXIT_ENGINE_FAILED, EXIT_INTERRUPTED, HANG_SECONDS, HostTest

import wav_measure
from sound_monitor import SoundMonitor

LONG_TEXT = "This is a long text. " * 100
SERVICE = pathlib.Path(__file__).resolve().parents[1] / "support" / "narravo-faulty-service"
SERVICE_PORT = 59125  # of the address that the library is built with
SERVICE_VOICE = "English (America)+f2"


class Speaking(HostTest):
    def test_is_heard_as_it_would_be_saved_and_shows_words_meanwhile(self):
        text = "Hello, world. This is a test of the speech."
        with SoundMonitor() as monitor:
            process = narravo_program.start("speak", "--verbose", text)
            shown = []
            while chunk := os.read(process.stdout.fileno(), 1000):
                shown.append((time.monotonic(), chunk))
            errors = process.communicate(timeout=HANG_SECONDS)[1]
            self.assertEqual(process.returncode, 0, errors)
            time.sleep(0.5)  # what the server still holds
        self.assertEqual(b"".join(chunk for _, chunk in shown).decode(), text + "\n")
        self.assertRegex(errors.decode(), r"narravo: voice .*\n(.*\n)*narravo: accepted\nnarravo: finished\n\Z")
        self.assertLess(shown[0][0], monitor.last_sound(), "the first word came after the sound")
        self.assertGreater(shown[-2][0], monitor.first_sound(), "the last word came before the sound")
        saved = self.folder / "saved.wav"
        self.assert_runs("save", saved, text)
        expected = wav_measure.heard_seconds(wav_measure.read_wav(saved))
        self.assertAlmostEqual(wav_measure.heard_seconds(monitor.wav()), expected, delta=0.1 * expected)

    def test_shows_words_beyond_ascii(self):
        text = "Žluťoučký kůň 😀 úpěl"
        shown = self.assert_runs("speak", "--voice", "cs", "--ssml", f"<speak>{text}</speak>")
        self.assertEqual(shown, text + "\n")

    def test_stops_at_once_on_interrupt(self):
        with SoundMonitor() as monitor:
            process = narravo_program.start("speak", LONG_TEXT)
            process.stdout.read(8)
            process.send_signal(signal.SIGINT)
            rest, errors = process.communicate(timeout=HANG_SECONDS)
            time.sleep(1)  # what the server still holds
        self.assertEqual((process.returncode, errors), (EXIT_INTERRUPTED, b""))
        self.assertLess(len(rest), 200)
        self.assertLess(wav_measure.heard_seconds(monitor.wav()), 10)

    def test_reports_a_missing_sound_device(self):
        environment = dict(os.environ, PULSE_SERVER="unix:/nonexistent", ALSA_CONFIG_PATH=os.devnull)
        code, _, errors = narravo_program.run("speak", "Hello", env=environment)
        self.assertEqual(code, EXIT_ENGINE_FAILED)
        # The line before it may be the sound system's own.
        self.assertRegex(errors.splitlines()[-1], r"\Anarravo: .*sound device")


class CloudVoices(HostTest):
    def test_are_saved_exported_and_spoken_like_local_ones(self):
        service = subprocess.Popen([SERVICE, "--port", str(SERVICE_PORT)], stdout=subprocess.PIPE, text=True)
        for cleanup in (service.stdout.close, service.wait, service.terminate):  # done from last to first
            self.addCleanup(cleanup)
        self.assertIn("listening", service.stdout.readline(), "is a speech service running here?")
        for command, path in (("save", self.folder / "out.wav"), ("export", self.folder / "out.ogg")):
            self.assert_runs(command, path, "Hello, world.", "--voice", SERVICE_VOICE)
            self.assertEqual(subprocess.run(["soxi", "-r", path], capture_output=True).stdout, b"22050\n")
        self.assert_runs("speak", "Hello, world.", "--voice", SERVICE_VOICE)

    def test_without_a_service_fail_with_the_reason_and_leave_an_older_file(self):
        older = self.write("older.wav", b"older")
        err = self.assert_fails(EXIT_ENGINE_FAILED, "save", older, "Hello", "--voice", SERVICE_VOICE)
        self.assertRegex(err, r"(?i)connect")
        self.assertEqual(older.read_bytes(), b"older")


if __name__ == "__main__":
    narravo_program.main()
