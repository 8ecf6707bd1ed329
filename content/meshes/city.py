"""The city: an 800 x 800 tile that repeats, four by four blocks, each wholly inside its own 200 x 200.

Every number that looks arbitrary is taste; the rules are in `allowed_height` (the camera's way stays free) and in
`block_edges` (no triangle belongs to two blocks).
"""
import functools
import math
import random

import numpy as np

import cityatlas as atlas
import flight
from obj import Mesh

TILE, BLOCK, BLOCKS = 800.0, 200.0, 4
KERB = atlas.STREET_WIDTH / 2
EDGE = 2e-5  # a block ends this much short of the next: a corner on the border counts as the next block's
CLEARANCE = 44.0
SHAKEN_CLEARANCE = 90.0
CEILING = 575.0  # the show takes every block to be 585 high


def unit(v):
    v = np.asarray(v, float)
    return v / np.linalg.norm(v)


@functools.lru_cache(maxsize=1)
def camera_way():
    """Eye positions folded into the tile, every few ticks, with the clearance to keep there."""
    way = []
    for frame in flight.fly()[::8]:
        shaken = frame["scene"] == 6 and frame["beat"] > 250
        x, y, z = frame["eye"]
        way.append(((x + 400) % TILE - 400, y, (z + 400) % TILE - 400,
                    SHAKEN_CLEARANCE if shaken else CLEARANCE))
    return np.array(way)


def allowed_height(x0, z0, x1, z1):
    """How high one may build on this ground without coming near the camera."""
    height = CEILING
    for sx in (-TILE, 0, TILE):
        for sz in (-TILE, 0, TILE):
            way = camera_way() + (sx, 0, sz, 0)
            dx = np.maximum(0, np.maximum(x0 - way[:, 0], way[:, 0] - x1))
            dz = np.maximum(0, np.maximum(z0 - way[:, 2], way[:, 2] - z1))
            away = np.hypot(dx, dz)
            near = away < way[:, 3]
            if near.any():
                height = min(height, (way[near, 1] - np.sqrt(way[near, 3] ** 2 - away[near] ** 2)).min())
    return height


def rectangle(x0, z0, x1, z1):
    """Counter-clockwise seen from above."""
    return [(x0, z1), (x1, z1), (x1, z0), (x0, z0)]


def ring(x, z, radius, sides, turn=0.0, squash=1.0):
    return [(x + radius * math.cos(a), z - squash * radius * math.sin(a))
            for a in (turn + 2 * math.pi * i / sides for i in range(sides))]


def inset(lot, by):
    x0, z0, x1, z1 = lot
    return x0 + by, z0 + by, x1 - by, z1 - by


def chamfered(lot, cut):
    x0, z0, x1, z1 = lot
    return [(x0 + cut, z1), (x1 - cut, z1), (x1, z1 - cut), (x1, z0 + cut),
            (x1 - cut, z0), (x0 + cut, z0), (x0, z0 + cut), (x0, z1 - cut)]


class Skin:
    """What a building wears: a facade, and how far off in whole textures its coordinates lie.

    The whole textures show nothing until the city is blown apart along them.
    """

    def __init__(self, rng, facade=None):
        self.facade = facade or rng.choice(atlas.FACADES)
        self.jump = rng.choice(((0, 0), (1, 0), (0, -1), (1, 1), (0, 1), (2, 0)))


