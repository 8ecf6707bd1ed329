"""The soft body: a regular dodecahedron on the unit sphere, each pentagon cut into three triangles."""
import itertools
import math

import numpy as np

from obj import Mesh

GOLDEN = (1 + math.sqrt(5)) / 2


def corners():
    cube = [np.array(c, float) for c in itertools.product((-1, 1), repeat=3)]
    rest = []
    for a, b in itertools.product((-1, 1), repeat=2):
        long, short = a * GOLDEN, b / GOLDEN
        rest += [np.array(c) for c in ((0, short, long), (short, long, 0), (long, 0, short))]
    return np.array(cube + rest) / math.sqrt(3)


def face_axes():
    for a, b in itertools.product((-1, 1), repeat=2):
        for c in ((a, 0, b * GOLDEN), (0, b * GOLDEN, a), (b * GOLDEN, a, 0)):
            yield np.array(c) / np.linalg.norm(c)


def pentagon(points, axis):
    """The five corners of the face on this axis, counter-clockwise seen from outside."""
    heights = points @ axis
    ring = [p for p, h in zip(points, heights) if h > heights.max() - 1e-6]
    u = ring[0] - axis * (ring[0] @ axis)
    v = np.cross(axis, u)
    return sorted(ring, key=lambda p: math.atan2(p @ v, p @ u))


def build():
    mesh, points = Mesh(), corners()
    for axis in face_axes():
        ring = pentagon(points, axis)
        for i in (1, 2, 3):
            texcoords = [(0.5 + 0.5 * math.cos(a), 0.5 + 0.5 * math.sin(a))
                         for a in (0, 2 * math.pi * i / 5, 2 * math.pi * (i + 1) / 5)]
            mesh.triangle((ring[0], ring[i], ring[i + 1]), texcoords, [axis] * 3)
    return mesh


def make(root):
    return build().write(root / "dode.obj", "regular dodecahedron on the unit sphere")
