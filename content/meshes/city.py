"""The city: an 800 x 800 tile that repeats, four by four blocks, each wholly inside its own 200 x 200."""
import random

import numpy as np

import cityatlas as atlas
from obj import Mesh

BLOCK, BLOCKS = 200.0, 4
STREET = 15.0  # half of a street's width
EDGE = 2e-5  # a block ends this much short of the next: a corner on the border counts as the next block's
UP = np.array((0.0, 1.0, 0.0))


class Builder:
    def __init__(self):
        self.mesh = Mesh()

    def ground(self, x0, z0, x1, z1, strip, along_z=False, y=0.0):
        corners = [(x0, y, z0), (x0, y, z1), (x1, y, z1), (x1, y, z0)]
        scale = atlas.TEXELS_PER_UNIT
        rows = atlas.STRIPS[strip][1]
        uvs = []
        for x, _, z in corners:
            a, b = (x - x0, z - z0) if not along_z else (z - z0, x - x0)
            uvs.append(atlas.uv(strip, a * scale, min(b * scale, rows)))
        self.mesh.quad(corners, uvs, UP)

    def box(self, x0, z0, x1, z1, low, high, strip, shift=(0, 0)):
        walls = [((x0, z1), (x1, z1), (0, 0, 1)), ((x1, z1), (x1, z0), (1, 0, 0)),
                 ((x1, z0), (x0, z0), (0, 0, -1)), ((x0, z0), (x0, z1), (-1, 0, 0))]
        floors = max(1, round((high - low) / 8))
        for (ax, az), (bx, bz), normal in walls:
            columns = min(8, max(1, round((abs(bx - ax) + abs(bz - az)) / 8)))
            u0, u1, v0, v1 = shift[0] * 16, (shift[0] + floors) * 16, 0, columns * 16
            self.mesh.quad([(ax, low, az), (bx, low, bz), (bx, high, bz), (ax, high, az)],
                           [atlas.uv(strip, u0, v0), atlas.uv(strip, u0, v1),
                            atlas.uv(strip, u1, v1), atlas.uv(strip, u1, v0)], np.array(normal, float))
        self.ground(x0, z0, x1, z1, "roof", y=high)


def block_edges(index):
    low = -400 + BLOCK * index
    return low, low + BLOCK - (EDGE if index < BLOCKS - 1 else 0)


def clearance_height(x0, x1, z0, z1):
    """How high one may build on this ground, for the camera's sake."""
    height = 460.0
    for shift in (-800, 0, 800):
        if x0 + shift < 70 and x1 + shift > -70:
            height = min(height, 160)
        if x0 + shift < -325 and x1 + shift > -415:
            height = min(height, 270)
        if z0 + shift < 250 and z1 + shift > 90:
            height = min(height, 250)
    return height


def build_block(builder, column, row, rng):
    x0, x1 = block_edges(column)
    z0, z1 = block_edges(row)
    s = STREET
    for a0, a1 in ((x0, x0 + s), (x1 - s, x1)):
        builder.ground(a0, z0, a1, z1, "road", True)
    for b0, b1 in ((z0, z0 + s), (z1 - s, z1)):
        builder.ground(x0 + s, b0, x1 - s, b1, "road")
    builder.ground(x0 + s, z0 + s, x1 - s, z1 - s, "pavement")
    step = (BLOCK - 2 * s) / 3
    for i in range(3):
        for j in range(3):
            a, b = x0 + s + i * step + 4, z0 + s + j * step + 4
            w, d = step - 8 - rng.uniform(0, 8), step - 8 - rng.uniform(0, 8)
            top = min(rng.choice((60, 90, 130, 200, 280, 380)) * rng.uniform(0.9, 1.2),
                      clearance_height(a, a + w, b, b + d))
            builder.box(a, b, a + w, b + d, 0, top, rng.choice(atlas.FACADES))


def build():
    builder, rng = Builder(), random.Random(8)
    for row in range(BLOCKS):
        for column in range(BLOCKS):
            build_block(builder, column, row, rng)
    return builder.mesh


def make_mesh(root):
    return build().write(root / "city08.obj", "city tile, 800 x 800, block by block")


def make_texture(root):
    import citypaint
    return citypaint.make(root)
