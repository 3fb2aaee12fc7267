"""A network with awkward names for the searches, and what their tables are to show of it."""
from dataclasses import dataclass
from datetime import timedelta

from local_time import local_now

# The figures of a port whose statistics are of another day: cells, and the popup.
_NO_CELLS = ("0", "0", "  0", "  0", "  0", "  0")
_NO_FIGURES = ("0", "0", "  0 per min", "  0 per min", "  0 per 24h", "  0 per 24h")
_SMALL = (1, 1, 1, 1, 1, 1)
_SMALL_CELLS = ("1 M", "1 M", "1", "1", "1", "1")
_SMALL_FIGURES = ("1 M", "1 M", "1 per min", "1 per min", "1 per 24h", "1 per 24h")


@dataclass
class Port:
    """A row of VLAN, and what a table shows of its figures."""
    device: int
    name: str
    address: str
    number: int
    port: str
    alias: str
    vlan: int = 12
    is_trunk: int = 0
    age: int = 0  # of the statistics, in days
    figures: tuple = _SMALL
    cells: tuple = _SMALL_CELLS
    full: tuple = _SMALL_FIGURES

    @property
    def shown_vlan(self):
        return "-" if self.vlan == -1 else str(self.vlan)


@dataclass
class User:
    """A row of MAC."""
    device: int
    port: int
    mac: str
    address: str
    minutes: int  # since it was seen

    @property
    def day(self):
        return f"{_moment(self.minutes):%Y-%m-%d}"


@dataclass
class Storage:
    """A row of a disk day table, and what a table shows of it."""
    device: int
    name: str
    storage: str
    kind: int
    sizes: tuple  # total, used, free
    percent: float
    trends: tuple
    word: str     # that stands for it in the link
    cells: tuple  # total, free, used, percent, trends


_DAY = 24 * 60  # minutes

# 12345 is 12 G, at 1.143 Mbit/s; 500 M are 46.3 kbit/s; 61 a minute are 1.02 a second; 1441 a day
# are 1.0007 a minute.
OFFICE = Port(101, "Büro 'Öst' <1> & \"Ж\"", "10.0.0.101", 3, 'Gi0/3 & "x"', "Ж ünit", vlan=-1,
              figures=(12345, 500, 61, -1, 1441, 0),
              cells=("12 G", "500 M", "61", "-", "1 441", "0"),
              full=("12 G  (1 Mbit/s)", "500 M  (46 kbit/s)", "61 per min  (1 per sec)", "-",
                    "1 441 per 24h  (1 per min)", "0 per 24h"))
OLD = Port(101, OFFICE.name, OFFICE.address, 4, "Gi0/4", "", age=1, figures=(900, 900, 9, 9, 9, 9),
           cells=_NO_CELLS, full=_NO_FIGURES)
# None of its figures is large enough to have a rate.
BLANKS = Port(102, " blanks ", "10.0.0.102", 1, " p ", " a ", is_trunk=1,
              figures=(9, 800, 60, 0, 1440, 1440),
              cells=("9 M", "800 M", "60", "0", "1 440", "1 440"),
              full=("9 M", "800 M", "60 per min", "0 per min", "1 440 per 24h", "1 440 per 24h"))
KITCHEN = Port(104, "Küche 2", "10.0.0.104", 1, "Größe", "Äußeres")
NAMELESS = Port(105, "", "10.0.0.105", 1, "", "")
STACK = [Port(110, "Stapel", "10.0.1.10", number, f"Port {number}", f"Alias {number}")
         for number in range(1, 13)]
WITHOUT_ALIAS = Port(199, "no alias", "10.9.9.9", 1, "p", None)
PORTS = [OFFICE, OLD, BLANKS, KITCHEN, NAMELESS, *STACK, WITHOUT_ALIAS]

FIRST_USER = User(101, 3, "02 1B 2C 3D 4E 5F", "10.1.0.3", 2 * _DAY)
LAST_USER = User(101, 3, "02 1B 2C 3D 4E 60", "10.1.0.4", 5)
TRUNK_USER = User(102, 1, "02 1B 2C 3D 4E 61", "10.1.0.5", _DAY)
LOST_USER = User(999, 1, "02 1B 2C 3D 4E 62", "10.1.0.6", 10)  # whose port is gone
_CROWD_PORTS = {100: (104, 1), 101: (102, 1)}  # by how many were seen later; the others have none
CROWD = [User(*_CROWD_PORTS.get(place, (998, 1)), f"06 00 00 00 00 {place:02X}",
              f"10.6.0.{place}", place) for place in range(1, 151)]
USERS = [FIRST_USER, LAST_USER, TRUNK_USER, LOST_USER, *CROWD]

