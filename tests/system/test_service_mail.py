"""The report mails of a day, as a real mail server gets them: who gets one, and what it brings.
The day is watched while other tests run; this module has a late name, so that it has ended when
its turn comes."""
import unittest
from datetime import datetime, timezone
from email.message import EmailMessage

import complete_day
import fleet
import mail_box
from complete_day import (
    ACCOUNT, BOX, DEVICE, EVERYTHING, INTERFACE, KEPT_FILE, LOGIN, PAGE_OF_NO_MAIL, PAGES, PASSWORD,
    PORT_PAGE, RECEIVERS, SENDER, SENDER_NAME, SUBJECT, WITHOUT_LINKS)
from day_watch import DayWatch
from event_file import STARTED
from mail_box import attachments_of, body_of, read_message, receiver_of
from report_day import mailing_by, small_mails, without_network
from site_pages import PAGE_END, listed_ports

DAY = complete_day.SITE
COPY = "Debug/SendMailSMTP.txt"
STYLESHEET = "qws.css"
SIGNATURE = "Quillon Network Reporting\nhttps://quillon.example/"
FAILED_MAIL = 2  # type of an event

WITHOUT_DEBUG_MODE = fleet.declare(
    without_network, mailing_by(BOX, **LOGIN), small_mails("quiet", "quieter"))
WRONG_PASSWORD = fleet.declare(
    without_network, mailing_by(BOX, **{**LOGIN, "Pass": "a wrong one", "Retries": 0}),
    small_mails("impostor"))


class OtherMails(DayWatch):
    """Those of the other installations."""

    def work(self):
        self.until(lambda: "quieter@mail.test" in recipients(), "the second mail")
        self.until(lambda: len(WRONG_PASSWORD.events()) > 1, "the mail that is not sent")


def recipients():
    return [address for mail in BOX.mails() for address in mail.recipients]


OTHERS = OtherMails()
if mail_box.is_available:
    fleet.when_up(OTHERS.begin)


def setUpModule():
    if not mail_box.is_available:
        raise unittest.SkipTest(mail_box.REASON)
    fleet.start()


