"""The city's facades: `facade_NAME` paints the strip NAME. Alpha is light that no darkness and no fog takes away.

They are painted upright as arrays [up, across] and laid on their side at the end.
"""
import numpy as np

import cityatlas as atlas
from brush import blur, mix, noise

OVER = 4  # painted at so many times the size of the strips seen from far
MODULE = 16  # texels both ways
HEIGHT, ROWS = 1024, 128  # painted, of which the strips show what they have room for

WARM = np.array([(1.0, 0.76, 0.40), (1.0, 0.84, 0.52), (1.0, 0.66, 0.28), (1.0, 0.92, 0.72), (0.78, 0.92, 1.0)])
WARM_SHARES = (0.34, 0.28, 0.16, 0.14, 0.08)


class Wall:
    """A facade in the making. Coordinates in texels: up from the ground, across from the left."""

    def __init__(self, seed, colour, roughness=0.05):
        self.random = np.random.RandomState(seed)
        shape = (HEIGHT * OVER, ROWS * OVER)
        self.up, self.across = np.meshgrid((np.arange(shape[0]) + 0.5) / OVER, (np.arange(shape[1]) + 0.5) / OVER,
                                           indexing="ij")
        grain = noise(self.random, shape, (32, 4), 4) * roughness
        self.colour = np.array(colour) * (1 + grain[..., None])
        self.glow = np.zeros(shape)

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
        # Narrow panes go by twos and threes: single ones would flicker far off.
        runs = (1, 6) if kind == "office" else (2, 4) if panes > 8 else (1, 3)
        for floor in range(rows):
            mood = random.rand()
            if kind == "office":
                share = 0.95 if mood < 0.12 else 0.5 if mood < 0.38 else 0.2 if mood < 0.78 else 0.03
            else:
                share = 0.40 if mood < 0.7 else 0.22
            run, on = 0, False
            for pane in range(panes):
                if run <= 0:
                    on, run = random.rand() < share, random.randint(*runs)
                lit[floor, pane] = random.uniform(0.7, 1.0) if on else 0
                run -= 1
        return lit

    def windows(self, width, height, a0, a1, u0, u1, kind, glass, recess=0.5, sparse=1.0):
        """A pane a0..a1, u0..u1 in each width x height module."""
        random = self.random
        rows, panes = HEIGHT // height, ROWS // width
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
        street = 0.85 * np.exp(-self.up / 40)
        alpha = np.maximum(np.maximum(self.glow, 0.45 * halo), street)
        lamps = 1 + 0.8 * street[..., None] * np.array((1.0, 0.8, 0.5))
        spill = 0.22 * np.maximum(halo - self.glow, 0)[..., None] * np.array((1.0, 0.85, 0.6))
        colour = self.colour * lamps + spill
        return np.dstack([colour, alpha]).transpose(1, 0, 2)


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
    tube = wall.bands(160, 0, 2.0)
    wall.tint(tube, (0.25, 0.95, 1.0))
    wall.glow = np.where(tube, 0.7, wall.glow)
    wall.shops((0.33, 0.32, 0.31))
    return wall.finish()


def facade_slate():
    wall = Wall(20, (0.42, 0.46, 0.50), 0.06)
    wall.windows(16, 16, 0.6, 15.4, 4.0, 11.0, "office", (0.12, 0.18, 0.23), 0.5)
    wall.shade(wall.stripes_up(4, 0, 0.6) & wall.bands(16, 4.0, 11.0), 0.72)
    panel = wall.bands(16, 12, 16) | wall.bands(16, 0, 4)
    wall.shade(panel & wall.stripes_up(2, 0, 0.8), 0.84)
    wall.weather(0.2)
    tube = wall.stripes_up(64, 0.4, 2.4)
    wall.tint(tube, (1.0, 0.55, 0.16))
    wall.glow = np.where(tube, 0.8, np.where(wall.stripes_up(32, 0, 1.6), 0, wall.glow))
    wall.shops((0.2, 0.22, 0.24))
    return wall.finish()
