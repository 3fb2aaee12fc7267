"""The charts of 45 days: their pages from the real process, the language of their days, what they
leave in the cache, and requests that are answered while a chart takes its time."""
import os
import unittest
from pathlib import Path

import fleet
import tracing
from chart_history import (
    ACCESS, DEVICE, NAMES, NAMES_LATIN, OTHER_PAGE, PAGE, PORT, PORT_CHARTS, SUMMARY_CHARTS, TRUNK,
    day_of, fill)
from chart_text import DAYS, read_charts
from client import request
from event_file import FAILURE, STARTED
from hostile_charts import ANSWERED, FAILED, GIVEN_UP, UNREADABLE, UNSTORABLE
from site_pages import FOOTER, LISTS, PAGE_END
from waiting import eventually

LOCALES = os.environ["QUILLON_LOCALES"]  # a folder of compiled locales, which the build makes

DATA_IN = "frmQuillonWeb_tcpServer_DataIn"
READ, SAVE = "modHtml_ReadFromCache", "modHtml_SaveToCache"
LATIN, UTF8 = "ISO-8859-1", "UTF-8"
SECRET = b"what nobody may read"
HEAD_END = b"<body>\r\n"
BAND_END = b"<table width='790px' class='topLine2'>\r\n  </table>\r\n<br>\r\n"
SUNDAY = 6

ENGLISH_NAMES = (
    ["Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday", "Sunday"],
    ["January", "February", "March", "April", "May", "June", "July", "August", "September",
     "October", "November", "December"])
SWEDISH_NAMES = (
    ["Måndag", "Tisdag", "Onsdag", "Torsdag", "Fredag", "Lördag", "Söndag"],
    ["Januari", "Februari", "Mars", "April", "Maj", "Juni", "Juli", "Augusti", "September",
     "Oktober", "November", "December"])
GERMAN_NAMES = (
    ["Montag", "Dienstag", "Mittwoch", "Donnerstag", "Freitag", "Samstag", "Sonntag"],
    ["Januar", "Februar", "März", "April", "Mai", "Juni", "Juli", "August", "September",
     "Oktober", "November", "Dezember"])


def speaking(charset, **variables):
    """A site in the language of these variables; those that are not told are empty."""
    def prepare(site):
        fill(site)
        site.charset = charset
        site.set("Settings_WebServer", CharSet=charset)
        site.process.environment |= {
            "LOCPATH": LOCALES, "LC_ALL": "", "LC_TIME": "", "LANG": "", **variables}
    return prepare


def with_debug_mode(site):
    site.set("Settings_General", DebugMode=1)


def with_doors(site):
    """Folders in the cache, through which a path upwards would lead to a secret."""
    site.write("secret.htm", SECRET)
    for door in ("switch", "disk-", "histdisk45-1-..", "hist45d-switch-", ACCESS.partition(".")[0]):
        (site.path / "WebReports/Cache" / door).mkdir()


ENGLISH = fleet.declare(speaking(LATIN, LC_ALL="C", LC_TIME="sv_SE.UTF-8"))
SWEDISH = fleet.declare(speaking(LATIN, LC_TIME="sv_SE.UTF-8", LANG="de_DE.UTF-8"))
IN_LANGUAGES = {
    "Swedish": (SWEDISH, SWEDISH_NAMES),
    "Swedish in UTF-8": (
        fleet.declare(speaking(UTF8, LC_TIME="sv_SE.ISO-8859-1")), SWEDISH_NAMES),
    "German": (fleet.declare(speaking(LATIN, LC_TIME="de_DE.ISO-8859-1")), GERMAN_NAMES),
    "German in UTF-8": (fleet.declare(speaking(UTF8, LANG="de_DE.UTF-8")), GERMAN_NAMES),
    "English": (ENGLISH, ENGLISH_NAMES),
    "a language that the system lacks": (
        fleet.declare(speaking(UTF8, LC_TIME="xx_XX.UTF-8")), ENGLISH_NAMES)}
HOSTILE = fleet.declare(speaking(LATIN), with_doors)
TRACED = fleet.declare(speaking(LATIN, LC_TIME="sv_SE.UTF-8"))
LOGGED = fleet.declare(speaking(LATIN), with_debug_mode)


def setUpModule():
    fleet.start()


