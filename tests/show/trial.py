"""What the scripts share that play the show by hand on what a machine has and print a table."""

import os
import shutil
import sys

import machine
from stage import ROOT, Show, wait_until

PLAY = os.path.realpath(os.environ.get("PLAY", os.path.join(ROOT, "build", "tarvisk-play")))


class Missing(Exception):
    """What is to be tried is not installed here."""


def needs(*programs):
    for program in programs:
        if not shutil.which(program):
            raise Missing(f"no {program} here")


class Playing:
    """A show that has begun, or ended before. .log is where its lines go."""

    def __init__(self, on, folder, *options, **how):
        self.on = on
        self.log = os.path.join(folder, "show.log")
        if os.path.exists(self.log):
            os.remove(self.log)
        self.show = Show(on, *options, **how)
        wait_until(lambda: self.ended() or "adding event 'phonetex_callscreen'" in self.said(), "the show")

    def said(self):
        return machine.said(self.log)

    def ended(self):
        return self.show.process.poll() is not None

    def last_words(self):
        return " ".join(self.show.lines)[-200:]


def in_a_cell(text):
    return str(text).replace("|", "/").replace("\n", " ")


def table(usage, columns, known, row):
    """Prints the rows that were asked for, or all. row(name) makes the cells after the name."""
    machine.PATIENCE = 60
    names = sys.argv[1:] or list(known)
    if not set(names) <= set(known):
        print(usage + "\nNames: " + ", ".join(known))
        return
    print(f"| {' | '.join(columns)} |\n|{'---|' * len(columns)}", flush=True)
    for name in names:
        try:
            cells = row(name)
        except Missing as error:
            cells = [str(error)]
        except (AssertionError, OSError) as error:
            cells = [f"failed: {error}"]
        print(f"| {' | '.join(map(in_a_cell, [name, *cells]))} |", flush=True)
