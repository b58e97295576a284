"""Exports end to end, with and without a user dictionary; other programs open the files."""

import os
import pathlib
import subprocess
import unittest

import narravo_program
from narravo_program import EXIT_ENGINE_FAILED, EXIT_FILE, EXIT_USAGE, HostTest, run

import wav_measure

TEXT = "The quick brown fox jumps over the lazy dog, and then it takes a long rest in the shade."


class Export(HostTest):
    def export(self, name, *options):
        path = self.folder / name
        self.assert_runs("export", path, TEXT, *options)
        return path

    def test_the_name_chooses_the_type_and_the_rate_is_as_asked(self):
        wav = self.export("speech.wav", "--rate", "48000")
        described = wav_measure.read_wav(wav)
        self.assertEqual((described.channels, described.rate), (1, 48000))
        self.assertGreater(wav_measure.rms(described.samples), 300, "silent")
        self.assertEqual(self.export("100%s ü.pcm", "--rate", "48000").read_bytes(), wav.read_bytes()[44:])

        ogg = self.export("with blanks.ogg", "--rate", "16000")
        self.assertEqual(subprocess.run(["soxi", "-r", ogg], capture_output=True, text=True).stdout, "16000\n")
        frames = self.export("ünïcode 日本語.gsm").stat().st_size / 33
        self.assertAlmostEqual(frames * 160 / 8000, wav_measure.seconds(described), delta=0.1)
        self.assertEqual(self.export("it's (1).mp3").read_bytes()[:2], b"\xff\xf3")

    def test_failures_are_one_clear_line_and_leave_an_older_file_alone(self):
        older = self.write("older.wav", b"older")
        for code, reason, output, *options in (
                (EXIT_USAGE, ".wav, .pcm", self.folder / "x.flac"), (EXIT_USAGE, "--rate", older, "--rate", "11025"),
                (EXIT_FILE, "no.csv", older, "--dict", self.folder / "no.csv"),
                (EXIT_FILE, "line 2", older, "--dict", self.write("bad.csv", b"a,b\nc\n")),
                (EXIT_ENGINE_FAILED, "no folder", self.folder / "no folder" / "x.wav")):
            self.assertIn(reason, self.assert_fails(code, "export", output, TEXT, *options))
        self.assertEqual(older.read_bytes(), b"older")

    def test_a_full_disk_is_reported_and_leaves_nothing(self):
        disk = pathlib.Path(os.environ["SPEECH_SMALL_DISK"])
        # The engine deletes its own unfinished files; SoX leaves what it has written.
        for name, code in {"x.wav": EXIT_ENGINE_FAILED, "x.ogg": EXIT_FILE}.items():
            with self.subTest(name=name):
                (disk / "ballast").write_bytes(bytes(60_000))
                self.assertIn(name, self.assert_fails(code, "export", disk / name, TEXT))
                self.assertFalse((disk / name).exists())

    def test_every_export_is_logged(self):
        path = self.export("logged.wav")
        last = self.assert_runs("log").splitlines()[-1]
        self.assertRegex(last, r"\A\| \d{4}-\d\d-\d\d \d\d:\d\d:\d\d:\d{3}\|Speaker : .+,  Export File Path : .+  \Z")
        self.assertIn(path.name, last)

    def test_a_dictionary_changes_what_is_exported(self):
        plain = self.export("out.wav").read_bytes()
        unused, used = self.write("unused.csv", b"nobody,x\n"), self.write("used.csv", b"fox,bear of many summers\n")
        self.assertEqual(self.export("out.wav", "--dict", unused).read_bytes(), plain)
        self.assertGreater(len(self.export("out.wav", "--dict", used).read_bytes()), len(plain))


class DictionaryCheck(HostTest):
    def test_every_bad_entry_is_printed_with_its_line_and_reason(self):
        path = self.write("words.csv", b'a,b\n\n"x\ny",z\nonly\n,empty\nb,\na,c\n\xc3\xa4,good\n"open,x\n')
        code, out, err = run("dict", "check", path)
        self.assertEqual(code, EXIT_FILE, err)
        said = [line.removeprefix(f"{path}:").split(": ", 1) for line in out.splitlines()]
        self.assertEqual([int(line) for line, _ in said], [3, 5, 6, 7, 8, 10])
        for (_, reason), expected in zip(said, ("control", "comma", "empty", "empty", "line 1", "quote")):
            self.assertIn(expected, reason)
        self.assertIn("6", err)

    def test_a_good_one_is_counted_and_what_is_no_dictionary_refused(self):
        good = self.write("wörter 日本.csv", "\ufeffGrüße,hallo\r\n\"a, b\",\"c \"\"d\"\"\"\r\n".encode())
        self.assertEqual(self.assert_runs("dict", "check", good), "good entries: 2\n")
        for content in (b"", b"a,b\n\0\1\2", b"a,\xff\xfe\n", bytes(100 << 20)):
            with self.subTest(content[:9]):
                self.assertIn("words.csv", self.assert_fails(EXIT_FILE, "dict", "check", self.write("words.csv", content)))
        self.assertIn("cannot read", self.assert_fails(EXIT_FILE, "dict", "check", self.folder))


if __name__ == "__main__":
    narravo_program.main()
