"""A machine to install the service on: the real program in a mount namespace of its own, where
the folder of the units is the test's, and `systemctl` and `useradd` are scripts that only note
what they were asked. Nothing of the real machine changes."""
import os
import shutil
import subprocess
import tempfile
from pathlib import Path

UNIT_FOLDER = "/etc/systemd/system"

# Puts the first argument in the place of the folder, the second tells whether it can be written,
# and the third is where programs are looked for.
_INSIDE = f"""
mount --bind "$1" {UNIT_FOLDER} || exit 99
if [ "$2" = ro ]; then mount -o remount,bind,ro {UNIT_FOLDER} || exit 99; fi
PATH=$3
shift 3
exec "$@"
"""
_UNSHARE = shutil.which("unshare")
_STAND_IN = """#!/bin/sh
echo "${{0##*/}} $*" >>{calls}
case " $* " in {refused}) exit 1 ;; esac
"""
_EVERYTHING = "*"
_NOTHING = "-"


def _is_permitted():
    if _UNSHARE is None or os.geteuid() != 0:
        return False
    return subprocess.run([_UNSHARE, "-m", "true"], capture_output=True).returncode == 0


is_available = _is_permitted()
REASON = "a mount namespace of its own is not permitted here"


class Machine:
    """Each has an empty folder of units. `refusing` is a word of a call of systemctl that is
    answered with a failure, or True for every call."""

    def __init__(self, test, refusing=None, has_systemctl=True, is_writable=True):
        self._home = Path(tempfile.mkdtemp(prefix="quillon-machine-"))
        test.addCleanup(shutil.rmtree, self._home)
        self.units = self._home / "units"
        self._calls = self._home / "calls"
        self._programs = self._home / "programs"
        self._is_writable = is_writable
        self._has_systemctl = has_systemctl
        for folder in (self.units, self._programs):
            folder.mkdir()
        self._stand_in("useradd")
        if has_systemctl:
            self.refuse(refusing)

    def refuse(self, word):
        pattern = _EVERYTHING if word is True else f'*" {word} "*' if word else _NOTHING
        self._stand_in("systemctl", pattern)

    def run(self, site, *options, **surroundings):
        """The program of the installation: its exit status, and what it said."""
        mode = "rw" if self._is_writable else "ro"
        path = str(self._programs)
        if self._has_systemctl:  # else none may be found, the real one included
            path += os.pathsep + os.environ["PATH"]
        inside = [_UNSHARE, "-m", "sh", "-c", _INSIDE, "sh", self.units, mode, path]
        return site.process.run_beside(*options, inside=inside, **surroundings)

    def calls(self):
        """What the stand-ins were asked, a line each."""
        return self._calls.read_text().splitlines() if self._calls.exists() else []

    def registered(self):
        """The units and all else in their folder: their bytes and modes by their names."""
        return {str(path.relative_to(self.units)): (path.read_bytes(), path.stat().st_mode)
                for path in self.units.rglob("*") if path.is_file()}

    def unit(self):
        """The one unit."""
        (path,) = self.units.glob("*.service")
        return path

    def unit_settings(self, key):
        """What the unit sets that key to, each time. Quotes around it do not count, nor does
        the colon before a command that is to be taken as it stands."""
        lines = self.unit().read_text().splitlines()
        return [line.removeprefix(f"{key}=").lstrip(":").strip('"') for line in lines
                if line.startswith(f"{key}=")]

    def _stand_in(self, name, refused=_NOTHING):
        script = self._programs / name
        script.write_text(_STAND_IN.format(calls=self._calls, refused=refused))
        script.chmod(0o755)
