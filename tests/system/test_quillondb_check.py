"""The check of an installation: silent where a service runs well, and one line for each thing that
is wrong. It reads everything and changes nothing."""
import os
import re
import shutil
import socket
import sqlite3
import unittest
from datetime import timedelta

import fleet
from local_time import local_now
from own_site import DATABASES, OwnSiteTest, file_states
from quillondb import (
    AS_NOBODY, CAN_BE_NOBODY, DONE, FAILED, NEEDS_NOBODY, NOBODY, WRONG_USAGE, db, is_plain)
from report_day import TODAY, YESTERDAY
from site_pages import listed_ports
from test_failed_start import PORT_TAKEN

if CAN_BE_NOBODY:
    from test_quillonctl_owner import give_away, run_by_its_owner

OTHER_MACHINE = "192.0.2.1"
UNPRIVILEGED = "/proc/sys/net/ipv4/ip_unprivileged_port_start"
BRIEF_LINES = 10


def with_marks(report, last_import):
    def prepare(site):
        site.sql("History.mdb", "UPDATE General_Info SET LastReport = ?, LastImport = ?",
                 report, last_import)
    return prepare


imported_today = with_marks(f"{TODAY} 03:10:00", f"{TODAY} 04:00:20")

RUNNING = fleet.declare(imported_today)
if CAN_BE_NOBODY:
    OF_NOBODY = fleet.declare(imported_today, run_by_its_owner, give_away)


def setUpModule():
    fleet.start()


def day(age):
    return f"{local_now() - timedelta(days=age):%Y-%m-%d}"


# What is done to an installation that has never seen a report.

def sql(name, statement):
    return lambda site: site.sql(name, statement)


def setting(table, **fields):
    return lambda site: site.set(table, **fields)


def without(name):
    return lambda site: site.remove(name)


def without_folder(name):
    return lambda site: (site.path / name).rmdir()


def holding(name, data):
    return lambda site: site.write(name, data)


def with_ini(*lines):
    return lambda site: site.write_ini(*lines)


def listening_beside_a_foreign_product(site):
    site.set("Settings_WebServer", IpAddr="127.0.0.1")
    site.write_ini(f"ServerIpAddr={OTHER_MACHINE}", "ServerTrapPort=162")


def readable_by_all(site):
    (site.path / "Quillon.mdb").chmod(0o644)


def without_word(site):
    lines = site.read("WebReports/Language.ini").splitlines(keepends=True)
    site.write("WebReports/Language.ini",
               b"".join(line for line in lines if not line.startswith(b"7\t")))


def with_word_too_far(site):
    site.write("WebReports/Language.ini", site.read("WebReports/Language.ini") + b"101\tx\ty\r\n")


def left_by_a_restore(site):
    (site.path / "~restore-old").mkdir()


