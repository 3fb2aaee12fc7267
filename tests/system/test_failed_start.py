"""Starts that fail, wholly or in part: most of them leave a process that lives on without a
listener."""
import socket
import time
import unittest

import fleet
from event_file import FAILURE, STARTED
from local_time import is_recent

SERVICE_OPEN = "modQuillonWeb_ServiceOpen"
STATE = "frmQuillonWeb_dartSvc_State"


def take_port(site):
    site.rival = socket.create_server((site.address, site.port))


def damage(name):
    return lambda site: site.write(name, b"This is no database. " * 500)


PORT_TAKEN = fleet.declare(take_port)
FOREIGN_ADDRESS = fleet.declare(lambda site: site.set("Settings_WebServer", IpAddr="192.0.2.1"))
DISABLED = fleet.declare(lambda site: site.set("Settings_WebServer", Enabled=0))
NO_ROW = fleet.declare(lambda site: site.sql("Quillon.mdb", "DELETE FROM Settings_WebServer"))
NO_SETTINGS = fleet.declare(lambda site: site.remove("Quillon.mdb"), comes_up=False)
DAMAGED = fleet.declare(damage("Quillon.mdb"), comes_up=False)
NO_INI = fleet.declare_idle(lambda site: site.remove("Morvane.ini"))
NO_FOLDER = fleet.declare_idle(lambda site: site.set("Settings_General", SnmpcDir=""))


def setUpModule():
    fleet.start()


def tearDownModule():
    PORT_TAKEN.rival.close()


class ListenerFailure(unittest.TestCase):
    def assert_lives_on_without_a_listener(self, site):
        self.assertTrue(site.process.is_running())
        self.assertEqual(site.event_texts()[-1], STARTED)
        address, status = site.listener_row()
        self.assertEqual(address, "0.0.0.0")
        time_text, *rest = status.split("\r\n")
        self.assertEqual(rest, ["Failed to Start", ""])
        self.assertTrue(is_recent(time_text))

    def assert_one_failure(self, site):
        failures = site.events_of(SERVICE_OPEN)
        self.assertEqual([failure.type for failure in failures], [FAILURE])
        return failures[0].text

    def test_a_port_that_another_program_has_is_reported_once(self):
        self.assert_lives_on_without_a_listener(PORT_TAKEN)
        text = self.assert_one_failure(PORT_TAKEN)
        self.assertIn(str(PORT_TAKEN.port), text)

    def test_an_address_of_another_machine_has_a_text_of_its_own(self):
        self.assert_lives_on_without_a_listener(FOREIGN_ADDRESS)
        self.assertFalse(FOREIGN_ADDRESS.is_listening())
        text = self.assert_one_failure(FOREIGN_ADDRESS)
        self.assertEqual(text, "TCP Server IP Address is not valid")

    def test_a_table_without_a_row_is_a_failure_of_its_reader(self):
        self.assertTrue(NO_ROW.process.is_running())
        self.assertFalse(NO_ROW.is_listening())
        self.assert_one_failure(NO_ROW)


class Disabled(unittest.TestCase):
    def test_nothing_listens_and_the_row_keeps_its_address(self):
        self.assertFalse(DISABLED.is_listening())
        self.assertEqual(DISABLED.listener_row(), ("0.0.0.0", "Not Started"))

    def test_the_service_runs_and_reports_its_start(self):
        self.assertTrue(DISABLED.process.is_running())
        self.assertEqual(DISABLED.event_texts(), [STARTED])


class SettingsFailure(unittest.TestCase):
    def test_the_process_lives_on_after_one_event_and_never_listens(self):
        for name, site in (("missing", NO_SETTINGS), ("damaged", DAMAGED)):
            with self.subTest(name):
                self.assertTrue(site.process.is_running())
                self.assertFalse(site.is_listening())
                events = [(event.type, event.source) for event in site.events()]
                self.assertEqual(events, [(FAILURE, STATE)])
                self.assertIn("Quillon.mdb", site.event_texts()[0])

    def test_a_missing_database_is_not_made(self):
        self.assertNotIn("Quillon.mdb", NO_SETTINGS.tree())


class MorvaneIniMissing(unittest.TestCase):
    def run_to_its_end(self, site):
        begin = time.monotonic()
        status, _ = site.process.run_beside()
        self.assertLess(time.monotonic() - begin, 15)
        return status, [(event.type, event.source, event.text) for event in site.events()]

    def test_the_process_ends_at_once(self):
        status, events = self.run_to_its_end(NO_INI)
        self.assertEqual(status, 1)
        self.assertEqual(events, [(FAILURE, STATE, rf"{NO_INI.path}\Morvane.ini Not Found")])

    def test_without_a_folder_that_is_said_first_and_drive_c_is_tried(self):
        status, events = self.run_to_its_end(NO_FOLDER)
        self.assertEqual(status, 1)
        self.assertEqual(events, [(FAILURE, STATE, "No Path to Morvane"),
                                  (FAILURE, STATE, r"c:\Morvane.ini Not Found")])


if __name__ == "__main__":
    unittest.main()
