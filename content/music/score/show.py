"""The whole piece, in the order of the show."""

from notation import Part
from score import city, desktop, finale, heart, jelly


# Fader moves: (beat, dB), straight from point to point; "all" moves the whole mix.
RIDES = {
    "all": [(0, 0), (7, 0), (8, -0.8), (31, -0.8), (32, -1.2), (79, -1), (80, 0), (104, 0), (105, -1), (127, -1),
            (129, 1), (160, 0.6), (180, 0.3), (208, 0), (240, 0), (255, 0), (256, 0.8), (260, 0), (287, 0), (288, 0.3)],
    "pads": [(0, 0), (79, 0), (80, -1), (104, 0), (114, 0), (115, -3), (127, -1), (128, 0), (160, 0), (160.5, 4),
             (179, 4), (180, 1), (208, 1), (211, 0), (255, 0), (256, -4), (272, -4), (273, -2), (287, 1), (288, 1.5)],
    "keys": [(0, 0), (114, 0), (115, -1.5), (128, 0), (211, 0), (212, 1.5), (240, 1.5), (241, 0)],
    "lead": [(0, 0), (8, 0.5), (32, -0.5), (128, -0.5), (129, 0)],
    "bass": [(0, 0), (255, 0), (256, -2), (272, -2), (273, 0)],
    "drums": [(0, 0), (52, 0), (53, -1), (63, -1), (64, 0)],
}


def compose():
    part = Part()
    for act in (desktop, heart, city, jelly, finale):
        act.compose(part)
    for stem, points in RIDES.items():
        part.ride(stem, *points)
    return part
