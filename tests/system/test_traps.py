"""Every line of the event file as an SNMP trap, taken by a receiver that is not ours."""
import shutil
import signal
import time
import unittest

import fleet
import trap_receiver
from client import request
from event_file import FAILURE, NOTICE, STARTED, STOPPED
from site_pages import listed_ports, unstorable_list
from trap_receiver import TrapReceiver

HOME, AWAY, NOWHERE = "127.0.0.1", "127.0.0.2", "127.0.0.3"
RECEIVER = TrapReceiver(HOME, AWAY)  # and nobody at the third

PREFIX = "1.3.6.1.4.1.7381.2.1"
CUT = 240
LONG_NAME = "switch-access-port-top10-" + 300 * "n"  # longer than a file's, and quoted whole


def sending_traps(server=HOME, listener=None, **agent):
    """Traps go to the receiver on the server's address."""
    def prepare(site):
        RECEIVER.listen()
        site.write_ini(*RECEIVER.ini_lines(server))
        site.set("Settings_SnmpAgent",
                 **{"Enabled": 1, "SendAppEvents": 1, "TrapComm": "public", **agent})
        if listener:
            site.listen_on(listener)
    return prepare


def without_debug_folder(site):
    shutil.rmtree(site.path / "Debug")


# The receiver tells the installations by the addresses of their listeners.
LIFE = fleet.declare(sending_traps())
OTHER = fleet.declare(sending_traps(AWAY, listener="127.0.1.2", TrapComm="net-watch 9"))
LIVE = fleet.declare(sending_traps(listener="127.0.1.3"))
CHANGED = fleet.declare(sending_traps(listener="127.0.1.4"))
SWITCHED_OFF = fleet.declare(sending_traps(listener="127.0.1.5", SendAppEvents=0))
WITHOUT_AGENT = fleet.declare(sending_traps(listener="127.0.1.6", Enabled=0))
WITHOUT_FOLDER = fleet.declare(sending_traps(listener="127.0.1.7"), without_debug_folder,
                               comes_up=False)
UNHEARD = fleet.declare(sending_traps(NOWHERE, listener="127.0.1.8"))


def setUpModule():
    if not trap_receiver.is_available:
        raise unittest.SkipTest("snmptrapd is not installed")
    fleet.start()


def lines_of(site):
    return [(event.type, event.source, event.text) for event in site.events()]


def cause_failure(site, word):
    """One failure, whose trap has been sent when the list comes back."""
    return site.get(unstorable_list(word)).body


