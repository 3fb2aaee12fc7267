"""The many days: a small network, since each day builds all its pages, and three receivers of
mails."""
import os
from collections import Counter

from figures import Figure
from installation import Installation
from load_parts import call
from local_time import ZONE_NAME
from mail_box import MailBox
from watched_site import State, growth

DAYS = 400
WARM_UP = 50     # days: by then each table of the history has been used
_DEVICES = 4     # of each kind that stay
_DAILY, _WEEKLY, _MONTHLY = 1, 2, 3
_LEAST = 2


def many_days(template, scratch, run):
    days = max(_LEAST, run.count(DAYS))
    site = Installation(scratch / "days", 0)
    template.copy_to(site)
    _shrink(site)
    box = _receivers(site)
    os.environ["TZ"] = ZONE_NAME  # that of the demonstration's figures
    lines = call("many_days", site.path, days, min(WARM_UP, days // 2))
    memory = [int(value) for name, value in lines if name == "memory"]
    descriptors = [int(value) for name, value in lines if name == "descriptors"]
    before, after = map(State, memory, descriptors)
    return [
        Figure("days", days),
        *_mails(box, days),
        *growth("days", before, after, run.is_judged),
    ]


def _shrink(site):
    for table in ("VLAN", "HostDiskInfo"):
        site.sql("Reports.mdb", f"DELETE FROM {table} WHERE RecNo NOT IN"
                 f" (SELECT DISTINCT RecNo FROM {table} ORDER BY RecNo LIMIT {_DEVICES})")


def _receivers(site):
    box = MailBox()
    box.open()
    site.set("Settings_SmtpServer", MailPort=box.port)
    for schedule in (_DAILY, _WEEKLY, _MONTHLY):
        site.insert("Quillon.mdb", "Settings_RepReceiver", Name=f"R{schedule}",
                    Recipient=f"r{schedule}@example.org", TimeSchedule=schedule, WeekDay="Monday",
                    Top10Rep1="Access InVolume", Top10Rep2="Trunk OutErrors", Top10Rep3="None",
                    Top10Rep4="None", Top10Rep5="None", PortRep=0, PortRepRecNo=0,
                    PortRepIfIndex=0, PortRepDetails=0, AttachReport=1, IncludeUrl=1)
    return box


def _mails(box, days):
    """Each day one, and one in each week of these days."""
    counts = Counter(mail.recipients[0] for mail in box.mails())
    return [Figure("days_daily_mails", counts["r1@example.org"], least=days, most=days),
            Figure("days_weekly_mails", counts["r2@example.org"],
                   least=days // 7, most=days // 7 + 1),
            Figure("days_monthly_mails", counts["r3@example.org"],
                   least=days // 31, most=days // 28 + 1)]
