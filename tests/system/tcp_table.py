"""The machine's table of TCP sockets: looks at ports without connecting to them."""
from pathlib import Path

_LISTEN = "0A"


def listening_ports():
    rows = [line.split() for line in Path("/proc/net/tcp").read_text().splitlines()[1:]]
    return {int(row[1].split(":")[1], 16) for row in rows if row[3] == _LISTEN}
