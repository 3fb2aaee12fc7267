"""Settings and files of an installation that are missing or make no sense: the process lives on
whatever it finds, tells what it could not use, and serves where it can."""
import shutil
import unittest

import fleet
from event_file import FAILURE, STARTED
from local_time import is_recent
from site_pages import listed_ports, unstorable_list

STATE = "frmQuillonWeb_dartSvc_State"
SERVICE_OPEN = "modQuillonWeb_ServiceOpen"
READ_INI = "modQuillonWeb_ReadMorvaneIni"
REFRESH = "modQuillonWeb_RefreshSettings"
NOT_VALID = "TCP Server IP Address is not valid"
GENERAL, LISTENER, AGENT = "Settings_General", "Settings_WebServer", "Settings_SnmpAgent"


def without_row(table):
    return lambda site: site.sql("Quillon.mdb", f"DELETE FROM {table}")


def without_table(table):
    return lambda site: site.sql("Quillon.mdb", f"DROP TABLE {table}")


def setting(table, **fields):
    return lambda site: site.set(table, **fields)


def sending_traps(site):
    """Nobody listens for them."""
    site.write_ini("ServerIpAddr=127.0.0.1", "ServerTrapPort=9")
    site.set(AGENT, Enabled=1, SendAppEvents=1, Status="as it was before")


def without_debug_folder(site):
    shutil.rmtree(site.path / "Debug")


def file_for_debug_folder(site):
    without_debug_folder(site)
    site.write("Debug", b"no folder")


def folder_for_event_file(site):
    (site.path / "Debug/AppEventWeb.txt").mkdir()


# The start state fails: one event, and no listener.
NEVER_STARTED = {what: fleet.declare(spoil, comes_up=False) for what, spoil in {
    "no row": without_row(GENERAL),
    "no table": without_table(GENERAL),
    "no date format": setting(GENERAL, DatumFormat=None),
    "no folder of Morvane.ini": setting(GENERAL, SnmpcDir=None),
    "no word on the debug files": setting(GENERAL, DebugMode=None),
    "a word on the debug files that is none": setting(GENERAL, DebugMode="perhaps"),
}.items()}

# The listener cannot be opened: the failure is in the row, and the service runs without it.
NEVER_OPENED = {what: fleet.declare(setting(LISTENER, **fields)) for what, fields in {
    "port 65536": {"TcpPort": 65536},
    "port 4294967376": {"TcpPort": 4294967376},
    "port -1": {"TcpPort": -1},
    "no port": {"TcpPort": None},
    "a port that is no number": {"TcpPort": "http"},
    "no address": {"IpAddr": None},
    "no charset": {"CharSet": None},
    "no word on the listener": {"Enabled": None},
}.items()}
INVALID_ADDRESS = {what: fleet.declare(setting(LISTENER, IpAddr=address))
                   for what, address in {
                       "no address": "nonsense", "an empty one": "", "a name": "localhost",
                       "too large a number": "127.0.0.256", "a blank": " 127.0.0.1"}.items()}
ANY_PORT = fleet.declare(setting(LISTENER, TcpPort=0))

# The agent cannot be opened, or cannot send: the listener goes on.
NO_AGENT_ROW = {what: fleet.declare(sending_traps, spoil) for what, spoil in {
    "no row": without_row(AGENT),
    "no table": without_table(AGENT),
}.items()}
SPOILT_AGENT_ROW = {what: fleet.declare(sending_traps, spoil) for what, spoil in {
    "no community": setting(AGENT, TrapComm=None),
    "no word on the agent": setting(AGENT, Enabled=None),
    "no word on the traps": setting(AGENT, SendAppEvents=None),
}.items()}
UNSENT = {what: fleet.declare(sending_traps, spoil) for what, spoil in {
    "a community longer than a datagram": setting(AGENT, TrapComm=70_000 * "c"),
    "no port of the traps": lambda site: site.write_ini("ServerTrapPort=0"),
    "a port below all": lambda site: site.write_ini("ServerTrapPort=-1"),
}.items()}
HIGH_TRAP_PORT = fleet.declare(lambda site: site.write_ini("ServerTrapPort=32768"))

# Nothing can be told.
SPEECHLESS = {what: fleet.declare(spoil, comes_up=False) for what, spoil in {
    "no debug folder": without_debug_folder,
    "a file in its place": file_for_debug_folder,
    "a folder in place of the event file": folder_for_event_file,
}.items()}


def setUpModule():
    fleet.start()


class BadInputTest(unittest.TestCase):
    def for_each(self, sites, check):
        for what, site in sites.items():
            with self.subTest(what):
                self.assertTrue(site.process.is_running())
                check(site)

    def assert_serves(self, site):
        self.assertIn(b"</html>", site.get("").body)

    def events(self, site):
        """Without those of the hourly pass, which a table that is still spoilt fails as well."""
        return [event for event in site.events() if event.source != REFRESH]


