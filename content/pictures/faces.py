"""face.jpg and kallotausta.jpg: a sleeper and a skull in the same pool of dark water.

Both float in the same place, in the same pose and light, so that one can melt into the other.
The face is bright on dark and fills the middle, where the points of the flow end up.
"""

import numpy

import art
import studio


TILT = 15.0  # degrees, as in sculpt.cpp


def upright(vertices):
    """Points of a head afloat in the head's own coordinates, mirrored to its left half."""
    a = numpy.radians(TILT)
    x, y, z = vertices.T
    return abs(x), numpy.cos(a) * y - numpy.sin(a) * z, numpy.sin(a) * y + numpy.cos(a) * z + 0.05


def spot(x, y, centre, reach):
    return numpy.exp(-(((x - centre[0]) / reach[0]) ** 2) - ((y - centre[1]) / reach[1]) ** 2)


def complexion(vertices):
    x, y, z = upright(vertices)
    skin = numpy.tile((0.66, 0.40, 0.27), (len(x), 1))
    lips = art.smooth(0.8, 0.35, numpy.hypot(x / 0.205, (y + 0.530 + 0.10 * x) / 0.100)) * (z > 0.5)
    brow = spot(x, y - 0.05 * numpy.sin((x - 0.12) * 9), (0.27, 0.235), (0.14, 0.032)) * (z > 0.2)
    lash = (
        numpy.exp(-(((y - 0.010 - 0.9 * (x - 0.27) ** 2) / 0.016) ** 2))
        * art.smooth(0.17, 0.12, abs(x - 0.27))
        * (z > 0.3)
    )
    socket = spot(x, y, (0.265, 0.10), (0.17, 0.085)) * (z > 0.2)
    flush = spot(x, y, (0.40, -0.20), (0.17, 0.15)) + 0.8 * spot(x, y, (0.0, -0.24), (0.13, 0.09))
    for share, colour in (
        (0.35 * flush, (0.72, 0.24, 0.14)),
        (0.40 * socket, (0.34, 0.17, 0.13)),
        (0.85 * lips, (0.50, 0.085, 0.070)),
        (0.88 * brow, (0.10, 0.045, 0.025)),
        (0.85 * lash, (0.05, 0.02, 0.012)),
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
    tooth = (abs(y + 0.54) < 0.10) & (z > 0.42) & (x < 0.42)
    return art.mix(bone, (0.70, 0.62, 0.46), 0.6 * tooth[:, None])


def pool(shape, cell=0.01):
    water = studio.matter("water", (0.006, 0.004, 0.003), 0.06, Specular=0.9)
    solid = studio.sculpt(shape, cell)
    coat = complexion if shape == "face" else ivory
    studio.mesh(
        shape, *solid, studio.painted(studio.matter(shape, (1, 1, 1), 0.40, Specular=0.45)), paint=coat(solid[0])
    )
    studio.mesh("pool", *studio.sculpt(shape + "pool", 0.014), water)
    studio.camera((0.0, -0.02, 9.0), (0.0, -0.02, 0), 83)
    studio.lamp((-4.5, 3.2, 3.6), (0, 0, 0.4), art.FLASH, 520, 1.6)
    studio.lamp((4.5, -0.5, 1.6), (0, 0, 0.4), (0.10, 0.55, 0.80), 110, 2.2)
    for radius, strength in ((1.0, 1.2), (2.6, 0.8)):
        turn = numpy.linspace(0, 2 * numpy.pi, 97)[:-1]
        ring = numpy.c_[radius * numpy.cos(turn), radius * numpy.sin(turn), numpy.full(96, 9.5)]
        studio.pipe("ring", ring, 0.10, studio.glow("ring", art.EMBER, strength), closed=True)
    studio.lamp((-1.0, 6.0, 5.0), (0, 0, 0), (1.0, 0.45, 0.16), 60, 5.0)


def make():
    for shape, name in (("face", "face.jpg"), ("skull", "kallotausta.jpg")):
        light = studio.shoot("faces", "pool", 854, 500, 110, shape=shape)[..., :3]
        glow = art.blur(light, 12) * 0.10
        art.save(art.grain(art.film(light + glow, 1.1), 0.012, 7), name)
