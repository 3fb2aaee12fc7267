"""Memory and processor time of the idle service, and its start to listening less the wait that it
has to keep.

Memory is that of one process alone on the machine: a second one would share the pages of the
program's libraries, and they would no longer count as private.
"""

import re
import statistics
import time
from pathlib import Path

from figures import Line, MeasureError, Options
from installation import START_WAIT, Service, make_installation

START_STAGGER = 1.5  # seconds between two starts, so that none disturbs another
START_TICK = 3.0     # seconds that the start tick takes after it opened the listener
IDLE_SECONDS = 90    # three ticks of the timer

METRICS = ("involume", "outvolume", "inbroadcast", "inmulticast", "inerrors", "outerrors")


def memory_of(service: Service) -> dict[str, float]:
    """Megabytes by the fields of smaps_rollup."""
    text = Path(f"/proc/{service.process.pid}/smaps_rollup").read_text(encoding="ascii")
    return {name: int(kilobytes) / 1024
            for name, kilobytes in re.findall(r"^(\w+):\s+(\d+) kB$", text, re.MULTILINE)}


def memory_lines(when: str, memory: dict[str, float], **limits: float) -> list[Line]:
    private = memory["Private_Clean"] + memory["Private_Dirty"]
    return [Line(f"private_{when}", private, "MB", **limits),
            Line(f"private_{when}_written", memory["Anonymous"], "MB"),
            Line(f"resident_{when}", memory["Rss"], "MB")]


def processor_seconds(service: Service) -> float:
    """What the one thread has used so far, to the nanosecond."""
    text = Path(f"/proc/{service.process.pid}/schedstat").read_text(encoding="ascii")
    return int(text.split()[0]) / 1e9


def idle_percent(service: Service) -> float:
    before = processor_seconds(service)
    time.sleep(IDLE_SECONDS)
    return (processor_seconds(service) - before) / IDLE_SECONDS * 100


def pages_of(service: Service) -> list[str]:
    """The fixed matter, what the selector offers, all lists of ports and one port's charts."""
    front = service.get("")
    if front is None:
        raise MeasureError("quillonweb does not answer its front page")
    pages = ["", "qws.css", "favicon.ico"]
    pages += re.findall(r"<option[^>]* value='?([^'> ]+)", front.decode("latin-1"))
    pages += [f"switch-{kind}-port-top10-{metric}.htm" for kind in ("access", "trunk")
              for metric in METRICS]
    first_list = (service.get(pages[-1]) or b"").decode("latin-1")
    pages += re.findall(r"href='?(hist45-[^'> ]+)", first_list)[:1]
    return list(dict.fromkeys(pages))


def measure(options: Options) -> list[Line]:
    directories = [make_installation(f"idle-{number}") for number in range(options.rounds)]
    services = []
    try:
        for directory in directories:
            services.append(Service(directory))
            time.sleep(START_STAGGER)
        starts = [service.wait_for_listener() for service in services]
        time.sleep(START_TICK)
        for service in services[1:]:
            service.ask_to_stop()
        for service in services[1:]:
            service.wait_for_end()
        alone = services[0]
        fresh = memory_of(alone)
        percent = idle_percent(alone)
        pages = pages_of(alone)
        answered = [page for page in pages if alone.get(page)]
        used = memory_of(alone)
    finally:
        for service in services:
            service.ask_to_stop()
        for service in services:
            service.wait_for_end()
    start_ms = (statistics.median(starts) - START_WAIT) * 1000
    return [
        *memory_lines("idle", fresh, goal=4, wanted=3),
        *memory_lines("after_pages", used),
        Line("processor_idle", percent, "%", goal=0.1, wanted=0.02),
        Line("pages_answered", len(answered), f"of {len(pages)}"),
        Line("start_less_wait", start_ms, "ms", goal=100),
    ]
