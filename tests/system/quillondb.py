"""quillondb beside an installation: what an administrator's shell does with it."""
import os
import resource
import shutil
import signal
import subprocess
import unittest

from bound_life import end_with_the_tests
from local_time import ZONE_NAME
from programs import PROGRAMS, SHARE
from quillonctl import DONE, FAILED, WRONG_USAGE, Result
from waiting import DEADLINE

__all__ = ["AS_NOBODY", "CAN_BE_NOBODY", "DONE", "FAILED", "NEEDS_NOBODY", "NOBODY", "WRONG_USAGE",
           "Running", "ask", "create", "db", "is_plain", "kills_at_each"]

PROGRAM = PROGRAMS / "quillondb"

# A user without any rights, for whom root runs it.
NOBODY = 65534
AS_NOBODY = ("setpriv", "--reuid", str(NOBODY), "--regid", str(NOBODY), "--clear-groups")


def _can_be_nobody():
    """Who has to be let through to the program as well."""
    return (os.geteuid() == 0 and shutil.which("setpriv") is not None and
            subprocess.run([*AS_NOBODY, "test", "-x", PROGRAM], check=False).returncode == 0)


CAN_BE_NOBODY = _can_be_nobody()
NEEDS_NOBODY = unittest.skipUnless(
    CAN_BE_NOBODY, "needs root, setpriv, and programs that others may run")


def db(*words, **surroundings):
    """Runs it to its end."""
    return Running(*words, **surroundings).result()


def ask(*words, **surroundings):
    """What it prints; it has to succeed."""
    result = db(*words, **surroundings)
    if result.status != DONE:
        raise AssertionError(f"quillondb {' '.join(map(str, words))}: {result}")
    return result.out


def create(path):
    """A new installation there, with the files that come with the program."""
    ask("create", path)
    shutil.copytree(SHARE / "WebReports", path / "WebReports", dirs_exist_ok=True)


def is_plain(text):
    """Whether nothing but its line ends could move a terminal's cursor."""
    return text.replace("\n", "").isprintable()


def kills_at_each(call, *words, most=100):
    """Runs it again and again, and each time kills it one system call of these later: gives the
    number of the call behind each kill, until a run comes to its end."""
    for number in range(1, most):
        strace = ("strace", "-f", "-qq", "-o", os.devnull, "-e", f"trace={call}",
                  "-e", f"inject={call}:signal=KILL:when={number}")
        if db(*words, inside=strace).status != -signal.SIGKILL:
            return
        yield number
    raise AssertionError(f"{call}: more than {most} calls")


class Running:
    """One that runs beside the test. `inside` is a command that runs it. Where `file_limit` is
    set, no file gets more bytes: as on a full disk."""

    def __init__(self, *words, inside=(), file_limit=None, locale="C"):
        def prepare():
            end_with_the_tests()
            if file_limit is not None:
                signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
                resource.setrlimit(resource.RLIMIT_FSIZE, (file_limit, file_limit))

        self._process = subprocess.Popen(
            [*inside, PROGRAM, *words], cwd="/", preexec_fn=prepare, stdin=subprocess.PIPE,
            stdout=subprocess.PIPE, stderr=subprocess.PIPE,
            env={**os.environ, "TZ": ZONE_NAME, "LC_ALL": locale})

    def type(self, data):
        self._process.stdin.write(data)
        self._process.stdin.flush()

    def send_signal(self, number):
        self._process.send_signal(number)

    def is_over_within(self, seconds):
        """Waits for its end so long at most."""
        try:
            self._process.wait(seconds)
            return True
        except subprocess.TimeoutExpired:
            return False

    def result(self, typed=b""):
        """Its end, when that was typed behind all else."""
        out, errors = self._process.communicate(typed, timeout=DEADLINE)
        return Result(self._process.returncode, out.decode(), errors.decode())
