"""The host without sound: listing voices, saving files, refusing what is wrong."""

import re
import subprocess
import unittest

import narravo_program
from narravo_program import HostTest

import wav_measure

EXIT_USAGE, EXIT_NO_VOICE, EXIT_FILE = 2, 3, 4


def parse_table(text):
    heading, *rows = [re.split(r"  +", line) for line in text.splitlines()]
    return [dict(zip(heading, row)) for row in rows]


class Voices(HostTest):
    def test_lists_two_genders_of_many_languages(self):
        voices = parse_table(self.assert_runs("voices"))
        local = [voice for voice in voices if voice["ENGINE"] == "espeak"]
        self.assertGreater(len(local), 200)
        self.assertEqual(len({voice["VOICE"] for voice in voices}), len(voices), "names are not unique")
        for voice in local:
            self.assertIn(voice["GENDER"], ("FEMALE", "MALE"))
            self.assertEqual(voice["RATE"], "22050")
            self.assertRegex(voice["LANGUAGE"], r"\A[a-z]{2,8}(-[A-Za-z0-9]+)*\Z")
        female = sum(voice["GENDER"] == "FEMALE" for voice in local)
        self.assertEqual(2 * female, len(local))

    def test_narrows_to_a_language(self):
        languages = {voice["LANGUAGE"] for voice in parse_table(self.assert_runs("voices", "--language", "EN"))}
        self.assertGreaterEqual(languages, {"en-US", "en-GB"})
        self.assertTrue(all(code.split("-")[0] == "en" for code in languages), languages)

    def test_knows_no_voice_of_an_unknown_language(self):
        self.assertIn("'xx'", self.assert_fails(EXIT_NO_VOICE, "voices", "--language", "xx"))


class Save(HostTest):
    def save(self, *arguments, **options):
        path = self.folder / "out 日本語 ünïcode.wav"
        self.assert_runs("save", path, *arguments, **options)
        return wav_measure.read_wav(path)

    def test_writes_a_clean_wav_file_that_sox_reads(self):
        wav = self.save("Hello, world.")
        self.assertTrue(0.5 < wav_measure.seconds(wav) < 3, wav_measure.seconds(wav))
        self.assertGreater(wav_measure.rms(wav.samples), 300)
        self.assertLess(wav_measure.clipped_run(wav.samples), 3)
        described = subprocess.run(["soxi", *self.folder.glob("*.wav")], capture_output=True, text=True, check=True)
        self.assertNotIn("WARN", described.stderr)
        for line in (r"Channels +: 1\n", r"Sample Rate +: 22050\n", r"Precision +: 16-bit\n"):
            self.assertRegex(described.stdout, line)

    def test_takes_every_way_of_giving_text(self):
        spoken = self.save("Grüße aus Köln", "--voice", "de")
        text = "Grüße aus Köln".encode()
        file = self.folder / "grüße.txt"
        file.write_bytes(b"\xef\xbb\xbf" + text)
        ways = {
            "separate words": self.save("Grüße", "aus", "Köln", "--voice", "de"),
            "file with a mark": self.save("-f", file, "--voice", "de"),
            "standard input": self.save("-", "--voice", "de", stdin=text),
        }
        for way, wav in ways.items():
            self.assertEqual(wav.samples, spoken.samples, way)
        self.assertNotEqual(self.save("Grue aus Koeln", "--voice", "de").samples, spoken.samples)

    def test_applies_speed_pitch_volume_and_voice(self):
        plain = self.save("One two three four five")
        fast = self.save("One two three four five", "--speed", "200")
        quiet = self.save("One two three four five", "--volume", "30")
        self.assertLess(wav_measure.seconds(fast), 0.7 * wav_measure.seconds(plain))
        self.assertLess(wav_measure.rms(quiet.samples), 0.6 * wav_measure.rms(plain.samples))
        for changed in (["--pitch", "150"], ["--gender", "female"], ["--voice", "fr"]):
            self.assertNotEqual(self.save("One two three four five", *changed).samples, plain.samples, changed)

    def test_reads_ssml_only_when_asked(self):
        marked = '<speak>Hello <break time="1500ms"/> world</speak>'
        with_break = wav_measure.seconds(self.save("--ssml", marked))
        self.assertGreater(with_break, wav_measure.seconds(self.save("Hello world")) + 1.0)


class Refusals(HostTest):
    def test_wrong_command_lines(self):
        output = self.folder / "out.wav"
        for arguments in ([], ["sing"], ["speak"], ["save"], ["save", output], ["speak", "a", "--speed", "fast"],
                          ["speak", "a", "--unknown"], ["speak", "a", "-f", "b"], ["speak", "a", "--speed", "100000"],
                          ["save", output, "a", "--pitch", "-7"], ["speak", "a", "--gender", "none"]):
            with self.subTest(arguments=arguments):
                self.assert_fails(EXIT_USAGE, *arguments)
        self.assertFalse(output.exists())

    def test_voices_that_do_not_exist(self):
        line = self.assert_fails(EXIT_NO_VOICE, "speak", "--voice", "Germann", "Hallo")
        self.assertIn("did you mean German?", line)
        self.assertIn("narravo voices", line)

    def test_files_that_cannot_be_used(self):
        broken = self.folder / "broken.txt"
        output = self.folder / "out.wav"
        self.assertIn("missing.txt", self.assert_fails(EXIT_FILE, "speak", "-f", self.folder / "missing.txt"))
        for content in (b"", b"\xef\xbb\xbf\r\n", b"Gr\xfc\xdfe", b"\xff\xfeH\0i\0", b"cut\0short", bytes(range(256))):
            with self.subTest(content=content):
                broken.write_bytes(content)
                self.assertIn("broken.txt", self.assert_fails(EXIT_FILE, "save", output, "-f", broken))
        self.assertFalse(output.exists())
        self.assert_fails(EXIT_FILE, "save", self.folder / "no such folder" / "out.wav", "Hello")
        self.assert_fails(EXIT_FILE, "speak", "-", stdin=b"")

    def test_help_is_there_for_every_command(self):
        program = self.assert_runs("--help")
        for command, option in (("voices", "--language"), ("speak", "--ssml"), ("save", "OUTPUT"), ("convert", "--rate")):
            self.assertIn(command, program)
            text = self.assert_runs(command, "--help")
            self.assertIn(option, text)
            self.assertIn("130", text)


if __name__ == "__main__":
    narravo_program.main()
