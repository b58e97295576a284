"""Tests of narravo-service as a whole, over HTTP. usage: service_http_test.py PROGRAM [UNITTEST ARGUMENT...]"""

import array
import concurrent.futures
import configparser
import http.client
import os
import pathlib
import re
import signal
import socket
import struct
import subprocess
import sys
import tempfile
import time
import unittest
import urllib.parse

PROGRAM = ""
KEY = "9e4b1c7a2d6f8e0a3b5c7d9f1e2a4c6b"
FORM = "application/x-www-form-urlencoded"


class Service:
    """A running service on a free port."""

    def __init__(self, *arguments, environment=None):
        self.log = tempfile.TemporaryFile()
        self.process = subprocess.Popen([PROGRAM, "--port", "0", *arguments], stdout=subprocess.PIPE, stderr=self.log,
                                        env={**os.environ, **(environment or {})})
        address = self.process.stdout.readline().decode().strip()
        self.port = int(re.fullmatch(r"listening on http://127\.0\.0\.1:(\d+)/a/speak", address).group(1))

    def request(self, method, path, body=None, headers=None):
        connection = http.client.HTTPConnection("127.0.0.1", self.port, timeout=120)
        try:
            connection.request(method, path, body, headers or {})
            reply = connection.getresponse()
            return reply, reply.read()
        finally:
            connection.close()

    def post(self, body, content_type=FORM):
        return self.request("POST", "/a/speak", body, {"Content-Type": content_type})

    def speak(self, text, field="text", voice="English (America)", audioformat="pcm"):
        """As the module's client writes it: voice and language raw, the text with everything percent-encoded."""
        escaped = urllib.parse.quote(text, safe="")
        return self.post(f"streaming=0&key={KEY}&voice={voice}&lang=en-US&{field}={escaped}&audioformat={audioformat}"
                         .encode("latin-1"))

    def raw(self, data, ends=False):
        """The first line of what comes back for these bytes; with ends, nothing follows them."""
        with socket.create_connection(("127.0.0.1", self.port), timeout=60) as connection:
            connection.sendall(data)
            if ends:
                connection.shutdown(socket.SHUT_WR)
            return b"".join(iter(lambda: connection.recv(65536), b"")).split(b"\r\n")[0]

    def stop(self):
        self.process.terminate()
        return self.wait()

    def wait(self):
        """Waits for the service's end; the lines of its log."""
        try:
            assert self.process.wait(60) == 0
        finally:
            self.process.kill()
            self.process.wait()
            self.process.stdout.close()
        with self.log:
            self.log.seek(0)
            return self.log.read().decode().splitlines()


class ServiceTest(unittest.TestCase):
    arguments = ()

    @classmethod
    def setUpClass(cls):
        cls.service = Service(*cls.arguments)
        cls.addClassCleanup(cls.service.stop)

    def assert_refused(self, outcome, status, text):
        reply, body = outcome
        self.assertEqual((reply.status, body.decode()), (status, text + "\n"))
        self.assertEqual(reply.getheader("Content-Type"), "text/plain; charset=utf-8")


