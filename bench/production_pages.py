"""How long a cached page takes while the service builds its pages anew.

A program of its own, so that it can be pinned:

    production_pages.py DIRECTORY PORT PAGE LAST SECONDS

waits until the service, which is about to start, has built PAGE, and then asks for it at a steady
rate until so many seconds are over or LAST, the last page, is there. Prints the seconds of each
answer and of the whole as JSON. How answers are timed: import_pages.py.
"""

import json
import sys
import time
from pathlib import Path

from import_pages import CONNECTIONS, LOOK_PAUSE, Client, ask_steadily

DEADLINE = 300     # seconds for the first page
SHORT_PAUSE = 0.01


def wait_for(page: Path) -> None:
    give_up = time.perf_counter() + DEADLINE
    while not page.exists():
        if time.perf_counter() > give_up:
            raise TimeoutError("the service does not build its pages")
        time.sleep(SHORT_PAUSE)


class RunWatch:
    """Sees the end of the run, or of the patience with it."""

    def __init__(self, last: Path, seconds: float):
        self._last = last
        self._begin = time.perf_counter()
        self._limit = self._begin + seconds
        self._next_look = self._begin

    def is_over(self) -> bool:
        now = time.perf_counter()
        if now < self._next_look:
            return False
        self._next_look = now + LOOK_PAUSE
        return now >= self._limit or self._last.exists()

    def elapsed(self) -> float:
        return time.perf_counter() - self._begin


def main(directory: str, port: str, page: str, last: str, seconds: str) -> int:
    cache = Path(directory) / "WebReports/Cache"
    # A request before that would put the page there itself, for the run to delete it.
    wait_for(cache / page)
    clients = [Client(int(port), page) for _ in range(CONNECTIONS)]
    watch = RunWatch(cache / last, float(seconds))
    answered = ask_steadily(clients, watch.is_over)
    print(json.dumps({"answers": [answer for _, answer in answered], "run": watch.elapsed()}))
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
