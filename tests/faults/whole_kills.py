"""Nights that are killed at random moments, as often in the import as in the pages and mails."""

import random
from collections import Counter

from disturbed_nights import OUTCOMES, DisturbedNights
from running_pass import JOBS, RunningPass
from series_table import counted, line
from verdict import Broken

_TRIES = 5  # for each kill that is to count
_MANY, _LEAST_PART = 100, 10  # of so many kills and more each job has to meet a tenth
_RUNS = 3   # of which the shortest is the length of a job


class WholeKills:
    def __init__(self, nights: DisturbedNights, seed: int):
        self._nights = nights
        self._random = random.Random(seed)
        self._lengths = self._measure()
        self.jobs: Counter = Counter()    # by the job that was killed
        self.counts: Counter = Counter()  # by what became of the day

    def run(self, count: int) -> None:
        """Raises Broken where something does not hold."""
        for number in range(_TRIES * count):
            if self.jobs.total() == count:
                break
            self._kill_one(number)
        least = count // _LEAST_PART if count >= _MANY else 0
        if self.jobs.total() < count or any(self.jobs[job] < least for job in JOBS):
            raise Broken(f"{self}: too few of them met a job")

    def __str__(self) -> str:
        jobs = ", ".join(f"{self.jobs[job]} in the {job}" for job in JOBS)
        return line(f"{self._nights.name}, killed", self.jobs.total(),
                    f"{jobs}; {counted(self.counts, OUTCOMES)}")

    def _measure(self) -> dict:
        """Seconds that each job takes; the start of the process belongs to the first one."""
        runs = []
        for _ in range(_RUNS):
            night = self._nights.night.copy_to(self._nights.scratch / "measured")
            runs.append(RunningPass(night).lengths())
            night.remove()
        return {job: min(run[job] for run in runs) for job in JOBS}

    def _kill_one(self, number: int) -> None:
        job = JOBS[number % len(JOBS)]
        moment = self._random.uniform(0, self._lengths[job])
        night = self._nights.night.copy_to(self._nights.scratch / f"kill-{number}")
        ended = RunningPass(night).kill(job, moment)
        if ended == len(JOBS):  # it was faster than usual
            night.remove()
            return
        killed = JOBS[ended]
        self.jobs[killed] += 1
        what = f"killed in the {killed}, {moment * 1000:.1f} ms behind the job before"
        self.counts[self._nights.judge_kill(night, what)] += 1
