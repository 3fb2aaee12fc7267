"""The hot pieces of the service in one process, by Google Benchmark: microseconds a call."""

import json
import subprocess

from figures import Line, MeasureError, Options
from installation import PROGRAMS, SERVER_CORE, pinned


def medians(options: Options, names: str = ".") -> list[tuple[str, float]]:
    """Name and microseconds of each piece whose name matches, in the order of the program."""
    command = pinned(SERVER_CORE, PROGRAMS / "pieces", "--benchmark_format=json",
                     f"--benchmark_filter={names}",
                     f"--benchmark_repetitions={options.rounds}", "--benchmark_min_time=0.1",
                     "--benchmark_enable_random_interleaving=true",
                     "--benchmark_report_aggregates_only=true")
    done = subprocess.run(command, capture_output=True, text=True, check=False)
    if done.returncode != 0:
        raise MeasureError(f"pieces ended with status {done.returncode}: {done.stderr.strip()}")
    found = json.loads(done.stdout)["benchmarks"]
    figures = []
    for piece in sorted(found, key=lambda piece: (piece["family_index"], piece["run_name"])):
        if piece.get("error_occurred"):
            raise MeasureError(f"{piece['name']}: {piece['error_message']}")
        if piece["aggregate_name"] == "median":
            figures.append((piece["run_name"], piece["real_time"]))
    return figures


def measure(options: Options) -> list[Line]:
    return [Line(name, microseconds, "us") for name, microseconds in medians(options)]
