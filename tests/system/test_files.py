"""Which files the running service touches: those of its installation and no others."""
import unittest
from pathlib import Path

import fleet
import tracing
from client import request
from hostile_input import NO_LINE_END, ODD_REQUESTS
from site_pages import LISTS

SITE = fleet.declare()
DATABASES = [name + side for name in ("Quillon.mdb", "Reports.mdb", "History.mdb")
             for side in ("", "-wal", "-shm", "-journal")]


def setUpModule():
    fleet.start()


@unittest.skipUnless(tracing.is_available, "strace is not installed")
class Files(unittest.TestCase):
    def touched(self, *texts):
        """The paths that the service asks for while it is sent the texts, one by one."""
        with tracing.traced_paths(SITE.process.id) as paths:
            for text in texts:
                with SITE.connect() as client:
                    client.send(text)
                    SITE.get("")
        return {Path(path) for path in paths}

    def assert_inside(self, paths):
        outside = [path for path in paths if not path.is_relative_to(SITE.path)]
        self.assertEqual(outside, [])
        self.assertFalse([path for path in paths if ".." in path.parts])

    def assert_pages_and_databases(self, paths):
        allowed = {SITE.path / name for name in DATABASES}
        others = [path for path in paths - allowed
                  if path.parent != SITE.path / "WebReports/Cache" and path != SITE.path]
        self.assertEqual(others, [])

    def test_a_list_opens_a_database_and_stores_its_page(self):
        paths = self.touched(request(LISTS[0]))
        self.assertIn(SITE.path / "Reports.mdb", paths)
        self.assertIn(SITE.path / "WebReports/Cache" / LISTS[0], paths)

    def test_pages_touch_the_cache_and_the_databases_only(self):
        paths = self.touched(*[request(name) for name in LISTS + LISTS])
        self.assert_inside(paths)
        self.assert_pages_and_databases(paths)

    def test_the_default_page_and_the_icon_touch_nothing(self):
        self.assertEqual(self.touched(request(""), request("favicon.ico")), set())

    def test_hostile_input_touches_nothing_outside(self):
        paths = self.touched(*ODD_REQUESTS.values(), *NO_LINE_END.values())
        self.assert_inside(paths)
        paths.discard(SITE.path / "Debug/AppEventWeb.txt")
        self.assert_pages_and_databases(paths)


if __name__ == "__main__":
    unittest.main()
