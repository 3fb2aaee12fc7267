"""Mail servers that refuse, hang, drip and close, at each stage of a mail: the mail counts as
failed, once, the next receiver is served, and the site answers all the while. The days run while
other tests have their turn; this module has a late name, so that they have ended when its turn
comes."""
import signal
import time
import unittest

import fleet
from day_watch import DayWatch
from event_file import STARTED, STOPPED
from faulty_mail_server import (
    DATA, EHLO, END, GREETING, MAIL, QUIT, RCPT, TEXT, Close, Drip, FaultyMailServer, Flood, Hang,
    Say, SayAndClose)
from mail_box import read_message
from report_day import mailing_by, small_mails, with_receivers, without_network
from site_pages import PAGE_END
from waiting import DEADLINE

FAILED_MAIL = 2  # type of an event
TIME_LIMIT = 4   # seconds of an attempt at those that hang
SOON = 3         # seconds: below the limit, so that no answer has waited for an attempt's end
FOREVER = 3600

# A text that does not fit into the buffers of a connection.
LARGE = {f"Top10Rep{place + 1}": choice for place, choice in enumerate((
    "Access Summary", "Trunk Summary", "Access InVolume", "Access OutVolume", "Trunk InErrors"))}
LARGE["AttachReport"] = 1

HANGS = [Hang(GREETING), Hang(EHLO), Hang(MAIL), Hang(RCPT), Hang(DATA), Hang(TEXT), Hang(END),
         Drip(GREETING), Drip(EHLO), Drip(END)]
FLOODS = [Flood(GREETING), Flood(EHLO), Flood(MAIL), Flood(END)]
CLOSES = [Close(stage) for stage in (GREETING, EHLO, MAIL, RCPT, DATA, TEXT, END)]
REFUSALS = [Say(GREETING, b"421 busy\r\n"), Say(GREETING, b"554 no\r\n"),
            Say(EHLO, b"500 What?\r\n"), Say(MAIL, b"451 later\r\n"),
            Say(RCPT, b"550 unknown\r\n"), Say(DATA, b"554 no\r\n"),
            Say(END, b"452 full\r\n"), Say(END, b"554 spam\r\n"),
            SayAndClose(GREETING, b"HTTP/1.0 400 Bad Request\r\n\r\n")]


class FaultyDay:
    """One installation and its server: behind each mail that meets a fault there is one that meets
    none, and no attempt is repeated."""

    def __init__(self, faults, **settings):
        self.faults = faults
        self.server = FaultyMailServer(
            [step for fault in faults for step in (fault, None)])
        self.receivers = [name for number in range(len(faults))
                          for name in (f"failing{number}", f"served{number}")]
        self.site = fleet.declare(
            without_network, mailing_by(self.server, Retries=0, **settings),
            with_receivers(*[{"Name": name, "Recipient": f"{name}@mail.test", **LARGE}
                             for name in self.receivers]))

    def has_ended(self):
        return self.server.has_served(len(self.receivers))


class Watch(DayWatch):
    """Asks every site for pages, until all mails have had their turn."""

    def __init__(self, days):
        super().__init__()
        self._days = days
        self.answers = {day: [] for day in days}  # while a mail meets its fault: seconds

    def work(self):
        self.until(lambda: all([self._look(day) for day in self._days]), "the last mail")
        time.sleep(2)  # the wait behind the last mail, and what must not follow
        self.events = {day: day.site.events() for day in self._days}

    def _look(self, day):
        hanging = [visit for visit in list(day.server.visits) if visit.is_in_fault]
        begin = time.monotonic()
        page = day.site.get("").body
        if not page.endswith(PAGE_END):
            raise AssertionError(page)
        if hanging and not hanging[-1].is_over:
            self.answers[day].append(time.monotonic() - begin)
        return day.has_ended()


