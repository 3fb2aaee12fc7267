"""Damaged Jet files: what `quillondb` may say to them, and what it has to leave alone."""
import random
import re
from typing import NamedTuple

from jet_installation import rows_of
from jet_writer import PAGE
from own_site import REPORT_TABLES
from quillondb import DONE, FAILED, db, is_plain

_TAKEN_OVER = re.compile(r"^(\d+) rows were taken over$", re.MULTILINE)
_HEAD_OF_PAGE = 64  # bytes: in a definition or a page of rows, what tells where the rest lies


class Outcome(NamedTuple):
    """How a reading ended. `fault` is empty where that was well."""
    was_read: bool
    fault: str


def judge_refusal(result, path):
    """The fault in how a file was refused."""
    if result.status != FAILED:
        return f"the exit status is {result.status}: {result.errors}"
    if not result.errors.startswith(f"quillondb: {path}"):
        return f"the file is not named: {result.errors}"
    if not is_plain(result.errors):
        return f"there are control bytes in {result.errors!r}"
    return ""


class DamagedReports:
    """One file of statistics with one damage after the other, each taken over by `sync-jet` into
    the same installation. `pages` are those to be damaged."""

    def __init__(self, whole, pages, path, installation, seed):
        self._whole = whole
        self._pages = list(pages)
        self._path = path
        self._installation = installation
        self._random = random.Random(seed)
        self._contents = self._read_contents()

    def run(self, count):
        """So many damages: how often the file was read for all that, and the faults."""
        outcomes = [self.take(self._damage()) for _ in range(count)]
        return (sum(outcome.was_read for outcome in outcomes),
                [outcome.fault for outcome in outcomes if outcome.fault])

    def take(self, data):
        self._path.write_bytes(data)
        result = db("sync-jet", "--reports", self._path, self._installation)
        before, self._contents = self._contents, self._read_contents()
        if result.status == DONE:
            return Outcome(True, self._fault_of_success(result))
        fault = judge_refusal(result, self._path)
        if not fault and self._contents != before:
            fault = f"something was written: {result.errors}"
        return Outcome(False, fault)

    def _read_contents(self):
        """The tables to which it may write."""
        tables = {table: rows_of(self._installation / "Reports.mdb", table)
                  for table in REPORT_TABLES}
        marks = rows_of(self._installation / "History.mdb", "General_Info")
        return {**tables, "General_Info": marks}

    def _fault_of_success(self, result):
        """What stands in fields may be anything; what was counted has to be there."""
        rows = sum(len(self._contents[table]) for table in REPORT_TABLES)
        told = _TAKEN_OVER.search(result.out)
        if told is None or int(told[1]) != rows:
            return f"{rows} rows are there: {result.out}"
        if not is_plain(result.out):
            return f"there are control bytes in {result.out!r}"
        return result.errors

    def _damage(self):
        data = bytearray(self._whole)
        kind = self._random.choice((self._hit_head, self._hit_anything, self._empty_page,
                                    self._swap_pages))
        kind(data)
        return data

    def _hit_head(self, data):
        """A few bytes where pages begin."""
        for _ in range(self._random.randint(1, 4)):
            data[self._place_of_page() + self._random.randrange(_HEAD_OF_PAGE)] = self._byte()

    def _hit_anything(self, data):
        for _ in range(self._random.choice((1, 10, 1000))):
            data[self._place_of_page() + self._random.randrange(PAGE)] = self._byte()

    def _empty_page(self, data):
        place = self._place_of_page()
        data[place:place + PAGE] = bytes([self._byte()]) * PAGE

    def _swap_pages(self, data):
        """One in the place of another, as a program leaves them that was stopped."""
        place, other = self._place_of_page(), self._place_of_page()
        data[place:place + PAGE] = self._whole[other:other + PAGE]

    def _place_of_page(self):
        return self._random.choice(self._pages) * PAGE

    def _byte(self):
        return self._random.choice((0, 1, 0x7f, 0x80, 0xff, self._random.randrange(256)))
