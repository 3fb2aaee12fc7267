"""Waiting for the real program: every deadline is generous, since it may share its machine."""
import time

DEADLINE = 60  # seconds; nothing that works comes near it
_PAUSE = 0.02


def eventually(condition, what):
    """Waits until the condition holds; what it gave."""
    end = time.monotonic() + DEADLINE
    while time.monotonic() < end:
        result = condition()
        if result:
            return result
        time.sleep(_PAUSE)
    raise AssertionError(f"not within {DEADLINE} s: {what}")
