"""The pages that the service builds once a day, behind the import: which files the cache holds
then, and what becomes of them when the process ends in the middle. The day is watched while other
tests run; this module has a late name, so that it has ended when its turn comes."""
import re
import shutil
import signal
import time
import unittest

import complete_day
import fleet
import mail_box
from chart_text import read_charts
from complete_day import BOX, LOGIN
from day_watch import LAST_PAGE, DayWatch, cached_files, has_built, is_building
from event_file import STARTED, STOPPED
from report_day import (
    LOCAL_DISK, MEMORY, PORTS, REMOTE_DISK, mailing_by, small_mails, with_small_network)
from site_pages import FOOTER, LISTS, PAGE_END, listed_ports

DAY = complete_day.SITE
CHARSET = "latin-1"
DOCTYPE = b"<!DOCTYPE HTML PUBLIC '-//W3C//DTD HTML 4.01 Strict//EN'>\r\n<html>\r\n"
WHOLE_FOOTER = FOOTER + b"""\r
  <tr>\r
    <td width='600px'>Quillon Network Reporting</td>\r
    <td width='190px' style='text-align:right'>Quillon 9.05</td>\r
  </tr>\r
</table>\r
""" + PAGE_END
PERIOD = [f"<td width='200px'>{text}</td>".encode() for text in ("start", "end")]

SUMMARIES = ["switch-access-port-summary.htm", "switch-trunk-port-summary.htm", LAST_PAGE]
DISK_LISTS = [f"disk-{kind}-top10-{column}-{order}.htm"
              for kind in ("physical", "virtual", "windows", "unix")
              for column in ("totalbytes", "freebytes", "usedbytes", "usedpercent", "trend14d",
                             "trend30d")
              for order in ("asc", "desc")]
PORT_CHARTS = {(device, port): f"hist45-{device}-{port}.htm" for device, port, _ in PORTS}
STORAGE_CHARTS = {MEMORY: "histdisk45-401-mem.htm", LOCAL_DISK: "histdisk45-401-C_.htm",
                  REMOTE_DISK: "histdisk45-401-_var_log.htm"}
PAGES = LISTS + SUMMARIES + DISK_LISTS
FILES = [*PAGES, *PORT_CHARTS.values(), *STORAGE_CHARTS.values()]

ENOUGH_FILES = 4  # for a run that is well on its way

STOPPED_SITE = fleet.declare(with_small_network, mailing_by(BOX, **LOGIN),
                             small_mails("after-the-stop"))
KILLED_SITE = fleet.declare(
    with_small_network,
    lambda site: shutil.copy(site.path / "History.mdb", site.path / "History.before"))


class StopWhileBuilding(DayWatch):
    def work(self):
        self.until(lambda: is_building(STOPPED_SITE, ENOUGH_FILES), "a run that is under way")
        begin = time.monotonic()
        STOPPED_SITE.process.send_signal(signal.SIGTERM)
        self.exit_status = STOPPED_SITE.process.wait_until_over()
        self.seconds = time.monotonic() - begin
        self.files = cached_files(STOPPED_SITE)


class KillWhileBuilding(DayWatch):
    """Kills the process, starts it again, and makes it do the same day once more."""

    def work(self):
        self.until(lambda: is_building(KILLED_SITE, ENOUGH_FILES), "a run that is under way")
        KILLED_SITE.process.kill()
        self.files = cached_files(KILLED_SITE)
        for name in ("History.mdb-wal", "History.mdb-shm"):
            KILLED_SITE.remove(name)
        KILLED_SITE.rename("History.before", "History.mdb")
        KILLED_SITE.process.start()
        self.until(KILLED_SITE.is_listening, "the listener is open again")
        left = sorted(set(LISTS) & set(self.files))[0]
        self.page_of_killed_run = (left, KILLED_SITE.get(left).body)
        self.until(lambda: has_built(KILLED_SITE), "the last page of the second run")
        self.files_at_last = cached_files(KILLED_SITE)


STOP, KILL = StopWhileBuilding(), KillWhileBuilding()
for watch in (STOP, KILL):
    fleet.when_up(watch.begin)


def setUpModule():
    if not mail_box.is_available:
        raise unittest.SkipTest(mail_box.REASON)
    fleet.start()


