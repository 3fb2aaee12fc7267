"""A client on a raw socket: what is sent, and in how many segments, is the test's matter."""
import socket
import struct
from dataclasses import dataclass

from waiting import DEADLINE


@dataclass
class Response:
    head: list  # lines without their ends
    body: bytes

    @property
    def content_type(self):
        return self.head[1].removeprefix("Content-Type: ")


def request(url, method="GET"):
    target = url if isinstance(url, bytes) else url.encode("latin-1")
    return method.encode() + b" /" + target + b" HTTP/1.1\r\nHost: quillon\r\n\r\n"


class Client:
    def __init__(self, address, port, receive_buffer=None):
        self._socket = socket.socket()
        self._socket.settimeout(DEADLINE)
        if receive_buffer:
            self._socket.setsockopt(socket.SOL_SOCKET, socket.SO_RCVBUF, receive_buffer)
        self._socket.connect((address, port))
        self._socket.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
        self._received = b""

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.leave()

    @property
    def local_port(self):
        return self._socket.getsockname()[1]

    def send(self, data):
        self._socket.sendall(data)

    def ask(self, url):
        self.send(request(url))
        return self.receive()

    def receive(self):
        """The next response, whole."""
        while b"\r\n\r\n" not in self._received:
            self._receive_more()
        head, _, rest = self._received.partition(b"\r\n\r\n")
        lines = head.decode("ascii").split("\r\n")
        length = int(lines[-1].removeprefix("Content-Length: "))
        pieces, missing = [rest], length - len(rest)
        while missing > 0:
            pieces.append(self._receive_bytes())
            missing -= len(pieces[-1])
        whole = b"".join(pieces)
        self._received = whole[length:]
        return Response(lines, whole[:length])

    def take_some(self, count):
        """The next bytes, at most so many; `receive` gives them as well."""
        self._received += self._socket.recv(count)

    def hears_nothing_for(self, seconds):
        self._socket.settimeout(seconds)
        try:
            self._received += self._socket.recv(65536)
            return False
        except TimeoutError:
            return True
        finally:
            self._socket.settimeout(DEADLINE)

    def heard(self):
        """What has come and was not taken as a response."""
        return self._received

    def is_dropped(self):
        """Waits for the end of the connection; False where bytes come instead."""
        try:
            return self._socket.recv(1) == b""
        except ConnectionResetError:
            return True

    def leave(self):
        self._socket.close()

    def break_off(self):
        """Leaves without the usual farewell: what is still under way is lost."""
        self._socket.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
        self._socket.close()

    def _receive_bytes(self):
        data = self._socket.recv(1 << 16)
        if not data:
            raise AssertionError("the service closed the connection")
        return data

    def _receive_more(self):
        self._received += self._receive_bytes()
