"""Voices of the speech service, which the host treats like local ones. The service is a stand-in that speaks a tone, at
the address that the library is built with."""

import pathlib
import subprocess
import unittest

import narravo_program
from narravo_program import HostTest

import wav_measure

SERVICE = pathlib.Path(__file__).resolve().parents[1] / "support" / "narravo-faulty-service"
PORT = 59125
VOICE = "English (America)+f2"
EXIT_ENGINE_FAILED = 1


class CloudVoices(HostTest):
    @classmethod
    def setUpClass(cls):
        service = subprocess.Popen([SERVICE, "--port", str(PORT)], stdout=subprocess.PIPE, text=True)
        cls.addClassCleanup(service.stdout.close)
        cls.addClassCleanup(service.wait)
        cls.addClassCleanup(service.terminate)
        if "listening" not in service.stdout.readline():
            raise RuntimeError(f"port {PORT} is taken: is a speech service running here?")

    def test_are_saved_exported_and_spoken(self):
        wav = self.folder / "out.wav"
        self.assert_runs("save", wav, "Hello, world.", "--voice", VOICE)
        saved = wav_measure.read_wav(wav)
        self.assertEqual((saved.channels, saved.rate), (1, 22050))
        self.assertGreater(wav_measure.rms(saved.samples), 300)

        for name in ("out.ogg", "out.mp3", "out.gsm", "out.pcm"):
            self.assert_runs("export", self.folder / name, "Hello, world.", "--voice", VOICE)
            self.assertGreater((self.folder / name).stat().st_size, 100, name)
        self.assert_runs("speak", "Hello, world.", "--voice", VOICE)


class WithoutService(HostTest):
    def test_the_failure_says_why_and_an_older_file_stays(self):
        older = self.folder / "older.wav"
        older.write_bytes(b"older")
        err = self.assert_fails(EXIT_ENGINE_FAILED, "save", older, "Hello", "--voice", VOICE)
        self.assertRegex(err, r"(?i)connect")
        self.assertEqual(older.read_bytes(), b"older")


if __name__ == "__main__":
    narravo_program.main()
