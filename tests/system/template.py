"""What every installation is copied from: the program, its words, and the databases with the
demonstration's data."""
import os
import shutil
import subprocess

from local_time import ZONE_NAME
from programs import PROGRAMS, SHARE
from waiting import DEADLINE

# The management product's last report is an old one, so no import is due.
_NO_IMPORT = "UPDATE General_Info SET LastReport = '2020-01-01 03:00:00'"


class Template:
    def __init__(self, path):
        self._path = path
        path.mkdir()
        for step in ("create", "demo"):
            subprocess.run([PROGRAMS / "quillondb", step, path], check=True, timeout=DEADLINE,
                           stdout=subprocess.DEVNULL, env={**os.environ, "TZ": ZONE_NAME})
        shutil.copytree(SHARE / "WebReports", path / "WebReports", dirs_exist_ok=True)
        for name in ("quillonweb", "quillonmail.so", "quillonctl"):
            # Without what only a debugger reads, a tenth: every installation has them all.
            subprocess.run(["strip", "--strip-debug", "-o", path / name, PROGRAMS / name],
                           check=True, timeout=DEADLINE)

    def copy_to(self, installation):
        """A copy with a port of its own, that sends no traps."""
        shutil.copytree(self._path, installation.path)
        installation.set("Settings_General", SnmpcDir=str(installation.path))
        installation.set("Settings_WebServer", TcpPort=installation.port)
        installation.set("Settings_SnmpAgent", Enabled=0, SendAppEvents=0)
        installation.sql("History.mdb", _NO_IMPORT)
