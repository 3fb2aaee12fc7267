"""Requests to the real service beside another program that has a database for itself. As long as
the lock lasts, pages that are not stored are asked for one after the other, and a stored page by
another client beside them."""

import re
import sys
import threading
import time
from collections import Counter
from contextlib import contextmanager
from pathlib import Path

from demo_night import DATABASES
from exclusive_lock import WAITED_FOR, locked
from series_table import counted, line
from verdict import Broken

sys.path.append(str(Path(__file__).resolve().parents[1] / "system"))

from background import Background
from installation import Installation
from own_site import free_port
from template import Template
from waiting import eventually

_LIST = "switch-access-port-top10-inerrors.htm"
_SUMMARY = "hist45d-switch-access-port-summary.htm"
_STORED = "switch-trunk-port-top10-inerrors.htm"
_LINK_TO_CHARTS = re.compile(rb"<a href=(hist45-[^ >]+)")
_END = b"</html>"
_NOT_READ = "Quillon.mdb"  # by a request
_LOOK_PAUSE = 0.05  # seconds
_WAITS_OF_A_PAGE = 5 * 5  # seconds: it opens databases up to five times
_SLACK = 30  # seconds, since the machine may be busy
AS_EVER, OTHERS = "as ever", "without what is locked"


class LockedSite:
    """The service, and what it answers when nothing is locked."""

    def __init__(self, scratch: Path):
        self.site = Installation(scratch / "site", free_port())
        Template(scratch / "template").copy_to(self.site)

    def __enter__(self) -> "LockedSite":
        try:
            self._begin()
        except BaseException:  # nobody calls __exit__ then
            self.site.process.kill()
            raise
        return self

    def __exit__(self, *_) -> None:
        self.site.process.kill()

    def _begin(self) -> None:
        self.site.process.start()
        eventually(self.site.has_started, "the service has told of its start")
        eventually(self._shows_the_period, "the first hourly pass")
        link = _LINK_TO_CHARTS.search(self.site.get(_LIST).body)[1].decode()
        self.pages = {url: self.ask_anew(url)[0] for url in (_LIST, _SUMMARY, link)}
        self.stored = self.ask(_STORED)[0]

    def ask(self, url: str) -> tuple[bytes, float]:
        """An answer, and the seconds that it took."""
        began = time.perf_counter()
        return self.site.get(url).body, time.perf_counter() - began

    def ask_anew(self, url: str) -> tuple[bytes, float]:
        """Of the stored pages only that one stays which is asked for as such."""
        for name in self.site.names("WebReports/Cache"):
            if name != _STORED:
                self.site.remove(f"WebReports/Cache/{name}")
        return self.ask(url)

    def _shows_the_period(self) -> bool:
        """The texts of the band are read with the first pass."""
        ((text,),) = self.site.sql("History.mdb", "SELECT ReportStart FROM General_Info")
        return text.encode() in self.ask_anew(_LIST)[0]


class StoredPage(Background):
    """Asks for it again and again, until it is told that this is over."""

    def __init__(self, site: LockedSite):
        super().__init__()
        self._site = site
        self.is_over = threading.Event()
        self.answers = 0
        self.others = 0
        self.longest = 0.0  # seconds that an answer took

    def work(self) -> None:
        while not self.is_over.wait(_LOOK_PAUSE):
            page, seconds = self._site.ask(_STORED)
            self.answers += 1
            self.others += page != self._site.stored
            self.longest = max(self.longest, seconds)

    def findings(self) -> list[str]:
        return ([] if self.failure is None else [f"the stored page: {self.failure!r}"]) + (
            [f"{self.others} stored pages are others"] if self.others else []) + (
            [] if self.answers else ["the stored page was not answered"])


class LockedRequests:
    def __init__(self, site: LockedSite, seconds: int):
        self._site = site
        self._seconds = seconds
        self._locks = 0
        self.counts: Counter = Counter()  # of the answers
        self._longest = 0.0         # seconds that one of them took
        self._longest_stored = 0.0  # the same of the stored page

    def run(self) -> None:
        """Raises Broken where something does not hold."""
        for database in DATABASES:
            self._lock(database)

    def __str__(self) -> str:
        return line(f"requests, each database locked {self._seconds} s", self._locks,
                    f"pages {counted(self.counts, (AS_EVER, OTHERS))}; the longest took "
                    f"{self._longest:.1f} s, a stored one beside them {self._longest_stored:.1f} s")

    def _lock(self, database: str) -> None:
        events_before = len(self._site.site.events())
        end = time.monotonic() + self._seconds
        answers: Counter = Counter()
        self._locks += 1
        with (locked(self._site.site.path / database, self._seconds),
              self._stored_page_is_asked() as stored):
            while time.monotonic() < end:
                for url in self._site.pages:
                    answers[self._answer(url)] += 1
        self.counts += answers
        findings = self._findings(database, answers, self._site.site.events()[events_before:])
        findings += stored.findings() + self._too_long()
        findings += [f"{url} is not what it was" for url, page in self._site.pages.items()
                     if self._site.ask_anew(url)[0] != page]
        if findings:
            raise Broken("\n  ".join([f"{database} locked for {self._seconds} s, requests:",
                                      *findings, f"the installation: {self._site.site.path}"]))

    def _answer(self, url: str) -> str:
        page, seconds = self._site.ask_anew(url)
        self._longest = max(self._longest, seconds)
        if not page.endswith(_END):
            raise Broken(f"{url} is half: {len(page)} bytes")
        return AS_EVER if page == self._site.pages[url] else OTHERS

    def _too_long(self) -> list[str]:
        """A stored page waits at most for one that is not stored."""
        most = min(self._seconds, _WAITS_OF_A_PAGE) + _SLACK
        longest = max(self._longest, self._longest_stored)
        return [f"an answer took {longest:.1f} s"] if longest > most else []

    def _findings(self, database: str, answers: Counter, events: list) -> list[str]:
        """All pages are as ever where the lock is short, and where a request does not need the
        database. Else it is told of. The pages may look as ever then too: where nothing can be
        read, the figures of the connection's last report stay."""
        found = [f"an event: {event}" for event in events if database not in event.text
                 or self._seconds == WAITED_FOR]
        if self._seconds == WAITED_FOR or database == _NOT_READ:
            return found + ([f"{answers[OTHERS]} pages are others"] if answers[OTHERS] else [])
        return found + ([] if events else ["the lock was not met"])

    @contextmanager
    def _stored_page_is_asked(self):
        stored = StoredPage(self._site)
        stored.start()
        try:
            yield stored
        finally:
            stored.is_over.set()
            stored.join()
            self._longest_stored = max(self._longest_stored, stored.longest)
