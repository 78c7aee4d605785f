"""Waiting for what is to come."""
import time


def wait_for(condition, seconds=30, what=None):
    """The first true answer of `condition`; fails the test after `seconds`, which only a failing test waits out."""
    end = time.monotonic() + seconds
    while True:
        answer = condition()
        if answer:
            return answer
        if time.monotonic() > end:
            raise AssertionError('not within %g s: %s' % (seconds, what or condition))
        time.sleep(0.02)
