"""An installation on the eve of an import: the demonstration's network, with a report that waits.
It is copied for every night; the program that imports has a clock of its own, so no night takes
longer than its work."""

import os
import shutil
import sqlite3
import subprocess
from contextlib import closing
from datetime import datetime, timedelta
from pathlib import Path

from history_file import KEPT_DAYS, ROTATIONS, SWITCH, History

_SOURCES = Path(__file__).resolve().parents[2]
PROGRAMS = Path(os.environ.get("QUILLON_BIN", _SOURCES / "build/debug/bin")).resolve()
_SHARE = Path(os.environ.get("QUILLON_SHARE", _SOURCES / "share")).resolve()

DATABASES = ("Quillon.mdb", "Reports.mdb", "History.mdb")
PATIENCE = 300  # seconds for one call of a program; nothing that works comes near it
_IMPORT_TIME = timedelta(hours=4, seconds=20)
_NO_DAMAGE = ("charts show no day", "a moment to come")
_RECNO_STEP = 1000  # beyond every number of a device in the demonstration


class Night:
    """One installation, and what is done to it in one night or two."""

    def __init__(self, path: Path):
        self.path = path
        self.day = _day_of_report(path)

    @property
    def import_moment(self) -> datetime:
        return self.day + _IMPORT_TIME

    @property
    def next_pass(self) -> datetime:
        return self.import_moment + timedelta(hours=1)

    def copy_to(self, path: Path) -> "Night":
        """Beside what stays there of a broken night."""
        while path.exists():
            path = path.with_name(f"{path.name}-again")
        shutil.copytree(self.path, path)
        sql(path / "Quillon.mdb", f"UPDATE Settings_General SET SnmpcDir = '{path}'")
        return self._at(path)

    def remove(self) -> None:
        shutil.rmtree(self.path)

    def command(self, moment: datetime) -> list[str]:
        """The call that imports at that moment."""
        return [str(PROGRAMS / "import_at"), str(self.path), f"{moment:%Y-%m-%d %H:%M:%S}"]

    def run_pass(self, moment: datetime, in_process=None, environment=None) -> str:
        """What an import says that nobody kills. The procedure runs in its process before it, and
        the variables are added to its environment."""
        done = subprocess.run(self.command(moment), capture_output=True, text=True, check=False,
                              timeout=PATIENCE, preexec_fn=in_process,
                              env={**os.environ, **(environment or {})})
        if done.returncode != 0:
            return f"status {done.returncode}: {done.stderr.strip()}"
        return done.stdout.partition("\n")[0]

    def history(self) -> History:
        return History.read(self.path)

    def history_as_left(self) -> History:
        """Read from a copy: whoever opens the file itself after a fault mends it by that, and the
        next pass has to do it alone."""
        copy = self.path / "as-left"
        copy.mkdir()
        for name in ("History.mdb", "History.mdb-wal"):
            if (self.path / name).exists():
                shutil.copy(self.path / name, copy)
        try:
            return History.read(copy)
        finally:
            shutil.rmtree(copy)

    def events(self) -> list[str]:
        file = self.path / "Debug/AppEventWeb.txt"
        return file.read_text("latin-1").splitlines() if file.exists() else []

    def damages(self) -> list[str]:
        """What the engine and the installation's own check find wrong. Days that hold up the charts
        are no damage: the rules of the night judge what a repeated import may leave twice. Nor is
        the report of a day that has passed for the night alone, and not for the check."""
        found = []
        for name in DATABASES:
            with closing(sqlite3.connect(self.path / name)) as database:
                answers = [row[0] for row in database.execute("PRAGMA integrity_check")]
            found += [f"{name}: {answer}" for answer in answers if answer != "ok"]
        check = subprocess.run([str(PROGRAMS / "quillondb"), "check", str(self.path)],
                               capture_output=True, text=True, check=False, timeout=PATIENCE)
        lines = check.stdout.splitlines() or check.stderr.splitlines()
        return found + [f"quillondb check: {line}" for line in lines
                        if line != "ok" and not any(words in line for words in _NO_DAMAGE)]

    def let_a_day_pass(self) -> None:
        """The management product writes the statistics of the next day and its mark."""
        tomorrow = "datetime({}, '+1 day')".format
        sql(self.path / "Reports.mdb",
            f"UPDATE VLAN SET InOctetsDate = {tomorrow('InOctetsDate')},"
            f" LastUpdate = {tomorrow('LastUpdate')}",
            f"UPDATE HostDiskInfo SET LastUpdate = {tomorrow('LastUpdate')}")
        sql(self.path / "History.mdb",
            f"UPDATE General_Info SET LastReport = {tomorrow('LastReport')}")
        self.day = _day_of_report(self.path)

    def _at(self, path: Path) -> "Night":
        return Night(path)


