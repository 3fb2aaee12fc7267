"""All installations of the suite. The service opens its listener half a minute after its start,
so all of them start together and that wait is paid once.

A test module declares its installations while it is loaded, and calls `start` in setUpModule:
the first call starts the whole fleet, later ones find it running.
"""
import atexit
import random
import shutil
import signal
import socket
import sys
import tempfile
import time
from pathlib import Path

import tcp_table
from installation import Installation
from template import Template
from waiting import DEADLINE

_POLL = 0.05      # seconds between two looks at the listeners
_PATIENCE = 20    # seconds for the stop of all; each takes three, and a wait that it is in

_root = Path(tempfile.mkdtemp(prefix="quillon-system-"))
_members = []     # every installation with its preparations
_runners = []     # those with a process of the fleet
_reporters = []   # those of them that are to report their start
_when_up = []     # what is called when the listeners are open
_is_running = False


def declare(*preparations, comes_up=True):
    """An installation that starts with the fleet. Each preparation is called with it when its
    files are there and its process is not. One that does not come up is not waited for."""
    member = declare_idle(*preparations)
    _runners.append(member)
    if comes_up:
        _reporters.append(member)
    return member


def declare_idle(*preparations, place=None):
    """One that has its files, and no process until the test starts it. `place` is the name of
    its folder where that matters."""
    member = Installation(_root / (place or f"site{len(_members) + 1}"), _free_port())
    _members.append((member, preparations))
    return member


def when_up(procedure):
    """Has it called when the listeners are open and no test has run yet, about half a minute
    after the start: for what has to happen before the service's next minute."""
    _when_up.append(procedure)


def start():
    """Starts the fleet and waits until the listeners are open."""
    global _is_running
    if _is_running:
        return
    template = Template(_root / "template")
    for member, preparations in _members:
        template.copy_to(member)
        for prepare in preparations:
            prepare(member)
    for member in _runners:
        member.process.start()
    _is_running = True
    _watch(_reporters)
    for procedure in _when_up:
        procedure()


def _free_port():
    """A port that nobody has, below those that the system hands out by itself."""
    taken = {member.port for member, _ in _members}
    while True:
        port = random.randrange(20000, 30000)
        with socket.socket() as probe:
            if port not in taken and probe.connect_ex(("127.0.0.1", port)) != 0:
                return port


def _watch(members):
    """Notes when each listener opens, until every process has reported its start or ended."""
    end = time.monotonic() + DEADLINE
    unseen = [member for member in members if not member.is_listening()]
    while members and time.monotonic() < end:
        ports = tcp_table.listening_ports()
        for member in [member for member in unseen if member.port in ports]:
            member.note_listening()
            unseen.remove(member)
        members = [member for member in members if not _is_settled(member)]
        time.sleep(_POLL)


def _is_settled(member):
    return member.has_started() or not member.process.is_running()


@atexit.register
def _clean_up():
    """Stops them all at once, as an operator would: a service that is killed tells nothing of what
    it counted, where it counts what it runs."""
    for member, _ in _members:
        member.process.ask_to_end()
    end = time.monotonic() + _PATIENCE
    for member, _ in _members:
        member.process.end_by(end)
    shutil.rmtree(_root, ignore_errors=True)


signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))
