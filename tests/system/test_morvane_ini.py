"""The rules of Morvane.ini, told by the address that the listener is bound to: its setting
"0.0.0.0" stands for the address of that file."""
import unittest

import fleet
from event_file import FAILURE

# What the lines are, and the address that they give.
RULES = {
    "no key leaves the loopback": ([], "127.0.0.1"),
    "blanks around key and value go": (["  ServerIpAddr   =   127.0.0.2   "], "127.0.0.2"),
    "sections and empty lines do not matter": (
        ["", "[Any]", "", "ServerIpAddr=127.0.0.3", "[Other]", "Any=127.0.0.9"], "127.0.0.3"),
    "a line behind a semicolon or a bracket is none": (
        ["ServerIpAddr=127.0.0.4", ";ServerIpAddr=127.0.0.9", "[ServerIpAddr=127.0.0.9"],
        "127.0.0.4"),
    "a later line wins": (["ServerIpAddr=127.0.0.9", "ServerIpAddr=127.0.0.5"], "127.0.0.5"),
    "keys are compared to the letter": (
        ["ServerIpAddr=127.0.0.6", "serveripaddr=127.0.0.9", "ServerIpAddress=127.0.0.9"],
        "127.0.0.6"),
    "a bad port ends the reading": (
        ["ServerIpAddr=127.0.0.7", "ServerTrapPort=snmp", "ServerIpAddr=127.0.0.9"], "127.0.0.7"),
}


def with_lines(lines):
    return lambda site: site.write_ini(*lines)


SITES = {rule: fleet.declare(with_lines(lines)) for rule, (lines, _) in RULES.items()}
UNIX_LINES = fleet.declare(
    lambda site: site.write_ini("Any=1", "ServerIpAddr=127.0.0.8", line_end="\n"))
OWN_ADDRESS = fleet.declare(
    lambda site: site.write_ini("ServerIpAddr=127.0.0.9"),
    lambda site: site.set("Settings_WebServer", IpAddr="127.0.0.10"))


def setUpModule():
    fleet.start()


class MorvaneIni(unittest.TestCase):
    def assert_bound_to(self, site, address):
        site.address = address
        self.assertEqual(site.get("").content_type, "text/html")
        self.assertEqual(site.listener_row()[0], address)

    def test_every_rule(self):
        for rule, (_, address) in RULES.items():
            with self.subTest(rule):
                self.assert_bound_to(SITES[rule], address)

    def test_lines_may_end_as_they_do_on_unix(self):
        self.assert_bound_to(UNIX_LINES, "127.0.0.8")

    def test_an_address_of_the_settings_comes_before_that_of_the_file(self):
        self.assert_bound_to(OWN_ADDRESS, "127.0.0.10")

    def test_a_port_that_is_no_number_is_one_failure(self):
        site = SITES["a bad port ends the reading"]
        failures = [event for event in site.events() if event.type == FAILURE]
        self.assertEqual([event.source for event in failures], ["modQuillonWeb_ReadMorvaneIni"])

    def test_no_other_line_is_a_failure(self):
        for rule, site in SITES.items():
            if rule != "a bad port ends the reading":
                self.assertEqual(len(site.events()), 1, rule)


if __name__ == "__main__":
    unittest.main()
