"""The unit that installing writes, judged by systemd's own tools."""
import shutil
import subprocess
import unittest

import fleet
import machine
from machine import Machine
from waiting import DEADLINE

ANALYZER = shutil.which("systemd-analyze")
EXPOSURE_LIMIT = 15  # of 100

SITE = fleet.declare_idle()
# The blanks, the percent sign, the dollar and the semicolon mean something in a unit.
ODD_PLACE = fleet.declare_idle(place="at 100% of $HOME; now")


def setUpModule():
    if not machine.is_available:
        raise unittest.SkipTest(machine.REASON)
    if ANALYZER is None:
        raise unittest.SkipTest("systemd-analyze is not installed")
    fleet.start()


class UnitFile(unittest.TestCase):
    def installed(self, site):
        host = Machine(self)
        self.assertEqual(host.run(site, "-install_noMsg"), (0, ""))
        return host

    def analyze(self, *command):
        return subprocess.run([ANALYZER, *command], stdout=subprocess.PIPE, text=True,
                              stderr=subprocess.STDOUT, timeout=DEADLINE)

    def assert_verified(self, site):
        result = self.analyze("verify", self.installed(site).unit())
        self.assertEqual((result.returncode, result.stdout), (0, ""))

    def test_systemd_finds_nothing_to_object_to(self):
        self.assert_verified(SITE)

    def test_a_path_of_odd_letters_is_found_by_systemd(self):
        self.assert_verified(ODD_PLACE)

    def test_the_service_is_hardly_exposed(self):
        result = self.analyze("security", "--offline=yes", f"--threshold={EXPOSURE_LIMIT}",
                              self.installed(SITE).unit())
        self.assertEqual(result.returncode, 0, result.stdout)

    def test_it_reports_its_readiness_and_starts_with_the_machine(self):
        host = self.installed(SITE)
        self.assertEqual(host.unit_settings("Type"), ["notify"])
        self.assertEqual(host.unit_settings("WantedBy"), ["multi-user.target"])


if __name__ == "__main__":
    unittest.main()
