"""The pieces of tests/faults that the suite uses: what a history holds, and killed imports."""
import sys
from pathlib import Path

sys.path.append(str(Path(__file__).resolve().parents[1] / "faults"))

from demo_night import enlarge_reports, leave_tables_free, make_night
from history_file import DISK, ROTATIONS, SWITCH, History
from killers import AtMoments
from kills import KillSeries

__all__ = ["DISK", "ROTATIONS", "SWITCH", "AtMoments", "History", "KillSeries",
           "enlarge_reports", "leave_tables_free", "make_night"]
