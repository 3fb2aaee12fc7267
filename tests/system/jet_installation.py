"""Older installations for `quillondb`: the Jet files that one would have left, made out of the
databases of an installation of today."""
import shutil
import sqlite3
import tempfile
from contextlib import closing
from pathlib import Path
from typing import NamedTuple

from jet_values import Column
from jet_writer import JetWriter
from own_site import DATABASES
from quillondb import Running, ask

FOREIGN_FOLDER = "C:\\Morvane"  # of the management product, on another system
_KINDS = {"DATE": "date", "BOOLEAN": "yes/no", "INTEGER": "long", "SINGLE": "single",
          "NUMERIC": "double", "TEXT": "text"}
# So that there is one of each kind.
_OTHER_KINDS = {"DevName": "wide text", "IfAlias": "memo", "InErrorsTot24H": "currency",
                "OutErrorsTot24H": "decimal", "VlanID": "integer", "Type": "byte"}
_DAY_TABLE = "_Day"


class OldFiles(NamedTuple):
    reports: Path
    history: Path
    settings: Path

    @property
    def options(self):
        return ("--reports", self.reports, "--history", self.history, "--settings", self.settings)


class Watched(Running):
    """One whose lines are read while it runs."""

    def first_line_with(self, text):
        return next(line for line in map(bytes.decode, self._process.stdout) if text in line)


def created(path):
    """The folder with new databases, in the place of those that were there."""
    for file in path.glob("*.mdb*"):
        file.unlink()
    ask("create", path)
    return path


def new_folder(test):
    """An empty one, until the end of the test or the class of tests."""
    folder = Path(tempfile.mkdtemp(prefix="quillon-jet-"))
    clean_up = test.addClassCleanup if isinstance(test, type) else test.addCleanup
    clean_up(shutil.rmtree, folder)
    return folder


def contents(path):
    """All rows of all tables of an installation."""
    return {(name, table): rows_of(path / name, table)
            for name in DATABASES for table in tables_of(path / name)}


def rows_of(file, table):
    with closing(sqlite3.connect(file)) as database:
        return database.execute(f"SELECT * FROM {table} ORDER BY rowid").fetchall()


def tables_of(file):
    with closing(sqlite3.connect(file)) as database:
        return [name for name, in database.execute(
            "SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY rowid")]


def columns_of(file, table):
    """As an older installation had them."""
    with closing(sqlite3.connect(file)) as database:
        shapes = database.execute("SELECT name, type FROM pragma_table_info(?)", [table])
        return [Column(name, _OTHER_KINDS.get(name, _KINDS[kind])) for name, kind in shapes]


def old_file(file, without=()):
    """The tables of one database, but those left out."""
    old = JetWriter()
    for table in tables_of(file):
        if table not in without:
            old.add_table(_old_name(table), columns_of(file, table), _old_rows(file, table))
    return old


def old_files(path, folder):
    """The three files of an installation."""
    return OldFiles(*[old_file(path / name).write(folder / f"Old{name}")
                      for name in ("Reports.mdb", "History.mdb", "Quillon.mdb")])


def _old_name(table):
    """The days of the history lay in tables of other names."""
    return f"Old_{table}" if _DAY_TABLE in table else table


def _old_rows(file, table):
    changes = {"HistTable": _old_name, "SnmpcDir": lambda _: FOREIGN_FOLDER}
    changed = [changes.get(column.name, lambda value: value) for column in columns_of(file, table)]
    return [[change(value) for change, value in zip(changed, row)] for row in rows_of(file, table)]
