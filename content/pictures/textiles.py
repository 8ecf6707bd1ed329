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


def around(centre, radius, angle):
    return centre[0] + radius * numpy.cos(angle), centre[1] + radius * numpy.sin(angle)


def leaf(lace, centre, half, turn, thread):
    """A petal of cloth stitch: threads along and across, a doubled outline."""
    lace.loop(centre, half, turn, 0, fill=255)
    c, s = numpy.cos(turn), numpy.sin(turn)

    def place(x, y):
        return centre[0] + x * c - y * s, centre[1] + x * s + y * c

    pitch = 2.6 * thread
    for x in numpy.arange(-half[0] + pitch / 2, half[0], pitch):
        y = half[1] * numpy.sqrt(1 - (x / half[0]) ** 2)
        lace.line([place(x, -y), place(x, y)], thread)
    for y in numpy.arange(-half[1] + pitch / 2, half[1], pitch):
        x = half[0] * numpy.sqrt(1 - (y / half[1]) ** 2)
        lace.line([place(-x, y), place(x, y)], thread)
    lace.loop(centre, half, turn, 0.011)


def rosette(lace, centre, radius, petals, turn=0.0):
    """A flower of woven petals, each with its eye, between a wheel and a scalloped rim with picots."""
    lace.disc(centre, radius * 0.98, 255)
    step = 2 * numpy.pi / petals
    arc = numpy.linspace(-0.5, 0.5, 21)
    for number in range(petals):
        a = turn + step * number
        b = a + step / 2
        for reach, deep, width in ((0.80, 0.16, 0.011), (0.70, 0.145, 0.005)):
            lace.line(
                [around(centre, radius * (reach + deep * numpy.cos(numpy.pi * t)), b + t * step) for t in arc], width
            )
        for t in numpy.linspace(-0.42, 0.42, 7):  # bars between the two rims, a picot on each
            bow = numpy.cos(numpy.pi * t)
            foot, head = 0.70 + 0.145 * bow, 0.80 + 0.16 * bow
            lace.line([around(centre, radius * r, b + t * step) for r in (foot, head)], 0.004)
            lace.disc(around(centre, radius * (head + 0.045), b + t * step), 0.0080)
        for t in (-0.16, 0.0, 0.16):
            foot, head = around(centre, radius * 0.26, b + 0.3 * t * step), around(centre, radius * 0.83, b + t * step)
            lace.line([foot, head], 0.004)
        lace.disc(around(centre, radius * 0.60, b), 0.050 * radius)
    for number in range(petals):
        a = turn + step * number
        leaf(lace, around(centre, 0.50 * radius, a), (0.255 * radius, 0.120 * radius), a, 0.0042)
        lace.loop(around(centre, 0.56 * radius, a), (0.085 * radius, 0.036 * radius), a, 0.006, fill=255)
    lace.loop(centre, (0.25 * radius, 0.25 * radius), 0, 0.009, fill=255)
    for number in range(2 * petals):
        a = turn + step / 2 * number
        lace.line([around(centre, 0.08 * radius, a), around(centre, 0.25 * radius, a)], 0.004)
    lace.loop(centre, (0.165 * radius, 0.165 * radius), 0, 0.005)
    lace.disc(centre, 0.075 * radius)
    lace.disc(centre, 0.030 * radius, 255)


def lacetrace():
    """Dark is thread, bright is hole. Four flowers a tile on a net of hexagons; the same upside down."""
    lace = thread_c(512, 5)
    columns, rows = 18, 20
    for row in range(rows):
        for column in range(columns):
            x, y = (column + 0.5 * (row % 2)) / columns, row / rows
            up = 1 / (3 * rows)
            lace.line([(x, y - up), (x, y + up)], 0.0042)
            for side in (-1, 1):
                lace.line([(x, y + up), (x + side * 0.5 / columns, y + 2 * up)], 0.0042)
    for centre, radius, petals in (
        ((0.25, 0.25), 0.268, 8),
        ((0.75, 0.75), 0.268, 8),
        ((0.75, 0.25), 0.175, 6),
        ((0.25, 0.75), 0.175, 6),
    ):
        rosette(lace, centre, radius, petals, numpy.pi / 8 if petals == 8 else 0)
    for centre in ((0.5, 0.0), (0.0, 0.5), (0.5, 0.5), (0.0, 0.0)):
        lace.loop(centre, (0.040, 0.040), 0, 0.010, fill=255)
        for turn in (0, numpy.pi / 2):
            lace.loop(centre, (0.034, 0.012), turn, 0.007)
        lace.disc(centre, 0.008)
    value = art.blur(lace.picture(), 0.6, wrap=True)
    art.save(numpy.repeat(value[..., None], 3, 2), "lacetrace.jpg", 90)


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
