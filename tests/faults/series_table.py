"""How the faults of a series are told: as a line of a table."""

from collections import Counter
from collections.abc import Iterable


def line(series: str, faults: object, became: str) -> str:
    return f"| {series} | {faults} | {became} |"


HEAD = line("Series", "Faults", "What became of them") + "\n| --- | --- | --- |"


def counted(counts: Counter, words: Iterable[str]) -> str:
    return ", ".join(f"{counts[word]} {word}" for word in words)
