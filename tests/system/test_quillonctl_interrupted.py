"""Jobs that meet something: another job, a console that leaves, a service that stops or dies. The
jobs of whole networks last for minutes, so each is surely met."""
import signal
import statistics
import time
import unittest

import fleet
from console_socket import NAME, ConsoleSocket
from day_watch import DayWatch, has_built, is_building
from event_file import STARTED, STOPPED
from quillonctl import (
    DONE, FAILED, Console, activity, ask, ctl, wait_until_idle, with_nothing_due)
from report_day import with_small_network
from site_pages import LISTS
from waiting import eventually

JOBS = (("import",), ("auto-create",), ("mail-create",), ("set-rep-date", "2014-11-07"))
CUT_OFF = "quillonctl: the service ended, or hung up, before its answer was complete\n"

BUSY = fleet.declare()
KILLED = fleet.declare()
STOPPED_SITE = fleet.declare()
LEFT = fleet.declare(with_small_network, with_nothing_due)
IDLE = fleet.declare_idle()
# The path of its socket file is longer than an address of a socket can be.
FAR_AWAY = fleet.declare_idle(place="installation-" + "x" * 100)


class LeaveDuringJob(DayWatch):
    """The console goes when the job is well on its way."""

    def work(self):
        wait_until_idle(LEFT)
        console = Console(LEFT, "auto-create")
        self.until(lambda: is_building(LEFT, 4), "a job that is under way")
        console.hang_up()
        self.activity_behind = activity(LEFT)
        self.until(lambda: has_built(LEFT), "the last page")
        wait_until_idle(LEFT)
        self.pages = LEFT.names("WebReports/Cache")


LEAVE = LeaveDuringJob()
fleet.when_up(LEAVE.begin)


def setUpModule():
    fleet.start()


def begin_building(site):
    """A console whose job has stored its first page."""
    wait_until_idle(site)
    console = Console(site, "auto-create")
    eventually(lambda: is_building(site, 1), "a job that is under way")
    return console


class RefusalTest(unittest.TestCase):
    def assert_every_job_is_refused(self, site, *reason):
        for words in JOBS:
            result = ctl(site, *words)
            self.assertEqual((result.status, result.out), (FAILED, ""))
            self.assertIn(result.errors, [f"quillonctl: {text}\n" for text in reason])
        result = ctl(site, "import", "--json")
        self.assertEqual((result.status, result.errors), (FAILED, ""))
        said = result.json()
        self.assertIn(said.pop("message"), reason)
        self.assertEqual(said, {"command": "import", "result": "refused", "failures": []})


class OneAtATime(RefusalTest):
    @classmethod
    def setUpClass(cls):
        cls.console = begin_building(BUSY)
        cls.addClassCleanup(cls.console.hang_up)
        cls.addClassCleanup(BUSY.process.kill)

    def seconds_for(self, page):
        begin = time.monotonic()
        self.assertGreater(len(BUSY.get(page).body), 5000)
        return time.monotonic() - begin

    def test_a_second_job_is_refused_and_learns_which_one_runs(self):
        self.assert_every_job_is_refused(
            BUSY, "auto-create is running; try again when it has ended")
        self.assertEqual(BUSY.sql("History.mdb", "SELECT LastReport FROM General_Info"),
                         [("2020-01-01 03:00:00",)])

    def test_the_status_tells_which_one_runs(self):
        self.assertEqual(activity(BUSY), "auto-create")

    def test_the_site_answers_stored_pages_at_once_meanwhile(self):
        page = LISTS[0]
        eventually(lambda: has_built(BUSY, page), "a page that is stored")
        self.assertLess(statistics.median(self.seconds_for(page) for _ in range(9)), 1)

    def test_settings_are_read_and_saved_meanwhile(self):
        ask(BUSY, "save", "--debug-mode", "no")
        self.assertEqual(ask(BUSY, "read").fields()["debug-mode"], "no")

    def test_nothing_fails(self):
        self.assertEqual(BUSY.event_texts(), [STARTED])


