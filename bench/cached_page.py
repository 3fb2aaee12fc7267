"""Requests per second of a cached top-10 page, against nginx with the same bytes in a file.

16 keep-alive connections of one wrk thread on one core, the server on the other. The page
that quillonweb sends is the cache file and a footer; nginx has all of it in its file.
"""

import getpass
import re
import shutil
import subprocess
import time
from pathlib import Path

from figures import Line, MeasureError, Options, compare, rounds
from installation import (CLIENT_CORE, HOST, SCRATCH, SERVER_CORE, Service, accepts, free_port,
                          make_installation, pinned)

PAGE = "switch-access-port-top10-inerrors.htm"
CONNECTIONS = 16
WARM_UP_SECONDS = 1


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
    """wrk on one server: requests per second, and the errors that it saw so far."""

    def __init__(self, port: int):
        self.url = f"http://{HOST}:{port}/{PAGE}"
        self.errors = 0

    def run(self, seconds: int) -> float:
        command = pinned(CLIENT_CORE, "wrk", "-t1", f"-c{CONNECTIONS}", f"-d{seconds}s", self.url)
        report = subprocess.run(command, check=True, capture_output=True, text=True).stdout
        sockets = re.search(r"Socket errors: connect (\d+), read (\d+), write (\d+), timeout (\d+)",
                            report)
        answers = re.search(r"Non-2xx or 3xx responses: (\d+)", report)
        self.errors += sum(int(count) for found in (sockets, answers) if found
                           for count in found.groups())
        return float(re.search(r"Requests/sec:\s+([\d.]+)", report)[1])


def cached_body(service: Service) -> bytes:
    """The page as it comes out of the cache: the first request only puts it there."""
    service.get(PAGE)
    body = service.get(PAGE)
    if not body:
        raise MeasureError(f"quillonweb does not answer {PAGE}")
    return body


def measure(options: Options) -> list[Line]:
    with Service(make_installation("cached_page"), SERVER_CORE) as service:
        service.wait_for_listener()
        with Nginx(cached_body(service)) as nginx:
            ours, peer = Load(service.port), Load(nginx.port)
            for load in (ours, peer):
                load.run(WARM_UP_SECONDS)
            figures = rounds(options.rounds, lambda: ours.run(options.seconds),
                             lambda: peer.run(options.seconds))
    return [
        compare("cached_page", "/s", *figures, goal=0.8, wanted=1.0, more_is_better=True),
        Line("cached_page_errors", ours.errors, "", peer=peer.errors, goal=0, wanted=0),
    ]
