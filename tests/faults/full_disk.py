"""Imports on a disk that fills up: no file can grow beyond a limit. The pass of the next day, with
room again, has to bring its day into a whole history."""

import resource
import signal
from collections import Counter
from pathlib import Path

from demo_night import Night
from history_file import History
from night_rules import Reference, after_a_fault, after_the_next_pass, is_complete
from verdict import disturbances, judge

STEPS = 20
_LEAST = 1 << 16        # bytes; nothing gets by with that
_LINE_OF_AN_EVENT = 1 << 10
COMPLETE, PARTLY, NOTHING = "complete", "in part", "nothing"


class FullDiskSeries:
    """Limits on copies of one installation, the closer to each other the smaller they are: the
    first writes are the most different ones."""

    def __init__(self, name: str, night: Night, scratch: Path):
        self.name = name
        self.counts: Counter = Counter()  # by how much was imported
        self._night = night
        self._scratch = scratch
        self._before = night.history()
        self._first_day, self._second_day = self._two_undisturbed_days()
        self._enough = self._find_enough()

    def run(self) -> None:
        """Raises Broken where something does not hold."""
        for step in range(STEPS):
            self._import_with(self._enough * step * step // (STEPS * STEPS))

    def __str__(self) -> str:
        counts = ", ".join(f"{self.counts[word]} {word}" for word in (NOTHING, PARTLY, COMPLETE))
        return (f"{self.name}: {STEPS} limits from 0 to {self._enough >> 10} KiB a file, "
                f"imported {counts}")

    def _two_undisturbed_days(self) -> tuple[Reference, Reference]:
        night = self._night.copy_to(self._scratch / "undisturbed")
        before, references = self._before, []
        for _ in range(2):
            said = night.run_pass(night.import_moment)
            after = night.history()
            reference = Reference.of(before, after, night.day)
            judge(f"{self.name}, undisturbed", night,
                  reference.findings() + disturbances(night, said))
            references.append(reference)
            night.let_a_day_pass()
            before = night.history()
        night.remove()
        return references[0], references[1]

    def _find_enough(self) -> int:
        """The least power of two that no import notices."""
        size = _LEAST
        while True:
            night = self._night.copy_to(self._scratch / "enough")
            night.run_pass(night.import_moment, _limited_to(size))
            is_enough = not night.events() and self._is_complete(night.history_as_left())
            night.remove()
            if is_enough:
                return size
            size *= 2

    def _import_with(self, limit: int) -> None:
        night = self._night.copy_to(self._scratch / f"limit-{limit}")
        said = night.run_pass(night.import_moment, _limited_to(limit))
        found = night.history_as_left()
        findings = after_a_fault(self._before, found, self._first_day)
        if said not in ("imported", "not due"):
            findings.append(f"the import says '{said}'")
        if not self._is_complete(found) and limit >= _LINE_OF_AN_EVENT and not night.events():
            findings.append("the import failed without a word")
        self.counts[self._imported(found)] += 1
        findings += self._pass_of_the_next_day(night)
        judge(f"{self.name}, {limit} bytes a file", night, findings)
        night.remove()

    def _pass_of_the_next_day(self, night: Night) -> list[str]:
        events_before = len(night.events())
        night.let_a_day_pass()
        before = night.history()
        said = night.run_pass(night.import_moment)
        return (after_the_next_pass(before, night.history(), self._second_day)
                + disturbances(night, said, events_before))

    def _imported(self, found: History) -> str:
        if found == self._before:
            return NOTHING
        return COMPLETE if self._is_complete(found) else PARTLY

    def _is_complete(self, found: History) -> bool:
        return is_complete(self._before, found, self._first_day)


def _limited_to(size: int):
    """What makes the calling process meet a full disk at that size. Writes fail; the signal that
    the system would send with it is no part of a full disk."""
    def prepare() -> None:
        signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
        resource.setrlimit(resource.RLIMIT_FSIZE, (size, size))
    return prepare
