"""User dictionaries: what is said of bad ones, and what good ones change."""

import unittest

import narravo_program
from narravo_program import HostTest, run

EXIT_FILE = 4


class Dictionaries(HostTest):
    def write(self, content, name="words.csv"):
        path = self.folder / name
        path.write_bytes(content)
        return path

    def test_every_bad_entry_is_printed_with_its_line_and_reason(self):
        path = self.write(b'a,b\n\n"x\ny",z\nonly\n,empty\nb,\na,c\n\xc3\xa4,good\n"open,x\n')
        code, out, err = run("dict", "check", path)
        self.assertEqual(code, EXIT_FILE, err)
        said = [line.removeprefix(f"{path}:").split(": ", 1) for line in out.splitlines()]
        self.assertEqual([int(line) for line, _ in said], [3, 5, 6, 7, 8, 10])
        for (_, reason), expected in zip(said, ("control", "comma", "empty", "empty", "line 1", "quote")):
            self.assertIn(expected, reason)
        self.assertIn("6", err)

    def test_a_good_one_is_counted(self):
        path = self.write("\ufeffGrüße,hallo\r\n\"a, b\",\"c \"\"d\"\"\"\r\n".encode(), "wörter 日本.csv")
        self.assertEqual(self.assert_runs("dict", "check", path), "good entries: 2\n")

    def test_files_that_are_no_dictionary_are_refused_in_one_line(self):
        cases = {"empty": b"", "binary": b"a,b\n\0\1\2", "not UTF-8": b"a,\xff\xfe\n", "too large": bytes(100 << 20)}
        for what, content in cases.items():
            with self.subTest(what):
                self.assertIn("words.csv", self.assert_fails(EXIT_FILE, "dict", "check", self.write(content)))
        self.assertIn("cannot read", self.assert_fails(EXIT_FILE, "dict", "check", self.folder))

    def test_a_good_one_changes_what_is_exported_and_a_bad_one_stops_it(self):
        out = self.folder / "out.wav"
        self.assert_runs("export", out, "Hello, world.")
        plain = out.read_bytes()
        self.assert_runs("export", out, "Hello, world.", "--dict", self.write(b"nobody,x\n"))
        self.assertEqual(out.read_bytes(), plain)
        self.assert_runs("export", out, "Hello, world.", "--dict", self.write(b"world,my dear everybody\n"))
        self.assertGreater(len(out.read_bytes()), len(plain))
        changed = out.read_bytes()
        self.assertIn("line 2", self.assert_fails(EXIT_FILE, "export", out, "x", "--dict", self.write(b"a,b\nc\n")))
        self.assertEqual(out.read_bytes(), changed)


if __name__ == "__main__":
    narravo_program.main()
