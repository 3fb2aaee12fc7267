"""The operator's form, on a real terminal, beside a real service."""
import os
import signal
import time
import unittest

import fleet
import terminal
from quillonctl import FAILED, ctl, wait_until_idle, with_nothing_due
from report_day import small_mails
from terminal_form import BEGUN, CAPTION, Form
from waiting import eventually

IDLE = fleet.declare_idle()  # of the settings alone; no service runs
THEMED = fleet.declare()
IMPORTING = fleet.declare(with_nothing_due)
BUILDING = fleet.declare()
KILLED = fleet.declare()
MAILING = fleet.declare(
    with_nothing_due, small_mails("ann", "bob"),
    lambda site: site.set("Settings_SmtpServer", MailServer="127.0.0.1", MailPort=1, Retries=0))

CAPTIONS = [
    "General", "Debug Mode", "Date Format:", "Web Server", "Enabled", "Bind To Address:",
    "Listening Port:", "Status:", "Char Set:", "Layout (CSS)", "Color Theme:", "<Apply Changes>",
    "<Read from DB>", "<Save to DB>", "<Import>", "<Auto Create>", "<Mail Create>",
    "<Set Rep Date>", "2014-11-07"]
TOO_SMALL = "too small: 80x24 is needed"
NO_MODES = "000"
ENDING_SIGNALS = (signal.SIGTERM, signal.SIGHUP, signal.SIGINT, signal.SIGQUIT)
_SEQUENCE_PAUSE = 0.8  # seconds; longer than the form waits for the rest of a sequence


def setUpModule():
    if not terminal.is_available:
        raise unittest.SkipTest(terminal.REASON)
    fleet.start()


class FormTest(unittest.TestCase):
    def open(self, site=IDLE, **size):
        form = Form(site, **size)
        self.addCleanup(form.__exit__)
        return form

    def assert_restored(self, form):
        before, after = form.terminal_modes()
        self.assertEqual(before, after)
        self.assertEqual(form.modes(), NO_MODES)


class SettingsTest(FormTest):
    """Each test begins with the same rows."""

    def setUp(self):
        IDLE.set("Settings_WebServer", IpAddr="10.1.2.3", TcpPort=8123, Enabled=1,
                 Status="one\r\ntwo", CharSet="ISO-8859-15")
        IDLE.set("Settings_General", DebugMode=0, DatumFormat="DD/MM/YYYY")
        self.rows_before = self.rows()

    def rows(self):
        return (IDLE.sql("Quillon.mdb", "SELECT IpAddr, TcpPort, Enabled, Status, CharSet"
                         " FROM Settings_WebServer")
                + IDLE.sql("Quillon.mdb", "SELECT DebugMode, DatumFormat FROM Settings_General"))


class FirstScreen(SettingsTest):
    def test_it_has_all_captions_and_values(self):
        form = self.open()
        form.wait_for(*CAPTIONS, "[ ] Debug Mode", "[*] Enabled", "Bind To Address: 10.1.2.3",
                      "Listening Port:  8123", "ISO-8859-15")

    def test_the_lines_of_the_status_stand_one_below_the_other(self):
        form = self.open()
        column, row = form.place("one")
        self.assertEqual(form.place("two"), (column, row + 1))

    def test_it_stays_where_the_settings_cannot_be_read(self):
        IDLE.rename("Quillon.mdb", "away")
        IDLE.write("Quillon.mdb", b"no database")
        self.addCleanup(IDLE.rename, "away", "Quillon.mdb")
        form = Form(IDLE, opened=(CAPTION, "Read from DB: "))
        self.addCleanup(form.__exit__)
        self.assertEqual(form.leave(), 0)

    def test_a_status_cannot_steer_the_terminal(self):
        IDLE.set("Settings_WebServer", Status="a\033[2Jb")
        form = self.open()
        form.wait_for("a?[2Jb", "<Exit>")


