"""The ticks of the timer and their hourly pass: the tick at about a minute runs the first one,
and no other tick of that hour runs another. Each service lives in a zone where it is the time of
day that the test needs, and is watched from its start on, while other tests run; this module has
a late name, so that the watch has ended when its turn comes."""
import shutil
import time
import unittest
from datetime import datetime, timedelta

import fleet
import trap_receiver
from background import Background
from event_file import FAILURE, STARTED
from local_time import zone_where_it_is
from site_pages import unstorable_list
from trap_receiver import TrapReceiver
from waiting import DEADLINE

RECEIVER = TrapReceiver("127.0.0.1")
WATCH_SECONDS = 30 + DEADLINE  # behind the opening of the listeners; the third tick is at 90 s
FIRST_PASS = (50, 80)          # seconds from the start, between which it has to come
LOOK_PAUSE = 0.5


def at(hour, minute, second=0):
    """It is about that time when the service starts."""
    def prepare(site):
        name, site.zone = zone_where_it_is(hour, minute, second)
        site.process.environment["TZ"] = name
    return prepare


def sending_traps_later(site):
    RECEIVER.listen()
    site.write_ini(*RECEIVER.ini_lines("127.0.0.1"))
    site.set("Settings_SnmpAgent", Enabled=1, SendAppEvents=0, TrapComm="of the start")


def old_event(site, days):
    """A line of an event that many days before the day that is about to begin."""
    day = datetime.now(site.zone).date() + timedelta(days=1 - days)
    return f"{day} 10:00:00\t3\tmodAny_Any\t{days} days ago\r\n".encode()


def leave_old_events(site):
    site.write("Debug/AppEventWeb.txt", b"".join(old_event(site, days) for days in (61, 60, 59)))


# Those in which a tick must do nothing start before the one that shows that it has come.
NOON = fleet.declare(at(12, 10), sending_traps_later)
AFTER_MIDNIGHT = fleet.declare(at(0, 10))
BROKEN = fleet.declare(at(12, 10))
BEFORE_TEN = fleet.declare(at(9, 58, 35))
BEFORE_MIDNIGHT = fleet.declare(at(23, 58, 35), leave_old_events)
LEFT_BEHIND = ("WebSqlOld.txt", "SendMailSMTP.txt")


class Look:
    """One look at a service: when, whether a request is logged, and which debug files it has."""

    def __init__(self, site):
        site.remove("Debug/WebConnections.txt")
        site.get("")
        self.seconds = time.monotonic() - site.process.started_at
        self.names = site.names("Debug")
        self.is_logged = "WebConnections.txt" in self.names


class Watch(Background):
    """Switches the debug files on when the listeners are open, and off again as soon as a pass
    has made that known. Looks at every service until the second pass of one is seen."""

    SITES = (NOON, AFTER_MIDNIGHT, BEFORE_TEN, BEFORE_MIDNIGHT)

    def __init__(self):
        super().__init__()
        self.looks = {site: [] for site in self.SITES}
        self.first_pass = {}  # seconds from the start of each service

    def begin(self):
        for site in self.SITES:
            site.set("Settings_General", DebugMode=1)
        for name in LEFT_BEHIND:
            BEFORE_MIDNIGHT.write(f"Debug/{name}", b"old")
        NOON.set("Settings_SnmpAgent", SendAppEvents=1, TrapComm="of later")
        NOON.set("Settings_WebServer", IpAddr="127.0.0.9", TcpPort=NOON.port + 1)
        NOON.get(unstorable_list("early"))
        shutil.move(BROKEN.path / "Quillon.mdb", BROKEN.path / "Quillon.away")
        self.start()

    def work(self):
        end = time.monotonic() + WATCH_SECONDS
        while not self._is_done() and time.monotonic() < end:
            for site in self.SITES:
                self._look(site)
            time.sleep(LOOK_PAUSE)

    def _look(self, site):
        look = Look(site)
        self.looks[site].append(look)
        if look.is_logged and site not in self.first_pass:
            self.first_pass[site] = look.seconds
            site.set("Settings_General", DebugMode=0)

    def _is_done(self):
        """One look further than the second pass of the services that have one."""
        if BEFORE_TEN not in self.first_pass or BEFORE_MIDNIGHT not in self.first_pass:
            return False
        return (not any(look.is_logged for look in self.looks[BEFORE_TEN][-2:])
                and not set(LEFT_BEHIND) & set(self.looks[BEFORE_MIDNIGHT][-1].names))


