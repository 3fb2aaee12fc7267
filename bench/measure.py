"""Runs the named benchmarks, or all, and prints their figures as one table.

Called by bench/run, which installs and builds what this needs. Each benchmark is a module
with a procedure `measure(options)` that returns the lines of the table.
"""

import os
import platform
import signal
import subprocess
import sys
import time
from pathlib import Path

import cached_page
import charts
import daily_import
import events
import idle
import pieces
import production
import searches
import uncached_top10
from figures import MeasureError, Options, table

# In the order of the table. The quick ones come last.
BENCHMARKS = {
    "cached_page": cached_page.measure,
    "uncached_top10": uncached_top10.measure,
    "searches": searches.measure,
    "charts": charts.measure,
    "daily_import": daily_import.measure,
    "production": production.measure,
    "idle": idle.measure,
    "events": events.measure,
    "pieces": pieces.measure,
}

RESULTS = Path("build/bench/results.txt")
QUIET_LOAD = 0.5  # load average above which the figures are not to be trusted


def number_from(variable: str, default: int) -> int:
    """The number in an environment variable, at least 1."""
    text = os.environ.get(variable, str(default))
    if not text.isdecimal() or int(text) < 1:
        raise MeasureError(f"{variable} is '{text}', but it is a number from 1 on")
    return int(text)


def chosen(names: list[str]) -> list[str]:
    for name in names:
        if name not in BENCHMARKS:
            raise MeasureError(f"no benchmark '{name}'; there are {', '.join(BENCHMARKS)}")
    return names or list(BENCHMARKS)


def conditions(options: Options) -> str:
    """Under what the figures were taken: date, machine, rounds, load before the start."""
    load = os.getloadavg()[0]
    text = (f"{time.strftime('%Y-%m-%d %H:%M')}, {platform.machine()}, {os.cpu_count()} cores, "
            f"{options.rounds} rounds, load before {load:.2f}")
    return text + (" (the machine was busy)" if load > QUIET_LOAD else "")


def main(names: list[str]) -> int:
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))  # so that what is open is closed
    try:
        options = Options(rounds=number_from("QUILLON_BENCH_ROUNDS", 7),
                          seconds=number_from("QUILLON_BENCH_SECONDS", 3))
        wanted = chosen(names)
        if (os.cpu_count() or 1) < 2:
            raise MeasureError("client and server need a core each, and this machine has one")
        head = conditions(options)
        lines = []
        for name in wanted:
            print(f"measuring {name}", file=sys.stderr)
            lines += BENCHMARKS[name](options)
    except (MeasureError, subprocess.CalledProcessError) as error:
        print(f"bench/run: {error}", file=sys.stderr)
        return 1
    text = f"{head}\n\n{table(lines)}"
    RESULTS.write_text(text, encoding="utf-8")
    print(text, end="")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
