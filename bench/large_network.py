"""Installations with the statistics of a large network."""

import subprocess
from pathlib import Path

from installation import new_databases


def text_of(script: str) -> str:
    return (Path(__file__).parent / script).read_text(encoding="utf-8")


def fill(database: Path, script: str, **parameters: int) -> None:
    """Runs a script of this folder where the database is, beside the other ones."""
    command = ["sqlite3", "-bail"]
    for name, value in parameters.items():
        command += ["-cmd", f".parameter set :{name} {value}"]
    subprocess.run([*command, database.name], cwd=database.parent, input=text_of(script),
                   text=True, check=True, stdout=subprocess.DEVNULL)


def make_reports(name: str, ports: int) -> Path:
    """With ports and the addresses seen on them."""
    directory = new_databases(name)
    fill(directory / "Reports.mdb", "fill_reports.sql", ports=ports)
    return directory


def make_night(name: str, ports: int, storages: int) -> Path:
    """With ports, storages and the history of daily imports: today's is the next one."""
    directory = make_reports(name, ports)
    fill(directory / "Reports.mdb", "fill_import.sql", storages=storages)
    fill(directory / "History.mdb", "fill_history.sql")
    return directory
