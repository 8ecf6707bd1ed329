"""woods.jpg: deep woods before a low sun, with light standing in the air between the trunks."""

import numpy

import art
import studio

SUN = (0.56, 0.36)  # where the sun stands in the picture, from the top left


def ground(x, y):
    return (
        0.35 * numpy.sin(x * 0.31 + 1.3) * numpy.cos(y * 0.23)
        + 0.18 * numpy.sin(x * 0.9 + y * 0.6)
        + 0.010 * (abs(x) ** 1.7)
        + 0.020 * y
    )


def trunk(random, x, y, radius, height, lean):
    """A tapering stem with bark furrows and roots; rows upwards, columns round."""
    rows, columns = 90, 64
    t, turn = numpy.meshgrid(
        numpy.linspace(0, 1, rows) ** 1.4, numpy.linspace(0, 2 * numpy.pi, columns, endpoint=False), indexing="ij"
    )
    phase = random.uniform(0, 7, 6)
    roots = (
        0.55
        * numpy.exp(-t * height / (radius * 2.0))
        * (1 + 0.55 * numpy.cos(turn * 5 + phase[0]) * numpy.exp(-t * height / (radius * 1.5)))
    )
    furrows = (
        0.055
        * numpy.cos(turn * 19 + 3 * numpy.sin(t * 40 + phase[1]) + phase[2])
        * (0.6 + 0.4 * numpy.sin(t * 97 + turn * 3))
    )
    knots = 0.05 * numpy.sin(t * 23 + phase[3] + 2 * numpy.cos(turn + phase[4]))
    r = radius * (1 - 0.45 * t) * (1 + roots + furrows + knots)
    bend = radius * 1.3 * numpy.sin(t * 3.1 + phase[5])
    px = x + lean[0] * t * height + bend + r * numpy.cos(turn)
    py = y + lean[1] * t * height + r * numpy.sin(turn)
    pz = ground(x, y) - 0.4 + t * height
    corner = numpy.arange(rows * columns).reshape(rows, columns)
    right = numpy.roll(corner, -1, 1)
    quads = numpy.stack([corner[:-1], right[:-1], right[1:], corner[1:]], -1).reshape(-1, 4)
    return numpy.stack([px, py, pz], -1).reshape(-1, 3), quads


def blades(random, centres, size, upright):
    """A leaf for each centre: a bent quad with a random turn."""
    n = len(centres)
    turn = random.uniform(0, 2 * numpy.pi, n)
    tip = numpy.c_[numpy.cos(turn), numpy.sin(turn), random.uniform(*upright, n)]
    tip /= numpy.linalg.norm(tip, axis=1, keepdims=True)
    side = numpy.c_[-numpy.sin(turn), numpy.cos(turn), random.uniform(-0.4, 0.4, n)]
    length = size * random.uniform(0.5, 1.3, n)[:, None]
    base = centres
    middle = centres + tip * length * 0.5
    top = centres + tip * length - [0, 0, 1] * length * 0.25
    vertices = numpy.stack([base, middle - side * length * 0.22, top, middle + side * length * 0.22], 1).reshape(
        -1, 3
    )
    return vertices, numpy.arange(4 * n).reshape(n, 4)


def fern(random, x, y, size):
    """Centres and leaves of one fern: arching fronds with leaflets on both sides."""
    parts = []
    for turn in numpy.arange(random.integers(6, 10)) * 2.4 + random.uniform(0, 7):
        t = numpy.linspace(0.12, 1, 20)
        reach, rise = size * t, size * (1.1 * t - 0.95 * t * t)
        spine = numpy.c_[x + reach * numpy.cos(turn), y + reach * numpy.sin(turn), ground(x, y) + rise]
        across = numpy.array([-numpy.sin(turn), numpy.cos(turn), 0])
        along = numpy.gradient(spine, axis=0)
        along /= numpy.linalg.norm(along, axis=1, keepdims=True)
        width = (size * 0.30 * numpy.sin(numpy.pi * (0.08 + 0.92 * t)) + 0.01)[:, None]
        for side in (-1, 1):
            out = across * side * width + along * width * 0.5 - [0, 0, 1] * width * 0.25
            half = along * size * 0.022
            parts.append(
                numpy.stack(
                    [spine - half, spine + out * 0.5 - half * 1.2, spine + out, spine + out * 0.5 + half * 1.2], 1
                )
            )
    return numpy.concatenate(parts).reshape(-1, 3)


