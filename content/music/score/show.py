"""The whole piece, in the order of the show."""

from notation import Part
from score import city, desktop, finale, heart, jelly


def compose():
    part = Part()
    for act in (desktop, heart, city, jelly, finale):
        act.compose(part)
    return part
