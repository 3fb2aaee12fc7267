"""Clients that take their time, beside an honest one: they hold all connections but its own."""
import socket
import threading
import time
from contextlib import contextmanager

from client import request
from figures import Figure
from load_parts import call
from mixture import list_name
from waiting import eventually
from watched_site import Unsound, growth

CLIENTS = 18
SECONDS = 600
WARM_UP = 15  # seconds: by then all that is asked for and not read has been asked for
RATE = 100    # requests a second of the honest one
IDLE_LEAST = 20  # seconds, in which the slowest hundredth is 20 answers
P99_LIMIT = 2.0

# Each byte of a client who drips is a request that fails, and 18 of them in a second are more than
# their half seconds allow for. So they nest as deep as they may, and then go one by one, in turn:
# an honest request waits for a failure of each of the others, and for the one that runs.
_FAILURE_US = 500_000
_SPARE = 2  # a wait's 50 slices take longer where the machine has other work
DRIP_LIMIT = _SPARE * _FAILURE_US * (CLIENTS + 1)

_PAGE = list_name("access", "inerrors")
_TICK = 0.05
_SMALL_BUFFER = 4096  # so that what is not read stays with the service
_PAGE_SIZE = 35_000   # a little less than it has: so there is always something to read
_UNREAD = 200         # pages that one client asks for and leaves there
_SIPS = (10, 2048)    # bytes that a slow reader takes in a tick: 200 a second, or a page
_DRIP_TICKS = 20      # between two bytes of a request


class NeverReads:
    """Asks and asks, and leaves all of it lying."""

    def __init__(self, client_socket):
        self._socket = client_socket
        self._asked = 0

    def tick(self, _):
        if self._asked < _UNREAD:
            self._asked += 1
            self._socket.sendall(request(_PAGE))

    def is_sound(self):
        """What waits was sent."""
        return len(self._socket.recv(1, socket.MSG_PEEK)) == 1


class SipsAnswers:
    """Reads a little at a time, and asks for the next page when one has nearly come."""

    def __init__(self, client_socket, size):
        self._socket = client_socket
        self._size = size
        self._taken = 0
        self._asked = 0
        self._tries = 0
        self._successes = 0

    def tick(self, _):
        if self._taken >= self._asked * _PAGE_SIZE:
            self._asked += 1
            self._socket.sendall(request(_PAGE))
        data = take(self._socket, self._size)
        self._taken += len(data)
        self._tries += 1
        self._successes += 1 if data else 0

    def is_sound(self):
        """It seldom found nothing to read."""
        return self._successes > self._tries / 2


class DripsRequest:
    """Sends a byte a second, and takes what comes."""

    def __init__(self, client_socket):
        self._socket = client_socket
        self._text = request(_PAGE)
        self._sent = 0
        self._since = time.monotonic()

    def tick(self, number):
        take(self._socket, 1 << 16)
        if number % _DRIP_TICKS == 0:
            at = self._sent % len(self._text)
            self._socket.sendall(self._text[at:at + 1])
            self._sent += 1

    def is_sound(self):
        """It kept at least half of its pace."""
        seconds = time.monotonic() - self._since
        return self._sent * _DRIP_TICKS * _TICK >= seconds / 2


def take(client_socket, size):
    """What has come, without waiting for more."""
    try:
        data = client_socket.recv(size)
    except BlockingIOError:
        return b""
    if not data:
        raise Unsound("the service closed the connection of a slow client")
    return data


def _slow(client_socket, number):
    """A third of them never read, a third are slow, and a third very slow."""
    if number % 3 == 0:
        return NeverReads(client_socket)
    return SipsAnswers(client_socket, _SIPS[number % 3 - 1])


def _dripping(client_socket, _):
    return DripsRequest(client_socket)


class Crowd(threading.Thread):
    """All of them, each of whom has its turn in each tick."""

    def __init__(self, port, make):
        super().__init__()
        self._sockets = [self._connect(port) for _ in range(CLIENTS)]
        self._clients = [make(client, number) for number, client in enumerate(self._sockets)]
        self._end = threading.Event()
        self._failure = None

    def run(self):
        number = 0
        try:
            while not self._end.wait(_TICK):
                for client in self._clients:
                    client.tick(number)
                number += 1
        except (OSError, Unsound) as failure:
            self._failure = failure

    def leave(self):
        self._end.set()
        self.join()
        try:
            if self._failure is not None:
                raise Unsound(f"a slow client: {self._failure}")
            if not all(client.is_sound() for client in self._clients):
                raise Unsound("a slow client was not served")
        finally:
            for client in self._sockets:
                client.close()

    @staticmethod
    def _connect(port):
        client = socket.socket()
        client.setsockopt(socket.SOL_SOCKET, socket.SO_RCVBUF, _SMALL_BUFFER)
        client.connect(("127.0.0.1", port))
        client.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
        client.setblocking(False)
        return client


@contextmanager
def crowd(site, make):
    """The service has to hold all of them to the end. It is looked at itself: a client who does not
    read finds no end behind what lies there."""
    site.wait_until_alone()
    alone = site.open_sockets()
    clients = Crowd(site.port, make)
    clients.start()
    try:
        yield
        eventually(lambda: site.open_sockets() == alone + CLIENTS,
                   "the service holds the connections of all slow clients")
    finally:
        clients.leave()


def slow_readers(site, _, run):
    seconds = run.count(SECONDS)
    idle = _honest(site, max(seconds // 5, IDLE_LEAST), RATE)
    _warm_up(site, _slow)
    before = site.state()
    with crowd(site, _slow):
        beside = _honest(site, seconds, RATE)
    return [
        Figure("slow_seconds", seconds, "s"),
        *_times("slow_honest_idle", idle),
        *_times("slow_honest", beside),
        Figure("slow_honest_p99_by_idle", beside["p99"] / idle["p99"],
               most=P99_LIMIT if run.is_judged else None),
        *growth("slow", before, site.state(), run.is_judged),
    ]


def dripping_requests(site, _, run):
    """Each byte is a request that fails, so that the honest one waits; it is answered."""
    seconds = run.count(SECONDS)
    _warm_up(site, _dripping)
    before = site.state()
    with crowd(site, _dripping):
        beside = _honest(site, seconds, 0)
    return [
        Figure("drip_seconds", seconds, "s"),
        *_times("drip_honest", beside, worst=DRIP_LIMIT if run.is_judged else None),
        *growth("drip", before, site.state(), run.is_judged),
    ]


def _warm_up(site, make):
    with crowd(site, make):
        time.sleep(WARM_UP)


def _honest(site, seconds, rate):
    lines = call("honest_client", site.port, _PAGE, seconds, rate)
    return {name: int(value) for name, value in lines}


def _times(name, figures, worst=None):
    return [Figure(f"{name}_answers", figures["answers"], least=1),
            Figure(f"{name}_median", figures["median"], "us"),
            Figure(f"{name}_p99", figures["p99"], "us"),
            Figure(f"{name}_worst", figures["worst"], "us", most=worst)]
