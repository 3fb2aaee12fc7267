"""What a part has counted or measured, the limit that a figure has to keep, and the judgement over
all of them."""
from dataclasses import dataclass
from typing import Optional


@dataclass
class Figure:
    name: str
    value: float
    unit: str = ""
    least: Optional[float] = None
    most: Optional[float] = None

    @property
    def holds(self):
        return ((self.least is None or self.value >= self.least) and
                (self.most is None or self.value <= self.most))

    def limit(self):
        if self.least is not None and self.least == self.most:
            return f"= {_text(self.most)}"
        both = ((">=", self.least), ("<=", self.most))
        limits = [f"{sign} {_text(limit)}" for sign, limit in both if limit is not None]
        return " ".join(limits) or "-"

    def verdict(self):
        if self.least is None and self.most is None:
            return ""
        return "holds" if self.holds else "MISSED"


class Judgement:
    """Tells the figures of each part behind it, and counts the parts."""

    def __init__(self):
        self.passed = 0
        self.failed = 0

    def tell(self, part, figures):
        print(_table(part, figures), flush=True)
        if all(figure.holds for figure in figures):
            self.passed += 1
        else:
            self.failed += 1

    def fail(self, part, why):
        """One that has no figures, since it came to no end."""
        print(f"FAILED {part}: {why}\n", flush=True)
        self.failed += 1

    def line(self):
        return f"{self.passed} passed, {self.failed} failed"


def _text(value):
    return f"{value:,.0f}" if value == int(value) or value >= 1000 else f"{value:,.2f}"


def _table(part, figures):
    rows = [(part, "figure", "limit", "")]
    rows += [(figure.name, f"{_text(figure.value)} {figure.unit}".rstrip(), figure.limit(),
              figure.verdict()) for figure in figures]
    widths = [max(len(row[column]) for row in rows) for column in range(4)]
    lines = [f"{name:{widths[0]}}  {value:>{widths[1]}}  {limit:>{widths[2]}}  {verdict}"
             for name, value, limit, verdict in rows]
    return "".join(line.rstrip() + "\n" for line in lines)
