"""Work of the searches: for addresses and ports of a large network, against the same selects in
the sqlite3 shell, and for disks among many storages.

A first search of a fresh process is timed inside it, as in query_process.py.
"""

import statistics
import subprocess
import sys
from pathlib import Path
from typing import Optional

from figures import Line, MeasureError, Options, compare, rounds
from installation import about_noon
from large_network import make_addresses, make_storages
from query_process import Ports, QueryProcess, address_selects, compare_with_shell, script
from shell import Shell

PORTS, ADDRESSES = 100_000, 500_000
GROWTH = (100_000, 1_000_000)
ADDRESSES_A_PORT = ADDRESSES // PORTS
GROWTH_ROUNDS = 3
STORAGES = 20_000
SHOWN = 10        # rows of a table
CONSIDERED = 100  # addresses of which the ports are looked up, until the table is full
KILO = 1024

ORDER = "usedpercent-desc"


def rows_of(database: Path, select: str) -> list[list[str]]:
    done = subprocess.run(["sqlite3", "-bail", str(database)], check=True, input=select,
                          capture_output=True, text=True)
    return [line.split("|") for line in done.stdout.splitlines()]


class Search(QueryProcess):
    def __init__(self, directory: Path, *words: str):
        super().__init__("search_query", directory, *words)
        self.reports = self.directory / "Reports.mdb"

    def figure(self, name: str) -> int:
        """One that the last run told."""
        return next(int(word[1]) for word in self.words if word[0] == name)

    def expect_total(self, count: str) -> None:
        """Both sides have to find the same."""
        (theirs,), = rows_of(self.reports, count)
        if self.figure("total") != int(theirs):
            raise MeasureError(f"the search found {self.figure('total')} of {theirs}: {count}")


# --- addresses --------------------------------------------------------------------------


class AddressSearch(Search):
    """For addresses whose column holds what the pattern says."""

    def __init__(self, directory: Path, value: str, column: str = "MacAddr"):
        super().__init__(directory, "mac", value)
        where = f"FROM MAC WHERE {column} LIKE '{value.replace('*', '%')}'"
        self.count = f"SELECT Count(MacAddr) as total {where}"
        self.list = ("SELECT MacAddr, IpAddr, LastSeen, RecNo, IfIndex"
                     f" {where} ORDER BY LastSeen DESC")
        self.looked_up: Optional[Ports] = None  # where they are more than those found

    def look_up_all(self) -> "AddressSearch":
        """For addresses of which so many lost their port that all are considered."""
        entries = rows_of(self.reports, f"{self.list} LIMIT {CONSIDERED}")
        self.looked_up = [(rec, index) for *_, rec, index in entries]
        return self

    def selects(self, ports: Ports, limit: str = "") -> str:
        look_ups = [f"SELECT * FROM VLAN WHERE RecNo={rec} AND IfIndex= {index}"
                    for rec, index in self.looked_up or ports]
        return script(self.count, self.list, look_ups, limit)

    def lines(self, name: str, options: Options, **goals) -> list[Line]:
        lines = compare_with_shell(name, options, self, self.selects, CONSIDERED, **goals)
        self.expect_total(self.count)
        return lines


def address_lines(directory: Path, options: Options) -> list[Line]:
    some = AddressSearch(directory, "* 2A")
    gone = AddressSearch(directory, "172.31.*", "IpAddr").look_up_all()
    everything = AddressSearch(directory, "*")
    return [*some.lines("mac_search", options, goal=1.5, wanted=1.2),
            *gone.lines("mac_search_100_look_ups", options),
            *everything.lines("mac_search_all", options),
            Line("mac_search_all_peak", everything.figure("peak") / KILO, "MB")]


def growth_lines() -> list[Line]:
    """One line for each size, and how often more work the second is than the first: ten times in
    proportion. A size that fails is told and left out: the larger one can meet the service's own
    limit on the time of a select."""
    lines = []
    for addresses in GROWTH:
        ours = AddressSearch(
            make_addresses("search_growth", addresses, addresses // ADDRESSES_A_PORT), "* 2A")
        try:
            ours.run()
            figures = rounds(GROWTH_ROUNDS, ours.run,
                             Shell(ours.reports, ours.selects(ours.ports())).run)
        except MeasureError as error:
            print(f"bench/run: with {addresses} addresses: {error}", file=sys.stderr)
            continue
        lines.append(compare(f"mac_search_with_{addresses}_rows", "ms", *figures))
    if len(lines) == len(GROWTH):
        tenth, whole = lines
        lines.append(Line("mac_search_growth", whole.ours / tenth.ours, "x",
                          peer=whole.peer / tenth.peer))
    return lines


# --- ports ------------------------------------------------------------------------------


def port_lines(name: str, options: Options, ours: Search, condition: str, **goals) -> list[Line]:
    where = f"FROM VLAN WHERE {condition}"
    count = f"SELECT Count(RecNo) as total {where}"

    def selects(ports: Ports, limit: str) -> str:
        return script(count, f"SELECT * {where}", address_selects(ports), limit)

    lines = compare_with_shell(name, options, ours, selects, SHOWN, **goals)
    ours.expect_total(count)
    return lines


# --- disks ------------------------------------------------------------------------------


def disk_lines(options: Options) -> list[Line]:
    directory = make_storages("disk_search", STORAGES)
    found = Search(directory, "disk", "*7.example", "*", ORDER).measure(options.rounds)
    nothing = Search(directory, "disk", "*nothing*", "*", ORDER, "--no-hit").measure(options.rounds)
    return [Line("disk_search", statistics.median(found.first), "ms", goal=30),
            Line("disk_search_later_calls", statistics.median(found.later), "ms"),
            Line("disk_search_without_hit", statistics.median(nothing.first), "ms", goal=30)]


def measure(options: Options) -> list[Line]:
    with about_noon():
        directory = make_addresses("searches", ADDRESSES, PORTS)
        by_name = Search(directory, "port", "*7.example", "*/1*")
        by_alias = Search(directory, "alias", "*7.example", "*socket 2")
        return [
            *address_lines(directory, options),
            *growth_lines(),
            *port_lines("port_search", options, by_name,
                        "DevName LIKE '%7.example' AND IfDescr LIKE '%/1%'", goal=1.5, wanted=1.2),
            *port_lines("alias_search", options, by_alias,
                        "DevName LIKE '%7.example' AND IfAlias LIKE '%socket 2'"),
            *disk_lines(options),
        ]
