"""The city: an 800 x 800 tile that repeats, four by four blocks, each wholly inside its own 200 x 200.

It is built whole and then cut down to a film set (citycut): what no flight sees is not in the mesh.

Every number that looks arbitrary is taste; the rules are in `allowed_height` (the camera's way stays free) and in
`block_edges` (no triangle belongs to two blocks).
"""
import functools
import math

import numpy as np

import cityatlas as atlas
import citycut
import flight
from citybuild import Builder, CEILING, inset, rectangle, Skin, unit
from cityhouses import (deco_tower, needle, park, round_tower, shaft, slab, stepped, twin_towers, twisted_tower,
                        wedge, works, ziggurat)
from cityroofs import any_roof, furnish_roof, lantern

TILE, BLOCK, BLOCKS = 800.0, 200.0, 4
KERB = atlas.STREET_WIDTH / 2
EDGE = 2e-5  # a block ends this much short of the next: a corner on the border counts as the next block's
CLEARANCE = 44.0
SHAKEN_CLEARANCE = 90.0
SHAKEN_REACH, SHAKEN_HEIGHT = 130.0, 304.0  # beside a shaken camera's way: below its own height
RING_VIEW = (-72, -340, 68, -205, 160)  # nothing higher stands there: the ring over the avenue is to be seen whole
NEAR = 80.0  # walls that the camera passes at less than that get the fine pictures


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
    rx0, rz0, rx1, rz1, top = RING_VIEW
    if x0 < rx1 and x1 > rx0 and z0 < rz1 and z1 > rz0:
        height = top
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


def shaken_past(lot):
    """Whether a shaken camera may come this far."""
    x0, z0, x1, z1 = inset(lot, -SHAKEN_REACH)
    way = camera_way()[camera_way()[:, 3] == SHAKEN_CLEARANCE]
    return ((way[:, 0] > x0) & (way[:, 0] < x1) & (way[:, 2] > z0) & (way[:, 2] < z1)).any()


def passes_near(corners):
    """Whether the camera comes close to the front of a wall, given counter-clockwise from the low left."""
    corners = np.array(corners)
    low, high = corners.min(0), corners.max(0)
    normal = np.cross(corners[1] - corners[0], corners[3] - corners[0])
    for shift in np.ndindex(3, 3):
        eyes = camera_way()[:, :3] + ((shift[0] - 1) * TILE, 0, (shift[1] - 1) * TILE)
        away = np.linalg.norm(np.maximum(0, np.maximum(low - eyes, eyes - high)), axis=1)
        if ((away < NEAR) & ((eyes - corners[0]) @ normal > 0)).any():
            return True
    return False


def block_edges(index):
    low = -TILE / 2 + BLOCK * index
    return low, low + BLOCK - (EDGE if index < BLOCKS - 1 else 0)


def lay_streets(builder, x0, z0, x1, z1):
    """Half a street along each side; those along x have the crossings at their ends."""
    length, width = atlas.STREET_SIZE
    half = width / 2
    for b0, b1, v0, v1 in ((z0, z0 + KERB, half, width), (z1 - KERB, z1, 0, half)):
        street = atlas.STREETS[builder.rng.randrange(len(atlas.STREETS))]
        builder.flat(x0, b0, x1, b1, street, ((0, v0), (0, v1), (length, v1), (length, v0)))
    u0, u1 = half, length - half
    for a0, a1, v0, v1 in ((x0, x0 + KERB, half, width), (x1 - KERB, x1, 0, half)):
        street = atlas.STREETS[builder.rng.randrange(len(atlas.STREETS))]
        builder.flat(a0, z0 + KERB, a1, z1 - KERB, street, ((u0, v0), (u1, v0), (u1, v1), (u0, v1)))


def lay_lot(builder, x0, z0, x1, z1, strip, parts):
    """A block's ground between the streets, in so many repetitions of the picture."""
    rows, columns = atlas.size(strip)
    for i in range(parts):
        b0, b1 = z0 + (z1 - z0) * i / parts, z0 + (z1 - z0) * (i + 1) / parts
        builder.flat(x0, b0, x1, b1, strip, ((0, 0), (0, rows), (columns, rows), (columns, 0)))


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

