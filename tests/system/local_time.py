"""The time zone that the service runs in: one where it is about noon, so that no test meets
midnight."""
from datetime import datetime, timedelta, timezone

_offset = 12 - datetime.now(timezone.utc).hour

# POSIX turns the sign: Etc/GMT-5 is five hours ahead of Greenwich.
ZONE_NAME = f"Etc/GMT{-_offset:+d}"
_ZONE = timezone(timedelta(hours=_offset))


def local_now():
    return datetime.now(_ZONE).replace(tzinfo=None)


def zone_where_it_is(hour, minute, second):
    """A zone in which it is that time of day now: its name for a process, and the zone."""
    now = datetime.now(timezone.utc)
    ahead = timedelta(hours=hour, minutes=minute, seconds=second) - timedelta(
        hours=now.hour, minutes=now.minute, seconds=now.second)
    sign = "+" if ahead < timedelta() else "-"
    return f"Test{sign}{abs(ahead)}", timezone(ahead)


def is_recent(text, pattern="%Y-%m-%d %H:%M:%S"):
    """Whether the service wrote that time in this run, which may be long on a busy machine."""
    return abs(local_now() - datetime.strptime(text, pattern)) < timedelta(hours=1)