# Of each the damage, and a pattern of the one line that tells it.
FINDINGS = {
    "a table": (sql("Reports.mdb", "DROP TABLE MAC"), r"Reports\.mdb: the table MAC is missing; .*restore a backup .*"),
    "a column": (sql("Reports.mdb", "ALTER TABLE MAC DROP COLUMN MacAddr"),
                 r"Reports\.mdb: the column MacAddr of MAC is missing; .*restore a backup .*"),
    "a row": (sql("Quillon.mdb", "DELETE FROM Settings_SmtpServer"),
              r"Quillon\.mdb: Settings_SmtpServer has 0 rows where exactly one belongs; .*"),
    "a file": (without("History.mdb"),
               r"History\.mdb: the file is missing; .*restore a backup .*"),
    "damage": (holding("Reports.mdb", b"This is no database. " * 500),
               r"Reports\.mdb: .*not a database.*"),
    "a date": (with_marks("2 May 2024", f"{TODAY} 04:00:20"), r"History\.mdb: .*LastReport.*"),
    "a setting": (setting("Settings_WebServer", TcpPort=70_000), r"Quillon\.mdb: .*TcpPort.*"),
    "rights of others": (readable_by_all,
                         r"Quillon\.mdb: other users can reach the file; run 'chmod 600 .*/Quillon\.mdb'"),
    "a folder": (without_folder("WebReports/Mail"), r"WebReports/Mail: the folder is missing; run 'install -d .*/WebReports/Mail'"),
    "a file of the pages": (
        without("WebReports/qws.css"),
        r"WebReports/qws\.css: the file is missing, so pages have no colours.*"),
    "a killed restore": (left_by_a_restore,
                         r"~restore-old: a restore was killed before its end, .*restore again.*"),
    "an old report": (with_marks(f"{day(3)} 03:10:00", f"{day(3)} 04:00:20"),
                      rf"History\.mdb: the last report is of {day(3)} 03:10:00, so pages .*"),
    "a report to come": (with_marks(f"{day(-1)} 03:10:00", f"{TODAY} 04:00:20"),
                         rf"History\.mdb: the last report is of {day(-1)} 03:10:00, a moment .*"),
    "a report that was not imported": (
        with_marks(f"{TODAY} 03:10:00", f"{YESTERDAY} 04:00:20"),
        rf"History\.mdb: the last report is of {TODAY} .* was not imported at the full hour; .*"),
    "Morvane.ini": (without("Morvane.ini"),
                    r".*/Morvane\.ini is missing; the service ends at once without it, .*"),
    "a trap port": (with_ini("ServerIpAddr=127.0.0.1", "ServerTrapPort=1\x1b[2J62"),
                    r".*/Morvane\.ini: ServerTrapPort is '1\?\[2J62', so no traps arrive.*"),
    "the product's address": (
        listening_beside_a_foreign_product,
        rf"ServerIpAddr of Morvane\.ini is '{OTHER_MACHINE}', from where no traps leave .*"),
    "the address": (setting("Settings_WebServer", IpAddr=OTHER_MACHINE),
                    rf"Quillon\.mdb: IpAddr in Settings_WebServer is '{OTHER_MACHINE}', no .*"),
    "a word": (without_word, r'WebReports/Language\.ini: no text for 7, so pages show "n/a".*'),
    "a line that ends the reading": (
        with_word_too_far, r"WebReports/Language\.ini: .*so correct its number \(1 to 100\)"),
    "a charset": (setting("Settings_WebServer", CharSet="no charset"),
                  r"Quillon\.mdb: .*no charset.*"),
}


class CheckTest(OwnSiteTest):
    def check(self, *options, site=None, **surroundings):
        """Changes nothing, and says nothing that a terminal could not stand."""
        site = site or self.site
        before = file_states(site.path)
        result = db("check", *options, site.path, **surroundings)
        self.assertEqual(file_states(site.path), before)
        self.assertTrue(is_plain(result.out + result.errors), repr(result))
        return result

    def assert_ok(self, result):
        self.assertEqual(result, (DONE, "ok\n", ""))

    def assert_finds(self, result, *patterns, site=None):
        site = site or self.site
        self.assertEqual((result.status, result.errors),
                         (FAILED, f"quillondb: {site.path} needs the repairs listed\n"))
        lines = result.out.splitlines()
        self.assertEqual(len(lines), len(patterns), lines)
        for line, pattern in zip(lines, patterns):
            self.assertRegex(line, re.compile(pattern + "$"))


