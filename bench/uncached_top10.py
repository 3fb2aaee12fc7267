"""Time of the top-10 query on a large network, against the same selects in the sqlite3 shell."""

import sys

from figures import Line, MeasureError, Options, compare, rounds
from large_network import make_reports
from query_process import Ports, QueryProcess, address_selects, compare_with_shell, script
from shell import Shell

PORTS = (30_000, 100_000)
GROWTH = (10_000, 100_000, 1_000_000)
GROWTH_ROUNDS = 3
SHOWN = 10

DAY_AND_KIND = ("FROM VLAN WHERE substr(InOctetsDate,1,10) = date('now','localtime')"
                " AND IsTrunk=False")


def selects(ports: Ports, limit: str = "") -> str:
    """Count, list and the look-ups of its ten ports."""
    return script(f"SELECT Count(RecNo) as total {DAY_AND_KIND}",
                  f"SELECT * {DAY_AND_KIND} ORDER BY InErrorsTot24H DESC",
                  address_selects(ports), limit)


def growth_lines() -> list[Line]:
    """One line for each size. A size that fails is told and left out: the largest one can
    meet the service's own limit on the time of a select."""
    lines = []
    for ports in GROWTH:
        ours = QueryProcess("top10_query", make_reports("growth", ports))
        try:
            ours.run()
            shell = Shell(ours.directory / "Reports.mdb", selects(ours.ports()))
            figures = rounds(GROWTH_ROUNDS, ours.run, shell.run)
        except MeasureError as error:
            print(f"bench/run: with {ports} ports: {error}", file=sys.stderr)
            continue
        lines.append(compare(f"top10_with_{ports}_ports", "ms", *figures))
    return lines


def measure(options: Options) -> list[Line]:
    lines = []
    for ports in PORTS:
        ours = QueryProcess("top10_query", make_reports("uncached_top10", ports))
        lines += compare_with_shell(f"uncached_top10_{ports}", options, ours, selects, SHOWN,
                                    goal=1.3, wanted=1.0)
    return [*lines, *growth_lines()]
