"""A pass whose words are followed while it runs."""

import signal
import subprocess
import threading
import time

from demo_night import PATIENCE
from verdict import Broken
from whole_night import WholeNight

JOBS = ("import", "pages", "mails")  # the process says a line when one of them has ended


class RunningPass:
    def __init__(self, night: WholeNight, *options: str):
        self._began = time.perf_counter()
        self._process = subprocess.Popen([*night.command(night.import_moment), *options], text=True,
                                         stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self._said: list[str] = []
        self._hangs = False
        self._watch = threading.Timer(PATIENCE, self._give_up)
        self._watch.daemon = True
        self._watch.start()

    def lengths(self) -> dict:
        """Seconds that each job takes; the start of the process belongs to the first one."""
        lengths, began = {}, self._began
        for job, _ in zip(JOBS, self._process.stdout, strict=True):
            now = time.perf_counter()
            lengths[job], began = now - began, now
        self._wait_for_end()
        return lengths

    def wait_for(self, job: str) -> None:
        """Until it begins, or the process ends."""
        for _, line in zip(range(JOBS.index(job)), self._process.stdout):
            self._said.append(line.strip())

    def kill(self, job: str, moment: float) -> int:
        """So many seconds behind the beginning of the job. Gives how many jobs have ended."""
        self.wait_for(job)
        timer = threading.Timer(moment, self._process.kill)
        timer.start()
        self._hear_the_rest()
        timer.cancel()
        if self._process.returncode not in (0, -signal.SIGKILL):
            raise Broken(f"the pass ends with status {self._process.returncode}")
        return len(self._said)

    def end(self) -> tuple[str, float]:
        """Its first word, or the status of one that has failed; and how long it ran, in seconds."""
        self._hear_the_rest()
        status = self._process.returncode
        return (self._said[0] if status == 0 else f"status {status}",
                time.perf_counter() - self._began)

    def _hear_the_rest(self) -> None:
        self._process.stdin.close()
        self._said += [line.strip() for line in self._process.stdout]
        self._wait_for_end()

    def _wait_for_end(self) -> None:
        self._process.wait()
        self._watch.cancel()
        if self._hangs:
            raise Broken(f"the pass does not end in {PATIENCE} s")

    def _give_up(self) -> None:
        self._hangs = True
        self._process.kill()


class SteppedPass(RunningPass):
    """One that stands still in front of the job that is waited for."""

    def __init__(self, night: WholeNight):
        super().__init__(night, "--steps")

    def wait_for(self, job: str) -> None:
        for _ in range(JOBS.index(job)):
            print(file=self._process.stdin, flush=True)
            self._said.append(self._process.stdout.readline().strip())
