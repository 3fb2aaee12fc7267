"""The hot pieces of the service in one process, by Google Benchmark: microseconds a call."""

import json
import subprocess

from figures import Line, MeasureError, Options
from installation import PROGRAMS, SERVER_CORE, pinned


def measure(options: Options) -> list[Line]:
    command = pinned(SERVER_CORE, PROGRAMS / "pieces", "--benchmark_format=json",
                     f"--benchmark_repetitions={options.rounds}", "--benchmark_min_time=0.1",
                     "--benchmark_enable_random_interleaving=true",
                     "--benchmark_report_aggregates_only=true")
    done = subprocess.run(command, capture_output=True, text=True, check=False)
    if done.returncode != 0:
        raise MeasureError(f"pieces ended with status {done.returncode}: {done.stderr.strip()}")
    found = json.loads(done.stdout)["benchmarks"]
    lines = []
    for piece in sorted(found, key=lambda piece: (piece["family_index"], piece["run_name"])):
        if piece.get("error_occurred"):
            raise MeasureError(f"{piece['name']}: {piece['error_message']}")
        if piece["aggregate_name"] == "median":
            lines.append(Line(piece["run_name"], piece["real_time"], "us"))
    return lines
