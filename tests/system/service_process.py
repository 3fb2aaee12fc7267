"""The process of one installation: its start, its signals, its end. It never outlives the
tests, whatever becomes of them."""
import os
import subprocess
import time
from contextlib import suppress
from pathlib import Path

from bound_life import end_with_the_tests
from local_time import ZONE_NAME
from waiting import DEADLINE


def _prepare():
    """Runs in the new process. No umask: the service narrows its files by itself."""
    os.umask(0)
    end_with_the_tests()


class ServiceProcess:
    def __init__(self, program, terminal):
        self._program = program
        self._terminal = terminal  # the file that stands for it
        self._process = None
        self.environment = {"TZ": ZONE_NAME}  # beside that of the tests
        self.started_at = None

    def start(self):
        with self._terminal.open("wb") as terminal:
            self._process = subprocess.Popen(
                [self._program], stdout=terminal, stderr=subprocess.STDOUT, **self._surroundings())
        self.started_at = time.monotonic()

    def run_beside(self, *options, inside=(), **surroundings):
        """Runs the program once more, to its end: its exit status, and what it said, to the
        byte. `inside` is a command that runs it."""
        result = subprocess.run(
            [*inside, self._program, *options], capture_output=True, timeout=DEADLINE,
            **{**self._surroundings(), **surroundings})
        return result.returncode, (result.stdout + result.stderr).decode()

    def send_signal(self, number):
        self._process.send_signal(number)

    def wait_until_over(self):
        """The exit status."""
        return self._process.wait(DEADLINE)

    def ask_to_end(self):
        if self._process is not None:
            self._process.terminate()

    def end_by(self, time_of_end):
        """Waits for its end, and kills it where that has not come by this monotonic time."""
        if self._process is not None:
            try:
                self._process.wait(max(0, time_of_end - time.monotonic()))
            except subprocess.TimeoutExpired:
                print(f"killed, since it does not end: {self._process.args}")
        self.kill()

    def kill(self):
        if self._process is not None:
            self._process.kill()
            self._process.wait()

    def is_running(self):
        return self._process.poll() is None

    @property
    def id(self):
        return self._process.pid

    def is_halted(self):
        """Whether a signal has brought it to a standstill."""
        status = Path(f"/proc/{self.id}/stat").read_text()
        return status.rpartition(")")[2].split()[0] in "Tt"

    def open_sockets(self):
        """How many the process holds, also such as their peer has left."""
        count = 0
        for descriptor in os.scandir(f"/proc/{self.id}/fd"):
            with suppress(FileNotFoundError):  # closed meanwhile
                count += os.readlink(descriptor).startswith("socket:")
        return count

    def said(self):
        return self._terminal.read_text()

    def _surroundings(self):
        return {"cwd": "/", "env": {**os.environ, **self.environment},
                "stdin": subprocess.DEVNULL, "preexec_fn": _prepare}
