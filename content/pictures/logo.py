"""vxqlogo.jpg and vxqlogomask.jpg: the group's sign in glass tubes on a steel wall, off and on.

The mask is the same wall with nothing but the tubes alight, so that bands of light that run through it
fall on the wall as well. Both are made for a screen of 512 x 256 whose picture is shown at 89 to 50.
"""

import numpy

import art
import studio

WIDTH, HEIGHT = 512, 256


def stroke(points, bend=0.16, steps=10):
    """A polyline with its inner corners bent like glass."""
    points = [numpy.array(p, float) for p in points]
    line = [points[0]]
    for before, corner, after in zip(points, points[1:], points[2:]):
        a = corner + (before - corner) / numpy.linalg.norm(before - corner) * bend
        b = corner + (after - corner) / numpy.linalg.norm(after - corner) * bend
        line += [(1 - t) ** 2 * a + 2 * t * (1 - t) * corner + t * t * b for t in numpy.linspace(0, 1, steps)]
    return numpy.array(line + [points[-1]])


def loop(centre, half, power, inset=0.0):
    turn = numpy.linspace(0, 2 * numpy.pi, 129)[:-1]
    c, s = numpy.cos(turn), numpy.sin(turn)
    x = numpy.sign(c) * abs(c) ** (2 / power) * (half[0] - inset)
    y = numpy.sign(s) * abs(s) ** (2 / power) * (half[1] - inset)
    return numpy.c_[centre[0] + x, centre[1] + y]


def sign():
    """The tubes: (points, closed, height over the wall, thick)."""
    tubes = []
    for inset, thick in ((0.0, 1.0), (0.24, 0.55)):
        v = [(-3.25 + inset * 1.05, 1.15), (-2.25, -1.15 + inset * 2.2), (-1.25 - inset * 1.05, 1.15)]
        tubes.append((stroke(v), False, 0.22, thick))
        tubes.append((loop((2.30, 0.0), (0.95, 1.15), 3.2, inset), True, 0.22, thick))
    for shift, thick in ((0.0, 1.0), (0.26, 0.55)):
        tubes.append((stroke([(-0.98 + shift, 1.15), (0.98 - 0, -1.15)]), False, 0.20, thick))
        tubes.append((stroke([(0.98, 1.15), (-0.98 + shift, -1.15)]), False, 0.40, thick))
    tubes.append((stroke([(2.35, -0.45), (2.75, -0.95), (3.45, -1.42)], 0.3), False, 0.42, 1.0))
    return tubes


def wall():
    import bpy

    steel = studio.matter("steel", (0.16, 0.15, 0.14), 0.32, 0.9, Anisotropic=0.7)
    bpy.ops.mesh.primitive_plane_add(size=1)
    plate = bpy.context.object
    plate.scale = (24, 12, 1)
    plate.data.materials.append(steel)
    nodes, links = steel.node_tree.nodes, steel.node_tree.links
    place, noise, bump = (nodes.new("ShaderNode" + n) for n in ("TexCoord", "TexNoise", "Bump"))
    stretch = nodes.new("ShaderNodeMapping")
    stretch.inputs["Scale"].default_value = (0.35, 26.0, 1.0)
    noise.inputs["Scale"].default_value, noise.inputs["Detail"].default_value = 3.0, 6.0
    bump.inputs["Strength"].default_value, bump.inputs["Distance"].default_value = 0.16, 0.05
    links.new(place.outputs["Object"], stretch.inputs["Vector"])
    links.new(stretch.outputs[0], noise.inputs["Vector"])
    links.new(noise.outputs["Fac"], bump.inputs["Height"])
    links.new(bump.outputs[0], nodes["Principled BSDF"].inputs["Normal"])
    rivet = studio.matter("rivet", (0.25, 0.23, 0.2), 0.3, 1.0)
    for x in (-4.2, -2.8, -1.4, 0, 1.4, 2.8, 4.2):
        for y in (-1.95, 1.95):
            studio.ball("rivet", 0.075, rivet, (x, y, 0), (1, 1, 0.6), 24)
    for y in (-1.72, 1.72):
        groove = studio.matter("groove", (0.01, 0.01, 0.01), 0.6)
        studio.pipe("groove", numpy.array([(-12, y, -0.005), (12, y, -0.005)]), 0.02, groove)


def scene(alight):
    wall()
    holder = studio.matter("holder", (0.03, 0.03, 0.03), 0.5)
    for points, closed, height, thick in sign():
        if alight:
            colour, power = ((1.0, 0.46, 0.12), 11.0) if thick == 1.0 else ((1.0, 0.13, 0.02), 8.0)
            glass = studio.glow("light", colour, power)
        else:
            glass = studio.matter("glass", (0.30, 0.26, 0.22), 0.05, Specular=1.0, Clearcoat=1.0)
        line = numpy.c_[points, numpy.full(len(points), height)]
        studio.pipe("tube", line, 0.062 * thick, glass, closed)
        for x, y in points[[0, -1]] if not closed else points[[40, 104]]:
            studio.pipe("holder", numpy.array([(x, y, 0), (x, y, height + 0.02)]), 0.085 * thick, holder)
    studio.camera((0.06, -1.9, 9.4), (0.06, -0.08, 0), 39)
    if not alight:
        studio.lamp((-5.5, 4.0, 4.0), (0, 0, 0), (1.0, 0.78, 0.55), 220, 2.0)
        studio.lamp((5.5, 2.0, 3.0), (0, 0, 0), (0.06, 0.45, 0.66), 150, 3.0)


def shown(light, glow):
    """Down to the size of the phone's screen, with the spill that a lens gives."""
    light = light + glow * (art.blur(light, 6) + 0.7 * art.blur(light, 24) + 0.4 * art.blur(light, 60))
    light = light.reshape(HEIGHT, 2, WIDTH, 2, 3).mean((1, 3))
    return light


def make():
    # Rendered at the shape that the phone shows, squeezed to that of its buffer.
    for alight, name, exposure, glow in ((False, "vxqlogo.jpg", 0.42, 0.02), (True, "vxqlogomask.jpg", 0.5, 0.10)):
        light = studio.shoot("logo", "scene", 1024, 576, 48, alight=alight)[..., :3]
        squeezed = numpy.stack([art.resized(light[..., c], 1024, 512) for c in range(3)], -1)
        art.save(art.film(shown(squeezed, glow), exposure), name, 95)
