"""What the city wears: facades, roofs, streets. Alpha is light of its own, which no darkness and no fog takes away.

Facades are painted upright as arrays [up, across] and laid on their side at the end. Everything is painted at twice
the size and averaged.
"""
import numpy as np
from PIL import Image

import cityatlas as atlas
from shapes import circle, letters, pill

OVER = 2
WARM = np.array([(1.0, 0.76, 0.40), (1.0, 0.84, 0.52), (1.0, 0.66, 0.28), (1.0, 0.92, 0.72), (0.78, 0.92, 1.0)])
WARM_SHARES = (0.34, 0.28, 0.16, 0.14, 0.08)


def noise(random, shape, cells, octaves=3):
    """Smooth noise about 0, repeating in both directions."""
    total, weight = np.zeros(shape), 1.0
    for octave in range(octaves):
        n = [max(1, c * 2 ** octave) for c in cells]
        grid = random.uniform(-1, 1, n)
        y, x = (np.arange(s) * k / s for s, k in zip(shape, n))
        y0, x0 = y.astype(int), x.astype(int)
        ease = lambda t: t * t * (3 - 2 * t)
        fy, fx = ease(y - y0)[:, None], ease(x - x0)[None, :]
        at = lambda j, i: grid[np.ix_(j % n[0], i % n[1])]
        total += weight * ((at(y0, x0) * (1 - fx) + at(y0, x0 + 1) * fx) * (1 - fy)
                           + (at(y0 + 1, x0) * (1 - fx) + at(y0 + 1, x0 + 1) * fx) * fy)
        weight *= 0.5
    return total / 1.75


def blur(picture, radius):
    """Box blur, twice, wrapping."""
    for _ in range(2):
        for axis in (0, 1):
            picture = sum(np.roll(picture, k, axis) for k in range(-radius, radius + 1)) / (2 * radius + 1)
    return picture


