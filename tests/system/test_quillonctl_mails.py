"""Receivers, mail server and traps from the command line: what is stored, what is refused, and
that the running service mails by it."""
import csv
import io
import unittest

import fleet
import mail_box
from day_watch import DayWatch
from event_file import STARTED
from mail_box import MailBox, attachments_of, body_of, receiver_of
from quillonctl import DONE, FAILED, ask, ctl, job, on_a_terminal, wait_until_idle, with_nothing_due
from report_day import WEEKDAY, mailing_by, with_small_network
from site_pages import LISTS

ACCOUNT, PASSWORD = "konto", "ge heim+1%"
BOX = MailBox(ACCOUNT, PASSWORD)
SITE = fleet.declare(with_small_network, with_nothing_due, lambda site: BOX.open())
IDLE = fleet.declare_idle(mailing_by(BOX) if mail_box.is_available else lambda site: None)
CROWD = fleet.declare_idle()

ANN = ("--name", "Ann Größe", "--recipient", "ann@mail.test")
COLUMNS = ("number", "name", "recipient", "schedule", "week-day", "report1", "report2", "report3",
           "report4", "report5", "port-report", "port-device", "port-interface", "port-details",
           "attach", "include-url")
ORDINARY = ("daily", "Monday", "None", "None", "None", "None", "None", "no", "0", "0", "no", "yes",
            "no")
SMTP = {"server": "mail.example.org", "port": 587, "from": "Netz <reports@mail.test>",
        "subject": "Täglicher Bericht", "priority": "High", "char-set": "UTF-8", "time-out": 20,
        "retries": 1, "login": True, "auth-mode": "other", "account": "konto", "encoding": 0,
        "body-encoding": 2, "body-format": 1}
SMTP_COLUMNS = ("MailServer", "MailPort", "FromAddr", "Subject", "Priority", "CharSet", "TimeOut",
                "Retries", "UseAuth", "AuthMode", "Account", "Encoding", "BodyEncoding",
                "BodyFormat")


class MailBySettings(DayWatch):
    """Sets all that a mail needs while the service runs, and has it send."""

    def work(self):
        wait_until_idle(SITE)
        ask(SITE, "smtp", "set", "--server", "127.0.0.1", "--port", str(BOX.port), "--login", "yes",
            "--account", ACCOUNT, "--from", "Netz <reports@mail.test>", "--subject", "Bericht ä",
            "--char-set", "UTF-8")
        ctl(SITE, "smtp", "set", "--password", typed=PASSWORD + "\n")
        ask(SITE, "receivers", "add", *ANN, "--schedule", "weekly", "--week-day", WEEKDAY,
            "--report1", "Access InVolume", "--include-url", "yes")
        ask(SITE, "receivers", "add", "--name", "Bob", "--recipient", "bob@mail.test",
            "--attach", "no")
        ask(SITE, "receivers", "add", "--name", "Gone", "--recipient", "gone@mail.test")
        ask(SITE, "receivers", "remove", "3")
        self.building = job(SITE, "mail-create")
        self.mails = [mail for mail in BOX.mails() if "Bericht" in mail.message["Subject"]]


MAILS = MailBySettings()
if mail_box.is_available:
    fleet.when_up(MAILS.begin)


def setUpModule():
    if not mail_box.is_available:
        raise unittest.SkipTest(mail_box.REASON)
    fleet.start()


def rows_of(site, table):
    return site.sql("Quillon.mdb", f"SELECT rowid, * FROM {table} ORDER BY rowid")


def receivers(site):
    """As lists of texts."""
    _, *rows = csv.reader(io.StringIO(ask(site, "receivers", "list", "--csv").out, newline=""))
    return rows


class MailTest(unittest.TestCase):
    maxDiff = None

    def assert_refused(self, site, table, *words, reason):
        before = rows_of(site, table)
        result = ctl(site, *words)
        self.assertEqual((result.status, result.out), (FAILED, ""), words)
        self.assertTrue(result.errors.startswith("quillonctl: "), result.errors)
        self.assertIn(reason, result.errors, words)
        self.assertEqual(rows_of(site, table), before, words)


