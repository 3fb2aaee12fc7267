"""The reports of the console against the pages of the service: the same rows, the same texts, in
the same order; and the three forms in which they are printed."""
import csv
import io
import unittest

import fleet
import mail_box
from quillonctl import DONE, FAILED, ask, ctl
from search_network import PORTS
from search_pages import (
    ALIAS, DISK, MAC, NAME, UTF8, post, result_of, speaking)
from site_pages import METRICS
from test_quillonctl_jobs import JOBS
from test_quillonctl_jobs import SITE as BUILT

SITE = fleet.declare(speaking(UTF8))
BEFORE_IMPORT = fleet.declare_idle()
LARGE = fleet.declare_idle()  # more ports than a page has rows

LATIN = "ISO-8859-1"
DISK_WORDS = ("totalbytes", "freebytes", "usedbytes", "usedpercent", "trend14d", "trend30d")
DISK_CLASSES = ("physical", "virtual", "windows", "unix")
FIGURES = ("inHCOctetsMb24H", "outHCOctetsMb24H", "inBroadCastPpm24H", "inMultiCastPpm24H",
           "inErrorsTot24H", "outErrorsTot24H")
SIZES = ("totalM", "freeM", "usedM", "usedProc", "trend14d", "trend30d")
SHOWN = "<td width='200px'>{}</td>"
ROW = "<tr class='tableData"
EVERY_REPORT = (("access",), ("trunk", "outerrors"), ("port-name", "Stapel"), ("port-alias", "*"),
                ("mac-ip", "02*"), ("disk-search", "*", "disk*"))


def setUpModule():
    fleet.start()


def port_row(row):
    """The texts of a row as the page has them, in its order."""
    has_user = row["userMacAddr"] not in ("", "-")
    seen = f"&nbsp;&nbsp(LastSeen: {row['userLastSeen']})" if has_user else ""
    return [f"<a href=hist45-{row['recNo']}-{row['ifIndex']}-", f">{row['device']}</a>",
            f">{row['ifDescr']}</a>", f" Index: {row['ifIndex']}&", f" Admin: {row['ifAdmin']}&",
            f" Oper: {row['ifOper']}<", f">{row['device']}&nbsp;&nbsp(RecNo: {row['recNo']})<",
            f">{row['ipAddr']}<", f">{row['ifAlias']}<", f">{row['vlanID']}<",
            f">{row['ifSpeed']}<", f">{row['userMacAddr']}{seen}<", f">{row['userIpAddr']}<",
            *(f">{row[name + 'F']}<" for name in FIGURES), *(f">{row[name]}<" for name in FIGURES)]


def disk_row(row):
    return [f"45-{row['recNo']}-", f">{row['device']}</a>", f">{row['storDescr']}<",
            *(f">{row[name]}<" for name in SIZES)]


def rows_of(text):
    return list(csv.DictReader(io.StringIO(text, newline="")))


class ReportTest(unittest.TestCase):
    site = SITE
    charset = UTF8

    def assert_as_on_page(self, page, texts_of_row, *words):
        """That the table on the page is the one of the command."""
        page = result_of(page).decode(self.charset) if not isinstance(page, str) else page
        rows = rows_of(ask(self.site, "report", *words, "--csv").out)
        self.assertEqual(page.count(ROW), len(rows), words)
        position = 0
        for text in [text for row in rows for text in texts_of_row(row)]:
            found = page.find(text, position)
            self.assertGreater(found, -1, (words, text, page[position:position + 500]))
            position = found + len(text) - 1
        self.assert_as_many(page, *words)
        return rows

    def assert_as_many(self, page, *words):
        """The number of rows, and of those that they were chosen from."""
        title = ask(self.site, "report", *words).out.splitlines()[0]
        shown, _, total = title.rpartition(": ")[2].partition(" of ")
        self.assertIn(SHOWN.format(f"{shown} ({total})"), page, (words, title))

    def search(self, action, **fields):
        with self.site.connect() as client:
            client.send(post(action, UTF8, **fields))
            return client.receive().body


class PortLists(ReportTest):
    def test_every_list_of_ports(self):
        for kind in ("access", "trunk"):
            for metric in METRICS:
                page = self.site.get(f"switch-{kind}-port-top10-{metric}.htm").body
                rows = self.assert_as_on_page(page, port_row, kind, metric)
                self.assertGreater(len(rows), 0)

    def test_without_a_metric_it_is_the_volume_that_comes_in(self):
        self.assertEqual(ask(SITE, "report", "trunk").out,
                         ask(SITE, "report", "trunk", "involume").out)

    def test_there_are_as_many_rows_as_are_asked_for(self):
        def rows(*words):
            return rows_of(ask(LARGE, "report", "access", *words, "--csv").out)
        everything = rows("--rows", "1000")
        self.assertGreater(len(everything), 100)
        self.assertEqual(rows(), everything[:10])
        for count in (1, 11, 100):
            self.assertEqual(rows("--rows", str(count)), everything[:count])


