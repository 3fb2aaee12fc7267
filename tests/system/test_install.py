"""Installing and removing the service, by the real program on a machine of the test's own."""
import pwd
import re
import shutil
import unittest
from contextlib import suppress

import fleet
import machine
from event_file import FAILURE, NOTICE
from machine import Machine

FORM_LOAD = "frmQuillonWeb_Form_Load"
INSTALLED = "Quillon: Quillon Web Service Installed Successfully.\n"
NOT_INSTALLED = "Quillon: Quillon Web Service Failed To Install.\n"
REMOVED = "Quillon: The Quillon Web Service Uninstalled Successfully.\n"
NOT_REMOVED = "Quillon: Quillon Web Service Failed To Uninstall.\n"
NO_DATABASE = "Quillon.mdb does not exits.\n"
ALREADY_RUNNING = "The Quillon Web Service is already running.\n"

SITE = fleet.declare_idle()
RUNNING = fleet.declare()
OLD_UNIT = "[Service]\nExecStart=/bin/false\n"


def setUpModule():
    if not machine.is_available:
        raise unittest.SkipTest(machine.REASON)
    fleet.start()


class InstallTest(unittest.TestCase):
    def setUp(self):
        SITE.remove("Debug/AppEventWeb.txt")

    def events(self):
        return [(event.type, event.source, event.text) for event in SITE.events()]

    def assert_starts_this_program(self, host):
        self.assertEqual(host.unit_settings("ExecStart"), [str(SITE.path / "quillonweb")])

    def reason_of_one_failure(self):
        (failure,) = self.events()
        self.assertEqual(failure[:2], (FAILURE, FORM_LOAD))
        self.assertNotEqual(failure[2], "")
        return failure[2]

    def installed(self, **options):
        """A machine on which the service is installed, and no event tells of it any more."""
        host = Machine(self, **options)
        self.assertEqual(host.run(SITE, "-install_noMsg"), (0, ""))
        SITE.remove("Debug/AppEventWeb.txt")
        return host


class Install(InstallTest):
    def assert_installs(self, options, words, **surroundings):
        SITE.remove("Debug/AppEventWeb.txt")
        host = Machine(self)
        self.assertEqual(host.run(SITE, *options, **surroundings), (0, words))
        self.assertEqual(self.events(), [(NOTICE, FORM_LOAD, "Service Installed")])
        self.assertEqual(len(host.registered()), 1)
        return host

    def test_it_says_so(self):
        self.assert_installs(["-install"], INSTALLED)

    def test_without_a_word_where_that_is_asked_for(self):
        self.assert_installs(["-install_noMsg"], "")

    def test_every_option_that_begins_like_it_installs_and_says_so(self):
        for options in (["-installation"], ["-install_nomsg"], ["-install_noMsg2"],
                        ["-install", "now"], ["-install_noMsg", "now"]):
            with self.subTest(options):
                self.assert_installs(options, INSTALLED)

    def test_the_unit_starts_this_program_without_an_option(self):
        host = self.assert_installs(["-install"], INSTALLED)
        self.assert_starts_this_program(host)

    def test_the_unit_is_made_to_start_with_the_machine(self):
        host = self.assert_installs(["-install"], INSTALLED)
        enabling = [call for call in host.calls() if call.startswith("systemctl enable")]
        self.assertEqual(len(enabling), 1)
        self.assertIn(host.unit().name, enabling[0])

    def test_the_user_of_the_unit_is_made_where_there_is_none(self):
        host = self.assert_installs(["-install"], INSTALLED)
        (user,) = host.unit_settings("User")
        self.assertNotEqual(user, "root")
        with suppress(KeyError):
            pwd.getpwnam(user)
            self.skipTest(f"this machine has a user {user}")
        making = [call for call in host.calls() if call.startswith("useradd")]
        self.assertEqual(len(making), 1)
        self.assertEqual(making[0].split()[-1], user)

    def test_the_working_directory_does_not_matter(self):
        elsewhere = SITE.path / "WebReports"
        (elsewhere / "Debug").mkdir()
        self.addCleanup(shutil.rmtree, elsewhere / "Debug")
        host = self.assert_installs(["-install"], INSTALLED, cwd=elsewhere)
        self.assert_starts_this_program(host)
        self.assertEqual(list((elsewhere / "Debug").iterdir()), [])

    def test_an_older_registration_is_replaced(self):
        host = self.installed()
        host.unit().write_text(OLD_UNIT)
        self.assertEqual(host.run(SITE, "-install"), (0, INSTALLED))
        self.assertEqual(len(host.registered()), 1)
        self.assert_starts_this_program(host)

    def test_a_database_that_is_none_is_not_looked_into(self):
        SITE.rename("Quillon.mdb", "Quillon.away")
        self.addCleanup(SITE.rename, "Quillon.away", "Quillon.mdb")
        SITE.write("Quillon.mdb", b"This is no database.")
        self.assert_installs(["-install"], INSTALLED)

    def test_without_the_debug_folder_it_installs_without_a_line(self):
        SITE.rename("Debug", "Debug.away")
        self.addCleanup(SITE.rename, "Debug.away", "Debug")
        self.assertEqual(Machine(self).run(SITE, "-install"), (0, INSTALLED))
        self.assertFalse((SITE.path / "Debug").exists())


