"""A report query in a process of its own, which times the calls inside itself, and the sqlite3
shell with the same selects beside it.

The query's time is that of the first call in a fresh process; the shell's is its whole run less
the run of an empty script. Both find the file in the machine's page cache.
"""

import statistics
import subprocess
from pathlib import Path
from typing import Callable

from figures import Line, MeasureError, Options, compare, rounds
from installation import PROGRAMS, SERVER_CORE, pinned
from shell import Shell

MILLI = 1000

Ports = list[tuple[str, str]]  # RecNo and IfIndex


class QueryProcess:
    """A program that calls one query a few times; each run is a process of its own."""

    def __init__(self, program: str, directory: Path, *arguments: str):
        self.directory = directory.resolve()
        self.command = pinned(SERVER_CORE, PROGRAMS / program, self.directory, *arguments)
        self.first: list[float] = []  # ms of the first call, one a run
        self.later: list[float] = []  # ms of the later calls, median of each run
        self.words: list[list[str]] = []  # the lines of the last run

    def run(self) -> float:
        done = subprocess.run(self.command, capture_output=True, text=True, check=False)
        if done.returncode != 0:
            raise MeasureError(done.stderr.strip())
        self.words = [line.split() for line in done.stdout.splitlines()]
        calls = [float(word[1]) / MILLI for word in self.words if word[0] == "call"]
        self.first.append(calls[0])
        self.later.append(statistics.median(calls[1:]))
        return calls[0]

    def measure(self, count: int) -> "QueryProcess":
        """The figures of so many runs, without a peer."""
        self.run()  # brings the file into the page cache
        self.forget()
        for _ in range(count):
            self.run()
        return self

    def forget(self) -> None:
        """Drops the figures so far."""
        self.first.clear()
        self.later.clear()

    def ports(self) -> Ports:
        """Those that the last run found."""
        return [(word[1], word[2]) for word in self.words if word[0] == "port"]


def script(count: str, listing: str, look_ups: list[str], limit: str = "") -> str:
    """The selects of a query, in its order."""
    return ";\n".join([count, listing + limit, *look_ups]) + ";\n"


def address_selects(ports: Ports) -> list[str]:
    """What a query asks for the user of each of its ports."""
    return [f"SELECT MacAddr, IpAddr, LastSeen FROM MAC WHERE RecNo={rec} AND IfIndex={index}"
            for rec, index in ports]


def compare_with_shell(name: str, options: Options, ours: QueryProcess,
                       selects: Callable[[Ports, str], str], limit: int, **goals) -> list[Line]:
    """Three lines: the first call; later ones; and the first again, where the shell does not
    print, or sort in full, the rows that nobody reads."""
    database = ours.directory / "Reports.mdb"
    ours.run()  # names the ports, and brings the file into the page cache
    shell = Shell(database, selects(ours.ports(), ""))
    shell.run()
    ours.forget()
    figures = rounds(options.rounds, ours.run, shell.run)
    short = Shell(database, selects(ours.ports(), f" LIMIT {limit}"))
    short_times = [short.run() for _ in range(options.rounds)]
    return [
        compare(name, "ms", *figures, **goals),
        compare(f"{name}_later_calls", "ms", ours.later, figures[1]),
        compare(f"{name}_peer_limit_{limit}", "ms", figures[0], short_times),
    ]
