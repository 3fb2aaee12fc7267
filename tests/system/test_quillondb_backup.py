"""Backups beside a service that works, and restores: what they bring back, what they refuse, and
what a kill, a full disk or another user leaves of them. What is seen of services is watched while
the other tests run, so those classes have late names."""
import os
import random
import re
import shutil
import signal
import sqlite3
import stat
import struct
import subprocess
import tempfile
import time
import unittest
from contextlib import closing
from pathlib import Path

import fleet
import tracing
from background import Background
from day_watch import DayWatch
from installation import Installation
from local_time import local_now
from night_pieces import SWITCH, History, enlarge_reports
from own_site import (
    DATABASES, OwnSiteTest, file_bytes, file_states, free_port, report_rows)
from quillonctl import DONE as JOB_DONE
from quillonctl import Console, activity, wait_until_idle
from quillondb import (
    AS_NOBODY, DONE, FAILED, NEEDS_NOBODY, NOBODY, WRONG_USAGE, Running, ask, create, db,
    is_plain, kills_at_each)
from report_day import TODAY
from site_pages import LISTS, listed_ports

TIMES_THE_NETWORK = 30  # 12,000 ports: their import lasts some seconds
PORTS_OF_A_DAY = 1000   # more than the table holds of another day
COPIED = (*DATABASES, "Morvane.ini", "WebReports/Favicon.ico", "WebReports/HelpText.txt",
          "WebReports/Language.ini", "WebReports/qws.css")
KILLED_RESTORE = "~restore-old: a restore was killed before its end"
HOLDS_OLD_FILES = "~restore-old holds the old files of a restore that was killed"
PUT_BACK = "An earlier restore was killed: its old files are put back first\n"
BLACK = "body { background: black }"
CHART = "hist45d-switch-access-port-summary.htm"


def with_a_large_network(site):
    enlarge_reports(site.path, TIMES_THE_NETWORK)
    site.sql("History.mdb", "CREATE TABLE Pair (First, Second)")
    site.sql("History.mdb", "INSERT INTO Pair VALUES (0, 0)")


def with_an_empty_period(site):
    """Which the first hourly pass would bring onto the pages, in the middle of the tests."""
    site.sql("History.mdb", "UPDATE General_Info SET ReportStart = '', ReportEnd = ''")


WORKING = fleet.declare(with_a_large_network)
BROUGHT_BACK = fleet.declare(with_an_empty_period)


def verify(backup):
    """As an administrator does without the program."""
    subprocess.run(["sha256sum", "--quiet", "--strict", "-c", "MANIFEST"], cwd=backup, check=True,
                   capture_output=True)
    for name in DATABASES:
        with closing(sqlite3.connect(f"file:{backup / name}?immutable=1", uri=True)) as database:
            if database.execute("PRAGMA integrity_check").fetchall() != [("ok",)]:
                raise AssertionError(f"{name} is damaged")


class BackupDuringImport(DayWatch):
    """While the service imports and serves, and another program writes."""
    backup = WORKING.path.with_suffix(".backup")

    def work(self):
        wait_until_idle(WORKING)
        day_table = self._free_table()
        console = Console(WORKING, "import")
        self.until(lambda: self._rows(day_table) > PORTS_OF_A_DAY, "an import that is under way")
        writer = PairWriter()
        writer.start()
        backup = Running("backup", WORKING.path, self.backup)
        self.page = WORKING.get("switch-access-port-top10-backup.htm").body
        self.said = backup.result()
        self.activity_behind = activity(WORKING)
        self.pairs_written = writer.stop()
        self.import_result = console.result()
        self.history = History.read(WORKING.path)

    @staticmethod
    def _free_table():
        """Which the import is to fill."""
        history = History.read(WORKING.path)
        return history.days[SWITCH][history.free(SWITCH, local_now())[0]].table

    @staticmethod
    def _rows(table):
        ((count,),) = WORKING.sql("History.mdb", f"SELECT COUNT(*) FROM {table}")
        return count


class PairWriter(Background):
    """Two fields that are the same at every moment between two transactions."""

    def __init__(self):
        super().__init__()
        self._is_wanted = True
        self.count = 0

    def work(self):
        with closing(WORKING.open_database("History.mdb")) as history:
            while self._is_wanted:
                self.count += 1
                history.execute("BEGIN IMMEDIATE")
                history.execute("UPDATE Pair SET First = ?", (self.count,))
                history.execute("UPDATE Pair SET Second = ?", (self.count,))
                history.execute("COMMIT")
                time.sleep(0.001)

    def stop(self):
        self._is_wanted = False
        return self.result().count


