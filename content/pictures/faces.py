"""face.jpg and kallotausta.jpg: a sleeper and a skull in the same pool of dark water.

Both float in the same place, in the same pose and light, so that one can melt into the other.
The face is bright on dark and fills the middle, where the points of the flow end up.
"""

import numpy

import art
import studio


TILT = 6.0  # degrees, as in sculpt.cpp


def upright(vertices):
    """Points of a head afloat in the head's own coordinates, mirrored to its left half."""
    a = numpy.radians(TILT)
    x, y, z = vertices.T
    return abs(x), numpy.cos(a) * y - numpy.sin(a) * z, numpy.sin(a) * y + numpy.cos(a) * z + 0.05


def spot(x, y, centre, reach):
    return numpy.exp(-(((x - centre[0]) / reach[0]) ** 2) - ((y - centre[1]) / reach[1]) ** 2)


def mouth(x, y):
    """How far lips reach: 0 where they meet, 1 at their rims; as in sculpt.cpp."""
    along = numpy.clip(1 - (x / 0.205) ** 2, 0, 1)
    meet = -0.450 - 0.008 * numpy.exp(-((x / 0.035) ** 2)) + 0.7 * numpy.maximum(x - 0.09, 0) ** 2
    upper = 0.062 * along - 0.012 * numpy.exp(-((x / 0.024) ** 2))
    lower = 0.082 * along**0.85
    over = y - meet
    return numpy.where(over > 0, over / (upper + 0.001), -over / (lower + 0.001))


def hairline(x, y):
    """As in sculpt.cpp."""
    return y - 0.70 + 0.9 * x**2 + 9 * numpy.maximum(x - 0.48, 0) ** 2 + 0.05 * art.smooth(0.05, 0.0, x)


def complexion(vertices):
    x, y, z = upright(vertices)
    skin = numpy.tile((0.62, 0.36, 0.25), (len(x), 1))
    lips = art.smooth(1.20, 0.65, mouth(x, y)) * art.smooth(0.208, 0.160, x) * (z > 0.4)
    brow = spot(x, y - 0.05 * numpy.sin((x - 0.12) * 9), (0.275, 0.243), (0.15, 0.034)) * (z > 0.2)
    brow = brow * (0.9 + 0.1 * numpy.sin(110 * x + 130 * y))
    lash = (
        numpy.exp(-(((y - 0.010 - 0.9 * (x - 0.27) ** 2) / 0.016) ** 2))
        * art.smooth(0.17, 0.12, abs(x - 0.27))
        * (z > 0.3)
    )
    socket = spot(x, y, (0.265, 0.10), (0.17, 0.085)) * (z > 0.2)
    flush = spot(x, y, (0.40, -0.17), (0.17, 0.13)) + 0.4 * spot(x, y, (0.0, -0.19), (0.10, 0.07))
    nostril = spot(x, y, (0.060, -0.272), (0.024, 0.014)) * (z > 0.6)
    turn = numpy.arctan2(vertices[:, 0], y + 0.5)
    tress = 0.010 * numpy.sin(turn * 71 + 2) + 0.012 * numpy.sin(turn * 127 + 5 * y) + 0.006 * numpy.sin(turn * 23)
    hair = art.smooth(-0.03, 0.07, hairline(x, y) + tress)
    for share, colour in (
        (0.22 * flush, (0.70, 0.25, 0.17)),
        (0.35 * socket, (0.36, 0.17, 0.13)),
        (0.75 * lips, (0.42, 0.090, 0.075)),
        (1.05 * brow, (0.045, 0.020, 0.011)),
        (0.85 * lash, (0.05, 0.02, 0.012)),
        (0.7 * nostril, (0.14, 0.045, 0.03)),
        (hair, (0.020, 0.009, 0.005)),
    ):
        skin = art.mix(skin, colour, numpy.clip(share, 0, 1)[:, None])
    return skin


def ivory(vertices):
    x, y, z = upright(vertices)
    bone = numpy.tile((0.62, 0.51, 0.36), (len(x), 1))
    stain = numpy.sin(x * 7 + 1) * numpy.sin(y * 5 + 2 * x) * 0.5 + 0.5
    bone = art.mix(bone, (0.46, 0.34, 0.20), 0.35 * stain[:, None])
    hollow = art.smooth(0.50, 0.36, z) * numpy.maximum(
        spot(x, y, (0.28, 0.045), (0.22, 0.20)) > 0.45, spot(x, y, (0.04, -0.19), (0.13, 0.16)) > 0.4
    )
    bone = art.mix(bone, (0.03, 0.015, 0.008), hollow[:, None])
    tooth = (abs(y + 0.48) < 0.09) & (z > 0.42) & (x < 0.42)
    return art.mix(bone, (0.70, 0.62, 0.46), 0.6 * tooth[:, None])


