"""Hostile search texts over the sockets of the real process: they change nothing, reach no file
but those of the installation, leave no memory taken, and whoever comes next is answered."""
import unittest
from contextlib import ExitStack, closing, nullcontext
from pathlib import Path

import fleet
import tracing
from client import request
from event_file import FAILURE
from hostile_searches import BUSY, ODD, SQL
from search_pages import ALIAS, DISK, LATIN, MAC, MOST_USED, NAME, post, result_of, speaking
from site_pages import PAGE_END

DATA_IN = "frmQuillonWeb_tcpServer_DataIn"
SECRET = "what nobody may read"
CLIENTS = 12      # side by side; the twentieth would drop them all
MEGABYTE = 1024   # in KB

FORMS = (
    (NAME, {"DeviceName": None, "PortName": "*"}),
    (NAME, {"DeviceName": "*", "PortName": None}),
    (ALIAS, {"DeviceName": None, "PortName": "*"}),
    (ALIAS, {"DeviceName": "10.*", "PortName": None}),
    (MAC, {"MacIpName": None}),
    (DISK, {"DeviceName": None, "DiskName": "*", "OrderBy": MOST_USED}),
    (DISK, {"DeviceName": "*", "DiskName": None, "OrderBy": MOST_USED}),
    (DISK, {"DeviceName": "*", "DiskName": "*", "OrderBy": None}))
DEVICE_IDS = ("7 OR 1=1", "7;DROP TABLE VLAN", "'", "(SELECT 7)", "0x7", "NaN", "-7",
              "7.5", "-2147483648", "../../etc/passwd", 5_000 * "0" + "101", "101", "900")
DATABASES = ("Quillon.mdb", "Reports.mdb", "History.mdb")


def with_secret(site):
    site.write("secret.htm", SECRET.encode())
    site.set("Settings_SmtpServer", Pass=SECRET)
    site.sql("Reports.mdb", f"CREATE TABLE ZLast (A TEXT DEFAULT '{SECRET}')")


SITE = fleet.declare(speaking(LATIN), with_secret)


def setUpModule():
    fleet.start()


def search_for(text, form):
    """The post of a form with the text in its open field."""
    action, fields = form
    return post(action, LATIN, **{name: text if value is None else value
                                  for name, value in fields.items()})


def all_requests():
    """Every text in one of the forms; all of them get an answer."""
    posts = [search_for(text, FORMS[place % len(FORMS)])
             for place, text in enumerate((*SQL, *ODD))]
    # In the search of addresses a dot in front keeps the text as it is.
    dotted = [search_for("." + text, FORMS[4]) for text in SQL[::6]]
    busy = [search_for(text, FORMS[place % 4]) for place, text in enumerate(BUSY)]
    return [*posts, *dotted, *(request(f"DeviceId={number}") for number in DEVICE_IDS), *busy]


def dumps():
    """All that the databases hold, as statements."""
    contents = {}
    for name in DATABASES:
        with closing(SITE.open_database(name)) as database:
            contents[name] = list(database.iterdump())
    return contents


def is_text(path):
    """Folders and the socket file cannot be read, and a database changes by being looked at."""
    return (SITE.path / path).is_file() and not path.endswith(".mdb")


def files():
    """What stands beside the stored pages, the event file and the side files of databases."""
    return {path: SITE.read(path) if is_text(path) else None
            for path in SITE.tree()
            if ".mdb-" not in path and Path(path).parent.name not in ("Cache", "Debug")}


def traced():
    if tracing.is_available:
        return tracing.traced_paths(SITE.process.id)
    return nullcontext(set())


def memory(line):
    """In KB, as the system tells it."""
    status = Path(f"/proc/{SITE.process.id}/status").read_text()
    return int(status.partition(f"{line}:")[2].split()[0])


