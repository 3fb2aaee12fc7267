"""A terminal with a shell in it, of a real terminal program: keys and clicks go in, and its screen
is looked at."""
import os
import shutil
import subprocess
import tempfile
from pathlib import Path

from bound_life import end_with_the_tests
from waiting import DEADLINE, eventually

COLUMNS, ROWS = 80, 24
is_available = shutil.which("tmux") is not None
REASON = "tmux is not installed"

_SHELL = "bash --noprofile --norc"
_CLICK = "\033[<0;{column};{row}M\033[<0;{column};{row}m"  # down and up
_MODES = "#{mouse_standard_flag}#{mouse_sgr_flag}#{alternate_on}"


class Terminal:
    def __init__(self, columns=COLUMNS, rows=ROWS, shell=_SHELL):
        self.folder = Path(tempfile.mkdtemp(prefix="quillon-terminal-"))
        self._environment = {**os.environ, "LC_ALL": "C.UTF-8", "TERM": "xterm-256color",
                             "PS1": "$ "}
        # In the foreground, so that it ends with the tests.
        self._server = subprocess.Popen(
            [*self._command(), "-D"], env=self._environment, preexec_fn=end_with_the_tests)
        self._begin(columns, rows, shell)

    def _begin(self, columns, rows, shell):
        eventually((self.folder / "socket").exists, "the terminal program runs")
        self._ask("new-session", "-d", "-x", str(columns), "-y", str(rows), "-c", self.folder,
                  shell)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self._server.kill()
        self._server.wait()
        shutil.rmtree(self.folder, ignore_errors=True)

    # In.

    def type(self, text):
        self._ask("send-keys", "-l", "--", text)

    def press(self, *keys):
        """By their names: Enter, Tab, BTab, Escape, C-z."""
        self._ask("send-keys", *keys)

    def run(self, line):
        self.type(line)
        self.press("Enter")

    def click(self, text):
        """On the first place where the screen shows the text."""
        self.click_at(*eventually(lambda: self.place(text), f"{text} on the screen"))

    def click_at(self, column, row):
        self.type(_CLICK.format(column=column + 1, row=row + 1))

    def resize(self, columns, rows):
        self._ask("resize-window", "-x", str(columns), "-y", str(rows))

    def close(self):
        """As a window is closed: whoever runs in it is hung up on."""
        self._ask("kill-session")

    # Out.

    def lines(self):
        return self._ask("capture-pane", "-p").splitlines()

    def place(self, text):
        """Column and row, both from 0; None where it is not shown."""
        for row, line in enumerate(self.lines()):
            if text in line:
                return line.index(text), row
        return None

    def shows(self, *texts):
        screen = "\n".join(self.lines())
        return all(text in screen for text in texts)

    def wait_for(self, *texts):
        try:
            eventually(lambda: self.shows(*texts), f"{texts} on the screen")
        except AssertionError as failure:
            raise AssertionError("\n".join([str(failure), *self.lines()])) from None

    def modes(self):
        """Whether the mouse is reported, in which form, and whether a second screen is shown."""
        return self._ask("display-message", "-p", _MODES).strip()

    def _command(self):
        return ["tmux", "-u", "-f", "/dev/null", "-S", self.folder / "socket"]

    def _ask(self, *words):
        return subprocess.run(
            [*self._command(), *words], env=self._environment, check=True, text=True,
            stdout=subprocess.PIPE, timeout=DEADLINE).stdout
