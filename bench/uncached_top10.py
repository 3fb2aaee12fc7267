"""Time of the top-10 query on a large network, against the same selects in the sqlite3 shell.

Ours is the first call in a fresh process, timed inside it; the shell's is its whole run less
the run of an empty script. Both find the file in the machine's page cache.
"""

import statistics
import subprocess
import sys
from pathlib import Path

from figures import Line, MeasureError, Options, compare, rounds
from installation import PROGRAMS, SERVER_CORE, pinned
from large_network import make_reports
from shell import Shell

PORTS = 100_000
GROWTH = (10_000, 100_000, 1_000_000)
GROWTH_ROUNDS = 3
MILLI = 1000

DAY_AND_KIND = ("FROM VLAN WHERE substr(InOctetsDate,1,10) = date('now','localtime')"
                " AND IsTrunk=False")


class Ours:
    """The query in a process of its own."""

    def __init__(self, directory: Path):
        self.directory = directory.resolve()
        self.database = self.directory / "Reports.mdb"
        self.first: list[float] = []  # ms of the first call, one a run
        self.later: list[float] = []  # ms of the later calls, median of each run
        self.ports: list[tuple[str, str]] = []

    def run(self) -> float:
        command = pinned(SERVER_CORE, PROGRAMS / "top10_query", self.directory)
        done = subprocess.run(command, capture_output=True, text=True, check=False)
        if done.returncode != 0:
            raise MeasureError(done.stderr.strip())
        words = [line.split() for line in done.stdout.splitlines()]
        calls = [float(word[1]) / MILLI for word in words if word[0] == "call"]
        self.ports = [(word[1], word[2]) for word in words if word[0] == "port"]
        self.first.append(calls[0])
        self.later.append(statistics.median(calls[1:]))
        return calls[0]


def selects(ports: list[tuple[str, str]], limit: str = "") -> str:
    """Count, list and the look-ups of its ten ports, in the order of the query."""
    look_ups = [f"SELECT MacAddr, IpAddr, LastSeen FROM MAC WHERE RecNo={rec} AND IfIndex={index}"
                for rec, index in ports]
    statements = [f"SELECT Count(RecNo) as total {DAY_AND_KIND}",
                  f"SELECT * {DAY_AND_KIND} ORDER BY InErrorsTot24H DESC{limit}", *look_ups]
    return ";\n".join(statements) + ";\n"


def growth_lines() -> list[Line]:
    """One line for each size. A size that fails is told and left out: the largest one can
    meet the service's own limit on the time of a select."""
    lines = []
    for ports in GROWTH:
        ours = Ours(make_reports("growth", ports))
        try:
            ours.run()
            shell = Shell(ours.database, selects(ours.ports))
            figures = rounds(GROWTH_ROUNDS, ours.run, shell.run)
        except MeasureError as error:
            print(f"bench/run: with {ports} ports: {error}", file=sys.stderr)
            continue
        lines.append(compare(f"top10_with_{ports}_ports", "ms", *figures))
    return lines


def measure(options: Options) -> list[Line]:
    directory = make_reports("uncached_top10", PORTS)
    ours = Ours(directory)
    ours.run()  # names the ports, and brings the file into the page cache
    shell = Shell(ours.database, selects(ours.ports))
    shell.run()
    ours.later.clear()
    figures = rounds(options.rounds, ours.run, shell.run)
    # The shell prints the whole list, of which we read ten rows: what it takes without that.
    short = Shell(ours.database, selects(ours.ports, " LIMIT 10"))
    short_times = [short.run() for _ in range(options.rounds)]
    return [
        compare("uncached_top10", "ms", *figures, goal=1.5, wanted=1.1),
        compare("uncached_top10_later_calls", "ms", ours.later, figures[1]),
        compare("uncached_top10_peer_limit_10", "ms", figures[0], short_times),
        *growth_lines(),
    ]