def sql(file: Path, *statements: str) -> None:
    """Runs the statements as one transaction."""
    with closing(sqlite3.connect(file, timeout=PATIENCE)) as database, database:
        for statement in statements:
            database.execute(statement)


def make_night(path: Path, times: int = 1) -> Night:
    """An installation with so many times the demonstration's statistics, of which some nights were
    missed."""
    path.parent.mkdir(parents=True, exist_ok=True)
    for command in ("create", "demo"):
        subprocess.run([str(PROGRAMS / "quillondb"), command, str(path)], check=True,
                       stdout=subprocess.DEVNULL, timeout=PATIENCE)
    shutil.copytree(_SHARE / "WebReports", path / "WebReports", dirs_exist_ok=True)
    night = Night(path)
    enlarge_reports(path, times)
    _enlarge_history(night, times)
    return night


def enlarge_reports(path: Path, times: int) -> None:
    """Adds copies of all ports and storages under other numbers of devices."""
    for table in ("VLAN", "HostDiskInfo"):
        sql(path / "Reports.mdb", *_copies(path / "Reports.mdb", table, times))


def leave_tables_free(night: Night, count: int) -> None:
    """Of the tables that are free for nights that were missed, gives so many to those nights that
    the count remains. One is what a regular night leaves."""
    history = night.history()
    for rotation in ROTATIONS:
        ages = [row.age(night.day) for row in history.days[rotation]]
        missed = sorted(set(range(2, KEPT_DAYS + 2)) - set(ages))
        surplus = [row for row in history.days[rotation] if row.age(night.day) > KEPT_DAYS + 1]
        given = len(surplus) + 1 - count
        if given < 0:
            raise ValueError(f"{rotation.control} has {len(surplus) + 1} free rows")
        for row, age in zip(surplus[:given], missed[:given], strict=True):
            moment = night.import_moment - timedelta(days=age - 1, hours=23)
            sql(night.path / "History.mdb",
                f"UPDATE {rotation.control} SET {rotation.date} = '{moment:%Y-%m-%d %H:%M:%S}'"
                f" WHERE HistTable = '{row.table}'")


def _enlarge_history(night: Night, times: int) -> None:
    """Of the switch tables only those that an import may empty: nothing looks into the others."""
    history = night.history()
    for rotation in ROTATIONS:
        for row in history.days[rotation]:
            if rotation is not SWITCH or row.is_free(night.day):
                sql(night.path / "History.mdb",
                    *_copies(night.path / "History.mdb", row.table, times))


def _copies(file: Path, table: str, times: int) -> list[str]:
    with closing(sqlite3.connect(file)) as database:
        columns = [row[1] for row in database.execute(f"PRAGMA table_info({table})")]
        last = database.execute(f"SELECT MAX(rowid) FROM {table}").fetchone()[0]
    names = ", ".join(columns)
    return [f"INSERT INTO {table} ({names}) SELECT RecNo + {number * _RECNO_STEP},"
            f" {', '.join(columns[1:])} FROM {table} WHERE rowid <= {last} ORDER BY rowid"
            for number in range(1, times)]


def _day_of_report(path: Path) -> datetime:
    with closing(sqlite3.connect(path / "History.mdb")) as database:
        (text,) = database.execute("SELECT LastReport FROM General_Info").fetchone()
    return datetime.fromisoformat(text[:10])
