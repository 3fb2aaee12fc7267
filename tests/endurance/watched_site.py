"""The real service in an installation with demonstration data, and what it holds of its machine."""
import os
import re
import signal
from dataclasses import dataclass
from pathlib import Path

from client import Client
from figures import Figure
from installation import Installation
from own_site import free_port
from waiting import eventually

GROWTH_LIMIT = 1024  # KB of private memory behind the warm-up


class Unsound(AssertionError):
    """The service did something that it must not do, whatever its figures."""


@dataclass
class State:
    private: int  # KB
    descriptors: int


def growth(part, before, after, is_judged):
    """What a part left behind. The sanitizers keep freed memory for a while, so with them only the
    leaks at the end count, and the descriptors."""
    return [Figure(f"{part}_memory_before", before.private, "KB"),
            Figure(f"{part}_memory_growth", after.private - before.private, "KB",
                   most=GROWTH_LIMIT if is_judged else None),
            Figure(f"{part}_descriptors_growth", after.descriptors - before.descriptors,
                   least=0, most=0)]


class WatchedSite:
    def __init__(self, template, path):
        self.site = Installation(path, free_port())
        template.copy_to(self.site)
        self.site.listen_on("127.0.0.1")

    def start(self):
        self.site.process.start()
        self.site.wait_until_listening()
        eventually(self.site.has_started, "the service has told of its start")
        self.site.note_listening()

    @property
    def port(self):
        return self.site.port

    @property
    def cache(self):
        return self.site.path / "WebReports/Cache"

    def connect(self, receive_buffer=None) -> Client:
        return self.site.connect(receive_buffer)

    def get(self, url):
        return self.site.get(url).body

    def wait_until_alone(self):
        """Until it has let go of all clients: the next ones are not too many."""
        self.site.wait_until_alone()

    def open_sockets(self):
        return self.site.process.open_sockets()

    def state(self):
        """When nobody is there any more."""
        self.wait_until_alone()
        process = Path(f"/proc/{self.site.process.id}")
        # What it wrote itself, in memory or swapped out. Pages of files are nothing of its own:
        # they come and go by what else runs on the machine.
        text = (process / "smaps_rollup").read_text()
        sizes = re.findall(r"^(?:Anonymous|Swap):\s+(\d+) kB$", text, re.MULTILINE)
        anonymous, swapped = map(int, sizes)
        return State(anonymous + swapped, len(os.listdir(process / "fd")))

    def stop(self):
        """It has to end by itself, and neither leaks nor faults may have been found in it."""
        self.site.process.send_signal(signal.SIGTERM)
        status = self.site.process.wait_until_over()
        said = self.site.process.said()
        if status != 0 or said:
            raise Unsound(f"the service ends with status {status}: {said}")

    def kill(self):
        self.site.process.kill()
