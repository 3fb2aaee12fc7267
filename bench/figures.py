"""The lines of the result table, and the medians and ratios in them."""

import statistics
from dataclasses import dataclass
from typing import Callable, Optional, Sequence


class MeasureError(Exception):
    """Something that is measured did not work; the text says what."""


@dataclass
class Options:
    rounds: int   # of which the median counts
    seconds: int  # length of one load phase


@dataclass
class Line:
    """One figure. Goal and wanted bind the ratio where there is a peer, else our figure."""

    name: str
    ours: float
    unit: str
    peer: Optional[float] = None
    ratio: Optional[float] = None
    goal: Optional[float] = None
    wanted: Optional[float] = None
    more_is_better: bool = False


def compare(name: str, unit: str, ours: Sequence[float], peer: Sequence[float],
            **limits) -> Line:
    """A line of two series taken round by round. Its ratio is the median of the rounds'
    ratios, so that a slow minute of the machine, which meets both sides, does not show."""
    ratios = [a / b for a, b in zip(ours, peer, strict=True)]
    return Line(name, statistics.median(ours), unit, peer=statistics.median(peer),
                ratio=statistics.median(ratios), **limits)


def rounds(count: int, ours: Callable[[], float], peer: Callable[[], float]):
    """Both sides by turns, each first in every other round; the two series."""
    our_figures, peer_figures = [], []
    for number in range(count):
        turns = [(ours, our_figures), (peer, peer_figures)]
        for run, figures in turns if number % 2 == 0 else reversed(turns):
            figures.append(run())
    return our_figures, peer_figures


def reached(line: Line) -> str:
    """Which of the two limits the line keeps."""
    if line.goal is None:
        return ""
    figure = line.ours if line.ratio is None else line.ratio

    def keeps(limit: Optional[float]) -> bool:
        return limit is not None and (figure >= limit if line.more_is_better else figure <= limit)

    return "wanted" if keeps(line.wanted) else "goal" if keeps(line.goal) else "MISSED"


def figure_text(value: Optional[float], unit: str) -> str:
    if value is None:
        return "-"
    digits = 0 if value >= 1000 or value == int(value) else 1 if value >= 100 else 2
    digits = 3 if 0 < value < 1 else digits
    return f"{value:,.{digits}f} {unit}".rstrip()


def limit_text(value: Optional[float], line: Line) -> str:
    if value is None:
        return "-"
    return f"{'>=' if line.more_is_better else '<='} {value:g}"


def table(lines: Sequence[Line]) -> str:
    rows = [["name", "ours", "peer", "ratio", "goal", "wanted", "reached"]]
    for line in lines:
        rows.append([line.name, figure_text(line.ours, line.unit),
                     figure_text(line.peer, line.unit),
                     "-" if line.ratio is None else f"{line.ratio:.2f}",
                     limit_text(line.goal, line), limit_text(line.wanted, line), reached(line)])
    widths = [max(len(cell) for cell in column) for column in zip(*rows)]
    text = ""
    for row in rows:
        cells = [row[0].ljust(widths[0])]
        cells += [cell.rjust(width) for cell, width in zip(row[1:], widths[1:])]
        text += "  ".join(cells).rstrip() + "\n"
    return text