def merge(meshes):
    offset, vertices, quads = 0, [], []
    for v, q in meshes:
        vertices.append(v)
        quads.append(q + offset)
        offset += len(v)
    return numpy.concatenate(vertices), numpy.concatenate(quads)


def forest():
    random = numpy.random.default_rng(20)
    near = [
        (-3.9, 3.2, 0.62),
        (4.7, 4.6, 0.55),
        (-1.75, 9.0, 0.42),
        (2.9, 11.5, 0.46),
        (-6.6, 8.5, 0.50),
        (7.6, 9.5, 0.52),
    ]
    far = []
    while len(far) < 120:
        x, y = random.uniform(-44, 44), random.uniform(13, 78)
        if abs(x - 1.2 - 0.05 * y) > 1.0 + 0.02 * y and abs(x) < y * 0.72 + 4:
            far.append((x, y, random.uniform(0.22, 0.5)))
    stems = [
        trunk(random, x, y, r, random.uniform(17, 24), random.uniform(-0.035, 0.035, 2)) for x, y, r in near + far
    ]
    leaves = []
    for x, y, r in near[2:] + far:
        count = 700 if y < 40 else 350
        around = random.standard_normal((count, 3)) * [1.9, 1.9, 2.6] + [x, y, ground(x, y) + random.uniform(7, 13)]
        leaves.append(blades(random, around[around[:, 2] > 4.2 + 0.05 * y], 0.42, (-0.6, 0.4)))
    for x, y, r in far[::3]:
        bush = random.standard_normal((350, 3)) * [1.0, 1.0, 0.55] + [x + 1.5, y - 1, ground(x + 1.5, y - 1) + 0.7]
        leaves.append(blades(random, bush, 0.28, (-0.3, 0.8)))
    overhang = random.standard_normal((2600, 3)) * [2.6, 0.9, 0.6] + [-3.4, 5.0, 4.6]
    leaves.append(blades(random, overhang, 0.20, (-0.8, 0.1)))
    overhang = random.standard_normal((2600, 3)) * [2.2, 0.9, 0.5] + [4.6, 6.0, 5.2]
    leaves.append(blades(random, overhang, 0.22, (-0.8, 0.1)))
    ferns = []
    while len(ferns) < 420:
        x, y = random.uniform(-14, 14), random.uniform(1.6, 30)
        if abs(x - 0.3 - 0.05 * y) > 0.75:
            v = fern(random, x, y, random.uniform(0.45, 0.95))
            ferns.append((v, numpy.arange(len(v)).reshape(-1, 4)))
    litter = random.uniform((-16, 0.5, 0), (16, 40, 0), (26000, 3))
    litter[:, 2] = ground(litter[:, 0], litter[:, 1])
    return merge(stems), merge(leaves), merge(ferns), blades(random, litter, 0.11, (0.05, 0.8))


def leafy(name, colour, through):
    material = studio.matter(name, colour, 0.6)
    nodes, links = material.node_tree.nodes, material.node_tree.links
    thin, both = nodes.new("ShaderNodeBsdfTranslucent"), nodes.new("ShaderNodeMixShader")
    thin.inputs["Color"].default_value = (*through, 1)
    both.inputs["Fac"].default_value = 0.55
    links.new(nodes["Principled BSDF"].outputs[0], both.inputs[1])
    links.new(thin.outputs[0], both.inputs[2])
    links.new(both.outputs[0], nodes["Material Output"].inputs["Surface"])
    return material


