"""A mail server that takes every mail and keeps none."""

import socketserver
import threading
from contextlib import contextmanager
from typing import Iterator

from installation import HOST, free_port

ATTACHMENT = b"content-disposition: attachment"


class _Session(socketserver.StreamRequestHandler):
    """One connection. Nothing is judged: what comes is answered as if it were right."""

    def handle(self) -> None:
        self._answer(220, "ready")
        for line in self.rfile:
            verb = line[:4].upper()
            if verb == b"DATA":
                self._answer(354, "go on")
                self.server.mails.append(self._attachments())
                self._answer(250, "taken")
            elif verb == b"QUIT":
                self._answer(221, "bye")
                return
            else:
                self._answer(250, HOST)

    def _attachments(self) -> int:
        """How many the mail that comes now has."""
        count = 0
        for line in self.rfile:
            if line == b".\r\n":
                return count
            count += line.lower().startswith(ATTACHMENT)
        raise ConnectionError("the mail ended too early")

    def _answer(self, code: int, text: str) -> None:
        self.wfile.write(f"{code} {text}\r\n".encode("ascii"))


class MailSink(socketserver.ThreadingTCPServer):
    allow_reuse_address = True
    daemon_threads = True

    def __init__(self):
        super().__init__((HOST, free_port()), _Session)
        self.port: int = self.server_address[1]
        self.mails: list[int] = []  # how many attachments each mail had, in the order of arrival


@contextmanager
def mail_sink() -> Iterator[MailSink]:
    with MailSink() as sink:
        thread = threading.Thread(target=sink.serve_forever)
        thread.start()
        try:
            yield sink
        finally:
            sink.shutdown()
            thread.join()