# A few faults each, so that all of them together take no longer than the others' days.
SLOW_DAYS = [FaultyDay(HANGS[:5], TimeOut=TIME_LIMIT), FaultyDay(HANGS[5:], TimeOut=TIME_LIMIT)]
FLOODED_DAY = FaultyDay(FLOODS, TimeOut=TIME_LIMIT)
QUICK_DAYS = [FaultyDay(CLOSES, TimeOut=FOREVER), FaultyDay(REFUSALS, TimeOut=FOREVER)]
# The mail is taken, and then the server does not say goodbye.
UNPOLITE_DAY = FaultyDay([Hang(QUIT), Close(QUIT), Drip(QUIT)], TimeOut=TIME_LIMIT)
FAILING_DAYS = [*SLOW_DAYS, FLOODED_DAY, *QUICK_DAYS]
DAYS = [*FAILING_DAYS, UNPOLITE_DAY]

REPEATING_SERVER = FaultyMailServer([Close(GREETING), Say(MAIL, b"451 later\r\n"),
                                     Say(END, b"554 spam\r\n"),
                                     Say(END, b"452 full\r\n"), Close(END), None, None])
REPEATING = fleet.declare(without_network, mailing_by(REPEATING_SERVER, Retries=2, TimeOut=FOREVER),
                          small_mails("failing", "served-at-last", "served-at-once"))

CLOSED_PORT = 1
UNREACHABLE = fleet.declare(
    without_network, lambda site: site.set("Settings_SmtpServer", MailPort=CLOSED_PORT, Retries=0),
    small_mails("first", "second"))


class HangingMail(DayWatch):
    """Asks for pages while a mail hangs, and stops the service then."""

    def __init__(self, stage):
        super().__init__()
        self.server = FaultyMailServer([Hang(stage)])
        self.site = fleet.declare(without_network, mailing_by(self.server, TimeOut=FOREVER),
                                  small_mails("waiting", "behind"))

    def work(self):
        self.until(lambda: any(visit.is_in_fault for visit in self.server.visits), "the mail")
        (visit,) = self.server.visits
        self.pages = [self.site.get("").body for _ in range(5)]
        self.still_hangs = not visit.is_over
        begin = time.monotonic()
        self.site.process.send_signal(signal.SIGTERM)
        self.exit_status = self.site.process.wait_until_over()
        self.seconds = time.monotonic() - begin


class Others(DayWatch):
    def work(self):
        self.until(lambda: REPEATING_SERVER.has_served(7), "the mails of three attempts")
        self.until(lambda: len(UNREACHABLE.events()) == 3, "the mails to nobody")


WATCH, OTHERS = Watch(DAYS), Others()
HANGING_MAILS = [HangingMail(stage) for stage in (GREETING, MAIL, END)]
for watch in (WATCH, OTHERS, *HANGING_MAILS):
    fleet.when_up(watch.begin)


def setUpModule():
    fleet.start()


class MailTest(unittest.TestCase):
    maxDiff = None

    def assert_failed_mails(self, events, count):
        started, *failures = events
        self.assertEqual(started.text, STARTED)
        for failure in failures:
            self.assertEqual((failure.type, failure.source, failure.text),
                             (FAILED_MAIL, "modMail_SendMailSMTP", "Error Sending Mail"))
        self.assertEqual(len(failures), count)


