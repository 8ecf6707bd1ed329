"""ripsilu.jpg: the moment after a drop fell into molten orange: a crown, its rings, one pearl in the air."""

import numpy

import art
import studio


def surface(size=900, width=12.0):
    axis = numpy.linspace(-width / 2, width / 2, size)
    x, y = numpy.meshgrid(axis, -axis)
    r = numpy.hypot(x, y)
    rings = 0.11 * numpy.cos((r - 1.2) * 7.2 - 0.6 * r) * numpy.exp(-r * 0.42) * art.smooth(0.9, 1.5, r)
    bowl = -0.55 * numpy.exp(-((r / 0.72) ** 4))
    swell = 0.012 * numpy.sin(x * 2.1 + 0.5) * numpy.sin(y * 1.7)
    return studio.heightfield(rings + bowl + swell, width, width)


def crown(jets=13, rows=70, columns=520):
    """The thin wall that rises from the bowl's rim, torn into jets at its lip."""
    random = numpy.random.default_rng(11)
    phase = 2 * numpy.pi * numpy.arange(jets) / jets + random.uniform(-0.08, 0.08, jets)
    height = random.uniform(0.75, 1.15, jets)
    turn, t = numpy.meshgrid(numpy.linspace(0, 2 * numpy.pi, columns, endpoint=False), numpy.linspace(0, 1, rows))
    near = sum(h * numpy.exp(56.0 * (numpy.cos(turn - p) - 1)) for p, h in zip(phase, height))
    top = 0.52 + 0.42 * near
    radius = 0.86 + 0.42 * t**1.6 + 0.10 * near * t**3 + 0.03 * numpy.sin(turn * 3 + 1) * t
    z = -0.10 + (top + 0.10) * t
    thick = 0.10 * (1 - t) ** 2 + 0.030 + 0.022 * art.smooth(0.80, 1.0, t)
    outer = numpy.stack([(radius + thick) * numpy.cos(turn), (radius + thick) * numpy.sin(turn), z], -1)
    inner = numpy.stack([(radius - thick) * numpy.cos(turn), (radius - thick) * numpy.sin(turn), z], -1)[::-1]
    sheet = numpy.concatenate([outer, inner])
    corner = numpy.arange(sheet.shape[0] * columns).reshape(sheet.shape[0], columns)
    right = numpy.roll(corner, -1, 1)
    quads = numpy.stack([corner[:-1], right[:-1], right[1:], corner[1:]], -1).reshape(-1, 4)
    tips = [
        ((1.28 + 0.10 * h) * numpy.cos(p), (1.28 + 0.10 * h) * numpy.sin(p), 0.53 + 0.42 * h)
        for p, h in zip(phase, height)
    ]
    return sheet.reshape(-1, 3), quads, tips


def scene():
    juice = studio.matter("juice", (0.62, 0.17, 0.015), 0.10, Specular=0.7, Clearcoat=0.6, Clearcoat_Roughness=0.03)
    studio.mesh("surface", *surface(), juice)
    vertices, quads, tips = crown()
    studio.mesh("crown", vertices, quads, juice)
    random = numpy.random.default_rng(3)
    for number, (x, y, z) in enumerate(tips):
        size = random.uniform(0.055, 0.085)
        studio.ball("bead", size, juice, (x, y, z + 0.01))
        flight = random.uniform(1.10, 1.5)
        studio.ball(
            "spray", size * random.uniform(0.45, 0.8), juice, (x * flight, y * flight, z + random.uniform(0.12, 0.75))
        )
    studio.ball("pearl", 0.24, juice, (0.05, 0.1, 1.62))
    studio.ball("pearl", 0.09, juice, (0.02, 0.1, 2.12))
    studio.camera((-0.4, -7.4, 2.2), (0.40, 0, 0.72), 44, focus=(0, -0.9, 0.6), fstop=0.35)
    studio.lamp((-5.0, 2.5, 4.2), (0, 0, 0.4), art.FLASH, 900, 2.2, "RECTANGLE", 0.5)
    studio.lamp((5.5, 3.5, 2.2), (0, 0, 0.4), (0.05, 0.45, 0.70), 420, 2.6)
    studio.lamp((0.5, 7.5, 1.8), (0, 0, 0.8), (1.0, 0.42, 0.12), 900, 5.0, "RECTANGLE", 0.25)
    studio.sky((0.02, 0.01, 0.006), 0.4)


def make():
    light = studio.shoot("ripsilu", "scene", 854, 480, 160)[..., :3]
    art.save(art.grain(art.film(light + 0.10 * art.blur(light, 10)), 0.012, 3), "ripsilu.jpg")
