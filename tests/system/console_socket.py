"""A client on the service's socket file: what is sent, and in how many pieces, is the test's
matter."""
import socket
import time
from contextlib import suppress

from waiting import DEADLINE

NAME = "quillonweb.socket"


class ConsoleSocket:
    def __init__(self, site):
        self._socket = socket.socket(socket.AF_UNIX)
        self._socket.connect(str(site.path / NAME))  # waits while many others do
        self._socket.settimeout(DEADLINE)
        self._begin = time.monotonic()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.leave()

    def send(self, data):
        """As much of it as the service takes before it hangs up."""
        with suppress(BrokenPipeError, ConnectionResetError):
            self._socket.sendall(data)

    def ask(self, line):
        self.send(line + b"\n")
        return self.lines()

    def lines(self):
        """All that come before the service hangs up."""
        received = b""
        with suppress(ConnectionResetError):  # it has not read all of what was sent
            while data := self._socket.recv(1 << 16):
                received += data
        return received.decode(errors="replace").split("\n")[:-1]

    def seconds_until_hung_up(self):
        """Since it was connected. Nothing may come."""
        lines = self.lines()
        if lines:
            raise AssertionError(f"the service answers: {lines}")
        return time.monotonic() - self._begin

    def leave(self):
        self._socket.close()
