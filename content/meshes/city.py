"""The city: an 800 x 800 tile that repeats, four by four blocks, each wholly inside its own 200 x 200.

Every number that looks arbitrary is taste; the rules are in `allowed_height` (the camera's way stays free) and in
`block_edges` (no triangle belongs to two blocks).
"""
import functools
import math

import numpy as np

import cityatlas as atlas
import flight
from citybuild import Builder, CEILING, inset, rectangle, Skin
from cityhouses import (deco_tower, needle, park, round_tower, shaft, slab, stepped, twin_towers, twisted_tower,
                        wedge, works, ziggurat)
from cityroofs import any_roof, furnish_roof

TILE, BLOCK, BLOCKS = 800.0, 200.0, 4
KERB = atlas.STREET_WIDTH / 2
EDGE = 2e-5  # a block ends this much short of the next: a corner on the border counts as the next block's
CLEARANCE = 44.0
SHAKEN_CLEARANCE = 90.0


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
