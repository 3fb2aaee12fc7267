"""Nights on a disk that fills up: no file can grow beyond a limit, or all of them together have
only so much room. The pass of the next day, with room again, has to be whole."""

import resource
import signal
from collections import Counter
from collections.abc import Callable, Iterator
from dataclasses import dataclass
from pathlib import Path

from demo_night import Night
from disturbed_nights import OUTCOMES, DisturbedNights
from failing_calls import run_failing
from history_file import History
from night_rules import after_a_fault, after_the_next_pass, is_complete
from series_table import counted, line
from undisturbed_days import undisturbed_days
from verdict import disturbances, judge
from whole_night import WholeNight

STEPS = 50
_LEAST = 1 << 16        # bytes; nothing gets by with that
_LINE_OF_AN_EVENT = 1 << 10
COMPLETE, PARTLY, NOTHING = "complete", "in part", "nothing"


class FullDiskSeries:
    """Imports on copies of one installation."""

    def __init__(self, name: str, night: Night, scratch: Path):
        self.name = name
        self.counts: Counter = Counter()  # by how much was imported
        self._night = night
        self._scratch = scratch
        self._before = night.history()
        self._first_day, self._second_day = undisturbed_days(
            name, night.copy_to(scratch / "undisturbed"), 2)
        self._enough = _find_enough(night, scratch, self._has_room, _pass_with_small_files)

    def run(self) -> None:
        """Raises Broken where something does not hold."""
        for limit in _limits(self._enough):
            self._import_with(limit)

    def __str__(self) -> str:
        return line(f"{self.name}, 0 to {self._enough >> 10} KiB a file",
                    self.counts.total(), counted(self.counts, (NOTHING, PARTLY, COMPLETE)))

    def _has_room(self, night: Night) -> bool:
        return self._is_complete(night.history_as_left())

    def _import_with(self, limit: int) -> None:
        night = self._night.copy_to(self._scratch / f"limit-{limit}")
        said = _pass_with_small_files(night, limit)
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


class FullDiskNights:
    """The same of whole nights, whose pages and events are files too."""

    def __init__(self, nights: DisturbedNights, disk: "Disk"):
        self.counts: Counter = Counter()  # by what became of the day
        self._nights = nights
        self._disk = disk
        self._enough = _find_enough(nights.night, nights.scratch, self._has_room, disk.run_pass)

    def run(self) -> None:
        """Raises Broken where something does not hold."""
        for limit in _limits(self._enough):
            self._fill(limit)

    def __str__(self) -> str:
        return line(f"{self._nights.name}, full disk, 0 to {self._enough >> 10} {self._disk.name}",
                    self.counts.total(), counted(self.counts, OUTCOMES))

    def _has_room(self, night: WholeNight) -> bool:
        return self._nights.is_whole(night.history_as_left(), night.output())

    def _fill(self, limit: int) -> None:
        night = self._nights.night.copy_to(self._nights.scratch / f"limit-{limit}")
        said = self._disk.run_pass(night, limit)
        self.counts[self._nights.judge_fault(night, f"{self._disk.name}: {limit} bytes", said,
                                             can_tell=limit >= self._disk.least_to_tell)] += 1


def _find_enough(night: Night, scratch: Path, has_room: Callable[[Night], bool],
                 run_pass: Callable[[Night, int], str]) -> int:
    """The least power of two that no night notices."""
    size = _LEAST
    while True:
        copy = night.copy_to(scratch / "enough")
        run_pass(copy, size)
        is_enough = not copy.events() and has_room(copy)
        copy.remove()
        if is_enough:
            return size
        size *= 2


def _limits(enough: int) -> Iterator[int]:
    """The closer to each other the smaller they are: the first writes are the most different
    ones."""
    return (enough * step * step // (STEPS * STEPS) for step in range(STEPS))


def _pass_with_small_files(night: Night, limit: int) -> str:
    return night.run_pass(night.import_moment, _limited_to(limit))


def _limited_to(size: int):
    """What makes the calling process meet a full disk at that size. Writes fail; the signal that
    the system would send with it is no part of a full disk."""
    def prepare() -> None:
        signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
        resource.setrlimit(resource.RLIMIT_FSIZE, (size, size))
    return prepare


@dataclass(frozen=True)
class Disk:
    """A way in which it is full."""

    name: str  # what the limit is of
    run_pass: Callable[[Night, int], str]
    least_to_tell: int  # a limit from which on there is room for an event


SMALL_FILES = Disk("KiB a file", _pass_with_small_files, _LINE_OF_AN_EVENT)
# Here the file of events always has room, so everything has to be told.
LITTLE_ROOM = Disk("KiB in all", lambda night, room: run_failing(night, FAIL_ROOM=str(room)), 0)
