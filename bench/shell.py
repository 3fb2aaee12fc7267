"""A script in the sqlite3 shell, the peer of what works on a database."""

import subprocess
import time
from pathlib import Path

from installation import SERVER_CORE, pinned

MILLI = 1000


class Shell:
    """A script in the folder of its database. What it prints is thrown away."""

    def __init__(self, database: Path, script: str):
        self.folder = database.parent.resolve()
        self.command = pinned(SERVER_CORE, "sqlite3", "-bail", "-batch", "-init", "/dev/null",
                              database.name)
        self.script = script

    def _time(self, script: str) -> float:
        start = time.perf_counter()
        subprocess.run(self.command, cwd=self.folder, input=script, text=True, check=True,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        return (time.perf_counter() - start) * MILLI

    def run(self) -> float:
        """Milliseconds of the run less those of an empty script's run."""
        empty = self._time("")
        return self._time(self.script) - empty
