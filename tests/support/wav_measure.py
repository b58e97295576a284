"""Reads WAV files and finds the speech in them."""

import array
import collections
import math
import wave

WavFile = collections.namedtuple("WavFile", "channels sample_bytes rate samples")

# Speech from the bundled engine peaks far above this, and a null sink's monitor is digital silence.
SILENCE_PEAK = 200


def read_wav(path):
    """The samples of a 16-bit file as signed integers, channels interleaved."""
    with wave.open(str(path), "rb") as file:
        if file.getsampwidth() != 2:
            raise ValueError(f"{path}: {8 * file.getsampwidth()} bits per sample")
        samples = array.array("h", file.readframes(file.getnframes()))
        return WavFile(file.getnchannels(), file.getsampwidth(), file.getframerate(), samples)


def seconds(wav):
    return len(wav.samples) / wav.channels / wav.rate


def peak(samples):
    return max((abs(sample) for sample in samples), default=0)


def rms(samples):
    return math.sqrt(sum(sample * sample for sample in samples) / max(1, len(samples)))


def heard_seconds(wav):
    """Length of what is heard, without the silence before and after."""
    loud = [index for index, sample in enumerate(wav.samples) if abs(sample) > SILENCE_PEAK]
    return (loud[-1] - loud[0] + 1) / wav.channels / wav.rate if loud else 0.0
