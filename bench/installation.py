"""An installation with demonstration data, and the real service running in it."""

import http.client
import os
import shutil
import signal
import socket
import subprocess
import time
from contextlib import contextmanager
from datetime import datetime, timezone
from pathlib import Path
from typing import Optional

from figures import MeasureError

PROGRAMS = Path("build/bench/bin")
SCRATCH = Path("build/bench/scratch")
HOST = "127.0.0.1"
START_WAIT = 30.0  # seconds from the start state to the tick that opens the listener

SERVER_CORE = "0"
CLIENT_CORE = "1"

_handed_out: set[int] = set()  # ports that belong to a service, which may not have bound it yet


def pinned(core: str, *command) -> list[str]:
    return ["taskset", "-c", core, *map(str, command)]


@contextmanager
def about_noon():
    """All programs that start inside live in a time zone where it is about noon, so that neither
    midnight nor 23 o'clock, from which on days are counted otherwise, falls into the measuring."""
    before = os.environ.get("TZ")
    os.environ["TZ"] = f"Noon{datetime.now(timezone.utc).hour - 12:+d}"
    try:
        yield
    finally:
        if before is None:
            del os.environ["TZ"]
        else:
            os.environ["TZ"] = before


def free_port() -> int:
    while True:
        with socket.socket() as probe:
            probe.bind((HOST, 0))
            port = probe.getsockname()[1]
        if port not in _handed_out:
            _handed_out.add(port)
            return port


def accepts(port: int) -> bool:
    with socket.socket() as probe:
        return probe.connect_ex((HOST, port)) == 0


def sql(database: Path, statements: str) -> None:
    """Runs statements by the shell. This process does not load the library itself: the
    service's pages of it would count as shared."""
    subprocess.run(["sqlite3", "-bail", str(database)], input=statements, text=True, check=True,
                   stdout=subprocess.DEVNULL)


def quillondb(command: str, directory: Path) -> None:
    subprocess.run([str(PROGRAMS / "quillondb"), command, str(directory)], check=True,
                   stdout=subprocess.DEVNULL)


def new_databases(name: str, parent: Path = SCRATCH) -> Path:
    """The databases and folders of a new installation."""
    directory = parent / name
    shutil.rmtree(directory, ignore_errors=True)
    directory.parent.mkdir(parents=True, exist_ok=True)
    quillondb("create", directory)
    return directory


def add_program(directory: Path) -> None:
    for name in ("quillonweb", "quillonmail.so"):
        shutil.copy(PROGRAMS / name, directory)
    shutil.copytree("share/WebReports", directory / "WebReports", dirs_exist_ok=True)


def make_installation(name: str, parent: Path = SCRATCH) -> Path:
    """Databases with the demonstration's network, and the program's files."""
    directory = new_databases(name, parent)
    quillondb("demo", directory)
    add_program(directory)
    return directory


def events_of(directory: Path) -> int:
    """How many events were reported so far."""
    return (directory / "Debug/AppEventWeb.txt").read_bytes().count(b"\r\n")


class Service:
    """The program in an installation, from its start to its stop."""

    def __init__(self, directory: Path, core: Optional[str] = None, with_agent: bool = False,
                 import_due: bool = False):
        self.port = free_port()
        # Most go without the agent, since its opening waits a second before the listener's; and
        # for most the day's report counts as imported, else the nightly work would run beside
        # the measuring.
        mark = "LastReport" if import_due else "LastImport"
        sql(directory / "Quillon.mdb",
            f"UPDATE Settings_WebServer SET IpAddr = '{HOST}', TcpPort = {self.port};"
            f"UPDATE Settings_SnmpAgent SET Enabled = {int(with_agent)};")
        sql(directory / "History.mdb",
            f"UPDATE General_Info SET {mark} = datetime('now', 'localtime');")
        program = (directory / "quillonweb").resolve()
        command = [str(program)] if core is None else pinned(core, program)
        self.started = time.monotonic()
        self.process = subprocess.Popen(command, stdin=subprocess.DEVNULL)

    def wait_for_listener(self) -> float:
        """Seconds from the start until the socket accepted, to half a millisecond."""
        step = 0.0005
        before = self.started + START_WAIT - 1 - time.monotonic()
        time.sleep(max(0.0, before))
        if accepts(self.port):
            raise MeasureError("the listener was open before it was looked for")
        while time.monotonic() < self.started + START_WAIT + 10:
            if accepts(self.port):
                return time.monotonic() - self.started
            if self.process.poll() is not None:
                raise MeasureError(f"quillonweb ended with status {self.process.returncode}")
            time.sleep(step)
        raise MeasureError("quillonweb does not open its listener")

    def get(self, page: str) -> Optional[bytes]:
        """The body of a page; nothing where the service leaves the request unanswered."""
        connection = http.client.HTTPConnection(HOST, self.port, timeout=3)
        try:
            connection.request("GET", "/" + page)
            return connection.getresponse().read()
        except TimeoutError:
            return None
        finally:
            connection.close()

    def ask_to_stop(self) -> None:
        self.process.send_signal(signal.SIGTERM)

    def wait_for_end(self) -> None:
        try:
            self.process.wait(timeout=20)
        except subprocess.TimeoutExpired:
            self.process.kill()
            self.process.wait()

    def __enter__(self) -> "Service":
        return self

    def __exit__(self, *_) -> None:
        self.ask_to_stop()
        self.wait_for_end()