class Findings(CheckTest):
    def test_a_new_installation_is_ok(self):
        self.assert_ok(self.check())

    def test_each_thing_that_is_wrong_is_told_in_a_line(self):
        for number, (name, (damage, pattern)) in enumerate(FINDINGS.items()):
            with self.subTest(name):
                site = self.new_site(f"site{number}")
                damage(site)
                self.assert_finds(self.check(site=site), pattern, site=site)

    def test_findings_are_told_as_they_are_made(self):
        """Whoever ends a check that takes long has read what it found until then."""
        self.site.remove("WebReports/qws.css")
        other = sqlite3.connect(self.site.path / "History.mdb", isolation_level=None)
        self.addCleanup(other.close)
        other.execute("PRAGMA locking_mode = EXCLUSIVE")
        other.execute("UPDATE General_Info SET ReportStart = ''")
        result = db("check", "--brief", self.site.path, inside=("timeout", "2"))
        self.assertNotEqual(result.status, FAILED)
        self.assertTrue(result.out.startswith("WebReports/qws.css: "), result)

    def test_a_port_that_another_program_has_is_told(self):
        with socket.create_server(("127.0.0.1", self.site.port)):
            self.assert_finds(
                self.check(), rf"port {self.site.port} of 127\.0\.0\.1 is in use by another .*")
        self.assert_ok(self.check())

    def test_a_locale_that_the_machine_does_not_have_is_told_at_a_start_alone(self):
        """A terminal's own is none of the service's."""
        self.assert_ok(self.check(locale="xx_YY.UTF-8"))
        at_a_start = ("env", "INVOCATION_ID=0123456789abcdef")
        self.assert_finds(self.check(locale="xx_YY.UTF-8", inside=at_a_start),
                          r"the locale 'xx_YY\.UTF-8' is not on this machine, so .*")

    @unittest.skipUnless(os.geteuid() == 0 and shutil.which("unshare"), "needs root and unshare")
    def test_a_disk_with_little_room_is_told(self):
        """A small one, with a copy of the installation, that nobody else sees."""
        disk = self.folder / "disk"
        disk.mkdir()
        copy = disk / "site"
        script = 'mount -t tmpfs -o size=64m none "$1" && cp -a "$2" "$3" && shift 3 && "$@"'
        inside = ("unshare", "-m", "sh", "-c", script, "sh", disk, self.site.path, copy)
        self.site.set("Settings_General", SnmpcDir=str(copy))
        result = db("check", copy, inside=inside)
        self.assertEqual(result.status, FAILED, result)
        self.assertRegex(
            result.out,
            rf"^{copy}: the disk has \d\d MB left; make room for at least 500 MB, .*\n$")

    def test_what_is_no_directory_is_told(self):
        for place in (self.folder / "nowhere", self.site.path / "Quillon.mdb"):
            result = db("check", place)
            self.assertEqual((result.status, result.out), (FAILED, f"{place} is no directory\n"))

    def test_wrong_usage_has_a_status_of_its_own(self):
        for words in ((), ("",), ("--long", self.site.path), (self.site.path, "more")):
            with self.subTest(words):
                self.assertEqual(db("check", *words).status, WRONG_USAGE)


class Brief(CheckTest):
    def test_a_few_findings_are_told_as_ever(self):
        self.site.remove("WebReports/qws.css")
        self.assertEqual(self.check("--brief"), self.check())
        self.assertEqual(self.check("--brief").status, FAILED)

    def test_an_installation_without_findings_is_ok(self):
        self.assert_ok(self.check("--brief"))

    def test_of_many_there_are_ten_lines_and_the_count_of_the_others(self):
        for table in ("VLAN", "MAC", "HostDiskInfo"):
            self.site.sql("Reports.mdb", f"DROP TABLE {table}")
        for number in range(1, 10):
            self.site.sql("History.mdb", f"DROP TABLE VLAN_Day{number:02}")
        for name in ("qws.css", "HelpText.txt", "Favicon.ico"):
            self.site.remove(f"WebReports/{name}")
        everything = self.check().out.splitlines()
        brief = self.check("--brief")
        lines = brief.out.splitlines()
        self.assertEqual(brief.status, FAILED)
        self.assertEqual(len(everything), 3 + 3 + 5 + 1)
        self.assertLessEqual(len(lines + brief.errors.splitlines()), BRIEF_LINES)
        self.assertEqual(lines[-1], f"and {len(everything) - len(lines) + 1} more;"
                                    " 'quillondb check' tells all")
        self.assertLessEqual(set(lines[:-1]), set(everything))
        for name in ("qws.css", "HelpText.txt", "Favicon.ico"):
            self.assertIn(f"WebReports/{name}: ", brief.out)