class Speaking(ServiceTest):
    def assert_wav(self, outcome):
        reply, body = outcome
        self.assertEqual((reply.status, reply.getheader("Content-Type")), (200, "audio/wav"))
        self.assertEqual(body[:44], struct.pack("<4sI4s4sIHHIIHH4sI", b"RIFF", len(body) - 8, b"WAVE", b"fmt ", 16, 1,
                                                1, 22050, 44100, 2, 16, b"data", len(body) - 44))
        return body

    def test_ssml_is_obeyed_and_plain_text_is_not_ssml(self):
        plain, ssml = (self.assert_wav(self.service.speak("<speak>one<break time='5s'/>two</speak>", field=field))
                       for field in ("text", "ssml"))
        without_break = self.assert_wav(self.service.speak("<speak>one two</speak>", field="ssml"))
        self.assertNotEqual(plain, ssml)
        self.assertEqual(ssml.count(ssml[4044:5044]), 1, "a block was sent twice")
        self.assertGreater(len(ssml) - len(without_break), 4 * 44100)

    def test_ssml_cannot_reach_files_of_the_machine(self):
        with tempfile.NamedTemporaryFile(suffix=".wav") as file:
            file.write(self.assert_wav(self.service.speak("Several words are spoken in this recording.")))
            file.flush()
            replies = [self.assert_wav(self.service.speak(f"<speak>a<audio src='{name}'/>b</speak>", field="ssml"))
                       for name in (file.name, "/nowhere.wav")]
        self.assertEqual(*replies)

    def test_mp3_is_readable_and_as_long_as_the_wav(self):
        text = "Hello, world. This is a longer sentence."
        wav = self.assert_wav(self.service.speak(text))
        reply, body = self.service.speak(text, audioformat="mp3")
        self.assertEqual((reply.status, reply.getheader("Content-Type")), (200, "audio/mpeg"))
        samples = subprocess.run(["mpg123", "-q", "-s", "-"], input=body, stdout=subprocess.PIPE, check=True).stdout
        self.assertAlmostEqual(len(samples), len(wav), delta=6000)
        self.assertGreater(max(array.array("h", samples)), 3000)

    def test_odd_text_harms_nothing(self):
        for text in ("", " ", "\n\n", "<speak/>", "<speak", "<mark/>"):
            self.assertLess(len(self.assert_wav(self.service.speak(text, field="ssml"))), 44100)
        for text in ("&=+%", "\x01\x02\x1b[0m", "\u00e9\u4e2d\U0001F600\ufeff\ufffe", "<" * 2000, "&#0;&#xffffffff;",
                     "<speak><voice name='" + "x" * 5000 + "'>a</voice></speak>", "<speak>" * 500):
            for field in ("text", "ssml"):
                with self.subTest(text=text[:20], field=field):
                    self.assert_wav(self.service.speak(text, field=field))

    def test_every_shipped_cloud_voice_speaks_in_its_own_way(self):
        shipped = configparser.ConfigParser()
        shipped.read(pathlib.Path(__file__).parents[2] / "lxapi" / "bundled" / "engines.ini", encoding="utf-8")
        kinds = {(shipped[name]["type"], shipped[name]["rate"]) for name in shipped.sections()}
        self.assertEqual(kinds, {("skyvo", "22050")})
        voices = [*shipped.sections(), "English (America)"]
        replies = {self.assert_wav(self.service.speak("1 2 3", voice=voice)) for voice in voices}
        self.assertEqual(len(replies), len(voices))
        self.assertGreater(min(map(len, replies)), 10_000)

    def test_many_requests_at_once_each_get_their_own_sound(self):
        texts = [f"Sentence number {n}" for n in range(100)]
        one_by_one = [self.assert_wav(self.service.speak(text)) for text in texts[:8]]
        with concurrent.futures.ThreadPoolExecutor(len(texts)) as pool:
            at_once = [self.assert_wav(outcome) for outcome in pool.map(self.service.speak, texts)]
        self.assertEqual(at_once[:8], one_by_one)
        self.assertGreater(len(set(at_once)), 90)


