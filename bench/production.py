"""The production of the day: its work against the pauses that it has to make, its memory, and what
the visitors of a page notice of it.

Work and memory are those of a process that counts the pauses and does not sleep them: with them,
the pages of such a network take 40 minutes. The visitors ask the real service, with its pauses.
"""

import json
import os
import shutil
import statistics
import subprocess
import sys
from contextlib import contextmanager
from pathlib import Path

from figures import Line, MeasureError, Options
from installation import (CLIENT_CORE, HOST, PROGRAMS, SERVER_CORE, Service, about_noon,
                          add_program, events_of, pinned, sql)
from large_network import HISTORY_DAYS, fill, make_reports, run, text_of
from mail_sink import mail_sink

PORTS, STORAGES = 30_000, 2_000
FEW_STORAGES = 100  # where the pauses are slept
FIXED_PAGES = 63
NO_FIGURE = b": -<"  # in the popup of a day
PAGE = "switch-access-port-top10-involume.htm"  # the first one of a run
LAST_PAGE = "disk-mem-summary.htm"
PORTS_OF_TODAY = 3
VISIT_SECONDS = 60
MILLI, KILO = 1000, 1024

RECEIVERS = 5
CHOICES = ("Access InVolume", "Access InErrors", "Access Summary", "Trunk OutVolume",
           "Trunk Summary")
ATTACHMENTS = len(CHOICES) + 2  # the page of a port, and the stylesheet


def make_network(name: str, ports: int, storages: int) -> Path:
    """With ports, storages and all of their history up to the day before yesterday: yesterday is
    what the next import adds."""
    directory = make_reports(name, ports)
    history = directory / "History.mdb"
    fill(directory / "Reports.mdb", "fill_import.sql", storages=storages)
    fill(history, "fill_storage_day.sql")
    port_day = text_of("fill_port_day.sql")
    days = "".join(port_day.replace("{day}", f"{number:02}")
                   for number in range(1, HISTORY_DAYS + 1))
    days += "".join(f"INSERT INTO Disk_Day{number:02} SELECT * FROM Disk_Day{HISTORY_DAYS};\n"
                    for number in range(1, HISTORY_DAYS))
    run(history, f"BEGIN;\n{days}COMMIT;\n", ports=ports)
    fill(history, "fill_days.sql", newest=2)
    add_program(directory)
    return directory


@contextmanager
def network(*arguments):
    """The installation is too large to leave it behind."""
    directory = make_network(*arguments)
    os.sync()
    try:
        yield directory
    finally:
        shutil.rmtree(directory)


# --- work and memory --------------------------------------------------------------------


def production_run(directory: Path, *options: str) -> list[list[str]]:
    """The lines of the program, in words."""
    command = pinned(SERVER_CORE, PROGRAMS / "production_run", directory.resolve(), *options)
    done = subprocess.run(command, capture_output=True, text=True, check=False)
    if done.returncode != 0:
        raise MeasureError(done.stderr.strip())
    return [line.split() for line in done.stdout.splitlines()]


def add_receivers(directory: Path, port: int) -> None:
    """Each gets all kinds of pages, each day."""
    choices = ", ".join(f"'{choice}'" for choice in CHOICES)
    rows = ", ".join(f"('Receiver {number}', 'receiver-{number}@site.example', 1, '', {choices},"
                     " TRUE, 1, 1, TRUE, TRUE, TRUE)" for number in range(1, RECEIVERS + 1))
    sql(directory / "Quillon.mdb",
        f"UPDATE Settings_SmtpServer SET MailServer = '{HOST}', MailPort = {port};"
        f"INSERT INTO Settings_RepReceiver VALUES {rows};")


