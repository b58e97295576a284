"""Listens to the sound server while a program plays, and knows when each sample was heard."""

import array
import os
import subprocess
import threading
import time

import wav_measure

RATE = 44100
BYTES_PER_SAMPLE = 2


class SoundMonitor:
    """Records the default sink's monitor between `with` and the end of the block."""

    def __enter__(self):
        self._process = subprocess.Popen(
            ["parec", "--device=@DEFAULT_MONITOR@", "--format=s16le", f"--rate={RATE}", "--channels=1",
             "--latency-msec=10", "--raw"],
            stdout=subprocess.PIPE)
        self._chunks = []  # (moment at which the chunk's end was heard, bytes)
        self._started = threading.Event()
        self._reader = threading.Thread(target=self._read, daemon=True)
        self._reader.start()
        if not self._started.wait(20):
            raise RuntimeError("the sound server's monitor delivers nothing")
        return self

    def _read(self):
        while data := os.read(self._process.stdout.fileno(), 65536):
            self._chunks.append((time.monotonic(), data))
            self._started.set()

    def __exit__(self, *_):
        self._process.terminate()
        self._process.wait()
        self._reader.join()
        self._process.stdout.close()

    def samples(self):
        data = b"".join(data for _, data in list(self._chunks))
        return array.array("h", data[: len(data) // BYTES_PER_SAMPLE * BYTES_PER_SAMPLE])

    def wav(self):
        return wav_measure.WavFile(1, BYTES_PER_SAMPLE, RATE, self.samples())

    def sound_moments(self):
        """The moments, a millisecond apart, at which something was heard."""
        samples, moments = self.samples(), []
        step, start = RATE // 1000, 0
        for moment, data in list(self._chunks):
            end = start + len(data) // BYTES_PER_SAMPLE
            for index in range(start, end, step):
                if wav_measure.peak(samples[index:min(index + step, end)]) > wav_measure.SILENCE_PEAK:
                    moments.append(moment - (end - index) / RATE)
            start = end
        return moments

    def first_sound(self):
        """The moment (time.monotonic) at which sound began, or None."""
        return next(iter(self.sound_moments()), None)

    def last_sound(self):
        return next(reversed(self.sound_moments()), None)
