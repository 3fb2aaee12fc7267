"""The operator's console beside an installation: what a shell does with it."""
import json
import os
import pty
import subprocess
from contextlib import suppress
from pathlib import Path
from typing import NamedTuple

from bound_life import end_with_the_tests
from waiting import DEADLINE, eventually

DONE, FAILED, WRONG_USAGE = 0, 1, 2

IN_THE_PASS = "the hourly pass is running"
_TABLES = ("Settings_General", "Settings_WebServer", "Settings_SnmpAgent", "Settings_SmtpServer",
           "Settings_RepReceiver")


class Result(NamedTuple):
    status: int
    out: str
    errors: str

    def json(self):
        return json.loads(self.out)

    def fields(self):
        """The two columns of names and values. A value may go on in the next line."""
        fields = {}
        for line in self.out.splitlines():
            name, _, value = line.partition(" ")
            if name:
                fields[name] = value.strip()
            else:
                last = list(fields)[-1]
                fields[last] += "\n" + value.strip()
        return fields


def ctl(site, *words, typed="", inside=()):
    """Runs it to its end. `typed` is its standard input, and `inside` a command that runs it."""
    return _result(_start(site, words, inside=inside), typed)


def ask(site, *words):
    """What it prints; it has to succeed, and to have nothing to complain about."""
    result = ctl(site, *words)
    if result.status != DONE or result.errors:
        raise AssertionError(f"quillonctl {' '.join(words)}: {result}")
    return result


def job(site, *words, run=ctl):
    """A job, which is asked for once more where it meets the hourly pass."""
    def attempt():
        result = run(site, *words)
        return None if IN_THE_PASS in result.out + result.errors else result
    return eventually(attempt, f"a moment without the hourly pass for {words}")


def activity(site):
    return ctl(site, "status").fields().get("activity")


def wait_until_idle(site):
    """From then on it takes jobs: a moment behind the event of its start."""
    eventually(lambda: activity(site) == "idle", "nothing to do")


def with_nothing_due(site):
    """The report is an old one, so the jobs are the operator's alone."""
    site.sql("History.mdb", "UPDATE General_Info SET LastReport = '2020-01-01 03:00:00'")


def settings(site):
    """All rows of all tables of settings."""
    return {table: site.sql("Quillon.mdb", f"SELECT rowid, * FROM {table} ORDER BY rowid")
            for table in _TABLES}


class Console:
    """One that runs beside the test."""

    def __init__(self, site, *words):
        self._process = _start(site, words)

    def hang_up(self):
        """As by Ctrl-C."""
        self._process.terminate()
        _result(self._process, "")

    def result(self):
        return _result(self._process, "")

    @property
    def id(self):
        return self._process.pid

    def is_asleep(self):
        status = Path(f"/proc/{self.id}/stat").read_text()
        return status.rpartition(")")[2].split()[0] == "S"


def on_a_terminal(site, *words, typed=None):
    """Its result, where all that goes to standard error goes to a terminal. What is `typed` there
    is typed when it asks."""
    terminal, end_of_program = pty.openpty()
    with os.fdopen(terminal, "r+b", buffering=0) as screen:
        process = _start(site, words, stderr=end_of_program,
                         stdin=subprocess.PIPE if typed is None else end_of_program)
        os.close(end_of_program)
        shown = screen.read(1 << 16)
        if typed is not None:
            screen.write(typed.encode())
        with suppress(OSError):  # the program has let go of its end
            while data := screen.read(1 << 16):
                shown += data
    out, _ = process.communicate(timeout=DEADLINE)
    return Result(process.returncode, out, shown.decode())


def _start(site, words, inside=(), stdin=subprocess.PIPE, stderr=subprocess.PIPE):
    return subprocess.Popen(
        [*inside, site.path / "quillonctl", *words], cwd="/", text=True,
        env={**os.environ, **site.process.environment}, preexec_fn=end_with_the_tests,
        stdin=stdin, stdout=subprocess.PIPE, stderr=stderr)


def _result(process, typed):
    out, errors = process.communicate(typed, timeout=DEADLINE)
    return Result(process.returncode, out, errors)
