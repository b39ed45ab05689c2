"""Waiting for what is to become true."""
import time

from gi.repository import GLib

# How long something may take before it counts as not happening. The machine may be busy.
PATIENCE = 20
# What no event tells of is looked at again this often, in milliseconds.
GLANCE = 25


def wait_until(condition, what, seconds=PATIENCE):
    """Returns the first truthy answer of the condition. A signal on a bus leads to the next look at
    once. When time runs out the test fails; `what` says what was waited for."""
    deadline = time.monotonic() + seconds
    while True:
        answer = condition()
        if answer:
            return answer
        if time.monotonic() > deadline:
            raise AssertionError(f"Not within {seconds} s: {what}")
        wait_for_an_event()


def wait_for_an_event():
    glance = GLib.timeout_source_new(GLANCE)
    glance.set_callback(lambda *_: False)
    glance.attach(None)
    GLib.MainContext.default().iteration(True)
    glance.destroy()


def wait_until_equal(value, expected, what, seconds=PATIENCE):
    """Waits until the function gives what is expected; otherwise says what it gave last."""
    last = None

    def is_reached():
        nonlocal last
        last = value()
        return last == expected

    try:
        wait_until(is_reached, what, seconds)
    except AssertionError as failure:
        raise AssertionError(f"{failure}\n  expected: {expected!r}\n  found:    {last!r}") from None