class Saving(SettingsTest):
    def save(self, form, *expected):
        form.press_button("Save to DB")
        form.wait_for(*expected)

    def test_what_was_not_touched_stays(self):
        self.save(self.open(), "Saved; the service takes")
        self.assertEqual(self.rows(), self.rows_before)

    def test_everything_can_be_changed(self):
        form = self.open()
        form.fill("Bind To Address:", "::1")
        form.fill("Listening Port:", "8124")
        for text in ("Debug Mode", "Enabled", "YYYY-MM-DD"):
            form.click(text)
        form.click("ISO-8859-14")
        self.save(form, "Saved")
        self.assertEqual(self.rows(), [("::1", 8124, 0, "one\r\ntwo", "ISO-8859-14"),
                                       (1, "YYYY-MM-DD")])

    def test_it_can_be_done_by_keys_alone(self):
        form = self.open()
        form.press("Space", "Tab", "Up")             # debug mode, date format
        form.press(*["Tab"] * 6, "Down")             # char set
        form.press("Tab", "Tab", "Enter")            # Read from DB, Save to DB
        form.wait_for("Saved")
        self.assertEqual(self.rows(), [("10.1.2.3", 8123, 1, "one\r\ntwo", "ISO-8859-16"),
                                       (1, "MM/DD/YYYY")])

    def test_a_charset_that_the_list_lacks_stays(self):
        IDLE.set("Settings_WebServer", CharSet="windows-1252")
        before = self.rows()
        form = self.open()
        form.wait_for("windows-1252")
        self.save(form, "Saved")
        self.assertEqual(self.rows(), before)

    def test_what_a_rule_refuses_is_told_and_nothing_is_written(self):
        for label, text, reason in (
                ("Listening Port:", "65536", "'65536' is no number from 1 to 65535"),
                ("Listening Port:", "web", "'web' is no number"),
                ("Bind To Address:", "here", "not an IP address")):
            with self.subTest(text), Form(IDLE) as form:
                form.click("Debug Mode")
                form.fill(label, text)
                self.save(form, f"│ {label} {reason}")
                self.assertEqual(self.rows(), self.rows_before)

    def test_a_wrong_field_has_the_cursor(self):
        form = self.open()
        form.fill("Listening Port:", "0")
        self.save(form, "│ Listening Port: ")
        form.press("BSpace")
        form.type("8125")
        self.save(form, "Saved")
        self.assertEqual(self.rows()[0][1], 8125)

    def test_a_value_outside_the_lists_that_no_rule_allows_is_refused(self):
        IDLE.set("Settings_General", DatumFormat="D.M.Y")
        before = self.rows()
        form = self.open()
        self.save(form, "Date Format: 'D.M.Y'")
        self.assertEqual(self.rows(), before)

    def test_reading_takes_back_what_was_not_saved(self):
        form = self.open()
        form.fill("Listening Port:", "9999")
        form.press_button("Read from DB")
        form.wait_for("Listening Port:  8123")

    def test_a_database_that_is_locked_is_told_and_the_form_stays(self):
        form = self.open()
        other = IDLE.open_database("Quillon.mdb")
        self.addCleanup(other.close)
        other.execute("BEGIN EXCLUSIVE")
        self.save(form, "Save to DB: ")
        other.execute("ROLLBACK")
        self.save(form, "Saved")


