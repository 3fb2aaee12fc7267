"""The settings of the form from the command line: what is written and when the service takes it,
and what is refused."""
import os
import signal
import unittest
from contextlib import closing, suppress

import fleet
from day_watch import DayWatch
from event_file import FAILURE, STARTED, STOPPED
from local_time import is_recent
from quillonctl import DONE, FAILED, Console, activity, ask, ctl, settings
from waiting import eventually

THEMES = ("Black", "Blue", "Gold", "Gray", "Kestrel")
GENERAL = "SELECT DebugMode, DatumFormat FROM Settings_General"
WEB_SERVER = "SELECT IpAddr, TcpPort, Enabled, CharSet FROM Settings_WebServer"
NEW_ADDRESS, NEW_CHARSET, NEW_FORMAT = "127.0.0.2", "ISO-8859-15", "DD/MM/YYYY"
RECEIVER = ("receivers", "add", "--name", "Ann", "--recipient", "ann@mail.test")
CHANGES = (("save", "--port", "80"), ("save", "--debug-mode", "yes"), RECEIVER,
           ("smtp", "set", "--port", "26"), ("snmp", "set", "--community", "other"))
READS = (("read",), ("receivers",), ("smtp",), ("snmp",))


def damage(name):
    return lambda site: site.write(name, b"This is no database. " * 500)


def link_to_the_settings(site):
    site.rename("Quillon.mdb", "Elsewhere.mdb")
    (site.path / "Quillon.mdb").symlink_to("Elsewhere.mdb")


RUNNING = fleet.declare()
THEMED = fleet.declare()
SITE = fleet.declare_idle()
CROWDED = fleet.declare_idle()
LOCKED = fleet.declare_idle()
NO_STYLESHEET = fleet.declare_idle(lambda site: site.remove("WebReports/qws.css"),
                                   lambda site: (site.path / "WebReports/qws.css").mkdir())
WITHOUT = {
    "no settings": fleet.declare_idle(lambda site: site.remove("Quillon.mdb")),
    "damaged settings": fleet.declare_idle(damage("Quillon.mdb")),
    "a link to the settings": fleet.declare_idle(link_to_the_settings),
}


class SaveWhileRunning(DayWatch):
    """Saves, looks at what the service makes of it, and starts it again."""

    def work(self):
        self.before = settings(RUNNING)
        self.saved = ctl(
            RUNNING, "save", "--address", NEW_ADDRESS, "--char-set", NEW_CHARSET,
            "--enabled", "yes", "--date-format", NEW_FORMAT, "--debug-mode", "yes")
        self.after = settings(RUNNING)
        self.page_before = RUNNING.get("").body
        self.status_before = ctl(RUNNING, "status").fields()
        RUNNING.process.send_signal(signal.SIGTERM)
        RUNNING.process.wait_until_over()
        RUNNING.process.start()
        RUNNING.address = NEW_ADDRESS
        self.until(lambda: activity(RUNNING) == "idle", "the next start")
        self.page_after = RUNNING.get("").body
        self.status_after = ctl(RUNNING, "status").fields()


SAVE = SaveWhileRunning()
fleet.when_up(SAVE.begin)


def setUpModule():
    fleet.start()


class SettingsTest(unittest.TestCase):
    maxDiff = None

    def assert_refused(self, site, words, *reasons):
        result = ctl(site, *words)
        self.assertEqual((result.status, result.out), (FAILED, ""), words)
        lines = result.errors.splitlines()
        self.assertEqual(len(lines), len(reasons), (words, lines))
        for line, reason in zip(lines, reasons):
            self.assertTrue(line.startswith("quillonctl: "), line)
            self.assertIn(reason, line, words)


class Read(SettingsTest):
    def test_it_shows_the_fields_of_the_form(self):
        fields = ask(SITE, "read").fields()
        self.assertEqual(fields, {
            "debug-mode": "no", "date-format": "YYYY-MM-DD", "enabled": "yes", "address": "0.0.0.0",
            "port": str(SITE.port), "char-set": "ISO-8859-1", "status": ""})

    def test_for_programs_it_has_truths_and_numbers(self):
        self.assertEqual(ask(SITE, "read", "--json").json(), {
            "debug-mode": False, "date-format": "YYYY-MM-DD", "enabled": True, "address": "0.0.0.0",
            "port": SITE.port, "char-set": "ISO-8859-1", "status": ""})

    def test_of_a_service_that_runs_it_shows_the_status(self):
        status = ask(THEMED, "read", "--json").json()["status"]
        self.assertEqual(status, THEMED.listener_row()[1])
        self.assertEqual(ask(THEMED, "read").fields()["status"].splitlines(),
                         status.splitlines())