class Builder:
    def __init__(self):
        self.mesh = Mesh()
        self.rng = random.Random(8)

    def wall(self, a, b, c, d, skin, floor, floors, normals=None):
        """One quad a, b (low), c, d (high); whole windows across and up."""
        width = math.hypot(b[0] - a[0], b[2] - a[2])
        columns = min(atlas.FACADE_COLUMNS, max(1, round(width / atlas.MODULE)))
        first = self.rng.randrange(0, atlas.FACADE_COLUMNS - columns + 1)
        u0, u1 = floor * atlas.CELL, (floor + floors) * atlas.CELL
        v0, v1 = first * atlas.CELL, (first + columns) * atlas.CELL
        uvs = [atlas.uv(skin.facade, u, v, skin.jump) for u, v in ((u0, v0), (u0, v1), (u1, v1), (u1, v0))]
        if normals is None:
            normals = unit(np.cross(np.subtract(b, a), np.subtract(d, a))).round(3)
        self.mesh.quad([a, b, c, d], uvs, normals)

    def prism(self, low, y0, high, y1, skin, floor=0, normals=None):
        floors = max(1, round((y1 - y0) / atlas.MODULE))
        for i in range(len(low)):
            j = (i + 1) % len(low)
            a, b = low[i], low[j]
            c, d = high[j], high[i]
            parts = max(1, math.ceil(math.hypot(b[0] - a[0], b[1] - a[1]) / 68))
            for k in range(parts):
                s, t = k / parts, (k + 1) / parts
                mix = lambda p, q, f, y: (p[0] + (q[0] - p[0]) * f, y, p[1] + (q[1] - p[1]) * f)
                self.wall(mix(a, b, s, y0), mix(a, b, t, y0), mix(d, c, t, y1), mix(d, c, s, y1), skin, floor,
                          floors, None if normals is None else [normals[i], normals[j], normals[j], normals[i]])

    def roof(self, points, y, picture, jump=(0, 0)):
        column = atlas.ROOFS.index(picture) * atlas.ROOF_SIZE
        xs, zs = [p[0] for p in points], [p[1] for p in points]
        span = lambda v, lo, hi: 1 + (atlas.ROOF_SIZE - 2) * (v - lo) / (hi - lo)
        uvs = [atlas.uv("roof", column + span(x, min(xs), max(xs)), span(z, min(zs), max(zs)), jump)
               for x, z in points]
        up = np.array((0.0, 1.0, 0.0))
        for i in range(1, len(points) - 1):
            self.mesh.triangle([(points[k][0], y, points[k][1]) for k in (0, i, i + 1)],
                               [uvs[k] for k in (0, i, i + 1)], [up] * 3)

    def plain(self, low, y0, high, y1, strip="metal", column=0, cap=True):
        """A small solid in one tone: a strip's texels from `column` on."""
        for i in range(len(low)):
            j = (i + 1) % len(low)
            corners = [(low[i][0], y0, low[i][1]), (low[j][0], y0, low[j][1]),
                       (high[j][0], y1, high[j][1]), (high[i][0], y1, high[i][1])]
            uvs = [atlas.uv(strip, column + u, v) for u, v in ((2, 4), (2, 28), (30, 28), (30, 4))]
            normal = unit(np.cross(np.subtract(corners[1], corners[0]), np.subtract(corners[3], corners[0]))).round(3)
            self.mesh.quad(corners, uvs, normal)
        if cap:
            uvs = [atlas.uv(strip, column + 16, 16)] * 3
            for i in range(1, len(high) - 1):
                self.mesh.triangle([(high[k][0], y1, high[k][1]) for k in (0, i, i + 1)], uvs,
                                   [np.array((0.0, 1.0, 0.0))] * 3)

    def spire(self, points, y0, apex, skin_or_strip="metal", column=0):
        x, y1, z = apex
        for i in range(len(points)):
            a, b = points[i], points[(i + 1) % len(points)]
            corners = [(a[0], y0, a[1]), (b[0], y0, b[1]), (x, y1, z)]
            normal = unit(np.cross(np.subtract(corners[1], corners[0]), np.subtract(corners[2], corners[0]))).round(3)
            uvs = [atlas.uv(skin_or_strip, column + u, v) for u, v in ((2, 4), (2, 28), (30, 16))]
            self.mesh.triangle(corners, uvs, [normal] * 3)

    def flat(self, x0, z0, x1, z1, strip, texels, y=0.0):
        """A piece of ground; texels: (along, across) at (x0, z0), (x0, z1), (x1, z1), (x1, z0)."""
        self.mesh.quad([(x0, y, z0), (x0, y, z1), (x1, y, z1), (x1, y, z0)],
                       [atlas.uv(strip, *t) for t in texels], np.array((0.0, 1.0, 0.0)))


