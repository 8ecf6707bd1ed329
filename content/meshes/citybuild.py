"""What the city is put together from: footprints seen from above, walls with whole windows, roofs, small solids."""
import math
import random

import numpy as np

import cityatlas as atlas
from obj import Mesh

CEILING = 575.0  # the show takes every block to be 585 high


def unit(v):
    v = np.asarray(v, float)
    return v / np.linalg.norm(v)


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


def divided(modules, most):
    """In how many parts a wall so many modules wide is built of a strip `most` wide, and how wide each shows it."""
    parts = max(1, math.ceil(modules / (most + 0.5)))
    return parts, min(most, max(1, round(modules / parts)))


def tiers(floor, floors, most):
    """A wall's quads, one over the other: from and to which of its floors, and where that begins in the picture.

    Of a wall higher than its picture each tier but the lowest shows the picture's upper end, far from the shops.
    """
    first = min(floors, most - (atlas.SHOPS if floor else 0))
    yield 0, first, min(floor, most - first)
    for low in range(first, floors, most - atlas.SHOPS):
        high = min(floors, low + most - atlas.SHOPS)
        yield low, high, most - (high - low)


class Builder:
    def __init__(self, passes_near, feet):
        """passes_near: whether the camera comes close to the front of a wall, by its four corners.
        feet: by the number of a wall's quad, the height from which on it is wanted.
        """
        self.mesh = Mesh()
        self.rng = random.Random(8)
        self.passes_near, self.feet = passes_near, feet
        self.walls = []  # of each quad, its faces
        self.signs = 0  # put up so far

    def wall(self, a, b, c, d, facade, jump, floor, floors, normals=None):
        """a, b (low), c, d (high); whole windows across and up; as few quads as the picture is large enough for."""
        near = facade in atlas.FINE_COLUMNS and self.passes_near((a, b, c, d))
        strip = atlas.fine(facade) if near else facade
        most, up, across = atlas.modules(strip)
        modules = math.hypot(b[0] - a[0], b[2] - a[2]) / atlas.MODULE
        parts, columns = divided(modules, most)
        if normals is None:
            normals = [unit(np.cross(np.subtract(b, a), np.subtract(d, a))).round(3)] * 4
        mix = lambda p, q, t: tuple(p[i] + (q[i] - p[i]) * t for i in range(3))
        first = self.draw_column(modules, 2 if near else 5)
        for part in range(parts):
            v0 = (first + part) % (most - columns + 1) * across
            v1 = v0 + columns * across
            ends = [(mix(a, b, s), mix(d, c, s)) for s in (part / parts, (part + 1) / parts)]
            for low, high, picture in tiers(floor, floors, atlas.FLOORS[facade]):
                # The foot is cut off between two floors.
                seen = (self.feet.get(len(self.walls), 0) - a[1]) / (d[1] - a[1]) * floors
                foot = min(max(low, int(seen)), high - 1)
                u0, u1 = (picture + foot - low) * up, (picture + high - low) * up
                corners = [mix(*ends[side], level / floors)
                           for side, level in ((0, foot), (1, foot), (1, high), (0, high))]
                uvs = [atlas.uv(strip, *place, jump) for place in ((u0, v0), (u0, v1), (u1, v1), (u1, v0))]
                self.walls.append([len(self.mesh.faces), len(self.mesh.faces) + 1])
                self.mesh.quad(corners, uvs, normals)

    def draw_column(self, modules, most):
        """Where in its picture a wall begins. Draws once for every `most` modules: the city's plan hangs on that."""
        parts, columns = divided(modules, most)
        return sum(self.rng.randrange(0, most - columns + 1) for _ in range(parts))

    def prism(self, low, y0, high, y1, skin, floor=0, normals=None):
        floors = max(1, round((y1 - y0) / atlas.MODULE))
        walls = []
        for i in range(len(low)):
            j = (i + 1) % len(low)
            walls.append(((low[i][0], y0, low[i][1]), (low[j][0], y0, low[j][1]),
                          (high[j][0], y1, high[j][1]), (high[i][0], y1, high[i][1])))
        facade = skin.facade
        if any(self.passes_near(corners) for corners in walls):
            facade = atlas.NEAR_BY.get(facade, facade)
        for i, corners in enumerate(walls):
            j = (i + 1) % len(low)
            self.wall(*corners, facade, skin.jump, floor, floors,
                      None if normals is None else [normals[i], normals[j], normals[j], normals[i]])

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
