"""A night with all that follows its import: the pages, and the mails to a server of this process.
The network is small, since a disturbed night is judged by what it leaves."""

import sqlite3
import sys
import time
from contextlib import closing
from dataclasses import dataclass
from datetime import datetime
from pathlib import Path

from demo_night import PATIENCE, Night, leave_tables_free, make_night, sql
from history_file import ROTATIONS

sys.path.append(str(Path(__file__).resolve().parents[1] / "system"))

from faulty_mail_server import FaultyMailServer
from mail_box import attachments_of, read_message

_PORTS_OF_A_KIND = 2
_STORAGES = 5
_LOOK_PAUSE = 0.005  # seconds

# The fields in which a receiver differs from one who gets a bare mail every day.
_RECEIVERS = (
    {"Name": "Lists", "Top10Rep1": "Access Ports InVolume", "Top10Rep2": "Trunk Ports InErrors",
     "AttachReport": 1, "IncludeUrl": 1},
    {"Name": "Bare"},
    {"Name": "Summary", "Top10Rep1": "Trunk Ports Summary", "AttachReport": 1},
)
_BARE = {"TimeSchedule": 1, "WeekDay": "", **{f"Top10Rep{place}": "None" for place in range(1, 6)},
         "PortRep": 0, "PortRepRecNo": 0, "PortRepIfIndex": 0, "PortRepDetails": 0,
         "AttachReport": 0, "IncludeUrl": 0}


@dataclass
class Mail:
    recipient: str
    attachments: dict  # the bytes by the name


@dataclass
class Output:
    """What a night has made of the day."""

    pages: dict       # files of the cache: the bytes by the name
    mail_pages: dict  # those of the mail folder
    mails: list       # that the server has taken, in their order


class WholeNight(Night):
    """Its pass builds pages and sends mails."""

    def __init__(self, path: Path, server: FaultyMailServer):
        super().__init__(path)
        self._server = server

    def command(self, moment: datetime) -> list[str]:
        return [*super().command(moment), "--whole"]

    def forget_mails(self) -> None:
        self._server.visits.clear()

    def output(self) -> Output:
        return Output(_files(self.path / "WebReports/Cache"), _files(self.path / "WebReports/Mail"),
                      self._mails())

    def _at(self, path: Path) -> "WholeNight":
        """What was sent before is of other nights."""
        self.forget_mails()
        return WholeNight(path, self._server)

    def _mails(self) -> list[Mail]:
        end = time.monotonic() + PATIENCE
        while not self._server.has_served(0):  # one that was cut off is noticed soon
            if time.monotonic() > end:
                raise TimeoutError("the mail server still has a visitor")
            time.sleep(_LOOK_PAUSE)
        return [Mail(visit.recipient, dict(attachments_of(read_message(visit.text))))
                for visit in self._server.visits if visit.is_taken]


def make_whole_night(path: Path) -> WholeNight:
    """One on whose eve nothing was missed, with a mail server of its own."""
    server = FaultyMailServer([])
    server.open()
    night = make_night(path)
    _keep_a_small_network(night)
    leave_tables_free(night, 1)
    sql(path / "Quillon.mdb", "DELETE FROM Settings_RepReceiver",
        f"UPDATE Settings_SmtpServer SET MailServer = '127.0.0.1', MailPort = {server.port},"
        " FromAddr = 'reports@mail.test', TimeOut = 60, Retries = 0, UseAuth = 0",
        *[_insert_receiver({**_BARE, **receiver}) for receiver in _RECEIVERS])
    return WholeNight(path, server)


def _insert_receiver(fields: dict) -> str:
    fields = {**fields, "Recipient": f"{fields['Name'].lower()}@mail.test"}
    return (f"INSERT INTO Settings_RepReceiver ({', '.join(fields)})"
            f" VALUES ({', '.join(map(_literal, fields.values()))})")


def _keep_a_small_network(night: Night) -> None:
    """Of today's rows a few of each kind, and of the history what belongs to them."""
    today = f"{night.day:%Y-%m-%d}"
    kept = [f"SELECT * FROM (SELECT rowid FROM VLAN WHERE IsTrunk = {kind}"
            f" AND InOctetsDate >= '{today}' LIMIT {_PORTS_OF_A_KIND})" for kind in (0, 1)]
    sql(night.path / "Reports.mdb",
        f"DELETE FROM VLAN WHERE rowid NOT IN ({' UNION '.join(kept)})",
        f"DELETE FROM HostDiskInfo WHERE rowid NOT IN"
        f" (SELECT rowid FROM HostDiskInfo WHERE LastUpdate >= '{today}' LIMIT {_STORAGES})",
        "DELETE FROM MAC")
    keys = ("RecNo, IfIndex", "RecNo, StorDescr")
    with closing(sqlite3.connect(night.path / "Reports.mdb")) as reports:
        rows = [reports.execute(f"SELECT {key} FROM {table}").fetchall()
                for key, table in zip(keys, ("VLAN", "HostDiskInfo"), strict=True)]
    history = night.history()
    for rotation, key, wanted in zip(ROTATIONS, keys, rows, strict=True):
        values = ", ".join(f"({number}, {_literal(name)})" for number, name in wanted)
        sql(night.path / "History.mdb",
            *[f"DELETE FROM {row.table} WHERE ({key}) NOT IN (VALUES {values})"
              for row in history.days[rotation]])
    for name in ("Reports.mdb", "History.mdb"):
        with closing(sqlite3.connect(night.path / name)) as database:
            database.execute("VACUUM")


def _literal(value) -> str:
    return str(value) if isinstance(value, int) else "'" + value.replace("'", "''") + "'"


def _files(folder: Path) -> dict:
    return {file.name: file.read_bytes() for file in sorted(folder.iterdir())}
