"""The service's event file. A line that is not of its form fails the test that reads it."""
import re
from dataclasses import dataclass

FAILURE, NOTICE = 1, 3
STARTED = "Service Started. Version: 9.05"
STOPPED = "Service Stopped"

_LINE = re.compile(r"(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d)\t(\d)\t(\w+_\w+)\t([^\r\n]*)")


@dataclass
class Event:
    time: str
    type: int
    source: str  # module and procedure
    text: str


def read_events(path):
    text = path.read_bytes().decode("latin-1") if path.exists() else ""
    return [_event(line) for line in text.split("\r\n")[:-1]]


def _event(line):
    parts = _LINE.fullmatch(line)
    if parts is None:
        raise AssertionError(f"not a line of an event: {line!r}")
    return Event(parts[1], int(parts[2]), parts[3], parts[4])