class MailTest(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        cls.day = complete_day.WATCH.result()
        cls.mails = cls.day.mails

    def mail_to(self, receiver):
        (mail,) = [mail for mail in self.mails if mail.recipients == [receiver["Recipient"]]]
        return mail


class Receivers(MailTest):
    def test_each_who_is_due_gets_one_mail_in_stored_order(self):
        self.assertEqual([mail.recipients for mail in self.mails], [[name] for name in RECEIVERS])

    def test_the_service_logs_in_by_auth_login(self):
        self.assertEqual({mail.account for mail in self.mails}, {ACCOUNT})

    def test_nothing_fails(self):
        self.assertEqual(DAY.event_texts(), [STARTED])


class Header(MailTest):
    def message(self):
        return self.mail_to(EVERYTHING).message

    def test_names_have_their_letters_and_addresses_stand_alone_in_the_envelope(self):
        self.assertEqual(receiver_of(self.message()),
                         (EVERYTHING["Name"], EVERYTHING["Recipient"]))
        (sender,) = self.message()["From"].addresses
        self.assertEqual((sender.display_name, sender.addr_spec), (SENDER_NAME, SENDER))
        self.assertEqual(self.message()["Subject"], SUBJECT)

    def test_the_priority_is_that_of_the_setting(self):
        self.assertRegex(self.message()["X-Priority"], r"^1\b")

    def test_the_date_is_that_of_the_sending(self):
        for mail in self.mails:
            age = datetime.now(timezone.utc) - mail.message["Date"].datetime
            self.assertLess(abs(age.total_seconds()), 900)

    def test_every_mail_has_an_id_of_its_own(self):
        names = [mail.message["Message-ID"] for mail in self.mails]
        self.assertEqual(len(set(names)), len(self.mails))
        for name in names:
            self.assertRegex(name, r"^<[^<>@\s]+@[^<>@\s]+>$")

    def test_no_part_is_at_odds_with_the_form_of_mails(self):
        for mail in self.mails:
            self.assertEqual(mail.message["MIME-Version"], "1.0")
            for part in mail.message.walk():
                self.assertEqual(part.defects, [])
                self.assertEqual([part[name].defects for name in part if part[name].defects], [])

    def test_every_line_is_short_ascii_and_ends_as_lines_of_mails_do(self):
        for mail in self.mails:
            self.assertTrue(mail.data.isascii())
            lines = mail.data.split(b"\r\n")
            self.assertLessEqual(max(map(len, lines)), 998)
            self.assertFalse([line for line in lines if b"\r" in line or b"\n" in line])


class Attachments(MailTest):
    def assert_attached(self, receiver):
        names = [*PAGES[receiver["Recipient"]], STYLESHEET]
        attachments = attachments_of(self.mail_to(receiver).message)
        self.assertEqual([name for name, _ in attachments], names)
        for name, data in attachments[:-1]:
            self.assertEqual(data, self.day.mail_folder[name], name)
        self.assertEqual(attachments[-1][1], DAY.read(f"WebReports/{STYLESHEET}"))

    def test_pages_come_in_their_order_with_the_stylesheet_behind_them_byte_for_byte(self):
        self.assert_attached(EVERYTHING)
        self.assert_attached(WITHOUT_LINKS)

    def test_one_who_wants_none_gets_none(self):
        message = self.mails[-1].message
        self.assertFalse(message.is_multipart())
        self.assertEqual(attachments_of(message), [])

    def test_the_folder_holds_the_pages_of_this_day_and_what_is_no_page(self):
        pages = [name for names in PAGES.values() for name in names]
        self.assertEqual(sorted(self.day.mail_folder), sorted([*pages, PAGE_OF_NO_MAIL, KEPT_FILE]))

    def test_a_mailed_page_is_whole_and_has_no_top_band(self):
        head, _, _ = self.day.cache[PAGE_OF_NO_MAIL].partition(
            b"  <table width='790px' class='topLine1'>\r\n")
        self.assertTrue(head.endswith(b"<body>\r\n"))
        for name, page in self.day.mail_folder.items():
            if name != KEPT_FILE:
                self.assertTrue(page.startswith(head + b"<table width='790px' class='"), name)
                self.assertTrue(page.endswith(PAGE_END), name)

    def test_a_list_shows_its_ports_and_the_charts_are_those_of_the_site(self):
        page = self.day.mail_folder[PAGES[EVERYTHING["Recipient"]][0]]
        self.assertEqual(listed_ports(page), 2)
        self.assertIn(self.day.cache[PORT_PAGE], self.day.mail_folder[PORT_PAGE])
        summary = PAGES[EVERYTHING["Recipient"]][1]
        charts = self.day.cache[summary].partition(b"<table width='790px' class='repHeader'>")[2]
        self.assertIn(charts, self.day.mail_folder[summary])

    def test_the_page_of_a_port_has_its_row_above_the_charts(self):
        table, _, _ = self.day.mail_folder[PORT_PAGE].partition(self.day.cache[PORT_PAGE])
        self.assertIn(b"class='tableData'", table)
        self.assertEqual(table.count(f"<a href=hist45-{DEVICE}-{INTERFACE}-".encode()), 1)
        self.assertEqual(listed_ports(table), 1)


class Body(MailTest):
    def test_links_lead_to_the_pages_of_the_site(self):
        links = "".join(f"http://127.0.0.1:{DAY.port}/{name}\n\n"
                        for name in PAGES[EVERYTHING["Recipient"]])
        self.assertEqual(body_of(self.mail_to(EVERYTHING).message), links + SIGNATURE)

    def test_a_link_of_it_is_answered(self):
        for name in PAGES[EVERYTHING["Recipient"]]:
            self.assertTrue(DAY.get(name).body.endswith(PAGE_END), name)

    def test_without_links_it_is_the_signature(self):
        self.assertEqual(body_of(self.mail_to(WITHOUT_LINKS).message), SIGNATURE)

    def test_without_attachments_there_are_no_links_either(self):
        self.assertEqual(body_of(self.mails[-1].message), SIGNATURE)


class Copy(MailTest):
    """What the debug files keep of a mail."""

    def test_it_is_the_last_mail_as_it_was_sent(self):
        copy = DAY.read(COPY)
        self.assertIsInstance(read_message(copy), EmailMessage)
        self.assertEqual(copy.rstrip(b"\r\n"), self.mails[-1].data.rstrip(b"\r\n"))

    def test_nobody_learns_the_password_from_a_debug_file(self):
        for name in DAY.names("Debug"):
            self.assertNotIn(PASSWORD.encode(), DAY.read(f"Debug/{name}"))
        self.assertNotIn(PASSWORD, DAY.process.said())

    def test_without_debug_files_there_is_none(self):
        OTHERS.result()
        self.assertFalse((WITHOUT_DEBUG_MODE.path / COPY).exists())


class Login(unittest.TestCase):
    def test_a_wrong_password_is_one_event_and_the_reason_on_standard_error(self):
        OTHERS.result()
        started, failure = WRONG_PASSWORD.events()
        self.assertEqual(started.text, STARTED)
        self.assertEqual((failure.type, failure.source, failure.text),
                         (FAILED_MAIL, "modMail_SendMailSMTP", "Error Sending Mail"))
        self.assertNotIn("impostor@mail.test", recipients())
        self.assertNotEqual(WRONG_PASSWORD.process.said(), "")
        self.assertNotIn("a wrong one", WRONG_PASSWORD.process.said())


if __name__ == "__main__":
    unittest.main()
