"""Imports that are killed on their way: the next pass makes up for them. tests/faults has the long
form of this."""
import random
import shutil
import tempfile
import unittest
from pathlib import Path

from night_pieces import AtMoments, KillSeries, leave_tables_free, make_night

KILLS = 6


class KilledImport(unittest.TestCase):
    def assert_next_pass_completes_the_day(self, free_tables):
        scratch = Path(tempfile.mkdtemp(prefix="quillon-import-"))
        night = make_night(scratch / "night")
        leave_tables_free(night, free_tables)
        seed = random.randrange(1_000_000)
        KillSeries(f"{free_tables} free", night, scratch, AtMoments(), seed).run(KILLS)
        shutil.rmtree(scratch)  # what is broken stays for a look

    def test_the_next_pass_completes_the_day_where_no_other_table_is_free(self):
        self.assert_next_pass_completes_the_day(1)

    def test_the_next_pass_completes_the_day_where_other_tables_are_free(self):
        self.assert_next_pass_completes_the_day(3)


if __name__ == "__main__":
    unittest.main()
