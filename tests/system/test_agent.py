"""The opening of the agent, told by the row of its settings, the event file and the log of the
services: an address that is none leaves the service without traps, and with its listener."""
import re
import unittest

import fleet
from event_file import FAILURE, STARTED
from local_time import is_recent

SERVICE_OPEN = "modQuillonWeb_ServiceOpen"
AGENT_NOT_VALID = "SNMP Agent IP Address is not valid"
LISTENER_NOT_VALID = "TCP Server IP Address is not valid"
BEFORE = "as it was before"
TIME = r"\d{4}-\d\d-\d\d \d\d:\d\d:\d\d"


def with_agent(server, listener=None):
    """The agent takes the server's address; nobody listens for its traps there."""
    def prepare(site):
        site.write_ini(f"ServerIpAddr={server}", "ServerTrapPort=9")
        site.set("Settings_SnmpAgent", Enabled=1, SendAppEvents=1, Status=BEFORE)
        if listener:
            site.listen_on(listener)
    return prepare


def with_debug_mode(site):
    site.set("Settings_General", DebugMode=1)


OPENED = fleet.declare(with_agent("127.0.0.1"), with_debug_mode)
NOT_ENABLED = fleet.declare(
    with_agent("127.0.0.1"), with_debug_mode,
    lambda site: site.set("Settings_SnmpAgent", Enabled=0))
FOREIGN = fleet.declare(with_agent("192.0.2.1", listener="127.0.0.1"), with_debug_mode)
NO_ADDRESS = fleet.declare(
    with_agent("nonsense", listener="127.0.0.1"),
    lambda site: site.set("Settings_General", DatumFormat="MM/DD/YYYY"))
EMPTY_ADDRESS = fleet.declare(with_agent("", listener="127.0.0.1"))
NAME = fleet.declare(with_agent("localhost", listener="127.0.0.1"))
FOREIGN_FOR_BOTH = fleet.declare(with_agent("192.0.2.1"))


def setUpModule():
    fleet.start()


def services_log(site):
    return site.read("Debug/WebServices.txt").decode("latin-1")


def listener_block(site):
    _, status = site.listener_row()
    return f"########### Web Server Started ############\r\n{status}\r\n\r\n"


class Opened(unittest.TestCase):
    def test_the_log_tells_its_address_and_port_and_then_the_listener(self):
        self.assertRegex(services_log(OPENED), re.compile(
            "############ SNMP Agent Started ###########\r\n"
            rf"{TIME}\r\nSNMP Agent Started\r\nIP=127\.0\.0\.1\r\nPort=[1-9]\d*\r\n\r\n"
            rf"{re.escape(listener_block(OPENED))}\Z"))

    def test_its_row_keeps_its_status(self):
        self.assertEqual(OPENED.agent_status(), BEFORE)

    def test_the_start_is_the_only_event(self):
        self.assertEqual(OPENED.event_texts(), [STARTED])


class NotEnabled(unittest.TestCase):
    def test_the_log_says_so(self):
        self.assertEqual(
            services_log(NOT_ENABLED),
            "############ SNMP Agent Started ###########\r\nNot Started\r\n\r\n"
            + listener_block(NOT_ENABLED))

    def test_its_row_keeps_its_status_and_nothing_is_reported(self):
        self.assertEqual(NOT_ENABLED.agent_status(), BEFORE)
        self.assertEqual(NOT_ENABLED.event_texts(), [STARTED])


class AddressThatIsNone(unittest.TestCase):
    SITES = {"an address of another machine": FOREIGN, "no address": NO_ADDRESS,
             "an empty one": EMPTY_ADDRESS, "a name": NAME}

    def test_it_is_one_failure_with_a_text_of_its_own_before_the_start(self):
        for what, site in self.SITES.items():
            with self.subTest(what):
                failure, _ = site.events()
                self.assertEqual((failure.type, failure.source, failure.text),
                                 (FAILURE, SERVICE_OPEN, AGENT_NOT_VALID))
                self.assertEqual(site.event_texts()[1], STARTED)

    def test_the_row_tells_when_and_why(self):
        patterns = {NO_ADDRESS: "%m/%d/%Y %H:%M:%S"}
        for what, site in self.SITES.items():
            with self.subTest(what):
                time, *rest = site.agent_status().split("\r\n")
                self.assertEqual(rest, ["Failed to Start", "IP Address is not valid"])
                pattern = patterns.get(site, "%Y-%m-%d %H:%M:%S")
                self.assertTrue(is_recent(time, pattern))

    def test_the_listener_goes_on_with_an_address_of_its_own(self):
        for what, site in self.SITES.items():
            with self.subTest(what):
                self.assertEqual(site.listener_row()[0], "127.0.0.1")
                self.assertIn(b"</html>", site.get("").body)

    def test_the_log_tells_of_the_listener_alone(self):
        self.assertEqual(services_log(FOREIGN), listener_block(FOREIGN))

    def test_a_listener_that_stands_for_the_same_address_fails_as_well(self):
        site = FOREIGN_FOR_BOTH
        self.assertEqual(site.event_texts(), [AGENT_NOT_VALID, LISTENER_NOT_VALID, STARTED])
        self.assertTrue(site.process.is_running())
        self.assertFalse(site.is_listening())
        self.assertEqual(site.listener_row()[0], "0.0.0.0")


if __name__ == "__main__":
    unittest.main()