def tresses():
    """Wet hair that drifts from the head: locks of strands, each a thin tube that tapers."""
    random = numpy.random.default_rng(9)
    steps, sides = 28, 5
    along = numpy.linspace(0, 1, steps)
    vertices, quads = [], []
    ring = numpy.arange(sides)
    corner = numpy.arange(steps - 1)[:, None] * sides
    net = numpy.stack(
        [corner + ring, corner + (ring + 1) % sides, corner + sides + (ring + 1) % sides, corner + sides + ring], -1
    ).reshape(-1, 4)
    for lock in numpy.linspace(-0.62, numpy.pi + 0.62, 64):
        lock += random.uniform(-0.05, 0.05)
        reach = random.uniform(0.35, 0.85) + 0.25 * max(numpy.sin(lock), 0)
        phase, swing, bend = random.uniform(0, 6), random.uniform(0.03, 0.10), random.normal(0, 0.45)
        for _ in range(26):
            start = lock + random.normal(0, 0.075)
            far = along * reach * random.uniform(0.55, 1.05)
            close = 1 - 0.75 * along  # strands of a lock meet at its tip
            turn = lock + (start - lock) * close + bend * along**2 * 0.5
            drift = swing * along * numpy.sin(phase + 6.5 * far) + random.normal(0, 0.015) * along
            x = numpy.cos(turn) * (0.60 + far) - numpy.sin(turn) * drift
            y = 0.20 + numpy.sin(turn) * (0.72 + far) + numpy.cos(turn) * drift
            z = 0.13 * (1 - along) ** 3 + 0.016 + 0.012 * random.random() + 0.006 * numpy.sin(phase + 9 * far)
            radius = 0.0060 * (1 - along**3) + 0.0008
            around = 2 * numpy.pi * ring / sides
            side = numpy.stack([-numpy.sin(turn), numpy.cos(turn), 0 * turn], -1)
            tube = numpy.stack([x, y, z], -1)[:, None] + radius[:, None, None] * (
                side[:, None] * numpy.cos(around)[:, None] + numpy.array((0, 0, 1.0)) * numpy.sin(around)[:, None]
            )
            quads.append(net + len(vertices) * steps * sides)
            vertices.append(tube.reshape(-1, 3))
    return numpy.concatenate(vertices), numpy.concatenate(quads)


def pool(shape, cell=0.01):
    water = studio.matter("water", (0.006, 0.004, 0.003), 0.06, Specular=0.9)
    solid = studio.sculpt(shape, cell)
    coat = complexion if shape == "face" else ivory
    stuff = studio.painted(studio.matter(shape, (1, 1, 1), 0.42, Specular=0.42))
    studio.mesh(shape, *solid, stuff, paint=coat(solid[0]))
    if shape == "face":
        studio.mesh("hair", *tresses(), studio.matter("hair", (0.030, 0.012, 0.006), 0.32, Specular=0.6))
    studio.mesh("pool", *studio.sculpt(shape + "pool", 0.014), water)
    studio.camera((0.0, 0.06, 9.0), (0.0, 0.06, 0), 88)
    studio.lamp((-4.5, 3.2, 3.6), (0, 0, 0.4), art.FLASH, 520, 1.6)
    studio.lamp((4.5, -0.5, 1.6), (0, 0, 0.4), (0.10, 0.55, 0.80), 110, 2.2)
    for radius, strength in ((1.0, 1.2), (2.6, 0.8)):
        turn = numpy.linspace(0, 2 * numpy.pi, 97)[:-1]
        ring = numpy.c_[radius * numpy.cos(turn), radius * numpy.sin(turn), numpy.full(96, 9.5)]
        studio.pipe("ring", ring, 0.10, studio.glow("ring", art.EMBER, strength), closed=True)
    studio.lamp((-1.0, 6.0, 5.0), (0, 0, 0), (1.0, 0.45, 0.16), 60, 5.0)


def make():
    for shape, name in (("face", "face.jpg"), ("skull", "kallotausta.jpg")):
        light = studio.shoot("faces", "pool", 854, 500, 200, shape=shape)[..., :3]
        glow = art.blur(light, 12) * 0.10
        art.save(art.grain(art.film(light + glow, 1.1), 0.012, 7), name)