class Refusing(ServiceTest):
    arguments = ("--max-body-bytes", "2000", "--max-speech-seconds", "5")

    def test_requests_that_are_no_speech_requests(self):
        service = self.service
        for outcome, status, text in (
                (service.post("key=x"), 401, 'the field "key" does not hold this service\'s key'),
                (service.post(f"key={KEY}&voice=en-us&text=a", "text/plain"), 415,
                 "the request must be a form (application/x-www-form-urlencoded)"),
                (service.request("GET", "/somewhere"), 404, "there is nothing here; requests go to /a/speak"),
                (service.request("GET", "/a/speak?text=a"), 405, "this address takes POST only"),
                (service.request("DELETE", "/health"), 405, "this address takes GET, HEAD only"),
                (service.post(b"a" * 2001), 413, "the request body is larger than 2000 bytes"),
                (service.speak("<speak><break time='60s'/></speak>", field="ssml"), 413,
                 "the speech would be longer than 5 seconds")):
            self.assert_refused(outcome, status, text)

    def test_bodies_in_chunks_and_announced_ones_are_held_to_the_limit_too(self):
        start = f"POST /a/speak HTTP/1.1\r\nHost: x\r\nContent-Type: {FORM}\r\n".encode()
        chunked = start + b"Transfer-Encoding: chunked\r\n\r\n"
        self.assertIn(b" 413 ", self.service.raw(chunked + (b"3e8\r\n" + b"a" * 1000 + b"\r\n") * 3 + b"0\r\n\r\n"))
        good = f"key={KEY}&voice=en-us&text=a".encode()
        self.assertIn(b" 200 ", self.service.raw(chunked + f"{len(good):x}\r\n".encode() + good + b"\r\n0\r\n\r\n"))
        # Too large a body is not asked for.
        self.assertIn(b" 413 ", self.service.raw(start + b"Content-Length: 5000000\r\nExpect: 100-continue\r\n\r\n"))

    def test_bytes_that_are_no_proper_or_no_whole_request(self):
        for data in (b"\r\n\r\n", b"nonsense\r\n\r\n", b"GET /a/speak\r\n\r\n", bytes(range(256)) + b"\r\n\r\n",
                     b"POST /a/speak HTTP/1.1\r\nHost: x\r\n\r\n", b"GET /" + b"a" * 20_000 + b" HTTP/1.1\r\n\r\n"):
            with self.subTest(data=data[:60]):
                self.assertRegex(self.service.raw(data), rb"^HTTP/1\.1 4\d\d ")
        start = f"POST /a/speak HTTP/1.1\r\nHost: x\r\nContent-Type: {FORM}\r\nContent-Length: 1000\r\n\r\nkey="
        for length in (0, 1, 30, len(start) - 6, len(start)):
            self.assertNotIn(b" 200 ", self.service.raw(start[:length].encode(), ends=True))
        self.assertEqual(self.service.request("GET", "/health")[0].status, 200)


class Settings(unittest.TestCase):
    def test_the_key_can_be_set_by_the_environment_and_one_megabyte_of_text_passes_by_default(self):
        service = Service("--max-speech-seconds", "1", environment={"NARRAVO_SERVICE_KEY": "another"})
        self.assertEqual(service.speak("a")[0].status, 401)
        # Three bytes a character, nine once percent-encoded. That it would be too long is found out by speaking it.
        body = service.post("key=another&voice=en-us&text=" + "%E4%B8%AD" * (1024 * 1024))[1]
        self.assertEqual(body, b"the speech would be longer than 1 seconds\n")
        service.stop()

    def test_the_log_has_a_line_for_each_request_without_its_text_and_key(self):
        service = Service()
        service.speak("Confidential matters")
        service.speak("Confidential matters", voice="Confidential")
        service.request("GET", "/Confidential%0amatters?text=Confidential")
        lines = sorted(service.stop(), key=lambda line: line[25:])  # one may be written after the next request has come
        stamp = r"^\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z "
        for line, expected in zip(lines, (
                r'200 POST /a/speak voice="English \(America\)" form=text characters=20 bytes=\d{5} ms=\d+$',
                r"404 GET other bytes=\d+ ms=\d+$", r"404 POST /a/speak bytes=\d+ ms=\d+$"), strict=True):
            self.assertRegex(line, stamp + expected)

    def test_a_start_that_cannot_work_says_why(self):
        service = Service()
        for arguments, message in ((["--port", str(service.port)], f"cannot listen on 127.0.0.1:{service.port}\n"),
                                   (["--synthesizer", "/nowhere"], "the synthesizer /nowhere does not work: it "
                                    "cannot be started: No such file or directory\n"),
                                   (["--voice-data", "/nowhere"], "it cannot find the voice data"),
                                   (["--port", "70000"], "--port: Value 70000 not in range")):
            with self.assertRaises(subprocess.CalledProcessError) as failure:
                subprocess.run([PROGRAM, *arguments], capture_output=True, text=True, check=True, timeout=60)
            self.assertIn(message, failure.exception.stderr)
        service.stop()