class Faults(MailTest):
    @classmethod
    def setUpClass(cls):
        cls.watch = WATCH.result()

    def test_every_fault_was_met(self):
        for day in DAYS:
            self.assertEqual([visit.fault for visit in day.server.visits if visit.is_in_fault],
                             day.faults)

    def test_every_mail_that_meets_one_is_one_event(self):
        for day in FAILING_DAYS:
            self.assert_failed_mails(self.watch.events[day], len(day.faults))

    def test_the_next_receiver_is_served(self):
        for day in FAILING_DAYS:
            self.assertEqual(day.server.taken(), [f"served{number}@mail.test"
                                                  for number in range(len(day.faults))])

    def test_an_attempt_ends_with_its_time_limit(self):
        for day in SLOW_DAYS:
            for visit in day.server.visits[::2]:
                self.assertGreater(visit.seconds, TIME_LIMIT - 1, visit.fault)
                self.assertLess(visit.seconds, TIME_LIMIT + 6, visit.fault)

    def test_an_endless_answer_ends_the_attempt_at_its_time_limit_or_before(self):
        for visit in FLOODED_DAY.server.visits:
            self.assertLess(visit.seconds, TIME_LIMIT + 6, visit.fault)

    def test_an_attempt_that_is_refused_does_not_wait_for_its_time_limit(self):
        for day in QUICK_DAYS:
            for visit in day.server.visits:
                self.assertLess(visit.seconds, DEADLINE, visit.fault)

    def test_pages_are_answered_meanwhile(self):
        for day in FAILING_DAYS:
            self.assertLess(max(self.watch.answers[day], default=0), SOON)
        for day in SLOW_DAYS:
            self.assertGreater(len(self.watch.answers[day]), 3 * len(day.faults))

    def test_standard_error_tells_why(self):
        for day in FAILING_DAYS:
            self.assertGreaterEqual(len(day.site.process.said().splitlines()), len(day.faults))


class NoFarewell(MailTest):
    @classmethod
    def setUpClass(cls):
        cls.watch = WATCH.result()

    def test_the_mail_is_sent_and_nothing_has_failed(self):
        self.assertEqual(UNPOLITE_DAY.server.taken(),
                         [f"{name}@mail.test" for name in UNPOLITE_DAY.receivers])
        self.assert_failed_mails(self.watch.events[UNPOLITE_DAY], 0)

    def test_the_connection_ends_with_its_time_limit(self):
        for visit in UNPOLITE_DAY.server.visits:
            self.assertLess(visit.seconds, TIME_LIMIT + 6, visit.fault)

    def test_pages_are_answered_meanwhile(self):
        self.assertLess(max(self.watch.answers[UNPOLITE_DAY], default=0), SOON)


class Repetition(MailTest):
    @classmethod
    def setUpClass(cls):
        OTHERS.result()

    def test_a_mail_is_tried_once_more_than_retries_tell_and_no_further_when_it_is_taken(self):
        self.assertEqual(len(REPEATING_SERVER.visits), 7)
        self.assertEqual(REPEATING_SERVER.taken(),
                         ["served-at-last@mail.test", "served-at-once@mail.test"])

    def test_all_attempts_of_one_mail_are_one_event(self):
        self.assert_failed_mails(REPEATING.events(), 1)

    def test_each_attempt_sends_the_same_mail(self):
        _, _, first, *second, third = [visit.text for visit in REPEATING_SERVER.visits]
        self.assertEqual(len(set(second)), 1)
        names = {read_message(text)["Message-ID"] for text in (first, *second, third)}
        self.assertEqual(len(names), 3)


class Unreachable(MailTest):
    def test_each_mail_is_one_event(self):
        OTHERS.result()
        self.assert_failed_mails(UNREACHABLE.events(), 2)


class Stop(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.mails = [mail.result() for mail in HANGING_MAILS]

    def test_pages_are_answered_while_a_mail_hangs(self):
        for mail in self.mails:
            self.assertTrue(mail.still_hangs)
            for page in mail.pages:
                self.assertTrue(page.endswith(PAGE_END))

    def test_it_does_not_wait_for_the_mail(self):
        for mail in self.mails:
            self.assertEqual(mail.exit_status, 0)
            self.assertGreater(mail.seconds, 3.4)
            self.assertLess(mail.seconds, 8)

    def test_the_mail_is_left_where_it_stands(self):
        for mail in self.mails:
            self.assertEqual(mail.site.event_texts(), [STARTED, STOPPED])
            self.assertEqual(len(mail.server.visits), 1)


if __name__ == "__main__":
    unittest.main()
