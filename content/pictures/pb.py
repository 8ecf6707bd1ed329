"""pb.jpg: a ring of fire and its echoes on a wall of turned steel, with their image in the floor.

The soft body hangs in front of the ring's eye, left of the middle; green and blue live on the
other side of the colour circle from everything here.
"""

import numpy

import art
import studio

EYE = (-1.1, 0.0, 3.0)


def scene():
    steel = studio.matter("steel", (0.055, 0.042, 0.034), 0.36, 1.0)
    turn, r = numpy.meshgrid(numpy.linspace(0, 2 * numpy.pi, 513)[:-1], numpy.linspace(0, 1, 420) ** 0.8 * 22)
    random = numpy.random.default_rng(5)
    cut = numpy.interp(r, numpy.linspace(0, 22, 550), random.standard_normal(550).cumsum() * 0.004)
    steps = 0.35 * numpy.floor(r / 2.6) + 0.10 * art.smooth(0.0, 0.08, (r / 2.6) % 1 * 2.6 / 2.6)
    deep = 2.2 - 0.42 * steps + 0.05 * numpy.sin(r * 9) * 0.10 + cut * 0.25
    vertices = numpy.stack([EYE[0] + r * numpy.cos(turn), deep, EYE[2] + r * numpy.sin(turn)], -1).reshape(-1, 3)
    corner = numpy.arange(r.size).reshape(r.shape)
    right = numpy.roll(corner, -1, 1)
    quads = numpy.stack([corner[:-1], corner[1:], right[1:], right[:-1]], -1).reshape(-1, 4)
    studio.mesh("wall", vertices, quads, steel)
    floor = studio.matter("floor", (0.015, 0.012, 0.012), 0.09, 0.0, Specular=0.8)
    size = 500
    wet = art.tilenoise(size, size, 1.8, 9, 2) * 0.010
    studio.mesh("floor", *studio.heightfield(wet + 0.97, 40, 24), floor)
    ring = numpy.linspace(0, 2 * numpy.pi, 257)[:-1]
    circle = numpy.c_[EYE[0] + 1.86 * numpy.cos(ring), numpy.full(256, 0.75), EYE[2] + 1.86 * numpy.sin(ring)]
    studio.pipe("ring", circle, 0.085, studio.glow("ring", (1.0, 0.40, 0.09), 20.0), closed=True)
    outer = numpy.c_[EYE[0] + 2.10 * numpy.cos(ring), numpy.full(256, 0.95), EYE[2] + 2.10 * numpy.sin(ring)]
    studio.pipe("rail", outer, 0.035, studio.matter("rail", (0.5, 0.4, 0.3), 0.2, 1.0), closed=True)
    # The ring's echoes, as a drop leaves them: they carry the fire into the half that the body leaves free.
    for name, radius, deep, thick, strength in (("near", 3.22, 0.95, 0.036, 2.4), ("far", 4.56, 0.75, 0.024, 0.9)):
        echo = numpy.c_[EYE[0] + radius * numpy.cos(ring), numpy.full(256, deep), EYE[2] + radius * numpy.sin(ring)]
        studio.pipe(name, echo, thick, studio.glow(name, (1.0, 0.24, 0.035), strength), closed=True)
    studio.lamp((9, -4, 8), (3, 2, 3), (0.05, 0.40, 0.60), 380, 3.0)
    studio.camera((0.0, -9.0, 3.0), (0.0, 0.0, 3.0), 43, focus=(0, 0.7, 3), fstop=1.2)


def make():
    light = studio.shoot("pb", "scene", 854, 480, 100)[..., :3]
    light = light + 0.07 * art.blur(light, 5) + 0.06 * art.blur(light, 22) + 0.03 * art.blur(light, 70)
    art.save(art.grain(art.film(light, 0.62), 0.012, 4), "pb.jpg")
