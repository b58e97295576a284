"""The host without sound: listing voices, saving and converting files, refusing what is wrong."""

import re
import subprocess
import unittest

import narravo_program
from narravo_program import EXIT_FILE, EXIT_NO_VOICE, EXIT_USAGE, HostTest

import wav_measure


class Voices(HostTest):
    def languages(self, *options):
        heading, *rows = [re.split(r"  +", line) for line in self.assert_runs("voices", *options).splitlines()]
        self.assertEqual(heading, ["VOICE", "LANGUAGE", "GENDER", "RATE", "ENGINE"])
        for row in rows:
            self.assertRegex("|".join(row[1:]), r"\A[a-z]{2,8}(-[A-Za-z0-9]+)*\|(FE)?MALE\|22050\|(espeak|skyvo)\Z")
        self.assertEqual(len({row[0] for row in rows}), len(rows), "names are not unique")
        return [row[1] for row in rows]

    def test_are_listed_all_or_of_one_language(self):
        self.assertGreater(len(self.languages()), 200)
        english = self.languages("--language", "EN")
        self.assertGreaterEqual(set(english), {"en-US", "en-GB"})
        self.assertEqual({code.split("-")[0] for code in english}, {"en"})
        self.assertIn("'xx'", self.assert_fails(EXIT_NO_VOICE, "voices", "--language", "xx"))


class Save(HostTest):
    def save(self, *arguments, **options):
        path = self.folder / "out 日本語 ünïcode.wav"
        self.assert_runs("save", path, *arguments, **options)
        return wav_measure.read_wav(path)

    def test_takes_every_way_of_giving_text(self):
        spoken = self.save("Grüße aus Köln", "--voice", "de")
        self.assertEqual((spoken.channels, spoken.rate), (1, 22050))
        self.assertGreater(wav_measure.rms(spoken.samples), 300)
        text = "Grüße aus Köln".encode()
        file = self.write("grüße.txt", b"\xef\xbb\xbf" + text)
        ways = {
            "separate words": self.save("Grüße", "aus", "Köln", "--voice", "de"),
            "file with a mark": self.save("-f", file, "--voice", "de"),
            "standard input": self.save("-", "--voice", "de", stdin=text),
        }
        for way, wav in ways.items():
            self.assertEqual(wav.samples, spoken.samples, way)

    def test_applies_speed_pitch_volume_voice_and_markup(self):
        plain = self.save("One two three four five")
        fast = self.save("One two three four five", "--speed", "200")
        quiet = self.save("One two three four five", "--volume", "30")
        marked = self.save("--ssml", '<speak>One two <break time="1500ms"/> three four five</speak>')
        self.assertLess(wav_measure.seconds(fast), 0.7 * wav_measure.seconds(plain))
        self.assertLess(wav_measure.rms(quiet.samples), 0.6 * wav_measure.rms(plain.samples))
        self.assertAlmostEqual(wav_measure.seconds(marked), wav_measure.seconds(plain) + 1.5, delta=0.5)
        for changed in (["--pitch", "150"], ["--gender", "female"]):
            self.assertNotEqual(self.save("One two three four five", *changed).samples, plain.samples, changed)


class Convert(HostTest):
    def tone(self, rate, channels, bits, name="in.wav"):
        """Two seconds of 1000 Hz, written by SoX."""
        path = self.folder / name
        subprocess.run(["sox", "-n", "-r", rate, "-c", channels, "-b", bits, path, "synth", "2", "sine", "1000"], check=True)
        return path

    def assert_is_tone(self, path, *expected):
        for option, value in zip(("-r", "-c", "-b", "-s"), expected):
            self.assertEqual(subprocess.run(["soxi", option, path], capture_output=True, text=True).stdout, value + "\n")
        stat = subprocess.run(["sox", path, "-n", "remix", "1", "stat"], capture_output=True, text=True, check=True).stderr
        self.assertAlmostEqual(float(stat.split("Rough   frequency:")[1].split()[0]), 1000, delta=30)

    def test_keeps_the_shape_or_takes_the_one_asked_for(self):
        target = self.folder / "out.wav"
        self.assert_runs("convert", self.tone("44100", "2", "8"), target, "--rate", "16000")
        self.assert_is_tone(target, "16000", "2", "8", "32000")
        self.assert_runs("convert", self.tone("22050", "1", "16"), target, "--rate", "8000", "--bits", "8", "--channels", "2")
        self.assert_is_tone(target, "8000", "2", "8", "16000")

    def test_converts_a_file_into_itself_and_reports_progress_when_asked(self):
        path = self.tone("8000", "1", "16", "Größe 大きさ.wav")
        code, out, err = narravo_program.run("convert", path, path, "--rate", "16000", "--progress")
        self.assertEqual((code, out), (0, ""), err)
        self.assertRegex(err, r"\A(converting .*大きさ\.wav, \d+ s(, \d+ % written)?\n)+\Z")
        self.assertTrue(err.endswith(", 100 % written\n"), err)
        self.assert_is_tone(path, "16000", "1", "16", "32000")
        self.assertEqual([file.name for file in self.folder.iterdir()], [path.name])

    def test_leaves_the_output_whole_when_it_fails(self):
        target = self.write("out.wav", b"precious")
        cut = self.write("cut.wav", self.tone("8000", "1", "16").read_bytes()[:-2])
        for source, output, rate, reason in (
                (self.tone("4000", "1", "16", "far.wav"), target, 48000, "cannot convert"), (cut, target, 16000, "shorter"),
                (self.folder / "missing.wav", target, 16000, "cannot open"), (target, target, 16000, "not a WAV"),
                (self.tone("8000", "1", "16"), self.folder, 16000, "is a folder"),
                (self.tone("8000", "1", "16"), self.folder / "missing" / "out.wav", 16000, "cannot create")):
            self.assertIn(reason, self.assert_fails(EXIT_FILE, "convert", source, output, "--rate", rate))
            self.assertEqual(target.read_bytes(), b"precious")
        self.assertEqual(list(self.folder.glob("*.part")), [])


class Refusals(HostTest):
    def test_wrong_command_lines(self):
        output = self.folder / "out.wav"
        for arguments in ([], ["speak"], ["speak", "a", "-f", "b"], ["speak", "a", "--speed", "100000"],
                          ["save", output, "a", "--pitch", "-7"], ["speak", "a", "--gender", "none"], ["convert", "a", output],
                          ["convert", "a", output, "--rate", "0"], ["convert", "a", output, "--rate", "8000", "--bits", "24"]):
            with self.subTest(arguments=arguments):
                self.assert_fails(EXIT_USAGE, *arguments)
        self.assertIn("did you mean German?", self.assert_fails(EXIT_NO_VOICE, "speak", "--voice", "Germann", "Hallo"))
        for command in ("convert", "export", "voices"):
            self.assertIn("130", self.assert_runs(command, "--help"))

    def test_texts_that_cannot_be_used(self):
        output = self.folder / "out.wav"
        self.assertIn("missing.txt", self.assert_fails(EXIT_FILE, "save", output, "-f", self.folder / "missing.txt"))
        self.assertIn("bad.txt", self.assert_fails(EXIT_FILE, "save", output, "-f", self.write("bad.txt", b"Gr\xfc\xdfe")))
        self.assert_fails(EXIT_FILE, "speak", "-", stdin=b"")
        self.assert_fails(EXIT_FILE, "save", self.folder / "no such folder" / "out.wav", "Hello")
        self.assertFalse(output.exists())


if __name__ == "__main__":
    narravo_program.main()