# --- ground -----------------------------------------------------------------------------------------------

def block_edges(index):
    low = -TILE / 2 + BLOCK * index
    return low, low + BLOCK - (EDGE if index < BLOCKS - 1 else 0)


def lay_streets(builder, x0, z0, x1, z1):
    k, half, run = KERB, KERB * atlas.TEXELS_PER_UNIT, atlas.STREET_RUN * atlas.TEXELS_PER_UNIT
    for z_side, (b0, b1, v0, v1) in enumerate(((z0, z0 + k, half, 2 * half), (z1 - k, z1, 0, half))):
        for x_side, (a0, a1, u0, u1) in enumerate(((x0, x0 + k, half, 2 * half), (x1 - k, x1, 0, half))):
            builder.flat(a0, b0, a1, b1, "crossing", ((u0, v0), (u0, v1), (u1, v1), (u1, v0)))
        u0 = builder.rng.randrange(atlas.ROAD_LENGTHS) * run
        builder.flat(x0 + k, b0, x1 - k, b1, "road",
                     ((u0, v0), (u0, v1), (u0 + run, v1), (u0 + run, v0)))
    for a0, a1, v0, v1 in ((x0, x0 + k, half, 2 * half), (x1 - k, x1, 0, half)):
        u0 = builder.rng.randrange(atlas.ROAD_LENGTHS) * run
        builder.flat(a0, z0 + k, a1, z1 - k, "road", ((u0, v0), (u0 + run, v0), (u0 + run, v1), (u0, v1)))


def lay_lot(builder, x0, z0, x1, z1, strip="pavement"):
    rows = atlas.STRIPS[strip][1]
    width = (x1 - x0) * atlas.TEXELS_PER_UNIT
    parts = math.ceil((z1 - z0) * atlas.TEXELS_PER_UNIT / rows - 0.5)
    for i in range(parts):
        b0, b1 = z0 + (z1 - z0) * i / parts, z0 + (z1 - z0) * (i + 1) / parts
        builder.flat(x0, b0, x1, b1, strip, ((0, 0), (0, rows), (width, rows), (width, 0)))


# --- roofs ------------------------------------------------------------------------------------------------

def water_tank(builder, x, z, y):
    body = ring(x, z, 4.0, 6)
    for leg in ring(x, z, 2.6, 3):
        builder.spire(ring(*leg, 1.0, 3), y, (leg[0], y + 7, leg[1]), column=64)
    builder.plain(body, y + 5, body, y + 12, column=32, cap=False)
    builder.spire(body, y + 12, (x, y + 16, z), column=64)


def mast(builder, x, z, y, height):
    builder.spire(ring(x, z, 1.6, 3), y, (x, y + height, z), "metal", 96)


def plant_room(builder, lot, y, height, column=0):
    points = rectangle(*lot)
    builder.plain(points, y, points, y + height, column=column)


def board(builder, x, z, y, facing, picture, width=46.0):
    """A lit sign on posts, its face along +-x or +-z."""
    tall = width * atlas.SIGN_SIZE[1] / atlas.SIGN_SIZE[0]
    along = np.array((facing[2], 0, -facing[0]), float)
    low, up = np.array((x, y + 4, z)), np.array((0, tall, 0))
    left, right = low - along * width / 2, low + along * width / 2
    front = np.array(facing, float)
    u, w, h = picture * atlas.SIGN_SIZE[0], *atlas.SIGN_SIZE
    for side, (a, b) in ((1, (left, right)), (-1, (right, left))):
        shift = front * side * 0.8
        uvs = [atlas.uv("sign", *t) for t in ((u + 2, h - 2), (u + w - 2, h - 2), (u + w - 2, 2), (u + 2, 2))]
        builder.mesh.quad([a + shift, b + shift, b + shift + up, a + shift + up], uvs, front * side)
    for post in (left + along * 6, right - along * 6):
        builder.spire(ring(post[0], post[2], 1.2, 3), y, (post[0], y + tall, post[2]), column=64)