class HostileSearches(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        """Asks for everything, and for some of it again, under the eyes of a tracer where there is
        one: the tests look at what came of it."""
        cls.default_page = SITE.get("").body
        cls.dumps, cls.files = dumps(), files()
        cls.pages, cls.next_pages, cls.memory = [], [], []
        with traced() as cls.paths:
            for requests in (all_requests(), all_requests()[::8]):
                cls.ask_side_by_side(requests)
                cls.memory.append(memory("RssAnon"))

    @classmethod
    def ask_side_by_side(cls, requests):
        """Sends them a dozen at a time, so that they nest in each other's waits, and then asks on
        each connection for what any other user asks for. The next dozen comes behind them: of
        those that nest, the first ends last."""
        with ExitStack() as leaving:
            clients = [leaving.enter_context(SITE.connect()) for _ in range(CLIENTS)]
            for begin in range(0, len(requests), CLIENTS):
                asked = list(zip(clients, requests[begin:begin + CLIENTS]))
                for client, data in asked:
                    client.send(data)
                cls.pages += [(data, client.receive().body) for client, data in asked]
                cls.next_pages += [(data, client.ask("").body) for client, data in asked]

    def test_every_one_is_answered_with_a_whole_page_that_gives_nothing_away(self):
        for data, page in self.pages:
            self.assertTrue(page.endswith(PAGE_END), data[:300])
            self.assertNotIn(SECRET.encode(), page, data[:300])
            self.assertNotIn(b"root:", page, data[:300])

    def test_the_next_request_of_the_connection_is_answered_right(self):
        for data, page in self.next_pages:
            self.assertEqual(page, self.default_page, data[:300])

    def test_a_plain_search_finds_the_same_as_before(self):
        SITE.wait_until_alone()
        plain = post(NAME, LATIN, DeviceName="Stapel", PortName="Port 1")
        with SITE.connect() as client:
            client.send(plain)
            before = client.receive().body
            self.assertIn(b"Stapel", result_of(before))
            for text in (*SQL[::12], BUSY[-1]):
                client.send(search_for(text, FORMS[0]))
                client.receive()
                client.send(plain)
                self.assertEqual(client.receive().body, before, text[:300])

    def test_a_number_beyond_its_range_is_one_failure_and_no_answer(self):
        for number in ("2147483648", "-2147483649", "1e10", 5_000 * "9"):
            before = len(SITE.events())
            with SITE.connect() as client:
                client.send(request(f"DeviceId={number}"))
                self.assertTrue(client.hears_nothing_for(1))
                self.assertEqual(client.ask("").body, self.default_page)
            failures = [(failure.type, failure.source) for failure in SITE.events()[before:]]
            self.assertEqual(failures, [(FAILURE, DATA_IN)], number[:20])

    def test_no_table_and_no_file_has_changed(self):
        self.assertTrue(SITE.process.is_running())
        self.assertEqual(files(), self.files)
        for name, statements in dumps().items():
            self.assertEqual(statements, self.dumps[name], name)

    def test_events_give_nothing_away(self):
        for event in SITE.events():
            self.assertNotIn(SECRET, event.text)

    def test_memory_comes_back(self):
        early, late = self.memory
        self.assertLessEqual(late, early + 8 * MEGABYTE)
        self.assertLessEqual(memory("VmHWM"), 200 * MEGABYTE)

    @unittest.skipUnless(tracing.is_available, "strace is not installed")
    def test_no_file_is_opened_but_those_of_the_installation(self):
        databases = {SITE.path / f"{name}{side}" for name in DATABASES
                     for side in ("", "-wal", "-shm", "-journal")}
        asked = {Path(path) for path in self.paths}
        others = {path for path in asked - databases
                  if path.parent != SITE.path / "WebReports/Cache" and path != SITE.path}
        self.assertEqual(others, {SITE.path / "Debug/AppEventWeb.txt"})
        self.assertFalse([path for path in asked if ".." in path.parts])


if __name__ == "__main__":
    unittest.main()
