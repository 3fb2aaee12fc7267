"""The requests of a load: what of the site is asked for, and in which proportion."""
import re
from dataclasses import dataclass
from pathlib import Path
from typing import Optional

from client import request
from search_pages import ALL, post

METRICS = ("involume", "outvolume", "inbroadcast", "inmulticast", "inerrors", "outerrors")

SAME, PAGE, NOTHING = "same", "page", "nothing"  # what is expected: the first answer, any, none

# Of a million requests. Those that wait - a failure its half second, a chart that is not stored its
# 10 ms a day - hold up everybody else, so there are as many as bear on it and no more.
SHARES = {
    "stored_list": 870_000,
    "stored_chart": 50_000,
    "front_page": 30_000,
    "stylesheet": 15_000,
    "icon": 5_000,
    "unknown": 20_000,      # URLs and texts that lead to the front page
    "new_list": 5_000,      # top 10s that are not stored
    "search": 4_925,
    "failing": 40,
    "new_chart": 25,
    "not_built": 10,        # lists that only the nightly work makes: no answer, and no failure
}


@dataclass
class Listed:
    kind: str
    expected: str
    data: bytes
    fresh: Optional[Path] = None  # is removed before each request

    def line(self, weight):
        return f"{weight:g} {self.kind} {self.expected} {self.fresh or '-'} {self.data.hex()}\n"


def list_name(kind, metric):
    return f"switch-{kind}-port-top10-{metric}.htm"


def write_list(path, requests):
    """The file for the clients' programs. The share of a kind falls to its requests alike."""
    kinds = [entry.kind for entry in requests]
    path.write_text("".join(entry.line(SHARES[entry.kind] / kinds.count(entry.kind))
                            for entry in requests))


def requests_of(site):
    """Asks for each list and some charts once, which stores them."""
    lists = [list_name("access", metric) for metric in METRICS]
    links = [re.findall(r"href='?(hist45-[\w.-]+)", site.get(name).decode("latin-1"))
             for name in lists]
    charts = [chart for page in links for chart in page[:2]]
    for chart in charts:
        site.get(chart)
    stored = {_chart_file(chart) for chart in charts}
    other = next(chart for page in links for chart in page if _chart_file(chart) not in stored)
    return [*_stored(lists, charts), *_built(site.cache, other), *_without_a_page()]


def _chart_file(link):
    """Where the charts of a port are stored, under whatever list its link stands."""
    return re.match(r"hist45-\d+-\d+", link)[0] + ".htm"


def _stored(lists, charts):
    return [
        *(Listed("stored_list", SAME, request(name)) for name in lists),
        *(Listed("stored_chart", SAME, request(name)) for name in charts),
        Listed("front_page", SAME, request("")),
        Listed("stylesheet", SAME, request("qws.css")),
        Listed("icon", SAME, request("favicon.ico")),
    ]


def _built(cache, chart):
    names = [list_name("trunk", metric) for metric in METRICS]
    return [
        *(Listed("new_list", SAME, request(name), cache / name) for name in names),
        Listed("new_chart", SAME, request(chart), cache / _chart_file(chart)),
        *(Listed("search", PAGE, post(action, **fields)) for action, fields in ALL.items()),
    ]


def _without_a_page():
    return [
        Listed("unknown", PAGE, request("a/b/c?d=e")),
        Listed("unknown", PAGE, request("x" * 8000)),
        Listed("unknown", PAGE, request(bytes(range(128, 256)))),
        Listed("unknown", PAGE, request("../../etc/passwd", method="DELETE")),
        Listed("unknown", PAGE, b"\r\n\r\n"),
        Listed("unknown", PAGE, b"\0" * 1000 + b"\r\n"),
        Listed("failing", NOTHING, b"no line end"),
        Listed("failing", NOTHING, request("hist45-seven-4-switch.htm")),
        Listed("not_built", NOTHING, request("disk-windows-top10-usedpercent-desc.htm")),
    ]
