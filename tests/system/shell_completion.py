"""A real bash that has read the completion: what it offers for words, and what it makes of keys."""
import os
import pty
import select
import subprocess
import time

from programs import SHARE
from waiting import DEADLINE

COMPLETION = SHARE / "bash-completion/quillonctl"

_OFFER = """
source "$1" || exit 1
shift
COMP_WORDS=("$@")
COMP_CWORD=$(($# - 1))
_quillon "$1" "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[COMP_CWORD - 1]}" || exit 1
printf '%s\\n' "${COMPREPLY[@]}"
"""

# A shell without the settings of anybody; the program is a function that shows its arguments.
_TERMINAL = ["bash", "--norc", "--noprofile", "-i"]
_SETUP = f"""PS1=; stty -echo; bind 'set enable-bracketed-paste off' 2>/dev/null
quillonctl() {{ printf '<%s>' "$@"; echo; }}; source {COMPLETION}; echo ready"""


def offers(*words):
    """For the last word, which may be a part of one or nothing: a list, in its order."""
    run = subprocess.run(["bash", "--norc", "-uc", _OFFER, "bash", COMPLETION, *words], check=True,
                         stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
                         timeout=DEADLINE)
    if run.stderr:
        raise AssertionError(run.stderr)
    return run.stdout.split("\n")[:-1] if run.stdout.strip() else []


def arguments_after_typing(keys):
    """What the program gets where somebody types a line, with tabs in it, as "<one><two>"."""
    leader, follower = pty.openpty()
    shell = subprocess.Popen(_TERMINAL, stdin=follower, stdout=follower, stderr=follower,
                             start_new_session=True, env={**os.environ, "TERM": "dumb"})
    os.close(follower)
    try:
        _type(leader, _SETUP)
        _lines_until(leader, lambda line: line == "ready")
        _type(leader, keys)
        return _lines_until(leader, lambda line: line.startswith("<"))
    finally:
        shell.kill()
        shell.wait()
        os.close(leader)


def _type(terminal, text):
    os.write(terminal, text.encode() + b"\n")


def _lines_until(terminal, is_wanted):
    """Reads on until there is such a line, and returns it."""
    end = time.monotonic() + DEADLINE
    screen = b""
    while time.monotonic() < end:
        if select.select([terminal], [], [], 0.1)[0]:
            screen += os.read(terminal, 4096)
        for line in screen.decode(errors="replace").splitlines():
            if is_wanted(line.strip()):
                return line.strip()
    raise AssertionError(f"the shell showed only {screen!r}")
