"""The time zone that the service runs in: one where it is about noon, so that no test meets
midnight."""
from datetime import datetime, timedelta, timezone

_offset = 12 - datetime.now(timezone.utc).hour

# POSIX turns the sign: Etc/GMT-5 is five hours ahead of Greenwich.
ZONE_NAME = f"Etc/GMT{-_offset:+d}"
_ZONE = timezone(timedelta(hours=_offset))


def local_now():
    return datetime.now(_ZONE).replace(tzinfo=None)


def seconds_ago(text, pattern="%Y-%m-%d %H:%M:%S"):
    """Age of a time that the service wrote."""
    return (local_now() - datetime.strptime(text, pattern)).total_seconds()