class Service(unittest.TestCase):
    """What the running service makes of the settings."""

    @classmethod
    def setUpClass(cls):
        cls.service = MAILS.result()
        cls.mails = cls.service.mails

    def test_it_mails_to_those_who_were_added_and_not_to_who_was_removed(self):
        self.assertEqual((self.service.building.status, self.service.building.errors), (DONE, ""))
        self.assertEqual([mail.recipients for mail in self.mails],
                         [["ann@mail.test"], ["bob@mail.test"]])
        self.assertEqual(receiver_of(self.mails[0].message), ("Ann Größe", "ann@mail.test"))

    def test_it_logs_in_by_the_password_that_was_typed(self):
        self.assertEqual({mail.account for mail in self.mails}, {ACCOUNT})

    def test_sender_and_subject_are_the_new_ones(self):
        self.assertEqual(self.mails[0].sender, "reports@mail.test")
        self.assertEqual(self.mails[0].message["Subject"], "Bericht ä")

    def test_the_report_that_was_chosen_is_attached_and_linked(self):
        names = [name for name, _ in attachments_of(self.mails[0].message)]
        self.assertEqual(names, [LISTS[0], "qws.css"])
        self.assertIn(LISTS[0], body_of(self.mails[0].message))
        self.assertEqual(attachments_of(self.mails[1].message), [])

    def test_nothing_fails(self):
        self.assertEqual(SITE.event_texts(), [STARTED])

    def test_a_test_mail_goes_the_same_way(self):
        result = ask(SITE, "test-mail", "Op <op@mail.test>")
        self.assertEqual(result.out, f"sent to Op <op@mail.test> by server 127.0.0.1:{BOX.port}\n")
        mail = BOX.mails()[-1]
        self.assertEqual((mail.recipients, mail.sender, mail.account),
                         (["op@mail.test"], "reports@mail.test", ACCOUNT))
        self.assertIn("test of Quillon Web's mail settings", body_of(mail.message))
        self.assertEqual(SITE.event_texts(), [STARTED])


class TestMail(unittest.TestCase):
    def test_what_the_server_refuses_is_told_in_its_words(self):
        before = len(BOX.mails())
        result = ctl(IDLE, "test-mail", "op@mail.test")
        self.assertEqual((result.status, result.out), (FAILED, ""))
        self.assertIn("530 5.7.0 Authentication required", result.errors)
        self.assertIn("quillonctl: the test mail was not sent\n", result.errors)
        self.assertEqual(len(BOX.mails()), before)

    def test_a_server_that_is_not_there_is_told(self):
        result = ctl(CROWD, "test-mail", "op@mail.test")
        self.assertEqual((result.status, result.out), (FAILED, ""))
        self.assertIn("127.0.0.1", result.errors)


class Receivers(MailTest):
    def setUp(self):
        IDLE.sql("Quillon.mdb", "DELETE FROM Settings_RepReceiver")

    def test_a_new_one_has_ordinary_values_and_gets_a_number(self):
        self.assertEqual(ask(IDLE, "receivers", "add", *ANN).out, "1\n")
        self.assertEqual(receivers(IDLE), [["1", ANN[1], ANN[3], *ORDINARY]])
        self.assertNotIn(None, rows_of(IDLE, "Settings_RepReceiver")[0])

    def test_every_field_comes_back_as_it_was_given(self):
        given = ("Ann", "Ann <ann@mail.test>", "monthly", "Sunday", "Access InVolume",
                 "Trunk OutErrors", "Access Summary", "Trunk InBroadcast", "Access InMulticast",
                 "yes", "301", "2", "yes", "yes", "yes")
        options = [f"--{name}={value}" for name, value in zip(COLUMNS[1:], given)]
        ask(IDLE, "receivers", "add", *options)
        self.assertEqual(receivers(IDLE), [["1", *given]])
        (entry,) = ask(IDLE, "receivers", "list", "--json").json()
        self.assertEqual(tuple(entry), COLUMNS)
        shown = [{True: "yes", False: "no"}[value] if isinstance(value, bool) else str(value)
                 for value in entry.values()]
        self.assertEqual(shown, ["1", *given])
        for text in ("Ann <ann@mail.test>", "monthly", "Access InVolume", "301"):
            self.assertIn(text, ask(IDLE, "receivers").out)
        self.assertEqual(ask(IDLE, "receivers").out, ask(IDLE, "receivers", "list").out)

    def test_a_change_is_of_one_field_of_one_receiver(self):
        for _ in range(3):
            ask(IDLE, "receivers", "add", *ANN)
        before = receivers(IDLE)
        ask(IDLE, "receivers", "change", "2", "--report3", "Trunk Summary")
        before[1][COLUMNS.index("report3")] = "Trunk Summary"
        self.assertEqual(receivers(IDLE), before)

    def test_who_stays_keeps_his_number(self):
        for _ in range(3):
            ask(IDLE, "receivers", "add", *ANN)
        ask(IDLE, "receivers", "remove", "2")
        self.assertEqual([row[0] for row in receivers(IDLE)], ["1", "3"])

    def test_nobody_of_that_number(self):
        ask(IDLE, "receivers", "add", *ANN)
        for number in ("2", "9223372036854775806"):
            for words in (("remove", number), ("change", number, "--name", "Bob")):
                self.assert_refused(IDLE, "Settings_RepReceiver", "receivers", *words,
                                    reason=f"there is no receiver {number}")

    def test_what_would_keep_mails_from_being_sent_is_refused(self):
        ask(IDLE, "receivers", "add", *ANN)
        for option, value in (
                ("--name", ""), ("--recipient", "ann"), ("--schedule", "hourly"),
                ("--schedule", "1"), ("--week-day", "Someday"), ("--report1", "InVolume"),
                ("--report5", "Access Nothing"), ("--port-device", "0"), ("--port-device", "x"),
                ("--port-interface", "-1"), ("--name", "a\nb"), ("--name", "\udcff")):
            for words in (("change", "1"), ("add", *ANN)):
                if option in words:
                    continue
                self.assert_refused(IDLE, "Settings_RepReceiver", "receivers", *words, option,
                                    value, reason=option)
        self.assert_refused(IDLE, "Settings_RepReceiver", "receivers", "change", "1",
                            "--port-report", "yes", reason="--port-device: ")

    def test_one_beyond_the_hundredth_is_refused(self):
        for number in range(100):
            CROWD.insert("Quillon.mdb", "Settings_RepReceiver", Name=f"{number}")
        self.assert_refused(CROWD, "Settings_RepReceiver", "receivers", "add", *ANN,
                            reason="there are 100 receivers already")


