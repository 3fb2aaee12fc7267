"""The mails that a real mail server has taken, and their parts as a reader of mails sees them."""
import atexit
import email
import email.policy
import json
import os
import shutil
import subprocess
import tempfile
from pathlib import Path

from bound_life import end_with_the_tests

_PYTHON = "/usr/bin/python3"  # the one that has the server's library
_SERVER = Path(__file__).resolve().with_name("mail_server.py")


def _is_installed():
    return Path(_PYTHON).exists() and subprocess.run(
        [_PYTHON, "-c", "import aiosmtpd"], capture_output=True).returncode == 0


is_available = _is_installed()
REASON = "python3-aiosmtpd is not installed"


class Mail:
    def __init__(self, path):
        self.data = path.read_bytes()
        envelope = json.loads(path.with_suffix(".json").read_text())
        self.sender = envelope["sender"]
        self.recipients = envelope["recipients"]
        self.account = envelope["account"]
        self.is_encrypted = envelope["is_encrypted"]
        self.message = read_message(self.data)


def read_message(data):
    return email.message_from_bytes(data, policy=email.policy.default)


def receiver_of(message):
    """Name and address of the one receiver."""
    (receiver,) = message["To"].addresses
    return receiver.display_name, receiver.addr_spec


def body_of(message):
    """The text, without the line ends behind it, which are the business of the mail's form."""
    return message.get_body(("plain",)).get_content().replace("\r\n", "\n").rstrip("\n")


def attachments_of(message):
    """Name and bytes of each, in their order."""
    return [(part.get_filename(), part.get_payload(decode=True))
            for part in message.iter_attachments()]


class MailBox:
    """One server. Only who knows the password of the account may send, where one is given."""

    def __init__(self, account=None, password="", certificate=None):
        self._account = account
        self._password = password
        self.certificate = certificate
        self._process = None
        self._folder = None
        self.port = None

    def open(self, *_):
        """Starts it, once. A preparation of each installation that sends to it."""
        if self._process is not None or not is_available:
            return
        self._folder = Path(tempfile.mkdtemp(prefix="quillon-mails-"))
        self._process = subprocess.Popen(
            [_PYTHON, _SERVER, self._folder, *self._options()], stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE, text=True, preexec_fn=end_with_the_tests,
            env={**os.environ, "MAIL_PASSWORD": self._password, "PYTHONDONTWRITEBYTECODE": "1"})
        atexit.register(self._close)
        self.port = int(self._process.stdout.readline())

    def mails(self):
        """Those that have come, in their order."""
        return [Mail(path.with_suffix(".eml")) for path in sorted(self._folder.glob("*.json"))]

    def _options(self):
        options = []
        if self._account:
            options += ["--account", self._account]
        if self.certificate:
            options += ["--certificate", self.certificate.file, "--key", self.certificate.key]
        return options

    def _close(self):
        self._process.kill()
        self._process.communicate()
        shutil.rmtree(self._folder)
