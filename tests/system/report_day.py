"""A day on which the report waits: with the first pass, about a minute after the start, it is
imported, all pages are built, and the mails go out. The network is small and its history short,
since each chart takes its pauses."""
from datetime import timedelta

from local_time import local_now

TODAY, YESTERDAY = (f"{local_now() - timedelta(days=age):%Y-%m-%d}" for age in (0, 1))
WEEKDAYS = ("Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday", "Sunday")
WEEKDAY = WEEKDAYS[local_now().weekday()]
ANOTHER_WEEKDAY = WEEKDAYS[local_now().weekday() - 1]

# Device, interface, trunk; each stands in all six lists of its kind.
PORTS = [(301, 1, 0), (301, 2, 0), (302, 7, 1)]
LOCAL_DISK, REMOTE_DISK, MEMORY = (401, "C:"), (401, "/var/log"), (401, "mem")
_STORAGES = ((401, "Physical"), (401, "Virtual"), LOCAL_DISK, REMOTE_DISK)

_METRICS = ("InHCOctetsMb24H", "OutHCOctetsMb24H", "InBroadCastPpm24H", "InMultiCastPpm24H",
            "InErrorsTot24H", "OutErrorsTot24H")


def without_network(site):
    """A report waits, and tells of nothing: the pages are built at once."""
    _let_report_wait(site)
    for table in ("VLAN", "MAC", "HostDiskInfo"):
        site.sql("Reports.mdb", f"DELETE FROM {table}")


def with_small_network(site):
    without_network(site)
    for device, interface, is_trunk in PORTS:
        site.insert("Reports.mdb", "VLAN", RecNo=device, IfIndex=interface, IsTrunk=is_trunk,
                    DevName=f"Büro {device}", IpAddr=f"10.0.0.{device - 300}", VlanID=12,
                    IfDescr=f"Gi0/{interface}", IfSpeed="100000000", IfAlias="", IfAdmin="up",
                    IfOper="up", InOctetsDate=f"{TODAY} 03:00:00", LastUpdate=f"{TODAY} 03:00:00",
                    **{metric: interface * 10 + place for place, metric in enumerate(_METRICS)})
    for device, storage in _STORAGES:
        site.insert("Reports.mdb", "HostDiskInfo", RecNo=device, DevName="Server",
                    StorDescr=storage, FreeRawM=600, UsedRawM=400, UsedProc=40, UsedProc14Trend=0,
                    UsedProc30Trend=0, LastUpdate=f"{TODAY} 03:00:00")


def mailing_by(server, **settings):
    """A server of the tests' own, which is opened where it is not yet."""
    def prepare(site):
        server.open()
        site.set("Settings_SmtpServer", **{"MailServer": "127.0.0.1", "MailPort": server.port,
                                           **settings})
    return prepare


def with_receivers(*receivers):
    """Each is the fields in which it differs from one who gets a bare mail every day."""
    def prepare(site):
        for receiver in receivers:
            site.insert("Quillon.mdb", "Settings_RepReceiver", **{**_BARE, **receiver})
    return prepare


def small_mails(*names):
    """Receivers of bare mails, whose addresses have these names."""
    return with_receivers(*[{"Name": name, "Recipient": f"{name}@mail.test"} for name in names])


_BARE = {"TimeSchedule": 1, "WeekDay": "", **{f"Top10Rep{place}": "None" for place in range(1, 6)},
         "PortRep": 0, "PortRepRecNo": 0, "PortRepIfIndex": 0, "PortRepDetails": 0,
         "AttachReport": 0, "IncludeUrl": 0}


def _let_report_wait(site):
    """The management product has finished its report, and of all days before but one nothing is
    known. A free table stays for this day."""
    site.sql("History.mdb", "UPDATE General_Info SET LastReport = ?, LastImport = ?,"
             " ReportStart = 'start', ReportEnd = 'end'",
             f"{TODAY} 03:10:00", f"{YESTERDAY} 04:00:20")
    for control, date, name in (("VLAN_HistCtrl", "TrafficDate", "VLAN"),
                                ("Disk_HistCtrl", "StorageDate", "Disk")):
        site.sql("History.mdb", f"DELETE FROM {control}")
        for table, moment in ((f"{name}_Day01", "2000-01-01 00:00:00"),
                              (f"{name}_Day02", f"{local_now() - timedelta(days=2):%Y-%m-%d %T}")):
            site.insert("History.mdb", control, **{date: moment, "HistTable": table})
