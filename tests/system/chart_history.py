"""A history for the charts, with figures of its own, and what the charts are to show of it."""
from dataclasses import dataclass
from datetime import timedelta

from chart_text import DAYS, NO_DATA
from local_time import local_now

DEVICE, PORT, OTHER_PORT = 70001, 3, 4
PAGE, OTHER_PAGE = (f"hist45-{DEVICE}-{port}.htm" for port in (PORT, OTHER_PORT))
NAMES = ("Büro 'Öst' <1> Ж", 'Gi0/3 & "x"')
NAMES_LATIN = ("Büro 'Öst' <1> ?", 'Gi0/3 & "x"')
ACCESS, TRUNK = (f"switch-{kind}-port-summary.htm" for kind in ("access", "trunk"))

# Ages of days: with the port, with a table that lacks it, and with the port on the last of all.
_NEWEST, _WITHOUT_PORT, _OLDEST = 1, 3, DAYS

_COLUMNS = ("InHCOctetsMb24H, OutHCOctetsMb24H, InBroadCastPpm24H, InMultiCastPpm24H,"
            " InErrorsTot24H, OutErrorsTot24H")
_FIGURES = {_NEWEST: (5000, 4000, 60, 61, 1440, 1441), _OLDEST: (10, 11, 0, -1, 0, -1)}
_PORTS = {_NEWEST: (3, 2), _OLDEST: (0, 0)}
_OTHER_FIGURES = (7, 8, 9, 10, 11, 12)


@dataclass
class ExpectedChart:
    words: tuple
    axis: tuple
    shown: dict  # by age: text and bar, left and right

    def series(self, age):
        """As `Chart.series` gives it."""
        left, right = self.shown.get(age, (NO_DATA, NO_DATA))
        _, left_word, right_word = self.words
        return f"{left_word}: {left[0]}<br>{right_word}: {right[0]}", (left[1], right[1])


# 5000 is a multiple of 100 with one leading digit; 61 goes up to 65, half of it is 32.5; 1441 goes
# up to 1500 and on to 2000; 3 goes up to 4.
_VOLUME = ExpectedChart(("Volume", "In Volume", "Out Volume"), ("5 G", "2.5 G"), {
    _NEWEST: (("5 000 M  (463 kbit/s)", "100"), ("4 000 M  (370 kbit/s)", "80")),
    _OLDEST: (("10 M", "1"), ("11 M  (1 kbit/s)", "1"))})
_BROADCAST_WORDS, _BROADCAST_AXIS = (
    ("Broadcast and Multicast", "In Broadcast", "In Multicast"), ("65", "33"))
_BROADCAST_NEWEST = (("60 per min", "92"), ("61 per min<br>(1 per sec)", "94"))
_ERRORS = ExpectedChart(("Errors", "In Errors", "Out Errors"), ("2 K", "1 K"), {
    _NEWEST: (("1 440 per 24h", "72"), ("1 441 per 24h<br>(1 per min)", "72")),
    _OLDEST: (("0 per 24h", "1"), ("-1 per 24h", "1"))})
_PORTS_CHART = ExpectedChart(("Ports", "All Ports", "Ports in Traffic"), ("4", "2"), {
    _NEWEST: (("3", "75"), ("2  (67%)", "50")),
    _OLDEST: (("0", "1"), ("0  (0%)", "1"))})


def _broadcast(multicast_of_oldest):
    return ExpectedChart(_BROADCAST_WORDS, _BROADCAST_AXIS, {
        _NEWEST: _BROADCAST_NEWEST, _OLDEST: (("0 per min", "1"), multicast_of_oldest)})


PORT_CHARTS = [_VOLUME, _broadcast(NO_DATA), _ERRORS]
# A sum of -1 has its bar, -1.5 percent of 65, before it becomes a dash.
SUMMARY_CHARTS = [_VOLUME, _broadcast(("-", "-2")), _ERRORS, _PORTS_CHART]


def day_of(age):
    return (local_now() - timedelta(days=age)).date()


def fill(site):
    """Replaces the history of the demonstration, and adds the names of the ports."""
    _fill_days(site)
    _fill_sums(site)
    for port in (PORT, OTHER_PORT):
        site.sql("Reports.mdb", "INSERT INTO VLAN (RecNo, IfIndex, DevName, IfDescr) VALUES"
                 " (?, ?, ?, ?)", DEVICE, port, *NAMES)


def _fill_days(site):
    site.sql("History.mdb", "DELETE FROM VLAN_HistCtrl")
    for age in (_WITHOUT_PORT, _OLDEST, _NEWEST):
        table = f"VLAN_Day{age:02}"
        site.sql("History.mdb", "INSERT INTO VLAN_HistCtrl VALUES (?, ?)", _moment(age), table)
        rows = {PORT: _FIGURES.get(age), OTHER_PORT: _OTHER_FIGURES}
        for port in [port for port, figures in rows.items() if figures]:
            site.sql("History.mdb", f"INSERT INTO {table} (RecNo, IfIndex, IsTrunk, {_COLUMNS})"
                     " VALUES (?, ?, 0, ?, ?, ?, ?, ?, ?)", DEVICE, port, *rows[port])


def _fill_sums(site):
    site.sql("History.mdb", "DELETE FROM VLAN_HistSum")
    sums = [(_moment(age), 0, *_FIGURES[age], *_PORTS[age]) for age in _FIGURES]
    for row in [*sums, (_moment(_NEWEST), 1, *_OTHER_FIGURES, 9, 9)]:
        site.sql("History.mdb", f"INSERT INTO VLAN_HistSum (TrafficDate, IsTrunk, {_COLUMNS},"
                 " Ports, PortsInTraffic) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)", *row)


def _moment(age):
    return f"{day_of(age)} 03:10:00"
