"""What every installation is copied from: the program, its words, and the databases with the
demonstration's data."""
import os
import shutil
import subprocess
from pathlib import Path

from local_time import ZONE_NAME
from waiting import DEADLINE

_SOURCES = Path(__file__).resolve().parents[2]
_PROGRAMS = Path(os.environ.get("QUILLON_BIN", _SOURCES / "build/debug/bin")).resolve()
_SHARE = Path(os.environ.get("QUILLON_SHARE", _SOURCES / "share")).resolve()

# The management product's last report is an old one, so no import is due.
_NO_IMPORT = "UPDATE General_Info SET LastReport = '2020-01-01 03:00:00'"


class Template:
    def __init__(self, path):
        self._path = path
        path.mkdir()
        for step in ("create", "demo"):
            subprocess.run([_PROGRAMS / "quillondb", step, path], check=True, timeout=DEADLINE,
                           stdout=subprocess.DEVNULL, env={**os.environ, "TZ": ZONE_NAME})
        shutil.copytree(_SHARE / "WebReports", path / "WebReports", dirs_exist_ok=True)
        for name in ("quillonweb", "quillonmail.so"):
            shutil.copy2(_PROGRAMS / name, path)

    def copy_to(self, installation):
        """A copy with a port of its own, that sends no traps."""
        shutil.copytree(self._path, installation.path)
        installation.set("Settings_General", SnmpcDir=str(installation.path))
        installation.set("Settings_WebServer", TcpPort=installation.port)
        installation.set("Settings_SnmpAgent", Enabled=0, SendAppEvents=0)
        installation.sql("History.mdb", _NO_IMPORT)
