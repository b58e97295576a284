"""Exports end to end: the bundled engine, the rate converter and SoX; the files are opened by other programs."""

import os
import pathlib
import re
import subprocess
import unittest

import narravo_program
from narravo_program import HostTest

import wav_measure

RATES = (8000, 16000, 22050, 44100, 48000)
TEXT = "The quick brown fox jumps over the lazy dog, and then it takes a long rest in the shade."
EXIT_ENGINE_FAILED, EXIT_USAGE, EXIT_FILE = 1, 2, 4


def output_of(*command):
    return subprocess.run(command, capture_output=True, text=True, check=True).stdout


def sox_samples(path, *input_options):
    """Rate, channels and 16-bit samples of a file as SoX decodes it."""
    described = output_of("soxi", path) if not input_options else ""
    raw = subprocess.run(["sox", *input_options, path, "-t", "raw", "-e", "signed", "-b", "16", "-"],
                         capture_output=True, check=True).stdout
    found = {name: int(value) for name, value in re.findall(r"(Channels|Sample Rate) +: (\d+)", described)}
    return found.get("Sample Rate"), found.get("Channels"), wav_measure.samples_of(raw)


class Export(HostTest):
    @classmethod
    def setUpClass(cls):
        cls.seconds = None

    def export(self, name, *options, text=TEXT):
        path = self.folder / name
        self.assert_runs("export", path, text, *options)
        return path

    def reference_seconds(self):
        if Export.seconds is None:
            path = self.folder / "reference.wav"
            self.assert_runs("save", path, TEXT)
            Export.seconds = wav_measure.seconds(wav_measure.read_wav(path))
        return Export.seconds

    def assert_is_the_speech(self, samples, rate):
        self.assertAlmostEqual(len(samples) / rate, self.reference_seconds(), delta=0.02 * self.reference_seconds())
        self.assertGreater(wav_measure.rms(samples), 300, "silent")

    def test_wav_pcm_and_ogg_at_every_rate(self):
        for rate in RATES:
            with self.subTest(rate=rate):
                wav = self.export("speech.wav", "--rate", rate)
                for path in (wav, self.export("speech.ogg", "--rate", rate)):
                    found_rate, channels, samples = sox_samples(path)
                    self.assertEqual((found_rate, channels), (rate, 1))
                    self.assert_is_the_speech(samples, rate)
                pcm = self.export("speech.pcm", "--rate", rate)
                self.assertEqual(pcm.read_bytes(), wav.read_bytes()[44:])

    def test_gsm_is_always_at_8000(self):
        for rate in (8000, 48000):
            with self.subTest(rate=rate):
                path = self.export("speech.gsm", "--rate", rate)
                self.assertEqual(path.stat().st_size % 33, 0, "whole frames of 33 bytes")
                _, _, samples = sox_samples(path, "-r", "8000", "-c", "1")
                self.assert_is_the_speech(samples, 8000)

    def test_mp3_has_the_highest_bit_rate_of_the_voices_rate(self):
        path = self.export("speech.mp3")
        header = path.read_bytes()[:4]
        self.assertEqual((header[:2], header[2] & 0xFC, header[3] & 0xC0), (b"\xff\xf3", 0xE0, 0xC0),
                         "160 kbit/s at 22050 Hz, mono")
        subprocess.run(["mpg123", "-q", "-w", self.folder / "decoded.wav", path], check=True)
        decoded = wav_measure.read_wav(self.folder / "decoded.wav")
        self.assertEqual(decoded.rate, 22050)
        self.assert_is_the_speech(decoded.samples, decoded.rate)

    def test_any_file_name_will_do(self):
        for name in ("with blanks.ogg", "it's (1).mp3", "日本語 ü.wav", "ünïcode.gsm", "100%s.pcm"):
            with self.subTest(name=name):
                self.assertGreater(self.export(name).stat().st_size, 100)

    def test_failures_are_one_clear_line_and_leave_an_older_file_alone(self):
        older = self.folder / "older.wav"
        older.write_bytes(b"older")
        self.assertIn(".wav, .pcm", self.assert_fails(EXIT_USAGE, "export", self.folder / "x.flac", TEXT))
        self.assertIn("--rate", self.assert_fails(EXIT_USAGE, "export", older, TEXT, "--rate", "11025"))
        self.assertIn("no.csv", self.assert_fails(EXIT_FILE, "export", older, TEXT, "--dict", self.folder / "no.csv"))
        self.assertIn("no folder", self.assert_fails(EXIT_ENGINE_FAILED, "export", self.folder / "no folder" / "x.wav", TEXT))
        self.assertEqual(older.read_bytes(), b"older")

    def test_a_full_disk_is_reported_and_leaves_nothing(self):
        disk = pathlib.Path(os.environ["SPEECH_SMALL_DISK"])
        # The engine takes its own unfinished files away; SoX leaves what it has written.
        codes = {"x.wav": EXIT_ENGINE_FAILED, "x.pcm": EXIT_ENGINE_FAILED, "x.ogg": EXIT_FILE, "x.mp3": EXIT_FILE}
        for name, code in codes.items():
            with self.subTest(name=name):
                (disk / "ballast").write_bytes(bytes(60_000))
                self.assertIn(name, self.assert_fails(code, "export", disk / name, TEXT, "--rate", "22050"))
                self.assertFalse((disk / name).exists())
                (disk / "ballast").unlink()

    def test_every_export_is_logged(self):
        path = self.export("logged.wav")
        last = self.assert_runs("log").splitlines()[-1]
        self.assertRegex(last, r"\A\| \d{4}-\d\d-\d\d \d\d:\d\d:\d\d:\d{3}\|Speaker : .+,  Export File Path : .+  \Z")
        self.assertIn(path.name, last)


if __name__ == "__main__":
    narravo_program.main()
