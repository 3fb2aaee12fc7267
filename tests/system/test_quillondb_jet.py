"""Old Jet files taken over: a whole installation, the statistics of every night, and what is no
such file or a damaged one. The files are a real one to which the tests have added tables."""
import csv
import io
import os
import random
import re
import shutil
import signal
import struct
import subprocess
import unittest
from pathlib import Path

import fleet
from jet_damage import DamagedReports, judge_refusal
from jet_installation import (
    Watched, columns_of, contents, created, new_folder, old_file, old_files, rows_of)
from jet_values import Column
from jet_writer import PAGE, PEOPLE, JetWriter, encrypted, with_password
from local_time import is_recent, local_now
from night_pieces import SWITCH, History
from own_site import REPORT_TABLES
from quillonctl import ask, job, wait_until_idle, with_nothing_due
from quillondb import DONE, FAILED, db, is_plain
from report_day import TODAY, YESTERDAY, with_small_network
from site_pages import LISTS, listed_ports

DAMAGES = 100
SEED = 20240501
LONG_ROWS = 210_000
VERSION = 0x14  # its place in the head
MDB_EXPORT = shutil.which("mdb-export")


def export(file, table):
    """The rows as another program reads them."""
    text = subprocess.run([MDB_EXPORT, "-T", "%Y-%m-%d %H:%M:%S", "-D", "%Y-%m-%d", file, table],
                          check=True, capture_output=True, text=True).stdout
    return list(csv.reader(io.StringIO(text)))[1:]


class TakenOver:
    """An old installation on its way into a new one, with what was seen on each step."""

    def prepare(self, site):
        """The demonstration becomes the old installation, and its place that of the new one."""
        self.site = site
        self.demonstration = contents(site.path)
        folder = site.path.with_suffix(".old")
        folder.mkdir()
        self.files = old_files(site.path, folder)
        self.onto_rows = self._import()
        self.after_refusal = contents(site.path)
        created(site.path)
        self.empty = contents(site.path)
        self.dry_run = self._import("--dry-run")
        self.after_dry_run = contents(site.path)
        self.importing = self._import()
        self.after_import = contents(site.path)
        self.replacing = self._import("--replace")
        self.at_last = contents(site.path)

    def _import(self, *options):
        return db("import-jet", *self.files.options, *options, self.site.path)


TAKEN_OVER = TakenOver()
SITE = fleet.declare(TAKEN_OVER.prepare)
DEMONSTRATION = fleet.declare()
SYNCED = fleet.declare(with_small_network, with_nothing_due)


def setUpModule():
    fleet.start()


