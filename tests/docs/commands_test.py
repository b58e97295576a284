"""Runs what the documents say about the source tree, as they say it: commands/*.sh, in the tree's root.

usage: commands_test.py CLASS   (Service or Host)
"""

import contextlib
import fcntl
import os
import pathlib
import re
import signal
import subprocess
import sys
import tempfile
import unittest
import wave

HERE = pathlib.Path(__file__).resolve().parent
SOURCE = HERE.parents[1]


def command(name):
    return ["bash", "-eu", str(HERE / "commands" / name)]


@contextlib.contextmanager
def service_port():
    """The service's own port, which other runs of this test want too."""
    with open(pathlib.Path(tempfile.gettempdir()) / "narravo-port-59125.lock", "w", encoding="ascii") as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)
        yield


class Service(unittest.TestCase):
    def test_starts_and_answers(self):
        with service_port(), tempfile.TemporaryDirectory() as folder, \
                subprocess.Popen(command("service.sh"), cwd=SOURCE, stdout=subprocess.PIPE, encoding="utf-8",
                                 process_group=0) as service:
            try:
                said = next((line for line in service.stdout if "://" in line), "nothing")
                self.assertIn("http://127.0.0.1:59125/a/speak", said)
                subprocess.run(command("request.sh"), cwd=folder, check=True, timeout=60, stderr=subprocess.DEVNULL)
                with wave.open(str(pathlib.Path(folder) / "hello.wav")) as sound:
                    self.assertGreater(sound.getnframes(), sound.getframerate() // 2)
            finally:
                os.killpg(service.pid, signal.SIGTERM)

    def test_every_option_is_documented(self):
        usage = subprocess.run([SOURCE / "build/native/bin/narravo-service", "--help"], stdout=subprocess.PIPE,
                               encoding="utf-8", check=True).stdout
        page = (SOURCE / "docs" / "service.md").read_text(encoding="utf-8")
        self.assertEqual(sorted(set(re.findall(r"^  (--[\w-]+)", usage, flags=re.M))),
                         sorted(re.findall(r"^\| `(--[\w-]+)`", page, flags=re.M)))

    def test_can_misbehave(self):
        with tempfile.TemporaryDirectory() as folder:
            (pathlib.Path(folder) / "tests").symlink_to(SOURCE / "tests")
            finished = subprocess.run(command("faulty.sh"), cwd=folder, stderr=subprocess.PIPE, encoding="utf-8",
                                      timeout=60, check=False)
            self.assertIn("transfer closed", finished.stderr)
            self.assertEqual((pathlib.Path(folder) / "cut.wav").stat().st_size, 100)


class Host(unittest.TestCase):
    def run_in_tree(self, name):
        """What the command prints."""
        finished = subprocess.run(command(name), cwd=SOURCE, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                  encoding="utf-8", timeout=300, check=True)
        return finished.stdout.strip()

    def test_every_command_is_documented(self):
        usage = subprocess.run([SOURCE / "narravo", "--help"], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                               encoding="utf-8", check=True).stdout
        listed = re.search(r"^Subcommands:\n((?:  .*\n)+)", usage, flags=re.M)[1]
        page = (SOURCE / "README.md").read_text(encoding="utf-8")
        self.assertEqual(sorted(re.findall(r"^  (\w+)", listed, flags=re.M)),
                         sorted(re.findall(r"^\| `(\w+)[^`]*` \|", page, flags=re.M)))

    def test_speaks(self):
        self.assertEqual(self.run_in_tree("hear.sh"), "Hello, world.")

    def test_speaks_through_the_service(self):
        with service_port():
            self.run_in_tree("demo_cloud.sh")


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], sys.argv[1]])
