"""Many clients, slow ones, and such as go away: none of them keeps the others waiting."""
import time
import unittest

import fleet
from client import request
from event_file import FAILURE
from site_pages import listed_ports

SITE = fleet.declare()
CROWD = fleet.declare()

DATA_IN = "frmQuillonWeb_tcpServer_DataIn"
PAGE = "switch-access-port-top10-involume.htm"
LARGE_PAGE = "disk-mem-summary.htm"
LARGE = b"<html>" + b"0123456789abcdef" * (512 * 1024)  # 8 MiB: no socket takes it at once
PROMPTLY = 5      # seconds, for an answer that waits for nobody
SMALL_BUFFER = 4096


def setUpModule():
    fleet.start()
    SITE.store_page(LARGE_PAGE, LARGE)


class Clients(unittest.TestCase):
    def connect(self, **options):
        """A client that leaves at the end of the test."""
        client = SITE.connect(**options)
        self.addCleanup(client.leave)
        return client

    def assert_others_are_served_promptly(self):
        begin = time.monotonic()
        self.assertEqual(listed_ports(SITE.get(PAGE).body), 10)
        self.assertLess(time.monotonic() - begin, PROMPTLY)

    def test_a_slow_reader_gets_all_and_delays_nobody(self):
        reader = self.connect(receive_buffer=SMALL_BUFFER)
        reader.send(request(LARGE_PAGE))
        for _ in range(5):
            reader.take_some(1000)
            self.assert_others_are_served_promptly()
        self.assertTrue(reader.receive().body.startswith(LARGE))

    def test_a_client_that_never_reads_delays_nobody_and_fails_in_the_end(self):
        deaf = self.connect(receive_buffer=SMALL_BUFFER)
        before = len(SITE.events_of(DATA_IN))
        for _ in range(6):
            deaf.send(request(LARGE_PAGE))
            self.assert_others_are_served_promptly()
        failures = SITE.events_of(DATA_IN)[before:]
        self.assertEqual({failure.type for failure in failures}, {FAILURE})

    def test_a_client_that_says_nothing_delays_nobody(self):
        for _ in range(5):
            self.connect()
        self.assert_others_are_served_promptly()

    def test_a_client_that_leaves_before_its_answer_delays_nobody(self):
        for leave in ("leave", "break_off"):
            client = self.connect()
            client.send(request(LARGE_PAGE))
            getattr(client, leave)()
            self.assert_others_are_served_promptly()

    def test_a_client_that_leaves_in_the_middle_of_its_answer_delays_nobody(self):
        client = self.connect(receive_buffer=SMALL_BUFFER)
        client.send(request(LARGE_PAGE))
        client.take_some(1000)
        client.break_off()
        self.assert_others_are_served_promptly()

    def test_a_client_that_leaves_in_the_middle_of_its_request_delays_nobody(self):
        client = self.connect()
        client.send(b"GET /switch-acc")
        client.leave()
        self.assert_others_are_served_promptly()


class Crowd(unittest.TestCase):
    def setUp(self):
        CROWD.wait_until_alone()

    def connect(self, count):
        clients = [CROWD.connect() for _ in range(count)]
        for client in clients:
            self.addCleanup(client.leave)
        return clients

    def test_nineteen_at_once_are_all_answered(self):
        clients = self.connect(19)
        for client in clients:
            client.send(request(PAGE))
        for client in clients:
            self.assertEqual(listed_ports(client.receive().body), 10)

    def test_the_twentieth_drops_all_and_itself(self):
        clients = self.connect(19)
        for client in clients:
            client.ask("")
        clients += self.connect(1)
        for client in clients:
            self.assertTrue(client.is_dropped())
        self.assertEqual(listed_ports(CROWD.get(PAGE).body), 10)


if __name__ == "__main__":
    unittest.main()
