"""One installation of the service in a folder of its own: what an operator does with it (set,
start, look into its files), and what a browser does (connect, get)."""
import sqlite3
import time
from contextlib import closing

import tcp_table
from client import Client
from event_file import STARTED, read_events
from service_process import ServiceProcess
from waiting import DEADLINE, eventually


class Installation:
    def __init__(self, path, port):
        self.path = path
        self.port = port
        self.address = "127.0.0.1"  # where the listener is expected
        self._listening_at = None   # when it was first seen open
        self._sockets_alone = None  # what the process holds without a client
        self.process = ServiceProcess(path / "quillonweb", path.with_suffix(".terminal"))

    # Files.

    def read(self, name):
        return (self.path / name).read_bytes()

    def write(self, name, data):
        (self.path / name).write_bytes(data)

    def remove(self, name):
        (self.path / name).unlink(missing_ok=True)

    def rename(self, name, new_name):
        (self.path / name).rename(self.path / new_name)

    def names(self, folder):
        return sorted(entry.name for entry in (self.path / folder).iterdir())

    def tree(self):
        """Every path below the installation."""
        return {str(entry.relative_to(self.path)) for entry in self.path.rglob("*")}

    def store_page(self, name, data):
        self.write(f"WebReports/Cache/{name}", data)

    def stored_page(self, name):
        return self.read(f"WebReports/Cache/{name}")

    def write_ini(self, *lines, line_end="\r\n"):
        self.write("Morvane.ini", line_end.join([*lines, ""]).encode())

    # Settings and databases.

    def open_database(self, name):
        """A handle of the test's own; the caller closes it."""
        return sqlite3.connect(self.path / name, isolation_level=None, timeout=DEADLINE)

    def sql(self, name, statement, *values):
        with closing(self.open_database(name)) as database:
            return database.execute(statement, values).fetchall()

    def insert(self, name, table, **columns):
        """Adds a row with these columns."""
        marks = ", ".join("?" for _ in columns)
        self.sql(name, f"INSERT INTO {table} ({', '.join(columns)}) VALUES ({marks})",
                 *columns.values())

    def set(self, table, **fields):
        """Sets fields of the one row of a table of settings."""
        assignments = ", ".join(f"{field} = ?" for field in fields)
        self.sql("Quillon.mdb", f"UPDATE {table} SET {assignments}", *fields.values())

    def listen_on(self, address):
        self.address = address
        self.set("Settings_WebServer", IpAddr=address)

    def agent_status(self):
        return self.sql("Quillon.mdb", "SELECT Status FROM Settings_SnmpAgent")[0][0]

    def listener_row(self):
        """IpAddr and Status, as the service left them."""
        return self.sql("Quillon.mdb", "SELECT IpAddr, Status FROM Settings_WebServer")[0]

    # Events.

    def events(self):
        return read_events(self.path / "Debug/AppEventWeb.txt")

    def event_texts(self):
        return [event.text for event in self.events()]

    def events_of(self, source):
        return [event for event in self.events() if event.source == source]

    def wait_until_words_are_read(self):
        """The last step of the start but one. Only with the debug files on."""
        copy = self.path / "Debug/HelpText.txt"
        eventually(copy.exists, "the copy of the help text")

    def has_started(self):
        return STARTED in self.event_texts()

    # Clients.

    def connect(self, receive_buffer=None):
        return Client(self.address, self.port, receive_buffer)

    def get(self, url):
        with self.connect() as client:
            return client.ask(url)

    def wait_until_listening(self):
        """For one that cannot report its start."""
        eventually(self.is_listening, "the listener is open")

    def is_listening(self):
        return self.port in tcp_table.listening_ports()

    def note_listening(self):
        """Called once, when the listener is seen open and nobody has connected yet."""
        self._listening_at = time.monotonic()
        self._sockets_alone = self.process.open_sockets()

    def seconds_until_listening(self):
        return self._listening_at - self.process.started_at

    def wait_until_alone(self):
        """Until the service has let go of every client: the next one has the number 1, unless
        an event of one that left is still running."""
        eventually(lambda: self.process.open_sockets() == self._sockets_alone, "no client left")