class Import(unittest.TestCase):
    maxDiff = 2000

    def with_singles(self, tables):
        """As a column of singles holds its numbers."""
        converted = {}
        for (name, table), rows in tables.items():
            is_single = [column.kind == "single" for column in columns_of(SITE.path / name, table)]
            converted[name, table] = [
                tuple(struct.unpack("f", struct.pack("f", value))[0] if single else value
                      for value, single in zip(row, is_single)) for row in rows]
        return converted

    def test_every_row_of_the_three_files_comes_over(self):
        wanted, taken = self.with_singles(TAKEN_OVER.demonstration), TAKEN_OVER.after_import
        self.assertEqual(wanted.keys(), taken.keys())
        for table, rows in wanted.items():
            self.assertEqual(taken[table], rows, table)

    def test_rows_that_are_there_stay_unless_they_may_be_replaced(self):
        result = TAKEN_OVER.onto_rows
        self.assertEqual((result.status, result.out), (FAILED, ""))
        self.assertRegex(result.errors, r"\Aquillondb: the table VLAN holds rows .*--replace.*\n\Z")
        self.assertEqual(TAKEN_OVER.after_refusal, TAKEN_OVER.demonstration)
        self.assertEqual(TAKEN_OVER.replacing.status, DONE)
        self.assertEqual(TAKEN_OVER.at_last, TAKEN_OVER.after_import)

    def test_a_dry_run_counts_the_same_and_writes_nothing(self):
        dry, real = TAKEN_OVER.dry_run, TAKEN_OVER.importing
        total = sum(len(rows) for (_, table), rows in TAKEN_OVER.demonstration.items()
                    if not table.endswith("HistCtrl"))
        self.assertIn(f"\n{total} rows would be taken over; nothing was written\n", dry.out)
        self.assertIn(f"\n{total} rows were taken over\n", real.out)
        self.assertEqual(dry.out.replace("would be taken over; nothing was written",
                                         "were taken over"), real.out)
        self.assertEqual(TAKEN_OVER.after_dry_run, TAKEN_OVER.empty)

    def test_each_table_is_told_when_it_has_come_over(self):
        told = dict(re.findall(r"^(\w+): (\d+) of \2 rows$", TAKEN_OVER.importing.out, re.M))
        self.assertEqual(told, {table: str(len(rows))
                                for (_, table), rows in TAKEN_OVER.demonstration.items()
                                if not table.endswith("HistCtrl")})

    def test_what_did_not_come_over_is_told(self):
        lines = TAKEN_OVER.importing.out.splitlines()
        told = lines[lines.index("What did not come over as it was:") + 1:]
        self.assertEqual(set(told), {
            "  Settings_General, row 1, SnmpcDir: it is no folder of this machine; what a new"
            " installation has stays",
            "  Users: the table has no place here"})

    def test_the_service_shows_the_old_figures(self):
        for name in LISTS:
            page = SITE.get(name).body
            self.assertEqual(listed_ports(page), 10)
            self.assertTrue(page == DEMONSTRATION.get(name).body, name)

    def test_the_service_draws_the_old_history(self):
        charts = []
        for site in (SITE, DEMONSTRATION):
            link = re.search(rb"<a href=(hist45-[^>]*?)>", site.get(LISTS[0]).body)
            charts.append(site.get(link[1]).body)
        self.assertTrue(charts[0] == charts[1])
        days = charts[0].count(b"class='popupChart'")
        self.assertGreater(days, 0)
        self.assertLess(charts[0].count(b"<br>-</div>"), days / 2)

    def test_a_running_service_is_not_disturbed(self):
        result = db("import-jet", *TAKEN_OVER.files.options, "--replace", SITE.path)
        self.assertEqual((result.status, result.out), (FAILED, ""))
        self.assertRegex(result.errors, "the service is running in this directory")

    @unittest.skipUnless(MDB_EXPORT, "mdb-export is not there")
    def test_another_reader_finds_the_same_in_the_file(self):
        for table in REPORT_TABLES:
            columns = columns_of(SITE.path / "Reports.mdb", table)
            numbers = [column.kind not in ("text", "wide text", "memo", "date")
                       for column in columns]
            there = [tuple(float(value) if is_number else value
                           for value, is_number in zip(row, numbers))
                     for row in export(TAKEN_OVER.files.reports, table)]
            self.assertEqual(there, TAKEN_OVER.after_import["Reports.mdb", table], table)


