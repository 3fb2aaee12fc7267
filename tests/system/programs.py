"""Where the programs under test and the files beside them lie."""
import os
from pathlib import Path

_SOURCES = Path(__file__).resolve().parents[2]
PROGRAMS = Path(os.environ.get("QUILLON_BIN", _SOURCES / "build/debug/bin")).resolve()
SHARE = Path(os.environ.get("QUILLON_SHARE", _SOURCES / "share")).resolve()
