"""The service manager's side: notices on its socket, signs of life for its watchdog, and the
signals by which it asks for states."""
import os
import signal
import time
import unittest

import fleet
from client import request
from event_file import FAILURE, NOTICE, STARTED, STOPPED
from notify_socket import NotifySocket
from site_pages import LISTS, unstorable_list
from waiting import eventually

STATE = "frmQuillonWeb_dartSvc_State"
PAUSE = "Pause Not Implemented"
RESUME = "Resume Not Implemented"
READY, STOPPING, ALIVE = "READY=1", "STOPPING=1", "WATCHDOG=1"
WATCHDOG_SECONDS = 2
BUSY_SECONDS = 5
CROWD = 12  # clients that cause a failure at the same time


def watched_by(address=None, **environment):
    """A service manager listens there, for the service of this installation."""
    def prepare(site):
        place = address or site.path.with_suffix(".notices")
        site.manager = NotifySocket(place, observer=lambda: words_are_read(site))
        site.process.environment |= {"NOTIFY_SOCKET": str(place), **environment}
    return prepare


def words_are_read(site):
    """One of the last steps of the start leaves this copy."""
    return (site.path / "Debug/HelpText.txt").exists()


def with_debug_mode(site):
    site.set("Settings_General", DebugMode=1)


WITH_WATCHDOG = {"WATCHDOG_USEC": str(WATCHDOG_SECONDS * 1_000_000)}

WATCHED = fleet.declare(watched_by(**WITH_WATCHDOG), with_debug_mode)
WITHOUT_WATCHDOG = fleet.declare(watched_by(f"@quillon-test-{os.getpid()}"))
OTHERS_WATCHDOG = fleet.declare(watched_by(**WITH_WATCHDOG, WATCHDOG_PID="1"))
NO_MANAGER = fleet.declare(lambda site: site.process.environment.update(
    NOTIFY_SOCKET=str(site.path / "nowhere"), **WITH_WATCHDOG))
NO_INI = fleet.declare_idle(watched_by(**WITH_WATCHDOG), lambda site: site.remove("Morvane.ini"))
PAUSED = fleet.declare()
CONTINUED_AT_STOP = fleet.declare()
PAUSED_BEFORE_STOP = fleet.declare()


def setUpModule():
    fleet.start()


