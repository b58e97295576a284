"""Reports how long after a call to stop the last sound of the speech is heard, and asserts that it is silent at all.

usage: stop_is_silent.py COMMAND...   the bundled engine's test program; run it with a sound server of its own
"""

import subprocess
import sys
import time

from sound_monitor import SoundMonitor

GAP_SECONDS = 0.4


def main():
    moments = {"stopping": [], "stopped": []}
    with SoundMonitor() as monitor:
        command = sys.argv[1:] + ["--gtest_also_run_disabled_tests", "--gtest_filter=*SpeaksAndStops"]
        process = subprocess.Popen(command, stdout=subprocess.PIPE, text=True)
        for line in process.stdout:
            if line.strip() in moments:
                moments[line.strip()].append(time.monotonic())
        if process.wait() != 0:
            return f"the program ended with {process.returncode}"
        time.sleep(0.5)
    heard = monitor.sound_moments()
    if len(moments["stopping"]) != 3:
        return "not every speech was stopped"
    for stopping, stopped in zip(moments["stopping"], moments["stopped"]):
        if not any(stopping - 1 < moment < stopping for moment in heard):
            return "nothing was heard before the stop"
        after = [moment - stopping for moment in heard if stopping <= moment < stopping + GAP_SECONDS]
        print(f"stop took {1000 * (stopped - stopping):.1f} ms; "
              f"the last sound was heard {1000 * max(after, default=0):.0f} ms after the call")
        if after and max(after) > GAP_SECONDS - 0.01:
            return "the speech went on after the stop"
    return 0


if __name__ == "__main__":
    sys.exit(main())
