"""The beat grid of the show and its cuts: the one place where music learns about time.

Beats are quarter notes. The show's clock has beat 0 at 0.128 s and beat 8 at 5.207 s.
"""

BEAT0 = 0.128  # seconds, music time of beat 0
BEAT = (5.207 - 0.128) / 8  # seconds a beat: 0.634875, 94.507 a minute
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

# Beats on which the picture jumps and the music has to hit.
HITS = [8, 11, 32, 48, 52, 60, 61, 62, 63, 80, 96, 104, 114, 115, 129, 137, 150, 160, 165, 170, 173, 178,
        180, 192, 208, 212, 224, 232.5, 240, 248, 256, 273, 288, 300]


def seconds(beat):
    """Music time of a beat, in seconds."""
    return BEAT0 + beat * BEAT


LENGTH = seconds(END) + TAIL  # seconds, the whole file