class Life(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cause_failure(LIFE, "once")
        LIFE.process.send_signal(signal.SIGTERM)
        LIFE.process.wait_until_over()
        cls.seconds = time.monotonic() - LIFE.process.started_at
        RECEIVER.wait_for_trap(LIFE, STOPPED)
        cls.traps = RECEIVER.traps_of(LIFE)

    def test_each_line_of_the_event_file_is_one_trap_in_its_order(self):
        self.assertEqual([trap.event for trap in self.traps], lines_of(LIFE))

    def test_start_failure_and_stop_are_the_whole_of_it(self):
        state = "frmQuillonWeb_dartSvc_State"
        started, failed, stopped = [trap.event for trap in self.traps]
        self.assertEqual(started, (NOTICE, state, STARTED))
        self.assertEqual(failed[:2], (FAILURE, "modHtml_SaveToCache"))
        self.assertIn(unstorable_list("once"), failed[2])
        self.assertEqual(stopped, (NOTICE, state, STOPPED))

    def test_the_message_is_an_enterprise_specific_trap_of_version_1(self):
        for trap in self.traps:
            self.assertEqual((trap.version, trap.community), ("v1", "public"))
            self.assertEqual(trap.enterprise, f"{PREFIX}.2")
            self.assertEqual((trap.generic, trap.specific), (6, 1))

    def test_the_agent_is_the_address_of_morvane_ini(self):
        for trap in self.traps:
            self.assertEqual((trap.agent_address, trap.source, trap.target), (HOME, HOME, HOME))

    def test_the_six_variables_have_their_identifiers_and_kinds(self):
        for trap in self.traps:
            identifiers = [identifier for identifier, _ in trap.varbinds]
            self.assertEqual(identifiers, [f"{PREFIX}.1.{number}" for number in range(1, 7)])
            kinds = [type(value) for _, value in trap.varbinds]
            self.assertEqual(kinds, [bytes, bytes, bytes, bytes, bytes, int])

    def test_the_first_two_name_the_listener_and_the_program(self):
        for trap in self.traps:
            self.assertEqual([value for _, value in trap.varbinds[:2]],
                             [HOME.encode(), b"Quillon Web"])

    def test_module_and_procedure_are_variables_of_their_own(self):
        self.assertEqual([value for _, value in self.traps[1].varbinds[2:4]],
                         [b"modHtml", b"SaveToCache"])

    def test_the_uptime_is_hundredths_in_whole_seconds_since_the_start(self):
        uptimes = [trap.uptime for trap in self.traps]
        for uptime in uptimes:
            self.assertEqual(uptime % 100, 0)
        self.assertEqual(uptimes, sorted(uptimes))
        self.assertGreaterEqual(uptimes[0], 3000)
        self.assertLess(uptimes[-1], 100 * self.seconds)


class Settings(unittest.TestCase):
    def test_source_and_agent_are_the_address_of_morvane_ini_and_not_the_listeners(self):
        trap = RECEIVER.wait_for_trap(OTHER, STARTED)
        self.assertEqual((trap.agent_address, trap.source, trap.target), (AWAY, AWAY, AWAY))
        self.assertEqual(trap.listener_address, "127.0.1.2")

    def test_the_community_is_that_of_the_settings(self):
        self.assertEqual(RECEIVER.wait_for_trap(OTHER, STARTED).community, "net-watch 9")

    def test_target_and_community_stay_those_of_the_start(self):
        CHANGED.write_ini(*RECEIVER.ini_lines(AWAY))
        CHANGED.set("Settings_SnmpAgent", TrapComm="later")
        cause_failure(CHANGED, "changed")
        trap = RECEIVER.wait_for_trap(CHANGED, "changed")
        self.assertEqual((trap.target, trap.agent_address, trap.community),
                         (HOME, HOME, "public"))


class Texts(unittest.TestCase):
    def test_a_long_text_is_whole_in_the_file_and_cut_in_the_trap(self):
        LIVE.get(LONG_NAME)
        line = next(event for event in LIVE.events() if "nnn" in event.text)
        self.assertGreater(len(line.text), CUT)
        trap = RECEIVER.wait_for_trap(LIVE, "nnn")
        self.assertEqual(trap.event, (line.type, line.source, line.text[:CUT]))

    def test_letters_outside_of_ascii_arrive_as_the_bytes_of_the_line(self):
        cause_failure(LIVE, "B\xfcro-\xc4\xff")
        text = RECEIVER.wait_for_trap(LIVE, "ro-").varbinds[4][1]
        self.assertIn(b"B\xfcro-\xc4\xff", text)
        self.assertIn(text.decode("latin-1"), LIVE.event_texts())

    def test_a_failure_inside_the_wait_of_another_is_sent_before_it(self):
        words = ("first", "second")
        with LIVE.connect() as one, LIVE.connect() as other:
            for client, word in zip((one, other), words):
                client.send(request(unstorable_list(word)))
            for client in (one, other):
                client.receive()
        traps = [RECEIVER.wait_for_trap(LIVE, word) for word in words]
        lines = [line for line in lines_of(LIVE) if any(word in line[2] for word in words)]
        sent = [trap.event for trap in RECEIVER.traps_of(LIVE) if trap in traps]
        self.assertEqual(len(lines), 2)
        self.assertEqual(sent, lines[::-1])


class Silence(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        WITHOUT_FOLDER.wait_until_listening()
        for site in (SWITCHED_OFF, WITHOUT_AGENT, WITHOUT_FOLDER):
            cause_failure(site, "unsent")
        # They all send to one socket, so what they had sent would be there before this.
        cause_failure(LIVE, "behind")
        RECEIVER.wait_for_trap(LIVE, "behind")

    def assert_lines_and_no_trap(self, site):
        self.assertEqual(RECEIVER.traps_of(site), [])
        started, failed = site.event_texts()
        self.assertEqual(started, STARTED)
        self.assertIn("unsent", failed)

    def test_with_the_switch_off_there_are_only_lines(self):
        self.assert_lines_and_no_trap(SWITCHED_OFF)

    def test_without_the_agent_there_are_only_lines_whatever_the_switch_says(self):
        self.assert_lines_and_no_trap(WITHOUT_AGENT)

    def test_without_the_debug_folder_there_is_neither_line_nor_trap(self):
        self.assertEqual(RECEIVER.traps_of(WITHOUT_FOLDER), [])
        self.assertNotIn("Debug", WITHOUT_FOLDER.tree())


class Unheard(unittest.TestCase):
    def test_a_target_where_nobody_listens_hurts_nothing(self):
        for word in ("one", "two", "three"):
            self.assertEqual(listed_ports(cause_failure(UNHEARD, word)), 10)
        self.assertEqual(len(UNHEARD.events()), 4)
        self.assertTrue(UNHEARD.process.is_running())
        self.assertEqual(UNHEARD.process.said(), "")


if __name__ == "__main__":
    unittest.main()