class Save(SettingsTest):
    @classmethod
    def setUpClass(cls):
        cls.save = SAVE.result()

    def test_it_writes_what_is_given_and_nothing_else(self):
        self.assertEqual((self.save.saved.status, self.save.saved.errors), (DONE, ""))
        before, after = self.save.before, self.save.after
        changed = {table for table in before if before[table] != after[table]}
        self.assertEqual(changed, {"Settings_General", "Settings_WebServer"})
        differences = [
            new for table in sorted(changed)
            for old, new in zip(before[table][0], after[table][0]) if old != new]
        self.assertCountEqual(differences, [1, NEW_FORMAT, NEW_ADDRESS, NEW_CHARSET])

    def test_the_service_keeps_its_own_until_its_next_start(self):
        self.assertIn(b"charset=ISO-8859-1'", self.save.page_before)
        self.assertEqual(self.save.status_before["address"], "127.0.0.1")
        self.assertEqual(self.save.status_before["debug-mode"], "no")

    def test_the_next_start_takes_them(self):
        self.assertIn(f"charset={NEW_CHARSET}'".encode(), self.save.page_after)
        self.assertEqual(self.save.status_after["address"], NEW_ADDRESS)
        self.assertEqual(self.save.status_after["debug-mode"], "yes")

    def test_nothing_fails(self):
        self.assertEqual(RUNNING.event_texts(), [STARTED, STOPPED, STARTED])

    def test_each_field_by_itself(self):
        values = {"--debug-mode": "yes", "--date-format": "MM/DD/YYYY", "--enabled": "no",
                  "--address": "::1", "--port": "65535", "--char-set": "UTF-8"}
        for option, value in values.items():
            expected = {**ask(SITE, "read").fields(), option.removeprefix("--"): value}
            ask(SITE, "save", option, value)
            self.assertEqual(ask(SITE, "read").fields(), expected)
        self.assertEqual(SITE.sql("Quillon.mdb", GENERAL), [(1, "MM/DD/YYYY")])
        self.assertEqual(SITE.sql("Quillon.mdb", WEB_SERVER), [("::1", 65535, 0, "UTF-8")])
        ask(SITE, "save", "--debug-mode", "no", "--date-format", "YYYY-MM-DD", "--enabled", "yes",
            "--address", "0.0.0.0", "--port", str(SITE.port), "--char-set", "ISO-8859-1")


class BadInput(SettingsTest):
    def setUp(self):
        self.before = settings(SITE)

    def tearDown(self):
        self.assertEqual(settings(SITE), self.before)

    def test_a_field_of_the_form(self):
        for option, values in {
                "--address": ("", "localhost", "1.2.3", "127.0.0.1 ", "256.1.1.1", "127.0.0.1:80"),
                "--port": ("", "0", "65536", "80x", " 80", "8e1", "-1", "99999999999999999999"),
                "--date-format": ("", "YYYY", "yyyy-mm-dd", "DD.MM.YYYY"),
                "--char-set": ("", "nope", "UTF-16", "UTF-8//TRANSLIT", "UTF-8\n", "'")}.items():
            for value in values:
                self.assert_refused(SITE, ("save", option, value), f"{option}: ")

    def test_all_that_is_wrong_is_told_and_what_is_right_beside_it_is_not_written(self):
        self.assert_refused(
            SITE, ("save", "--debug-mode", "yes", "--date-format", "x", "--address", "y",
                   "--port", "80", "--char-set", "z"),
            "--date-format: ", "--address: ", "--char-set: ")

    def test_a_theme(self):
        before = SITE.read("WebReports/qws.css")
        for name in ("", "gold", "GOLD", "Gold ", "Red", "../Gold"):
            self.assert_refused(SITE, ("apply-changes", name), "is not known; write one of Black")
        self.assertEqual(SITE.read("WebReports/qws.css"), before)

    def test_a_mail_address(self):
        for address in ("", "ann", "@mail.test", "ann@", "a@b.c, d@e.f", "a@b.c\nBcc: d@e.f",
                        "Ann <a@b.c"):
            self.assert_refused(SITE, ("test-mail", address), "")
            self.assert_refused(SITE, ("smtp", "set", "--from", address), "--from: ")
            self.assert_refused(SITE, ("receivers", "add", "--name", "Ann", "--recipient", address),
                                "--recipient: ")

    def test_a_directory_that_is_no_installation(self):
        for place in ("/nowhere", "/", "/etc/passwd", str(SITE.path / "Debug"), "relative"):
            for words in (("read",), ("save", "--port", "80"), ("status",), ("import",)):
                self.assert_refused(SITE, ("-C", place, *words), "Quillon.mdb: ")