def scene(clear):
    """The woods in their light, or with clear the share of light that gets through the haze."""
    import bpy

    stems, leaves, ferns, litter = forest()
    bark = studio.matter("bark", (0.085, 0.055, 0.035), 0.85)
    studio.mesh("stems", *stems, bark)
    studio.mesh("leaves", *leaves, leafy("leaf", (0.05, 0.10, 0.02), (0.35, 0.42, 0.05)), False)
    studio.mesh("ferns", *ferns, leafy("fern", (0.05, 0.13, 0.03), (0.22, 0.42, 0.06)), False)
    studio.mesh("litter", *litter, leafy("litter", (0.12, 0.06, 0.025), (0.30, 0.12, 0.03)), False)
    axis = numpy.linspace(-50, 50, 500)
    x, y = numpy.meshgrid(axis, numpy.linspace(92, -8, 500))
    heights = ground(x, y) + 0.02 * art.tilenoise(500, 500, 1.0, 3)
    vertices, quads = studio.heightfield(heights, 100, 100)
    studio.mesh("soil", vertices + [0, 42, 0], quads, studio.matter("soil", (0.035, 0.035, 0.016), 0.95))
    studio.camera((0.2, -2.2, 1.55), (0.45, 20, 3.6), 30, focus=(0, 7.0, 2), fstop=0.9)
    if clear:
        view = bpy.context.view_layer
        material = bpy.data.materials.new("clear")
        material.use_nodes = True
        nodes, links = material.node_tree.nodes, material.node_tree.links
        nodes.clear()
        eye, power = nodes.new("ShaderNodeCameraData"), nodes.new("ShaderNodeMath")
        shine, out = nodes.new("ShaderNodeEmission"), nodes.new("ShaderNodeOutputMaterial")
        power.operation, power.inputs[0].default_value = "POWER", 0.955
        links.new(eye.outputs["View Distance"], power.inputs[1])
        links.new(power.outputs[0], shine.inputs["Color"])
        links.new(shine.outputs[0], out.inputs["Surface"])
        view.material_override = material
        return
    sun = bpy.data.lights.new("sun", "SUN")
    sun.energy, sun.color, sun.angle = 9.0, (1.0, 0.62, 0.28), 0.03
    studio.put("sun", sun, rotation=(-71, 0, -9))
    studio.sky((0.10, 0.22, 0.24), 0.55)


def rays(through, size=60):
    """Light from the sun that reaches the eye past the trunks: the openings smeared away from the sun."""
    from scipy import ndimage

    height, width = through.shape
    y, x = numpy.mgrid[0:height, 0:width].astype(float)
    sx, sy = SUN[0] * width, SUN[1] * height
    total = numpy.zeros_like(through)
    for step in range(size):
        t = step / size * 0.92
        total += ndimage.map_coordinates(through, [y + (sy - y) * t, x + (sx - x) * t], order=1) * (1 - 0.5 * t)
    return total / size


def make():
    light = studio.shoot("woods", "scene", 854, 480, 100, clear=False)[..., :3]
    clear = studio.shoot("woods", "scene", 854, 480, 48, clear=True)[..., 0]
    art.save(develop(light, clear), "woods.jpg")


def develop(light, clear):
    x, y = art.grid(854, 480)
    away = numpy.hypot((x - SUN[0]) * 1.78, y - SUN[1])
    air = (
        numpy.exp(-((away / 0.10) ** 2))[..., None] * numpy.array((5.0, 3.3, 1.5))
        + numpy.exp(-away / 0.16)[..., None] * numpy.array((1.8, 0.85, 0.24))
        + numpy.exp(-away / 0.50)[..., None] * numpy.array((0.16, 0.15, 0.06))
        + numpy.array((0.008, 0.024, 0.020))
    )
    haze = (1 - clear) ** 1.6
    hazy = light * clear[..., None] ** 0.6 + air * haze[..., None]
    open_ = art.smooth(0.72, 0.97, 1 - clear)
    beams = rays(open_ * numpy.exp(-away / 0.25)) * (0.35 + 0.65 * numpy.sqrt(haze))
    hazy = hazy + beams[..., None] * numpy.array((1.5, 0.95, 0.36)) * (0.9 * numpy.exp(-away / 0.45))[..., None]
    hazy = hazy + 0.10 * art.blur(hazy, 14)
    edge = 1 - 0.5 * art.smooth(0.35, 1.05, numpy.hypot((x - 0.5) * 1.5, y - 0.5))
    return art.grain(art.film(hazy * edge[..., None], 0.8), 0.012, 6)
