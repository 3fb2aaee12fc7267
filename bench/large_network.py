"""Installations with the statistics of a large network."""

import subprocess
from pathlib import Path

from installation import new_databases

HISTORY_DAYS = 45


def text_of(script: str) -> str:
    return (Path(__file__).parent / script).read_text(encoding="utf-8")


def run(database: Path, statements: str, **parameters: int) -> None:
    """Runs statements where the database is, beside the other ones."""
    command = ["sqlite3", "-bail"]
    for name, value in parameters.items():
        command += ["-cmd", f".parameter set :{name} {value}"]
    subprocess.run([*command, database.name], cwd=database.parent, input=statements,
                   text=True, check=True, stdout=subprocess.DEVNULL)


def fill(database: Path, script: str, **parameters: int) -> None:
    """The same with the statements of a script of this folder."""
    run(database, text_of(script), **parameters)


def make_reports(name: str, ports: int) -> Path:
    """With ports and the addresses seen on them."""
    directory = new_databases(name)
    fill(directory / "Reports.mdb", "fill_reports.sql", ports=ports)
    return directory


def make_addresses(name: str, addresses: int, ports: int) -> Path:
    """With ports and many addresses seen on each."""
    directory = make_reports(name, ports)
    fill(directory / "Reports.mdb", "fill_addresses.sql", addresses=addresses, ports=ports)
    return directory


def make_storages(name: str, storages: int) -> Path:
    """With the day table of yesterday's storages, which is the one that searches look into."""
    directory = new_databases(name)
    fill(directory / "Reports.mdb", "fill_import.sql", storages=storages)
    fill(directory / "History.mdb", "fill_storage_day.sql")
    fill(directory / "History.mdb", "fill_days.sql", newest=1)
    return directory


def make_night(name: str, ports: int, storages: int) -> Path:
    """With ports, storages and the history of daily imports: today's is the next one."""
    directory = make_reports(name, ports)
    fill(directory / "Reports.mdb", "fill_import.sql", storages=storages)
    fill(directory / "History.mdb", "fill_history.sql")
    fill(directory / "History.mdb", "fill_days.sql", newest=2)  # an import's day is the one before
    return directory


def make_charts(name: str, ports: int) -> Path:
    """With ports and their history of 45 days up to yesterday."""
    directory = make_reports(name, ports)
    history = directory / "History.mdb"
    day = text_of("fill_port_day.sql")
    days = "".join(day.replace("{day}", f"{number:02}") for number in range(1, HISTORY_DAYS + 1))
    run(history, f"BEGIN;\n{days}COMMIT;\n", ports=ports)
    fill(history, "fill_days.sql", newest=1)
    return directory
