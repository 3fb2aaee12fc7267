"""The command line of the console itself: its help, what it makes of a wrong one, and which
installation it works on."""
import os
import unittest

import fleet
from command_help import every_command
from quillonctl import DONE, FAILED, WRONG_USAGE, ask, ctl, settings

SITE = fleet.declare_idle()
OTHER = fleet.declare_idle()

VERSION = "9.05\n"
WRONG = [
    "", "nothing", "read extra", "read --csv", "read --nope", "status --csv", "import now",
    "save", "save --port", "save --nope 1", "save --debug-mode maybe", "save --enabled 1",
    "save --port 80 --port 81", "save 80", "apply-changes", "apply-changes Gold Blue",
    "set-rep-date", "report", "report nothing", "report access nothing", "report access --rows 0",
    "report access --rows 1001", "report access --rows x", "report access --rows 1.5",
    "report access --csv --json", "report disks", "report disks nothing",
    "report disks windows --by nothing", "report disks windows --order up", "report port-name",
    "report port-alias", "report mac-ip", "report disk-search", "report mac-ip a b",
    "receivers nothing", "receivers add", "receivers add --name Ann",
    "receivers add --recipient a@b.c", "receivers change", "receivers change 1",
    "receivers change x --name Ann", "receivers change --name Ann", "receivers remove",
    "receivers remove x", "receivers remove 1.5",
    "receivers list --csv --json", "smtp set", "smtp set --nope x", "smtp set --login maybe",
    "smtp set --password secret", "smtp set --password=secret",
    "smtp set --pass secret", "smtp show --csv", "snmp set",
    "snmp set --enabled maybe", "test-mail", "test-mail a@b.c d@e.f", "--directory", "-C",
    "--nope read",
]


def setUpModule():
    fleet.start()


class Help(unittest.TestCase):
    def test_each_command_tells_its_own(self):
        paths = list(every_command("quillonctl"))
        self.assertGreater(len(paths), 25)
        for path in paths:
            said = ask(SITE, *path, "--help").out
            self.assertIn(f"quillonctl {' '.join(path)}", said)
            self.assertIn("--help", said)

    def test_each_command_knows_the_version_of_the_program(self):
        self.assertEqual(ask(SITE, "--version").out, VERSION)

    def test_help_needs_no_installation(self):
        for words in (("--help",), ("--help-all",), ("--version",), ("save", "--help")):
            self.assertEqual(ctl(SITE, "-C", "/nowhere", *words).status, DONE)


class WrongUsage(unittest.TestCase):
    def test_the_status_is_2_and_nothing_is_written(self):
        before, tree = settings(SITE), SITE.tree()
        for line in WRONG:
            result = ctl(SITE, *line.split())
            self.assertEqual((result.status, result.out), (WRONG_USAGE, ""), line)
            self.assertIn("--help", result.errors, line)
        self.assertEqual((settings(SITE), SITE.tree()), (before, tree))


    def test_what_is_unknown_is_named(self):
        for line, word in (("nothing", "nothing"), ("save --nope 1", "--nope"),
                           ("report nothing", "nothing"), ("receivers remove 1 2", "2")):
            errors = ctl(SITE, *line.split()).errors
            self.assertTrue(errors.startswith("quillonctl: "), errors)
            self.assertIn(word, errors.splitlines()[0], line)

    def test_a_password_on_the_command_line_is_not_repeated(self):
        self.assertNotIn("secret", ctl(SITE, "smtp", "set", "--password=secret").errors)

    def test_numbers_beyond_all_are_wrong_usage(self):
        for number in ("0", "-1", "9223372036854775807", "99999999999999999999"):
            self.assertEqual(ctl(SITE, "receivers", "remove", number).status, WRONG_USAGE, number)


class Directory(unittest.TestCase):
    """Each installation is known by its port."""

    def port(self, *words):
        return int(ask(SITE, *words).fields()["port"])

    def test_it_is_that_of_the_program(self):
        self.assertEqual(self.port("read"), SITE.port)

    def test_another_one_is_named_before_or_behind_the_command(self):
        place = str(OTHER.path)
        for words in (("-C", place, "read"), ("--directory", place, "read"), ("read", "-C", place),
                      ("-C", place + "/", "read"),
                      ("-C", f"{place}/../{OTHER.path.name}", "read")):
            self.assertEqual(self.port(*words), OTHER.port, words)
        for words in (("receivers", "list"), ("smtp", "show"), ("report", "access")):
            ask(SITE, *words, "-C", place)

    def test_what_is_written_there_stays_there(self):
        before = settings(SITE)
        ask(SITE, "save", "--date-format", "MM/DD/YYYY", "-C", str(OTHER.path))
        self.assertEqual(ask(OTHER, "read").fields()["date-format"], "MM/DD/YYYY")
        self.assertEqual(settings(SITE), before)

    def test_a_link_to_the_program_means_where_it_leads(self):
        link = OTHER.path / "quillonctl"
        link.unlink()
        link.symlink_to(SITE.path / "quillonctl")
        self.assertEqual(ask(OTHER, "read").fields()["port"], str(SITE.port))
        link.unlink()
        os.link(SITE.path / "quillonctl", link)

    def test_a_full_disk_behind_standard_output_is_told(self):
        for words in (("read",), ("read", "--json"), ("report", "access", "--csv"),
                      ("set-rep-date", "2014-11-07", "--json"), ("apply-changes", "Blue")):
            result = ctl(SITE, *words, inside=("sh", "-c", 'exec "$@" >/dev/full', "sh"))
            self.assertEqual(result.status, FAILED, words)
            self.assertIn("quillonctl: cannot write to standard output", result.errors)


if __name__ == "__main__":
    unittest.main()
