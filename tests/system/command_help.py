"""What a program tells about its own command line: its commands, theirs, the options of each, and
what they may be, read from `--help`."""
import functools
import re
import subprocess
from typing import NamedTuple

from programs import PROGRAMS
from waiting import DEADLINE

# Of every command; they are told once.
COMMON_OPTIONS = {"-h", "--help", "--help-all"}

_ENTRY = re.compile(r"  (\S+)(?: \w*:?\{(\S+)\}| (yes\|no))?")


class Help(NamedTuple):
    options: set   # with their dashes, short and long
    commands: set  # their names
    choices: dict  # by option or argument: the words of which it is one


@functools.cache
def read_help(program, *path):
    """Of a command: `read_help("quillonctl", "report", "disks")`; without one of the program."""
    run = subprocess.run([PROGRAMS / program, *path, "--help"], check=True, timeout=DEADLINE,
                         stdout=subprocess.PIPE, text=True)
    told = Help(set(), set(), {})
    part = ""
    for line in run.stdout.splitlines():
        entry = _ENTRY.match(line)
        if not line.startswith(" "):
            part = line
        elif entry and part == "Subcommands:":
            told.commands.add(entry[1])
        elif entry and part in ("Options:", "Positionals:"):
            _note(told, part, entry)
    return told


def every_command(program, *path):
    """All paths below one, each command before those in it."""
    for name in sorted(read_help(program, *path).commands):
        yield (*path, name)
        yield from every_command(program, *path, name)


def _note(told, part, entry):
    names, *words = entry.groups()
    if part == "Options:":
        told.options.update(names.split(","))
    if any(words):
        told.choices[names] = set(re.split(r"[,|]", words[0] or words[1]))
