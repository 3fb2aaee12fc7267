"""The start: half a minute without a listener, then what the row of its settings and the event
file tell about it."""
import unittest

import fleet
from event_file import NOTICE, STARTED
from local_time import is_recent

SITE = fleet.declare()
OTHER_SITE = fleet.declare(lambda site: site.set("Settings_General", DatumFormat="DD/MM/YYYY"))
IDLE = fleet.declare_idle()

ALREADY_RUNNING = "The Quillon Web Service is already running.\n"
INVALID_OPTION = "Quillon: Invalid command option.\n"
DATABASE_MESSAGE = """Quillon: Error when accessing the Database.

The Microsoft Data Access Components (MDAC) 2.5 or greater must be
installed on the computer. The MDAC 2.5 could be found on:

https://quillon.example/database

or on the Quillon CD-ROM in the MDAC directory.
"""


def setUpModule():
    fleet.start()


class Start(unittest.TestCase):
    def test_the_listener_opens_about_30_seconds_after_the_start(self):
        self.assertGreater(SITE.seconds_until_listening(), 28)
        self.assertLess(SITE.seconds_until_listening(), 40)

    def test_the_row_holds_the_address_that_is_bound_and_not_every_address(self):
        address, _ = SITE.listener_row()
        self.assertEqual(address, "127.0.0.1")

    def test_the_status_tells_time_address_and_port(self):
        _, status = SITE.listener_row()
        time, *lines = status.split("\r\n")
        self.assertTrue(is_recent(time))
        self.assertEqual(lines, ["Web Server Started", "IP=127.0.0.1", f"Port={SITE.port}"])

    def test_the_status_has_the_date_in_the_display_format(self):
        _, status = OTHER_SITE.listener_row()
        self.assertTrue(is_recent(status.split("\r\n")[0], "%d/%m/%Y %H:%M:%S"))

    def test_the_start_is_the_only_event(self):
        self.assertEqual(SITE.event_texts(), [STARTED])

    def test_the_start_is_a_notice_with_its_time_and_source(self):
        event = OTHER_SITE.events()[0]
        self.assertEqual((event.type, event.source), (NOTICE, "frmQuillonWeb_dartSvc_State"))
        self.assertTrue(is_recent(event.time))

    def test_the_lines_of_the_event_file_have_tabs_and_windows_line_ends(self):
        line = SITE.read("Debug/AppEventWeb.txt")
        self.assertRegex(line, rb"^[-\d]{10} [:\d]{8}\t3\tfrmQuillonWeb_dartSvc_State\t"
                               rb"Service Started\. Version: 9\.05\r\n$")

    def test_the_terminal_stays_empty(self):
        self.assertEqual(SITE.process.said(), "")


class SecondStart(unittest.TestCase):
    def test_in_the_same_directory_it_is_refused_and_the_first_one_goes_on(self):
        self.assertEqual(SITE.process.run_beside(), (1, ALREADY_RUNNING))
        self.assertTrue(SITE.process.is_running())
        self.assertEqual(SITE.get("").content_type, "text/html")

    def test_it_is_refused_before_its_options_are_looked_at(self):
        self.assertEqual(SITE.process.run_beside("-nonsense"), (1, ALREADY_RUNNING))

    def test_in_another_directory_it_runs_beside_the_first(self):
        for site in (SITE, OTHER_SITE):
            self.assertTrue(site.process.is_running())
            self.assertEqual(site.get("").content_type, "text/html")


class Options(unittest.TestCase):
    def test_an_unknown_option_is_refused_without_a_trace(self):
        for options in (["-nonsense"], ["install"], ["-instal"], ["--install"], ["uninstall"],
                        ["-uninstall", "now"], ["-uninstall_noMsg"], ["-uninstal"], ["--help"]):
            with self.subTest(options=options):
                self.assertEqual(IDLE.process.run_beside(*options), (1, INVALID_OPTION))
        self.assertEqual(IDLE.names("Debug"), [])


class FailureBeforeTheServiceRuns(unittest.TestCase):
    """With so few descriptors, the directory of the program cannot be opened any more."""
    FEW_DESCRIPTORS = ["prlimit", "--nofile=6"]

    def test_it_is_told_as_one_of_the_database_with_the_reason_behind_it(self):
        status, words = IDLE.process.run_beside(inside=self.FEW_DESCRIPTORS)
        self.assertEqual(status, 1)
        self.assertEqual(
            words, DATABASE_MESSAGE + f"\ncannot lock {IDLE.path}: Too many open files\n")


if __name__ == "__main__":
    unittest.main()
