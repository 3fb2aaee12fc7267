"""The daily import of a large network: its work against the same work in few large statements,
its memory over a year, and what the visitors of a page notice of it.

The work is timed inside a process that counts the import's pauses and does not sleep them. Each
run has a copy of its own of an installation that is a night old; making and writing it is not in
the time, and both sides find the files in the machine's page cache.
"""

import json
import os
import shutil
import statistics
import subprocess
import sys
import time
from pathlib import Path

from cached_page import PAGE
from figures import Line, MeasureError, Options, compare, rounds
from installation import (CLIENT_CORE, PROGRAMS, SCRATCH, SERVER_CORE, Service, about_noon,
                          add_program, events_of, pinned)
from large_network import make_night, text_of
from shell import Shell

PORTS, STORAGES = 100_000, 10_000
GROWTH = (10_000, 100_000, 1_000_000)
PORTS_A_STORAGE = PORTS // STORAGES
GROWTH_ROUNDS = 3
MILLI = 1000

SMALL_PORTS, SMALL_STORAGES = 500, 50
DAYS, GROWN_UP = 400, 100  # the day from which on memory should not grow

FIRST_PASS = 60  # seconds from the start to the tick that imports
AHEAD = 5        # seconds by which the visitors come earlier


# --- work -------------------------------------------------------------------------------


def import_night(directory: Path, *options) -> list[list[str]]:
    """The lines of the program that imports once without pauses, in words."""
    command = pinned(SERVER_CORE, PROGRAMS / "import_night", directory.resolve(), *options)
    done = subprocess.run(command, capture_output=True, text=True, check=False)
    if done.returncode != 0:
        raise MeasureError(done.stderr.strip())
    return [line.split() for line in done.stdout.splitlines()]


def outcome(directory: Path) -> list[str]:
    """What stands in the history, in lines that can be compared."""
    done = subprocess.run(["sqlite3", "-bail", str(directory / "History.mdb")], check=True,
                          input=text_of("import_outcome.sql"), capture_output=True, text=True)
    return done.stdout.splitlines()


class Side:
    """One of the two ways to import, each time into a fresh copy of the prepared night."""

    def __init__(self, prepared: Path, name: str):
        self.prepared = prepared
        self.directory = SCRATCH / name

    def _copy(self) -> None:
        shutil.rmtree(self.directory, ignore_errors=True)
        shutil.copytree(self.prepared, self.directory)
        os.sync()


class Ours(Side):
    def __init__(self, prepared: Path):
        super().__init__(prepared, "import_ours")
        self.trends: list[float] = []  # ms of the trends alone, one a run

    def run(self) -> float:
        self._copy()
        words = import_night(self.directory, "--trends")
        figures = {word[0]: float(word[1]) for word in words if len(word) == 2}
        self.trends.append(figures["trends"])
        return figures["work"]


class Peer(Side):
    def __init__(self, prepared: Path):
        super().__init__(prepared, "import_peer")

    def run(self) -> float:
        self._copy()
        return Shell(self.directory / "History.mdb", text_of("import_peer.sql")).run()


def run_both(prepared: Path, count: int):
    """The two series of work, and the trends of ours. Both sides have to leave the same."""
    ours, peer = Ours(prepared), Peer(prepared)
    ours.run()
    peer.run()
    expect_same(ours.directory, peer.directory)
    ours.trends.clear()
    return *rounds(count, ours.run, peer.run), ours.trends


def expect_same(ours: Path, peer: Path) -> None:
    for our_line, peer_line in zip(outcome(ours), outcome(peer), strict=True):
        if our_line != peer_line:
            raise MeasureError(f"the import left {our_line}, where the peer left {peer_line}")


def work_lines(prepared: Path, count: int) -> list[Line]:
    ours, peer, trends = run_both(prepared, count)
    return [compare("import_work", "ms", ours, peer, goal=4, wanted=2.5),
            Line("import_trends", statistics.median(trends), "ms", goal=1000)]


def growth_lines() -> list[Line]:
    """One line for each size, and how often more work the largest is than the one before it:
    ten times in proportion. A size that fails is told and left out."""
    lines = []
    for ports in GROWTH:
        prepared = make_night("import_growth", ports, ports // PORTS_A_STORAGE)
        try:
            ours, peer, _ = run_both(prepared, GROWTH_ROUNDS)
        except MeasureError as error:
            print(f"bench/run: with {ports} ports: {error}", file=sys.stderr)
            continue
        lines.append(compare(f"import_with_{ports}_ports", "ms", ours, peer))
    if len(lines) == len(GROWTH):
        tenth, whole = lines[-2:]
        lines.append(Line("import_growth", whole.ours / tenth.ours, "x",
                          peer=whole.peer / tenth.peer))
    return lines


# --- memory -----------------------------------------------------------------------------


def memory_line() -> Line:
    """Private memory that a year of imports adds. The first days, on which each thing is met for
    the first time, do not count."""
    directory = make_night("import_memory", SMALL_PORTS, SMALL_STORAGES)
    words = import_night(directory, "--days", DAYS)
    private = {int(word[1]): int(word[2]) for word in words if word[0] == "private"}
    return Line("import_memory_growth", private[DAYS] - private[GROWN_UP], "KB")


# --- pages ------------------------------------------------------------------------------


def ask_during_import(directory: Path) -> dict:
    """The real service, with its pauses."""
    with Service(directory, SERVER_CORE, import_due=True) as service:
        service.wait_for_listener()
        for _ in range(2):  # the first one fills the cache
            if not service.get(PAGE):
                raise MeasureError(f"quillonweb does not answer {PAGE}")
        time.sleep(max(0.0, service.started + FIRST_PASS - AHEAD - time.monotonic()))
        program = Path(__file__).parent / "import_pages.py"
        command = pinned(CLIENT_CORE, sys.executable, "-B", program, directory, service.port, PAGE)
        done = subprocess.run(command, capture_output=True, text=True, check=False)
        if done.returncode != 0:
            raise MeasureError(f"no pages during the import: {done.stderr.strip()}")
        if events_of(directory) != 1:  # more than the start
            raise MeasureError(f"see {directory / 'Debug/AppEventWeb.txt'}")
    return json.loads(done.stdout)


def page_lines() -> list[Line]:
    directory = make_night("import_pages", PORTS, STORAGES)
    add_program(directory)
    figures = ask_during_import(directory)
    answers = [seconds * MILLI for seconds in figures["answers"]]
    return [Line("import_page_p99", statistics.quantiles(answers, n=100)[-1], "ms", goal=25),
            Line("import_page_worst", max(answers), "ms"),
            Line("import_wall", figures["import"], "s")]


def measure(options: Options) -> list[Line]:
    with about_noon():
        prepared = make_night("import_prepared", PORTS, STORAGES)
        return [*work_lines(prepared, options.rounds), *growth_lines(), memory_line(),
                *page_lines()]
