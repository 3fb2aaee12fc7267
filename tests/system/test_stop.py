"""The stop by either signal: about three and a half seconds, in which clients are still
served at first."""
import signal
import time
import unittest
from contextlib import ExitStack, suppress

import fleet
from event_file import FAILURE, NOTICE, STARTED, STOPPED
from waiting import DEADLINE

STOPPED_BY = {signal.SIGTERM: fleet.declare(), signal.SIGINT: fleet.declare()}


def setUpModule():
    fleet.start()


class Stop(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        begin = time.monotonic()
        for number, site in STOPPED_BY.items():
            site.process.send_signal(number)
        time.sleep(1.2)  # the listener closes no sooner than 2.5 s after the signal
        cls.late_pages = [site.get("") for site in STOPPED_BY.values()]
        STOPPED_BY[signal.SIGTERM].process.send_signal(signal.SIGTERM)
        cls.exits = [site.process.wait_until_over() for site in STOPPED_BY.values()]
        cls.seconds = time.monotonic() - begin

    def test_it_takes_three_and_a_half_seconds(self):
        self.assertGreater(self.seconds, 3.4)
        self.assertLess(self.seconds, 8)

    def test_the_exit_status_tells_success(self):
        self.assertEqual(self.exits, [0, 0])

    def test_a_client_that_comes_in_the_first_two_seconds_is_answered(self):
        for page in self.late_pages:
            self.assertIn(b"</html>", page.body)

    def test_the_stop_is_one_notice_even_where_the_signal_comes_twice(self):
        for site in STOPPED_BY.values():
            self.assertEqual(site.event_texts(), [STARTED, STOPPED])
            event = site.events()[-1]
            self.assertEqual((event.type, event.source), (NOTICE, "frmQuillonWeb_dartSvc_State"))

    def test_the_row_says_that_nothing_is_started_and_keeps_its_address(self):
        for site in STOPPED_BY.values():
            self.assertEqual(site.listener_row(), ("127.0.0.1", "Not Started"))

    def test_the_port_is_closed(self):
        for site in STOPPED_BY.values():
            self.assertFalse(site.is_listening())


class StopBeforeTheListenerOpens(unittest.TestCase):
    SITE = fleet.declare_idle(lambda site: site.set("Settings_General", DebugMode=1))

    def test_it_takes_the_same_steps(self):
        self.SITE.process.start()
        self.SITE.wait_until_words_are_read()
        self.SITE.process.send_signal(signal.SIGTERM)
        self.assertEqual(self.SITE.process.wait_until_over(), 0)
        self.assertEqual(self.SITE.event_texts(), [STOPPED])
        self.assertEqual(self.SITE.listener_row()[1], "Not Started")


class StopWithoutTheDatabase(unittest.TestCase):
    SITE = fleet.declare()

    def test_it_is_one_failure_more_and_ends_as_well(self):
        self.SITE.remove("Quillon.mdb")
        self.SITE.process.send_signal(signal.SIGTERM)
        self.assertEqual(self.SITE.process.wait_until_over(), 0)
        *before, failure = self.SITE.events()
        self.assertEqual([event.text for event in before], [STARTED, STOPPED])
        self.assertEqual((failure.type, failure.source),
                         (FAILURE, "modQuillonWeb_ServiceClose"))
        self.assertIn("Quillon.mdb", failure.text)


class StopAmongClientsThatNeverPause(unittest.TestCase):
    """Each text without a line end is a failure, whose half second nests on the stop's waits."""
    SITE = fleet.declare()
    CLIENTS = 15
    PAUSE = 0.05  # seconds between two texts of a client

    @classmethod
    def setUpClass(cls):
        with ExitStack() as stack:
            clients = [stack.enter_context(cls.SITE.connect()) for _ in range(cls.CLIENTS)]
            begin = time.monotonic()
            cls.SITE.process.send_signal(signal.SIGTERM)
            while cls.SITE.process.is_running() and time.monotonic() < begin + DEADLINE:
                for client in clients:
                    with suppress(OSError):  # the service has gone
                        client.send(b"x")
                time.sleep(cls.PAUSE)
            cls.seconds = time.monotonic() - begin
        cls.SITE.process.kill()

    def test_it_ends_after_ten_seconds_all_the_same(self):
        self.assertLess(self.seconds, 20)
        self.assertEqual(self.SITE.process.wait_until_over(), 0)

    def test_the_row_says_that_nothing_is_started(self):
        self.assertEqual(self.SITE.listener_row()[1], "Not Started")


if __name__ == "__main__":
    unittest.main()