@NEEDS_NOBODY
class RightsOfTheService(CheckTest):
    """Which are those of the owner of the directory, whoever asks."""

    def setUp(self):
        super().setUp()
        self.folder.chmod(0o711)
        for path in (self.site.path, *self.site.path.rglob("*")):
            os.chown(path, NOBODY, NOBODY)

    def test_files_of_his_own_are_ok(self):
        self.assert_ok(self.check())
        self.assert_ok(self.check(inside=AS_NOBODY))

    def test_what_he_may_not_use_is_told(self):
        cases = {"Reports.mdb": "read and write", "WebReports/Language.ini": "read",
                 "WebReports/Cache": "read and write"}
        for name, verb in cases.items():
            with self.subTest(name):
                path = self.site.path / name
                os.chown(path, 0, 0)
                path.chmod(0o700 if path.is_dir() else 0o600)
                self.assert_finds(
                    self.check(), rf"{name}: nobody, whom the service runs as, may not {verb} it;"
                                  r" run 'chown nobody .*' and 'chmod u\+\w+ .*'")
                os.chown(path, NOBODY, NOBODY)
        self.assert_ok(self.check())

    def test_a_folder_above_that_he_may_not_enter_is_told(self):
        self.folder.chmod(0o700)
        self.assert_finds(
            self.check(),
            rf"{self.folder}: nobody, whom the service runs as, may not enter the folder; .*")

    def test_a_directory_that_the_caller_may_not_enter_is_all_that_is_told(self):
        os.chown(self.site.path, 0, 0)
        self.site.path.chmod(0o700)
        self.assert_finds(self.check(inside=AS_NOBODY),
                          rf"{self.site.path}: you may not enter it; run this as root")

    def test_root_opens_nothing_that_he_has_put_beside_a_database(self):
        for name in ("Quillon.mdb-journal", "History.mdb-wal"):
            with self.subTest(name):
                path = self.site.path / name
                os.mkfifo(path)
                result = db("check", self.site.path)
                self.assertEqual(result.status, FAILED, result)
                self.assertIn(f"{path} is no ordinary file", result.out)
                path.unlink()

    def test_what_root_checks_stays_his(self):
        for name in DATABASES:
            self.site.sql(name, "PRAGMA user_version")
        for path in (self.site.path, *self.site.path.rglob("*")):
            os.chown(path, NOBODY, NOBODY)
        self.assert_ok(self.check())
        self.assertEqual({path.stat().st_uid for path in self.site.path.rglob("*")}, {NOBODY})

    def test_a_port_that_he_has_no_right_to_is_told(self):
        with open(UNPRIVILEGED) as file:
            first = int(file.read())
        if first < 2:
            self.skipTest("on this machine each port is for everybody")
        self.site.set("Settings_WebServer", TcpPort=1)
        self.assert_finds(self.check(), r"Quillon\.mdb: TcpPort in Settings_WebServer is 1, for"
                                        r" which nobody has no right; .*")


class BesideTheService(CheckTest):
    def test_one_that_runs_well_is_ok_and_goes_on(self):
        for _ in range(3):
            self.assert_ok(self.check(site=RUNNING))
        self.assertTrue(RUNNING.process.is_running())
        self.assertEqual(listed_ports(RUNNING.get("switch-access-port-top10-check.htm").body), 10)

    @NEEDS_NOBODY
    def test_one_that_runs_as_its_own_user_is_ok_for_root_and_for_him(self):
        self.assert_ok(self.check(site=OF_NOBODY))
        self.assert_ok(self.check(site=OF_NOBODY, inside=AS_NOBODY))

    def test_one_without_its_site_is_told(self):
        result = self.check(site=PORT_TAKEN)
        self.assertEqual(result.status, FAILED)
        self.assertIn("the service runs without its site: ", result.out)
        self.assertIn("Failed to Start", result.out)
        self.assertNotIn("is in use by another program", result.out)


if __name__ == "__main__":
    unittest.main()
