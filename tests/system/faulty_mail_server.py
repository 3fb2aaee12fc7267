"""A mail server that misbehaves by a plan: each connection that it gets, in their order, has a
fault of its own or none."""
import atexit
import socket
import threading
import time
from dataclasses import dataclass, field
from pathlib import Path

# Where a fault sets in: instead of the answer to that command. TEXT is in the middle of the mail's
# text, END is instead of the answer to the whole text.
GREETING, EHLO, MAIL, RCPT, DATA, TEXT, END, QUIT = (
    "greeting", "EHLO", "MAIL", "RCPT", "DATA", "text", "end", "QUIT")

_ANSWERS = {GREETING: b"220 mail.test\r\n", EHLO: b"250-mail.test\r\n250 SIZE 33554432\r\n",
            MAIL: b"250 OK\r\n", RCPT: b"250 OK\r\n", DATA: b"354 Go on\r\n",
            END: b"250 OK\r\n", QUIT: b"221 Bye\r\n"}
_OTHER_NAMES = {"HELO": EHLO}
_UNKNOWN = b"500 What?\r\n"
_TEXT_END = b"\r\n.\r\n"
_TEXT_BEGIN = 100        # bytes of a text, of which so many are read before its fault
_SMALL_BUFFER = 4096     # of what is received: the other side has to wait for its reader
_DRIP_PAUSE = 0.2        # seconds between two bytes
_FLOOD, _FLOOD_PAUSE = 65536 * b"x", 0.05
_LOOK_PAUSE = 0.1
_ESTABLISHED = "01"


@dataclass
class Visit:
    """One connection."""
    fault: object
    recipient: str = ""
    text: bytes = b""         # of the mail, where it has come whole
    is_taken: bool = False    # the mail was answered for
    is_in_fault: bool = False
    began: float = field(default_factory=time.monotonic)
    ended: float = None

    @property
    def is_over(self):
        return self.ended is not None

    @property
    def seconds(self):
        return self.ended - self.began


class Fault:
    """`commit` does it on the connection, which ends behind it unless it gives True."""

    def __init__(self, stage):
        self.stage = stage

    def __repr__(self):
        return f"{type(self).__name__} at {self.stage}"

    def commit(self, connection):
        raise NotImplementedError


class Hang(Fault):
    """Says nothing more, and reads nothing more where that is of the text."""

    def commit(self, connection):
        if self.stage == TEXT:
            _wait_until_left(connection)
        else:
            while connection.recv(65536):
                pass


class Drip(Fault):
    """An answer that goes on and on, a byte at a time, and so is never there."""

    def commit(self, connection):
        connection.settimeout(_DRIP_PAUSE)
        for byte in b"250-" + 100_000 * b"x":
            connection.sendall(bytes([byte]))
            try:
                if not connection.recv(65536):
                    return
            except TimeoutError:
                pass


class Flood(Fault):
    """The same, as much as the other side takes."""

    def commit(self, connection):
        while True:
            connection.sendall(_FLOOD)
            time.sleep(_FLOOD_PAUSE)


class Close(Fault):
    def commit(self, connection):
        pass


class Say(Fault):
    """An answer in the place of the usual one; the dialogue goes on."""
    goes_on = True

    def __init__(self, stage, answer):
        super().__init__(stage)
        self._answer = answer

    def __repr__(self):
        return f"{self._answer} at {self.stage}"

    def commit(self, connection):
        connection.sendall(self._answer)
        return self.goes_on


class SayAndClose(Say):
    goes_on = False


class _Dialogue:
    """Answers one connection."""

    def __init__(self, connection, visit):
        self._connection = connection
        self._visit = visit
        self._received = b""

    def run(self):
        is_open = self._answer(GREETING)
        while is_open:
            line = self._line()
            if line is None:
                return
            word = line[:4].upper().decode("latin-1")
            if word == RCPT:
                self._visit.recipient = line[line.find(b"<") + 1:line.find(b">")].decode()
            is_open = self._answer(_OTHER_NAMES.get(word, word)) and word != QUIT
            if is_open and word == DATA and self._was_told_to_go_on:
                is_open = self._take_text()

    def _answer(self, stage):
        """False where the connection ends with it."""
        fault = self._visit.fault
        self._was_told_to_go_on = fault is None or fault.stage != DATA
        if fault is not None and fault.stage == stage:
            self._visit.is_in_fault = True
            return bool(fault.commit(self._connection))
        if stage == END:
            self._visit.is_taken = True
        self._connection.sendall(_ANSWERS.get(stage, _UNKNOWN))
        return True

    def _take_text(self):
        if self._visit.fault is not None and self._visit.fault.stage == TEXT:
            while len(self._received) < _TEXT_BEGIN:
                if not self._receive():
                    return False
            return self._answer(TEXT)
        while _TEXT_END not in self._received:
            if not self._receive():
                return False
        text, _, self._received = self._received.partition(_TEXT_END)
        self._visit.text = text + b"\r\n"
        return self._answer(END)

    def _line(self):
        while b"\n" not in self._received:
            if not self._receive():
                return None
        line, _, self._received = self._received.partition(b"\n")
        return line

    def _receive(self):
        data = self._connection.recv(4096)
        self._received += data
        return bool(data)


class FaultyMailServer:
    """Behind the end of its plan it behaves."""

    def __init__(self, plan):
        self._plan = list(plan)
        self._socket = None
        self.visits = []
        self.port = None

    def open(self, *_):
        """A preparation of the installation that sends to it."""
        self._socket = socket.socket()
        self._socket.setsockopt(socket.SOL_SOCKET, socket.SO_RCVBUF, _SMALL_BUFFER)
        self._socket.bind(("127.0.0.1", 0))
        self._socket.listen()
        self.port = self._socket.getsockname()[1]
        atexit.register(self._socket.close)
        threading.Thread(target=self._accept, daemon=True).start()

    def taken(self):
        """The receivers of the mails that it has taken, in their order."""
        return [visit.recipient for visit in list(self.visits) if visit.is_taken]

    def has_served(self, count):
        """Whether so many connections have come and gone."""
        return len(self.visits) >= count and all(visit.is_over for visit in self.visits)

    def _accept(self):
        while True:
            try:
                connection, _ = self._socket.accept()
            except OSError:
                return
            number = len(self.visits)
            visit = Visit(self._plan[number] if number < len(self._plan) else None)
            self.visits.append(visit)
            threading.Thread(target=_serve, args=(connection, visit), daemon=True).start()


def _serve(connection, visit):
    with connection:
        try:
            _Dialogue(connection, visit).run()
        except OSError:
            pass  # the other side has gone
    visit.ended = time.monotonic()


def _wait_until_left(connection):
    """Until the other side has gone, without reading what it sent: its farewell is behind that."""
    ends = [f":{end[1]:04X}" for end in (connection.getpeername(), connection.getsockname())]
    while _is_connected(*ends):
        time.sleep(_LOOK_PAUSE)


def _is_connected(*ends):
    """By the system's table, in which each end of a connection has its row and its state."""
    rows = [line.split() for line in Path("/proc/net/tcp").read_text().splitlines()[1:]]
    return any(row[1].endswith(ends[0]) and row[2].endswith(ends[1]) and row[3] == _ESTABLISHED
               for row in rows)
