"""credits.jpg: what is cut into the rock, 2048 x 1024; bright is umber, dark is bare stone.

What is written keeps within what layout.py says stays in sight at the four stops of the view. The second and the third
share the column in the middle; each has a side column of its own, that the other does not see.

A cut has a wall in shade above and at its left, and one below and at its right that catches the light: there the
stone is bare, while around it lies the patina. Where green and blue are cut but red is not, the rock keeps its red:
ember.
"""

import numpy
from scipy import ndimage

import art
import layout

WIDTH, HEIGHT = layout.WALL
LAMP = numpy.array((-0.6, -0.8))  # towards the upper left
PATINA = 0.50

# words, size, centre, spacing, ember
LINES = (
    ("VXQ", 238, (303, 132), 16, False),
    ("presents", 66, (303, 242), 4, True),
    ("TARVISK", 88, (303, 308), 26, False),
    ("CODE", 106, (1042, 590), 10, False),
    ("PICTURES", 106, (1042, 673), 6, False),
    ("MUSIC", 106, (1042, 756), 10, False),
    ("all by VXQ", 70, (1042, 828), 4, True),
    ("drawn with", 52, (1402, 562), 2, True),
    ("OPENGL ES", 60, (1402, 628), 1, False),
    ("SDL", 60, (1402, 690), 4, False),
    ("GLM", 60, (1402, 752), 4, False),
    ("D-BUS", 60, (1402, 814), 4, False),
    ("made with", 52, (600, 590), 2, True),
    ("BLENDER", 66, (600, 658), 2, False),
    ("PYTHON", 66, (600, 724), 2, False),
    ("CSOUND", 66, (600, 790), 2, False),
    ("VORBIS", 66, (600, 856), 2, False),
    ("THANK YOU", 152, (1660, 142), 8, False),
    ("old friends, wherever you are", 60, (1660, 240), 2, True),
    ("LEFTOVERS ARE SERVED", 72, (1660, 308), 3, False),
)


def wall(scale=1):
    x, y = numpy.meshgrid(numpy.arange(WIDTH * scale) + 0.5, numpy.arange(HEIGHT * scale) + 0.5)
    return x / scale, y / scale


def rings(x, y, centre):
    """What a drop leaves, seen aslant."""
    r = numpy.hypot((x - centre[0]) / 3.4, y - centre[1])
    return numpy.max([art.smooth(2.1, 0.9, abs(r - radius)) for radius in (2.5, 9.5, 17.0)], axis=0)


def ornaments():
    """A drop's rings below the first and the last words, and rules between the columns; at twice the size."""
    x, y = wall(2)
    ink = numpy.maximum(rings(x, y, (303, 357)), rings(x, y, (1660, 360)))
    for at in (800, 1268):
        ends = art.smooth(540, 600, y) * art.smooth(850, 790, y)
        ink = numpy.maximum(ink, art.smooth(4.2, 2.7, abs(x - at)) * ends)
    return ink


def line(words, size, centre, spacing):
    """Coverage at twice the size."""
    at = 2 * centre[0], 2 * centre[1]
    return art.text(2 * WIDTH, 2 * HEIGHT, "bold", 2 * size, words, at, 2 * spacing, 1)


def chiselled(ink, bevel):
    """A cut, from its coverage at twice the size: its share of each pixel, its umber, and the bare stone of its worn
    edge. Bevel: how wide its walls are, in pixels."""
    deep, off = (ndimage.distance_transform_edt(side) / 2 for side in (ink > 0.5, ink < 0.5))
    down, right = numpy.gradient(art.blur(ink, 2 * bevel))
    towards_lamp = (right * LAMP[0] + down * LAMP[1]) / numpy.maximum(numpy.hypot(right, down), 1e-4)
    on_wall = art.smooth(bevel + 0.8, bevel - 0.8, art.blur(deep, 1.0))
    umber = 0.97 - 0.97 * on_wall * art.smooth(0.0, 0.7, towards_lamp)
    worn = numpy.exp(-(((off - 0.6) / 1.3) ** 2)) * (1 - ink) * art.smooth(-0.1, 0.8, towards_lamp)
    halves = ink.shape[0] // 2, 2, ink.shape[1] // 2, 2
    return numpy.array([part.reshape(halves).mean((1, 3)) for part in (ink, umber * ink, worn)])


def patina():
    """What time has left on the stone; rubbed away where the words are."""
    x, y = wall()
    cloud = art.resized(art.tilenoise(512, 256, 1.7, 81, 2), WIDTH, HEIGHT)
    rubbed = numpy.zeros((HEIGHT, WIDTH))
    for left, top, right, bottom in ((30, 20, 580, 400), (470, 520, 1520, 890), (1370, 40, 1940, 410)):
        middle, half = ((left + right) / 2, (top + bottom) / 2), ((right - left) / 2, (bottom - top) / 2)
        r = (abs((x - middle[0]) / half[0]) ** 4 + abs((y - middle[1]) / half[1]) ** 4) ** 0.25
        rubbed = numpy.maximum(rubbed, art.smooth(1.35, 0.85, r + 0.06 * cloud))
    left = PATINA + 0.05 * cloud - 0.12 * rubbed
    rim = art.smooth(0, 60, numpy.minimum(numpy.minimum(x, WIDTH - x), numpy.minimum(y, HEIGHT - y)))
    return art.mix(PATINA, left, rim)


def around(ink, margin=16):
    """The part of the wall that a line of words takes."""
    rows, columns = (numpy.flatnonzero(ink.any(axis)) // 2 for axis in (1, 0))
    return tuple(slice(max(0, at[0] - margin), at[-1] + margin) for at in (rows, columns))


def cuts(inks):
    """All of them, each with the width of its walls: share of each pixel, umber, bare stone."""
    cut = numpy.zeros((3, HEIGHT, WIDTH))
    for ink, bevel in inks:
        part = around(ink)
        ink = ink[tuple(slice(2 * side.start, 2 * side.stop) for side in part)]
        cut[:, part[0], part[1]] = numpy.maximum(cut[:, part[0], part[1]], chiselled(ink, bevel))
    share, umber, worn = cut
    return share, umber / numpy.maximum(share, 0.01), worn


def make():
    lines = {
        hot: [(line(*words), max(2.0, 0.030 * words[1])) for *words, ember in LINES if ember == hot]
        for hot in (False, True)
    }
    share, umber, worn = cuts(lines[False] + [(ornaments(), 1.6)])
    hot, ember, hot_worn = cuts(lines[True])
    ground = patina() * (1 - numpy.clip(worn + hot_worn, 0, 1))
    channels = []
    for left in (0.08, 0.76, 1.0):  # of an ember cut: red, green, blue
        channel = art.mix(ground, umber, share)
        channels.append(art.mix(channel, left * (0.30 + 0.70 * ember), hot))
    art.save(numpy.dstack(channels), "credits.jpg")