def charts_of(site, page, begin=HEAD_END):
    """The charts between the beginning of a page and its footer."""
    charts, _, end = page.partition(begin)[2].partition(FOOTER)
    if not end.endswith(PAGE_END):
        raise AssertionError(f"a page that does not end: {page[-200:]!r}")
    return read_charts(charts, site.charset)


class ChartTest(unittest.TestCase):
    maxDiff = None

    def assert_shows(self, charts, expected, names):
        """These charts, each with the days in their order."""
        self.assertEqual([chart.words for chart in charts], [chart.words for chart in expected])
        for number, (chart, wanted) in enumerate(zip(charts, expected), start=1):
            self.assertEqual(chart.names, names)
            self.assertEqual(chart.axis, wanted.axis)
            for age in range(1, DAYS + 1):
                self.assertEqual(chart.series(age), wanted.series(age), age)
            self.assert_has_days(chart, 100 * number)

    def assert_has_days(self, chart, first_id):
        for place, (day, age) in enumerate(zip(chart.days, range(DAYS, 0, -1)), start=1):
            date = day_of(age)
            self.assertEqual(day.number, str(date.day))
            self.assertEqual(day.tag, "th" if date.weekday() == SUNDAY else "td")
            self.assertEqual(day.popup, f"c{first_id + place}")
            self.assertEqual(day.place, 16 * place + 72)


class Pages(ChartTest):
    PORT_NAMES = ("Device:", NAMES_LATIN[0], "Port:", NAMES_LATIN[1])

    def test_a_port_has_three_charts_on_a_page_of_their_own(self):
        page = ENGLISH.get(PAGE)
        self.assertEqual(page.content_type, "text/html")
        self.assertTrue(page.body.startswith(b"<!DOCTYPE HTML "))
        self.assert_shows(charts_of(ENGLISH, page.body), PORT_CHARTS, self.PORT_NAMES)
        self.assertNotIn(PAGE, ENGLISH.names("WebReports/Cache"))

    def test_under_a_list_the_same_charts_follow_the_stored_list(self):
        alone = ENGLISH.get(PAGE).body
        ENGLISH.get(LISTS[0])
        stored = ENGLISH.stored_page(LISTS[0])
        url = f"hist45-0{DEVICE}-00{PORT}-{LISTS[0]}"
        page = ENGLISH.get(url).body
        self.assertTrue(page.startswith(stored))
        self.assertEqual(page.removeprefix(stored), alone.partition(HEAD_END)[2])
        self.assertEqual(ENGLISH.stored_page(PAGE), page.removeprefix(stored).partition(FOOTER)[0])
        self.assertEqual(ENGLISH.get(url).body, page)
        ENGLISH.remove(f"WebReports/Cache/{PAGE}")

    def test_a_summary_has_four_charts_and_is_stored_without_its_footer(self):
        page = ENGLISH.get(f"select?report=hist45d-{ACCESS}").body
        self.assert_shows(charts_of(ENGLISH, page, BAND_END), SUMMARY_CHARTS,
                          ("Report:", "Access Ports 45 Days", "&nbsp", "&nbsp"))
        self.assertTrue(page.startswith(ENGLISH.stored_page(ACCESS) + FOOTER))
        self.assertIn(f"<option selected='selected' value='hist45d-{ACCESS}'>".encode(), page)
        self.assertEqual(ENGLISH.get(f"hist45d-{ACCESS}").body, page)

    def test_the_summary_of_trunk_ports_is_another_one(self):
        charts = charts_of(ENGLISH, ENGLISH.get(f"hist45d-{TRUNK}").body, BAND_END)
        self.assertEqual(charts[0].names[1], "Trunk Ports 45 Days")
        self.assertEqual(charts[0].series(1), ("In Volume: 7 M<br>Out Volume: 8 M", ("88", "100")))
        self.assertEqual(charts[3].series(1),
                         ("All Ports: 9<br>Ports in Traffic: 9  (100%)", ("90", "90")))

    def test_the_chart_of_a_disk_comes_from_the_cache_alone(self):
        ENGLISH.store_page("disk-windows-top10-a.htm", b"<html>disks")
        ENGLISH.store_page("histdisk45-900-My Disk (C_).htm", b"chart")
        for url, chart in (("histdisk45-0900-My Disk (C_)-disk-windows-top10-a.htm", b"chart"),
                           ("histdisksearch45-900-My Disk (C_)-disk-windows-top10-a.htm", b"chart"),
                           ("histdisk45-900-mem-disk-windows-top10-a.htm", b"")):
            page = ENGLISH.get(url).body
            self.assertTrue(page.startswith(b"<html>disks" + chart + FOOTER), url)

    def test_nothing_fails(self):
        for url in (PAGE, OTHER_PAGE, f"hist45d-{ACCESS}", f"hist45d-{TRUNK}",
                    "hist45-1-2.htm", "hist45-1-2-switch-missing.htm"):
            ENGLISH.get(url)
        self.assertEqual(ENGLISH.event_texts(), [STARTED])