def advertise(builder, lot, y):
    """A sign that looks at the nearest of the camera's ways."""
    x, z = (lot[0] + lot[2]) / 2, (lot[1] + lot[3]) / 2
    facing = (0, 0, 1) if abs(x) < 120 else (1, 0, 0) if abs(x) > 270 else (-1, 0, 0)
    width = min(50, 0.9 * (lot[2] - lot[0] if facing[2] else lot[3] - lot[1]))
    x, z = x + facing[0] * (lot[2] - lot[0]) * 0.4, z + facing[2] * (lot[3] - lot[1]) * 0.4
    board(builder, x, z, y, facing, builder.rng.choice((0, 0, 1, 2, 3)), width)


def furnish_roof(builder, lot, y, rich):
    """Something on every roof, so that none is an empty plate."""
    rng = builder.rng
    x0, z0, x1, z1 = lot
    w, d = x1 - x0, z1 - z0
    if min(w, d) < 14:
        return
    cx, cz = x0 + w * rng.uniform(0.35, 0.65), z0 + d * rng.uniform(0.35, 0.65)
    half_w, half_d = w * rng.uniform(0.11, 0.18), d * rng.uniform(0.11, 0.18)
    plant_room(builder, (cx - half_w, cz - half_d, cx + half_w, cz + half_d), y, rng.uniform(6, 12),
               rng.choice((0, 32)))
    if y < 200 and rng.random() < 0.3:
        advertise(builder, lot, y)
    elif rich and rng.random() < 0.45:
        water_tank(builder, x0 + w * rng.choice((0.2, 0.8)), z0 + d * rng.choice((0.2, 0.8)), y)
    elif rng.random() < 0.35:
        mast(builder, x0 + w * 0.2, z0 + d * 0.8, y, rng.uniform(14, 30))


def lantern(builder, lot, y, height):
    """A crown that glows through its louvres."""
    points = rectangle(*lot)
    builder.plain(points, y, points, y + height, "light", 128, cap=False)
    builder.roof(points, y + height, "plant")


def any_roof(rng):
    return rng.choice(("gravel", "plant", "membrane", "skylight", "gravel", "terrace", "garden", "solar"))


# --- buildings: each takes the builder, a lot and a height ------------------------------------------------

def slab(builder, lot, height, facade=None):
    rng = builder.rng
    skin = Skin(rng, facade or rng.choice(("brick", "brick", "balcony", "stone", "ribbon", "grid")))
    points = rectangle(*lot)
    builder.prism(points, 0, points, height, skin)
    builder.roof(points, height, any_roof(rng), skin.jump)
    furnish_roof(builder, lot, height, skin.facade in ("brick", "stone"))


def stepped(builder, lot, height, facade=None, steps=2):
    """A podium and a shaft that steps back."""
    rng = builder.rng
    skin = Skin(rng, facade or rng.choice(("stone", "deco", "ribbon", "azure", "grid", "slate")))
    y, floor = 0.0, 0
    for step in range(steps + 1):
        top = height * (0.28, 0.72, 1.0)[step] if steps == 2 else height * (0.45, 1.0)[step]
        points = rectangle(*lot)
        builder.prism(points, y, points, top, skin, floor)
        builder.roof(points, top, any_roof(rng), skin.jump)
        floor += round((top - y) / atlas.MODULE)
        y = top
        if step < steps:
            lot = inset(lot, min(lot[2] - lot[0], lot[3] - lot[1]) * 0.13)
    if height > 200 and rng.random() < 0.5:
        lantern(builder, inset(lot, min(lot[2] - lot[0], lot[3] - lot[1]) * 0.3), y, 9)
    else:
        furnish_roof(builder, lot, y, False)
    if height > 260:
        mast(builder, (lot[0] + lot[2]) / 2, (lot[1] + lot[3]) / 2, y + 6, rng.uniform(30, 50))