class Return(Background):
    """Pages, a backup, the loss of everything, a restore, and the pages again."""

    def work(self):
        backup = BROUGHT_BACK.path.with_suffix(".backup")
        self.pages = self._ask_for_pages()
        ask("backup", BROUGHT_BACK.path, backup)
        self.rows = report_rows(BROUGHT_BACK)
        self.refusal = db("restore", "--replace", backup, BROUGHT_BACK.path)
        self.pages_behind_refusal = self._ask_for_pages()
        BROUGHT_BACK.process.send_signal(signal.SIGTERM)
        BROUGHT_BACK.process.wait_until_over()
        self._lose_everything()
        self.overwriting = db("restore", backup, BROUGHT_BACK.path)
        self.restored = db("restore", "--replace", backup, BROUGHT_BACK.path)
        self.check = db("check", BROUGHT_BACK.path)
        BROUGHT_BACK.process.start()
        BROUGHT_BACK.wait_until_listening()
        self.pages_at_last = self._ask_for_pages()

    @staticmethod
    def _ask_for_pages():
        """None of them out of the cache."""
        for name in BROUGHT_BACK.names("WebReports/Cache"):
            BROUGHT_BACK.remove(f"WebReports/Cache/{name}")
        return {name: BROUGHT_BACK.get(name).body for name in (*LISTS, CHART, "", "qws.css")}

    @staticmethod
    def _lose_everything():
        for table in ("VLAN", "MAC", "HostDiskInfo"):
            BROUGHT_BACK.sql("Reports.mdb", f"DELETE FROM {table}")
        BROUGHT_BACK.write("History.mdb", b"no database any more")
        BROUGHT_BACK.remove("WebReports/Language.ini")
        BROUGHT_BACK.write("WebReports/qws.css", BLACK.encode())


DURING_IMPORT, RETURN = BackupDuringImport(), Return()
fleet.when_up(DURING_IMPORT.begin)
fleet.when_up(RETURN.start)


def setUpModule():
    fleet.start()


