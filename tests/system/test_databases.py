"""The service beside the management product, which writes, locks and replaces the databases as
it likes."""
import stat
import unittest
from contextlib import closing, contextmanager

import fleet
from client import request
from event_file import FAILURE
from site_pages import listed_ports

SITE = fleet.declare()
TOP10_QUERY = "modSelectSql_SqlTop10SwitchStats"
LOCK_SECONDS = 2


def setUpModule():
    fleet.start()


def list_name(word):
    """A list of the incoming errors under a name that no other test has stored."""
    return f"switch-access-port-top10-{word}.htm"


@contextmanager
def held_open(site, *names):
    """Keeps the side files of the databases in place."""
    handles = [site.open_database(name) for name in names]
    for handle in handles:
        handle.execute("SELECT COUNT(*) FROM sqlite_master").fetchall()
    try:
        yield
    finally:
        for handle in handles:
            handle.close()


def locked_for_all(site, name):
    """A handle that has the file for itself, readers included, until it is closed."""
    handle = site.open_database(name)
    handle.execute("PRAGMA locking_mode = EXCLUSIVE")
    handle.execute("BEGIN EXCLUSIVE")
    return handle


class Locks(unittest.TestCase):
    def test_a_list_waits_until_an_exclusive_lock_is_gone(self):
        with SITE.connect() as client:
            with closing(locked_for_all(SITE, "Reports.mdb")):
                client.send(request(list_name("locked")))
                self.assertTrue(client.hears_nothing_for(LOCK_SECONDS))
            self.assertEqual(listed_ports(client.receive().body), 10)
        self.assertEqual(SITE.events_of(TOP10_QUERY), [])

    def test_a_list_does_not_wait_for_a_writer_and_shows_what_was_committed(self):
        before = SITE.get(list_name("before")).body
        with closing(SITE.open_database("Reports.mdb")) as writer:
            writer.execute("BEGIN IMMEDIATE")
            writer.execute("DELETE FROM VLAN")
            during = SITE.get(list_name("during")).body
            self.assertEqual(listed_ports(during), listed_ports(before))
            writer.execute("ROLLBACK")


class BrokenReports(unittest.TestCase):
    SITE = fleet.declare()

    def setUp(self):
        self.SITE.rename("Reports.mdb", "Reports.away")
        self.addCleanup(self.bring_back)

    def bring_back(self):
        for name in ("Reports.mdb", "Reports.mdb-wal", "Reports.mdb-shm"):
            self.SITE.remove(name)
        self.SITE.rename("Reports.away", "Reports.mdb")

    def assert_empty_table_and_failure(self, name):
        before = len(self.SITE.events_of(TOP10_QUERY))
        page = self.SITE.get(name).body
        self.assertEqual(listed_ports(page), 0)
        self.assertTrue(page.endswith(b"</html>"))
        failures = self.SITE.events_of(TOP10_QUERY)[before:]
        self.assertEqual([failure.type for failure in failures], [FAILURE])
        self.assertIn("Reports.mdb", failures[0].text)

    def test_a_missing_database_gives_an_empty_table_and_a_failure(self):
        self.assert_empty_table_and_failure(list_name("missing"))
        self.assertFalse((self.SITE.path / "Reports.mdb").exists())

    def test_a_damaged_database_gives_an_empty_table_and_a_failure(self):
        self.SITE.write("Reports.mdb", b"This is no database. " * 500)
        self.assert_empty_table_and_failure(list_name("damaged"))

    def test_a_database_without_its_tables_gives_an_empty_table_and_a_failure(self):
        self.SITE.sql("Reports.mdb", "CREATE TABLE Other (Field)")
        self.assert_empty_table_and_failure(list_name("tables"))

    def test_the_next_request_is_answered_and_a_list_is_whole_again(self):
        self.SITE.get(list_name("broken"))
        self.assertIn(b"</html>", self.SITE.get("").body)
        self.doCleanups()
        self.assertEqual(listed_ports(self.SITE.get(list_name("whole")).body), 10)


class Modes(unittest.TestCase):
    def test_databases_and_side_files_are_for_their_owner_alone(self):
        with held_open(SITE, "Quillon.mdb", "Reports.mdb", "History.mdb"):
            SITE.get(list_name("modes"))
            files = list(SITE.path.glob("*.mdb*"))
            self.assertIn("Reports.mdb-wal", [file.name for file in files])
            for file in files:
                self.assertEqual(stat.S_IMODE(file.stat().st_mode), 0o600, file.name)

    def test_no_other_file_can_be_written_by_others(self):
        for file in SITE.path.rglob("*"):
            self.assertFalse(file.stat().st_mode & (stat.S_IWGRP | stat.S_IWOTH), file)


if __name__ == "__main__":
    unittest.main()
