"""Nights beside another program that has a database for itself from the beginning of a job on.
Locks that leave reading open are tested with the clock of the tests, in locked_databases_test."""

from collections import Counter

from demo_night import DATABASES
from disturbed_nights import OUTCOMES, WHOLE, DisturbedNights
from exclusive_lock import TOO_LONG, WAITED_FOR, locked
from running_pass import JOBS, SteppedPass
from series_table import counted, line
from verdict import Broken, judge
from whole_night import WholeNight

_SLACK = 60  # seconds for a pass beside its lock, since the machine may be busy


class LockedNights:
    def __init__(self, nights: DisturbedNights, seconds: int):
        self._nights = nights
        self._seconds = seconds
        self.counts: Counter = Counter()  # by what became of the day
        self._longest = 0.0               # seconds of a pass

    def run(self) -> None:
        """Raises Broken where something does not hold."""
        for database in DATABASES:
            for job in JOBS:
                self._lock(database, job)

    def __str__(self) -> str:
        return line(f"{self._nights.name}, each database locked {self._seconds} s in each job",
                    self.counts.total(), f"{counted(self.counts, OUTCOMES)}; "
                    f"the longest pass took {self._longest:.0f} s")

    def _lock(self, database: str, job: str) -> None:
        what = f"{database} locked for {self._seconds} s in the {job}"
        night = self._nights.night.copy_to(
            self._nights.scratch / f"locked-{database}-{job}-{self._seconds}")
        said, seconds = self._run_beside_lock(night, database, job)
        self._longest = max(self._longest, seconds)
        judge(what, night, self._findings(night, seconds))
        became = self._nights.judge_fault(night, what, said)
        self.counts[became] += 1
        # Behind a long lock a mail may be whole by what the records still hold of its figures.
        if self._seconds == WAITED_FOR and became != WHOLE:
            raise Broken(f"{what}: the day is {became}")

    def _findings(self, night: WholeNight, seconds: float) -> list[str]:
        """Each job needs each database: a short lock is waited for, and a long one told of."""
        findings = [] if seconds < self._seconds + _SLACK else [f"the pass took {seconds:.0f} s"]
        if self._seconds == TOO_LONG:
            return findings + ([] if night.events() else ["the lock was not met"])
        return (findings + [f"an event: {event}" for event in night.events()]
                + ([] if seconds >= self._seconds else ["the lock was not met"]))

    def _run_beside_lock(self, night: WholeNight, database: str, job: str) -> tuple[str, float]:
        running = SteppedPass(night)
        running.wait_for(job)
        with locked(night.path / database, self._seconds):
            return running.end()