class DiskLists(ReportTest):
    """Of the pages that the job of the operator has built."""
    site = BUILT
    charset = LATIN

    @classmethod
    def setUpClass(cls):
        if not mail_box.is_available:
            raise unittest.SkipTest(mail_box.REASON)
        cls.pages = JOBS.result().cache

    def test_every_list_of_disks(self):
        for name in DISK_CLASSES:
            for word in DISK_WORDS:
                for order in ("asc", "desc"):
                    page = self.pages[f"disk-{name}-top10-{word}-{order}.htm"]
                    rows = self.assert_as_on_page(
                        page.decode(LATIN), disk_row, "disks", name, "--by", word, "--order", order)
                    self.assertEqual(len(rows), 3 if name == "windows" else 1)

    def test_without_an_order_it_is_the_highest_percentage(self):
        self.assertEqual(
            ask(BUILT, "report", "disks", "windows").out,
            ask(BUILT, "report", "disks", "windows", "--by", "usedpercent", "--order", "desc").out)


class Searches(ReportTest):
    def test_ports_by_name_and_alias(self):
        for command, action in (("port-name", NAME), ("port-alias", ALIAS)):
            for device, port in (("Stapel", "*"), ("*", "*"), ("stapel", "*1*"), ("Büro*", "*"),
                                 ("10.0.0.*", "*"), ("nobody", "*")):
                page = self.search(action, DeviceName=device, PortName=port)
                self.assert_as_on_page(page, port_row, command, device, port)

    def test_without_a_port_it_is_every_port(self):
        for command in ("port-name", "port-alias"):
            self.assertEqual(ask(SITE, "report", command, "Stapel").out,
                             ask(SITE, "report", command, "Stapel", "*").out)

    def test_ports_by_addresses(self):
        for address in ("02*", "*", "10.1.0.3", "02:1b:2c*", "021B.2C3D.4E5F", "nobody"):
            page = self.search(MAC, MacIpName=address)
            self.assert_as_on_page(page, port_row, "mac-ip", address)

    def test_disks(self):
        for device, disk in (("*", "*"), ("Farm", "disk*"), ("farm", "disk ?"), ("*", "mem")):
            for word in DISK_WORDS:
                for order in ("asc", "desc"):
                    page = self.search(DISK, DeviceName=device, DiskName=disk,
                                       OrderBy=f"{word}-{order}")
                    self.assert_as_on_page(page, disk_row, "disk-search", device, disk,
                                           "--by", word, "--order", order)

    def test_a_quote_in_a_pattern_is_a_letter(self):
        rows = rows_of(ask(SITE, "report", "port-name", "Büro 'Öst'*", "--csv").out)
        named = [port for port in PORTS if port.name.startswith("Büro 'Öst'")]
        self.assertEqual(len(rows), len(named))
        self.assertGreater(len(rows), 0)
        rows = rows_of(ask(SITE, "report", "port-name", "x' OR '1'='1", "--csv").out)
        self.assertEqual(rows, [])


class Forms(unittest.TestCase):
    def test_json_has_the_rows_of_csv(self):
        for words in EVERY_REPORT:
            rows = rows_of(ask(SITE, "report", *words, "--csv").out)
            self.assertGreater(len(rows), 0, words)
            objects = ask(SITE, "report", *words, "--json").json()
            self.assertEqual([{name: str(value) for name, value in entry.items()}
                              for entry in objects], rows)
            self.assertTrue(all(isinstance(entry["recNo"], int) for entry in objects))

    def test_the_plain_form_has_a_line_for_each_row_and_its_device(self):
        for words in EVERY_REPORT:
            rows = rows_of(ask(SITE, "report", *words, "--csv").out)
            _, _, *lines = ask(SITE, "report", *words).out.splitlines()
            self.assertEqual(len(lines), len(rows), words)
            for line, row in zip(lines, rows):
                self.assertIn(row["device"].strip(), line)

    def test_nothing_found_is_no_failure(self):
        self.assertEqual(ask(SITE, "report", "mac-ip", "nobody", "--json").json(), [])
        self.assertEqual(len(ask(SITE, "report", "mac-ip", "nobody", "--csv").out.splitlines()), 1)
        self.assertEqual(ask(SITE, "report", "mac-ip", "nobody").out,
                         'ports of "nobody": 0 of 0\n')

    def test_disks_of_a_day_that_is_not_imported_are_a_failure_that_says_so(self):
        BEFORE_IMPORT.sql("History.mdb", "DELETE FROM Disk_HistCtrl")
        for words in (("disks", "windows"), ("disk-search", "*")):
            for form in ((), ("--csv",), ("--json",)):
                result = ctl(BEFORE_IMPORT, "report", *words, *form)
                self.assertEqual((result.status, result.out), (FAILED, ""))
                self.assertRegex(result.errors, r"\Aquillonctl: the history has no disks of \d{4}-")

    def test_a_reader_leaves_no_trace(self):
        before = {path: path.stat().st_mtime_ns for path in LARGE.path.glob("*.mdb")}
        for words in (("access",), ("port-name", "*"), ("mac-ip", "*")):
            self.assertEqual(ctl(LARGE, "report", *words).status, DONE)
        self.assertEqual({path: path.stat().st_mtime_ns for path in LARGE.path.glob("*.mdb")},
                         before)
        self.assertEqual(LARGE.names("Debug"), [])


if __name__ == "__main__":
    unittest.main()
