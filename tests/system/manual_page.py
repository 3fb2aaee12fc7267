"""A manual page as mandoc understands it: which commands and options its parts name."""
import subprocess
from html.parser import HTMLParser

from waiting import DEADLINE

_OPTION = "Fl"
_COMMAND = "Cm"
_SUBSECTION = "Ss"


def complaints(path):
    """What mandoc has to say against the page, a line each."""
    run = subprocess.run(["mandoc", "-Tlint", "-Wwarning", path], stdout=subprocess.PIPE,
                         stderr=subprocess.STDOUT, text=True, timeout=DEADLINE)
    return run.stdout.splitlines()


class ManualPage(HTMLParser):
    """`options` and `commands` are sets by the heading of the subsection, "" for all that stands in
    none. A command has its whole name, "report disks"."""

    def __init__(self, path):
        super().__init__()
        self.options = {"": set()}
        self.commands = {"": set()}
        self._part = ""       # heading of the subsection
        self._opened = None   # class of the element whose text comes
        self._text = ""
        html = subprocess.run(["mandoc", "-Thtml", path], check=True, stdout=subprocess.PIPE,
                              text=True, timeout=DEADLINE)
        self.feed(html.stdout)

    def handle_starttag(self, tag, attributes):
        kind = dict(attributes).get("class")
        if (tag, kind) in (("h2", _SUBSECTION), ("code", _OPTION), ("code", _COMMAND)):
            self._opened, self._text = kind, ""

    def handle_data(self, data):
        self._text += data

    def handle_endtag(self, tag):
        if tag == "section":
            self._part = ""
        if tag not in ("h2", "code") or self._opened is None:
            return
        self._note(self._opened, " ".join(self._text.split()))
        self._opened = None

    def _note(self, kind, text):
        if kind == _SUBSECTION:
            self._part = text
            self.options[text] = set()
            self.commands[text] = set()
        elif kind == _OPTION:
            self.options[self._part].add(text)
        else:
            self.commands[self._part].add(text)