class MailServer(MailTest):
    def setUp(self):
        self.before = rows_of(IDLE, "Settings_SmtpServer")

    def tearDown(self):
        names = [field[1] for field in IDLE.sql("Quillon.mdb",
                                                "PRAGMA table_info(Settings_SmtpServer)")]
        IDLE.set("Settings_SmtpServer", **dict(zip(names, self.before[0][1:])))

    def test_every_field_comes_back_as_it_was_given(self):
        texts = {name: {True: "yes", False: "no"}.get(value, value) if isinstance(value, bool)
                 else str(value) for name, value in SMTP.items()}
        ask(IDLE, "smtp", "set", *[f"--{name}={value}" for name, value in texts.items()])
        stored = IDLE.sql("Quillon.mdb",
                          f"SELECT {', '.join(SMTP_COLUMNS)} FROM Settings_SmtpServer")
        self.assertEqual(stored, [tuple(SMTP.values())])
        shown = ask(IDLE, "smtp", "show", "--json").json()
        self.assertEqual(shown.pop("password"), "not set")
        self.assertEqual(shown, SMTP)
        fields = ask(IDLE, "smtp").fields()
        self.assertEqual({name: fields[name] for name in texts}, texts)
        self.assertEqual(ask(IDLE, "smtp").out, ask(IDLE, "smtp", "show").out)

    def test_a_password_is_the_first_line_that_is_typed_and_nothing_shows_it(self):
        result = ctl(IDLE, "smtp", "set", "--password", typed=f"{PASSWORD}\nno more of it")
        self.assertEqual((result.status, result.errors), (DONE, ""))
        self.assertEqual(IDLE.sql("Quillon.mdb", "SELECT Pass FROM Settings_SmtpServer"),
                         [(PASSWORD,)])
        for words in (("smtp",), ("smtp", "show"), ("smtp", "show", "--json")):
            said = ask(IDLE, *words).out
            self.assertNotIn(PASSWORD, said + result.out)
        self.assertEqual(ask(IDLE, "smtp").fields()["password"], "set")

    def test_a_password_that_is_typed_on_a_terminal_is_not_shown_there(self):
        result = on_a_terminal(IDLE, "smtp", "set", "--password", typed=PASSWORD + "\n")
        self.assertEqual(result.status, DONE)
        self.assertNotIn(PASSWORD, result.errors + result.out)
        self.assertEqual(IDLE.sql("Quillon.mdb", "SELECT Pass FROM Settings_SmtpServer"),
                         [(PASSWORD,)])

    def test_without_a_line_there_is_no_password(self):
        self.assert_refused(IDLE, "Settings_SmtpServer", "smtp", "set", "--password", reason="")

    def test_what_makes_no_sense_is_refused(self):
        for option, value in (
                ("--server", "a b"), ("--port", "0"), ("--from", "nobody"), ("--priority", "6"),
                ("--char-set", "nope"), ("--time-out", "-1"), ("--time-out", "3601"),
                ("--retries", "11"), ("--auth-mode", "auth login"), ("--encoding", "1"),
                ("--body-encoding", "3"), ("--body-format", "2"), ("--subject", "a\nBcc: b@c.d"),
                ("--account", "a\x01b")):
            self.assert_refused(IDLE, "Settings_SmtpServer", "smtp", "set", option, value,
                                "--retries" if option != "--retries" else "--port", "5",
                                reason=f"{option}: ")


class Traps(MailTest):
    def test_every_field_comes_back_as_it_was_given(self):
        ask(IDLE, "snmp", "set", "--enabled", "yes", "--send-events", "yes",
            "--community", "näh e")
        self.assertEqual(ask(IDLE, "snmp", "show", "--json").json(), {
            "enabled": True, "send-events": True, "community": "näh e", "status": ""})
        self.assertEqual(ask(IDLE, "snmp").fields(), {
            "enabled": "yes", "send-events": "yes", "community": "näh e", "status": ""})
        ask(IDLE, "snmp", "set", "--send-events", "no")
        self.assertEqual(
            IDLE.sql("Quillon.mdb", "SELECT Enabled, SendAppEvents, TrapComm"
                     " FROM Settings_SnmpAgent"), [(1, 0, "näh e")])

    def test_a_community_that_is_none_is_refused(self):
        for text in ("", "x" * 256, "a\tb"):
            self.assert_refused(IDLE, "Settings_SnmpAgent", "snmp", "set", "--enabled", "no",
                                "--community", text, reason="--community: ")


if __name__ == "__main__":
    unittest.main()
