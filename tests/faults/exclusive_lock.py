"""Another program that has a database for itself, so that nobody else can even read it: for less
than the five seconds that the service waits, and for far longer."""

import sqlite3
import threading
import time
from contextlib import contextmanager
from pathlib import Path

from demo_night import PATIENCE

WAITED_FOR, TOO_LONG = 4, 60  # seconds of the machine's time


@contextmanager
def locked(file: Path, seconds: int):
    """The lock is there when this begins, and gone when it ends."""
    is_locked = threading.Event()
    thread = threading.Thread(target=_hold, args=(file, seconds, is_locked))
    thread.start()
    if not is_locked.wait(PATIENCE):
        raise TimeoutError(f"{file} cannot be locked")
    try:
        yield
    finally:
        thread.join()


def _hold(file: Path, seconds: int, is_locked: threading.Event) -> None:
    database = sqlite3.connect(file, isolation_level=None, timeout=PATIENCE)
    try:
        database.execute("PRAGMA locking_mode = EXCLUSIVE")
        database.execute("BEGIN EXCLUSIVE")
        is_locked.set()
        time.sleep(seconds)
        database.execute("ROLLBACK")
    finally:
        database.close()
