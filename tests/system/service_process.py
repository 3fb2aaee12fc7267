"""The process of one installation: its start, its signals, its end. It never outlives the
tests, whatever becomes of them."""
import ctypes
import os
import signal
import subprocess
import time
from contextlib import suppress

from local_time import ZONE_NAME
from waiting import DEADLINE

_PR_SET_PDEATHSIG = 1


def _prepare():
    """Runs in the new process. No umask: the service narrows its files by itself."""
    os.umask(0)
    ctypes.CDLL(None).prctl(_PR_SET_PDEATHSIG, signal.SIGKILL)


class ServiceProcess:
    def __init__(self, program, terminal):
        self._program = program
        self._terminal = terminal  # the file that stands for it
        self._process = None
        self.started_at = None

    def start(self):
        with self._terminal.open("wb") as terminal:
            self._process = subprocess.Popen(
                [self._program], stdout=terminal, stderr=subprocess.STDOUT, **self._surroundings())
        self.started_at = time.monotonic()

    def run_beside(self, *options):
        """Runs the program once more, to its end: its exit status, and what it said."""
        result = subprocess.run(
            [self._program, *options], capture_output=True, text=True, timeout=DEADLINE,
            **self._surroundings())
        return result.returncode, result.stdout + result.stderr

    def send_signal(self, number):
        self._process.send_signal(number)

    def wait_until_over(self):
        """The exit status."""
        return self._process.wait(DEADLINE)

    def kill(self):
        if self._process is not None:
            self._process.kill()
            self._process.wait()

    def is_running(self):
        return self._process.poll() is None

    @property
    def id(self):
        return self._process.pid

    def open_sockets(self):
        """How many the process holds, also such as their peer has left."""
        count = 0
        for descriptor in os.scandir(f"/proc/{self.id}/fd"):
            with suppress(FileNotFoundError):  # closed meanwhile
                count += os.readlink(descriptor).startswith("socket:")
        return count

    def said(self):
        return self._terminal.read_text()

    @staticmethod
    def _surroundings():
        environment = {**os.environ, "TZ": ZONE_NAME}
        return {"cwd": "/", "env": environment, "stdin": subprocess.DEVNULL,
                "preexec_fn": _prepare}
