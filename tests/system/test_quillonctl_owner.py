"""The console called by root, on an installation that belongs to the user of the service: it takes
over his rights, so what it writes is his, and no link of his leads root anywhere."""
import os
import shutil
import unittest

import fleet
from event_file import STARTED
from local_time import is_recent
from night_pieces import History
from quillonctl import DONE, FAILED, ask, ctl, job, wait_until_idle, with_nothing_due
from report_day import TODAY, with_small_network

IS_POSSIBLE = os.geteuid() == 0 and shutil.which("setpriv") is not None
OWNER = 65534
_SERVICE = f"""#!/bin/sh
exec setpriv --reuid {OWNER} --regid {OWNER} --clear-groups --pdeathsig KILL "$0.program"
"""
SHEET, EVENT_FILE = "WebReports/qws.css", "Debug/AppEventWeb.txt"
COMMANDS = (
    ("save", "--port", "80"), ("apply-changes", "Gold"), ("smtp", "set", "--port", "26"),
    ("receivers", "add", "--name", "Ann", "--recipient", "ann@mail.test"),
    ("receivers", "remove", "1"), ("snmp", "set", "--community", "other"), ("read",),
    ("receivers",), ("smtp",), ("snmp",), ("report", "access"), ("report", "port-name", "*"))


def give_away(site):
    """To a user who may also look into the folders above."""
    site.path.parent.chmod(0o711)
    for path in (site.path, *site.path.rglob("*")):
        os.chown(path, OWNER, OWNER)


def run_by_its_owner(site):
    site.rename("quillonweb", "quillonweb.program")
    site.write("quillonweb", _SERVICE.encode())
    (site.path / "quillonweb").chmod(0o755)


if IS_POSSIBLE:
    SITE = fleet.declare_idle(give_away)
    SERVED = fleet.declare(with_small_network, with_nothing_due, run_by_its_owner, give_away)


def setUpModule():
    if not IS_POSSIBLE:
        raise unittest.SkipTest("needs root and setpriv")
    fleet.start()


class OwnerTest(unittest.TestCase):
    def assert_all_is_his(self, site):
        for path in (site.path, *site.path.rglob("*")):
            status = path.lstat()
            self.assertEqual((status.st_uid, status.st_gid), (OWNER, OWNER), path)


class Files(OwnerTest):
    def test_what_commands_write_is_his(self):
        for words in COMMANDS:
            ask(SITE, *words)
            self.assert_all_is_his(SITE)

    def fail_to_apply_changes(self):
        """A folder stands in the way of the stylesheet, which is an event."""
        sheet = SITE.path / SHEET
        sheet.unlink(missing_ok=True)
        sheet.mkdir()
        self.addCleanup(sheet.rmdir)
        os.chown(sheet, OWNER, OWNER)
        self.assertEqual(ctl(SITE, "apply-changes", "Blue").status, FAILED)

    def test_so_is_the_event_file(self):
        self.fail_to_apply_changes()
        self.assertEqual(len(SITE.events()), 1)
        self.assert_all_is_his(SITE)

    def test_a_link_of_his_leads_root_nowhere(self):
        secret = SITE.path.with_name("roots-own")
        secret.write_bytes(b"root's own")
        secret.chmod(0o600)
        SITE.remove(EVENT_FILE)
        (SITE.path / EVENT_FILE).symlink_to(secret)
        self.addCleanup(SITE.remove, EVENT_FILE)
        self.fail_to_apply_changes()
        self.assertEqual(secret.read_bytes(), b"root's own")


    def test_a_file_of_roots_in_the_place_of_the_settings_gains_him_nothing(self):
        """Whose directory it is can give a file of root's another name."""
        roots_own = SITE.path.with_name("roots-folder")
        roots_own.mkdir(mode=0o755)
        settings, moved = SITE.path / "Quillon.mdb", SITE.path / "moved"
        settings.rename(moved)
        self.addCleanup(moved.replace, settings)
        settings.write_bytes(b"root's")
        web, away = SITE.path / "WebReports", SITE.path / "away"
        web.rename(away)
        self.addCleanup(away.rename, web)
        web.symlink_to(roots_own)
        self.addCleanup(web.unlink)
        result = ctl(SITE, "apply-changes", "Gold")
        self.assertEqual(result.status, FAILED)
        self.assertEqual(list(roots_own.iterdir()), [])


class Service(OwnerTest):
    """That runs as its owner."""

    def test_it_does_the_jobs_of_root_and_all_it_writes_is_its_own(self):
        wait_until_idle(SERVED)
        result = job(SERVED, "import")
        self.assertEqual((result.status, result.errors), (DONE, ""))
        marks = History.read(SERVED.path).marks
        self.assertTrue(marks["LastImport"].startswith(TODAY))
        self.assertTrue(is_recent(marks["LastReport"]))
        ask(SERVED, "save", "--debug-mode", "no")
        self.assertEqual(SERVED.event_texts(), [STARTED])
        self.assert_all_is_his(SERVED)


if __name__ == "__main__":
    unittest.main()