class SlowSynthesis(unittest.TestCase):
    """With a synthesizer that holds until a file appears, so that nothing depends on timing."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.gate, self.held, self.synthesizer = (pathlib.Path(folder.name, name) for name in ("gate", "held", "speak"))
        real = pathlib.Path(PROGRAM).with_name("narravo-synthesizer")
        self.synthesizer.write_text(f"""#!/bin/sh
case " $* " in *" --list "*) exec '{real}' "$@" ;; esac
text=$(cat)
case $text in
  hold*) echo >>'{self.held}'; while [ ! -e '{self.gate}' ]; do sleep 0.02; done ;;
  die*) kill -SEGV $$ ;;
esac
printf '%s' "$text" | exec '{real}' "$@"
""")
        self.synthesizer.chmod(0o755)
        self.pool = concurrent.futures.ThreadPoolExecutor(8)
        self.addCleanup(self.pool.shutdown)
        self.addCleanup(self.gate.touch)

    def start(self, *arguments):
        return Service("--synthesizer", str(self.synthesizer), *arguments)

    def hold(self, service, count, text="hold"):
        """Starts requests that are held, and waits until all of their syntheses run."""
        requests = [self.pool.submit(service.speak, text) for _ in range(count)]
        while not self.held.exists() or len(self.held.read_text()) < count:
            self.assertFalse(any(request.done() for request in requests), "a request was not held")
            time.sleep(0.01)
        return requests

    def release(self, service, requests, end=Service.stop):
        self.gate.touch()
        self.assertEqual({request.result()[0].status for request in requests}, {200})
        end(service)

    def test_short_texts_pass_long_ones(self):
        service = self.start("--concurrent", "2", "--wait-seconds", "20")
        long_ones = self.hold(service, 1, "hold " * 1500)
        waiting = self.pool.submit(service.speak, "hold " * 1500)
        for _ in range(3):
            self.assertEqual(service.speak("short")[0].status, 200)
        self.assertFalse(any(request.done() for request in (*long_ones, waiting)))
        self.release(service, (*long_ones, waiting))

    def test_a_full_house_answers_503(self):
        service = self.start("--concurrent", "1", "--wait-seconds", "0")
        held = self.hold(service, 1, "hold " * 1500)
        reply, body = service.speak("one too many")
        self.assertEqual((reply.status, reply.getheader("Retry-After"), body),
                         (503, "5", b"the service is busy; try again later\n"))
        self.assertEqual(service.request("GET", "/health")[0].status, 200)
        self.release(service, held)

    def test_a_synthesis_that_takes_too_long_or_dies_takes_only_its_request_along(self):
        service = self.start("--time-limit-seconds", "1")
        for text, message in (("hold", b"the synthesis was ended because it took more than 1 seconds\n"),
                              ("die", b"the synthesizer failed: it was ended by signal 11\n")):
            self.assertEqual(service.speak(text)[1], message)
        self.assertEqual(service.speak("live")[0].status, 200)
        service.stop()

    def test_stopping_finishes_what_is_under_way(self):
        for number in (signal.SIGINT, signal.SIGTERM):
            with self.subTest(signal=number):
                self.gate.unlink(missing_ok=True)
                self.held.unlink(missing_ok=True)
                service = self.start()
                held = self.hold(service, 3)
                service.process.send_signal(number)
                # Once the port is closed the service is on its way out, with three requests under way.
                with self.assertRaises(ConnectionError):
                    while True:
                        socket.create_connection(("127.0.0.1", service.port), timeout=60).close()
                self.assertIsNone(service.process.poll())
                self.release(service, held, Service.wait)


if __name__ == "__main__":
    PROGRAM = sys.argv.pop(1)
    unittest.main()