class ApplyChanges(SettingsTest):
    def test_the_next_request_gets_the_stylesheet_of_the_theme(self):
        sheets = {}
        for theme in THEMES:
            ask(THEMED, "apply-changes", theme)
            sheets[theme] = THEMED.get("qws.css").body
            self.assertEqual(sheets[theme], THEMED.read("WebReports/qws.css"))
        self.assertEqual(len(set(sheets.values())), len(THEMES))
        self.assertEqual({sheet.count(b"\r\n") for sheet in sheets.values()},
                         {sheets["Gold"].count(b"\r\n")})
        self.assertEqual(THEMED.event_texts(), [STARTED])

    def test_a_failure_is_told_and_is_an_event(self):
        self.assert_refused(NO_STYLESHEET, ("apply-changes", "Gold"), "Is a directory")
        (event,) = NO_STYLESHEET.events()
        self.assertEqual((event.type, event.source), (FAILURE, "modHtml_CreateCss"))
        self.assertTrue(is_recent(event.time))


class Databases(SettingsTest):
    def test_without_settings_every_command_fails_and_says_why(self):
        reasons = {"no settings": "No such file or directory", "damaged settings": "not a database",
                   "a link to the settings": "is no ordinary file"}
        for what, site in WITHOUT.items():
            tree = site.tree()
            for words in (*READS, *CHANGES):
                self.assert_refused(site, words, reasons[what])
            self.assertEqual(site.tree(), tree, what)

    def test_behind_a_link_nothing_is_written(self):
        site = WITHOUT["a link to the settings"]
        self.assertEqual(site.sql("Elsewhere.mdb", WEB_SERVER)[0][1], site.port)

    def test_one_in_which_somebody_else_writes_can_be_read_and_is_waited_for_in_vain(self):
        before = settings(LOCKED)
        with closing(LOCKED.open_database("Quillon.mdb")) as rival:
            rival.execute("BEGIN IMMEDIATE")
            consoles = [Console(LOCKED, *words) for words in CHANGES]
            for words in READS:
                ask(LOCKED, *words)
            results = [console.result() for console in consoles]
            rival.execute("ROLLBACK")
        for words, result in zip(CHANGES, results):
            self.assertEqual(result, (FAILED, "", "quillonctl: Quillon.mdb: database is locked\n"),
                             words)
        self.assertEqual(settings(LOCKED), before)

    def test_one_that_is_free_again_soon_is_waited_for(self):
        with closing(LOCKED.open_database("Quillon.mdb")) as rival:
            rival.execute("BEGIN IMMEDIATE")
            console = Console(LOCKED, "save", "--char-set", "ISO-8859-2")
            eventually(lambda: self.waits(console), "a console that waits for the database")
            rival.execute("ROLLBACK")
        self.assertEqual(console.result().status, DONE)
        self.assertEqual(LOCKED.sql("Quillon.mdb", WEB_SERVER)[0][3], "ISO-8859-2")

    def waits(self, console):
        """Sleeps, with the database open."""
        files = []
        for entry in os.scandir(f"/proc/{console.id}/fd"):
            with suppress(FileNotFoundError):  # closed meanwhile
                files.append(os.path.basename(os.readlink(entry)))
        return "Quillon.mdb" in files and console.is_asleep()


class TwoConsoles(SettingsTest):
    ROUNDS = 8

    def save_at_once(self, *changes):
        consoles = [Console(CROWDED, "save", *change) for change in changes]
        results = [console.result() for console in consoles]
        for result in results:
            self.assertEqual((result.status, result.errors), (DONE, ""))

    def test_of_two_who_save_the_same_fields_one_has_the_last_word(self):
        for number in range(self.ROUNDS):
            ours = (f"127.0.0.{number + 1}", 1000 + number, "ISO-8859-1")
            theirs = (f"127.0.1.{number + 1}", 2000 + number, "ISO-8859-2")
            self.save_at_once(*[
                ("--address", address, "--port", str(port), "--char-set", charset)
                for address, port, charset in (ours, theirs)])
            (address, port, _, charset), = CROWDED.sql("Quillon.mdb", WEB_SERVER)
            self.assertIn((address, port, charset), (ours, theirs))

    def test_of_two_who_save_different_fields_neither_undoes_the_other(self):
        for number in range(self.ROUNDS):
            self.save_at_once(("--port", str(3000 + number)),
                              ("--char-set", f"ISO-8859-{number % 2 + 1}"))
            (_, port, _, charset), = CROWDED.sql("Quillon.mdb", WEB_SERVER)
            self.assertEqual((port, charset), (3000 + number, f"ISO-8859-{number % 2 + 1}"))

    def test_of_two_who_add_receivers_both_succeed(self):
        consoles = [Console(CROWDED, *RECEIVER) for _ in range(self.ROUNDS)]
        numbers = {console.result().out for console in consoles}
        self.assertEqual(len(numbers), self.ROUNDS)
        self.assertEqual(len(settings(CROWDED)["Settings_RepReceiver"]), self.ROUNDS)


if __name__ == "__main__":
    unittest.main()