class ServiceThatImports(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.watch = DURING_IMPORT.result()

    def test_it_is_made_in_the_middle_of_an_import(self):
        result = self.watch.said
        self.assertEqual((result.status, result.errors), (DONE, ""))
        self.assertTrue(result.out.endswith(f" bytes, to {self.watch.backup}\n"), result.out)
        self.assertEqual(self.watch.activity_behind, "import")

    def test_the_service_goes_on_answering_and_importing(self):
        self.assertEqual(listed_ports(self.watch.page), 10)
        self.assertEqual(self.watch.import_result.status, JOB_DONE)
        self.assertTrue(self.watch.history.marks["LastImport"].startswith(TODAY))

    def test_it_is_whole_by_other_programs_as_well(self):
        verify(self.watch.backup)
        self.assertEqual(sorted(file_bytes(self.watch.backup)), sorted((*COPIED, "MANIFEST")))

    def test_each_database_is_the_one_of_a_single_moment(self):
        copy = self.watch.backup / "History.mdb"
        with closing(sqlite3.connect(f"file:{copy}?immutable=1", uri=True)) as history:
            ((first, second),) = history.execute("SELECT * FROM Pair").fetchall()
            ((last_import,),) = history.execute("SELECT LastImport FROM General_Info").fetchall()
        self.assertEqual(first, second)
        self.assertGreater(self.watch.pairs_written, first)
        self.assertFalse(last_import.startswith(TODAY))

    def test_it_is_for_the_one_who_made_it_alone(self):
        for path in (self.watch.backup, *self.watch.backup.rglob("*")):
            mode = 0o700 if path.is_dir() else 0o600
            self.assertEqual(stat.S_IMODE(path.stat().st_mode), mode, path)


class ServiceThatComesBack(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.cycle = RETURN.result()

    def test_while_it_runs_a_restore_is_refused(self):
        result = self.cycle.refusal
        self.assertEqual((result.status, result.out), (FAILED, ""))
        self.assertIn(f"the service, or another restore, runs in {BROUGHT_BACK.path}",
                      result.errors)
        self.assertEqual(self.cycle.pages_behind_refusal, self.cycle.pages)

    def test_files_that_are_there_are_replaced_only_when_that_is_asked_for(self):
        self.assertEqual(self.cycle.overwriting.status, FAILED)
        self.assertIn("is there already; 'quillondb restore --replace'",
                      self.cycle.overwriting.errors)
        self.assertEqual((self.cycle.restored.status, self.cycle.restored.errors), (DONE, ""))
        for name in COPIED:
            self.assertIn(f"{name}: verified\n", self.cycle.restored.out)

    def test_the_pages_are_back_byte_for_byte(self):
        self.assertEqual(list(self.cycle.pages_at_last), list(self.cycle.pages))
        for name, page in self.cycle.pages.items():
            self.assertGreater(len(page), 1000, name)
            self.assertEqual(self.cycle.pages_at_last[name], page, name)

    def test_the_statistics_are_back_with_their_types(self):
        self.assertEqual(report_rows(BROUGHT_BACK), self.cycle.rows)

    def test_the_check_finds_nothing_of_it(self):
        for word in ("~restore", "damaged", "missing", "other users"):
            self.assertNotIn(word, self.cycle.check.out)


def dumps(folder):
    """All that the databases hold, as statements."""
    texts = []
    for name in DATABASES:
        with closing(sqlite3.connect(folder / name)) as database:
            texts.append("\n".join(database.iterdump()))
    return texts


def synced(*words):
    """The files and folders that it lets be written onto the disk."""
    with tempfile.NamedTemporaryFile("r") as calls:
        ask(*words, inside=("strace", "-f", "-y", "-s", "0", "-o", calls.name, "-e", "trace=fsync"))
        return set(re.findall(r"fsync\(\d+<(.*?)>", calls.read()))


class BackupTest(OwnSiteTest):
    """A backup of an installation that has changed since: all files that can come back differ.
    Made once for a class, and copied for each test."""

    @classmethod
    def setUpClass(cls):
        cls.made = Path(tempfile.mkdtemp(prefix="quillon-made-"))
        cls.addClassCleanup(shutil.rmtree, cls.made)
        made = Installation(cls.made / "site", free_port())
        create(made.path)
        ask("demo", made.path)
        made.set("Settings_General", SnmpcDir=".")  # wherever a copy lies
        cls.dumps = dumps(made.path)
        ask("backup", made.path, cls.made / "backup")
        cls.change_everything(made)

    @staticmethod
    def change_everything(site):
        ask("demo", "--replace", "--port", str(site.port), site.path)
        for table in ("VLAN_HistSum", "Disk_HistSum"):
            site.sql("History.mdb", f"DELETE FROM {table}")
        site.sql("Reports.mdb", "DELETE FROM MAC")
        for name in COPIED[3:]:
            site.write(name, site.read(name) + b"\r\n")

    def new_site(self, name):
        shutil.copytree(self.made / "site", self.folder / name)
        return Installation(self.folder / name, free_port())

    def setUp(self):
        super().setUp()
        self.backup = self.folder / "backup"
        shutil.copytree(self.made / "backup", self.backup)
        self.old = self.files()
        copies = {name: (self.backup / name).read_bytes() for name in COPIED}
        self.assertEqual([name for name in COPIED if self.old[name] == copies[name]], [])
        self.new = {**self.old, **copies}

    def files(self):
        return file_bytes(self.site.path)

    def names(self):
        return sorted(path.name for path in self.folder.iterdir())

    def restore(self, *options, **surroundings):
        return db("restore", *options, self.backup, self.site.path, **surroundings)

    def assert_copied_files_are_old(self):
        """What the engine keeps beside a database may be there."""
        files = self.files()
        self.assertEqual([name for name in COPIED if files.get(name) != self.old[name]], [])

    def assert_refused(self, result, text):
        self.assertEqual(result.status, FAILED, result)
        self.assertIn(text, result.errors)
        self.assertTrue(is_plain(result.errors), repr(result.errors))
        self.assertEqual(self.files(), self.old)
        self.assertNotIn("~restore", " ".join(self.site.tree()))


class Restores(BackupTest):
    def test_all_that_is_copied_comes_back(self):
        self.assertEqual(self.restore("--replace").status, DONE)
        self.assertEqual(self.files(), self.new)
        self.assertEqual(dumps(self.site.path), self.dumps)

    def test_a_directory_that_is_missing_is_made(self):
        place = self.folder / "other"
        ask("restore", self.backup, place)
        self.assertEqual(file_bytes(place), {name: self.new[name] for name in COPIED})

    def test_a_backup_and_its_directory_are_needed(self):
        for words in (("backup", self.site.path), ("restore", self.backup),
                      ("backup", "", self.folder / "x"), ("restore", "", self.site.path)):
            with self.subTest(words):
                self.assertEqual(db(*words).status, WRONG_USAGE)
        self.assert_refused(db("restore", "--replace", self.folder, self.site.path),
                            "is no backup: it has no MANIFEST")

    def test_while_another_program_has_a_database_open_it_is_refused(self):
        with closing(self.site.open_database("Reports.mdb")) as reports:
            reports.execute("SELECT COUNT(*) FROM MAC").fetchall()
            result = self.restore("--replace")
            self.assertEqual(result.status, FAILED)
            self.assertIn("Reports.mdb is in use by another program", result.errors)
        self.assertEqual(self.files(), self.old)


    def test_a_pipe_beside_a_database_lets_nobody_wait(self):
        os.mkfifo(self.site.path / "Quillon.mdb-journal")
        result = db("backup", self.site.path, self.folder / "next")
        self.assertEqual(result.status, FAILED)
        self.assertIn("Quillon.mdb-journal is no ordinary file", result.errors)
        ask("restore", "--replace", self.backup, self.site.path)
        self.assertEqual(self.files(), self.new)

    def test_a_pipe_in_the_place_of_a_file_of_the_site_lets_nobody_wait(self):
        self.site.remove("WebReports/Language.ini")
        os.mkfifo(self.site.path / "WebReports/Language.ini")
        result = db("backup", self.site.path, self.folder / "next")
        self.assertEqual(result.status, FAILED)
        self.assertIn("WebReports/Language.ini is no ordinary file", result.errors)

    def test_the_list_of_files_is_never_a_large_one(self):
        with open(self.backup / "MANIFEST", "ab") as manifest:
            manifest.truncate(200_000_000)
        self.assert_refused(self.restore("--replace"), "is too large for a list")

    def link_to_configuration(self, name, data):
        place = self.folder / "etc"
        place.mkdir(exist_ok=True)
        target = place / name.rpartition("/")[2]
        target.write_bytes(data)
        self.site.remove(name)
        (self.site.path / name).symlink_to(target)
        return target

    def test_a_link_to_the_same_configuration_stays(self):
        name = "WebReports/Language.ini"
        target = self.link_to_configuration(name, self.new[name])
        said = ask("restore", "--replace", self.backup, self.site.path)
        self.assertIn(f"{name}: stays a link to {target}", said)
        self.assertIn("Restored 7 files", said)
        self.assertEqual((self.site.path / name).readlink(), target)
        self.assertEqual(self.files(), self.new)

    def test_a_link_to_another_configuration_gives_way_to_a_file(self):
        name = "WebReports/Language.ini"
        target = self.link_to_configuration(name, b"another one")
        said = ask("restore", "--replace", self.backup, self.site.path)
        self.assertIn(f"{name}: a file in the place of the link to {target}", said)
        self.assertFalse((self.site.path / name).is_symlink())
        self.assertEqual(self.files(), self.new)
        self.assertEqual(target.read_bytes(), b"another one")


    @unittest.skipUnless(tracing.is_available, "strace is not installed")
    def test_the_names_of_all_files_are_on_the_disk_at_the_end(self):
        target = self.folder / "next"
        places = synced("backup", self.site.path, target)
        self.assertTrue(any(re.fullmatch(rf"{target}~\w{{6}}/WebReports", place)
                            for place in places), places)
        places = synced("restore", "--replace", self.backup, self.site.path)
        for name in ("", "/WebReports", "/~restore-old", "/~restore-old/WebReports"):
            self.assertIn(f"{self.site.path}{name}", places)


class ChangedBackups(BackupTest):
    def setUp(self):
        super().setUp()
        self.sound = file_bytes(self.backup)

    def assert_change_is_refused(self, name, place):
        """Of one byte."""
        data = bytearray(self.sound[name])
        data[place] ^= 1
        (self.backup / name).write_bytes(data)
        result = self.restore("--replace")
        self.assertEqual(result.status, FAILED, (name, place))
        self.assertIn("take another backup", result.errors, (name, place))
        self.assertTrue(is_plain(result.errors), repr(result.errors))
        (self.backup / name).write_bytes(self.sound[name])

    def test_a_changed_byte_of_any_file_is_refused(self):
        for name in COPIED:
            size = len(self.sound[name])
            for place in (0, size // 2, size - 1):
                self.assert_change_is_refused(name, place)
        self.assertEqual(self.files(), self.old)

    def test_a_changed_byte_of_any_entry_of_the_manifest_is_refused(self):
        text = self.sound["MANIFEST"]
        entries = [match.span() for match in re.finditer(rb"# size \d+\n[0-9a-f]{64}  .*\n", text)]
        self.assertEqual(len(entries), len(COPIED))
        choice = random.Random(9)
        for begin, end in entries:
            digest = text.index(b"\n", begin) + 1
            for place in (begin, begin + 7, digest - 1, digest, digest + 64, end - 2,
                          choice.randrange(digest, digest + 64)):
                self.assert_change_is_refused("MANIFEST", place)
        self.assertEqual(self.files(), self.old)

    def test_a_manifest_that_was_cut_off_is_refused(self):
        text = self.sound["MANIFEST"]
        for length in (0, 1, len(text) // 3, text.index(b"  History.mdb") + 5):
            (self.backup / "MANIFEST").write_bytes(text[:length])
            self.assert_refused(self.restore("--replace"), "take another backup")

    def test_a_missing_file_is_refused(self):
        for name in COPIED:
            (self.backup / name).unlink()
            self.assert_refused(self.restore("--replace"), f"cannot read {self.backup / name}")
            (self.backup / name).write_bytes(self.sound[name])


class FullDisk(BackupTest):
    LIMITS = (0, 1000, 30_000, 200_000, 1_500_000)  # bytes of the largest file there can be

    def test_a_backup_leaves_nothing(self):
        names = self.names()
        for limit in self.LIMITS:
            with self.subTest(limit):
                result = db("backup", self.site.path, self.folder / "next", file_limit=limit)
                self.assertEqual(result.status, FAILED)
                self.assertTrue(is_plain(result.errors), repr(result.errors))
                self.assertEqual(self.names(), names)
                self.assert_copied_files_are_old()

    def test_a_restore_leaves_the_old_files(self):
        for limit in self.LIMITS:
            with self.subTest(limit):
                self.assert_refused(self.restore("--replace", file_limit=limit), "quillondb: ")


class Kills(BackupTest):
    """Nothing that a program could catch: what is there afterwards has to be enough."""

    def kill_after(self, seconds, *words):
        process = Running(*words)
        process.is_over_within(seconds)
        process.send_signal(signal.SIGKILL)
        process.result()

    def seconds_of(self, *words):
        begin = time.monotonic()
        ask(*words)
        return time.monotonic() - begin

    def assert_old_or_new_or_told(self, moment):
        """What a killed restore has left; and the next one brings back what is told."""
        told = KILLED_RESTORE in db("check", self.site.path).out
        left = {name: data for name, data in self.files().items() if "~restore" not in name}
        self.assertTrue(told or left in (self.old, self.new), (moment, sorted(left)))
        self.assert_nothing_is_overwritten(HOLDS_OLD_FILES if told else "is there already")
        next_one = self.put_back()
        self.assertEqual(next_one.out, PUT_BACK if told else "", moment)
        self.assertEqual(self.files(), self.old if told else left, moment)
        if left == self.new and not told:
            self.make_old_again()
        return told

    def assert_nothing_is_overwritten(self, reason):
        """Not even by old files, since the installation may have been used meanwhile."""
        files = self.files()
        result = self.restore()
        self.assertEqual((result.status, result.out), (FAILED, ""))
        self.assertIn(reason, result.errors)
        kept = {name: data for name, data in files.items()
                if not name.startswith(("~restore-new", "~restore-ended"))}
        self.assertEqual({name: self.files().get(name) for name in kept}, kept)

    def put_back(self):
        """Whatever has become of the backup."""
        no_backup = self.folder / "no-backup"
        result = db("restore", "--replace", no_backup, self.site.path)
        self.assertEqual(result.status, FAILED)
        self.assertIn("is no backup", result.errors)
        return result

    def make_old_again(self):
        for name, data in self.old.items():
            self.site.write(name, data)

    def assert_whole_or_not_there(self, target):
        """And what else it has left may be deleted."""
        if target.exists():
            verify(target)
            shutil.rmtree(target)
        for path in self.folder.glob(f"{target.name}*"):
            self.assertRegex(path.name, rf"^{target.name}~\w{{6}}$")
            shutil.rmtree(path)
        self.assert_copied_files_are_old()

    def test_a_restore_that_is_killed_at_any_time(self):
        seconds = self.seconds_of("restore", "--replace", self.backup, self.site.path)
        self.make_old_again()
        for tenth in range(1, 11):
            self.kill_after(seconds * tenth / 10,
                            "restore", "--replace", self.backup, self.site.path)
            self.assert_old_or_new_or_told(tenth)

    @unittest.skipUnless(tracing.is_available, "strace is not installed")
    def test_a_restore_that_is_killed_at_each_step_of_the_exchange(self):
        told = [self.assert_old_or_new_or_told(number) for number in kills_at_each(
            "rename", "restore", "--replace", self.backup, self.site.path)]
        self.assertGreaterEqual(sum(told), 2 * len(COPIED))

    @unittest.skipUnless(tracing.is_available, "strace is not installed")
    def test_a_restore_that_is_killed_at_each_other_step(self):
        for call in ("fsync", "unlinkat"):
            for number in kills_at_each(call, "restore", "--replace", self.backup, self.site.path):
                self.assert_old_or_new_or_told((call, number))
            self.make_old_again()

    @unittest.skipUnless(tracing.is_available, "strace is not installed")
    def test_putting_back_that_is_killed_as_well_goes_on_with_the_next_restore(self):
        for _ in zip(range(len(COPIED) + 3), kills_at_each(
                "rename", "restore", "--replace", self.backup, self.site.path)):
            left = self.files()
        self.assertIn("~restore-old/Quillon.mdb", left)
        for number in kills_at_each("rename", "restore", "--replace", self.folder / "no-backup",
                                    self.site.path):
            self.assertIn(KILLED_RESTORE, db("check", self.site.path).out, number)
        self.assertEqual(self.files(), self.old)

    def leave_rows_in_the_log(self):
        """Which a service that was killed has written last."""
        path = self.site.path / "Reports.mdb"
        with closing(self.site.open_database("Reports.mdb")) as reports:
            reports.execute("PRAGMA wal_autocheckpoint = 0")
            reports.execute("INSERT INTO MAC (RecNo, IfIndex) VALUES (77, 7)")
            reports.commit()
            files = {name: (path.parent / name).read_bytes()
                     for name in ("Reports.mdb", "Reports.mdb-wal")}
        for name, data in files.items():
            self.site.write(name, data)

    @unittest.skipUnless(tracing.is_available, "strace is not installed")
    def test_rows_that_stand_in_the_log_alone_outlive_a_kill_at_each_step_of_the_exchange(self):
        self.leave_rows_in_the_log()
        old = self.files()
        kills = 0
        for number in kills_at_each("rename", "restore", "--replace", self.backup, self.site.path):
            kills += (self.site.path / "~restore-old").exists()
            self.put_back()
            files = self.files()
            if files == self.new:
                break
            self.assertTrue(files == old, (number, sorted(files)))
        self.assertGreater(kills, len(COPIED))
        for name, data in old.items():
            self.site.write(name, data)
        self.assertEqual(self.site.sql("Reports.mdb", "SELECT IfIndex FROM MAC WHERE RecNo = 77"),
                         [(7,)])

    @unittest.skipUnless(tracing.is_available, "strace is not installed")
    def test_a_disk_that_fails_at_any_step_leaves_what_the_restore_says(self):
        statuses = []
        for number in range(1, 100):
            strace = ("strace", "-f", "-qq", "-o", os.devnull, "-e", "trace=fsync",
                      "-e", f"inject=fsync:error=EIO:when={number}")
            statuses.append(self.restore("--replace", inside=strace).status)
            files = self.files()
            if files == self.new:
                break
            self.assertEqual(statuses[-1], FAILED, number)
            self.assertTrue(files == self.old, (number, sorted(files)))
        self.assertEqual(statuses[-1], DONE)
        self.assertGreater(len(statuses), len(COPIED))

    def test_a_backup_that_is_killed_at_any_time(self):
        target = self.folder / "next"
        seconds = self.seconds_of("backup", self.site.path, target)
        shutil.rmtree(target)
        for tenth in range(1, 11):
            self.kill_after(seconds * tenth / 10, "backup", self.site.path, target)
            self.assert_whole_or_not_there(target)

    @unittest.skipUnless(tracing.is_available, "strace is not installed")
    def test_a_backup_that_is_killed_at_each_step(self):
        target = self.folder / "next"
        for call in ("rename", "fsync"):
            for _ in kills_at_each(call, "backup", self.site.path, target):
                self.assert_whole_or_not_there(target)
            self.assert_whole_or_not_there(target)


@NEEDS_NOBODY
class OtherUsers(BackupTest):
    def setUp(self):
        super().setUp()
        self.folder.chmod(0o711)

    def give_away(self):
        for path in (self.site.path, *self.site.path.rglob("*")):
            os.chown(path, NOBODY, NOBODY)

    def test_one_who_may_not_read_the_files_gets_no_backup(self):
        self.site.path.chmod(0o755)
        place = self.folder / "of-nobody"
        place.mkdir()
        os.chown(place, NOBODY, NOBODY)
        result = db("backup", self.site.path, place / "backup", inside=AS_NOBODY)
        self.assert_refused(result, "History.mdb cannot be opened: Permission denied")
        self.assertEqual(list(place.iterdir()), [])

    def test_a_place_that_may_be_written_and_not_read_gets_one(self):
        self.give_away()
        place = self.folder / "of-nobody"
        place.mkdir()
        os.chown(place, NOBODY, NOBODY)
        place.chmod(0o300)
        ask("backup", self.site.path, place / "next", inside=AS_NOBODY)
        verify(place / "next")

    def test_a_place_that_may_not_be_written_is_named(self):
        self.give_away()
        target = self.folder / "next"
        self.assert_refused(db("backup", self.site.path, target, inside=AS_NOBODY),
                            f"cannot create {target}: Permission denied")

    def test_one_who_may_not_write_the_files_restores_nothing(self):
        self.site.path.chmod(0o755)
        for path in (self.backup, *self.backup.rglob("*")):
            os.chown(path, NOBODY, NOBODY)
        before = file_states(self.site.path)
        self.assert_refused(self.restore("--replace", inside=AS_NOBODY), "Permission denied")
        self.assertEqual(file_states(self.site.path), before)

    def test_what_root_restores_is_the_users_of_the_directory(self):
        self.give_away()
        ask("restore", "--replace", self.backup, self.site.path)
        self.assertEqual(self.files(), self.new)
        for path in (self.site.path, *self.site.path.rglob("*")):
            status = path.lstat()
            self.assertEqual((status.st_uid, status.st_gid), (NOBODY, NOBODY), path)
        self.assertEqual(db("check", self.site.path, inside=AS_NOBODY).out,
                         db("check", self.site.path).out)

    def lead_root_to(self, roots, name):
        """By a link of the user in the place of a file or folder."""
        self.give_away()
        link = self.site.path / name
        if link.is_dir():
            shutil.rmtree(link)
        link.unlink(missing_ok=True)
        link.symlink_to(roots)
        os.lchown(link, NOBODY, NOBODY)

    def assert_folder_of_roots_stays(self, name):
        roots = self.folder / "roots"
        (roots / "WebReports").mkdir(parents=True)
        for file in ("qws.css", "secret", "WebReports/qws.css"):
            (roots / file).write_text("root's")
        before = file_states(roots)
        self.lead_root_to(roots, name)
        self.restore("--replace")
        self.assertEqual(file_states(roots), before)

    def test_a_link_for_the_old_files_leads_root_nowhere(self):
        self.assert_folder_of_roots_stays("~restore-old")

    def test_a_link_for_the_new_files_leads_root_nowhere(self):
        self.assert_folder_of_roots_stays("~restore-new")

    def test_a_link_for_the_files_that_go_leads_root_nowhere(self):
        self.assert_folder_of_roots_stays("~restore-ended")

    def test_a_link_for_the_folder_of_the_pages_leads_root_nowhere(self):
        self.assert_folder_of_roots_stays("WebReports")

    def test_a_backup_by_root_holds_nothing_that_a_link_of_the_user_leads_to(self):
        roots = self.folder / "roots.txt"
        roots.write_text("root's")
        roots.chmod(0o600)
        self.lead_root_to(roots, "WebReports/HelpText.txt")
        target = self.folder / "next"
        db("backup", self.site.path, target)
        taken = [name for name, data in file_bytes(target).items() if data == b"root's"]
        self.assertEqual(taken, [])

    def plant_journal(self, victim):
        """One that the engine plays back when it opens the database, and then deletes the file
        that it names."""
        database = self.site.path / "Quillon.mdb"
        size = database.stat().st_size
        magic, page = bytes.fromhex("d9d505f920a163d7"), 4096
        name = str(victim).encode()
        head = magic + struct.pack(">5I", 0, 0x1234, size // page, 512, page)
        end = struct.pack(">I", 0x40000000 // page + 1) + name
        end += struct.pack(">2I", len(name), sum(name)) + magic
        self.site.write("Quillon.mdb-journal", head.ljust(512, b"\0") + end)
        self.give_away()

    def test_a_journal_of_the_users_deletes_nothing_of_roots(self):
        victim = self.folder / "roots.txt"
        victim.write_text("root's")
        self.plant_journal(victim)
        result = db("backup", self.site.path, self.folder / "next")
        self.assertIn("Quillon.mdb-journal is no file of the service's", result.errors)
        self.assertEqual(victim.read_text(), "root's")
        ask("restore", "--replace", self.backup, self.site.path)
        self.assertEqual(victim.read_text(), "root's")
        self.assertEqual(self.files(), self.new)

    def test_a_backup_by_root_is_roots(self):
        self.give_away()
        target = self.folder / "next"
        ask("backup", self.site.path, target)
        for path in (target, *target.rglob("*")):
            self.assertEqual(path.stat().st_uid, 0, path)

    def test_root_reads_no_database_that_its_user_may_not_read(self):
        self.give_away()
        os.chown(self.site.path / "Reports.mdb", 0, 0)
        result = db("backup", self.site.path, self.folder / "next")
        self.assertIn("Reports.mdb cannot be opened: Permission denied", result.errors)

    def test_inside_of_the_installation_a_backup_is_the_users_as_well(self):
        self.give_away()
        target = self.site.path / "next"
        self.assertIn("inside of the installation", ask("backup", self.site.path, target))
        for path in (target, *target.rglob("*")):
            self.assertEqual(path.stat().st_uid, NOBODY, path)

    def lead_root_out_of(self, backup):
        """By a link to a file of root's, of which the user knows the digest."""
        secret = self.folder / "secret"
        secret.write_bytes(self.new["WebReports/qws.css"])
        secret.chmod(0o600)
        link = backup / "WebReports" / "qws.css"
        link.unlink()
        link.symlink_to(secret)

    def assert_is_read_with_the_users_rights(self, backup):
        ask("restore", "--replace", backup, self.site.path)
        self.lead_root_out_of(backup)
        result = db("restore", "--replace", backup, self.site.path)
        self.assertEqual(result.status, FAILED)
        self.assertIn(f"cannot read {backup}/WebReports/qws.css: Permission denied",
                      result.errors)

    def test_a_backup_of_the_users_is_read_with_his_rights(self):
        self.give_away()
        for path in (self.backup, *self.backup.rglob("*")):
            os.chown(path, NOBODY, NOBODY)
        self.assert_is_read_with_the_users_rights(self.backup)

    def test_inside_of_the_installation_a_backup_is_read_with_the_users_rights(self):
        backup = self.site.path / "next"
        shutil.copytree(self.backup, backup)
        self.give_away()
        os.chown(backup, 0, 0)
        backup.chmod(0o755)
        self.assert_is_read_with_the_users_rights(backup)

    def test_a_folder_that_the_user_has_led_elsewhere_gets_no_backup_of_roots(self):
        roots = self.folder / "roots"
        roots.mkdir(0o755)
        self.lead_root_to(roots, "next")
        result = db("backup", self.site.path, self.site.path / "next" / "backup")
        self.assertEqual(result.status, FAILED)
        self.assertIn("Permission denied", result.errors)
        self.assertEqual(list(roots.iterdir()), [])

    def test_what_else_lies_among_the_old_files_is_not_put_back(self):
        roots = self.folder / "roots"
        roots.mkdir()
        planted = self.site.path / "~restore-old" / "plan"
        planted.mkdir(parents=True)
        (planted / "evil.sh").write_text("evil")
        (self.site.path / "plan").symlink_to(roots)
        roots.chmod(0o777)
        self.give_away_links()
        self.restore("--replace")
        self.assertEqual(list(roots.iterdir()), [])

    def give_away_links(self):
        for path in (self.site.path, *self.site.path.rglob("*")):
            os.lchown(path, NOBODY, NOBODY)

    def test_a_link_in_the_place_of_a_file_is_replaced_and_leads_root_nowhere(self):
        roots = self.folder / "roots.txt"
        roots.write_text("root's")
        for name in ("Quillon.mdb", "Morvane.ini", "WebReports/qws.css"):
            with self.subTest(name):
                self.lead_root_to(roots, name)
                ask("restore", "--replace", self.backup, self.site.path)
                self.assertEqual(roots.read_text(), "root's")
                self.assertEqual(self.site.read(name), self.new[name])


if __name__ == "__main__":
    unittest.main()
