"""The host converts WAV files: what it writes, and what it leaves alone."""

import subprocess

import narravo_program
from narravo_program import HostTest

import wav_measure

EXIT_USAGE, EXIT_FILE = 2, 4


class Convert(HostTest):
    def tone(self, *options, name="in.wav", seconds=2):
        """A tone of 1000 Hz, written by SoX."""
        path = self.folder / name
        subprocess.run(["sox", "-n", *options, path, "synth", str(seconds), "sine", "1000", "vol", "0.5"], check=True)
        return path

    def frequency(self, path):
        stat = subprocess.run(["sox", path, "-n", "remix", "1", "stat"], capture_output=True, text=True, check=True).stderr
        return float(stat.split("Rough   frequency:")[1].split()[0])

    def test_keeps_pitch_length_and_shape(self):
        source = self.tone("-r", "44100", "-c", "2", "-b", "16")
        target = self.folder / "out.wav"
        self.assert_runs("convert", source, target, "--rate", "16000")
        wav = wav_measure.read_wav(target)
        self.assertEqual((wav.channels, wav.sample_bytes, wav.rate), (2, 2, 16000))
        self.assertAlmostEqual(wav_measure.seconds(wav), 2, delta=0.01)
        self.assertAlmostEqual(self.frequency(target), 1000, delta=30)

    def test_takes_width_and_channels_as_asked(self):
        source = self.tone("-r", "22050", "-c", "1", "-b", "16")
        target = self.folder / "out.wav"
        self.assert_runs("convert", source, target, "--rate", "8000", "--bits", "8", "--channels", "2")
        described = subprocess.run(["soxi", target], capture_output=True, text=True, check=True)
        self.assertNotIn("WARN", described.stderr)
        for line in (r"Channels +: 2\n", r"Sample Rate +: 8000\n", r"Precision +: 8-bit\n"):
            self.assertRegex(described.stdout, line)
        self.assertAlmostEqual(self.frequency(target), 1000, delta=30)

    def test_converts_a_file_into_itself(self):
        path = self.tone("-r", "8000", "-c", "1", "-b", "16", name="Größe 大きさ.wav")
        self.assert_runs("convert", path, path, "--rate", "16000")
        self.assertEqual(wav_measure.read_wav(path).rate, 16000)
        self.assertEqual([file.name for file in self.folder.iterdir()], [path.name])

    def test_shows_progress_when_asked(self):
        source = self.tone("-r", "44100", "-c", "2", "-b", "16")
        code, out, err = narravo_program.run("convert", source, self.folder / "out.wav", "--rate", "48000", "--progress")
        self.assertEqual((code, out), (0, ""), err)
        for line in err.splitlines():
            self.assertRegex(line, r"\Aconverting .*in\.wav, \d+ s(, \d+ % written)?\Z")
        self.assertTrue(err.endswith(", 100 % written\n"), err)

    def test_leaves_the_output_whole_when_it_fails(self):
        target = self.folder / "out.wav"
        target.write_bytes(b"precious")
        far = self.tone("-r", "4000", "-c", "1", "-b", "16", name="far.wav")
        wide = self.tone("-r", "8000", "-c", "1", "-b", "24", name="wide.wav")
        cut = self.tone("-r", "8000", "-c", "1", "-b", "16", name="cut.wav")
        cut.write_bytes(cut.read_bytes()[:-2])
        for source, rate, reason in ((far, 48000, "cannot convert"), (wide, 16000, "not PCM"), (cut, 16000, "shorter"),
                                     (self.folder / "missing.wav", 16000, "cannot open"), (target, 16000, "not a WAV")):
            error = self.assert_fails(EXIT_FILE, "convert", source, target, "--rate", rate)
            self.assertIn(reason, error)
            self.assertEqual(target.read_bytes(), b"precious")
        self.assertEqual(list(self.folder.glob("*.part")), [])

    def test_names_an_output_that_cannot_be(self):
        source = self.tone("-r", "8000", "-c", "1", "-b", "16")
        for target in (self.folder, self.folder / "missing" / "out.wav"):
            self.assertIn(target.name, self.assert_fails(EXIT_FILE, "convert", source, target, "--rate", "16000"))

    def test_refuses_a_wrong_command_line(self):
        source = self.tone("-r", "8000", "-c", "1", "-b", "16")
        target = self.folder / "out.wav"
        for options in ((), ("--rate", "0"), ("--rate", "fast"), ("--rate", "8000", "--bits", "24"),
                        ("--rate", "8000", "--channels", "3")):
            self.assert_fails(EXIT_USAGE, "convert", source, target, *options)
        self.assertFalse(target.exists())


if __name__ == "__main__":
    narravo_program.main()
