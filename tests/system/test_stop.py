"""The stop by either signal: about three and a half seconds, in which clients are still
served at first."""
import signal
import time
import unittest

import fleet
from event_file import NOTICE, STARTED, STOPPED

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


if __name__ == "__main__":
    unittest.main()
