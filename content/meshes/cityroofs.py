"""What stands on roofs: tanks, masts, plant, lanterns, signs."""
import numpy as np

import cityatlas as atlas
from citybuild import rectangle, ring


def water_tank(builder, x, z, y):
    body = ring(x, z, 4.0, 6)
    builder.plain(ring(x, z, 2.4, 4), y, ring(x, z, 2.4, 4), y + 5, column=64, cap=False)
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
    board(builder, x, z, y, facing, builder.signs % atlas.SIGNS, width)
    builder.signs += 1


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
