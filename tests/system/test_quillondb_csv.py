"""Statistics that come from CSV files: what the service makes of them, what is refused, and what
becomes of a load that is interrupted."""
import csv
import io
import itertools
import os
import pty
import signal
import sqlite3
import stat
import time
import tty
import unittest
from contextlib import closing

import fleet
from day_watch import DayWatch
from event_file import STARTED
from local_time import is_recent
from night_pieces import DISK as DISK_ROTATION
from night_pieces import SWITCH, History
from own_site import REPORT_TABLES, OwnSiteTest, file_bytes, report_rows
from quillondb import (
    AS_NOBODY, DONE, FAILED, NEEDS_NOBODY, NOBODY, WRONG_USAGE, Running, ask, db, is_plain)
from report_day import TODAY, YESTERDAY
from search_network import PORTS, STACK, WITHOUT_ALIAS
from search_pages import (
    DISK, MAC, MOST_USED, NAME, UTF8, port_table, post, result_of, speaking)
from site_pages import listed_ports

MORNING = f"{TODAY} 03:00:00"
HEADERS = {
    "VLAN": "RecNo,DevName,IpAddr,VlanID,IfIndex,IfDescr,IfSpeed,IfAlias,IfAdmin,IfOper,IsTrunk,"
            "InOctetsDate,LastUpdate,InHCOctetsMb24H,OutHCOctetsMb24H,InBroadCastPpm24H,"
            "InMultiCastPpm24H,InErrorsTot24H,OutErrorsTot24H",
    "MAC": "RecNo,IfIndex,MacAddr,IpAddr,LastSeen",
    "HostDiskInfo": "RecNo,DevName,StorDescr,FreeRawM,UsedRawM,UsedProc,UsedProc14Trend,"
                    "UsedProc30Trend,LastUpdate"}
ROWS = {
    "VLAN": f'71,"Werk ""Süd"", Halle 1",10.7.0.1,12,4,Gi0/4,1 Gbit/s,Kühlung,up,up,no,{MORNING},'
            f"{MORNING},1234.5,500,61,,1441,0",
    "MAC": f"71,4,02 1B 2C 3D 4E 5F,10.7.1.9,{MORNING}",
    "HostDiskInfo": f"91,Archiv,/srv,617,617,50,,,{MORNING}"}
FILES = {table: f"{HEADERS[table]}\n{ROWS[table]}\n".encode() for table in REPORT_TABLES}
DEVICE_NAME = 'Werk "Süd", Halle 1'
PERIOD = [f"<td width='200px'>{day}&nbsp;&nbsp03:00</td>" for day in (YESTERDAY, TODAY)]

# A file whose records do not fit into what the system holds between two programs.
MANY = 30_000


def load(site, table, data, **surroundings):
    """From standard input."""
    return Running("load", "--table", table, "-", site.path, **surroundings).result(data)


def export(site, table):
    """To standard output."""
    return ask("export", "--table", table, "-", site.path).encode()


def redirected(redirection):
    """What runs a program under it, as a shell does."""
    return "bash", "-c", f'exec "$@" {redirection}', "bash"


def many_addresses(device):
    row = f"{device},4,02 00 00 00 00 00,10.0.0.1,{MORNING}\n"
    return (HEADERS["MAC"] + "\n" + row * MANY).encode()


def without_nulls(site):
    """What no file of CSV can tell."""
    site.sql("Reports.mdb", "DELETE FROM VLAN WHERE IfAlias IS NULL")
    site.sql("Reports.mdb", "UPDATE HostDiskInfo SET StorDescr = '/', FreeRawM = 1, UsedRawM = 1,"
             " UsedProc = 50, UsedProc14Trend = 0, UsedProc30Trend = 0, LastUpdate = ?", MORNING)


def loaded_from(source):
    """Prepares a site with the statistics of another one, by way of files."""
    def prepare(site):
        site.sql("History.mdb", "UPDATE General_Info SET ReportStart = '', ReportEnd = ''")
        site.charset = UTF8
        site.set("Settings_WebServer", CharSet=UTF8)
        for table in REPORT_TABLES:
            load(site, table, export(source, table))
    return prepare


SOURCE = fleet.declare_idle(speaking(UTF8), without_nulls)
LOADED = fleet.declare(loaded_from(SOURCE))
FED = fleet.declare(lambda site: site.set("Settings_WebServer", CharSet=UTF8))
INTERRUPTED = fleet.declare()


