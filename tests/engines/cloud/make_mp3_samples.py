#!/usr/bin/env python3
"""Makes MP3 files of every kind and, with another decoder, the samples that they should decode to.

usage: make_mp3_samples.py SOX MPG123 FOLDER
"""

import pathlib
import subprocess
import sys

# rate in Hz, channels, SoX's compression: a rate in kbit/s, or a negative quality for variable rates
SAMPLES = [(44100, 2, "192"), (48000, 1, "-2.2"), (32000, 2, "-5.2"), (22050, 1, "64"), (24000, 2, "-4.2"),
           (16000, 1, "-4.2"), (8000, 1, "32"), (11025, 2, "48"), (12000, 1, "-4.2")]


def main():
    sox, mpg123, folder = sys.argv[1], sys.argv[2], pathlib.Path(sys.argv[3])
    folder.mkdir(parents=True, exist_ok=True)
    for rate, channels, compression in SAMPLES:
        mp3 = folder / f"{rate}x{channels}.mp3"
        subprocess.run([sox, "-R", "-n", "-r", str(rate), "-c", str(channels), "-C", compression, mp3,
                        "synth", "1.5", "sine", "200-3000", "synth", "pinknoise", "mix", "gain", "-9"], check=True)
        with mp3.with_suffix(".raw").open("wb") as out:
            subprocess.run([mpg123, "-q", "-s", "-e", "s16", "--no-gapless", "--no-resync", mp3], stdout=out, check=True)


if __name__ == "__main__":
    main()
