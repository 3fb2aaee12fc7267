"""A cached top-10 page against nginx with the same bytes in a file: requests per second on
connections that stay and on one for each request, and the time that 99 of 100 answers keep.

The client, on one core, is load_client.cpp, which leaves the server, on the other, to be the limit;
wrk, which reads all bytes, is about as slow as both servers. The page that quillonweb sends is
the cache file and a footer; nginx has all of it in its file.
"""

import getpass
import re
import shutil
import subprocess
import time
from pathlib import Path
from tempfile import TemporaryDirectory
from typing import Callable

from figures import Line, MeasureError, Options, compare, rounds
from installation import (CLIENT_CORE, HOST, PROGRAMS, SCRATCH, SERVER_CORE, Service, accepts,
                          free_port, make_installation, pinned)

PAGE = "switch-access-port-top10-inerrors.htm"
KEPT = 16    # connections that stay
SINGLE = 9   # at once, where each request has its own
MOST = 19    # one more, and the service drops everybody

# The service looks at the page's file with each request, and pays for each folder above it.
AS_DEEP_AS_INSTALLED = "/var/tmp"

SETTLE_SECONDS = 3  # behind which a page that was just written is remembered


class Nginx:
    """nginx with one page, pinned to the server's core."""

    def __init__(self, page: bytes):
        home = (SCRATCH / "nginx").resolve()
        shutil.rmtree(home, ignore_errors=True)
        (home / "pages").mkdir(parents=True)
        (home / "pages" / PAGE).write_bytes(page)
        self.port = free_port()
        configuration = (Path(__file__).parent / "nginx.conf").read_text(encoding="utf-8")
        (home / "nginx.conf").write_text(configuration.replace("@PORT@", str(self.port)),
                                         encoding="utf-8")
        # The worker keeps the user, who can read the page.
        self.process = subprocess.Popen(
            pinned(SERVER_CORE, "nginx", "-p", home, "-c", home / "nginx.conf", "-e", "error.log",
                   "-g", f"user {getpass.getuser()};"), stderr=subprocess.DEVNULL)
        self._wait()

    def _wait(self) -> None:
        for _ in range(500):
            if accepts(self.port):
                return
            time.sleep(0.01)
        self.process.terminate()
        raise MeasureError("nginx does not start")

    def __enter__(self) -> "Nginx":
        return self

    def __exit__(self, *_) -> None:
        self.process.terminate()
        self.process.wait()


class Load:
    """Asks one server for the page as fast as it answers, by the client of this folder or by wrk."""

    def __init__(self, port: int, seconds: int):
        self._port, self._seconds = port, seconds
        self.errors = 0

    def run(self, connections: int, mode: str) -> dict[str, float]:
        """What the client prints: its figures by their names."""
        report = _output(PROGRAMS / "load_client", self._port, PAGE, connections, self._seconds,
                         mode)
        figures = {name: float(value) for name, value in map(str.split, report.splitlines())}
        self.errors += int(figures["errors"])
        return figures

    def rate(self, connections: int, mode: str) -> float:
        figures = self.run(connections, mode)
        return figures["requests"] / figures["seconds"]

    def p99(self, connections: int) -> float:
        return self.run(connections, "kept")["p99"]

    def rate_by_wrk(self, connections: int) -> float:
        report = _output("wrk", "-t1", f"-c{connections}", f"-d{self._seconds}s",
                         f"http://{HOST}:{self._port}/{PAGE}")
        sockets = re.search(r"Socket errors: connect (\d+), read (\d+), write (\d+), timeout (\d+)",
                            report)
        answers = re.search(r"Non-2xx or 3xx responses: (\d+)", report)
        self.errors += sum(int(count) for found in (sockets, answers) if found
                           for count in found.groups())
        return float(re.search(r"Requests/sec:\s+([\d.]+)", report)[1])


def _output(program, *arguments) -> str:
    return subprocess.run(pinned(CLIENT_CORE, program, *arguments), check=True,
                          capture_output=True, text=True).stdout


def cached_body(service: Service) -> bytes:
    """The page as it comes out of the cache: the first request only puts it there."""
    service.get(PAGE)
    body = service.get(PAGE)
    if not body:
        raise MeasureError(f"quillonweb does not answer {PAGE}")
    return body


def compare_servers(options: Options, ours: Load, peer: Load) -> list[Line]:
    def both(run: Callable[[Load], float]):
        return rounds(options.rounds, lambda: run(ours), lambda: run(peer))

    return [
        compare("cached_page", "/s", *both(lambda load: load.rate(KEPT, "kept")),
                goal=1.0, wanted=1.2, more_is_better=True),
        compare("cached_page_by_wrk", "/s", *both(lambda load: load.rate_by_wrk(KEPT)),
                goal=1.0, wanted=1.2, more_is_better=True),
        compare("cached_page_single", "/s", *both(lambda load: load.rate(SINGLE, "single")),
                goal=0.9, wanted=1.0, more_is_better=True),
        compare("cached_page_p99", "us", *both(lambda load: load.p99(MOST)), goal=1.5, wanted=1.0),
        Line("cached_page_errors", ours.errors, "", peer=peer.errors, goal=0, wanted=0),
    ]


def measure(options: Options) -> list[Line]:
    with (TemporaryDirectory(prefix="quillon-", dir=AS_DEEP_AS_INSTALLED) as home,
          Service(make_installation("cached_page", Path(home)), SERVER_CORE) as service):
        service.wait_for_listener()
        with Nginx(cached_body(service)) as nginx:
            time.sleep(SETTLE_SECONDS)
            ours, peer = Load(service.port, options.seconds), Load(nginx.port, options.seconds)
            return compare_servers(options, ours, peer)
