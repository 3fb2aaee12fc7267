"""The operator's jobs by hand: what they do to the history, the cache, the mail server and the
event file, and what the console tells of them. They run while other tests have their turn."""
import re
import unittest

import fleet
import mail_box
from day_watch import LAST_PAGE, DayWatch, cached_files
from event_file import STARTED
from local_time import is_recent
from mail_box import MailBox
from night_pieces import DISK, ROTATIONS, SWITCH, History
from quillonctl import (
    DONE, FAILED, ctl, job, on_a_terminal, wait_until_idle, with_nothing_due)
from report_day import (
    PORTS, TODAY, YESTERDAY, mailing_by, small_mails, with_small_network)
from site_pages import LISTS


def with_more_disks(site):
    """Of which each list has its own order."""
    for disk, free, used in (("D:", 100, 900), ("E:", 5000, 300)):
        site.insert("Reports.mdb", "HostDiskInfo", RecNo=402, DevName="Zweiter", StorDescr=disk,
                    FreeRawM=free, UsedRawM=used, UsedProc=100 * used / (free + used),
                    UsedProc14Trend=used / 100, UsedProc30Trend=-used / 100,
                    LastUpdate=f"{TODAY} 03:00:00")


BOX = MailBox()
SITE = fleet.declare(with_small_network, with_more_disks, with_nothing_due, mailing_by(BOX),
                     small_mails("ann", "bob"))
NO_MAIL_SERVER = fleet.declare(
    with_small_network, with_nothing_due, small_mails("ann"),
    lambda site: site.set("Settings_SmtpServer", MailServer="127.0.0.1", MailPort=1, Retries=0))

COPY = "Debug/SendMailSMTP.txt"
OLD_PAGE = "old.htm"
STORAGES = 6
NOT_REPLAYED = "nothing was done: no report day is being replayed"
MAIL_FAILURE = "modMail_SendMailSMTP: Error Sending Mail"
PROGRESS = re.compile(r"\r\033\[K(\w+) (\d+) of (?:about )?(\d+)")
PROGRESS_END = "\r\033[K"
STEPS = 8
REPORT_HOUR = "&nbsp;&nbsp03:00"


class Jobs(DayWatch):
    """All of them, one behind the other."""

    def work(self):
        wait_until_idle(SITE)
        self.import_the_day()
        self.import_again()
        SITE.store_page(OLD_PAGE, b"old")
        self.building = job(SITE, "auto-create", run=on_a_terminal)
        self.cache = cached_files(SITE)
        self.mails_before = len(BOX.mails())
        self.mailing = job(SITE, "mail-create", run=on_a_terminal)
        self.status_after_mails = ctl(SITE, "status").fields()
        self.mails = BOX.mails()
        self.replaying = job(SITE, "set-rep-date", "2014-11-07")
        self.replaying_for_programs = job(SITE, "set-rep-date", "2014-11-07", "--json")
        self.status_at_last = ctl(SITE, "status").fields()

    def import_the_day(self):
        self.before = History.read(SITE.path)
        self.importing = job(SITE, "import", run=on_a_terminal)
        self.after = History.read(SITE.path)

    def import_again(self):
        """Other marks than the job's own, so that it shows which of them it sets."""
        SITE.sql("History.mdb", "UPDATE General_Info SET LastReport = ?, LastImport = ?,"
                 " ReportStart = 'start', ReportEnd = 'end'",
                 f"{TODAY} 00:00:10", f"{TODAY} 00:00:20")
        self.importing_again = job(SITE, "import", "--json")
        self.at_last = History.read(SITE.path)
        self.names_after_imports = SITE.names("WebReports/Cache")
        self.mails_after_imports = len(BOX.mails())


JOBS = Jobs()
if mail_box.is_available:
    fleet.when_up(JOBS.begin)


def setUpModule():
    if not mail_box.is_available:
        raise unittest.SkipTest(mail_box.REASON)
    fleet.start()