class ConsoleThatLeaves(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.leave = LEAVE.result()

    def test_the_job_goes_on_to_its_end(self):
        self.assertEqual(self.leave.activity_behind, "auto-create")
        self.assertLessEqual(set(LISTS), set(self.leave.pages))

    def test_nothing_fails_and_the_next_job_is_done(self):
        self.assertEqual(LEFT.event_texts(), [STARTED])
        self.assertEqual(ctl(LEFT, "set-rep-date", "2014-11-07").status, DONE)


class ServiceThatDies(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        console = begin_building(KILLED)
        KILLED.process.kill()
        cls.result = console.result()
        cls.status_of_the_dead = ctl(KILLED, "status")
        cls.file_stays = (KILLED.path / NAME).is_socket()
        KILLED.process.start()
        eventually(lambda: ctl(KILLED, "status").status == DONE, "the next socket file")

    def test_the_console_says_so(self):
        self.assertEqual((self.result.status, self.result.errors), (FAILED, CUT_OFF))

    def test_a_socket_file_that_nobody_serves_is_no_service(self):
        self.assertTrue(self.file_stays)
        self.assertEqual(self.status_of_the_dead.status, FAILED)
        self.assertEqual(self.status_of_the_dead.fields()["running"], "no")

    def test_the_next_start_takes_its_place(self):
        self.assertEqual(activity(KILLED), "starting")
        self.assertEqual(KILLED.process.said(), "")


class ServiceThatStops(RefusalTest):
    @classmethod
    def setUpClass(cls):
        console = begin_building(STOPPED_SITE)
        STOPPED_SITE.process.send_signal(signal.SIGTERM)
        eventually(lambda: activity(STOPPED_SITE) == "stopping", "the stop")
        cls.job_meanwhile = ctl(STOPPED_SITE, "import")
        cls.exit_status = STOPPED_SITE.process.wait_until_over()
        cls.result = console.result()
        cls.file_stays = (STOPPED_SITE.path / NAME).exists()

    def test_the_console_of_the_job_says_so(self):
        self.assertEqual((self.result.status, self.result.errors), (FAILED, CUT_OFF))

    def test_a_job_is_refused_meanwhile(self):
        self.assertEqual(self.job_meanwhile,
                         (FAILED, "", "quillonctl: the service is stopping\n"))

    def test_it_ends_as_ever_and_takes_its_socket_file_along(self):
        self.assertEqual((self.exit_status, self.file_stays), (0, False))
        self.assertEqual(STOPPED_SITE.event_texts(), [STARTED, STOPPED])


class ServiceThatStarts(RefusalTest):
    """In an installation far down in the directories."""

    @classmethod
    def setUpClass(cls):
        FAR_AWAY.process.start()
        eventually(lambda: ctl(FAR_AWAY, "status").status == DONE, "the socket file")
        cls.addClassCleanup(FAR_AWAY.process.kill)

    def test_the_status_tells_it(self):
        status = ask(FAR_AWAY, "status").fields()
        self.assertEqual((status["running"], status["activity"], status["port"]),
                         ("yes", "starting", "0"))

    def test_jobs_are_refused(self):
        self.assert_every_job_is_refused(
            FAR_AWAY,
            "the service is starting: its site and its jobs open 30 seconds after the start")


class ServiceThatDoesNotRun(RefusalTest):
    def test_the_status_is_1_and_tells_what_the_databases_know(self):
        result = ctl(IDLE, "status")
        self.assertEqual((result.status, result.errors), (FAILED, ""))
        self.assertEqual(result.fields()["running"], "no")
        self.assertEqual(result.fields()["last-report"], "2020-01-01 03:00:00")
        self.assertIs(ctl(IDLE, "status", "--json").json()["running"], False)

    def test_what_is_known_is_told_where_the_history_is_damaged(self):
        history = IDLE.read("History.mdb")
        IDLE.write("History.mdb", b"no database" * 1000)
        try:
            result = ctl(IDLE, "status")
        finally:
            IDLE.write("History.mdb", history)
        self.assertEqual((result.status, result.fields()["running"]), (FAILED, "no"))
        self.assertIn("History.mdb", result.errors)

    def test_jobs_need_it(self):
        for words in JOBS:
            self.assertEqual(ctl(IDLE, *words), (
                FAILED, "", f"quillonctl: the service does not run in {IDLE.path}\n"))


class IdleService(unittest.TestCase):
    def test_the_status_tells_where_it_listens_and_that_it_takes_requests(self):
        LEAVE.result()
        plain, json = ask(LEFT, "status").fields(), ask(LEFT, "status", "--json").json()
        self.assertEqual(plain["activity"], "idle")
        self.assertEqual(json["port"], LEFT.port)
        self.assertEqual(json["address"], LEFT.address)
        self.assertEqual({name: {True: "yes", False: "no"}.get(value, str(value))
                          for name, value in json.items()}, plain)

    def test_the_status_of_one_that_hangs_is_not_waited_for_for_ever(self):
        LEAVE.result()
        LEFT.process.send_signal(signal.SIGSTOP)
        try:
            result = ctl(LEFT, "status")
        finally:
            LEFT.process.send_signal(signal.SIGCONT)
        self.assertEqual(result, (FAILED, "", "quillonctl: the service does not answer\n"))

    def test_the_socket_file_tells_it_line_by_line(self):
        LEAVE.result()
        with ConsoleSocket(LEFT) as client:
            *states, end = client.ask(b"status")
        self.assertEqual(end, "done\t")
        self.assertIn(f"state\tport\t{LEFT.port}", states)


if __name__ == "__main__":
    unittest.main()
