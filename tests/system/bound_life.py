"""Keeps a process from outliving the tests that started it, whatever becomes of them."""
import ctypes
import signal

_PR_SET_PDEATHSIG = 1


def end_with_the_tests():
    """To be run in the new process, before its program."""
    ctypes.CDLL(None).prctl(_PR_SET_PDEATHSIG, signal.SIGKILL)