class Languages(ChartTest):
    def test_days_have_the_names_of_the_environment_in_the_charset_of_the_pages(self):
        for language, (site, (weekdays, months)) in IN_LANGUAGES.items():
            with self.subTest(language):
                dates = [day_of(age) for age in range(DAYS, 0, -1)]
                titles = [f"{weekdays[date.weekday()]}, {months[date.month - 1]} {date.day}"
                          for date in dates]
                page, summary = site.get(PAGE).body, site.get(f"hist45d-{ACCESS}").body
                for chart in charts_of(site, page) + charts_of(site, summary, BAND_END):
                    self.assertEqual([day.title for day in chart.days], titles)
                self.assertEqual(site.event_texts(), [STARTED])

    def test_names_of_ports_are_in_the_charset_of_the_pages(self):
        for language, (site, _) in IN_LANGUAGES.items():
            with self.subTest(language):
                names = NAMES if site.charset == UTF8 else NAMES_LATIN
                for chart in charts_of(site, site.get(PAGE).body):
                    self.assertEqual(chart.names, ("Device:", names[0], "Port:", names[1]))


class BadInput(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.default_page = HOSTILE.get("").body
        cls.chart_page = HOSTILE.get(PAGE).body

    def assert_next_is_answered(self, client):
        """On another connection, and then on this one: what came before is not to be heard."""
        self.assertEqual(HOSTILE.get("").body, self.default_page)
        self.assertEqual(client.ask("").body, self.default_page)

    def new_events(self, count):
        return [(event.type, event.source) for event in HOSTILE.events()[count:]]

    def assert_answered(self, urls, events):
        for url in urls:
            with self.subTest(url[:80]), HOSTILE.connect() as client:
                before = len(HOSTILE.events())
                page = client.ask(url).body
                self.assertTrue(page.endswith(PAGE_END))
                self.assertNotIn(SECRET, page)
                self.assertEqual(self.new_events(before), events)
                self.assert_next_is_answered(client)

    def test_a_url_that_no_chart_goes_by_is_answered_with_nothing(self):
        for url in GIVEN_UP:
            with self.subTest(url), HOSTILE.connect() as client:
                before = len(HOSTILE.events())
                client.send(request(url))
                self.assert_next_is_answered(client)
                self.assertEqual(self.new_events(before), [])

    def test_a_number_that_is_none_is_one_failure_and_no_answer(self):
        for url in FAILED:
            with self.subTest(url[:80]), HOSTILE.connect() as client:
                before = len(HOSTILE.events())
                client.send(request(url))
                eventually(lambda: len(HOSTILE.events()) > before, f"a failure of {url[:80]}")
                self.assert_next_is_answered(client)
                self.assertEqual(self.new_events(before), [(FAILURE, DATA_IN)])

    def test_an_odd_url_is_answered_with_what_there_is(self):
        self.assert_answered(ANSWERED, [])

    def test_a_page_that_no_file_can_be_is_left_out(self):
        self.assert_answered(UNREADABLE, [(FAILURE, READ)])

    def test_a_summary_that_no_file_can_be_is_sent_and_not_stored(self):
        folders = (".", "WebReports", "WebReports/Cache")
        before = [HOSTILE.names(folder) for folder in folders]
        self.assert_answered(UNSTORABLE, [(FAILURE, SAVE)])
        self.assertEqual([HOSTILE.names(folder) for folder in folders], before)

    def test_a_chart_is_right_behind_any_of_them(self):
        for url in (FAILED[0], ANSWERED[0], UNREADABLE[0], UNSTORABLE[0]):
            with HOSTILE.connect() as client:
                client.send(request(url))
                self.assertEqual(HOSTILE.get(PAGE).body, self.chart_page)


@unittest.skipUnless(tracing.is_available, "strace is not installed")
class Files(unittest.TestCase):
    DATABASES = {f"{name}.mdb{side}" for name in ("Quillon", "Reports", "History")
                 for side in ("", "-wal", "-shm", "-journal")}

    def touched(self, answered, unanswered=()):
        """The paths that the service asks for while it deals with the URLs, one after the other."""
        with tracing.traced_paths(TRACED.process.id) as paths:
            for url in unanswered:
                with TRACED.connect() as client:
                    client.send(request(url))
                    TRACED.get("")
            for url in answered:
                TRACED.get(url)
        return {Path(path) for path in paths}

    def others(self, paths):
        """Those that are neither stored pages nor databases, which an hourly pass opens too."""
        databases = {TRACED.path / name for name in self.DATABASES}
        return sorted(path for path in paths - databases
                      if path.parent != TRACED.path / "WebReports/Cache" and path != TRACED.path)

    def test_charts_touch_the_cache_and_the_databases_only(self):
        urls = [PAGE, f"hist45-{DEVICE}-{PORT}-{LISTS[0]}", f"hist45d-{ACCESS}", f"hist45d-{TRUNK}",
                "histdisk45-900-C_-disk-unix-top10-a.htm"]
        paths = self.touched(urls + urls)
        self.assertEqual(self.others(paths), [])
        for name in ("Reports.mdb", "History.mdb", f"WebReports/Cache/{PAGE}",
                     f"WebReports/Cache/{ACCESS}"):
            self.assertIn(TRACED.path / name, paths)

    def test_hostile_urls_lead_nowhere_else(self):
        paths = self.touched((*ANSWERED, *UNREADABLE, *UNSTORABLE), (*GIVEN_UP, *FAILED))
        self.assertEqual(self.others(paths), [TRACED.path / "Debug/AppEventWeb.txt"])
        self.assertFalse([path for path in paths if ".." in path.parts])


class Waits(unittest.TestCase):
    def order(self):
        """Requests and their ends in the log, oldest first."""
        log = LOGGED.read("Debug/WebConnections.txt").decode("latin-1")
        lines = [line.partition("] ")[2] for line in log.split("\r\n")]
        return [line.partition(" HTTP")[0] if "httpQuery: " in line else "end" for line in lines
                if "httpQuery: " in line or "Total Time: " in line]

    def overtakes(self, url):
        """Whether the default page was asked for and answered inside the waits of that page, which
        is only seen where it was asked for soon enough."""
        LOGGED.remove("Debug/WebConnections.txt")
        with LOGGED.connect() as waiting, LOGGED.connect() as other:
            waiting.send(request(url))
            other.ask("")
            waiting.receive()
        eventually(lambda: self.order().count("end") == 2, "both in the log")
        return self.order() == [f"httpQuery: GET /{url}", "httpQuery: GET /", "end", "end"]

    def test_a_page_is_answered_while_a_chart_waits(self):
        eventually(lambda: self.overtakes(PAGE), "a page inside the waits of a port's charts")

    def test_a_page_is_answered_while_a_summary_waits(self):
        def overtakes_anew():
            LOGGED.remove(f"WebReports/Cache/{ACCESS}")
            return self.overtakes(f"hist45d-{ACCESS}")
        eventually(overtakes_anew, "a page inside the waits of a summary")

    def test_charts_that_are_asked_for_at_the_same_time_are_not_mixed_up(self):
        urls = [PAGE, OTHER_PAGE, f"hist45d-{ACCESS}", f"hist45d-{TRUNK}"]
        alone = {url: SWEDISH.get(url).body for url in urls}
        self.assertEqual(len(set(alone.values())), len(urls))
        for name in (ACCESS, TRUNK):
            SWEDISH.remove(f"WebReports/Cache/{name}")
        asked = 3 * urls
        clients = [SWEDISH.connect() for _ in asked]
        for client, url in zip(clients, asked):
            self.addCleanup(client.leave)
            client.send(request(url))
        for client, url in zip(clients, asked):
            self.assertEqual(client.receive().body, alone[url], url)

    def test_a_client_that_leaves_its_chart_leaves_the_others_theirs(self):
        expected = SWEDISH.get(PAGE).body
        for leave in ("leave", "break_off"):
            client = SWEDISH.connect()
            client.send(request(OTHER_PAGE))
            with SWEDISH.connect() as other:
                other.send(request(PAGE))
                getattr(client, leave)()
                self.assertEqual(other.receive().body, expected)
        self.assertEqual(SWEDISH.event_texts(), [STARTED])


if __name__ == "__main__":
    unittest.main()