FLIGHT_LIGHT = unit((2, 2, 1)).round(3)  # where the light comes from in the first flight: a lamp leans to it
RING_CENTRE, RING_RADII, RING_PARTS = (0.0, 222.0, -303.0), (58.0, 66.0, 3.0), 20

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
    return 46 + 0.7 * rise


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
    height = min(rng.uniform(300, 420), SHAKEN_HEIGHT if shaken_past(part) else CEILING) // atlas.MODULE * atlas.MODULE
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
    height = min(height, allowed_height(*lot) - 34, SHAKEN_HEIGHT if shaken_past(lot) else CEILING)
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
    lay_lot(builder, *ground, *(("park", 6) if green else ("pavement", 1)))
    site = inset(ground, 3)
    pieces = [site]
    if (column, row) in LANDMARKS:
        landmark, (a, b, c, d), height = LANDMARKS[column, row]
        hole = (x0 + a, z0 + b, x0 + c, z0 + d)
        landmark(builder, hole, height)
        pieces = around(site, hole)
    for piece in pieces:
        for lot in split(builder.rng, piece, 50):
            build_lot(builder, lot, DISTRICTS[PLAN[row][column]])


def hang_ring(builder):
    """The first flight's landmark: a ring of light over the avenue, held by a tower on either side. One flies through."""
    x, y, z = RING_CENTRE
    inner, outer, deep = RING_RADII
    glow = [atlas.uv("light", *t) for t in ((10, 8), (14, 8), (14, 11), (10, 11))]
    for i in range(RING_PARTS):
        a, b = (math.pi * (2 * k / RING_PARTS - 0.5) for k in (i, i + 1))
        left = math.cos((a + b) / 2) < 0
        at = lambda angle, r, dz: (min(x + r * math.cos(angle), -EDGE) if left else max(x + r * math.cos(angle), 0.0),
                                   y + r * math.sin(angle), z + dz)
        inward = -unit((math.cos((a + b) / 2), math.sin((a + b) / 2), 0)).round(3)
        builder.mesh.quad([at(a, inner, deep), at(a, outer, deep), at(b, outer, deep), at(b, inner, deep)], glow,
                          FLIGHT_LIGHT)
        builder.mesh.quad([at(a, inner, -deep), at(a, inner, deep), at(b, inner, deep), at(b, inner, -deep)], glow,
                          inward)
    for x0, x1 in ((x - outer - 22, x - outer + 1), (x + outer - 1, x + outer + 16)):
        builder.plain(rectangle(x0, z - 2, x1, z + 2), y - 2, rectangle(x0, z - 2, x1, z + 2), y + 2)


def raise_campanile(builder):
    """The last flight's landmark: a bell tower in the park, passed closely, with a lit crown and a copper tip."""
    lot, top = (-160, 102, -134, 130), 376
    points, belfry = rectangle(*lot), inset(lot, 3)
    builder.prism(points, 0, points, top, Skin(builder.rng, "stone"))
    cornice = rectangle(*inset(lot, -2))
    builder.plain(cornice, top, cornice, top + 4)
    lantern(builder, belfry, top + 4, 18)
    builder.spire(rectangle(*belfry), top + 22, (-147, 470, 116), column=128)


def build(feet={}):
    """The whole city's mesh, its walls standing from the heights `feet` on; and of each wall its faces."""
    builder = Builder(passes_near, feet)
    for row in range(BLOCKS):
        for column in range(BLOCKS):
            build_block(builder, column, row)
    hang_ring(builder)
    raise_campanile(builder)
    return builder.mesh, builder.walls


def make_mesh(root):
    mesh, said = citycut.cut(build)
    return mesh.write(root / "city08.obj", "city tile, 800 x 800, block by block, what hides most first") + "; " + said


def make_texture(root):
    import citypaint
    return citypaint.make(root)
