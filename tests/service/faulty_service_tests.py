"""Tests of narravo-faulty-service: each reply is as bad as it claims. usage: faulty_service_tests.py PROGRAM"""

import os
import subprocess
import sys
import tempfile
import unittest
import urllib.parse
import urllib.request

PROGRAM = ""


class FaultyService(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.process = subprocess.Popen([sys.executable, PROGRAM, "--record", cls.folder.name], stdout=subprocess.PIPE,
                                       text=True)
        cls.url = cls.process.stdout.readline().removeprefix("listening on ").strip()

    @classmethod
    def tearDownClass(cls):
        cls.process.terminate()
        assert cls.process.wait(60) == 0
        cls.process.stdout.close()
        cls.folder.cleanup()

    def setUp(self):
        self.get("/requests?clear=1")
        self.get("/faults?clear=1")

    def get(self, path):
        with urllib.request.urlopen(urllib.parse.urljoin(self.url, path)) as reply:
            return reply.read()

    def curl(self, body, *options):
        """curl's exit code, the final status and type, and the body."""
        run = subprocess.run(["curl", "-sL", "--output", "-", "--write-out", "%{stderr}%{http_code} %{content_type}",
                              "--data-binary", "@-", *options, self.url], input=body, capture_output=True, check=False)
        return run.returncode, run.stderr.decode(), run.stdout

    def faulty(self, name, *options):
        return self.curl(f"key=1&voice=Fault-{name}&text=a".encode(), *options)

    def test_replies_are_what_they_claim(self):
        tone = self.faulty("speech")[2]
        self.assertEqual((tone[:4], len(tone)), (b"RIFF", 44 + 2 * 5512))
        complete, cut_short, empty_reply, timed_out, reset, too_many, refused, not_http = 0, 18, 52, 28, 56, 47, 7, 1
        for name, outcome in {
            "parameters": (complete, "200 audio/wav; rate=22050", tone),
            "text:out of order": (complete, "200 text/plain", b"out of order\n"),
            "lines:one:two": (complete, "200 text/plain", b"one\ntwo"),
            "long-line:2000": (complete, "200 text/plain", b"0123456789" * 200),
            "error": (complete, "500 text/plain", b"the synthesizer failed\n"),
            "error:503:busy": (complete, "503 text/plain", b"busy\n"),
            "mpeg": (complete, "200 audio/mpeg", tone),
            "wrong-type": (complete, "200 text/plain", tone),
            "no-type": (complete, "200 ", tone),
            "empty": (complete, "200 audio/wav", b""),
            "empty-text": (complete, "200 text/plain", b""),
            "delay:10": (complete, "200 audio/wav", tone),
            "stutter:2000:1": (complete, "200 audio/wav", tone),
            "chunked": (complete, "200 audio/wav", tone),
            "until-close": (complete, "200 audio/wav", tone),
            "cut:1000": (cut_short, "200 audio/wav", tone[:1000]),
            "cut:0": (cut_short, "200 audio/wav", b""),
            "chunked:cut": (cut_short, "200 audio/wav", tone[:2100]),
            "close": (empty_reply, "000 ", b""),
            "reset": (reset, "000 ", b""),
            "garbage": (not_http, "000 ", b""),
            "redirect": (complete, "200 audio/wav", tone),
            "redirect:error:404:gone": (complete, "404 text/plain", b"gone\n"),
            "redirect-post": (complete, "200 audio/wav", tone),
            "redirect-audio-header": (complete, "200 text/plain", b"the service is out of order\n"),
            "no-such-reply": (complete, "400 text/plain", b"no such reply: no-such-reply\n"),
        }.items():
            with self.subTest(name):
                self.assertEqual(self.faulty(name), outcome)
        self.assertEqual(self.faulty("redirect-loop")[0], too_many)
        self.assertEqual(self.faulty("redirect-nowhere")[0], refused)
        self.assertEqual(self.faulty("silent", "--max-time", "0.3")[0], timed_out)
        self.assertEqual(len(self.faulty("not-a-wav")[2]), 1000)
        self.assertEqual(self.faulty("endless-body:5000000")[0], cut_short)
        self.assertNotEqual(self.faulty("endless-header")[0], complete)

    def test_headers_of_redirections_and_strays_can_say_audio(self):
        for name in ("redirect-audio-header", "stray-header"):
            _, outcome, headers_and_body = self.faulty(name, "--include")
            self.assertIn("text/plain", outcome)
            self.assertIn(b"audio/wav", headers_and_body)

    def test_queued_replies_come_first_and_once(self):
        self.assertEqual(self.get("/faults?next=error:500:first&next=text:second"), b"2")
        self.assertEqual([self.faulty("text:third")[2] for _ in range(3)], [b"first\n", b"second\n", b"third\n"])
        self.assertEqual(self.get("/faults"), b"0")

    def test_bodies_are_kept_byte_for_byte(self):
        body = b"key=1&voice=a b&text=" + bytes(range(256)) * 4096 + b"&more=%41+%42%C3%A9"
        self.assertEqual(self.curl(body)[0], 0)
        self.assertEqual(self.get("/requests"), b"1")
        self.assertEqual(self.get("/requests/last"), body)
        self.assertEqual(self.get("/requests/last?field=more"), "A+B\u00e9".encode())
        with open(os.path.join(self.folder.name, "0001.form"), "rb") as file:
            self.assertEqual(file.read(), body)

    def test_a_command_gets_the_address_and_decides_the_exit_code(self):
        script = 'test "$NARRAVO_FAULTY_URL" = "http://127.0.0.1:$NARRAVO_FAULTY_PORT/a/speak" && ' \
                 'curl -s -d voice=fault-text:hello "$NARRAVO_FAULTY_URL" && exit 7'
        run = subprocess.run([sys.executable, PROGRAM, "--", "sh", "-c", script], capture_output=True, check=False)
        self.assertEqual((run.returncode, run.stdout), (7, b"hello\n"))


if __name__ == "__main__":
    PROGRAM = sys.argv.pop(1)
    unittest.main()