class Jobs(FormTest):
    def test_the_import_ends_with_a_box_that_tells_its_milliseconds(self):
        wait_until_idle(IMPORTING)
        form = self.open(IMPORTING)
        form.start_job("Import", "┤ Import ├")
        self.assertRegex("\n".join(form.lines()), r"│ +ok \d+ +│")
        form.resize(100, 30)
        form.wait_for("┤ Import ├", "<Ok>", CAPTION)
        form.press("Enter")
        form.wait_for("│ Import: ok ")
        eventually(lambda: not form.shows("<Ok>"), "the box has gone")

    def test_a_job_shows_how_far_it_is_and_leaves_the_form_alive(self):
        wait_until_idle(BUILDING)
        form = self.open(BUILDING)
        form.start_job("Auto Create", "Auto Create: page", "of about")
        form.fill("Listening Port:", "4711")
        form.press_button("Mail Create")
        form.wait_for("Auto Create: page", "Mail Create: another job is still running", "4711")
        self.assert_progress_leaves_a_complaint(form)
        self.assert_other_console_is_refused()
        self.assertEqual(form.leave(), 0)
        form.wait_for("Auto Create goes on in the service")
        self.assert_restored(form)

    def assert_progress_leaves_a_complaint(self, form):
        complaint = "Listening Port: 'web' is no number"
        form.fill("Listening Port:", "web")
        form.press_button("Save to DB")
        form.wait_for(complaint, "Auto Create: page")
        before = self.progress(form)
        eventually(lambda: self.progress(form) != before, "further pages")
        self.assertTrue(form.shows(complaint), form.lines())

    @staticmethod
    def progress(form):
        return [line for line in form.lines() if "Auto Create: page" in line]

    def assert_other_console_is_refused(self):
        with Form(BUILDING) as other:
            other.press_button("Import")
            other.wait_for("Import: auto-create is running")

    def test_a_service_that_dies_during_a_job_is_told(self):
        wait_until_idle(KILLED)
        form = self.open(KILLED)
        form.start_job("Auto Create", "Auto Create: page")
        KILLED.process.kill()
        form.wait_for("Auto Create: the service ended")
        form.press_button("Import")
        form.wait_for("Import: the service does not run")
        self.assertEqual(form.leave(), 0)

    def test_a_service_that_does_not_run_is_told(self):
        form = self.open()
        for caption in ("Import", "Auto Create", "Mail Create", "Set Rep Date"):
            form.press_button(caption)
            form.wait_for(f"│ {caption}: the service does not run")

    def test_what_fails_in_a_job_is_shown(self):
        wait_until_idle(MAILING)
        form = self.open(MAILING)
        form.start_job("Mail Create", "Mail Create: ended",
                       "2 failures, at last modMail_SendMailSMTP: ")

    def test_a_report_date_is_judged_first(self):
        form = self.open()
        form.fill("<Set Rep Date>", "2014-02-30")
        form.press_button("Set Rep Date")
        form.wait_for("│ Set Rep Date: '2014-02-30'")

    def test_a_report_date_is_taken_by_a_replayed_day_alone(self):
        wait_until_idle(THEMED)
        form = self.open(THEMED)
        form.start_job("Set Rep Date", "Set Rep Date: nothing was done")


class Themes(FormTest):
    def apply(self, form, theme):
        form.click(theme)
        form.press_button("Apply Changes")
        form.wait_for(f"The site is in the theme {theme} from its next page on")
        return THEMED.read("WebReports/qws.css")

    def test_a_theme_is_served_at_once_and_the_first_one_can_be_had_again(self):
        first = THEMED.read("WebReports/qws.css")
        form = self.open(THEMED)
        stylesheet = self.apply(form, "Kestrel")
        self.assertNotEqual(stylesheet, first)
        self.assertEqual(THEMED.get("qws.css").body, stylesheet)
        self.assertEqual(self.apply(form, "Blue"), first)

    def test_a_stylesheet_that_cannot_be_written_is_told(self):
        IDLE.rename("WebReports", "elsewhere")
        self.addCleanup(IDLE.rename, "elsewhere", "WebReports")
        form = self.open()
        form.press_button("Apply Changes")
        eventually(lambda: not form.shows(BEGUN), "an answer")
        self.assertFalse(form.shows("The site is in the theme"))
        self.assertTrue(IDLE.event_texts())