class FedDay(DayWatch):
    """A site without a management product: files at night, and the next hourly pass."""

    def begin(self):
        self.results = [load(FED, table, data) for table, data in FILES.items()]
        self.results.append(db("report-done", FED.path))
        self.start()

    def work(self):
        self.until(lambda: History.read(FED.path).marks["LastImport"].startswith(TODAY),
                   "the import")
        self.history = History.read(FED.path)


DAY = FedDay()
fleet.when_up(DAY.begin)


def setUpModule():
    fleet.start()


class ImportedDay(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.day = DAY.result()

    def assert_row_of_yesterday(self, rotation, expected):
        (day,) = [day for day in self.day.history.days[rotation]
                  if day.moment.startswith(YESTERDAY)]
        self.assertEqual(day.rows, [expected])

    def assert_page_has(self, page, *texts):
        for text in texts:
            self.assertIn(text, page.body.decode(UTF8))

    def test_each_step_is_done_and_tells_of_the_next_one(self):
        self.assertEqual([(result.status, result.errors) for result in self.day.results],
                         [(DONE, "")] * 4)
        for table, result in zip(FILES, self.day.results):
            self.assertTrue(result.out.startswith(f"Loaded 1 row of {table};"), result.out)
            self.assertIn("quillondb report-done", result.out)

    def test_the_pass_behind_the_mark_imports_what_the_files_hold(self):
        self.assert_row_of_yesterday(SWITCH, (71, 4, 1441, 0, 61, -1, 1234.5, 500, 0))
        self.assert_row_of_yesterday(
            DISK_ROTATION, (91, "Archiv", "/srv", 40, 1234, 617, 617, 50, 50, 50))

    def test_the_mark_is_of_the_moment_of_the_call(self):
        self.assertTrue(is_recent(self.day.history.marks["LastReport"]))

    def test_lists_and_charts_show_the_figures_of_the_files(self):
        self.assert_page_has(FED.get("switch-access-port-top10-involume-fed.htm"), DEVICE_NAME,
                             ">1 235 M  (114 kbit/s)<", ">Kühlung<", "02 1B 2C 3D 4E 5F", *PERIOD)
        self.assert_page_has(FED.get("hist45-71-4.htm"), DEVICE_NAME, "1 235 M", "61 per min")

    def test_the_disk_search_finds_the_storage_of_the_file(self):
        with FED.connect() as client:
            client.send(post(DISK, UTF8, DeviceName="*", DiskName="*", OrderBy=MOST_USED))
            self.assert_page_has(client.receive(), "Archiv", ">/srv<", ">1 234 M<", ">617 M<")

    def test_nothing_fails(self):
        self.assertEqual(FED.event_texts(), [STARTED])


class RoundTrip(OwnSiteTest):
    def test_an_export_that_is_loaded_is_exported_to_the_same_bytes(self):
        for table in REPORT_TABLES:
            first = export(SOURCE, table)
            result = load(self.site, table, first)
            self.assertEqual((result.status, result.errors), (DONE, ""))
            self.assertEqual(export(self.site, table), first)
        self.assertEqual(report_rows(self.site), report_rows(SOURCE))

    def test_a_file_holds_what_standard_output_gets_and_is_for_its_owner_alone(self):
        file = self.folder / "ports.csv"
        result = db("export", "--table", "VLAN", file, SOURCE.path)
        self.assertEqual((result.status, result.out), (DONE, ""))
        self.assertEqual(result.errors, f"Exported {len(PORTS) - 1} rows of VLAN\n")
        self.assertEqual(file.read_bytes(), export(SOURCE, "VLAN"))
        self.assertEqual(stat.S_IMODE(file.stat().st_mode), 0o600)
        self.assertEqual(db("load", "--table", "VLAN", file, self.site.path).status, DONE)
        self.assertEqual(export(self.site, "VLAN"), file.read_bytes())

    def test_other_programs_read_the_file(self):
        rows = list(csv.DictReader(io.StringIO(export(SOURCE, "VLAN").decode(), newline="")))
        self.assertEqual([row["DevName"] for row in rows],
                         [port.name for port in PORTS if port is not WITHOUT_ALIAS])

    def test_a_full_disk_leaves_the_old_file(self):
        file = self.folder / "ports.csv"
        file.write_bytes(b"old")
        self.assertEqual(load(self.site, "MAC", many_addresses(7)).status, DONE)
        result = db("export", "--table", "MAC", file, self.site.path, file_limit=100_000)
        self.assertEqual(result.status, FAILED)
        self.assertIn(f"cannot write {file}", result.errors)
        self.assertEqual(file.read_bytes(), b"old")
        self.assertEqual([path.name for path in self.folder.iterdir() if path.is_file()],
                         ["ports.csv"])


class LoadedPages(unittest.TestCase):
    def test_a_search_shows_awkward_names_as_they_stood_in_the_files(self):
        with LOADED.connect() as client:
            client.send(post(NAME, UTF8, DeviceName="Stapel", PortName="*"))
            page = result_of(client.receive().body)
        self.assertEqual(page, port_table(LOADED, NAME, f"10 ({len(STACK)})", STACK[:10]))

    def test_each_name_is_found(self):
        for port in [port for port in PORTS if port not in (WITHOUT_ALIAS, *STACK)]:
            with self.subTest(port.port), LOADED.connect() as client:
                client.send(post(NAME, UTF8, DeviceName=port.address, PortName="*"))
                page = result_of(client.receive().body).decode(UTF8)
                self.assertIn(f">{port.name}</a>", page)
                self.assertIn(f">{port.alias}<", page)

    def test_an_address_is_found(self):
        with LOADED.connect() as client:
            client.send(post(MAC, UTF8, MacIpName="10.1.0.4"))
            self.assertIn("02 1B 2C 3D 4E 60", client.receive().body.decode(UTF8))


MAC_ROW = "7,4,02 1B 2C 3D 4E 5F,10.1.0.9,2024-05-01 03:00:00"


def addresses(*rows):
    return "\n".join([HEADERS["MAC"], *rows, ""]).encode()


# Of each file the table, the bytes, and what stands behind its name in the message.
BAD_FILES = {
    "a missing column": ("MAC", b"RecNo,IfIndex,MacAddr,IpAddr\n7,4,a,b\n",
                         ", line 1: a column is missing: LastSeen; "),
    "the file of another table": ("VLAN", FILES["MAC"], ", line 1: 'MacAddr' is no column of VLAN"),
    "a column twice": ("MAC", b"RecNo,RecNo,IfIndex,MacAddr,IpAddr,LastSeen\n",
                       ", line 1: RecNo is named twice"),
    "a quote that is not closed": (
        "MAC", addresses(MAC_ROW, '7,4,"02 1B,10.1.0.9,2024-05-01', MAC_ROW),
        ", line 3, MacAddr: a field begins with a quote that is not closed\n"),
    "a quote inside a field": ("MAC", addresses(MAC_ROW, '7,4,02"1B,,2024-05-01'),
                               ", line 3, MacAddr: a quote stands inside a field; "),
    "a field that goes on behind its quote": (
        "MAC", addresses(MAC_ROW, '7,4,"02"1B,,2024-05-01'),
        ", line 3, MacAddr: a field goes on behind its closing quote; "),
    "a text in another charset": (
        "MAC", addresses(MAC_ROW) + "7,4,,B\xfcro,2024-05-01\n".encode("latin-1"),
        ", line 3, IpAddr: 'B?ro' is no UTF-8; "),
    "a date in another form": ("MAC", addresses("7,4,,b,1.5.2024"),
                               ", line 2, LastSeen: '1.5.2024' is no date; write YYYY-MM-DD"),
    "a number with a comma": (
        "HostDiskInfo", f'{HEADERS["HostDiskInfo"]}\n9,srv,/,"1,5",2,40,,,{MORNING}\n'.encode(),
        ", line 2, FreeRawM: '1,5' is no number"),
    "a comma that makes a field more": (
        "MAC", addresses("1,5,4,a,b,2024-05-01"),
        ", line 2: the number of fields is 6, and that of columns 5"),
    "an address that no search would find": (
        "MAC", addresses(MAC_ROW.replace("02 1B 2C 3D 4E 5F", "02:1b:2c:3d:4e:5f")),
        ", line 2, MacAddr: '02:1b:2c:3d:4e:5f' is no hardware address; write six pairs"),
    "a figure beyond the sums of a day": (
        "VLAN", FILES["VLAN"].replace(b",1441,", b",3000000000,"),
        ", line 2, InErrorsTot24H: '3000000000' is no number from -2147483648 to 2147483647"),
    "sizes that have no sum": (
        "HostDiskInfo", FILES["HostDiskInfo"].replace(b"617,617,", b"3e38,3e38,"),
        ", line 2, UsedRawM: '3e38' is no number from "),
    "a text in UTF-16": ("MAC", addresses(MAC_ROW).decode().encode("utf-16"),
                         ", line 1: the text is in UTF-16; save it in UTF-8"),
    "a device without a number": ("MAC", addresses("0,4,,b,2024-05-01"),
                                  ", line 2, RecNo: '0' is no whole number from 1 "),
    "bytes that steer a terminal": ("MAC", addresses("7,\x1b[2J\x07,,b,2024-05-01"),
                                    ", line 2, IfIndex: '?[2J?' is no whole number"),
    "a mistake in the last of many lines": (
        "MAC", many_addresses(7) + b"7,4,,b,never\n",
        f", line {MANY + 2}, LastSeen: 'never' is no date"),
    "no line at all": ("MAC", b"", ", line 1: columns are missing: RecNo, IfIndex, "),
    "an archive": ("MAC", b"PK\x03\x04" + bytes(range(256)) * 20, ", line 1: ")}


class BadFiles(OwnSiteTest):
    """Of an installation with a row in each table."""

    def setUp(self):
        super().setUp()
        for table, data in FILES.items():
            self.assertEqual(load(self.site, table, data).status, DONE)
        self.rows, self.files = report_rows(self.site), file_bytes(self.site.path)
        self.file = self.folder / "rows.csv"

    def assert_refused(self, result, *texts, status=FAILED):
        self.assertEqual((result.status, result.out), (status, ""), result.errors)
        for text in texts:
            self.assertIn(text, result.errors)
        self.assertTrue(is_plain(result.errors), repr(result.errors))
        self.assertEqual(report_rows(self.site), self.rows)
        self.assertEqual(file_bytes(self.site.path), self.files)

    def load(self, table, path, **surroundings):
        return db("load", "--table", table, path, self.site.path, **surroundings)

    def test_each_mistake_is_told_with_its_place_and_nothing_is_written(self):
        for name, (table, data, text) in BAD_FILES.items():
            with self.subTest(name):
                self.file.write_bytes(data)
                self.assert_refused(
                    self.load(table, self.file),
                    f"quillondb: {self.file} is not loaded, and nothing was written:\n",
                    f"{self.file}{text}")

    def test_standard_input_has_a_name_of_its_own(self):
        self.assert_refused(load(self.site, "MAC", b"RecNo\n"),
                            "quillondb: standard input is not loaded",
                            "standard input, line 1: columns are missing: IfIndex, ")

    def test_all_mistakes_of_a_file_are_told_at_once(self):
        self.file.write_bytes(addresses("x,4,,b,2024-05-01", MAC_ROW, "7,4,,b,noon"))
        self.assert_refused(self.load("MAC", self.file),
                            ", line 2, RecNo: ", ", line 4, LastSeen: ")

    def test_a_file_that_cannot_be_read_is_named(self):
        missing = self.folder / "missing.csv"
        self.assert_refused(self.load("MAC", missing), f"{missing}: No such file or directory")
        self.assert_refused(self.load("MAC", self.folder), f"{self.folder}", "Is a directory")

    def test_standard_input_that_cannot_be_read_is_not_taken_for_its_end(self):
        for redirection, text in (
                (f"< {self.folder}", "standard input, line 1: cannot be read: Is a directory"),
                ("<&-", "standard input")):
            with self.subTest(redirection):
                self.assert_refused(self.load("MAC", "-", inside=redirected(redirection)), text)

    def test_a_terminal_that_goes_away_is_not_the_end_of_what_it_sent(self):
        terminal, programs_end = pty.openpty()
        tty.setraw(programs_end)
        running = Running("load", "--table", "MAC", "-", self.site.path,
                          inside=redirected(f"< {os.ttyname(programs_end)}"))
        os.write(terminal, addresses(MAC_ROW))
        self.assertFalse(running.is_over_within(0.5))
        os.close(programs_end)
        os.close(terminal)
        self.assert_refused(running.result(),
                            "standard input, line 3: cannot be read: Input/output error")

    def test_another_program_that_writes_is_told_as_such(self):
        self.file.write_bytes(FILES["MAC"])
        with closing(self.site.open_database("Reports.mdb")) as other:
            other.execute("BEGIN IMMEDIATE")
            result = self.load("MAC", self.file)
        self.assertEqual((result.status, result.out), (FAILED, ""))
        self.assertIn("Reports.mdb: another program has kept the database locked for 5 s",
                      result.errors)
        self.assertEqual(report_rows(self.site), self.rows)

    def test_the_name_of_a_file_cannot_steer_the_terminal(self):
        name = self.folder / "a\x1b[2J.csv"
        self.assert_refused(self.load("MAC", name), "No such file or directory")
        name.write_bytes(b"RecNo\n")
        self.assert_refused(self.load("MAC", name), "?[2J.csv, line 1: columns are missing")

    @NEEDS_NOBODY
    def test_a_user_without_rights_learns_what_he_may_not_read(self):
        self.folder.chmod(0o711)
        self.file.write_bytes(FILES["MAC"])
        self.file.chmod(0o600)
        self.site.path.chmod(0o755)
        self.assert_refused(self.load("MAC", self.file, inside=AS_NOBODY),
                            f"cannot open {self.file}: Permission denied")
        self.file.chmod(0o644)
        self.assert_refused(self.load("MAC", self.file, inside=AS_NOBODY), "Reports.mdb")

    @NEEDS_NOBODY
    def test_a_directory_that_may_not_be_entered_is_not_said_to_be_empty(self):
        self.folder.chmod(0o711)
        self.file.write_bytes(FILES["MAC"])
        self.file.chmod(0o644)
        result = self.load("MAC", self.file, inside=AS_NOBODY)
        self.assert_refused(result, "Permission denied")

    def test_a_folder_without_databases_is_no_installation(self):
        self.assert_refused(db("load", "--table", "MAC", self.file, self.folder),
                            "Quillon.mdb is missing; 'quillondb create' makes an installation")

    def test_wrong_usage_has_a_status_of_its_own(self):
        for words in (("--table", "Nothing", self.file, self.site.path),
                      (self.file, self.site.path), ("--table", "MAC", self.file),
                      ("--table", "MAC", "", self.site.path),
                      ("--table", "MAC", self.file, self.site.path, "more")):
            for command in ("load", "export"):
                with self.subTest(words=words, command=command):
                    self.assert_refused(db(command, *words), status=WRONG_USAGE)

    def test_a_full_disk_leaves_the_old_rows(self):
        limit = (self.site.path / "Reports.mdb").stat().st_size + 4096
        self.assert_refused(load(self.site, "MAC", many_addresses(8), file_limit=limit),
                            "Reports.mdb")


class WhatAnExportReplaces(OwnSiteTest):
    def export(self, file, **surroundings):
        return db("export", "--table", "MAC", file, self.site.path, **surroundings)

    def assert_refused(self, file, text, **surroundings):
        result = self.export(file, **surroundings)
        self.assertEqual((result.status, result.out), (FAILED, ""))
        self.assertIn(f"{file} is {text}", result.errors)

    def test_a_database_stays_whatever_its_path(self):
        before = file_bytes(self.site.path)
        for path in (self.site.path, self.site.path / "Debug/..", self.site.path / "WebReports"):
            for name in ("Quillon.mdb", "Reports.mdb", "History.mdb-wal"):
                with self.subTest(path=path, name=name):
                    self.assert_refused(path / name, "the name of a database")
        self.assertEqual(file_bytes(self.site.path), before)
        self.assertEqual(db("check", self.site.path).out, "ok\n")

    def test_a_link_and_its_file_stay(self):
        (self.folder / "secret").write_bytes(b"old")
        link = self.site.path / "ports.csv"
        link.symlink_to(self.folder / "secret")
        self.assert_refused(link, "a link")
        self.assertTrue(link.is_symlink())
        self.assertEqual((self.folder / "secret").read_bytes(), b"old")

    def test_what_standard_output_is_appended_to_stays(self):
        log = self.folder / "log"
        log.write_bytes(b"old\n")
        self.assert_refused("/dev/stdout", "a link", inside=redirected(f">> {log}"))
        self.assertEqual(log.read_bytes(), b"old\n")
        self.assertEqual(self.export("-", inside=redirected(f">> {log}")).status, DONE)
        self.assertEqual(log.read_text(), f"old\n{HEADERS['MAC']}\n")


@NEEDS_NOBODY
class InstallationOfAnotherUser(OwnSiteTest):
    """The service's user owns it, and root calls: inside of it he acts as that user, and as himself
    with the file that he names."""

    def setUp(self):
        super().setUp()
        self.folder.chmod(0o711)
        self.private = self.folder / "private"
        self.private.mkdir(0o700)
        self.file = self.private / "rows.csv"
        self.paths = [self.site.path, *self.site.path.rglob("*")]
        for path in self.paths:
            os.chown(path, NOBODY, NOBODY)

    def call(self, command):
        return db(command, "--table", "MAC", self.file, self.site.path,
                  inside=("env", f"TMPDIR={self.private}"))

    def test_a_load_reads_roots_own_file_and_leaves_all_to_the_owner(self):
        self.file.write_bytes(many_addresses(7) + many_addresses(7).partition(b"\n")[2] * 3)
        self.file.chmod(0o600)
        result = self.call("load")
        self.assertEqual((result.status, result.errors), (DONE, ""))
        self.assertEqual(len(report_rows(self.site)["MAC"]), 4 * MANY)
        self.assertEqual({path.stat().st_uid for path in self.paths}, {NOBODY})

    def test_an_export_is_roots_own(self):
        self.assertEqual(self.call("export").status, DONE)
        self.assertEqual(self.file.stat().st_uid, 0)
        self.assertEqual([path.name for path in self.private.iterdir()], ["rows.csv"])

    def name_inside(self, name, target=None):
        """A file inside of the installation; `target` is where a link of the owner's leads."""
        self.file = self.site.path / name
        if target:
            first = self.site.path / name.partition("/")[0]
            first.symlink_to(target)
            os.lchown(first, NOBODY, NOBODY)

    def test_an_export_into_the_installation_is_the_owners(self):
        self.name_inside("rows.csv")
        self.assertEqual(self.call("export").status, DONE)
        self.assertEqual(self.file.stat().st_uid, NOBODY)

    def test_a_load_of_a_file_inside_of_it_needs_the_owners_rights_alone(self):
        self.name_inside("rows.csv")
        self.file.write_bytes(FILES["MAC"])
        self.file.chmod(0o644)
        self.assertEqual(self.call("load").status, DONE)

    def test_a_folder_that_the_owner_has_led_elsewhere_gets_no_export_of_roots(self):
        roots = self.folder / "roots"
        roots.mkdir(0o755)
        self.name_inside("out/rows.csv", roots)
        result = self.call("export")
        self.assertEqual(result.status, FAILED)
        self.assertIn(f"cannot create {self.file}: Permission denied", result.errors)
        self.assertEqual(list(roots.iterdir()), [])

    def test_a_file_that_the_owner_has_led_elsewhere_is_not_loaded_by_root(self):
        secret = self.private / "secret.csv"
        secret.write_bytes(FILES["MAC"])
        self.name_inside("in.csv", secret)
        result = self.call("load")
        self.assertEqual(result.status, FAILED)
        self.assertIn(f"cannot open {self.file}: Permission denied", result.errors)

    def test_a_pipe_of_the_owners_lets_root_wait_for_nobody(self):
        self.name_inside("in.csv")
        os.mkfifo(self.file)
        result = self.call("load")
        self.assertEqual(result.status, FAILED)
        self.assertIn(f"{self.file} is no ordinary file", result.errors)

    def test_a_link_of_the_owner_leads_root_nowhere(self):
        self.file.write_bytes(FILES["MAC"])
        database = self.private / "Reports.mdb"
        (self.site.path / "Reports.mdb").rename(database)
        os.chown(database, 0, 0)
        before = database.read_bytes()
        (self.site.path / "Reports.mdb").symlink_to(database)
        for command in ("load", "export"):
            with self.subTest(command):
                result = self.call(command)
                self.assertEqual(result.status, FAILED)
                self.assertIn("Reports.mdb", result.errors)
        self.assertEqual(database.read_bytes(), before)
        self.assertEqual(self.file.read_bytes(), FILES["MAC"])
        self.assertEqual(sorted(path.name for path in self.private.iterdir()),
                         ["Reports.mdb", "rows.csv"])


def is_locked(site):
    """Whether another program writes into the statistics."""
    with closing(sqlite3.connect(site.path / "Reports.mdb", isolation_level=None,
                                 timeout=0)) as database:
        try:
            database.execute("BEGIN IMMEDIATE")
        except sqlite3.OperationalError:
            return True
        database.execute("ROLLBACK")
        return False


class LoadUnderWay(unittest.TestCase):
    """Of the ports of a site that is asked for them meanwhile."""
    numbers = itertools.count()

    def setUp(self):
        self.rows = report_rows(INTERRUPTED)
        self.load = Running("load", "--table", "VLAN", "-", INTERRUPTED.path)
        header, _, row = FILES["VLAN"].partition(b"\n")
        self.load.type(header + b"\n" + row * 5_000)
        self.last_row = row

    def shows_the_new_rows(self):
        """A list that nobody has asked for before; it is full in any case."""
        name = f"switch-access-port-top10-involume-{next(self.numbers)}.htm"
        page = INTERRUPTED.get(name).body
        self.assertEqual(listed_ports(page), 10)
        return f">{DEVICE_NAME}</a>" in page.decode("latin-1")

    def assert_old_rows_stand(self):
        self.assertFalse(self.shows_the_new_rows())
        self.assertEqual(report_rows(INTERRUPTED), self.rows)
        self.assertFalse(is_locked(INTERRUPTED))

    def bring_back(self):
        """The types stand behind the values."""
        half = len(self.rows["VLAN"][0]) // 2
        with closing(INTERRUPTED.open_database("Reports.mdb")) as reports:
            reports.execute("BEGIN")
            reports.execute("DELETE FROM VLAN")
            reports.executemany(f"INSERT INTO VLAN VALUES ({', '.join('?' * half)})",
                                [row[:half] for row in self.rows["VLAN"]])
            reports.execute("COMMIT")

    def test_pages_have_the_old_rows_until_the_new_ones_stand(self):
        self.addCleanup(self.bring_back)
        self.assertFalse(self.shows_the_new_rows())
        self.assertFalse(self.load.is_over_within(0.2))
        self.assertFalse(is_locked(INTERRUPTED))
        result = self.load.result(self.last_row)
        self.assertEqual((result.status, result.errors), (DONE, ""))
        self.assertEqual(len(report_rows(INTERRUPTED)["VLAN"]), 5_001)
        self.assertTrue(self.shows_the_new_rows())

    def test_one_that_is_killed_leaves_the_old_rows(self):
        self.load.send_signal(signal.SIGKILL)
        self.assertEqual(self.load.result().status, -signal.SIGKILL)
        self.assert_old_rows_stand()

    def test_one_that_is_ended_leaves_the_old_rows(self):
        self.load.send_signal(signal.SIGTERM)
        self.assertEqual(self.load.result().status, -signal.SIGTERM)
        self.assert_old_rows_stand()

    def test_one_whose_input_breaks_off_inside_a_record_leaves_the_old_rows(self):
        result = self.load.result(self.last_row[:40])
        self.assertEqual(result.status, FAILED)
        self.assertIn("standard input, line 5002: ", result.errors)
        self.assert_old_rows_stand()


class KilledLoads(OwnSiteTest):
    def setUp(self):
        super().setUp()
        self.file = self.folder / "addresses.csv"
        self.write(7)
        self.seconds = self.seconds_of_a_load()

    def write(self, device):
        self.file.write_bytes(many_addresses(device))

    def load(self):
        return Running("load", "--table", "MAC", self.file, self.site.path)

    def seconds_of_a_load(self):
        begin = time.monotonic()
        self.assertEqual(self.load().result().status, DONE)
        return time.monotonic() - begin

    def devices(self):
        return self.site.sql("Reports.mdb", "SELECT RecNo, COUNT(*) FROM MAC GROUP BY RecNo")

    def test_at_any_moment_either_all_old_rows_stand_or_all_new_ones(self):
        self.write(8)
        for tenth in range(1, 11):
            killed = self.load()
            killed.is_over_within(self.seconds * tenth / 10)
            killed.send_signal(signal.SIGKILL)
            killed.result()
            self.assertIn(self.devices(), ([(7, MANY)], [(8, MANY)]), tenth)
        self.assertEqual(db("check", self.site.path).out, "ok\n")
        self.write(9)
        self.assertEqual(self.load().result().status, DONE)
        self.assertEqual(self.devices(), [(9, MANY)])


if __name__ == "__main__":
    unittest.main()
