"""face.jpg and kallotausta.jpg: a sleeper and a skull in the same pool of dark water.

Both float in the same place, in the same pose and light, so that one can melt into the other.
The face is bright on dark and fills the middle, where the points of the flow end up.
"""

import numpy

import art
import studio


def pool(shape, cell=0.01):
    water = studio.matter("water", (0.006, 0.004, 0.003), 0.06, Specular=0.9)
    if shape == "face":
        skin = studio.matter("skin", (0.66, 0.38, 0.25), 0.40, Specular=0.45)
    else:
        skin = studio.matter("bone", (0.60, 0.50, 0.36), 0.45, Specular=0.4)
    studio.mesh(shape, *studio.sculpt(shape, cell), skin)
    studio.mesh("pool", *studio.sculpt(shape + "pool", 0.014), water)
    studio.camera((0.0, -0.02, 9.0), (0.0, -0.02, 0), 83)
    studio.lamp((-4.5, 3.2, 3.6), (0, 0, 0.4), art.FLASH, 520, 1.6)
    studio.lamp((4.5, -0.5, 1.6), (0, 0, 0.4), (0.10, 0.55, 0.80), 110, 2.2)
    for radius, strength in ((1.0, 1.2), (2.6, 0.8)):
        turn = numpy.linspace(0, 2 * numpy.pi, 97)[:-1]
        ring = numpy.c_[radius * numpy.cos(turn), radius * numpy.sin(turn), numpy.full(96, 9.5)]
        studio.pipe("ring", ring, 0.10, studio.glow("ring", art.EMBER, strength), closed=True)
    studio.lamp((-1.0, 6.0, 5.0), (0, 0, 0), (1.0, 0.45, 0.16), 60, 5.0)


def develop(shape, samples, scale=1):
    light = studio.shoot("faces", "pool", 854 * scale, 500 * scale, samples, shape=shape)[..., :3]
    return light


def make():
    for shape, name in (("face", "face.jpg"), ("skull", "kallotausta.jpg")):
        light = develop(shape, 160)
        glow = art.blur(light, 12) * 0.10
        art.save(art.grain(art.film(light + glow, 1.1), 0.012, 7), name)
