"""Work of the chart pages that are not in the cache: the 45 days of one port out of day tables of a
large network, and the summary of all its access ports.

Timed inside a process that counts the pauses of the queries and does not sleep them. It finds the
file in the machine's page cache.
"""

import os
import shutil
import statistics
import subprocess
from contextlib import contextmanager
from pathlib import Path

from figures import Line, MeasureError, Options
from installation import PROGRAMS, SERVER_CORE, about_noon, pinned
from large_network import make_charts
from pieces import medians

PORTS, FEW_PORTS = 100_000, 1_000
PORTS_A_SWITCH = 48
PAGES = 5  # that a process opens: the first one, and later ones
MILLI = 1000


class Pages:
    """Pages of one kind, each time opened in a process of their own."""

    def __init__(self, directory: Path, pages: list[str]):
        self.command = pinned(SERVER_CORE, PROGRAMS / "chart_reports", directory.resolve(), *pages)
        self.first: list[float] = []  # ms of the first page, one a run
        self.later: list[float] = []  # ms of the later pages, median of each run

    def _run(self) -> list[float]:
        done = subprocess.run(self.command, capture_output=True, text=True, check=False)
        if done.returncode != 0:
            raise MeasureError(done.stderr.strip())
        return [float(line.split()[1]) / MILLI for line in done.stdout.splitlines()]

    def measure(self, count: int) -> "Pages":
        self._run()  # brings the file into the page cache
        for _ in range(count):
            first, *later = self._run()
            self.first.append(first)
            self.later.append(statistics.median(later))
        return self


def port_pages(ports: int) -> list[str]:
    """Ports that are spread over the tables, none of them twice."""
    switches = ports // PORTS_A_SWITCH
    return [f"{switches * (2 * number + 1) // (2 * PAGES) + 1}-{number + 1}"
            for number in range(PAGES)]


@contextmanager
def charts_of(ports: int):
    """The installation is too large to leave it behind."""
    directory = make_charts("charts", ports)
    os.sync()
    try:
        yield directory
    finally:
        shutil.rmtree(directory)


def measure(options: Options) -> list[Line]:
    with about_noon():
        with charts_of(PORTS) as directory:
            port = Pages(directory, port_pages(PORTS)).measure(options.rounds)
            summary = Pages(directory, ["access"] * PAGES).measure(options.rounds)
        with charts_of(FEW_PORTS) as directory:
            small = Pages(directory, port_pages(FEW_PORTS)).measure(options.rounds)
    (_, html), = medians(options, "^PortCharts$")
    return [
        Line("port_chart", statistics.median(port.first), "ms", goal=15, wanted=5),
        Line("port_chart_later_calls", statistics.median(port.later), "ms"),
        Line("port_chart_with_1000_ports", statistics.median(small.first), "ms"),
        Line("summary_chart", statistics.median(summary.first), "ms", goal=5),
        Line("chart_html", html / MILLI, "ms", goal=1),
    ]