def memory_lines(directory: Path) -> list[Line]:
    """Of a whole day, which imports, builds the pages and mails them."""
    with mail_sink() as sink:
        add_receivers(directory, sink.port)
        words = production_run(directory, "--cycle")
        if sink.mails != [ATTACHMENTS] * RECEIVERS * 2:  # the second time counts too
            raise MeasureError(f"the mails came with {sink.mails} attachments")
    private, heap, peak = ({word[1]: int(word[place]) / KILO for word in words}
                           for place in (2, 3, 4))
    return [
        Line("production_private_before", private["start"], "MB"),
        *(Line(f"production_private_peak_{step}", peak[step], "MB", goal=64)
          for step in ("import", "pages", "mails")),
        Line("production_private_stays", private["mails"] - private["start"], "MB", goal=2),
        Line("production_private_stays_heap", heap["mails"] - heap["start"], "MB"),
        Line("production_private_stays_trimmed", heap["trimmed"] - heap["start"], "MB"),
        Line("production_private_second_day", private["again"] - private["mails"], "MB"),
    ]


def expect_whole(cache: Path) -> None:
    """The lists of a run are there, and its charts have all their days. Of the day that was
    imported some ports have no multicasts."""
    charts = list(cache.glob("hist*"))
    # A server has two disks, and one chart for its two memories.
    if len(charts) <= STORAGES * 3 // 4 or len(list(cache.iterdir())) < FIXED_PAGES + len(charts):
        raise MeasureError("the run did not build all pages")
    for chart in charts:
        if chart.read_bytes().count(NO_FIGURE) > 1:
            raise MeasureError(f"{chart.name} has days without figures")


def work_lines(directory: Path, count: int) -> list[Line]:
    runs = []
    for _ in range(count):
        runs.append({word[0]: float(word[1]) for word in production_run(directory)})
        expect_whole(directory / "WebReports/Cache")

    def median(name: str, unit: float = 1) -> float:
        return statistics.median(figures[name] / unit for figures in runs)

    ratio = statistics.median(figures["work"] / figures["pauses"] for figures in runs)
    return [
        Line("production_work_per_pause", ratio, "", goal=0.02, wanted=0.01),
        Line("production_work", median("work", MILLI), "s"),
        Line("production_pauses", median("pauses", MILLI), "s"),
        Line("production_longest_stretch", median("stretch"), "ms"),
        Line("production_files", median("files"), ""),
    ]


# --- pages ------------------------------------------------------------------------------


def ask_during_run(directory: Path) -> dict:
    with Service(directory, SERVER_CORE, import_due=True) as service:
        service.wait_for_listener()
        program = Path(__file__).parent / "production_pages.py"
        command = pinned(CLIENT_CORE, sys.executable, "-B", program, directory, service.port, PAGE,
                         LAST_PAGE, VISIT_SECONDS)
        done = subprocess.run(command, capture_output=True, text=True, check=False)
        if done.returncode != 0:
            raise MeasureError(f"no pages during the run: {done.stderr.strip()}")
        if events_of(directory) != 1:  # more than the start
            raise MeasureError(f"see {directory / 'Debug/AppEventWeb.txt'}")
    return json.loads(done.stdout)


def page_lines(directory: Path) -> list[Line]:
    """Few ports are of today, so that their charts, of which each takes 1.4 s, leave time for the
    other pages, most of which are built without a pause."""
    sql(directory / "Reports.mdb",
        "UPDATE VLAN SET InOctetsDate = datetime(InOctetsDate, '-3 days')"
        f" WHERE rowid > {PORTS_OF_TODAY};")
    figures = ask_during_run(directory)
    answers = [seconds * MILLI for seconds in figures["answers"]]
    return [Line("production_page_p99", statistics.quantiles(answers, n=100)[-1], "ms", goal=25),
            Line("production_page_worst", max(answers), "ms")]


def measure(options: Options) -> list[Line]:
    with about_noon():
        with network("production", PORTS, STORAGES) as directory:
            memory = memory_lines(directory)  # imports the day, which the others find imported
            work = work_lines(directory, options.rounds)
        with network("production_pages", PORTS, FEW_STORAGES) as directory:
            return [*work, *page_lines(directory), *memory]
