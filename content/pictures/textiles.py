"""What tiles: lace, and the two that run over each other to make the flesh of the orange."""

import numpy
from PIL import Image, ImageDraw

import art


class thread_c:
    """Threads on a tile that wraps; lengths in tiles."""

    def __init__(self, size, scale):
        self.size, self.scale = size, scale
        self.sheet = Image.new("L", (size * scale, size * scale), 255)
        self.pen = ImageDraw.Draw(self.sheet)

    def shifts(self):
        return [(i, j) for i in (-1, 0, 1) for j in (-1, 0, 1)]

    def line(self, points, width, tone=0):
        full = self.size * self.scale
        for i, j in self.shifts():
            moved = [((x + i) * full, (y + j) * full) for x, y in points]
            self.pen.line(moved, fill=tone, width=max(1, round(width * full)), joint="curve")

    def disc(self, centre, radius, tone=0):
        full = self.size * self.scale
        for i, j in self.shifts():
            x, y, r = (centre[0] + i) * full, (centre[1] + j) * full, radius * full
            self.pen.ellipse((x - r, y - r, x + r, y + r), fill=tone)

    def loop(self, centre, half, turn, width, fill=None, tone=0):
        a = numpy.linspace(0, 2 * numpy.pi, 49)
        x, y = half[0] * numpy.cos(a), half[1] * numpy.sin(a)
        c, s = numpy.cos(turn), numpy.sin(turn)
        points = numpy.c_[centre[0] + x * c - y * s, centre[1] + x * s + y * c]
        if fill is not None:
            full = self.size * self.scale
            for i, j in self.shifts():
                self.pen.polygon([((px + i) * full, (py + j) * full) for px, py in points], fill=fill)
        self.line(points.tolist(), width, tone)

    def picture(self):
        return numpy.asarray(self.sheet.resize((self.size, self.size), Image.BOX), dtype=float) / 255


def rosette(lace, centre, radius, petals, turn=0.0):
    """A flower of filled petals with a bridge to a scalloped rim and picots on it."""
    for number in range(petals):
        a = turn + 2 * numpy.pi * number / petals
        c, s = numpy.cos(a), numpy.sin(a)
        middle = centre[0] + 0.47 * radius * c, centre[1] + 0.47 * radius * s
        lace.loop(middle, (0.29 * radius, 0.150 * radius), a, 0.010, fill=0)
        lace.loop(
            (centre[0] + 0.52 * radius * c, centre[1] + 0.52 * radius * s),
            (0.15 * radius, 0.055 * radius),
            a,
            0.006,
            fill=255,
        )
        b = a + numpy.pi / petals
        rim = centre[0] + 0.86 * radius * numpy.cos(b), centre[1] + 0.86 * radius * numpy.sin(b)
        lace.line([(centre[0] + 0.30 * radius * numpy.cos(b), centre[1] + 0.30 * radius * numpy.sin(b)), rim], 0.007)
        arc = [b - numpy.pi / petals + 2 * numpy.pi / petals * t for t in numpy.linspace(0, 1, 17)]
        bow = [0.80 + 0.16 * numpy.sin(numpy.pi * t) for t in numpy.linspace(0, 1, 17)]
        lace.line(
            [
                (centre[0] + radius * r * numpy.cos(w), centre[1] + radius * r * numpy.sin(w))
                for w, r in zip(arc, bow)
            ],
            0.016,
        )
        for t in (-0.55, 0.0, 0.55):
            w = b + t * numpy.pi / petals
            r = 0.80 + 0.16 * numpy.cos(t * numpy.pi / 2) + 0.055
            lace.disc((centre[0] + radius * r * numpy.cos(w), centre[1] + radius * r * numpy.sin(w)), 0.0125)
    lace.disc(centre, 0.20 * radius)
    lace.disc(centre, 0.10 * radius, 255)
    lace.disc(centre, 0.045 * radius, 0)


def lacetrace():
    """Dark is thread, bright is hole. Two flowers a tile on a net of hexagons; the same upside down."""
    lace = thread_c(256, 8)
    cells = 10
    rows = 12
    for row in range(rows):
        for column in range(cells):
            x, y = (column + 0.5 * (row % 2)) / cells, row / rows
            up = 1 / (3 * rows)
            lace.line([(x, y - up), (x, y + up)], 0.0062)
            for side in (-1, 1):
                lace.line([(x, y + up), (x + side * 0.5 / cells, y + 2 * up)], 0.0062)
    for centre, radius, petals in (
        ((0.25, 0.25), 0.265, 8),
        ((0.75, 0.75), 0.265, 8),
        ((0.75, 0.25), 0.150, 6),
        ((0.25, 0.75), 0.150, 6),
    ):
        lace.disc(centre, radius * 0.98, 255)
        rosette(lace, centre, radius, petals, numpy.pi / 8)
    for x, y in ((0.5, 0.0), (0.0, 0.5), (0.5, 0.5), (0.0, 0.0)):
        lace.loop((x, y), (0.035, 0.035), 0, 0.014)
        lace.disc((x, y), 0.014)
    value = art.blur(lace.picture(), 0.5, wrap=True)
    art.save(numpy.repeat(value[..., None], 3, 2), "lacetrace.jpg", 95)


def cells(size, count, seed, stretch):
    """Nearest and second nearest distance to random points on the tile."""
    random = numpy.random.default_rng(seed)
    x, y = art.grid(size, size)
    away = []
    for px, py in random.random((count, 2)):
        dx, dy = (x - px + 0.5) % 1 - 0.5, (y - py + 0.5) % 1 - 0.5
        away.append(numpy.hypot(dx * stretch, dy))
    away = numpy.sort(numpy.array(away), 0)
    return away[0], away[1]


def bubbles():
    """Juice bags: long from the middle to the rind, a glint on each. The slice shows them up to three times as
    bright: far more red than green keeps it orange, dark walls keep the bags apart."""
    size = 128
    first, second = cells(size, 34, 23, 0.42)
    wall = art.smooth(0.0, 0.055, second - first)
    plump = numpy.clip(1 - first / 0.13, 0, 1)
    body = art.mix((0.34, 0.045, 0.0), (0.94, 0.33, 0.03), plump**0.7)
    glint = numpy.exp(-(((numpy.roll(numpy.roll(first, 3, 0), 4, 1)) / 0.022) ** 2))
    picture = art.mix((0.10, 0.012, 0.0), body, wall) + 0.55 * glint[..., None] * numpy.array((0.9, 0.55, 0.25))
    picture = picture * (1 + 0.06 * art.tilenoise(size, size, 1.0, 24, 3)[..., None])
    art.save(picture, "bubbles.jpg", 95)


def jeans():
    """Fibre: strands that run with the juice bags, woven with a few across; darker between."""
    size = 128
    x, y = art.grid(size, size)
    bend = 0.05 * art.tilenoise(size, size, 2.2, 33)
    strands = sum(
        numpy.sin(2 * numpy.pi * (k * (y + bend * s) + p)) / n
        for n, (k, s, p) in enumerate(((9, 1.0, 0.1), (17, 0.8, 0.4), (31, 1.2, 0.7)), 1)
    )
    across = numpy.sin(2 * numpy.pi * (6 * x + 2 * y + 1.5 * bend)) * 0.5
    fuzz = art.tilenoise(size, size, 0.7, 34, 8)
    value = numpy.clip(0.42 + 0.22 * strands + 0.10 * across + 0.08 * fuzz, 0, 1)
    art.save(art.mix((0.03, 0.003, 0.0), (0.62, 0.20, 0.03), value), "jeans.jpg", 95)


def make():
    lacetrace()
    bubbles()
    jeans()
