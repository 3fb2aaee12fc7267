"""All that History.mdb holds, read at one moment."""

import sqlite3
from contextlib import closing
from dataclasses import dataclass
from datetime import datetime, timedelta
from pathlib import Path

KEPT_DAYS = 45


@dataclass(frozen=True)
class Rotation:
    """One of the two rings of day tables, and the sums beside it."""

    control: str
    date: str  # the field of the control rows and of the sums
    sums: str
    trends: int = 0  # how many fields at the end of a day's row depend on other days


SWITCH = Rotation("VLAN_HistCtrl", "TrafficDate", "VLAN_HistSum")
DISK = Rotation("Disk_HistCtrl", "StorageDate", "Disk_HistSum", trends=2)
ROTATIONS = (SWITCH, DISK)


def covered_day(day: datetime) -> datetime:
    """The day that an import of this day is about."""
    return day - timedelta(days=1)


@dataclass
class Day:
    """A control row and the rows of its table."""

    moment: str
    table: str
    rows: list

    @property
    def day(self) -> datetime:
        return datetime.fromisoformat(self.moment[:10])

    def age(self, today: datetime) -> int:
        return (today - self.day).days

    def is_free(self, today: datetime) -> bool:
        return self.age(today) > KEPT_DAYS


@dataclass
class History:
    days: dict   # of each rotation the control rows, in stored order
    sums: dict   # of each rotation the rows of the sums, in stored order
    marks: dict  # the fields of General_Info

    @classmethod
    def read(cls, directory: Path) -> "History":
        with closing(sqlite3.connect(directory / "History.mdb")) as database:
            marks = database.execute("SELECT * FROM General_Info")
            return cls({rotation: _days(database, rotation) for rotation in ROTATIONS},
                       {rotation: _rows(database, rotation.sums) for rotation in ROTATIONS},
                       dict(zip([field[0] for field in marks.description], marks.fetchone())))

    def of_day(self, rotation: Rotation, day: datetime) -> list[int]:
        """The positions of the control rows of that day."""
        return [position for position, row in enumerate(self.days[rotation]) if row.day == day]

    def free(self, rotation: Rotation, today: datetime) -> list[int]:
        """The positions of the control rows that an import may take."""
        return [position for position, row in enumerate(self.days[rotation])
                if row.is_free(today)]

    def is_imported(self, today: datetime) -> bool:
        return self.marks["LastImport"].startswith(f"{today:%Y-%m-%d}")


def _days(database: sqlite3.Connection, rotation: Rotation) -> list[Day]:
    controls = database.execute(
        f"SELECT {rotation.date}, HistTable FROM {rotation.control} ORDER BY rowid").fetchall()
    return [Day(moment, table, _rows(database, table)) for moment, table in controls]


def _rows(database: sqlite3.Connection, table: str) -> list[tuple]:
    return database.execute(f"SELECT * FROM {table} ORDER BY rowid").fetchall()
