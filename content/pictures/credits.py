"""credits.jpg: what is cut into the rock, 2048 x 1024; bright is cut deep.

The view stops at four windows of 854 x 480, that layout.py names. The second and the
third overlap by 604 pixels: the middle column stands in both, and each has a side column of its
own. Where green and blue are cut but red is not, the rock keeps its red and looks like ember.
"""

import numpy

import art
import layout

WIDTH, HEIGHT = layout.WALL

# words, weight, size, centre, spacing, ember
LINES = (
    ("VXQ", "bold", 270, (330, 150), 14, False),
    ("presents", "bold", 74, (330, 284), 4, True),
    ("TARVISK", "bold", 100, (330, 374), 30, False),
    ("CODE", "bold", 128, (1005, 532), 12, False),
    ("PICTURES", "bold", 128, (1005, 646), 12, False),
    ("MUSIC", "bold", 128, (1005, 760), 12, False),
    ("all by VXQ", "bold", 80, (1005, 856), 4, True),
    ("drawn with", "bold", 54, (1420, 512), 2, True),
    ("OPENGL ES", "bold", 72, (1420, 582), 2, False),
    ("SDL", "bold", 72, (1420, 660), 4, False),
    ("GLM", "bold", 72, (1420, 738), 4, False),
    ("D-BUS", "bold", 72, (1420, 816), 4, False),
    ("made with", "bold", 54, (588, 560), 2, True),
    ("BLENDER", "bold", 72, (588, 630), 2, False),
    ("PYTHON", "bold", 72, (588, 708), 2, False),
    ("CSOUND", "bold", 72, (588, 786), 2, False),
    ("VORBIS", "bold", 72, (588, 864), 2, False),
    ("THANK YOU", "bold", 190, (1630, 146), 10, False),
    ("old friends, wherever you are", "bold", 74, (1630, 268), 2, True),
    ("LEFTOVERS ARE SERVED", "bold", 84, (1630, 344), 4, False),
)


def rules():
    """Ornament: double rules with a notch, round the panels."""
    x, y = numpy.meshgrid(numpy.arange(WIDTH) + 0.5, numpy.arange(HEIGHT) + 0.5)
    cut = numpy.zeros((HEIGHT, WIDTH))

    def rule(x0, x1, at, thick):
        inside = art.smooth(0, 24, x - x0) * art.smooth(0, 24, x1 - x)
        middle = (x0 + x1) / 2
        notch = 14 * numpy.clip(1 - abs(x - middle) / 20, 0, 1)
        return inside * art.smooth(thick, thick - 1.5, abs(y - at - notch))

    for x0, x1, at in ((90, 570, 424), (1330, 1930, 402)):
        cut = numpy.maximum(cut, rule(x0, x1, at, 3.0))
        cut = numpy.maximum(cut, 0.7 * rule(x0 + 30, x1 - 30, at + 10, 2.0))
    for x0, y0, y1 in ((724, 480, 880), (1286, 480, 880)):
        cut = numpy.maximum(
            cut, art.smooth(4, 2.5, abs(x - x0)) * art.smooth(y0, y0 + 60, y) * art.smooth(y1, y1 - 60, y)
        )
    return cut


def chiselled(ink, seed):
    """A letter as a chisel leaves it: a ragged rim, the upper wall in shade, the lower in light."""
    nicks = art.blur(numpy.random.default_rng(seed).standard_normal((HEIGHT, WIDTH)), 1.6) * 2.2
    ink = art.smooth(0.30, 0.62, art.blur(ink, 1.0) + 0.16 * nicks * (4 * art.blur(ink, 2) * (1 - art.blur(ink, 2))))
    below = numpy.roll(art.blur(ink, 1.5), 4, (0))
    lit = numpy.clip(ink * (1 - below), 0, 1)
    shade = numpy.clip(ink * (1 - numpy.roll(art.blur(ink, 1.5), -4, 0)), 0, 1)
    return numpy.clip(ink * (0.90 + 0.10 * lit) - 0.22 * shade, 0, 1)


def make():
    dark, ember = rules(), numpy.zeros((HEIGHT, WIDTH))
    for words, weight, size, centre, spacing, hot in LINES:
        ink = art.text(WIDTH, HEIGHT, weight, size, words, centre, spacing, 2)
        if hot:
            ember = numpy.maximum(ember, ink)
        else:
            dark = numpy.maximum(dark, ink)
    dark, ember = chiselled(dark, 71), chiselled(ember, 72)
    picture = numpy.dstack(
        [numpy.maximum(dark, 0.15 * ember), numpy.maximum(dark, 0.76 * ember), numpy.maximum(dark, ember)]
    )
    edge = numpy.zeros((HEIGHT, WIDTH, 1))
    edge[8:-8, 8:-8] = 1
    art.save(picture * edge, "credits.jpg")
