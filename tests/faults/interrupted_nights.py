"""Runs the series and prints a line for each. Called by tests/faults/run, which builds what this
needs."""

import os
import random
import shutil
import subprocess
import sys
from pathlib import Path

from demo_night import leave_tables_free, make_night
from full_disk import FullDiskSeries
from killers import AtMoments, AtWrites, Killer, can_count_writes
from kills import KillSeries
from verdict import Broken

SCRATCH = Path("build/faults").resolve()
KILLS = 100
TIMES_THE_DEMONSTRATION = 8  # 3,200 ports and 504 storages: an import takes some 100 ms
REGULAR, AFTER_MISSED_NIGHTS = 1, 3  # day tables that are free
FREE_TABLES = (REGULAR, AFTER_MISSED_NIGHTS)


def killers() -> list[Killer]:
    if can_count_writes:
        return [AtMoments(), AtWrites()]
    print("tests/faults/run: no kills at writes, since strace is not installed", file=sys.stderr)
    return [AtMoments()]


def run_all(kills: int, seed: int) -> None:
    shutil.rmtree(SCRATCH, ignore_errors=True)
    nights = {count: make_night(SCRATCH / f"{count}-free", TIMES_THE_DEMONSTRATION)
              for count in FREE_TABLES}
    for count, night in nights.items():
        leave_tables_free(night, count)
    os.sync()  # else the system writes all this out beside the first imports, which it slows
    for killer in killers():
        for count, night in nights.items():
            series = KillSeries(f"{count} free", night, SCRATCH, killer, seed)
            series.run(kills)
            print(series, flush=True)
    full_disk = FullDiskSeries("full disk", nights[REGULAR], SCRATCH)
    full_disk.run()
    print(full_disk)
    shutil.rmtree(SCRATCH)


def main(arguments: list[str]) -> int:
    if len(arguments) > 2 or not all(argument.isdecimal() for argument in arguments):
        print("usage: tests/faults/run [KILLS [SEED]]", file=sys.stderr)
        return 2
    kills = int(arguments[0]) if arguments else KILLS
    seed = int(arguments[1]) if len(arguments) == 2 else random.randrange(1_000_000)
    try:
        run_all(kills, seed)
    except (Broken, OSError, subprocess.SubprocessError) as error:
        print(f"tests/faults/run: {error}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
