"""One installation of which the day runs to its end: import, pages, mails. Several tests look at
what it has left. Its debug files are on."""
import time

import fleet
import mail_box
from day_watch import DayWatch, cached_files, has_built
from local_time import local_now
from mail_box import MailBox
from report_day import (
    ANOTHER_WEEKDAY, PORTS, WEEKDAY, mailing_by, with_receivers, with_small_network)

ACCOUNT, PASSWORD = "konto", "ge heim+1%"
LOGIN = {"UseAuth": 1, "AuthMode": "AUTH LOGIN", "Account": ACCOUNT, "Pass": PASSWORD}
BOX = MailBox(ACCOUNT, PASSWORD)
SENDER, SENDER_NAME = "reports@mail.test", "Büro Netz"
SUBJECT = "Täglicher Bericht"

# The port whose charts go by mail.
DEVICE, INTERFACE, _ = PORTS[1]
PORT_PAGE = f"hist45-{DEVICE}-{INTERFACE}.htm"

EVERYTHING = {
    "Name": "Jürgen Größe", "Recipient": "jg@mail.test", "Top10Rep1": "Access Ports InVolume",
    "Top10Rep2": "Trunk Ports Summary", "Top10Rep3": "None", "Top10Rep4": "unheard of",
    "Top10Rep5": "Access Ports OutErrors", "PortRep": 1, "PortRepRecNo": DEVICE,
    "PortRepIfIndex": INTERFACE, "PortRepDetails": 1, "AttachReport": 1, "IncludeUrl": 1}
WITHOUT_LINKS = {
    "Name": "Weekly", "Recipient": "weekly@mail.test", "TimeSchedule": 2, "WeekDay": WEEKDAY,
    "Top10Rep1": "Trunk Ports InErrors", "AttachReport": 1}
ON_ANOTHER_DAY = {
    "Name": "Other", "Recipient": "other@mail.test", "TimeSchedule": 2, "WeekDay": ANOTHER_WEEKDAY}
MONTHLY = {"Name": "Monthly", "Recipient": "monthly@mail.test", "TimeSchedule": 3}
NAMELESS = {"Name": "", "Recipient": "nameless@mail.test"}
WITHOUT_PAGES = {
    "Name": "Bare", "Recipient": "bare@mail.test", "Top10Rep1": "Access Ports InErrors",
    "IncludeUrl": 1}

PAGES = {  # by receiver, in the order of the mail
    "jg@mail.test": ["switch-access-port-top10-involume.htm", "switch-trunk-port-summary.htm",
                     "switch-access-port-top10-outerrors.htm", PORT_PAGE],
    "weekly@mail.test": ["switch-trunk-port-top10-inerrors.htm"]}
PAGE_OF_NO_MAIL = "switch-access-port-top10-inerrors.htm"  # built for the one without attachments
RECEIVERS = ["jg@mail.test", "weekly@mail.test",
             *["monthly@mail.test" for _ in range(local_now().day == 1)], "bare@mail.test"]

OLD_FILES = ["hist45-9-9.htm", "no-page", "old.htm"]  # of the cache
KEPT_FILE = "kept.txt"                                # of the mail folder


def _with_old_files(site):
    """Of which the run clears what it should."""
    for name in OLD_FILES:
        site.store_page(name, b"old")
    for name in ("old.htm", KEPT_FILE):
        site.write(f"WebReports/Mail/{name}", b"old")


SITE = fleet.declare(
    with_small_network, _with_old_files,
    mailing_by(BOX, FromAddr=f"{SENDER_NAME} <{SENDER}>", Subject=SUBJECT, Priority="1", **LOGIN),
    with_receivers(EVERYTHING, WITHOUT_LINKS, ON_ANOTHER_DAY, MONTHLY, NAMELESS, WITHOUT_PAGES),
    lambda site: site.set("Settings_General", DebugMode=1))


def _mails():
    """Other installations send to the same server."""
    return [mail for mail in BOX.mails() if mail.sender == SENDER]


class _Watch(DayWatch):
    """Asks for pages until the last mail has come, and then takes what the day has left."""

    def __init__(self):
        super().__init__()
        self.pages_while_building = 0
        self.longest_answer = 0  # seconds

    def begin(self):
        self.names_before = SITE.names("WebReports/Cache")
        self.start()

    def work(self):
        self.until(self._has_ended, "the last mail")
        self.cache = cached_files(SITE)
        self.mail_folder = {name: SITE.read(f"WebReports/Mail/{name}")
                            for name in SITE.names("WebReports/Mail")}
        self.mails = _mails()

    def _has_ended(self):
        began = time.monotonic()
        SITE.get("")
        self.longest_answer = max(self.longest_answer, time.monotonic() - began)
        self.pages_while_building += not has_built(SITE) and has_built(SITE, _FIRST_PAGE)
        return len(_mails()) >= len(RECEIVERS)


_FIRST_PAGE = "switch-access-port-top10-involume.htm"
WATCH = _Watch()
if mail_box.is_available:
    fleet.when_up(WATCH.begin)
