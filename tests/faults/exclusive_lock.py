"""Another program that has a database for itself, so that nobody else can even read it: for less
than the five seconds that the service waits, and for far longer."""

import sqlite3
import threading
from contextlib import closing, contextmanager
from pathlib import Path

from demo_night import PATIENCE

WAITED_FOR, TOO_LONG = 4, 60  # seconds of the machine's time


@contextmanager
def locked(file: Path, seconds: int):
    """The lock is there when this begins, and gone when it ends."""
    with closing(sqlite3.connect(file, isolation_level=None, timeout=PATIENCE,
                                 check_same_thread=False)) as database:
        database.execute("PRAGMA locking_mode = EXCLUSIVE")
        database.execute("BEGIN EXCLUSIVE")
        end = threading.Timer(seconds, database.close)  # which changes nothing
        end.start()
        try:
            yield
        finally:
            end.join()
