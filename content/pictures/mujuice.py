"""mujuice.jpg and mujuice2.jpg: a glass of juice, and the title that tears over it like bad tape.

What is seen is the still picture plus the torn one less a half: the torn one is grey 0.5 where it
must change nothing, brighter where it adds and darker where it takes away. Both for a buffer of
512 x 256 whose picture is shown at 89 to 50.
"""

import numpy

import art
import studio

WIDTH, HEIGHT = 512, 256


def turned(profile, columns=128):
    """A lathed solid: profile is (radius, height) pairs from the axis outwards and back."""
    profile = numpy.array(profile, float)
    turn = numpy.linspace(0, 2 * numpy.pi, columns, endpoint=False)
    vertices = numpy.stack(
        [
            profile[:, :1] * numpy.cos(turn),
            profile[:, :1] * numpy.sin(turn),
            numpy.repeat(profile[:, 1:], columns, 1),
        ],
        -1,
    )
    corner = numpy.arange(vertices.shape[0] * columns).reshape(-1, columns)
    right = numpy.roll(corner, -1, 1)
    return vertices.reshape(-1, 3), numpy.stack([corner[:-1], right[:-1], right[1:], corner[1:]], -1).reshape(-1, 4)


def cutface(size=512, sectors=10):
    """The flesh of a halved orange: sectors of juice bags between white skins, in a rind."""
    x, y = art.grid(size, size)
    x, y = x * 2 - 1, y * 2 - 1
    r, turn = numpy.hypot(x, y), numpy.arctan2(y, x) / (2 * numpy.pi) * sectors
    turn = turn + 0.16 * numpy.sin(turn * 2.1 + 1)
    across = abs(turn % 1 - 0.5) * 2
    skin = art.smooth(0.90, 0.98, across + 0.05 / (r + 0.05)) + art.smooth(0.80, 0.84, r) + art.smooth(0.14, 0.09, r)
    bags = art.tilenoise(size, size, 0.9, 5, 12)
    flow = numpy.sin(turn * 70 + 3.0 * bags) * 0.12 + 0.10 * bags
    flesh = art.mix((0.95, 0.30, 0.02), (1.0, 0.55, 0.10), numpy.clip(0.5 + flow + 0.3 * (1 - r), 0, 1))
    face = art.mix(flesh, (1.0, 0.80, 0.50), numpy.clip(skin, 0, 1))
    return art.mix(face, (0.95, 0.36, 0.02), art.smooth(0.93, 0.96, r))


def laid(name, picture, **inputs):
    """A material whose colour is a picture, laid over the object's own x and y from -1 to 1."""
    import bpy

    height, width = picture.shape[:2]
    image = bpy.data.images.new(name, width, height, float_buffer=True)
    image.colorspace_settings.name = "Non-Color"
    pixels = numpy.dstack([art.linear(picture), numpy.ones((height, width))])[::-1]
    image.pixels.foreach_set(numpy.ascontiguousarray(pixels, numpy.float32).ravel())
    material = studio.matter(name, (1, 1, 1), **inputs)
    nodes, links = material.node_tree.nodes, material.node_tree.links
    place, lay, paint = (
        nodes.new("ShaderNodeTexCoord"),
        nodes.new("ShaderNodeMapping"),
        nodes.new("ShaderNodeTexImage"),
    )
    lay.inputs["Scale"].default_value, lay.inputs["Location"].default_value = (0.5, 0.5, 0.5), (0.5, 0.5, 0)
    paint.image = image
    links.new(place.outputs["Object"], lay.inputs["Vector"])
    links.new(lay.outputs[0], paint.inputs["Vector"])
    links.new(paint.outputs["Color"], nodes["Principled BSDF"].inputs["Base Color"])
    return material


def peel():
    rind = studio.matter("rind", (0.95, 0.26, 0.012), 0.36, Specular=0.5)
    nodes, links = rind.node_tree.nodes, rind.node_tree.links
    pores, bump = nodes.new("ShaderNodeTexNoise"), nodes.new("ShaderNodeBump")
    place = nodes.new("ShaderNodeTexCoord")
    pores.inputs["Scale"].default_value, pores.inputs["Detail"].default_value = 26.0, 1.0
    bump.inputs["Strength"].default_value, bump.inputs["Distance"].default_value = 0.35, 0.03
    links.new(place.outputs["Object"], pores.inputs["Vector"])
    links.new(pores.outputs["Fac"], bump.inputs["Height"])
    links.new(bump.outputs[0], nodes["Principled BSDF"].inputs["Normal"])
    return rind


def half(location, rotation, rind, flesh):
    """Half an orange with its cut to +z of its own."""
    bowl = turned([(numpy.cos(a), numpy.sin(a)) for a in numpy.linspace(-numpy.pi / 2, 0, 40)])
    lid = turned([(1.0, 0.0), (0.985, 0.012), (0.5, 0.018), (0.0001, 0.018)])
    for vertices, quads, material in ((*bowl, rind), (*lid, flesh)):
        thing = studio.mesh("half", vertices, quads, material)
        thing.location, thing.rotation_euler = location, [numpy.radians(a) for a in rotation]