class Notices(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.notices = WATCHED.manager
        cls.idle_until = time.monotonic()
        cls.be_busy()
        cls.busy_until = time.monotonic()
        WATCHED.process.send_signal(signal.SIGTERM)
        WATCHED.process.wait_until_over()
        cls.over_at = time.monotonic()

    @staticmethod
    def be_busy():
        """Pages without a pause, and failures that wait inside one another."""
        crowd = [WATCHED.connect() for _ in range(CROWD)]
        for number, client in enumerate(crowd):
            client.send(request(unstorable_list(f"crowd{number}")))
        end = time.monotonic() + BUSY_SECONDS
        with WATCHED.connect() as client:
            while time.monotonic() < end:
                client.ask(LISTS[0])
        for client in crowd:
            client.receive()
            client.leave()

    def ready(self):
        return self.notices.wait_for(READY)

    def assert_alive(self, begin, end):
        """No pause between two signs of life was one that the watchdog ends a process for."""
        signs = [notice.time for notice in self.notices.notices(ALIVE)]
        earlier = [sign for sign in signs if sign <= begin]
        during = [sign for sign in signs if begin < sign < end]
        moments = [*(earlier[-1:] or [begin]), *during, end]
        self.assertGreater(len(during), 0)
        self.assertLess(max(b - a for a, b in zip(moments, moments[1:])), WATCHDOG_SECONDS)

    def test_it_is_ready_once_and_when_the_start_state_is_done(self):
        self.assertEqual(len(self.notices.notices(READY)), 1)
        self.assertTrue(self.ready().saw)

    def test_it_is_ready_long_before_the_listener_opens(self):
        seconds = self.ready().time - WATCHED.process.started_at
        self.assertLess(seconds + 5, WATCHED.seconds_until_listening())

    def test_the_idle_service_is_alive(self):
        self.assert_alive(self.ready().time, self.idle_until)

    def test_the_busy_service_is_alive(self):
        self.assert_alive(self.idle_until, self.busy_until)

    def test_the_service_that_stops_is_alive(self):
        self.assert_alive(self.busy_until, self.over_at)

    def test_it_is_stopping_once_and_at_the_begin_of_the_stop(self):
        self.notices.wait_for(STOPPING)
        (stopping,) = self.notices.notices(STOPPING)
        self.assertGreater(stopping.time, self.busy_until)
        self.assertGreater(self.over_at - stopping.time, 3)

    def test_a_socket_without_a_path_takes_notices_too(self):
        WITHOUT_WATCHDOG.manager.wait_for(READY)

    def test_nobody_asks_for_signs_of_life_and_there_are_none(self):
        for site in (WITHOUT_WATCHDOG, OTHERS_WATCHDOG):
            site.manager.wait_for(READY)
            self.assertEqual(site.manager.notices(ALIVE), [])

    def test_without_the_ini_file_it_is_never_ready(self):
        self.assertEqual(NO_INI.process.run_beside()[0], 1)
        self.assertEqual([event.type for event in NO_INI.events()], [FAILURE])
        NO_INI.manager.settle()
        self.assertEqual(NO_INI.manager.notices(READY), [])

    def test_a_manager_that_is_not_there_hurts_nothing(self):
        self.assertEqual(NO_MANAGER.event_texts(), [STARTED])
        self.assertIn(b"</html>", NO_MANAGER.get("").body)


class Signals(unittest.TestCase):
    def ask_to_continue(self, site):
        """The answer behind it tells that the signal has been taken."""
        site.process.send_signal(signal.SIGCONT)
        site.get("")

    def ask_for(self, site, number, text):
        """A state that is refused: waits for its notice."""
        count = site.event_texts().count(text)
        site.process.send_signal(number)
        eventually(lambda: site.event_texts().count(text) > count, text)

    def test_pause_and_resume_are_refused_with_a_notice_each_and_it_runs_on(self):
        self.ask_for(PAUSED, signal.SIGTSTP, PAUSE)
        self.assertFalse(PAUSED.process.is_halted())
        self.assertIn(b"</html>", PAUSED.get("").body)
        self.ask_for(PAUSED, signal.SIGCONT, RESUME)
        notices = [(event.type, event.source, event.text) for event in PAUSED.events()[-2:]]
        self.assertEqual(notices, [(NOTICE, STATE, PAUSE), (NOTICE, STATE, RESUME)])

    def test_a_signal_to_continue_that_follows_no_pause_is_nothing(self):
        self.ask_to_continue(PAUSED)
        self.ask_for(PAUSED, signal.SIGTSTP, PAUSE)
        self.ask_for(PAUSED, signal.SIGCONT, RESUME)
        self.ask_to_continue(PAUSED)
        self.ask_for(PAUSED, signal.SIGTSTP, PAUSE)
        self.assertEqual(PAUSED.event_texts()[-3:], [PAUSE, RESUME, PAUSE])
        self.ask_for(PAUSED, signal.SIGCONT, RESUME)
        states = PAUSED.event_texts()[1:]
        self.assertEqual(states, [PAUSE, RESUME] * (len(states) // 2))

    def stop_and_continue(self, site):
        site.process.send_signal(signal.SIGTERM)
        site.process.send_signal(signal.SIGCONT)
        self.assertEqual(site.process.wait_until_over(), 0)

    def test_the_one_that_the_manager_sends_with_the_stop_is_nothing(self):
        self.stop_and_continue(CONTINUED_AT_STOP)
        self.assertEqual(CONTINUED_AT_STOP.event_texts(), [STARTED, STOPPED])

    def test_a_stop_after_a_pause_is_no_resume_either(self):
        self.ask_for(PAUSED_BEFORE_STOP, signal.SIGTSTP, PAUSE)
        self.stop_and_continue(PAUSED_BEFORE_STOP)
        self.assertEqual(PAUSED_BEFORE_STOP.event_texts(), [STARTED, PAUSE, STOPPED])


if __name__ == "__main__":
    unittest.main()