class JobTest(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        cls.jobs = JOBS.result()

    def assert_done(self, result, said):
        """On a terminal, where nothing but the progress was shown."""
        self.assertEqual((result.status, PROGRESS.sub("", result.errors)), (DONE, PROGRESS_END))
        self.assertRegex(result.out, said)

    def assert_progress(self, result, unit, total):
        """From the first one to the last."""
        self.assertEqual(PROGRESS.findall(result.errors),
                         [(unit, str(number), str(total)) for number in range(1, total + 1)])

    def assert_marks(self, history):
        """Those of a report that has just ended."""
        marks = history.marks
        self.assertEqual((marks["ReportStart"], marks["ReportEnd"]),
                         (YESTERDAY + REPORT_HOUR, TODAY + REPORT_HOUR))
        self.assertTrue(is_recent(marks["LastReport"]))


class Import(JobTest):
    def added(self, rotation):
        earlier = self.jobs.before.sums[rotation]
        return self.jobs.after.sums[rotation][len(earlier):]

    def test_it_tells_that_it_is_done_and_the_milliseconds(self):
        self.assert_done(self.jobs.importing, r"\Aok \d+\n\Z")

    def test_a_terminal_shows_its_steps(self):
        self.assert_progress(self.jobs.importing, "step", STEPS)

    def test_it_stands_for_the_product_that_ends_its_report(self):
        self.assert_marks(self.jobs.after)

    def test_it_marks_the_day_as_imported(self):
        self.assertTrue(is_recent(self.jobs.after.marks["LastImport"]))

    def test_the_ports_and_storages_of_today_are_the_day_before_and_no_other_day_is_changed(self):
        for rotation, rows in ((SWITCH, len(PORTS)), (DISK, STORAGES)):
            changed = [new for old, new in zip(self.jobs.before.days[rotation],
                                               self.jobs.after.days[rotation]) if new != old]
            self.assertEqual([(day.moment[:10], len(day.rows)) for day in changed],
                             [(YESTERDAY, rows)])

    def test_the_day_has_its_sums(self):
        for rotation, kinds in ((SWITCH, 2), (DISK, 1)):
            self.assertEqual([row[0][:10] for row in self.added(rotation)], [YESTERDAY] * kinds)

    def test_neither_pages_nor_mails_follow(self):
        self.assertNotIn(LAST_PAGE, self.jobs.names_after_imports)
        self.assertEqual(self.jobs.mails_after_imports, 0)

    def test_a_second_one_says_ok_and_sets_the_marks_of_the_report_alone(self):
        said = self.jobs.importing_again.json()
        self.assertRegex(said.pop("message"), r"\Aok \d+\Z")
        self.assertEqual(said, {"command": "import", "result": "done", "failures": []})
        self.assert_marks(self.jobs.at_last)
        self.assertEqual(self.jobs.at_last.marks["LastImport"], f"{TODAY} 00:00:20")
        for rotation in ROTATIONS:
            self.assertEqual(self.jobs.at_last.days[rotation], self.jobs.after.days[rotation])
            self.assertEqual(self.jobs.at_last.sums[rotation], self.jobs.after.sums[rotation])


class AutoCreate(JobTest):
    def test_it_empties_the_cache_and_fills_it(self):
        self.assertNotIn(OLD_PAGE, self.jobs.cache)
        self.assertLessEqual({*LISTS, LAST_PAGE}, set(self.jobs.cache))

    def test_its_pages_show_the_day_that_was_imported(self):
        for name in LISTS:
            for day in (YESTERDAY, TODAY):
                self.assertIn((day + REPORT_HOUR).encode(), self.jobs.cache[name])

    def test_a_terminal_shows_each_page_and_about_how_many_there_are(self):
        self.assert_done(self.jobs.building, r"\Aended\n\Z")
        units, numbers, totals = zip(*PROGRESS.findall(self.jobs.building.errors))
        self.assertEqual(set(units), {"page"})
        self.assertEqual(numbers, tuple(str(number + 1) for number in range(len(numbers))))
        self.assertGreaterEqual(len(numbers), len(self.jobs.cache))
        self.assertGreaterEqual(int(totals[-1]), len(numbers))
        self.assertIn(f"of about {totals[0]}", self.jobs.building.errors)


class MailCreate(JobTest):
    def test_it_mails_to_everybody_who_is_due(self):
        self.assert_done(self.jobs.mailing, r"\Aended\n\Z")
        self.assertEqual(self.jobs.mails_before, 0)
        self.assertEqual([mail.recipients for mail in self.jobs.mails],
                         [["ann@mail.test"], ["bob@mail.test"]])

    def test_a_terminal_shows_its_receivers(self):
        self.assert_progress(self.jobs.mailing, "receiver", len(self.jobs.mails))

    def test_it_leaves_the_mail_to_be_looked_at_and_debug_mode_on(self):
        self.assertEqual(SITE.read(COPY).rstrip(b"\r\n"), self.jobs.mails[-1].data.rstrip(b"\r\n"))
        self.assertEqual(self.jobs.status_after_mails["debug-mode"], "yes")

    def test_the_setting_of_the_debug_mode_stays(self):
        self.assertEqual(SITE.sql("Quillon.mdb", "SELECT DebugMode FROM Settings_General"), [(0,)])

    def test_what_fails_is_told_and_the_status_says_so(self):
        wait_until_idle(NO_MAIL_SERVER)
        result = job(NO_MAIL_SERVER, "mail-create")
        self.assertEqual((result.status, result.errors), (FAILED, f"quillonctl: {MAIL_FAILURE}\n"))
        result = job(NO_MAIL_SERVER, "mail-create", "--json")
        self.assertEqual((result.status, result.errors), (FAILED, ""))
        self.assertEqual(result.json(), {"command": "mail-create", "result": "done", "message": "ended",
                                         "failures": [MAIL_FAILURE]})
        events = [event.source for event in NO_MAIL_SERVER.events()[1:]]
        self.assertEqual(events, ["modMail_SendMailSMTP"] * 2)


class SetRepDate(JobTest):
    def test_it_does_nothing_where_no_day_is_replayed(self):
        self.assertEqual(self.jobs.replaying, (DONE, f"{NOT_REPLAYED}\n", ""))
        self.assertEqual(self.jobs.replaying_for_programs.json(),
                         {"command": "set-rep-date", "result": "done", "message": NOT_REPLAYED,
                          "failures": []})
        for mark in ("report-start", "report-end"):
            self.assertEqual(self.jobs.status_at_last[mark], self.jobs.status_after_mails[mark])

    def test_what_is_no_day_is_refused(self):
        for text in ("2014-11-31", "07.11.2014", "2014-11-07 12:00", "2014-1-7", "today", "", "\t"):
            result = ctl(SITE, "set-rep-date", text)
            self.assertEqual((result.status, result.out), (FAILED, ""), text)
            self.assertRegex(result.errors, r"\Aquillonctl: '.*' is no day; .*\n\Z")


class Events(JobTest):
    def test_nothing_fails(self):
        self.assertEqual(SITE.event_texts(), [STARTED])


if __name__ == "__main__":
    unittest.main()
