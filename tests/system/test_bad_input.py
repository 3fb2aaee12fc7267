"""Hostile and broken input over the socket: whatever comes, the next request is answered, and
nothing outside the folder of the pages is read or written."""
import unittest

import fleet
from client import request
from event_file import FAILURE
from hostile_input import NO_LINE_END, ODD_REQUESTS
from site_pages import listed_ports

DATA_IN = "frmQuillonWeb_tcpServer_DataIn"
SECRET = b"what nobody may read"
DOORS = ("switch-access-port-top10-door", "disk-mem-summary-door", "disk-unix-top10-door")


def make_doors(site):
    """Folders in the cache, through which a path upwards would lead somewhere."""
    for door in DOORS:
        (site.path / "WebReports/Cache" / door).mkdir()
    site.write("secret.htm", SECRET)


SITE = fleet.declare(make_doors)


def setUpModule():
    fleet.start()


def outside_of_cache(tree):
    return {path for path in tree
            if not path.startswith("WebReports/Cache/") and ".mdb-" not in path}


class BadInput(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.page = SITE.get("").body
        cls.tree = outside_of_cache(SITE.tree())

    def assert_next_request_is_answered(self):
        self.assertEqual(SITE.get("").body, self.page)

    def assert_survived(self, data):
        with SITE.connect() as client:
            client.send(data)
            self.assert_next_request_is_answered()

    def test_the_next_request_is_answered_after_text_without_a_line_end(self):
        for name, data in NO_LINE_END.items():
            with self.subTest(name):
                self.assert_survived(data)

    def test_the_next_request_is_answered_after_an_odd_one(self):
        for name, data in ODD_REQUESTS.items():
            with self.subTest(name):
                self.assert_survived(data)

    def test_the_next_request_is_answered_in_the_middle_of_many_failures(self):
        clients = [SITE.connect() for _ in range(15)]
        for client in clients:
            self.addCleanup(client.leave)
            client.send(b"no line end")
        self.assert_next_request_is_answered()

    def test_a_text_without_a_line_end_is_one_failure_and_no_answer(self):
        before = len(SITE.events_of(DATA_IN))
        with SITE.connect() as client:
            client.send(b"GET / HTTP/1.0")
            self.assertTrue(client.hears_nothing_for(1))
            self.assertEqual(client.ask("").body, self.page)
        failures = SITE.events_of(DATA_IN)[before:]
        self.assertEqual([failure.type for failure in failures], [FAILURE])

    def test_a_list_under_an_impossible_name_is_sent_and_not_stored(self):
        stored = SITE.names("WebReports/Cache")
        for url in ("switch-access-port-top10-/..", "switch-access-port-top10-" + 300 * "y"):
            self.assertEqual(listed_ports(SITE.get(url).body), 10)
        self.assertEqual(SITE.names("WebReports/Cache"), stored)

    def test_no_path_leads_out_of_the_cache(self):
        for door in DOORS:
            for way in ("/../../../secret.htm", r"\..\..\..\secret.htm", "/../.././../secret.htm"):
                with self.subTest(door + way), SITE.connect() as client:
                    client.send(request(door + way))
                    client.hears_nothing_for(1)
                    self.assertNotIn(SECRET, client.heard())

    def test_no_file_comes_or_goes_outside_of_the_cache(self):
        for data in ODD_REQUESTS.values():
            self.assert_survived(data)
        self.assertEqual(outside_of_cache(SITE.tree()), self.tree)

    def test_every_event_stays_a_line_of_its_form(self):
        for data in (request("switch-access-port-top10-\t\n\x0b/"), b"\r\t3\tfaked_event\ttext"):
            self.assert_survived(data)
        for event in SITE.events():
            self.assertNotIn("faked", event.source)


if __name__ == "__main__":
    unittest.main()