WATCH = Watch()
fleet.when_up(WATCH.begin)


def setUpModule():
    fleet.start()


class HourlyPass(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.watch = WATCH.result()

    def looks(self, site, begin=0.0):
        return [look for look in self.watch.looks[site] if look.seconds > begin]

    def test_a_setting_takes_effect_at_the_tick_of_about_a_minute_and_not_before(self):
        for site in (NOON, BEFORE_TEN, BEFORE_MIDNIGHT):
            first = self.watch.first_pass[site]
            self.assertGreater(first, FIRST_PASS[0])
            self.assertLess(first, FIRST_PASS[1])
            earlier = [look for look in self.looks(site) if look.seconds < first]
            self.assertGreater(len(earlier), 0)

    def test_the_listener_stays_where_it_was_opened(self):
        self.assertIn(NOON, self.watch.first_pass)
        self.assertIn(b"</html>", NOON.get("").body)
        self.assertEqual(NOON.listener_row()[0], "127.0.0.9")

    def test_there_is_no_second_pass_in_the_same_hour(self):
        later = self.looks(NOON, self.watch.first_pass[NOON])
        self.assertTrue(all(look.is_logged for look in later))
        self.assertGreater(later[-1].seconds, 90)

    def test_the_next_pass_is_at_the_first_tick_of_the_next_hour(self):
        later = self.looks(BEFORE_TEN, self.watch.first_pass[BEFORE_TEN])
        self.assertTrue(later[0].is_logged)
        self.assertFalse(later[-1].is_logged)

    def test_the_hour_from_midnight_has_none(self):
        self.assertNotIn(AFTER_MIDNIGHT, self.watch.first_pass)
        self.assertGreater(self.looks(AFTER_MIDNIGHT)[-1].seconds, 90)

    def test_the_debug_files_go_at_the_change_of_day_and_at_no_other_pass(self):
        first = self.watch.first_pass[BEFORE_MIDNIGHT]
        later = self.looks(BEFORE_MIDNIGHT, first)
        self.assertLessEqual(set(LEFT_BEHIND), set(later[0].names))
        self.assertFalse(set(LEFT_BEHIND) & set(later[-1].names))

    def test_events_of_sixty_days_ago_go_at_the_change_of_day(self):
        self.assertEqual(BEFORE_MIDNIGHT.event_texts(), ["59 days ago", STARTED])
        self.assertNotIn("AppEventWeb.bak", BEFORE_MIDNIGHT.names("Debug"))

    def test_a_database_that_has_gone_is_one_failure_of_the_hour(self):
        started, failure = BROKEN.events()
        self.assertEqual(started.text, STARTED)
        self.assertEqual((failure.type, failure.source),
                         (FAILURE, "modQuillonWeb_RefreshSettings"))
        self.assertIn("Quillon.mdb", failure.text)
        self.assertIn(b"</html>", BROKEN.get("").body)


@unittest.skipUnless(trap_receiver.is_available, "snmptrapd is not installed")
class Traps(unittest.TestCase):
    def test_they_begin_with_the_pass_and_keep_the_community_of_the_start(self):
        WATCH.result()
        NOON.get(unstorable_list("late"))
        trap = RECEIVER.wait_for_trap(NOON, "late")
        self.assertEqual(RECEIVER.traps(), [trap])
        self.assertEqual(trap.community, "of the start")
        early, _ = [text for text in NOON.event_texts() if text != STARTED]
        self.assertIn("early", early)


if __name__ == "__main__":
    unittest.main()