def shrink(picture):
    h, w, c = picture.shape
    return picture.reshape(h // OVER, OVER, w // OVER, OVER, c).mean((1, 3))


def mix(a, b, t):
    t = np.asarray(t)[..., None]
    return a * (1 - t) + b * t


class Wall:
    """A facade in the making. Coordinates in texels: up from the ground, across from the left."""

    def __init__(self, seed, colour, roughness=0.05):
        self.random = np.random.RandomState(seed)
        shape = (atlas.WIDTH * OVER, atlas.FACADE_ROWS * OVER)
        self.up, self.across = np.meshgrid((np.arange(shape[0]) + 0.5) / OVER, (np.arange(shape[1]) + 0.5) / OVER,
                                           indexing="ij")
        grain = noise(self.random, shape, (32, 4), 4) * roughness
        self.colour = np.array(colour) * (1 + grain[..., None])
        self.glow = np.zeros(shape)
        self.floors, self.columns = atlas.WIDTH // atlas.CELL, atlas.FACADE_COLUMNS

    def shade(self, mask, factor):
        self.colour *= np.where(mask, factor, 1.0)[..., None]

    def tint(self, mask, colour, amount=1.0):
        self.colour = mix(self.colour, np.array(colour), mask * amount)

    def stripes_up(self, period, first, last):
        """Mask of vertical stripes: across positions [first, last) of each period."""
        a = self.across % period
        return (a >= first) & (a < last)

    def bands(self, period, first, last):
        u = self.up % period
        return (u >= first) & (u < last)

    def occupancy(self, kind, panes, rows):
        """Which panes are lit, 0..1: offices by floor and run, homes by chance."""
        random = self.random
        lit = np.zeros((rows, panes))
        for floor in range(rows):
            mood = random.rand()
            if kind == "office":
                share = 0.95 if mood < 0.12 else 0.5 if mood < 0.38 else 0.2 if mood < 0.78 else 0.03
            else:
                share = 0.40 if mood < 0.7 else 0.22
            run, on = 0, False
            for pane in range(panes):
                if run <= 0:
                    on, run = random.rand() < share, random.randint(1, 6 if kind == "office" else 3)
                lit[floor, pane] = random.uniform(0.7, 1.0) if on else 0
                run -= 1
        return lit

    def windows(self, width, height, a0, a1, u0, u1, kind, glass, recess=0.5, sparse=1.0):
        """A pane a0..a1, u0..u1 in each width x height module."""
        random = self.random
        rows, panes = atlas.WIDTH // height, atlas.FACADE_ROWS // width
        lit = self.occupancy(kind, panes, rows) * (random.rand(rows, panes) < sparse)
        row, pane = (self.up // height).astype(int), (self.across // width).astype(int)
        a, u = self.across % width, self.up % height
        mask = (a >= a0) & (a < a1) & (u >= u0) & (u < u1)
        rise, run = np.clip((u - u0) / (u1 - u0), 0, 1), np.clip((a - a0) / (a1 - a0), 0, 1)

        clouds = noise(random, mask.shape, (6, 2), 4)
        pane_tone = random.uniform(0.7, 1.25, lit.shape)[row, pane]
        reflection = (0.75 + 0.55 * rise + 0.5 * clouds) * pane_tone
        dark = np.array(glass) * reflection[..., None]
        dark = mix(dark, np.array((0.55, 0.62, 0.68)), 0.25 * (np.abs(rise - run * 0.5 - 0.35) < 0.06))

        palette = WARM[random.choice(len(WARM), lit.shape, p=WARM_SHARES)][row, pane]
        power = lit[row, pane]
        blind = random.choice((0, 0, 0.3, 0.5, 0.75), lit.shape)[row, pane]
        covered = rise > 1 - blind
        clutter = (rise < random.uniform(0.1, 0.42, lit.shape)[row, pane]) & \
                  (np.abs(run - random.rand(*lit.shape)[row, pane]) < 0.22)
        inside = (0.62 + 0.38 * rise) * np.where(covered, 0.78, 1.0) * np.where(clutter & ~covered, 0.45, 1.0)
        bright = palette * (inside * (0.75 + 0.3 * power))[..., None]
        self.colour = np.where(mask[..., None], np.where(power[..., None] > 0, bright, dark), self.colour)
        self.glow = np.where(mask, power * np.minimum(1, 0.25 + inside), self.glow)
        top_shadow = mask & (u > u1 - 1.2) & (power == 0)
        self.shade(top_shadow, 1 - recess)
        sill = (a >= a0 - 0.7) & (a < a1 + 0.7) & (u >= u0 - 1.2) & (u < u0)
        self.shade(sill, 1.18)
        lintel = (a >= a0 - 0.7) & (a < a1 + 0.7) & (u >= u1) & (u < u1 + 1.0)
        self.shade(lintel, 0.8)

    def weather(self, amount=0.14):
        """Streaks that run down, and soot in patches."""
        streaks = noise(self.random, self.up.shape, (10, 48), 2)
        patches = noise(self.random, self.up.shape, (10, 2), 3)
        self.colour *= (1 + amount * (0.6 * streaks + 0.8 * patches))[..., None]

    def machine_floor(self, floor):
        """A belt of louvres every so often up the tower."""
        here = (self.up >= floor * 16) & (self.up < floor * 16 + 16)
        louvre = 0.55 + 0.3 * ((self.up % 2.667) < 1.4)
        self.colour = np.where(here[..., None], np.array((0.36, 0.39, 0.42)) * louvre[..., None], self.colour)
        self.glow = np.where(here, 0, self.glow)

    def shops(self, colour):
        """The two lowest floors: lit glass under an awning."""
        random, low = self.random, self.up < 26
        shop = (self.across // 32).astype(int)
        tone = WARM[random.choice(len(WARM), 4, p=WARM_SHARES)][shop]
        a = self.across % 32
        pane = low & (a > 2) & (a < 30) & (self.up > 3) & (self.up < 20) & (np.abs(a % 9.33 - 9) > 0.6)
        power = random.uniform(0.7, 1.0, 4)[shop] * (0.65 + 0.35 * np.clip(self.up / 20, 0, 1))
        sign = low & (self.up >= 20) & (a > 3) & (a < 29)
        self.colour = np.where(low[..., None], np.array(colour), self.colour)
        self.glow = np.where(low, 0, self.glow)
        self.colour = np.where(pane[..., None], tone * power[..., None], self.colour)
        self.colour = np.where(sign[..., None], np.array([(0.9, 0.25, 0.2), (0.15, 0.7, 0.8), (0.95, 0.7, 0.2),
                                                          (0.3, 0.8, 0.45)])[shop], self.colour)
        self.glow = np.where(pane, power, np.where(sign, 0.5, self.glow))

    def finish(self):
        halo = blur(self.glow, 2 * OVER)
        street = 0.5 * np.exp(-self.up / 30)
        alpha = np.maximum(np.maximum(self.glow, 0.45 * halo), street)
        colour = self.colour * (1 + 0.8 * street[..., None] * np.array((1.0, 0.8, 0.5))) + (0.22 * np.maximum(halo - self.glow, 0))[..., None] * np.array((1.0, 0.85, 0.6))
        picture = shrink(np.dstack([colour, alpha]))
        return picture.transpose(1, 0, 2)


def facade_glass():
    wall = Wall(11, (0.30, 0.36, 0.40), 0.03)
    wall.windows(8, 16, 0.6, 7.6, 0.8, 15.4, "office", (0.19, 0.29, 0.36), 0.2)
    wall.tint(wall.bands(16, 12.2, 15.4) & (wall.glow == 0), (0.16, 0.24, 0.30), 0.6)
    wall.shade(wall.stripes_up(32, 0, 1.0), 1.5)
    for floor in (20, 42, 63):
        wall.machine_floor(floor)
    wall.shops((0.22, 0.25, 0.28))
    return wall.finish()


def facade_azure():
    wall = Wall(12, (0.62, 0.70, 0.74), 0.03)
    wall.windows(16, 16, 0.8, 15.2, 3.6, 15.0, "office", (0.15, 0.31, 0.40), 0.25)
    wall.shade(wall.stripes_up(16, 7.6, 8.4) & wall.bands(16, 3.6, 15.0), 0.7)
    line = wall.bands(128, 0, 2)
    wall.tint(line, (0.80, 0.95, 1.0))
    wall.glow = np.where(line, 0.85, wall.glow)
    wall.weather(0.06)
    wall.shops((0.3, 0.34, 0.36))
    return wall.finish()


def facade_stone():
    wall = Wall(13, (0.68, 0.62, 0.52), 0.08)
    course = wall.bands(4, 0, 0.5)
    wall.shade(course, 0.9)
    wall.windows(8, 16, 1.8, 6.4, 3.2, 12.4, "home", (0.10, 0.13, 0.17), 0.6)
    wall.shade(wall.bands(16, 8.2, 8.9) & (wall.glow > 0), 0.6)
    for belt in (0, 96):
        wall.shade(wall.bands(192, belt, belt + 2.5), 1.3)
        wall.shade(wall.bands(192, belt - 1.5 if belt else 190.5, belt if belt else 192), 0.65)
    wall.weather(0.2)
    wall.shops((0.42, 0.37, 0.3))
    return wall.finish()


def facade_brick():
    wall = Wall(14, (0.45, 0.27, 0.20), 0.16)
    wall.shade(wall.bands(2, 0, 0.5), 0.88)
    wall.windows(16, 16, 2.2, 6.8, 3.2, 12.0, "home", (0.10, 0.12, 0.15), 0.6)
    left = wall.colour, wall.glow
    wall.windows(16, 16, 9.2, 13.8, 3.2, 12.0, "home", (0.10, 0.12, 0.15), 0.6)
    trim = (wall.bands(16, 2.0, 3.2)) & (wall.stripes_up(16, 1.6, 7.4) | wall.stripes_up(16, 8.6, 14.4))
    wall.tint(trim, (0.62, 0.55, 0.45))
    wall.shade(wall.bands(16, 7.4, 8.0) & (wall.glow > 0), 0.55)
    wall.tint(wall.bands(128, 0, 2.5), (0.58, 0.48, 0.38), 0.8)
    wall.weather(0.24)
    wall.shops((0.28, 0.2, 0.16))
    return wall.finish()


def facade_ribbon():
    wall = Wall(15, (0.74, 0.75, 0.74), 0.05)
    wall.windows(8, 16, 0.25, 7.75, 5.2, 13.2, "office", (0.12, 0.18, 0.23), 0.5)
    wall.shade(wall.bands(16, 0, 0.6), 0.6)
    wall.shade(wall.bands(16, 4.2, 5.2), 1.15)
    for floor in (31, 62):
        wall.machine_floor(floor)
    wall.weather(0.16)
    wall.shops((0.35, 0.36, 0.37))
    return wall.finish()


def facade_balcony():
    wall = Wall(16, (0.62, 0.56, 0.50), 0.06)
    wall.windows(16, 16, 1.5, 9.5, 2.0, 13.4, "home", (0.11, 0.14, 0.17), 0.6)
    wall.windows(32, 16, 11.6, 14.6, 5.0, 12.0, "home", (0.10, 0.12, 0.15), 0.5)
    slab = wall.stripes_up(16, 0.4, 10.4) & wall.bands(16, 0.4, 1.8)
    rail = wall.stripes_up(16, 0.4, 10.4) & wall.bands(16, 1.8, 5.6)
    wall.tint(slab, (0.78, 0.74, 0.68))
    wall.tint(rail & (wall.across % 1.3 < 0.55), (0.25, 0.27, 0.28), 0.85)
    wall.glow = np.where(slab, 0, np.where(rail, wall.glow * 0.7, wall.glow))
    wall.shade(wall.stripes_up(16, 0.4, 10.4) & wall.bands(16, 14.6, 16), 0.55)
    accent = wall.stripes_up(64, 26.5, 31.5)
    wall.tint(accent & (wall.glow == 0), (0.10, 0.36, 0.46), 0.55)
    wall.weather(0.18)
    wall.shops((0.34, 0.3, 0.27))
    return wall.finish()


def facade_dark():
    wall = Wall(17, (0.14, 0.15, 0.17), 0.04)
    wall.windows(8, 16, 1.2, 6.8, 1.0, 15.0, "office", (0.10, 0.13, 0.17), 0.3, sparse=0.8)
    fin = wall.stripes_up(16, 0, 1.1)
    wall.tint(fin, (0.50, 0.44, 0.34))
    wall.glow = np.where(fin, 0, wall.glow)
    line = wall.bands(256, 0, 2.2)
    wall.tint(line, (1.0, 0.85, 0.6))
    wall.glow = np.where(line, 0.9, wall.glow)
    wall.shops((0.12, 0.12, 0.13))
    return wall.finish()


def facade_deco():
    wall = Wall(18, (0.74, 0.66, 0.52), 0.06)
    wall.windows(16, 16, 4.2, 7.6, 4.4, 14.2, "home", (0.09, 0.13, 0.16), 0.5)
    wall.windows(16, 16, 8.4, 11.8, 4.4, 14.2, "home", (0.09, 0.13, 0.16), 0.5)
    bay = wall.stripes_up(16, 3.6, 12.4)
    spandrel = bay & wall.bands(16, 0, 3.8)
    wall.tint(spandrel, (0.16, 0.40, 0.40), 0.85)
    zigzag = np.abs((wall.across % 8) - 4) + 0.2 > (wall.up % 16)
    wall.tint(spandrel & zigzag, (0.80, 0.62, 0.28), 0.85)
    wall.shade(wall.stripes_up(16, 12.4, 13.4), 0.72)
    wall.shade(wall.stripes_up(16, 0.4, 1.2) | wall.stripes_up(16, 2.4, 3.2), 1.15)
    wall.weather(0.16)
    wall.shops((0.5, 0.43, 0.32))
    return wall.finish()


def facade_grid():
    wall = Wall(19, (0.60, 0.58, 0.55), 0.08)
    wall.windows(16, 16, 2.6, 13.4, 3.0, 13.4, "office", (0.12, 0.15, 0.19), 0.7)
    inside = wall.stripes_up(16, 1.6, 14.4) & wall.bands(16, 2.0, 14.4) & \
        ~(wall.stripes_up(16, 2.6, 13.4) & wall.bands(16, 3.0, 13.4))
    wall.shade(inside, 0.5)
    wall.shade(wall.stripes_up(16, 0, 0.5) | wall.bands(16, 0, 0.5), 0.75)
    wall.shade(wall.stripes_up(16, 7.6, 8.4) & wall.bands(16, 3.0, 13.4), 0.5)
    wall.weather(0.2)
    wall.shops((0.33, 0.32, 0.31))
    return wall.finish()


def facade_slate():
    wall = Wall(20, (0.34, 0.38, 0.42), 0.06)
    wall.windows(32, 16, 2.0, 30.0, 4.0, 11.0, "office", (0.10, 0.15, 0.19), 0.5)
    wall.shade(wall.stripes_up(4, 0, 0.6) & wall.bands(16, 4.0, 11.0), 0.72)
    panel = wall.bands(16, 12, 16) | wall.bands(16, 0, 4)
    wall.shade(panel & wall.stripes_up(2, 0, 0.8), 0.84)
    wall.tint(wall.stripes_up(32, 0, 1.6), (0.62, 0.34, 0.16), 0.8)
    wall.glow = np.where(wall.stripes_up(32, 0, 1.6), 0, wall.glow)
    wall.weather(0.2)
    wall.shops((0.2, 0.22, 0.24))
    return wall.finish()


# --- roofs and ground: arrays [row, column], colours and glow painted straight -----------------------------

class Ground:
    def __init__(self, seed, rows, columns, colour, roughness=0.12):
        self.random = np.random.RandomState(seed)
        shape = (rows * OVER, columns * OVER)
        self.y, self.x = np.meshgrid((np.arange(shape[0]) + 0.5) / OVER, (np.arange(shape[1]) + 0.5) / OVER,
                                     indexing="ij")
        grain = noise(self.random, shape, (max(2, rows // 8), max(2, columns // 8)), 4) * roughness
        self.colour, self.glow = np.array(colour) * (1 + grain[..., None]), np.zeros(shape)

    def box(self, x0, y0, x1, y1):
        return (self.x >= x0) & (self.x < x1) & (self.y >= y0) & (self.y < y1)

    def disc(self, x, y, radius):
        return np.hypot(self.x - x, self.y - y) < radius

    def fill(self, mask, colour, glow=None, amount=1.0):
        self.colour = mix(self.colour, np.array(colour), mask * amount)
        if glow is not None:
            self.glow = np.where(mask, glow, self.glow)

    def shade(self, mask, factor):
        self.colour *= np.where(mask, factor, 1.0)[..., None]

    def pool(self, x, y, radius, power, colour=(1.0, 0.75, 0.42)):
        """A pool of lamp light."""
        near = power * np.exp(-((self.x - x) ** 2 + (self.y - y) ** 2) / (2 * radius ** 2))
        self.glow = np.maximum(self.glow, near)
        self.colour += near[..., None] * 0.55 * np.array(colour)

    def thing(self, x0, y0, x1, y1, colour):
        """A box on the roof: lit top, shadow beside it."""
        self.shade(self.box(x0 + 2, y0 + 2, x1 + 3, y1 + 3), 0.5)
        self.fill(self.box(x0, y0, x1, y1), colour)
        self.shade(self.box(x0, y0, x1, y0 + 1), 1.35)
        self.shade(self.box(x0, y0, x0 + 1, y1), 1.2)

    def finish(self):
        return shrink(np.dstack([self.colour, np.maximum(self.glow, 0.4 * blur(self.glow, 2 * OVER))]))


def roof_base(seed, colour, parapet=(0.5, 0.5, 0.5)):
    """A roof with a parapet round it and the parapet's shadow inside."""
    size = atlas.ROOF_SIZE
    roof = Ground(seed, size, size, colour)
    edge = np.minimum(np.minimum(roof.x, size - roof.x), np.minimum(roof.y, size - roof.y))
    roof.shade((roof.x < 10) | (roof.y < 10), 0.62)
    roof.shade(edge < 16, 0.9)
    roof.fill(edge < 6, parapet)
    roof.shade((edge < 6) & (edge > 5), 0.7)
    roof.shade(edge < 1.2, 1.3)
    return roof


def roof_gravel():
    roof = roof_base(31, (0.40, 0.38, 0.35), (0.52, 0.47, 0.42))
    for x, y, w, h in ((20, 26, 14, 10), (92, 18, 16, 16), (80, 92, 26, 12), (24, 88, 10, 18)):
        roof.thing(x, y, x + w, y + h, (0.55, 0.56, 0.56))
    roof.thing(44, 30, 48, 100, (0.6, 0.6, 0.58))
    roof.thing(48, 60, 90, 64, (0.6, 0.6, 0.58))
    roof.pool(100, 34, 7, 0.5)
    return roof


def roof_plant():
    roof = roof_base(32, (0.33, 0.34, 0.35))
    for i in range(4):
        for j in range(3):
            x, y = 20 + i * 24, 24 + j * 32
            roof.thing(x, y, x + 18, y + 20, (0.58, 0.6, 0.6))
            roof.fill(roof.disc(x + 9, y + 10, 7), (0.16, 0.17, 0.18))
            roof.fill(roof.disc(x + 9, y + 10, 2), (0.5, 0.5, 0.5))
    return roof


def roof_helipad():
    roof = roof_base(33, (0.30, 0.33, 0.34))
    d = np.hypot(roof.x - 64, roof.y - 64)
    roof.fill(d < 46, (0.22, 0.30, 0.32))
    roof.fill((d < 46) & (d > 42), (0.85, 0.84, 0.75), 0.25)
    letter = roof.box(46, 40, 54, 88) | roof.box(74, 40, 82, 88) | roof.box(46, 60, 82, 68)
    roof.fill(letter, (0.9, 0.88, 0.78), 0.3)
    for a in np.arange(12) * np.pi / 6:
        roof.pool(64 + 50 * np.cos(a), 64 + 50 * np.sin(a), 2.4, 1.0)
    return roof


def roof_garden():
    roof = roof_base(34, (0.46, 0.42, 0.36))
    roof.fill(roof.box(14, 14, 114, 114) & ~roof.box(56, 0, 70, 128) & ~roof.box(0, 58, 128, 70), (0.13, 0.27, 0.13))
    for _ in range(46):
        x, y = roof.random.uniform(16, 112, 2)
        if abs(x - 63) > 11 and abs(y - 64) > 10:
            r = roof.random.uniform(3, 7)
            roof.shade(roof.disc(x + 2, y + 2, r), 0.5)
            roof.fill(roof.disc(x, y, r), np.array((0.16, 0.36, 0.16)) * roof.random.uniform(0.7, 1.3))
    for x, y in ((63, 20), (63, 64), (63, 108), (20, 64), (108, 64)):
        roof.pool(x, y, 6, 0.7)
    return roof


def roof_skylight():
    roof = roof_base(35, (0.37, 0.37, 0.38))
    for i in range(3):
        x = 22 + i * 30
        roof.thing(x, 22, x + 22, 106, (0.5, 0.52, 0.54))
        pane = roof.box(x + 2, 24, x + 20, 104) & (roof.y % 10 > 1.5) & (np.abs(roof.x - x - 11) > 0.8)
        power = np.array((0.75, 0.9, 0.6))[i] * (0.7 + 0.3 * noise(roof.random, roof.x.shape, (8, 8), 2))
        roof.fill(pane, (1.0, 0.86, 0.6), power)
    return roof


def roof_membrane():
    roof = roof_base(36, (0.27, 0.27, 0.29), (0.4, 0.42, 0.44))
    roof.shade((roof.x % 16) < 0.8, 1.25)
    roof.thing(76, 70, 104, 104, (0.45, 0.46, 0.48))
    roof.thing(24, 30, 34, 40, (0.5, 0.5, 0.5))
    roof.thing(44, 30, 54, 40, (0.5, 0.5, 0.5))
    roof.pool(90, 110, 6, 0.6)
    return roof


def roof_terrace():
    roof = roof_base(37, (0.52, 0.44, 0.34))
    roof.shade(roof.y % 4 < 0.7, 0.8)
    roof.fill(roof.box(30, 34, 78, 66), (0.75, 0.75, 0.7))
    roof.fill(roof.box(33, 37, 75, 63), (0.16, 0.62, 0.70), 0.75)
    for i in range(5):
        roof.thing(24 + i * 17, 84, 32 + i * 17, 98, (0.75, 0.7, 0.6))
    for x, y in ((20, 20), (108, 20), (20, 108), (108, 108), (64, 76)):
        roof.pool(x, y, 5, 0.8)
    return roof


def roof_solar():
    roof = roof_base(38, (0.38, 0.38, 0.38))
    for j in range(6):
        y = 18 + j * 16
        roof.thing(18, y, 110, y + 9, (0.07, 0.12, 0.22))
        roof.shade(roof.box(18, y, 110, y + 9) & (roof.x % 6 < 0.7), 2.0)
    return roof


def paint_roofs():
    size = atlas.ROOF_SIZE
    strip = np.zeros((size, atlas.WIDTH, 4))
    for i, name in enumerate(atlas.ROOFS):
        strip[:, i * size:(i + 1) * size] = globals()[f"roof_{name}"]().finish()
    return strip


def car(road, x, y, heading, colour):
    """A car of 8 x 4 texels; heading +1 drives towards +x."""
    road.fill(road.box(x - 4, y - 1.8, x + 4, y + 1.8), colour)
    road.fill(road.box(x - 2.2, y - 1.5, x + 1.8, y + 1.5), (0.05, 0.06, 0.07))
    if heading:
        nose, tail = x + 4 * heading, x - 4 * heading
        beam = np.clip(1 - np.abs(road.x - nose - 8 * heading) / 9, 0, 1) * (np.abs(road.y - y) < 2.6)
        road.glow = np.maximum(road.glow, 0.8 * beam)
        road.colour += 0.3 * beam[..., None] * np.array((1, 0.95, 0.8))
        for side in (-1.2, 1.2):
            road.fill(road.disc(nose, y + side, 1.2), (1, 1, 0.9), 1.0)
            road.fill(road.disc(tail, y + side, 1.1), (1, 0.12, 0.05), 0.35)


def paint_road():
    length = int(atlas.STREET_RUN * atlas.TEXELS_PER_UNIT)
    strip = np.zeros((60, atlas.WIDTH, 4))
    for piece in range(atlas.ROAD_LENGTHS):
        road = Ground(50 + piece, 60, length, (0.13, 0.135, 0.145), 0.15)
        random = road.random
        for y0, y1 in ((0, 9), (51, 60)):
            road.fill(road.box(0, y0, length, y1), (0.36, 0.34, 0.32))
            road.shade(road.box(0, y0, length, y1) & (road.x % 6 < 0.6), 0.75)
        road.shade((np.abs(road.y - 9) < 0.7) | (np.abs(road.y - 51) < 0.7), 1.5)
        road.fill((np.abs(road.y - 30) < 1.1) & (np.abs(road.y - 30) > 0.4), (0.85, 0.6, 0.15))
        dash = (road.x % 14 < 7) & ((np.abs(road.y - 20) < 0.5) | (np.abs(road.y - 40) < 0.5))
        road.fill(dash, (0.7, 0.7, 0.68))
        for x0 in (3, length - 13):
            road.fill(road.box(x0, 10, x0 + 10, 50) & (road.y % 4 < 2), (0.75, 0.75, 0.72))
        for y, heading in ((15, -1), (25, -1), (35, 1), (45, 1)):
            x = random.uniform(20, 50)
            while x < length - 26:
                paint = random.choice(3)
                colour = ((0.75, 0.6, 0.12), (0.5, 0.52, 0.55), (0.35, 0.1, 0.08))[paint]
                car(road, x, y, heading, colour)
                x += random.exponential(26) + 15
        for x in range(22, length, 44):
            for y in (8, 52):
                road.pool(x, y, 11, 0.95, (1.0, 0.68, 0.32))
                road.pool(x, y, 1.6, 1.0, (1.0, 0.9, 0.7))
        strip[:, piece * length:(piece + 1) * length] = road.finish()
    return strip


def paint_crossing():
    ground = Ground(60, 60, 60, (0.14, 0.145, 0.155))
    corner = (np.abs(ground.x - 30) > 21) & (np.abs(ground.y - 30) > 21)
    ground.fill(corner, (0.36, 0.34, 0.32))
    for x in (9.5, 50.5):
        for y in (9.5, 50.5):
            ground.pool(x, y, 10, 0.95, (1.0, 0.68, 0.32))
            ground.pool(x, y, 1.6, 1.0, (1.0, 0.9, 0.7))
    strip = np.zeros((60, atlas.WIDTH, 4))
    strip[:, :60] = ground.finish()
    strip[:, 60:64] = strip[:, 59:60]
    strip[:, -4:] = strip[:, :1]
    return strip


def paint_pavement():
    ground = Ground(61, 64, atlas.WIDTH, (0.27, 0.26, 0.25), 0.2)
    ground.shade((ground.x % 8 < 0.6) | (ground.y % 8 < 0.6), 0.78)
    random = ground.random
    for _ in range(26):
        ground.pool(random.uniform(0, atlas.WIDTH), random.uniform(6, 58), random.uniform(5, 10), random.uniform(0.3, 0.9))
    return ground.finish()


def paint_park():
    ground = Ground(62, 128, atlas.WIDTH, (0.10, 0.20, 0.10), 0.4)
    random = ground.random
    path = np.abs(ground.y - 64 - 26 * np.sin(ground.x * 2 * np.pi / 256)) < 4
    ground.fill(path | (ground.y < 5) | (ground.y > 123), (0.45, 0.40, 0.32))
    for x in range(16, atlas.WIDTH, 32):
        ground.pool(x, 64 + 26 * np.sin(x * 2 * np.pi / 256) + 5, 6, 0.75)
    for _ in range(90):
        x, y, r = random.uniform(0, atlas.WIDTH), random.uniform(8, 120), random.uniform(3, 7)
        ground.shade(ground.disc(x + 2, y + 2, r), 0.55)
        ground.fill(ground.disc(x, y, r), np.array((0.13, 0.30, 0.13)) * random.uniform(0.7, 1.3))
    return ground.finish()


def paint_metal():
    """Swatches of 32 texels: louvres, panels, timber, mast, copper, leaves, chimney."""
    ground = Ground(63, 32, atlas.WIDTH, (0.5, 0.5, 0.5), 0.12)
    swatch = lambda i: (ground.x >= 32 * i) & (ground.x < 32 * i + 32)
    ground.fill(swatch(0), (0.42, 0.44, 0.46))
    ground.shade(swatch(0) & (ground.x % 4 < 2), 0.6)
    ground.fill(swatch(1), (0.55, 0.58, 0.6))
    ground.shade(swatch(1) & ((ground.x % 8 < 0.8) | (ground.y % 8 < 0.8)), 0.65)
    ground.fill(swatch(2), (0.33, 0.22, 0.14))
    ground.shade(swatch(2) & (ground.y % 4 < 0.8), 0.6)
    ground.fill(swatch(3), (0.62, 0.62, 0.62))
    ground.shade(swatch(3) & (ground.x % 8 < 3), 0.6)
    ground.fill(ground.box(96 + 25, 0, 128, 32), (1, 0.25, 0.15), 1.0)
    ground.fill(swatch(4), (0.26, 0.50, 0.42))
    ground.shade(swatch(4) & (ground.y % 8 < 1.2), 1.4)
    ground.fill(swatch(5), (0.13, 0.30, 0.12))
    ground.colour *= np.where(swatch(5), 0.75 + 0.5 * np.clip((ground.x - 160) / 32, 0, 1), 1.0)[..., None]
    ground.fill(swatch(6), (0.62, 0.28, 0.2))
    ground.fill(swatch(6) & (ground.x % 8 < 4), (0.8, 0.78, 0.74))
    ground.fill(ground.box(192 + 26, 0, 224, 32), (1, 0.3, 0.2), 0.9)
    return ground.finish()


def paint_light():
    """Swatches of things that glow: a lamp's crown, a glass roof at 64, a lantern behind louvres at 128."""
    ground = Ground(64, 32, atlas.WIDTH, (1.0, 0.80, 0.45), 0.03)
    ground.glow[:] = 1.0
    bars = (ground.x < 64) & (ground.y % 6 < 1.4)
    ground.fill(bars, (0.5, 0.4, 0.25), 0.2)
    pane = ground.box(64, 0, 128, 32)
    ground.fill(pane, (0.55, 0.80, 0.80), 0.75)
    ground.fill(pane & ((ground.x % 6 < 1) | (ground.y % 8 < 1)), (0.3, 0.34, 0.36), 0.1)
    lantern = ground.box(128, 0, 192, 32)
    ground.fill(lantern & (ground.x % 8 < 4), (0.28, 0.30, 0.32), 0.12)
    return ground.finish()


def neon(ground, distance, colour):
    """A tube's line and its shine on the board."""
    reach = np.exp(-np.maximum(distance, 0) / 3.0)
    ground.colour += 0.5 * reach[..., None] * np.array(colour)
    ground.glow = np.maximum(ground.glow, 0.3 * reach)
    ground.fill(distance < 0, colour, 0.8)
    ground.fill(distance < -0.9, np.minimum(1, np.array(colour) + 0.35), 1.0)


def paint_sign():
    """Boards of 192 x 96: the group's letters, a sound's bars, a gear, the rings of a drop."""
    ground = Ground(65, 96, atlas.WIDTH, (0.055, 0.06, 0.07), 0.1)
    ground.shade(ground.x % 12 < 0.8, 1.6)
    x, y = ground.x - 96, 48 - ground.y
    frame = np.abs(pill(x, y, 0, 0, 89, 41, 10)) - 1.2
    neon(ground, np.where(ground.x < 192, frame, 99), (0.15, 0.75, 0.85))
    neon(ground, np.where(ground.x < 192, letters(x, y, 24, 3.2), 99), (1.0, 0.42, 0.10))
    for i in range(12):
        tall = 6 + 30 * abs(np.sin(i * 1.7 + 0.6))
        bar = pill(ground.x, ground.y, 192 + 20 + i * 14, 88 - tall, 4.2, tall, 2)
        neon(ground, bar, ((0.25, 0.85, 0.45), (0.15, 0.65, 0.95))[i % 2])
    gx, gy = ground.x - 480, 48 - ground.y
    r, a = np.hypot(gx, gy), np.arctan2(gy, gx)
    tooth = np.abs(r - 30 - 4 * np.clip(3 * np.cos(12 * a), -1, 1)) - 2.0
    neon(ground, np.minimum(tooth, np.abs(r - 13) - 1.6), (1.0, 0.62, 0.2))
    for i in range(3):
        neon(ground, np.abs(circle(ground.x, ground.y, 672, 48, 36 - 12 * i)) - 2.0,
             ((0.95, 0.25, 0.2), (0.95, 0.8, 0.3), (0.2, 0.75, 0.85))[i])
    return ground.finish()


def place(canvas, name, picture):
    row, rows = atlas.STRIPS[name]
    canvas[row - atlas.GUTTER:row + rows + atlas.GUTTER] = np.pad(
        picture, ((atlas.GUTTER, atlas.GUTTER), (0, 0), (0, 0)), mode="edge")


def make(root):
    canvas = np.zeros((atlas.HEIGHT, atlas.WIDTH, 4))
    for name in atlas.FACADES:
        place(canvas, name, globals()[f"facade_{name}"]())
    place(canvas, "roof", paint_roofs())
    for name, _ in atlas.STRIPS_BELOW[1:]:
        place(canvas, name, globals()[f"paint_{name}"]())
    picture = (np.clip(canvas, 0, 1) * 255 + 0.5).astype(np.uint8)
    Image.fromarray(picture).save(root / "gfx/city08_diffuse.png", optimize=True)
    return f"{atlas.WIDTH} x {atlas.HEIGHT}"
