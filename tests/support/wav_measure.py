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


def clipped_run(samples):
    """Length of the longest run of samples at either end of the range; speech that is not clipped has none."""
    longest = run = 0
    for sample in samples:
        run = run + 1 if sample in (-32768, 32767) else 0
        longest = max(longest, run)
    return longest


def sound_span(samples, threshold=SILENCE_PEAK):
    """First and last index at which something is heard, or None for silence."""
    loud = [index for index, sample in enumerate(samples) if abs(sample) > threshold]
    return (loud[0], loud[-1]) if loud else None


def heard_seconds(wav):
    """Length of what is heard, without the silence before and after."""
    span = sound_span(wav.samples)
    return (span[1] - span[0] + 1) / wav.channels / wav.rate if span else 0.0


def samples_of(raw):
    """Signed 16-bit little-endian samples out of bytes."""
    return array.array("h", raw)