def shaft(builder, lot, height, facade=None):
    """A tower with cut corners on a podium, a crown of metal."""
    rng = builder.rng
    skin = Skin(rng, facade or rng.choice(("glass", "azure", "dark", "slate", "ribbon")))
    podium = rng.uniform(24, 48)
    base, lot = rectangle(*lot), inset(lot, 4)
    builder.prism(base, 0, base, podium, Skin(rng, rng.choice(("stone", "grid"))))
    builder.roof(base, podium, rng.choice(("terrace", "garden", "skylight")))
    points = chamfered(lot, min(lot[2] - lot[0], lot[3] - lot[1]) * 0.2)
    floors = round((height - podium) / atlas.MODULE)
    builder.prism(points, podium, points, height, skin, rng.randrange(4, max(5, 63 - floors)))
    builder.roof(points, height, rng.choice(("helipad", "plant", "membrane")), skin.jump)
    if rng.random() < 0.6:
        lantern(builder, inset(lot, min(lot[2] - lot[0], lot[3] - lot[1]) * 0.25), height, rng.uniform(8, 16))


def wedge(builder, lot, height, facade="glass"):
    """A tower whose top is cut like a chisel."""
    skin = Skin(builder.rng, facade)
    x0, z0, x1, z1 = lot
    low, cut = rectangle(*lot), height - (x1 - x0) * 1.1
    builder.prism(low, 0, low, cut, skin)
    floor = round(cut / atlas.MODULE)
    edge = [(x0, z1), (x0 + 6, z1), (x0 + 6, z0), (x0, z0)]
    builder.prism(low, cut, edge, height, skin, floor)
    builder.roof(edge, height, "membrane")


# --- landmarks --------------------------------------------------------------------------------------------

def deco_tower(builder, lot, height):
    skin = Skin(builder.rng, "deco")
    y, floor = 0.0, 0
    for share, cut in ((0.12, 0.0), (0.3, 0.09), (0.62, 0.08), (0.78, 0.07), (0.86, 0.06), (0.92, 0.06)):
        lot = inset(lot, cut * (lot[2] - lot[0]))
        points = chamfered(lot, 0.12 * (lot[2] - lot[0]))
        builder.prism(points, y, points, height * share, skin, floor)
        builder.roof(points, height * share, "terrace", skin.jump)
        floor += round((height * share - y) / atlas.MODULE)
        y = height * share
    x, z = (lot[0] + lot[2]) / 2, (lot[1] + lot[3]) / 2
    crown = ring(x, z, 0.42 * (lot[2] - lot[0]), 8, math.pi / 8)
    neck = ring(x, z, 0.2 * (lot[2] - lot[0]), 8, math.pi / 8)
    builder.plain(crown, y, neck, y + 22, "light", 0, cap=False)
    builder.spire(neck, y + 22, (x, height + 60, z), "metal", 96)


def twisted_tower(builder, lot, height, levels=11):
    skin = Skin(builder.rng, "azure")
    skin.jump = (0, 0)
    x, z = (lot[0] + lot[2]) / 2, (lot[1] + lot[3]) / 2
    radius = (lot[2] - lot[0]) / 2 * 1.2
    rise = height / levels
    for i in range(levels):
        low = ring(x, z, radius * (1 - 0.028 * i), 4, math.pi / 4 + i * 0.15)
        high = ring(x, z, radius * (1 - 0.028 * (i + 1)), 4, math.pi / 4 + (i + 1) * 0.15)
        builder.prism(low, i * rise, high, (i + 1) * rise, skin, round(i * rise / atlas.MODULE))
    builder.roof(high, height, "helipad")


def round_tower(builder, lot, height):
    skin = Skin(builder.rng, "ribbon")
    x, z = (lot[0] + lot[2]) / 2, (lot[1] + lot[3]) / 2
    radius, y = (lot[2] - lot[0]) / 2, 0.0
    for part, (share, wide) in enumerate(((0.55, 1.0), (0.83, 0.86), (1.0, 0.7))):
        points = ring(x, z, radius * wide, 14)
        normals = [unit((p[0] - x, 0, p[1] - z)).round(3) for p in points]
        builder.prism(points, y, points, height * share, skin, round(y / atlas.MODULE), normals)
        builder.roof(points, height * share, ("terrace", "garden", "helipad")[part], skin.jump)
        y = height * share
    mast(builder, x, z, y, 60)


