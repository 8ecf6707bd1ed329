"""What the city's camera sees from above, `roof_NAME` and `paint_STRIP`: arrays [row, column] of colour and glow."""
import numpy as np

import cityatlas as atlas
from brush import blur, mix, noise, OVER, shrink
from shapes import circle, letters, pill


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


def paint_roof():
    size = atlas.ROOF_SIZE
    strip = np.zeros((*atlas.size("roof"), 4))
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


def traffic(road, lane, heading):
    """What a long exposure keeps of a lane: a thread of head lights or of tail lights, thinner and thicker."""
    flow = 0.55 + 0.45 * noise(road.random, road.x.shape, (1, 5), 3)
    thread = np.exp(-((road.y - lane) / 1.5) ** 2) * np.clip(flow, 0.1, 1)
    road.glow = np.maximum(road.glow, (0.9 if heading > 0 else 0.5) * thread)
    road.colour += thread[..., None] * np.array((1.0, 0.8, 0.5) if heading > 0 else (1.0, 0.16, 0.05))


def paint_street(piece):
    """From the middle of a crossing to the middle of the next."""
    crossing = paint_crossing()
    half = crossing.shape[1] // 2
    return np.concatenate([crossing[:, half:], paint_road(piece), crossing[:, :half]], 1)


def paint_road(piece):
    rows, length = atlas.size(atlas.STREETS[piece])
    length -= rows
    road = Ground(50 + piece, rows, length, (0.15, 0.145, 0.14), 0.15)
    random = road.random
    for y0, y1 in ((0, 9), (51, 60)):
        road.fill(road.box(0, y0, length, y1), (0.42, 0.38, 0.33))
        road.shade(road.box(0, y0, length, y1) & (road.x % 6 < 0.6), 0.75)
    road.shade((np.abs(road.y - 9) < 0.7) | (np.abs(road.y - 51) < 0.7), 1.5)
    road.fill((np.abs(road.y - 30) < 1.1) & (np.abs(road.y - 30) > 0.4), (0.85, 0.6, 0.15))
    dash = (road.x % 14 < 7) & ((np.abs(road.y - 20) < 0.5) | (np.abs(road.y - 40) < 0.5))
    road.fill(dash, (0.7, 0.7, 0.68))
    for x0 in (3, length - 13):
        road.fill(road.box(x0, 10, x0 + 10, 50) & (road.y % 4 < 2), (0.75, 0.75, 0.72))
    # Shop windows light the pavement.
    shops = np.clip(0.55 + 0.9 * noise(random, road.x.shape, (1, 9), 2), 0.1, 1)
    shine = np.exp(-np.minimum(road.y, rows - road.y) / 7) * shops
    road.glow = np.maximum(road.glow, 0.8 * shine)
    road.colour += 0.6 * shine[..., None] * np.array((1.0, 0.74, 0.4))
    for y, heading in ((15, -1), (25, -1), (35, 1), (45, 1)):
        traffic(road, y, heading)
        x = random.uniform(20, 50)
        while x < length - 26:
            paint = random.choice(3)
            colour = ((0.75, 0.6, 0.12), (0.5, 0.52, 0.55), (0.35, 0.1, 0.08))[paint]
            car(road, x, y, heading, colour)
            x += random.exponential(26) + 15
    for x in range(22, length, 44):
        for y in (8, 52):
            road.pool(x, y, 12, 1.0, (1.0, 0.68, 0.32))
            road.pool(x, y, 1.6, 1.0, (1.0, 0.9, 0.7))
    return road.finish()


def paint_crossing():
    ground = Ground(60, 60, 60, (0.14, 0.145, 0.155))
    corner = (np.abs(ground.x - 30) > 21) & (np.abs(ground.y - 30) > 21)
    ground.fill(corner, (0.36, 0.34, 0.32))
    for x in (9.5, 50.5):
        for y in (9.5, 50.5):
            ground.pool(x, y, 12, 1.0, (1.0, 0.68, 0.32))
            ground.pool(x, y, 1.6, 1.0, (1.0, 0.9, 0.7))
    ground.pool(30, 30, 16, 0.5, (1.0, 0.6, 0.3))
    return ground.finish()


def paint_pavement():
    """A square, though little of it is seen: its rows are few."""
    rows, columns = atlas.size("pavement")
    ground = Ground(61, rows * 4, columns, (0.27, 0.26, 0.25), 0.2)
    ground.shade((ground.x % 8 < 0.6) | (ground.y % 16 < 1.2), 0.78)
    random = ground.random
    for _ in range(60):
        x, y, radius, power = (random.uniform(*r) for r in ((0, columns), (6, rows * 4 - 6), (5, 9), (0.4, 1.0)))
        ground.pool(x, y, radius, power)
    return ground.finish().reshape(rows, 4, columns, 4).mean(1)


def paint_park():
    rows, columns = atlas.size("park")
    ground = Ground(62, rows, columns, (0.10, 0.20, 0.10), 0.4)
    random = ground.random
    bend = rows / 2 + 12 * np.sin(ground.x * 4 * np.pi / columns)
    ground.fill((np.abs(ground.y - bend) < 3) | (ground.y < 3) | (ground.y > rows - 3), (0.45, 0.40, 0.32))
    for x in range(14, columns, 28):
        ground.pool(x, rows / 2 + 12 * np.sin(x * 4 * np.pi / columns) + 4, 6, 0.9)
    for _ in range(30):
        x, y, r = random.uniform(0, columns), random.uniform(6, rows - 6), random.uniform(3, 7)
        ground.shade(ground.disc(x + 2, y + 2, r), 0.55)
        ground.fill(ground.disc(x, y, r), np.array((0.13, 0.30, 0.13)) * random.uniform(0.7, 1.3))
    return ground.finish()


def paint_metal():
    """Swatches of 32 texels: louvres, panels, timber, mast, copper, leaves, chimney."""
    ground = Ground(63, *atlas.size("metal"), (0.5, 0.5, 0.5), 0.12)
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
    ground = Ground(64, *atlas.size("light"), (1.0, 0.80, 0.45), 0.03)
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
    ground = Ground(65, *atlas.size("sign"), (0.055, 0.06, 0.07), 0.1)
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
