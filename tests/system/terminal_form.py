"""The operator's form on a terminal, as its operator finds his way in it."""
from contextlib import ExitStack, suppress
from pathlib import Path

from terminal import Terminal
from waiting import eventually

CAPTION = "┤ Quillon Web Server ├"
BEGUN = "Tab moves on"
_IN_THE_PASS = ": the hourly pass is running"
_JOIN = " ; "


class Form(Terminal):
    """A shell that has started the form, and notes the terminal's modes before and behind it."""

    def __init__(self, site, opened=(CAPTION, BEGUN), **size):
        super().__init__(**size)
        with ExitStack() as failed:
            failed.push(self)
            self._open(site.path / "quillonctl", opened)
            failed.pop_all()

    def _open(self, program, opened):
        self.run(_JOIN.join([
            "clear", "stty -a > before",
            f"sh -c 'echo $$ > id; exec {program} console'",
            "echo $? > status", "stty -a > after", "touch over"]))
        self.wait_for(*opened)

    def press_button(self, caption):
        self.click(f"<{caption}>")

    def start_job(self, caption, *expected):
        """Presses once more where it meets the hourly pass."""
        def attempt():
            self.press_button(caption)
            eventually(lambda: self.shows(_IN_THE_PASS) or self.shows(*expected), expected)
            return not self.shows(_IN_THE_PASS)
        eventually(attempt, f"{caption} without the hourly pass")

    def fill(self, label, text):
        """Types into the field behind the label, in place of what is there."""
        column, row = eventually(lambda: self.place(label), label)
        self.click_at(column + len(label) + 2, row)
        self.press("End", *["BSpace"] * 20)
        self.type(text)
        self.wait_for(text)

    def leave(self):
        self.press_button("Exit")
        return self.status()

    def status(self):
        """The exit status, when the shell is back."""
        self._wait_until_over()
        return int((self.folder / "status").read_text())

    def process_id(self):
        return int((self.folder / "id").read_text())

    def is_running(self):
        """Not so when it has ended and nobody has asked for its status yet."""
        with suppress(FileNotFoundError, ProcessLookupError):
            status = Path(f"/proc/{self.process_id()}/stat").read_text()
            return status.rpartition(")")[2].split()[0] != "Z"
        return False

    def terminal_modes(self):
        """Before and behind the form, which has ended or stands still."""
        self._wait_until_over()
        return [(self.folder / name).read_text() for name in ("before", "after")]

    def _wait_until_over(self):
        eventually((self.folder / "over").exists, "the shell is back")
