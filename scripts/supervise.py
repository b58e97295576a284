"""Runs one command beside background services that must be gone when it ends.

Shared by the scripts that give a command a sound server or a display of its own.
"""

import ctypes
import os
import signal
import subprocess
import sys

PR_SET_PDEATHSIG = 1
SI_KERNEL = 0x80


def die_with_parent():
    """Run in the child: even when the supervisor is killed outright, no service stays behind."""
    os.setsid()  # a Ctrl-C at the terminal is for the command, not for its services
    ctypes.CDLL(None).prctl(PR_SET_PDEATHSIG, signal.SIGTERM)


def start_service(arguments, **options):
    return subprocess.Popen(arguments, stdin=subprocess.DEVNULL, preexec_fn=die_with_parent, **options)


def stop_service(process):
    process.terminate()
    try:
        process.wait(timeout=5)
    except subprocess.TimeoutExpired:
        process.kill()
        process.wait()


def run_command(arguments, environment):
    """Runs the command in the foreground, hands signals on to it and returns its exit code."""
    watched = {signal.SIGINT, signal.SIGTERM, signal.SIGHUP, signal.SIGCHLD}
    signal.pthread_sigmask(signal.SIG_BLOCK, watched)
    try:
        command = subprocess.Popen(
            arguments,
            env=environment,
            preexec_fn=lambda: signal.pthread_sigmask(signal.SIG_UNBLOCK, watched),
        )
    except OSError as error:
        print(f"error: cannot run {arguments[0]}: {error.strerror}", file=sys.stderr)
        return 127
    while command.poll() is None:
        event = signal.sigtimedwait(watched, 1)
        # What the terminal sends reaches the whole foreground group, the command included.
        if event and event.si_signo != signal.SIGCHLD and event.si_code != SI_KERNEL:
            command.send_signal(event.si_signo)
    return command.returncode if command.returncode >= 0 else 128 - command.returncode
