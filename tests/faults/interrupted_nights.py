"""Runs the series and prints a line of a table for each. Called by tests/faults/run, which builds
what this needs."""

import os
import random
import shutil
import sqlite3
import subprocess
import sys
import traceback
from contextlib import contextmanager
from functools import partial
from pathlib import Path

from demo_night import leave_tables_free, make_night
from disturbed_nights import DisturbedNights
from exclusive_lock import TOO_LONG, WAITED_FOR
from failing_calls import KINDS, FailingCalls
from full_disk import LITTLE_ROOM, SMALL_FILES, FullDiskNights, FullDiskSeries
from killers import AtMoments, AtWrites, Killer, can_count_writes
from kills import KillSeries
from locked_nights import LockedNights
from locked_requests import LockedRequests, LockedSite
from series_table import HEAD
from verdict import Broken
from whole_kills import WholeKills
from whole_night import make_whole_night

SCRATCH = Path("build/faults/nights").resolve()
KILLS = 100
WHOLE_KILLS_FOR_EACH = 5  # kills of whole nights for each kill of a series of imports
TIMES_THE_DEMONSTRATION = 8  # 3,200 ports and 504 storages: an import takes some 100 ms
REGULAR, AFTER_MISSED_NIGHTS = 1, 3  # day tables that are free
FREE_TABLES = (REGULAR, AFTER_MISSED_NIGHTS)
LOCKS = (WAITED_FOR, TOO_LONG)


FAILURES = (AssertionError, OSError, sqlite3.Error, subprocess.SubprocessError)


class Table:
    """Prints the lines as the series end. One that breaks ends alone, also where it only begins."""

    def __init__(self):
        self.is_broken = False
        print(HEAD, flush=True)

    def run(self, make_series, *counts: int) -> None:
        with self.going_on():
            series = make_series()
            try:
                series.run(*counts)
            finally:
                print(series, flush=True)

    @contextmanager
    def going_on(self):
        """Behind what fails within."""
        try:
            yield
        except FAILURES as failure:
            self.is_broken = True
            told = failure if isinstance(failure, Broken) else traceback.format_exc()
            print(f"tests/faults/run: {told}", file=sys.stderr, flush=True)


def killers() -> list[Killer]:
    if can_count_writes:
        return [AtMoments(), AtWrites()]
    print("tests/faults/run: no kills at writes, since strace is not installed", file=sys.stderr)
    return [AtMoments()]


def disturb_imports(table: Table, kills: int, seed: int) -> None:
    nights = {count: make_night(SCRATCH / f"{count}-free", TIMES_THE_DEMONSTRATION)
              for count in FREE_TABLES}
    for count, night in nights.items():
        leave_tables_free(night, count)
    os.sync()  # else the system writes all this out beside the first imports, which it slows
    for killer in killers():
        for count, night in nights.items():
            table.run(partial(KillSeries, f"imports with {count} free", night, SCRATCH, killer,
                              seed), kills)
    table.run(partial(FullDiskSeries, "imports, full disk", nights[REGULAR], SCRATCH))


def disturb_whole_nights(table: Table, kills: int, seed: int) -> None:
    nights = DisturbedNights("whole nights", make_whole_night(SCRATCH / "whole"), SCRATCH)
    table.run(partial(WholeKills, nights, seed), WHOLE_KILLS_FOR_EACH * kills)
    for kind in KINDS:
        for is_for_good in (False, True):
            table.run(partial(FailingCalls, nights, kind, is_for_good, seed), kills)
    for disk in (SMALL_FILES, LITTLE_ROOM):
        table.run(partial(FullDiskNights, nights, disk))
    for seconds in LOCKS:
        table.run(partial(LockedNights, nights, seconds))


def disturb_requests(table: Table) -> None:
    with LockedSite(SCRATCH) as site:
        for seconds in LOCKS:
            table.run(partial(LockedRequests, site, seconds))


def run_all(kills: int, seed: int) -> bool:
    """Whether all of it holds."""
    shutil.rmtree(SCRATCH, ignore_errors=True)
    SCRATCH.mkdir(parents=True)
    print(f"Seed {seed}\n")
    table = Table()
    with table.going_on():
        disturb_imports(table, kills, seed)
    with table.going_on():
        disturb_whole_nights(table, kills, seed)
    with table.going_on():
        disturb_requests(table)
    if not table.is_broken:
        shutil.rmtree(SCRATCH)
    return not table.is_broken


def main(arguments: list[str]) -> int:
    if len(arguments) > 2 or not all(argument.isdecimal() for argument in arguments):
        print("usage: tests/faults/run [KILLS [SEED]]", file=sys.stderr)
        return 2
    kills = int(arguments[0]) if arguments else KILLS
    seed = int(arguments[1]) if len(arguments) == 2 else random.randrange(1_000_000)
    return 0 if run_all(kills, seed) else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
