"""The ways to kill an import. A part of the kills aims at its end, whose steps are short."""

import random
import shutil
import subprocess
import time
from pathlib import Path
from typing import Protocol

from demo_night import PATIENCE, Night

_LATE_SHARE = 0.25
_STRACE = ("strace", "-f", "-qq", "-e", "trace=pwrite64")

can_count_writes = shutil.which("strace") is not None


class Killer(Protocol):
    name: str

    def measure(self, night: Night, scratch: Path) -> None:
        """Looks at imports of copies that nothing disturbs."""

    def kill(self, night: Night, chance: random.Random) -> str:
        """Starts the import and kills it; tells when, for a message."""


class AtMoments:
    """At random moments of the process's life."""

    name = "killed at moments"
    _RUNS = 3  # of which the shortest is the length of a life
    _LATE_PART = (0.85, 1.05)  # of a life

    def measure(self, night: Night, scratch: Path) -> None:
        self._life = min(self._seconds(night.copy_to(scratch / "measured"))
                         for _ in range(self._RUNS))

    def kill(self, night: Night, chance: random.Random) -> str:
        part = self._LATE_PART if chance.random() < _LATE_SHARE else (0, 1)
        moment = self._life * chance.uniform(*part)
        process = subprocess.Popen(night.command(night.import_moment), stdout=subprocess.DEVNULL)
        time.sleep(moment)
        process.kill()
        process.wait(PATIENCE)
        return f"after {moment * 1000:.1f} of {self._life * 1000:.1f} ms"

    @staticmethod
    def _seconds(night: Night) -> float:
        start = time.perf_counter()
        night.run_pass(night.import_moment)
        seconds = time.perf_counter() - start
        night.remove()
        return seconds


class AtWrites:
    """Before random writes to the databases: this meets steps that no moment is fine enough for,
    and the same seed meets the same steps again."""

    name = "killed at writes"
    _LATE_WRITES = 25

    def measure(self, night: Night, scratch: Path) -> None:
        copy = night.copy_to(scratch / "measured")
        report = scratch / "writes"
        _run([*_STRACE, "-o", report, *copy.command(copy.import_moment)])
        self._writes = len(report.read_text().splitlines())
        report.unlink()
        copy.remove()

    def kill(self, night: Night, chance: random.Random) -> str:
        is_late = chance.random() < _LATE_SHARE
        write = chance.randint(self._writes - self._LATE_WRITES if is_late else 1, self._writes)
        _run([*_STRACE, "-o", "/dev/null", "-e", f"inject=pwrite64:signal=KILL:when={write}",
              *night.command(night.import_moment)])
        return f"before write {write} of {self._writes}"


def _run(command: list) -> None:
    """Says nothing and checks nothing: what is killed ends as it does."""
    subprocess.run(command, capture_output=True, check=False, timeout=PATIENCE)