class Sync(unittest.TestCase):
    """The statistics of the night, beside the running service."""

    @classmethod
    def setUpClass(cls):
        folder = new_folder(cls)
        cls.file = cls.write_report(folder / "Night.mdb")
        wait_until_idle(SYNCED)
        cls.list_before = SYNCED.get(LISTS[0]).body
        cls.contents_before = contents(SYNCED.path)
        cls.dry_run = db("sync-jet", "--reports", cls.file, "--dry-run", SYNCED.path)
        cls.contents_after_dry_run = contents(SYNCED.path)
        cls.syncing = db("sync-jet", "--reports", cls.file, SYNCED.path)
        cls.marks = History.read(SYNCED.path).marks
        cls.again = db("sync-jet", "--reports", cls.file, SYNCED.path)
        job(SYNCED, "import")
        cls.history = History.read(SYNCED.path)

    @staticmethod
    def write_report(path):
        """The ports that are there, with a new port before them, and other figures."""
        reports = SYNCED.path / "Reports.mdb"
        writer = JetWriter()
        for table in REPORT_TABLES:
            columns, rows = columns_of(reports, table), rows_of(reports, table)
            if table == "VLAN":
                rows = [Sync.changed(columns, row, InHCOctetsMb24H=7654321) for row in rows]
                rows.insert(0, Sync.changed(columns, rows[0], RecNo=309, DevName="Größe <neu>"))
            writer.add_table(table, columns, rows)
        return writer.write(path)

    @staticmethod
    def changed(columns, row, **changes):
        return tuple(changes.get(column.name, value) for column, value in zip(columns, row))

    def test_a_dry_run_counts_and_writes_nothing(self):
        self.assertRegex(self.dry_run.out, r"VLAN: 4 of 4 rows\n(.*\n)*8 rows would be taken over")
        self.assertEqual(self.contents_after_dry_run, self.contents_before)

    def test_it_tells_what_it_took_and_a_second_time_does_no_harm(self):
        for result in (self.syncing, self.again):
            self.assertEqual((result.status, result.errors), (DONE, ""))
            self.assertIn("\n8 rows were taken over\n", result.out)

    def test_the_report_is_marked_as_finished(self):
        self.assertTrue(is_recent(self.marks["LastReport"]))
        self.assertEqual((self.marks["ReportStart"][:10], self.marks["ReportEnd"][:10]),
                         (YESTERDAY, TODAY))

    def test_the_day_can_be_imported(self):
        day, = [day for day in self.history.days[SWITCH] if day.moment.startswith(YESTERDAY)]
        self.assertEqual([row[0] for row in day.rows][0], 309)
        self.assertEqual([row[6] for row in day.rows], [7654321] * 4)

    def test_the_pages_show_the_new_figures(self):
        self.assertEqual(listed_ports(self.list_before), 2)
        page = SYNCED.get("switch-access-port-top10-involume-synced.htm").body
        self.assertEqual(listed_ports(page), 3)
        self.assertIn("Größe <neu>".encode("iso-8859-1"), page)

    def test_nothing_fails_in_the_service(self):
        self.assertEqual(SYNCED.events_of("modSelectSql_SqlTop10SwitchStats"), [])
        self.assertIn("running", ask(SYNCED, "status").out)

    def test_a_report_of_another_day_is_refused(self):
        reports = created(new_folder(self)) / "Reports.mdb"
        file = old_file(reports).write(new_folder(self) / "Old.mdb")
        result = db("sync-jet", "--reports", file, SYNCED.path)
        self.assertEqual(result.status, FAILED)
        self.assertRegex(result.errors,
                         f"{file} has no statistics of {TODAY}; .*Nothing was written")


class ToEmptyInstallation(unittest.TestCase):
    def setUp(self):
        self.folder = new_folder(self)
        self.installation = created(new_folder(self))
        self.file = self.folder / "Old.mdb"

    def sync(self, *options):
        return db("sync-jet", "--reports", self.file, *options, self.installation)

    def write_statistics(self, table, columns, rows, **how):
        """A file with that table, and the others with a row of today each."""
        writer = JetWriter()
        for other in REPORT_TABLES:
            if other == table:
                writer.add_table(table, columns, rows, **how)
            else:
                writer.add_table(other, [Column("RecNo", "long"), Column("LastUpdate", "date")],
                                 [[1, local_now()]])
        return writer.write(self.file)

    def taken(self, table, *columns):
        names = [column.name for column in columns_of(self.installation / "Reports.mdb", table)]
        places = [names.index(column) for column in columns]
        return [tuple(row[place] for place in places)
                for row in rows_of(self.installation / "Reports.mdb", table)]


