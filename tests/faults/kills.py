"""Imports that are killed on their way, at random moments of their life or at random writes. After
each the next pass runs undisturbed, and the history has to be whole."""

import random
from collections import Counter
from pathlib import Path

from demo_night import Night
from history_file import DISK, SWITCH, History, covered_day
from killers import Killer
from night_rules import after_a_kill, after_the_next_pass
from series_table import counted, line
from undisturbed_days import undisturbed_days
from verdict import Broken, disturbances, judge

REACHED = ("no row stamped", "switch stamped", "disk stamped", "sums written")
TOO_EARLY, TOO_LATE = "before the first change", "after the end"
_TRIES = 5  # for each kill that is to count


class KillSeries:
    """Kills on copies of one installation, each by the killer in its own way."""

    def __init__(self, name: str, night: Night, scratch: Path, killer: Killer, seed: int):
        self.name = f"{name}, {killer.name}"
        self.counts: Counter = Counter()  # by what had been reached
        self._night = night
        self._scratch = scratch
        self._killer = killer
        self._random = random.Random(seed)
        self._before = night.history()
        (self._reference,) = undisturbed_days(self.name, night.copy_to(scratch / "undisturbed"), 1)
        killer.measure(night, scratch)

    @property
    def kills(self) -> int:
        return sum(self.counts[reached] for reached in REACHED)

    def run(self, count: int) -> None:
        """Raises Broken where something does not hold."""
        for number in range(_TRIES * count):
            if self.kills == count:
                return
            self._kill_one(number)
        if self.kills < count:
            raise Broken(f"{self}: too few of them met an import")

    def __str__(self) -> str:
        return line(self.name, self.kills,
                    f"{counted(self.counts, REACHED)}; "
                    f"not counted: {counted(self.counts, (TOO_EARLY, TOO_LATE))}")

    def _kill_one(self, number: int) -> None:
        night = self._night.copy_to(self._scratch / f"kill-{number}")
        when = self._killer.kill(night, self._random)
        found = night.history_as_left()
        reached = self._reached(found)
        self.counts[reached] += 1
        findings = after_a_kill(self._before, found, self._reference)
        if reached == TOO_LATE:
            findings += after_the_next_pass(self._before, found, self._reference)
        else:
            said = night.run_pass(night.next_pass)
            findings += after_the_next_pass(found, night.history(), self._reference)
            findings += disturbances(night, said)
        judge(f"{self.name}, killed {when}, {reached}", night, findings)
        night.remove()

    def _reached(self, found: History) -> str:
        today = self._night.day
        if found.is_imported(today):
            return TOO_LATE
        if found == self._before:
            return TOO_EARLY
        if len(found.sums[DISK]) > len(self._before.sums[DISK]):
            return "sums written"
        for rotation, reached in ((DISK, "disk stamped"), (SWITCH, "switch stamped")):
            if found.of_day(rotation, covered_day(today)):
                return reached
        return "no row stamped"
