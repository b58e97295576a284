"""Runs the README's host program and listens."""

import pathlib
import subprocess
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import wav_measure
from sound_monitor import SoundMonitor

with SoundMonitor() as monitor:
    code = subprocess.run(sys.argv[1:], timeout=200, check=False).returncode
    time.sleep(0.5)
heard = wav_measure.heard_seconds(monitor.wav())
print(f"exit code {code}, heard {heard:.2f} s")
sys.exit(0 if code == 0 and 0.5 < heard < 3 else 1)