class Size(FormTest):
    def test_the_form_moves_and_keeps_what_was_put_in(self):
        form = self.open()
        form.fill("Listening Port:", "4712")
        form.click("Debug Mode")
        column, row = form.place(CAPTION)
        form.resize(100, 30)
        eventually(lambda: form.place(CAPTION) == (column + 10, row + 3), "the form in the middle")
        form.wait_for("4712", "[*] Debug Mode")
        form.click("Enabled")
        form.wait_for("[ ] Enabled")

    def test_a_terminal_that_is_too_small_says_so_until_it_is_larger(self):
        form = self.open()
        form.fill("Listening Port:", "4713")
        for columns, rows in ((60, 15), (80, 23), (79, 24)):
            form.resize(columns, rows)
            form.wait_for(TOO_SMALL)
        form.resize(5, 2)
        form.resize(80, 24)
        form.wait_for(CAPTION, "4713")

    def test_it_can_be_left_where_the_terminal_is_too_small(self):
        form = Form(IDLE, opened=(TOO_SMALL,), columns=60, rows=15)
        self.addCleanup(form.__exit__)
        form.press("Escape")
        self.assertEqual(form.status(), 0)
        self.assert_restored(form)


class Mouse(FormTest):
    def test_terminals_that_report_clicks_in_bytes_are_understood(self):
        form = self.open()
        column, row = form.place("Debug Mode")
        form.type(f"\033[M {chr(33 + column)}{chr(33 + row)}")
        form.wait_for("[*] Debug Mode")

    def test_other_keys_and_other_buttons_do_nothing(self):
        form = self.open()
        before = form.lines()
        for sequence in ("\033x", "\033[<2;8;3M", "\033[<64;8;3M", "\033[<0;1;1M", "\033[99~"):
            form.type(sequence)
            time.sleep(_SEQUENCE_PAUSE)
            self.assertEqual(form.lines(), before)
        self.assertEqual(form.leave(), 0)


class NoForm(FormTest):
    def test_it_needs_a_terminal(self):
        result = ctl(IDLE, "console")
        self.assertEqual(result, (FAILED, "", "quillonctl: the form needs a terminal\n"))

    def test_a_terminal_of_an_unknown_kind_is_told(self):
        with terminal.Terminal() as unknown:
            unknown.run(f"TERM=unheard-of {IDLE.path}/quillonctl console; echo $? was its status")
            unknown.wait_for('terminal of the kind "unheard-of"', "1 was its status")


class TheEnd(FormTest):
    def test_every_key_that_leaves_restores_the_terminal(self):
        for key in ("Escape", "F12", "C-c"):
            with self.subTest(key), Form(IDLE) as form:
                self.assertNotEqual(form.modes(), NO_MODES)
                form.press(key)
                self.assertEqual(form.status(), 0)
                self.assert_restored(form)

    def test_every_signal_that_ends_it_restores_the_terminal(self):
        for number in ENDING_SIGNALS:
            with self.subTest(number), Form(IDLE) as form:
                os.kill(form.process_id(), number)
                self.assertEqual(form.status(), 0)
                self.assert_restored(form)

    def test_a_message_box_ends_by_signals_too(self):
        wait_until_idle(IMPORTING)
        form = self.open(IMPORTING)
        form.start_job("Import", "┤ Import ├")
        os.kill(form.process_id(), signal.SIGTERM)
        self.assertEqual(form.status(), 0)
        self.assert_restored(form)

    def test_the_window_may_close(self):
        form = self.open()
        form.close()
        eventually(lambda: not form.is_running(), "the form has ended")

    def test_the_window_may_close_while_hangups_are_ignored(self):
        form = Form(IDLE, shell="bash --norc -c 'trap \"\" HUP; exec bash --norc --noprofile'")
        self.addCleanup(form.__exit__)
        form.close()
        eventually(lambda: not form.is_running(), "the form has ended")


class Stopping(FormTest):
    def test_it_stops_with_the_terminal_restored_and_goes_on_with_what_was_put_in(self):
        form = self.open()
        form.fill("Listening Port:", "4714")
        form.press("C-z")
        form.wait_for("Stopped")
        self.assert_restored(form)
        form.run("clear ; fg")
        form.wait_for(CAPTION, "4714")
        form.click("Debug Mode")
        form.wait_for("[*] Debug Mode")
        self.assertNotEqual(form.modes(), NO_MODES)


if __name__ == "__main__":
    unittest.main()