def needle(builder, lot, height):
    """The tallest: four sides that lean in, a lit top, a long spire."""
    skin = Skin(builder.rng, "dark")
    x, z = (lot[0] + lot[2]) / 2, (lot[1] + lot[3]) / 2
    wide = (lot[2] - lot[0]) / 2
    y, floor = 0.0, 0
    widths = (1.0, 0.8, 0.55, 0.34)
    for share, w0, w1 in ((0.16, 1.0, 0.8), (0.55, 0.72, 0.52), (0.86, 0.48, 0.3)):
        low = chamfered((x - wide * w0, z - wide * w0, x + wide * w0, z + wide * w0), wide * w0 * 0.3)
        high = chamfered((x - wide * w1, z - wide * w1, x + wide * w1, z + wide * w1), wide * w1 * 0.3)
        builder.prism(low, y, high, height * share, skin, floor)
        builder.roof(high, height * share, "membrane")
        floor += round((height * share - y) / atlas.MODULE)
        y = height * share
    lamp = ring(x, z, wide * 0.24, 8)
    builder.plain(lamp, y, lamp, y + 14, "light", 0, cap=False)
    builder.spire(lamp, y + 14, (x, min(height * 1.12, CEILING), z), "metal", 96)


def twin_towers(builder, lot, height):
    x0, z0, x1, z1 = lot
    third = (z1 - z0) / 3
    for pair, (a, b) in enumerate(((z0, z0 + third), (z1 - third, z1))):
        skin = Skin(builder.rng, "glass")
        part = (x0, a, x1, b)
        points = chamfered(part, third * 0.22)
        builder.prism(points, 0, points, height, skin, pair * 6)
        builder.roof(points, height, "plant")
        tip = inset(part, third * 0.28)
        lantern(builder, tip, height, 14)
        mast(builder, (tip[0] + tip[2]) / 2, (tip[1] + tip[3]) / 2, height + 14, 46)
    bridge = (x0 + (x1 - x0) * 0.36, z0 + third, x0 + (x1 - x0) * 0.64, z1 - third)
    points = rectangle(*bridge)
    y = height * 0.56
    builder.prism(points, y, points, y + 16, Skin(builder.rng, "ribbon"))
    builder.roof(points, y + 16, "membrane")


def ziggurat(builder, lot, height):
    skin = Skin(builder.rng, "grid")
    steps = 5
    for i in range(steps):
        points = rectangle(*lot)
        builder.prism(points, height * i / steps, points, height * (i + 1) / steps, skin, 2 * i)
        builder.roof(points, height * (i + 1) / steps, "garden" if i < steps - 1 else "skylight", skin.jump)
        lot = inset(lot, (lot[2] - lot[0]) * 0.1)
    x, z = (lot[0] + lot[2]) / 2, (lot[1] + lot[3]) / 2
    glass = rectangle(*inset(lot, 3))
    builder.spire(glass, height, (x, height + 20, z), "light", 64)


def park(builder, lot, height):
    """Trees, and a domed hall in the middle."""
    rng = builder.rng
    x0, z0, x1, z1 = lot
    x, z = (x0 + x1) / 2, (z0 + z1) / 2
    hall = ring(x, z, 26, 12)
    normals = [unit((p[0] - x, 0, p[1] - z)).round(3) for p in hall]
    builder.prism(hall, 0, hall, 26, Skin(rng, "stone"), 0, normals)
    low, y = hall, 26.0
    for angle in (30, 60):
        high = ring(x, z, 26 * math.cos(math.radians(angle)), 12)
        builder.plain(low, y, high, 26 + 24 * math.sin(math.radians(angle)), column=128, cap=False)
        low, y = high, 26 + 24 * math.sin(math.radians(angle))
    builder.spire(low, y, (x, 52, z), column=128)
    mast(builder, x, z, 50, 22)
    for _ in range(34):
        tx, tz = rng.uniform(x0 + 6, x1 - 6), rng.uniform(z0 + 6, z1 - 6)
        if math.hypot(tx - x, tz - z) > 38:
            size = rng.uniform(5, 8)
            builder.spire(ring(tx, tz, size, 5, rng.random()), 1, (tx, size * 2.6, tz), "metal", 160)