class DayTest(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        cls.day = complete_day.WATCH.result()
        cls.cache = cls.day.cache

    def assert_whole(self, files):
        """Every file is the one of a run that nobody disturbed."""
        for name, data in files.items():
            self.assertEqual(data, self.cache.get(name), name)


class StoredPages(DayTest):
    def test_there_is_a_file_for_every_page_and_every_chart_and_none_else(self):
        self.assertEqual(len(PAGES), 63)
        self.assertEqual(sorted(self.cache), sorted(FILES))

    def test_files_of_before_have_gone(self):
        for name in complete_day.OLD_FILES:
            self.assertIn(name, self.day.names_before)
            self.assertNotIn(name, self.cache)

    def test_every_page_begins_with_the_doctype_and_waits_for_its_end(self):
        for name in PAGES:
            self.assertTrue(self.cache[name].startswith(DOCTYPE), name)
            self.assertTrue(self.cache[name].endswith(b"</table>\r\n<br>\r\n"), name)
            self.assertNotIn(FOOTER, self.cache[name])
            self.assertNotIn(b"</body>", self.cache[name])

    def test_lists_show_the_ports_of_their_kind_and_the_period(self):
        for name in LISTS:
            ports = 2 if "access" in name else 1
            self.assertEqual(listed_ports(self.cache[name]), ports, name)
            self.assertEqual([self.cache[name].count(cell) for cell in PERIOD], [1, 1])

    def test_disk_lists_show_the_storage_of_their_kind_and_the_period(self):
        links = {"physical": b"mem", "virtual": b"mem", "windows": b"C_", "unix": b"_var_log"}
        for name in DISK_LISTS:
            link = links[name.split("-")[1]]
            found = re.findall(rb"<a href=histdisk45-401-(\w+)-", self.cache[name])
            self.assertEqual(found, [link], name)
            self.assertEqual([self.cache[name].count(cell) for cell in PERIOD], [1, 1])

    def test_summaries_have_four_charts_and_the_day_that_was_imported(self):
        for name, figures in zip(SUMMARIES, ("In Volume: 30 M", "In Volume: 70 M", "1 000 M")):
            charts = self.charts_of(name)
            self.assertEqual(len(charts), 4)
            self.assertIn(figures, charts[0].series(1)[0], name)

    def test_a_chart_file_is_charts_alone_and_has_the_day_that_was_imported(self):
        for (device, port), name in PORT_CHARTS.items():
            charts = read_charts(self.cache[name], CHARSET)
            self.assertEqual(len(charts), 3)
            self.assertEqual(charts[0].names[1::2], (f"Büro {device}", f"Gi0/{port}"))
            self.assertIn(f"In Volume: {port}0 M", charts[0].series(1)[0])
        for (_, storage), name in STORAGE_CHARTS.items():
            charts = read_charts(self.cache[name], CHARSET)
            self.assertEqual(len(charts), 2 if storage == "mem" else 1)
            self.assertNotIn("-", charts[0].series(1)[0], name)

    def charts_of(self, name):
        """Of a page."""
        _, head, charts = self.cache[name].partition(b"<table width='790px' class='repHeader'>")
        return read_charts(head + charts, CHARSET)


class ServedPages(DayTest):
    def test_every_stored_page_is_answered_with_its_end(self):
        for name in PAGES:
            self.assertEqual(DAY.get(name).body, self.cache[name] + WHOLE_FOOTER, name)

    def test_the_selection_of_a_summary_leads_to_the_stored_one(self):
        for name in SUMMARIES:
            self.assertEqual(DAY.get(f"select?report=hist45d-{name}").body,
                             self.cache[name] + WHOLE_FOOTER)

    def test_links_of_a_list_lead_to_the_stored_charts_beneath_it(self):
        for name in LISTS + DISK_LISTS:
            links = re.findall(rb"<a href=(hist[^> ]+)>", self.cache[name])
            self.assertGreater(len(links), 0, name)
            for link in {link.decode() for link in links}:
                chart = link.removesuffix(f"-{name}") + ".htm"
                self.assertEqual(DAY.get(link).body,
                                 self.cache[name] + self.cache[chart] + WHOLE_FOOTER, link)

    def test_no_request_builds_another_file(self):
        self.assertEqual(cached_files(DAY), self.cache)


class WhileBuilding(DayTest):
    def test_requests_are_answered(self):
        self.assertGreater(self.day.pages_while_building, 10)
        self.assertLess(self.day.longest_answer, 5)

    def test_nothing_fails(self):
        self.assertEqual(DAY.event_texts(), [STARTED])


class Stop(DayTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.stop = STOP.result()

    def test_it_ends_the_process_as_ever(self):
        self.assertEqual(self.stop.exit_status, 0)
        self.assertGreater(self.stop.seconds, 3.4)
        self.assertLess(self.stop.seconds, 8)

    def test_it_is_a_notice_and_no_failure(self):
        self.assertEqual(STOPPED_SITE.event_texts(), [STARTED, STOPPED])

    def test_the_run_is_left_where_it_stands_and_its_files_are_whole(self):
        self.assertGreaterEqual(len(self.stop.files), ENOUGH_FILES)
        self.assertNotIn(LAST_PAGE, self.stop.files)
        self.assert_whole(self.stop.files)

    def test_nobody_gets_a_mail(self):
        receivers = [mail.recipients for mail in BOX.mails()]
        self.assertNotIn(["after-the-stop@mail.test"], receivers)
        self.assertGreater(len(receivers), 0)


class Kill(DayTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.kill = KILL.result()

    def test_no_page_is_half(self):
        pages = {name: data for name, data in self.kill.files.items() if name in FILES}
        self.assertGreaterEqual(len(pages), ENOUGH_FILES - 1)
        self.assert_whole(pages)

    def test_what_is_there_is_answered_after_the_next_start(self):
        name, body = self.kill.page_of_killed_run
        self.assertEqual(body, self.cache[name] + WHOLE_FOOTER)

    def test_the_next_run_makes_the_same_pages(self):
        self.assertEqual(sorted(self.kill.files_at_last), sorted(FILES))
        self.assert_whole(self.kill.files_at_last)


if __name__ == "__main__":
    unittest.main()
