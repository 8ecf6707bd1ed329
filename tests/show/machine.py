"""What every test of a running program needs: patience, an end for what hangs, a virtual display."""

import faulthandler
import os
import socket
import subprocess
import time
import unittest

PATIENCE = 600  # seconds that a slow, busy machine may take for anything
HANGING = 2 * PATIENCE  # seconds, for one test


def wait_until(condition, what, patience=None):
    """Polls until condition() is true and returns its value."""
    end = time.monotonic() + (patience or PATIENCE)
    while time.monotonic() < end:
        value = condition()
        if value:
            return value
        time.sleep(0.05)
    raise AssertionError("waited in vain for " + what)


def listens(path):
    """Whether a connection to that Unix socket is taken. Its file is there a moment before."""
    with socket.socket(socket.AF_UNIX) as door:
        return door.connect_ex(path) == 0


def start_display(*command, **options):
    """Starts an X server; its process and the name of its display."""
    readable, writable = os.pipe()
    process = subprocess.Popen([*command, "-displayfd", str(writable), "-nolisten", "tcp"], pass_fds=[writable],
                               stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, **options)
    os.close(writable)
    with os.fdopen(readable) as number:
        return process, ":" + number.readline().strip()


def end(process):
    """Ends a process. An X server misses a signal that comes in the moment before it waits, so it is asked again."""

    def ended():
        process.terminate()
        return process.poll() is not None

    wait_until(ended, f"the end of {process.args[0]}")


def said(path):
    """What a log says so far, nothing before it is there."""
    try:
        with open(path, errors="replace") as file:
            return file.read()
    except FileNotFoundError:
        return ""


class WatchedTest(unittest.TestCase):
    """A test that ends the run, and says where it stood, when it waits for ever."""

    def run(self, result=None):
        faulthandler.dump_traceback_later(HANGING, exit=True)
        try:
            return super().run(result)
        finally:
            faulthandler.cancel_dump_traceback_later()
