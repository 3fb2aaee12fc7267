"""Mails over an encrypted connection: to a server whose certificate the machine trusts, and to one
that it does not. The first of these days is traced from its beginning to its end: which files the
service touches. It runs while other tests have their turn; this module has a late name, so that it
has ended when its turn comes."""
import shutil
import unittest
from pathlib import Path

import certificate
import fleet
import machine
import mail_box
import tracing
from certificate import Certificate
from complete_day import EVERYTHING, PAGES
from day_watch import DayWatch
from event_file import STARTED
from mail_box import MailBox, attachments_of
from report_day import mailing_by, small_mails, with_receivers, with_small_network, without_network
from service_process import ServiceProcess

HOST = "localhost"
FAILED_MAIL = 2  # type of an event
TRUSTED_CERTIFICATES = "/etc/ssl/certs/ca-certificates.crt"  # of the machine

# What the system's own libraries look into to resolve a name, to encrypt, to convert a text and to
# know the time.
USUAL_FOLDERS = [Path(name) for name in (
    "/etc/ssl", "/usr/lib", "/lib", "/lib64", "/usr/share/zoneinfo", "/sys/devices/system/cpu")]
USUAL_FILES = {Path(name) for name in (
    "/etc/hosts", "/etc/host.conf", "/etc/nsswitch.conf", "/etc/resolv.conf", "/etc/gai.conf",
    "/etc/services", "/etc/ld.so.cache", "/etc/localtime", "/dev/urandom",
    "/proc/filesystems")}  # a library of the module looks for what the machine has

# Runs the program where its own certificate is the only one that the machine trusts.
_START = """#!/bin/sh
exec {unshare} -m sh -c 'mount --bind "$1" {certificates} && exec "$2"' sh {certificate} {program}
"""
_UNSHARE = shutil.which("unshare")

BOX = MailBox(certificate=Certificate(HOST))


def trusting_it(site):
    start = site.path.with_suffix(".start")
    start.write_text(_START.format(
        unshare=_UNSHARE, certificates=TRUSTED_CERTIFICATES, certificate=BOX.certificate.file,
        program=site.path / "quillonweb"))
    start.chmod(0o755)
    site.process = ServiceProcess(start, site.path.with_suffix(".terminal"))


is_possible = mail_box.is_available and certificate.is_available and machine.is_available
if is_possible:
    TRUSTING = fleet.declare(with_small_network, mailing_by(BOX, MailServer=HOST),
                             with_receivers(EVERYTHING), trusting_it)
    DISTRUSTING = fleet.declare(without_network, mailing_by(BOX, MailServer=HOST, Retries=0),
                                small_mails("secret"))


class Watch(DayWatch):
    def work(self):
        if tracing.is_available:
            with tracing.traced_paths(TRUSTING.process.id) as paths:
                self._wait()
            self.paths = {Path(path) for path in paths}
        else:
            self._wait()

    def _wait(self):
        self.until(lambda: mails_to(EVERYTHING["Recipient"]), "the mail")
        self.until(lambda: len(DISTRUSTING.events()) > 1, "the mail that is not sent")


def mails_to(recipient):
    return [mail for mail in BOX.mails() if mail.recipients == [recipient]]


WATCH = Watch()
if is_possible:
    fleet.when_up(WATCH.begin)


def setUpModule():
    if not mail_box.is_available:
        raise unittest.SkipTest(mail_box.REASON)
    if not certificate.is_available:
        raise unittest.SkipTest(certificate.REASON)
    if not machine.is_available:
        raise unittest.SkipTest(machine.REASON)
    fleet.start()


class Encryption(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        WATCH.result()

    def test_a_server_that_offers_it_gets_the_mail_encrypted(self):
        (mail,) = mails_to(EVERYTHING["Recipient"])
        self.assertTrue(mail.is_encrypted)
        self.assertEqual(len(attachments_of(mail.message)), 5)
        self.assertEqual(TRUSTING.event_texts(), [STARTED])

    def test_a_certificate_that_is_not_trusted_gets_no_mail_and_not_in_the_open_either(self):
        self.assertEqual(mails_to("secret@mail.test"), [])
        started, failure = DISTRUSTING.events()
        self.assertEqual(started.text, STARTED)
        self.assertEqual((failure.type, failure.source, failure.text),
                         (FAILED_MAIL, "modMail_SendMailSMTP", "Error Sending Mail"))

    def test_standard_error_tells_of_the_certificate(self):
        self.assertIn("certificate", DISTRUSTING.process.said().lower())
        self.assertEqual(TRUSTING.process.said(), "")


@unittest.skipUnless(tracing.is_available, "strace is not installed")
class Files(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.paths = WATCH.result().paths

    def test_the_day_was_seen(self):
        for name in ("Quillon.mdb", "Reports.mdb", "History.mdb", "WebReports/qws.css",
                     f"WebReports/Mail/{PAGES[EVERYTHING['Recipient']][0]}"):
            self.assertIn(TRUSTING.path / name, self.paths)
        self.assertIn(Path(TRUSTED_CERTIFICATES), self.paths)

    def test_only_the_installation_and_what_every_program_needs_is_touched(self):
        outside = {path for path in self.paths if not path.is_relative_to(TRUSTING.path)}
        odd = [path for path in outside - USUAL_FILES
               if not any(path.is_relative_to(folder) for folder in USUAL_FOLDERS)]
        self.assertEqual(odd, [])
        self.assertFalse([path for path in self.paths if ".." in path.parts])


if __name__ == "__main__":
    unittest.main()
