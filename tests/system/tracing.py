"""Watches which files a running process opens, makes, renames or deletes, by strace."""
import re
import shutil
import signal
import subprocess
import tempfile
from contextlib import contextmanager

from waiting import DEADLINE

_CALLS = "openat,open,creat,unlink,unlinkat,rename,renameat,renameat2,mkdir,mkdirat"
_TEXT = re.compile(r'"((?:[^"\\]|\\.)*)"')

is_available = shutil.which("strace") is not None


@contextmanager
def traced_paths(process_id):
    """Gives a set that holds, at the end of the block, every path that was asked for, also in
    vain."""
    paths = set()
    with tempfile.NamedTemporaryFile(mode="r") as report:
        strace = subprocess.Popen(
            ["strace", "-f", "-e", f"trace={_CALLS}", "-o", report.name, "-p", str(process_id)],
            stderr=subprocess.PIPE, text=True)
        try:
            strace.stderr.readline()  # it says that it is attached
            yield paths
        finally:
            strace.send_signal(signal.SIGINT)
            strace.communicate(timeout=DEADLINE)
        for line in report:
            paths.update(_TEXT.findall(line))