class GeneralSettings(BadInputTest):
    def assert_failed_in_the_start_state(self, site):
        (failure,) = site.events()
        self.assertEqual((failure.type, failure.source), (FAILURE, STATE))
        self.assertNotEqual(failure.text, "")
        self.assertFalse(site.is_listening())

    def test_a_start_state_that_fails_is_one_failure_and_nothing_else(self):
        self.for_each(NEVER_STARTED, self.assert_failed_in_the_start_state)


class ListenerSettings(BadInputTest):
    def assert_runs_without_a_listener(self, site):
        failure, started = self.events(site)
        self.assertEqual((failure.type, failure.source), (FAILURE, SERVICE_OPEN))
        self.assertEqual(started.text, STARTED)
        self.assertFalse(site.is_listening())
        address, status = site.listener_row()
        time, *rest = status.split("\r\n")
        self.assertEqual((address, rest), ("0.0.0.0", ["Failed to Start", ""]))
        self.assertTrue(is_recent(time))
        return failure.text

    def assert_has_another_reason(self, site):
        self.assertNotIn(self.assert_runs_without_a_listener(site), ("", NOT_VALID))

    def assert_has_no_valid_address(self, site):
        self.assertEqual(self.assert_runs_without_a_listener(site), NOT_VALID)

    def test_what_cannot_be_opened_is_told_in_the_row_and_in_one_failure(self):
        self.for_each(NEVER_OPENED, self.assert_has_another_reason)

    def test_an_address_that_is_none_has_a_text_of_its_own(self):
        self.for_each(INVALID_ADDRESS, self.assert_has_no_valid_address)

    def test_port_0_is_one_that_the_system_chooses_and_the_row_tells_it(self):
        address, status = ANY_PORT.listener_row()
        port = status.split("\r\n")[-1].removeprefix("Port=")
        self.assertNotEqual(port, "0")
        ANY_PORT.address, ANY_PORT.port = address, int(port)
        self.assert_serves(ANY_PORT)
        self.assertEqual(ANY_PORT.event_texts(), [STARTED])


class AgentSettings(BadInputTest):
    def assert_serves_after_one_failure(self, site):
        failure, started = self.events(site)
        self.assertEqual((failure.type, failure.source), (FAILURE, SERVICE_OPEN))
        self.assertEqual(started.text, STARTED)
        self.assert_serves(site)

    def assert_row_tells_when_it_failed(self, site):
        time, *rest = site.agent_status().split("\r\n")
        self.assertEqual(rest, ["Failed to Start", ""])
        self.assertTrue(is_recent(time))

    def assert_serves_with_a_failure(self, site):
        self.assertEqual(listed_ports(site.get(unstorable_list("unsent")).body), 10)
        started, failure = site.event_texts()
        self.assertEqual(started, STARTED)
        self.assertIn("unsent", failure)
        self.assertEqual(site.agent_status(), "as it was before")

    def test_what_cannot_be_opened_is_one_failure_and_the_listener_goes_on(self):
        self.for_each({**NO_AGENT_ROW, **SPOILT_AGENT_ROW}, self.assert_serves_after_one_failure)

    def test_the_row_that_is_there_tells_when_it_failed(self):
        self.for_each(SPOILT_AGENT_ROW, self.assert_row_tells_when_it_failed)

    def test_what_cannot_be_sent_hurts_nothing(self):
        self.for_each(UNSENT, self.assert_serves_with_a_failure)

    def test_a_port_beyond_16_bits_with_a_sign_is_a_failure_of_the_ini_file(self):
        failure, started = HIGH_TRAP_PORT.events()
        self.assertEqual((failure.type, failure.source), (FAILURE, READ_INI))
        self.assertEqual(started.text, STARTED)
        self.assert_serves(HIGH_TRAP_PORT)


class NothingCanBeTold(BadInputTest):
    def assert_serves_without_a_word(self, site):
        site.wait_until_listening()
        before = self.debug_entries(site)
        self.assertEqual(listed_ports(site.get(unstorable_list("untold")).body), 10)
        self.assert_serves(site)
        self.assertEqual(self.debug_entries(site), before)
        self.assertLessEqual(before, {"Debug", "Debug/AppEventWeb.txt"})

    @staticmethod
    def debug_entries(site):
        return {path for path in site.tree() if path.startswith("Debug")}

    def test_the_service_starts_and_serves(self):
        self.for_each(SPEECHLESS, self.assert_serves_without_a_word)


if __name__ == "__main__":
    unittest.main()
