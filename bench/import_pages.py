"""How long a cached page takes while the service imports the day.

A program of its own, so that it can be pinned, and that nobody else loads the library of the
databases:

    import_pages.py DIRECTORY PORT PAGE

asks for the page at a steady rate on a few keep-alive connections until the service, which is
about to start its import, has done it. Prints the seconds of each answer that was due meanwhile,
and of the import, as JSON. An answer's time counts from the moment at which its request was due:
where no connection was free, it had to wait for one.
"""

import json
import re
import selectors
import socket
import sqlite3
import sys
import time
from collections import deque
from contextlib import closing
from pathlib import Path
from typing import Callable, Optional

from installation import HOST

RATE = 200        # requests a second
CONNECTIONS = 12  # the service drops everybody at 20
DEADLINE = 600    # seconds
LOOK_PAUSE = 0.25


class Client:
    """A keep-alive connection, with one request at a time."""

    def __init__(self, port: int, page: str):
        self._request = f"GET /{page} HTTP/1.1\r\nHost: {HOST}\r\n\r\n".encode("ascii")
        self.socket = socket.create_connection((HOST, port))
        self.socket.setblocking(False)
        self.due = 0.0
        self._received = bytearray()

    def ask(self, due: float) -> None:
        self.due = due
        self._received.clear()
        self.socket.send(self._request)

    def receive(self) -> bool:
        """Takes what has arrived; whether the answer is whole."""
        data = self.socket.recv(1 << 17)
        if not data:
            raise ConnectionError("the service closed a connection")
        self._received += data
        head, blank_line, body = self._received.partition(b"\r\n\r\n")
        if not blank_line:
            return False
        return len(body) >= int(re.search(rb"Content-Length: (\d+)", head)[1])


class ImportWatch:
    """Sees the import from outside. The history is not opened before its files have changed, and
    never for longer than a look."""

    def __init__(self, directory: Path):
        self._files = [directory / "History.mdb", directory / "History.mdb-wal"]
        self._before = self._stamps()
        self._next_look = 0.0
        self.begin: Optional[float] = None
        self.end: Optional[float] = None

    def is_over(self) -> bool:
        now = time.perf_counter()
        if self.begin is None:
            if self._stamps() != self._before:
                self.begin = now
        elif now >= self._next_look:
            self._next_look = now + LOOK_PAUSE
            if self._has_imported():
                self.end = now
        return self.end is not None

    def _stamps(self) -> list[Optional[int]]:
        return [file.stat().st_mtime_ns if file.exists() else None for file in self._files]

    def _has_imported(self) -> bool:
        try:
            with closing(sqlite3.connect(self._files[0], timeout=0)) as history:
                select = "SELECT date(LastImport) = date('now', 'localtime') FROM General_Info"
                return bool(history.execute(select).fetchone()[0])
        except sqlite3.OperationalError:  # it is just being opened or closed over there
            return False


def ask_steadily(clients: list[Client],
                 is_over: Callable[[], bool]) -> list[tuple[float, float]]:
    """When each request was due, and its seconds."""
    free, waiting, answered = deque(clients), deque(), []
    with selectors.SelectSelector() as selector:  # the others round times to milliseconds
        for client in clients:
            selector.register(client.socket, selectors.EVENT_READ, client)
        due = time.perf_counter()
        give_up = due + DEADLINE
        while not is_over():
            now = time.perf_counter()
            if now > give_up:
                raise TimeoutError("the service does not import the day")
            while due <= now:
                waiting.append(due)
                due += 1 / RATE
            while waiting and free:
                free.popleft().ask(waiting.popleft())
            for key, _ in selector.select(max(0.0, due - time.perf_counter())):
                client = key.data
                if client.receive():
                    answered.append((client.due, time.perf_counter() - client.due))
                    free.append(client)
    return answered


def main(directory: str, port: str, page: str) -> int:
    watch = ImportWatch(Path(directory))
    clients = [Client(int(port), page) for _ in range(CONNECTIONS)]
    answered = ask_steadily(clients, watch.is_over)
    times = [seconds for due, seconds in answered if watch.begin <= due <= watch.end]
    print(json.dumps({"answers": times, "import": watch.end - watch.begin}))
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
