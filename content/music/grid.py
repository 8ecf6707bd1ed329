"""The beat grid of the show and its cuts: the one place where music learns about time.

Beats are quarter notes.
"""

import os
import sys

sys.path.insert(0, os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
import schedule  # noqa: E402

BEAT0 = schedule.NUMBERS["first"]  # seconds, music time of beat 0
BEAT = (schedule.NUMBERS["last"] - BEAT0) / schedule.NUMBERS["lastnum"]  # seconds a beat: 0.634875, 94.507 a minute
RATE = 44100  # Hz
END = 384  # beat of the last chord; after it only the tail
TAIL = 6.0  # seconds after the last chord

# (first beat, what is on the screen)
CUTS = [
    (0, "desktop"),
    (8, "logo"),
    (32, "torn title"),
    (52, "orange, heart"),
    (80, "lace"),
    (104, "call"),
    (115, "white room"),
    (129, "city"),
    (160, "credits"),
    (180, "gear"),
    (208, "still"),
    (212, "jelly"),
    (240, "explosion"),
    (256, "face"),
    (273, "stars"),
    (288, "finale"),
]

# Beats on which the picture jumps and the music hits, each with what it hits in the show's schedule: an event or a
# constant, and how many beats later it is seen.
HITS = {
    8: ("phonetex_vxqlogo", 0), 11: ("startorbitscroller", 0), 32: ("phonetex_mu", 0), 48: ("phonefly5", 0),
    52: ("phonetex_orange", 0), 60: ("gonetextshow", 1), 61: ("gonetextshow", 2), 62: ("gonetextshow", 3),
    63: ("gonetextshow", 4), 80: ("startlacing", 0), 96: ("boom3", 0), 104: ("phonetex_callscreen", 0),
    114: ("phonefly9", 0), 115: ("phonefly9", 1), 129: ("phonefly10", 2), 137: ("tunnel_camdown1", 0),
    150: ("tunnel_camdown2", 0), 160: ("stoptunnel", 0), 165: ("bump1", 0), 170: ("bump2", 0), 173: ("bump3", 0),
    178: ("bump4", 0), 180: ("stopgear", 0), 192: ("tunnel_camup2", 0), 208: ("stopfly2", 0), 212: ("stopbump", 0),
    224: ("dodebum", 0), 232.5: ("dodebum2", 0), 240: ("stopdode", 0), 248: ("city_bursts", 0), 256: ("stopfly3", 0),
    273: ("stopduce", 0), 288: ("stopspacefly", 0), 300: ("textbox", 0),
}


def seconds(beat):
    """Music time of a beat, in seconds."""
    return BEAT0 + beat * BEAT


LENGTH = seconds(END) + TAIL  # seconds, the whole file
