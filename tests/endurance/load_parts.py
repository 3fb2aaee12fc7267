"""Many requests, and many clients that break off. It goes by the million, so programs do it."""
import subprocess

from figures import Figure
from mixture import NOTHING, requests_of, write_list
from programs import PROGRAMS
from watched_site import Unsound, growth

REQUESTS = 10_000_000
ABORTS = 100_000
WARM_UP = 0.05  # of the whole, at first
_LEAST = 200    # or nothing would have been warmed up


def call(program, *arguments):
    """The lines that it prints, in words."""
    done = subprocess.run([PROGRAMS / program, *map(str, arguments)], text=True, check=False,
                          stdout=subprocess.PIPE)
    if done.returncode != 0:
        raise Unsound(f"{program} ends with status {done.returncode}")
    return [line.split() for line in done.stdout.splitlines()]


def mixed_requests(site, scratch, run):
    listed = scratch / "mixture"
    write_list(listed, requests_of(site))
    lines, before, after = _with_warm_up(site, "mixed_requests", run.count(REQUESTS), listed)
    kinds = {name: (int(asked), int(odd)) for word, name, asked, odd in
             (line for line in lines if line[0] == "kind")}
    (seconds,) = (float(line[1]) for line in lines if line[0] == "seconds")
    asked = sum(count for count, _ in kinds.values())
    return [
        Figure("requests", asked),
        Figure("requests_a_second", asked / seconds),
        *(Figure(f"requests_{name}", count) for name, (count, _) in kinds.items()),
        Figure("requests_odd_answers", sum(odd for _, odd in kinds.values()), most=0),
        *growth("requests", before, after, run.is_judged),
    ]


def aborted_connections(site, scratch, run):
    listed = scratch / "aborted"
    write_list(listed, [entry for entry in requests_of(site) if entry.expected != NOTHING])
    lines, before, after = _with_warm_up(site, "aborted_connections", run.count(ABORTS), listed)
    ways = {name: int(count) for _, name, count in lines}
    return [
        Figure("aborts", sum(ways.values())),
        *(Figure(f"aborts_{name}", count) for name, count in ways.items()),
        *growth("aborts", before, after, run.is_judged),
    ]


def _with_warm_up(site, program, count, listed):
    call(program, site.port, max(_LEAST, int(count * WARM_UP)), listed, 1)
    before = site.state()
    lines = call(program, site.port, count, listed, 2)
    return lines, before, site.state()
