"""Who receives the service's traps: Debian's snmptrapd, and what it has logged."""
import atexit
import os
import random
import re
import shutil
import socket
import subprocess
import tempfile
from contextlib import suppress
from dataclasses import dataclass
from pathlib import Path

from bound_life import end_with_the_tests
from waiting import DEADLINE, eventually

_PROGRAM = shutil.which("snmptrapd", path=os.environ["PATH"] + ":/usr/sbin")
is_available = _PROGRAM is not None

# All texts come in hexadecimal digits (-Ox), so that none of them can hold a mark of this form.
_FORM = "<%b|%P|%N|%w|%q|%T|%a|%V;%v>\\n"
_TRAP = re.compile(
    r"<UDP: \[(?P<source>[\d.]+)\]:\d+->\[(?P<target>[\d.]+)\]:\d+\|"
    r"TRAP, SNMP (?P<version>\w+), community (?P<community>[^|]*)\|"
    r"\.(?P<enterprise>[\d.]+)\|(?P<generic>\d+)\|\.(?P<specific>\d+)\|(?P<uptime>\d+)\|"
    r"(?P<agent_address>[\d.]+)\|(?P<varbinds>[^>]*)>")
_VARBIND = re.compile(r'\.([\d.]+) = (?:(\w[\w-]*): ([^;]*)|"")')
_TEXT = "Hex-STRING"


@dataclass
class Trap:
    source: str         # the address that it came from
    target: str         # the address that it came to
    version: str
    community: str
    enterprise: str
    generic: int
    specific: int
    uptime: int         # hundredths of a second
    agent_address: str
    varbinds: list      # of identifier and value: bytes of a text, or a number

    @property
    def listener_address(self):
        return self.varbinds[0][1].decode()

    @property
    def event(self):
        """Type, source and text, as the event file has them."""
        module, procedure, text, event_type = (value for _, value in self.varbinds[2:])
        return event_type, f"{module.decode()}_{procedure.decode()}", text.decode("latin-1")


class TrapReceiver:
    """One snmptrapd on one port of these addresses."""

    def __init__(self, *addresses):
        self._addresses = addresses
        self._home = None
        self._process = None
        self.port = _free_port(addresses)

    def listen(self, *_):
        """Starts it, once. A preparation of each installation that sends to it."""
        if self._process is not None or not is_available:
            return
        self._home = Path(tempfile.mkdtemp(prefix="quillon-traps-"))
        atexit.register(self._end)
        settings = self._home / "settings"
        settings.write_text("disableAuthorization yes\n")
        self._process = subprocess.Popen(
            [_PROGRAM, "-f", "-C", "-c", settings, "-Lf", self._log, "-F", _FORM, "-On", "-Ox",
             *[f"udp:{address}:{self.port}" for address in self._addresses]],
            env={**os.environ, "SNMP_PERSISTENT_DIR": str(self._home), "MIBS": ""},
            stdin=subprocess.DEVNULL, preexec_fn=end_with_the_tests)
        eventually(self._is_ready, "the trap receiver is there")

    def ini_lines(self, address):
        """Those of a Morvane.ini that makes it the target on that address of its own."""
        return f"ServerIpAddr={address}", f"ServerTrapPort={self.port}"

    def traps(self):
        """All of them, in the order of their arrival."""
        text = self._log_text()  # once: another trap may arrive meanwhile
        found = list(_TRAP.finditer(text))
        if len(found) != text.count("<UDP"):
            raise AssertionError(f"not a trap of its form: {text}")
        return [_trap(fields) for fields in found]

    def traps_of(self, site):
        """Those of one installation: each tells the address of its listener, which no other
        one that sends to this receiver has."""
        return [trap for trap in self.traps() if trap.listener_address == site.address]

    def wait_for_trap(self, site, text):
        """The first one of that installation in whose text this one stands."""
        def found():
            return [trap for trap in self.traps_of(site) if text in trap.event[2]]
        return eventually(found, f"a trap with {text!r}")[0]

    @property
    def _log(self):
        return self._home / "log"

    def _log_text(self):
        """Up to the end of the last whole trap."""
        text = self._log.read_text("latin-1") if self._log.exists() else ""
        return text[:text.rfind(">\n") + 2]

    def _is_ready(self):
        if self._process.poll() is not None:
            raise AssertionError("the trap receiver does not start")
        return self._log.exists() and "NET-SNMP version" in self._log.read_text("latin-1")

    def _end(self):
        self._process.terminate()
        with suppress(subprocess.TimeoutExpired):
            self._process.wait(DEADLINE)
        shutil.rmtree(self._home, ignore_errors=True)


def _trap(fields):
    names = fields.groupdict()
    varbinds = [(identifier, _value(kind, text))
                for identifier, kind, text in _VARBIND.findall(names.pop("varbinds"))]
    for number in ("generic", "specific", "uptime"):
        names[number] = int(names[number])
    return Trap(varbinds=varbinds, **names)


def _value(kind, text):
    if kind in (_TEXT, ""):  # an empty text has no kind
        return bytes.fromhex(text)
    if kind == "INTEGER":
        return int(text)
    raise AssertionError(f"neither a text nor an integer: {kind} {text}")


def _free_port(addresses):
    """One that Morvane.ini can name: a port there is a number of 16 bits with a sign."""
    while True:
        port = random.randrange(10000, 20000)
        try:
            for address in addresses:
                with socket.socket(type=socket.SOCK_DGRAM) as probe:
                    probe.bind((address, port))
            return port
        except OSError:
            continue