SERVER, BASE, FARM = "Büro 'Öst' <srv>", "data+base [1]*", "Farm"
SYSTEM = Storage(900, SERVER, 'C:\\ Label:"Ж"', 30, (500000, 450000, 50000), 90, (1.5, -2),
                 'C_\\ Label_"Ж"', ("500 G", "50 G", "450 G", "90 %", "+1.5 %", "-2 %"))
PHYSICAL = Storage(900, SERVER, "Physical", 10, (1234, 617, 617), 50, (0, 0.25), "mem",
                   ("1 234 M", "617 M", "617 M", "50 %", "0 %", "+0.25 %"))
VIRTUAL = Storage(900, SERVER, "Virtual", 20, (0, 0, 0), 0, (-1, 3), "mem",
                  ("0", "0", "0", "0 %", "-1 %", "+3 %"))
# 12345678 is 13 T, since its third digit from the end is a 6.
LOGS = Storage(901, BASE, "/var/log", 40, (12345678, 12345678, 0), 99.5, (0, 0), "_var_log",
               ("13 T", "0", "13 T", "99.5 %", "0 %", "0 %"))
ROOT = Storage(901, BASE, "/", 40, (999, 99, 900), 10, (0, 0), "_",
               ("999 M", "900 M", "99 M", "10 %", "0 %", "0 %"))
DISKS = [Storage(902, FARM, f"disk {number}", 30, (100, number, 100 - number), 10 + number, (0, 0),
                 f"disk {number}",
                 ("100 M", f"{100 - number} M", f"{number} M", f"{10 + number} %", "0 %", "0 %"))
         for number in range(1, 9)]
STORAGES = [VIRTUAL, *DISKS, SYSTEM, PHYSICAL, LOGS, ROOT]
BY_PERCENT = sorted(STORAGES, key=lambda storage: storage.percent, reverse=True)


def user_of(port):
    """The one that a port search shows with a port: the first row that MAC has for it."""
    users = [user for user in USERS if (user.device, user.port) == (port.device, port.number)]
    return users[0] if users else None


def fill(site):
    """Replaces the ports, users and servers of the demonstration. The period is empty, since the
    service takes it over with the first hourly pass only, in the middle of the tests."""
    for table in ("VLAN", "MAC", "HostDiskInfo"):
        site.sql("Reports.mdb", f"DELETE FROM {table}")
    for table in ("Disk_HistCtrl", "Disk_Day01"):
        site.sql("History.mdb", f"DELETE FROM {table}")
    site.sql("History.mdb", "UPDATE General_Info SET ReportStart = '', ReportEnd = ''")
    _fill_ports(site)
    _fill_storages(site)


def _fill_ports(site):
    for port in PORTS:
        moment = f"{_moment(port.age * _DAY):%Y-%m-%d} 03:10:00"
        site.insert("Reports.mdb", "VLAN", RecNo=port.device, DevName=port.name,
                    IpAddr=port.address, VlanID=port.vlan, IfIndex=port.number, IfDescr=port.port,
                    IfSpeed="100000000", IfAlias=port.alias, IfAdmin="up", IfOper="down",
                    IsTrunk=port.is_trunk, InOctetsDate=moment, LastUpdate=moment,
                    **dict(zip(_FIGURES, port.figures)))
    for user in USERS:
        site.insert("Reports.mdb", "MAC", RecNo=user.device, IfIndex=user.port,
                    MacAddr=user.mac, IpAddr=user.address,
                    LastSeen=f"{_moment(user.minutes):%Y-%m-%d %H:%M:%S}")


def _fill_storages(site):
    for device, name in ((900, SERVER), (901, BASE), (902, FARM), (KITCHEN.device, "a server")):
        site.insert("Reports.mdb", "HostDiskInfo", RecNo=device, DevName=name)
    site.insert("History.mdb", "Disk_HistCtrl", HistTable="Disk_Day01",
                StorageDate=f"{_moment(_DAY):%Y-%m-%d} 03:10:00")
    for storage in STORAGES:
        total, used, free = storage.sizes
        site.insert("History.mdb", "Disk_Day01", RecNo=storage.device, DevName=storage.name,
                    StorDescr=storage.storage, Type=storage.kind, TotalM=total, UsedM=used,
                    FreeM=free, UsedProc=storage.percent, Trend14d=storage.trends[0],
                    Trend30d=storage.trends[1])


_FIGURES = ("InHCOctetsMb24H", "OutHCOctetsMb24H", "InBroadCastPpm24H", "InMultiCastPpm24H",
            "InErrorsTot24H", "OutErrorsTot24H")
_START = local_now()


def _moment(minutes):
    return _START - timedelta(minutes=minutes)
