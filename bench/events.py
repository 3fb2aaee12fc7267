"""What an event costs beyond the half second that it has to wait, and a stop beyond its waits.

Both on the real service, with an agent whose traps go nowhere. An event is measured from the
outside, as the time of a request that fails once: the stylesheet, where a folder stands in the
place of its file. It needs neither a database nor the cache, so nothing else is in that time.
"""

import json
import os
import random
import socket
import statistics
import subprocess
import sys
import threading
import time
from pathlib import Path

from figures import Line, MeasureError, Options
from installation import HOST, Service, events_of, make_installation

EVENT_WAIT = 0.5   # seconds that an event has to wait
STOP_WAIT = 3.5    # and a stop
START_TICK = 3.0   # seconds that the start tick takes after it opened the listener
FAILURES_A_ROUND = 3
MILLI = 1000

OWN_ADDRESS = "10.99.0.1"  # of the network namespace, where it can be taken away
REFUSED, WITHOUT_ADDRESS = "refused", "without_address"

SERVICES = 50
STOP_SECONDS = 10  # in which all of them are stopped
STOP_SEED = 905
LISTS = [f"switch-{kind}-port-top10-{metric}.htm" for kind in ("access", "trunk")
         for metric in ("involume", "inerrors")]
FAILURE = b"GET /qws.css HTTP/1.1\r\n\r\n"


def closed_port() -> int:
    """A UDP port that nobody has, of those that the management product's file can name."""
    while True:
        with socket.socket(type=socket.SOCK_DGRAM) as probe:
            port = random.randrange(10_000, 32_000)
            try:
                probe.bind((HOST, port))
                return port
            except OSError:
                continue


def make_failing(name: str, server: str = HOST) -> Path:
    """An installation whose stylesheet fails, and whose traps go to that address."""
    directory = make_installation(name)
    (directory / "WebReports/qws.css").unlink()
    (directory / "WebReports/qws.css").mkdir()
    (directory / "Morvane.ini").write_text(
        f"ServerIpAddr={server}\r\nServerTrapPort={closed_port()}\r\n", encoding="ascii")
    return directory


# --- events -----------------------------------------------------------------------------


def failure_cost(service: Service, directory: Path) -> float:
    """Milliseconds of one request beyond the waits of its events."""
    before = events_of(directory)
    start = time.perf_counter()
    answer = service.get("qws.css")
    seconds = time.perf_counter() - start
    events = events_of(directory) - before
    if answer is None or events < 1:
        raise MeasureError("the stylesheet was to fail and to be answered")
    return (seconds - events * EVENT_WAIT) * MILLI


def failure_costs(directory: Path, count: int, take_address: bool) -> list[float]:
    with Service(directory, with_agent=True) as service:
        service.wait_for_listener()
        time.sleep(START_TICK)
        if events_of(directory) != 1:
            raise MeasureError("the start did not go as it should, so the agent may be closed")
        if take_address:
            subprocess.run(["ip", "addr", "del", f"{OWN_ADDRESS}/32", "dev", "lo"], check=True)
        return [failure_cost(service, directory) for _ in range(count)]


def start_without_address(count: int) -> subprocess.Popen:
    """Measures in a network namespace, by this file as a program."""
    directory = make_failing("event_without_address", OWN_ADDRESS)
    command = ["unshare", "-n", sys.executable, "-B", __file__, directory, count]
    return subprocess.Popen(list(map(str, command)), stdout=subprocess.PIPE, text=True)


def measure_in_namespace(directory: str, count: str) -> int:
    for command in ("link set lo up", f"addr add {OWN_ADDRESS}/32 dev lo"):
        subprocess.run(["ip", *command.split()], check=True)
    print(json.dumps(failure_costs(Path(directory), int(count), take_address=True)))
    return 0


def event_lines(name: str, costs: list[float]) -> list[Line]:
    return [Line(f"event_{name}", statistics.median(costs), "ms", goal=10),
            Line(f"event_{name}_worst", max(costs), "ms")]


def measure_events(count: int) -> list[Line]:
    """Both kinds beside each other: they sleep nearly all of the time."""
    beside = start_without_address(count) if os.geteuid() == 0 else None
    lines = event_lines(REFUSED, failure_costs(make_failing("event_refused"), count,
                                               take_address=False))
    if beside is None:
        print("bench/run: only root can take an address away; that event is left out",
              file=sys.stderr)
        return lines
    output, _ = beside.communicate()
    if beside.returncode != 0:
        raise MeasureError("the event without an address could not be measured")
    return lines + event_lines(WITHOUT_ADDRESS, json.loads(output))


# --- stops ------------------------------------------------------------------------------


def stay_idle(_service: Service) -> None:
    pass


def ask_for_lists(service: Service) -> None:
    for _ in range(3):
        for name in LISTS:
            service.get(name)


def cause_failure(service: Service) -> None:
    """The stop comes somewhere in the wait of the failure, which nobody waits for."""
    with socket.create_connection((HOST, service.port)) as client:
        client.sendall(FAILURE)
        time.sleep(random.uniform(0.05, 0.4))


MANNERS = (stay_idle, ask_for_lists, cause_failure)


class Stop(threading.Thread):
    """One service is stopped at its moment; then `cost` has the seconds beyond the waits."""

    def __init__(self, service: Service, manner, moment: float):
        super().__init__()
        self.service, self.manner, self.moment = service, manner, moment
        self.cost = None

    def run(self) -> None:
        time.sleep(self.moment)
        self.manner(self.service)
        begin = time.perf_counter()
        self.service.ask_to_stop()
        # A wait with a limit looks for the end now and then only. Where it never comes, the
        # service is killed after the others have ended.
        self.service.process.wait()
        self.cost = time.perf_counter() - begin - STOP_WAIT


def stop_all(services: list[Service]) -> list[float]:
    random.seed(STOP_SEED)
    stops = [Stop(service, MANNERS[number % len(MANNERS)], random.uniform(0, STOP_SECONDS))
             for number, service in enumerate(services)]
    for stop in stops:
        stop.start()
    end = time.monotonic() + 3 * STOP_SECONDS
    for stop in stops:
        stop.join(max(0.0, end - time.monotonic()))
    if any(stop.cost is None or stop.service.process.returncode != 0 for stop in stops):
        raise MeasureError("a service did not stop as it should")
    return [stop.cost * MILLI for stop in stops]


def measure_stops() -> list[Line]:
    services = []
    try:
        for number in range(SERVICES):
            services.append(Service(make_failing(f"stop-{number}"), with_agent=True))
        for service in services[-1:]:
            service.wait_for_listener()
        time.sleep(START_TICK)
        costs = stop_all(services)
    finally:
        for service in services:
            service.process.kill()
            service.process.wait()
    return [Line("stop_worst", max(costs), "ms", goal=1000),
            Line("stop_median", statistics.median(costs), "ms")]


def measure(options: Options) -> list[Line]:
    return measure_events(options.rounds * FAILURES_A_ROUND) + measure_stops()


if __name__ == "__main__":
    sys.exit(measure_in_namespace(*sys.argv[1:]))