class Kinds(ToEmptyInstallation):
    """What becomes of the kinds of columns, of fields without a value, and of rows."""

    def assert_taken(self, name, kind, values, wanted):
        self.write_statistics("VLAN", [Column("RecNo", "long"), Column(name, kind)],
                              list(enumerate(values, start=1)))
        result = self.sync()
        self.assertEqual(result.status, DONE, result)
        self.assertEqual(self.taken("VLAN", name), [(value,) for value in wanted])

    def test_each_kind_of_number(self):
        metric = "InHCOctetsMb24H"
        for kind, values, wanted in (
                ("byte", [0, 255, None], [0, 255, None]),
                ("integer", [-32768, 32767, None], [-32768, 32767, None]),
                ("long", [-2147483648, 2147483647, None], [-2147483648, 2147483647, None]),
                ("currency", [-0.0001, 922337203685477, None], [-0.0001, 922337203685477, None]),
                ("single", [0.1, 32209924, -1.5e30, None], [0.1, 32209924, -1.5e30, None]),
                ("double", [0.1, 1e300, -2.5, None], [0.1, 1e300, -2.5, None]),
                ("decimal", [-1234567.8912, 99999999999, None], [-1234567.8912, 99999999999, None]),
                ("yes/no", [True, False, None], [-1, 0, 0])):
            with self.subTest(kind):
                self.assert_taken(metric, kind, values, wanted)

    def test_dates_on_both_sides_of_their_zero(self):
        dates = ["0100-01-01 00:00:00", "1600-02-29 23:59:59", "1899-12-29 06:00:00",
                 "1899-12-30 00:00:00", "1899-12-30 18:30:01", "2024-02-29 03:00:00",
                 "9999-12-31 23:59:59"]
        self.assert_taken("InOctetsDate", "date", [*dates, None], [*dates, None])

    def test_texts_of_each_alphabet_and_length(self):
        texts = ["Gi0/1", "", "Größe 张三 ok", "ЖЖЖ", "a\u0100b", "\U0001f600", "x" * 255, None]
        wanted = [text or "" for text in texts]
        for kind in ("text", "wide text", "memo"):
            with self.subTest(kind):
                self.assert_taken("IfAlias", kind, texts, wanted)

    def test_memos_that_lie_on_pages_of_their_own(self):
        memos = ["m" * 90, "é" * 1000, "张" * 1900, "x" * 10_000, "Ж" * 30_000]
        self.assert_taken("IfAlias", "memo", memos, memos)

    def test_truths(self):
        self.assert_taken("IsTrunk", "yes/no", [True, False, None], [1, 0, 0])

    def test_deleted_rows_stay_away_and_moved_ones_come(self):
        columns = [Column("RecNo", "long"), Column("IfAlias", "text")]
        rows = [(number, f"alias {number}" * 10) for number in range(500)]
        self.write_statistics("VLAN", columns, rows, deleted={0, 7, 499}, moved={3, 250})
        self.assertEqual(self.sync().status, DONE)
        taken = self.taken("VLAN", "RecNo", "IfAlias")
        self.assertEqual(sorted(taken), [row for row in rows if row[0] not in (0, 7, 499)])

    def test_columns_that_were_added_later_are_empty_in_older_rows(self):
        columns = [Column("RecNo", "long"), Column("IfAlias", "text")]
        columns += [Column(f"Column{number}", "long") for number in range(14)]
        later = [Column("DevName", "text"), Column("IsTrunk", "yes/no"), Column("VlanID", "long"),
                 Column("LastUpdate", "date")]
        rows = [(number, f"alias {number}", *range(14)) for number in range(300)]
        self.write_statistics("VLAN", [*columns, *later], rows, columns_at_first=len(columns))
        self.assertEqual(self.sync().status, DONE)
        self.assertEqual(self.taken("VLAN", "RecNo", "IfAlias", "DevName", "IsTrunk", "VlanID",
                                    "LastUpdate"),
                         [(*row[:2], "", 0, None, None) for row in rows])

    def test_a_field_that_fits_no_column_takes_its_row_along_and_is_told(self):
        self.write_statistics("VLAN", [Column("RecNo", "double"), Column("IfAlias", "picture")],
                              [(1.0, None), (3e9, None), (2.0, b"GIF89a"), (4.0, None)])
        result = self.sync()
        self.assertEqual(result.status, DONE, result)
        self.assertEqual(self.taken("VLAN", "RecNo"), [(1,), (4,)])
        self.assertIn("VLAN: 2 of 4 rows\n", result.out)
        self.assertRegex(result.out, r"  VLAN, row 2, RecNo: .*3000000000.*; the row is left out\n")
        self.assertRegex(result.out, r"  VLAN, row 3, IfAlias: .*; the row is left out\n")
        self.assertIn("  VLAN: the column IfOper is missing; it gets what a new installation has\n",
                      result.out)

    def test_a_map_that_names_the_pages_of_others_as_well_hides_nothing(self):
        self.write_statistics("VLAN", [Column("RecNo", "long")], [(5,), (7,)], foreign=(4, 9))
        result = self.sync()
        self.assertEqual(result.status, DONE, result)
        self.assertEqual(self.taken("VLAN", "RecNo"), [(5,), (7,)])

    def test_a_table_that_counts_its_rows_wrongly_is_refused(self):
        for counted in (0, 1, 3):
            self.write_statistics("VLAN", [Column("RecNo", "long")], [(5,), (7,)], counted=counted)
            result = self.sync()
            self.assertEqual(result.status, FAILED, counted)
            self.assertIn(f"the table VLAN counts {counted} rows", result.errors)
            self.assertEqual(self.taken("VLAN", "RecNo"), [])

    def test_a_password_hides_nothing(self):
        whole = self.write_statistics("VLAN", [Column("RecNo", "long")], [(5,)]).read_bytes()
        self.file.write_bytes(with_password(whole, "Secret"))
        self.assertEqual(self.sync().status, DONE)
        self.assertEqual(self.taken("VLAN", "RecNo"), [(5,)])


