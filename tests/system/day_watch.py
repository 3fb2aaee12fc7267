"""Looking at a day that runs, while other tests have their turn: its pass comes half a minute
behind the opening of the listeners."""
import time

from background import Background
from waiting import DEADLINE

_LIMIT = 90 + DEADLINE  # seconds; no day of the tests comes near it
LAST_PAGE = "disk-mem-summary.htm"


class DayWatch(Background):
    look_pause = 0.05

    def begin(self):
        """What a fleet calls when the listeners are open."""
        self.start()

    def until(self, condition, what):
        end = time.monotonic() + _LIMIT
        while not condition():
            if time.monotonic() > end:
                raise AssertionError(f"not within {_LIMIT} s: {what}")
            time.sleep(self.look_pause)


def cached_files(site):
    """The bytes by the names."""
    return {name: site.stored_page(name) for name in site.names("WebReports/Cache")}


def has_built(site, name=LAST_PAGE):
    return (site.path / "WebReports/Cache" / name).exists()


def is_building(site, count):
    """Whether the run has stored so many files, and not the last one."""
    names = site.names("WebReports/Cache")
    return len(names) >= count and LAST_PAGE not in names