def scene():
    table = studio.matter("table", (0.03, 0.022, 0.018), 0.14, Specular=0.6)
    studio.mesh("table", *studio.heightfield(numpy.zeros((2, 2)), 60, 60), table, False)
    wall = studio.heightfield(numpy.zeros((2, 2)), 60, 30)
    paper = studio.mesh("wall", *wall, studio.matter("wall", (0.55, 0.30, 0.14), 0.8), False)
    paper.location, paper.rotation_euler = (0, 9, 10), (numpy.radians(90), 0, 0)
    studio.lamp((0.5, 4.6, 0.3), (0.5, 9.0, 3.2), (1.0, 0.50, 0.18), 420, 1.6)
    glass = studio.matter("glass", (1, 1, 1), 0.0, Transmission=1.0, IOR=1.45)
    juice = studio.matter(
        "juice", (1.0, 0.34, 0.015), 0.12, Specular=0.5, Emission=(1.0, 0.22, 0.01, 1), Emission_Strength=0.55
    )  # stands in for the light that glass and pulp would pass on
    # Rings close to every bend keep the walls between them straight.
    outer = [
        (0.0001, 0),
        (0.58, 0),
        (0.62, 0.01),
        (0.66, 0.05),
        (0.665, 0.10),
        (0.857, 2.70),
        (0.86, 2.75),
        (0.865, 2.79),
    ]
    inner = [(0.845, 2.79), (0.825, 2.75), (0.822, 2.70), (0.63, 0.24), (0.61, 0.17), (0.57, 0.14), (0.0001, 0.14)]
    studio.mesh("glass", *turned(outer + inner), glass)
    fill = [
        (0.0001, 0.145),
        (0.56, 0.145),
        (0.60, 0.18),
        (0.62, 0.25),
        (0.768, 2.14),
        (0.772, 2.18),
        (0.76, 2.20),
        (0.72, 2.20),
        (0.0001, 2.20),
    ]
    studio.mesh("juice", *turned(fill), juice)
    straw = studio.matter("straw", (0.70, 0.90, 0.60), 0.3)
    studio.pipe(
        "straw",
        numpy.array([(-0.45, 0.2, 0.25), (0.62, -0.15, 3.0), (0.72, -0.18, 3.22), (1.35, -0.25, 3.5)]),
        0.075,
        straw,
    )
    rind, flesh = peel(), laid("flesh", cutface(), roughness=0.22)
    half((-2.35, -0.2, 0.86), (68, 0, -24), rind, flesh)
    half((2.45, 0.3, 0.80), (58, 0, 28), rind, flesh)
    studio.ball("orange", 1.0, rind, (3.9, 2.2, 1.0))
    studio.ball("orange", 1.0, rind, (-4.1, 1.9, 1.0))
    studio.ball("orange", 0.95, rind, (1.5, 3.6, 0.95))
    studio.camera((0.0, -9.5, 2.1), (0.0, 0, 1.52), 42, focus=(0, -0.8, 1.5), fstop=0.5)
    studio.lamp((-5.0, 1.5, 5.5), (0, 0, 1), (1.0, 0.78, 0.48), 700, 2.0, "RECTANGLE", 1.6)
    studio.lamp((4.0, 5.0, 3.0), (0, 0, 1.2), (1.0, 0.45, 0.14), 650, 2.4)
    studio.lamp((6.5, 2.0, 2.0), (2, 0, 1), (0.06, 0.48, 0.70), 160, 1.5)
    studio.lamp((-1.0, -7.0, 5.0), (0, 0, 1), (1.0, 0.62, 0.34), 130, 3.0)
    studio.sky((0.05, 0.03, 0.02), 0.25)


def torn():
    words, centre = "TARVISK", (WIDTH * 0.485, HEIGHT * 0.52)
    ink = art.text(WIDTH, HEIGHT, "bold", 172, words, centre, 4)
    shade = art.blur(art.text(WIDTH, HEIGHT, "bold", 172, words, (centre[0] + 4, centre[1] + 4), 4), 4)
    x, y = art.grid(WIDTH, HEIGHT)
    tape = numpy.clip(0.80 + 0.12 * numpy.sin(y * HEIGHT * numpy.pi / 2), 0, 1)
    picture = 0.5 - 0.42 * (shade * (1 - ink))[..., None] + numpy.zeros(3)
    for channel, shift in enumerate((-3, 0, 3)):
        picture[..., channel] += 0.5 * (tape * numpy.roll(ink, shift, 1))
    return picture


def make():
    light = studio.shoot("mujuice", "scene", 1024, 576, 64)[..., :3]
    light = light + 0.06 * art.blur(light, 8)
    squeezed = numpy.stack([art.resized(light[..., c], WIDTH, HEIGHT) for c in range(3)], -1)
    art.save(art.film(numpy.maximum(squeezed, 0), 0.9), "mujuice2.jpg", 95)
    art.save(torn(), "mujuice.jpg", 95)
