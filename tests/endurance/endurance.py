"""Runs the parts. Prints their figures, a table each, and a line that counts the parts. Called by
tests/endurance/run, which builds what this needs.

    endurance.py [--sanitized] SCALE PART...

With --sanitized the programs are built with sanitizers: then times and memory are shown and not
judged, and what the sanitizers find fails the run."""
import shutil
import subprocess
import sys
import tempfile
from contextlib import contextmanager
from dataclasses import dataclass
from pathlib import Path

_SOURCES = Path(__file__).resolve().parents[2]
_LEFT = _SOURCES / "build/endurance/left"
sys.path.append(str(_SOURCES / "tests/system"))

from days_part import many_days
from figures import Judgement
from load_parts import aborted_connections, mixed_requests
from mixture import requests_of
from slow_parts import dripping_requests, slow_readers
from template import Template
from twentieth_part import twentieth_connection
from warm_up import ask_all_on_all_connections
from watched_site import WatchedSite, growth

# In the order in which they run, one service behind all of them.
PARTS_OF_SERVICE = {
    "requests": mixed_requests,
    "aborts": aborted_connections,
    "slow": slow_readers,
    "drip": dripping_requests,
    "twentieth": twentieth_connection,
}
ALL_OF_SERVICE = "all"  # what they left together, the warm-up of each of them included
DAYS = "days"
_FAILURES = (AssertionError, OSError, subprocess.SubprocessError)


@dataclass
class Run:
    scale: float
    is_sanitized: bool

    @property
    def is_judged(self):
        """Whether memory and times count."""
        return not self.is_sanitized

    def count(self, whole):
        return max(1, round(whole * self.scale))


def run_on_service(template, scratch, run, names, judgement):
    """A part that comes to no end is the last one: what the service then does tells nothing."""
    step = "start"
    site = WatchedSite(template, scratch / "site")
    try:
        site.start()
        ask_all_on_all_connections(site, requests_of(site))
        before = site.state()
        for step in names:
            _announce(step)
            judgement.tell(step, PARTS_OF_SERVICE[step](site, scratch, run))
        step = ALL_OF_SERVICE
        judgement.tell(step, growth(step, before, site.state(), run.is_judged))
        step = "stop"
        site.stop()
    except _FAILURES as failure:
        judgement.fail(step, failure)
    finally:
        site.kill()


def run_days(template, scratch, run, judgement):
    _announce(DAYS)
    try:
        judgement.tell(DAYS, many_days(template, scratch, run))
    except _FAILURES as failure:
        judgement.fail(DAYS, failure)


def _announce(part):
    print(f"running {part}", file=sys.stderr, flush=True)


def run_parts(scratch, run, names, judgement):
    template = Template(scratch / "template")
    of_service = [name for name in PARTS_OF_SERVICE if name in names]
    if of_service:
        run_on_service(template, scratch, run, of_service, judgement)
    if DAYS in names:
        run_days(template, scratch, run, judgement)


@contextmanager
def scratch_folder(judgement):
    """The folder of a run. It may lie in memory, so what a failed part left there is moved to the
    disk; behind a run that was interrupted without one, nothing stays."""
    scratch = Path(tempfile.mkdtemp(prefix="quillon-endurance-"))
    try:
        yield scratch
    finally:
        if judgement.failed > 0:
            _LEFT.mkdir(parents=True, exist_ok=True)
            # There are sockets among them, which shutil would not move to another disk.
            subprocess.run(["mv", scratch, _LEFT], check=True)
            print(f"the files: {_LEFT / scratch.name}")
        else:
            shutil.rmtree(scratch)


def main(arguments):
    is_sanitized = arguments[:1] == ["--sanitized"]
    scale, *names = arguments[1:] if is_sanitized else arguments
    run = Run(float(scale), is_sanitized)
    judgement = Judgement()
    with scratch_folder(judgement) as scratch:
        run_parts(scratch, run, names, judgement)
    print(judgement.line())
    return 0 if judgement.failed == 0 else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
