"""The day's import by the service: at its pass of about a minute after the start, while it goes
on answering. The import is watched while other tests run; this module has a late name, so that
it has ended when its turn comes."""
import time
import unittest
from datetime import timedelta

import fleet
from background import Background
from event_file import STARTED
from local_time import is_recent, local_now
from night_pieces import DISK, ROTATIONS, SWITCH, History, enlarge_reports
from waiting import DEADLINE

REPORT_START, REPORT_END = "2024-05-01&nbsp;&nbsp07:00", "2024-05-02&nbsp;&nbsp07:00"
PERIOD = [f"<td width='200px'>{text}</td>".encode() for text in (REPORT_START, REPORT_END)]
NO_PERIOD = b"<td width='200px'></td>"
TODAY, YESTERDAY = (f"{local_now() - timedelta(days=age):%Y-%m-%d}" for age in (0, 1))
TIMES_THE_NETWORK = 50  # 20,000 ports: the waits after each hundred of them last some seconds
WATCH_SECONDS = 30 + DEADLINE  # behind the opening of the listeners; the pass comes at 60 s
LOOK_PAUSE = 0.3


def of_a_report(last_import):
    """The management product has finished the day's report; what the service imported last."""
    def prepare(site):
        site.sql("History.mdb", "UPDATE General_Info SET LastReport = ?, LastImport = ?,"
                 " ReportStart = ?, ReportEnd = ?",
                 f"{TODAY} 03:10:00", last_import, REPORT_START, REPORT_END)
    return prepare


def of_a_large_network(site):
    enlarge_reports(site.path, TIMES_THE_NETWORK)


# The one in which nothing happens starts before the one that shows that the pass has come.
IMPORTED_ALREADY = fleet.declare(of_a_report(f"{TODAY} 04:00:20"))
WAITING = fleet.declare(of_a_report(f"{YESTERDAY} 04:00:20"), of_a_large_network)


def list_name(word):
    """A list under a name that nobody has stored."""
    return f"switch-trunk-port-top10-outvolume-{word}.htm"


def last_import(site):
    return site.sql("History.mdb", "SELECT LastImport FROM General_Info")[0][0]


class Watch(Background):
    """Asks for pages from the opening of the listener on, until the report is imported."""

    def __init__(self):
        super().__init__()
        self.pages_during_import = 0

    def begin(self):
        self.before = {site: History.read(site.path) for site in (IMPORTED_ALREADY, WAITING)}
        self.first_page = WAITING.get(list_name("early")).body
        self.start()

    def work(self):
        """The period is known as soon as the import has begun, and the mark is written last."""
        end = time.monotonic() + WATCH_SECONDS
        number = 0
        while time.monotonic() < end:
            number += 1
            page = WAITING.get(list_name(number)).body
            if last_import(WAITING).startswith(TODAY):
                return
            self.pages_during_import += PERIOD[0] in page
            time.sleep(LOOK_PAUSE)
        raise AssertionError(f"nothing was imported in {WATCH_SECONDS} s")


WATCH = Watch()
fleet.when_up(WATCH.begin)


def setUpModule():
    fleet.start()


class ServiceImport(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.watch = WATCH.result()
        cls.before = cls.watch.before[WAITING]
        cls.after = History.read(WAITING.path)

    def rows_of_yesterday(self, rotation):
        (row,) = [row for row in self.after.days[rotation] if row.moment.startswith(YESTERDAY)]
        return row.rows

    def added_sums(self, rotation):
        earlier = self.before.sums[rotation]
        self.assertEqual(self.after.sums[rotation][:len(earlier)], earlier)
        return [(row[0][:10], *row[1:]) for row in self.after.sums[rotation][len(earlier):]]

    def reports(self, select):
        return WAITING.sql("Reports.mdb", select, TODAY)

    def test_the_mark_tells_the_time_of_the_import(self):
        self.assertTrue(is_recent(self.after.marks["LastImport"]))

    def test_the_ports_of_today_are_the_day_before(self):
        ports = self.reports(
            "SELECT RecNo, IfIndex, InErrorsTot24H, OutErrorsTot24H, InBroadCastPpm24H,"
            " InMultiCastPpm24H, InHCOctetsMb24H, OutHCOctetsMb24H, IsTrunk FROM VLAN"
            " WHERE date(InOctetsDate) = ? ORDER BY rowid")
        self.assertGreater(len(ports), 15_000)
        self.assertEqual(self.rows_of_yesterday(SWITCH), ports)

    def test_the_storages_of_today_are_the_day_before(self):
        storages = self.reports(
            "SELECT RecNo, DevName, StorDescr, UsedProc FROM HostDiskInfo"
            " WHERE date(LastUpdate) = ? AND FreeRawM + UsedRawM > 0 ORDER BY rowid")
        self.assertGreater(len(storages), 2_500)
        rows = [(*row[:3], row[7]) for row in self.rows_of_yesterday(DISK)]
        self.assertEqual(rows, storages)

    def test_no_other_day_is_changed(self):
        for rotation in ROTATIONS:
            changed = [new.moment[:10] for old, new in zip(
                self.before.days[rotation], self.after.days[rotation], strict=True) if new != old]
            self.assertEqual(changed, [YESTERDAY])

    def test_the_day_has_its_sums_of_access_and_trunk_ports(self):
        sums = self.reports(
            "SELECT IsTrunk, SUM(InErrorsTot24H * IsOfToday), SUM(OutErrorsTot24H * IsOfToday),"
            " SUM(InBroadCastPpm24H * IsOfToday), SUM(InMultiCastPpm24H * IsOfToday),"
            " SUM(InHCOctetsMb24H * IsOfToday), SUM(OutHCOctetsMb24H * IsOfToday), COUNT(*),"
            " SUM(InHCOctetsMb24H > 0 AND IsOfToday)"
            " FROM (SELECT *, date(LastUpdate) = ? AS IsOfToday FROM VLAN)"
            " GROUP BY IsTrunk ORDER BY IsTrunk")
        self.assertEqual(self.added_sums(SWITCH), [(YESTERDAY, *row) for row in sums])

    def test_the_day_has_its_sums_of_storages(self):
        (row,) = self.added_sums(DISK)
        types = [storage[3] for storage in self.rows_of_yesterday(DISK)]
        self.assertEqual(row[0], YESTERDAY)
        self.assertEqual(row[-4:], tuple(types.count(number) for number in (30, 40, 10, 20)))

    def test_nothing_fails(self):
        for site in (WAITING, IMPORTED_ALREADY):
            self.assertEqual(site.event_texts(), [STARTED])

    def test_pages_have_no_period_before_the_first_pass(self):
        self.assertEqual(self.watch.first_page.count(NO_PERIOD), len(PERIOD))

    def test_pages_show_the_period_of_the_report_afterwards(self):
        for site in (WAITING, IMPORTED_ALREADY):
            page = site.get(list_name("late")).body
            for cell in PERIOD:
                self.assertEqual(page.count(cell), 1)

    def test_pages_are_answered_while_it_runs(self):
        self.assertGreater(self.watch.pages_during_import, 0)

    def test_a_report_that_is_imported_already_is_not_imported_again(self):
        self.assertEqual(History.read(IMPORTED_ALREADY.path),
                         self.watch.before[IMPORTED_ALREADY])


if __name__ == "__main__":
    unittest.main()