def works(builder, lot, height):
    """Chimneys, tanks and a hall of steel."""
    rng = builder.rng
    x0, z0, x1, z1 = lot
    hall = (x0, z0, x0 + (x1 - x0) * 0.55, z1)
    builder.prism(rectangle(*hall), 0, rectangle(*hall), 40, Skin(rng, "slate"))
    builder.roof(rectangle(*hall), 40, "skylight")
    for i in range(3):
        z = z0 + (z1 - z0) * (0.2 + 0.3 * i)
        stack = ring(x0 + 14, z, 5.5, 8)
        tip = ring(x0 + 14, z, 3.6, 8)
        builder.plain(stack, 40, tip, 150, column=192, cap=False)
    for i in range(2):
        for j in range(2):
            x, z = x0 + (x1 - x0) * (0.7 + 0.24 * i), z0 + (z1 - z0) * (0.25 + 0.5 * j)
            tank = ring(x, z, (x1 - x0) * 0.1, 10)
            builder.plain(tank, 0, tank, 26, column=32, cap=False)
            builder.spire(tank, 26, (x, 32, z), column=0)


# --- the plan ---------------------------------------------------------------------------------------------

# block (column, row): landmark, its lot relative to the block's corner, its height
LANDMARKS = {
    (1, 0): (deco_tower, (50, 60, 124, 134), 470),
    (2, 0): (twisted_tower, (72, 66, 126, 120), 400),
    (1, 1): (round_tower, (66, 60, 130, 124), 360),
    (2, 1): (needle, (62, 70, 126, 134), 510),
    (3, 1): (twin_towers, (62, 30, 104, 158), 430),
    (1, 2): (park, (17, 17, 183, 183), 0),
    (2, 2): (ziggurat, (44, 34, 156, 146), 120),
    (0, 3): (wedge, (100, 70, 152, 134), 420),
    (0, 1): (works, (90, 40, 182, 150), 0),
}

DISTRICTS = {  # what stands around the landmark, by height
    "old": ("brick", "stone", "brick", "deco"),
    "offices": ("ribbon", "grid", "azure", "slate"),
    "homes": ("balcony", "brick", "balcony", "grid"),
    "money": ("glass", "dark", "azure", "deco"),
}
PLAN = [["homes", "old", "money", "old"],
        ["homes", "offices", "money", "money"],
        ["homes", "old", "offices", "old"],
        ["offices", "money", "offices", "homes"]]
PEAKS = [(90, -100, 190, 330), (-110, -270, 130, 260), (330, -90, 120, 260), (280, 320, 140, 240),
         (-260, 300, 130, 210), (-90, 330, 110, 210)]


def skyline(x, z):
    rise = 0.0
    for px, pz, width, height in PEAKS:
        dx, dz = (x - px + 400) % TILE - 400, (z - pz + 400) % TILE - 400
        rise = max(rise, height * math.exp(-(dx * dx + dz * dz) / (2 * (width * 0.6) ** 2)))
    return 48 + 0.9 * rise


def split(rng, lot, smallest):
    """Cuts ground into building lots with alleys between them."""
    x0, z0, x1, z1 = lot
    w, d = x1 - x0, z1 - z0
    if min(w, d) < 15:
        return []
    if max(w, d) < smallest * 1.75:
        return [lot]
    alley = rng.choice((3, 5, 8))
    at = rng.uniform(0.4, 0.6)
    if w > d:
        mid = x0 + w * at
        parts = (x0, z0, mid - alley / 2, z1), (mid + alley / 2, z0, x1, z1)
    else:
        mid = z0 + d * at
        parts = (x0, z0, x1, mid - alley / 2), (x0, mid + alley / 2, x1, z1)
    return split(rng, parts[0], smallest) + split(rng, parts[1], smallest)


