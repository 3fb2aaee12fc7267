"""Installations that run no service: they are made at once, one for each test."""
import shutil
import socket
import tempfile
import unittest
from pathlib import Path

from installation import Installation
from quillondb import create

REPORT_TABLES = ("VLAN", "MAC", "HostDiskInfo")
DATABASES = ("Quillon.mdb", "Reports.mdb", "History.mdb")
_SIDE_FILES = ("-wal", "-shm")


def report_rows(site):
    """All rows of all tables of statistics, with the types in which they are stored."""
    rows = {}
    for table in REPORT_TABLES:
        names = [row[1] for row in site.sql("Reports.mdb", f"PRAGMA table_info({table})")]
        types = ", ".join(f"typeof({name})" for name in names)
        rows[table] = site.sql("Reports.mdb", f"SELECT *, {types} FROM {table} ORDER BY rowid")
    return rows


def file_bytes(folder):
    """The bytes of each file below, by its path."""
    return {str(path.relative_to(folder)): path.read_bytes() for path in _files(folder)}


def file_states(folder):
    """Bytes, rights, owner and time of each file below. What the engine keeps beside a database
    that a service uses comes and goes."""
    states = {}
    for path in _files(folder):
        if path.name.endswith(_SIDE_FILES):
            continue
        status = path.lstat()
        states[str(path.relative_to(folder))] = (
            path.read_bytes(), status.st_mode, status.st_uid, status.st_gid, status.st_mtime_ns)
    return states


def _files(folder):
    return [path for path in sorted(folder.rglob("*")) if path.is_file()]


def free_port():
    with socket.create_server(("127.0.0.1", 0)) as probe:
        return probe.getsockname()[1]


class OwnSiteTest(unittest.TestCase):
    def setUp(self):
        self.folder = Path(tempfile.mkdtemp(prefix="quillon-own-"))
        self.addCleanup(shutil.rmtree, self.folder)
        self.site = self.new_site("site")

    def new_site(self, name):
        site = Installation(self.folder / name, free_port())
        create(site.path)
        site.set("Settings_WebServer", TcpPort=site.port)
        return site
