"""Runs the command-line host as a user would."""

import pathlib
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))

# How to start the host, given on the command line by CTest: the emulator, if any, and the program.
COMMAND = []

# Far beyond what anything here takes: ends a hang, measures nothing.
HANG_SECONDS = 180

EXIT_ENGINE_FAILED, EXIT_USAGE, EXIT_NO_VOICE, EXIT_FILE, EXIT_INTERRUPTED = 1, 2, 3, 4, 130


def start(*arguments):
    return subprocess.Popen([*COMMAND, *map(str, arguments)], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                            stderr=subprocess.PIPE)


def run(*arguments, stdin=b"", **options):
    """Exit code, standard output and standard error, the texts decoded."""
    done = subprocess.run([*COMMAND, *map(str, arguments)], input=stdin, capture_output=True, timeout=HANG_SECONDS,
                          **options)
    return done.returncode, done.stdout.decode("utf-8"), done.stderr.decode("utf-8")


class HostTest(unittest.TestCase):
    """A test with a folder of its own that is gone afterwards."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="narravo-test-")
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def write(self, name, content):
        path = self.folder / name
        path.write_bytes(content)
        return path

    def assert_runs(self, *arguments, **options):
        code, out, err = run(*arguments, **options)
        self.assertEqual(code, 0, err)
        return out

    def assert_fails(self, expected_code, *arguments, **options):
        """The failure's one line on standard error."""
        code, out, err = run(*arguments, **options)
        self.assertEqual(code, expected_code, out + err)
        self.assertRegex(err, r"\Anarravo: [^\n]+\n\Z")
        return err


def main():
    separator = sys.argv.index("--")
    COMMAND.extend(sys.argv[separator + 1:])
    unittest.main(module="__main__", argv=sys.argv[:separator], verbosity=2)