class BadFiles(ToEmptyInstallation):
    @classmethod
    def setUpClass(cls):
        cls.reports = old_file(DEMONSTRATION.path / "Reports.mdb")
        cls.whole = cls.reports.data()

    def import_with_history(self, history):
        """Where nothing is wrong with the two other files."""
        files = TAKEN_OVER.files._replace(history=history)
        return db("import-jet", *files.options, self.installation)

    def assert_refused(self, reason, file=None):
        """By both commands, and with nothing written."""
        file, before = file or self.file, contents(self.installation)
        for result in (db("sync-jet", "--reports", file, self.installation),
                       self.import_with_history(file)):
            self.assertEqual(judge_refusal(result, file), "")
            self.assertIn(reason, result.errors)
        self.assertEqual(contents(self.installation), before)

    def changed(self, place, data):
        return self.whole[:place] + data + self.whole[place + len(data):]

    def test_what_is_no_old_file_of_that_kind_is_refused(self):
        for reason, data in (
                ("is no Jet database file", b""),
                ("is no Jet database file", b"RecNo,DevName\r\n1,a\r\n" * 500),
                ("is no Jet database file", random.Random(1).randbytes(1 << 16)),
                ("is no Jet database file", (self.installation / "Reports.mdb").read_bytes()),
                ("newer kind (.accdb)", self.changed(4, b"Standard ACE DB\0\2")),
                ("newer version", self.changed(VERSION, b"\3")),
                ("the file is encrypted", encrypted(PEOPLE.read_bytes(), 0x5eed)),
                ("is cut off", self.whole[:-1]),
                ("is cut off", self.whole[:PAGE])):
            with self.subTest(reason):
                self.file.write_bytes(data)
                self.assert_refused(reason)

    def test_what_is_no_file_is_refused(self):
        for file in (self.file, self.folder, Path("/dev/zero")):
            self.assert_refused("is no file", file)

    def test_a_file_without_one_of_the_tables_is_refused_with_its_name(self):
        old_file(DEMONSTRATION.path / "Reports.mdb", without=["MAC"]).write(self.file)
        result = self.sync()
        self.assertEqual(judge_refusal(result, self.file), "")
        self.assertIn("it lacks the tables MAC; look whether it is the right file", result.errors)
        self.assert_refused("it lacks the tables", PEOPLE)

    def test_names_out_of_files_and_of_files_do_no_harm_to_a_terminal(self):
        writer = JetWriter()
        writer.add_table("\x1b[31mVLAN\x07", [Column("\x1b]0;x\x07", "long")], [(1,)])
        file = writer.write(self.folder / "\x1b[2J\n.mdb")
        for result in (db("sync-jet", "--reports", file, self.installation),
                       self.import_with_history(file)):
            self.assertEqual(result.status, FAILED)
            self.assertTrue(is_plain(result.errors), result)
            self.assertEqual(result.errors.count("\n"), 1, result)

    def test_a_file_that_is_cut_off_gives_all_of_its_rows_or_nothing(self):
        damaged = DamagedReports(self.whole, [], self.file, self.installation, SEED)
        pages = len(self.whole) // PAGE
        for count in range(1, pages, max(1, pages // 25)):
            outcome = damaged.take(self.whole[:count * PAGE])
            self.assertEqual(outcome.fault, "", count)
            self.assertFalse(outcome.was_read, count)

    def test_damage_anywhere_is_told_or_changes_no_more_than_fields(self):
        pages = [*range(1, 50), *[page for pages in self.reports.places.values()
                                  for page in pages[:8]]]
        damaged = DamagedReports(self.whole, pages, self.file, self.installation, SEED)
        read, faults = damaged.run(DAMAGES)
        self.assertEqual(faults, [])
        self.assertLess(0, read)
        self.assertLess(read, DAMAGES)


class WhileItIsRead(ToEmptyInstallation):
    """A file whose reading takes its time."""

    def setUp(self):
        super().setUp()
        columns = [Column("RecNo", "long"), Column("MacAddr", "text"), Column("LastSeen", "date")]
        rows = [(number, "02 1B 2C 3D 4E 5F", local_now()) for number in range(100)]
        self.write_statistics("MAC", columns, rows, times=LONG_ROWS // 100)
        self.before = contents(self.installation)

    def run_to_first_progress(self):
        process = Watched("sync-jet", "--reports", self.file, self.installation)
        self.assertEqual(process.first_line_with("..."), f"MAC: 100000 of {LONG_ROWS} rows ...\n")
        return process

    def test_its_progress_is_told(self):
        result = self.sync()
        self.assertEqual(result.status, DONE, result)
        self.assertEqual(re.findall(r"^MAC: \d.*", result.out, re.M), [
            f"MAC: 100000 of {LONG_ROWS} rows ...", f"MAC: 200000 of {LONG_ROWS} rows ...",
            f"MAC: {LONG_ROWS} of {LONG_ROWS} rows"])

    def test_a_kill_leaves_nothing_behind_and_it_can_be_repeated(self):
        process = self.run_to_first_progress()
        process.send_signal(signal.SIGKILL)
        self.assertEqual(process.result().status, -signal.SIGKILL)
        self.assertEqual(contents(self.installation), self.before)
        self.assertEqual(self.sync().status, DONE)
        self.assertEqual(len(self.taken("MAC", "RecNo")), LONG_ROWS)

    def test_a_file_that_changes_meanwhile_is_refused(self):
        process = self.run_to_first_progress()
        os.utime(self.file)
        result = process.result()
        self.assertEqual(result.status, FAILED)
        self.assertRegex(result.errors,
                         rf"\Aquillondb: {self.file} changed while it was read; .*\n\Z")
        self.assertEqual(contents(self.installation), self.before)


if __name__ == "__main__":
    unittest.main()
