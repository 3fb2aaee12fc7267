"""The service manager's end of the notices: a datagram socket, and what has come to it."""
import atexit
import socket
import threading
import time
from dataclasses import dataclass

from waiting import eventually


@dataclass
class Notice:
    time: float     # of the monotonic clock
    lines: list
    saw: object = None  # what the observer saw when it came


class NotifySocket:
    """`address` is a path, or a name behind an "@". The observer is called at each notice."""

    def __init__(self, address, observer=None):
        self.address = str(address)
        self._observer = observer
        self._notices = []
        self._socket = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
        is_abstract = self.address.startswith("@")
        self._socket.bind("\0" + self.address[1:] if is_abstract else self.address)
        atexit.register(self._socket.close)
        # It is emptied all the time, so that no notice has to wait for a test.
        threading.Thread(target=self._receive, daemon=True).start()

    def notices(self, line=None):
        """All that have come, or those with that line."""
        return [notice for notice in list(self._notices) if line is None or line in notice.lines]

    def wait_for(self, line):
        return eventually(lambda: self.notices(line), f"the notice {line}")[0]

    def settle(self):
        """Waits until all that was sent before has been taken."""
        mark = f"MARK={time.monotonic()}"
        with socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM) as sender:
            sender.sendto(mark.encode(), self._socket.getsockname())
        self.wait_for(mark)

    def _receive(self):
        while True:
            try:
                lines = self._socket.recv(65536).decode().split("\n")
            except OSError:
                return
            now = time.monotonic()
            self._notices.append(Notice(now, lines, self._observer() if self._observer else None))
