"""A certificate that nobody trusts but who is told to: made for the tests, by OpenSSL's program."""
import atexit
import shutil
import subprocess
import tempfile
from pathlib import Path

from waiting import DEADLINE

_PROGRAM = shutil.which("openssl")
is_available = _PROGRAM is not None
REASON = "openssl is not installed"


class Certificate:
    """Made at the first use of one of its files."""

    def __init__(self, host):
        self._host = host
        self._folder = None

    @property
    def file(self):
        return self._files() / "certificate"

    @property
    def key(self):
        return self._files() / "key"

    def _files(self):
        if self._folder is None:
            self._folder = Path(tempfile.mkdtemp(prefix="quillon-certificate-"))
            atexit.register(shutil.rmtree, self._folder)
            subprocess.run(
                [_PROGRAM, "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "2",
                 "-subj", f"/CN={self._host}", "-addext", f"subjectAltName=DNS:{self._host}",
                 "-keyout", self._folder / "key", "-out", self._folder / "certificate"],
                check=True, capture_output=True, timeout=DEADLINE)
        return self._folder