class InstallFailure(InstallTest):
    def assert_fails(self, host, before=None, options=("-install",)):
        said = host.run(SITE, *options)
        reason = self.reason_of_one_failure()
        self.assertEqual(said, (1, f"{NOT_INSTALLED}{reason}\n"))
        self.assertEqual(host.registered(), before or {})

    def test_without_the_database_it_says_so_and_leaves_no_trace(self):
        SITE.rename("Quillon.mdb", "Quillon.away")
        self.addCleanup(SITE.rename, "Quillon.away", "Quillon.mdb")
        for option in ("-install", "-install_noMsg", "-installation"):
            with self.subTest(option):
                host = Machine(self)
                self.assertEqual(host.run(SITE, option), (1, NO_DATABASE))
                self.assertEqual((self.events(), host.registered(), host.calls()), ([], {}, []))

    def test_where_systemctl_refuses_everything(self):
        self.assert_fails(Machine(self, refusing=True))

    def test_the_failure_is_told_also_where_success_would_not_be(self):
        self.assert_fails(Machine(self, refusing=True), options=["-install_noMsg"])

    def test_where_systemctl_refuses_the_last_step(self):
        host = Machine(self, refusing="enable")
        self.assert_fails(host)
        self.assertTrue([call for call in host.calls() if " enable " in call])

    def test_an_older_registration_is_there_again(self):
        host = self.installed()
        host.unit().write_text(OLD_UNIT)
        before = host.registered()
        host.refuse("enable")
        self.assert_fails(host, before)

    def test_where_there_is_no_systemctl(self):
        self.assert_fails(Machine(self, has_systemctl=False))

    def test_where_the_folder_of_the_units_cannot_be_written(self):
        self.assert_fails(Machine(self, is_writable=False))


class Uninstall(InstallTest):
    def assert_fails(self, host, before=None):
        """The reason goes to the terminal alone."""
        status, words = host.run(SITE, "-uninstall")
        self.assertEqual(status, 1)
        self.assertRegex(words, rf"\A{re.escape(NOT_REMOVED)}[^\n]+\n\Z")
        self.assertEqual((self.events(), host.registered()), ([], before or {}))

    def test_it_says_so_and_leaves_no_unit_and_no_line(self):
        host = self.installed()
        name = host.unit().name
        before = len(host.calls())
        self.assertEqual(host.run(SITE, "-uninstall"), (0, REMOVED))
        self.assertEqual(host.registered(), {})
        self.assertEqual(self.events(), [])
        calls = " ".join(host.calls()[before:])
        self.assertIn("disable", calls)
        self.assertIn(name, calls)

    def test_no_line_goes_to_the_working_directory_either(self):
        host = self.installed()
        elsewhere = SITE.path / "WebReports"
        (elsewhere / "Debug").mkdir()
        self.addCleanup(shutil.rmtree, elsewhere / "Debug")
        self.assertEqual(host.run(SITE, "-uninstall", cwd=elsewhere), (0, REMOVED))
        self.assertEqual(list((elsewhere / "Debug").iterdir()), [])

    def test_the_database_is_not_needed(self):
        host = self.installed()
        SITE.rename("Quillon.mdb", "Quillon.away")
        self.addCleanup(SITE.rename, "Quillon.away", "Quillon.mdb")
        self.assertEqual(host.run(SITE, "-uninstall"), (0, REMOVED))

    def test_where_nothing_is_installed_it_fails(self):
        self.assert_fails(Machine(self))

    def test_where_systemctl_refuses_the_registration_stays(self):
        host = self.installed()
        before = host.registered()
        for word in (True, "disable"):
            with self.subTest(word):
                host.refuse(word)
                self.assert_fails(host, before)


class WhileRunning(unittest.TestCase):
    def test_every_option_is_refused_and_changes_nothing(self):
        for option in ("-install", "-install_noMsg", "-uninstall"):
            with self.subTest(option):
                host = Machine(self)
                self.assertEqual(host.run(RUNNING, option), (1, ALREADY_RUNNING))
                self.assertEqual((host.registered(), host.calls()), ({}, []))
        self.assertTrue(RUNNING.process.is_running())


if __name__ == "__main__":
    unittest.main()
