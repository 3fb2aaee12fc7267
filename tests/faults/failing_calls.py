"""Nights in which a call of the system fails: the n-th write, open for writing, sync, rename or
truncation of a file in the installation, once or from then on. The file of events is spared, so
that each failure has to be told in it; limits of file sizes in
full_disk.py do not spare it."""

import random
from collections import Counter

from demo_night import PROGRAMS
from disturbed_nights import OUTCOMES, DisturbedNights
from series_table import counted, line
from verdict import Broken
from whole_night import WholeNight

KINDS = ("write", "open", "sync", "rename", "truncate")
_ERRORS = ("ENOSPC", "EIO")
_LIBRARY = PROGRAMS / "failing_calls.so"


def run_failing(night: WholeNight, **plan: str) -> str:
    """A pass with the library in front of the system; it tells what the plan may be."""
    return night.run_pass(night.import_moment, environment={
        "LD_PRELOAD": str(_LIBRARY), "FAIL_BELOW": str(night.path),
        "FAIL_SPARED": str(night.path / "Debug/AppEventWeb.txt"), **plan})


class FailingCalls:
    """The calls of one kind. Where there are more than are to fail, they are cut into so many parts
    of one length, and of each part a random one fails."""

    def __init__(self, nights: DisturbedNights, kind: str, is_for_good: bool, seed: int):
        self._nights = nights
        self._kind = kind
        self._is_for_good = is_for_good
        self._random = random.Random(seed)
        self._report = nights.scratch / "calls"
        self._calls = self._count()
        self.counts: Counter = Counter()  # by what became of the day

    def run(self, count: int) -> None:
        """Raises Broken where something does not hold."""
        for number in self._numbers(count):
            self._fail(number)

    def __str__(self) -> str:
        return line(f"{self._nights.name}, {self._what()}",
                    f"{self.counts.total()} of {self._calls}", counted(self.counts, OUTCOMES))

    def _what(self) -> str:
        return f"{self._kind} {'for good' if self._is_for_good else 'once'}"

    def _numbers(self, count: int) -> list[int]:
        if self._calls <= count:
            return list(range(1, self._calls + 1))
        bounds = [self._calls * part // count for part in range(count + 1)]
        return [self._random.randint(low + 1, high) for low, high in zip(bounds, bounds[1:])]

    def _count(self) -> int:
        night = self._nights.night.copy_to(self._nights.scratch / "counted")
        self._run_pass(night)
        counts = {words[1]: int(words[2]) for words in self._reported("counted")}
        night.remove()
        if not counts[self._kind]:
            raise Broken(f"{self._nights.name}: no {self._kind} is counted")
        return counts[self._kind]

    def _fail(self, number: int) -> None:
        error = self._random.choice(_ERRORS)
        what = f"{self._what()}, {error} at {number}"
        night = self._nights.night.copy_to(
            self._nights.scratch / f"{self._what().replace(' ', '-')}-{number}")
        said = self._run_pass(night, FAIL_KIND=self._kind, FAIL_AT=str(number), FAIL_ERROR=error,
                              **({"FAIL_FOR_GOOD": "1"} if self._is_for_good else {}))
        failed = self._reported("failed")
        if not failed:
            raise Broken(f"{self._nights.name}, {what}: there is no such call")
        place = " ".join(failed[0][3:]).removeprefix(f"{night.path}/")
        self.counts[self._nights.judge_fault(
            night, f"{what}, {place}", said, is_of_a_page=self._is_of_a_page(place))] += 1

    def _is_of_a_page(self, place: str) -> bool:
        return not self._is_for_good and place.startswith("WebReports/")

    def _run_pass(self, night: WholeNight, **plan: str) -> str:
        self._report.unlink(missing_ok=True)
        return run_failing(night, FAIL_REPORT=str(self._report), **plan)

    def _reported(self, beginning: str) -> list[list[str]]:
        """The words of each line that begins so."""
        lines = [text.split(" ") for text in self._report.read_text().splitlines()]
        return [words for words in lines if words[0] == beginning]