def around(lot, hole, gap=6):
    """The ground of a block that a landmark leaves over."""
    x0, z0, x1, z1 = lot
    hx0, hz0, hx1, hz1 = inset(hole, -gap)
    return [(x0, z0, hx0, z1), (hx1, z0, x1, z1), (hx0, z0, hx1, hz0), (hx0, hz1, hx1, z1)]


def near_the_way(lot):
    """Beside the camera's way, where a tower feels fast."""
    return allowed_height(*lot) >= CEILING and allowed_height(*inset(lot, -34)) < 300


def stand_back(lot):
    """The largest part of a lot, cut off along one side, that may carry a tower; or None."""
    best, most = None, 0.0
    for side in range(4):
        part = list(lot)
        while min(part[2] - part[0], part[3] - part[1]) > 16:
            if allowed_height(*part) >= CEILING:
                area = (part[2] - part[0]) * (part[3] - part[1])
                if area > most:
                    best, most = tuple(part), area
                break
            part[side] += 2 if side < 2 else -2
    return best


def tower_behind(builder, lot, part, styles):
    """A low front on the street and a tower at the back of the lot, as near the camera as may be."""
    rng = builder.rng
    low = max(24, min(rng.uniform(40, 130), allowed_height(*lot) - 34) // atlas.MODULE * atlas.MODULE)
    skin = Skin(rng, rng.choice(styles))
    points, tower = rectangle(*lot), rectangle(*part)
    builder.prism(points, 0, points, low, skin)
    builder.roof(points, low, any_roof(rng), skin.jump)
    height = rng.uniform(300, 420) // atlas.MODULE * atlas.MODULE
    builder.prism(tower, low, tower, height, skin, round(low / atlas.MODULE))
    builder.roof(tower, height, rng.choice(("helipad", "plant")), skin.jump)
    furnish_roof(builder, part, height, False)


def build_lot(builder, lot, styles):
    rng = builder.rng
    part = stand_back(lot)
    if part not in (None, lot) and rng.random() < 0.5:
        tower_behind(builder, lot, part, styles)
        return
    x, z = (lot[0] + lot[2]) / 2, (lot[1] + lot[3]) / 2
    height = skyline(x, z) * rng.uniform(0.62, 1.25)
    if near_the_way(lot) and rng.random() < 0.4:
        height = max(height, rng.uniform(270, 410))
    height = min(height, allowed_height(*lot) - 34)
    height = max(24, round(height / atlas.MODULE) * atlas.MODULE)
    facade = rng.choice(styles)
    slim = min(lot[2] - lot[0], lot[3] - lot[1]) < 24
    if height > 190 and not slim:
        kind = rng.choice((shaft, stepped, stepped, shaft, wedge if height > 300 else stepped))
        kind(builder, lot, height, facade)
    elif height > 110 and not slim and rng.random() < 0.6:
        stepped(builder, lot, height, facade, 1)
    else:
        slab(builder, lot, height, facade)


def build_block(builder, column, row):
    x0, x1 = block_edges(column)
    z0, z1 = block_edges(row)
    lay_streets(builder, x0, z0, x1, z1)
    ground = (x0 + KERB, z0 + KERB, x1 - KERB, z1 - KERB)
    green = LANDMARKS.get((column, row), (None,))[0] in (park,)
    lay_lot(builder, *ground, "park" if green else "pavement")
    site = inset(ground, 3)
    pieces = [site]
    if (column, row) in LANDMARKS:
        landmark, (a, b, c, d), height = LANDMARKS[column, row]
        hole = (x0 + a, z0 + b, x0 + c, z0 + d)
        landmark(builder, hole, height)
        pieces = around(site, hole)
    for piece in pieces:
        for lot in split(builder.rng, piece, 40):
            build_lot(builder, lot, DISTRICTS[PLAN[row][column]])


def build():
    builder = Builder()
    for row in range(BLOCKS):
        for column in range(BLOCKS):
            build_block(builder, column, row)
    return builder.mesh


def make_mesh(root):
    return build().write(root / "city08.obj", "city tile, 800 x 800, block by block")


def make_texture(root):
    import citypaint
    return citypaint.make(root)
