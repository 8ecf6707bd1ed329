"""whiteback.jpg: a white studio before the phone's portrait: a cove, soft boxes at the sides, warm and cold."""

import numpy

import art
import studio


def cove():
    """Floor that rises into the wall without an edge."""
    turn = numpy.linspace(0, numpy.pi / 2, 40)
    profile = numpy.concatenate([[(-14, 0)], numpy.c_[4 + 4 * numpy.sin(turn), 4 - 4 * numpy.cos(turn)], [(8, 22)]])
    across = numpy.linspace(-22, 22, 3)
    vertices = numpy.array([(x, y, z) for y, z in profile for x in across])
    corner = numpy.arange(len(vertices)).reshape(len(profile), 3)
    quads = numpy.stack([corner[:-1, :-1], corner[:-1, 1:], corner[1:, 1:], corner[1:, :-1]], -1).reshape(-1, 4)
    return vertices, quads


def softbox(at, target, size, colour, strength):
    """A lit panel in a black frame on a stand."""
    import bpy
    import mathutils

    black = studio.matter("black", (0.02, 0.02, 0.022), 0.5)
    turn = (mathutils.Vector(target) - mathutils.Vector(at)).to_track_quat("Z", "Y").to_matrix().to_4x4()
    place = mathutils.Matrix.Translation(at) @ turn
    for half, depth, material in (
        (size / 2, 0.0, studio.glow("panel", colour, strength)),
        (size / 2 * 1.05, -0.03, black),
    ):
        bpy.ops.mesh.primitive_plane_add(size=2)
        panel = bpy.context.object
        panel.matrix_world = (
            place @ mathutils.Matrix.Translation((0, 0, depth)) @ mathutils.Matrix.Diagonal((half, half * 1.5, 1, 1))
        )
        panel.data.materials.append(material)
    back = place @ mathutils.Vector((0, 0, -0.2))
    foot = numpy.array((back.x, back.y, 0.0))
    studio.pipe("stand", numpy.array([back[:], (back.x, back.y, 1.1)]), 0.05, black)
    for a in (0.3, 2.4, 4.5):
        leg = foot + numpy.array((0.9 * numpy.cos(a), 0.9 * numpy.sin(a), 0.03))
        studio.pipe("leg", numpy.array([(back.x, back.y, 1.1), leg]), 0.03, black)


def scene():
    vertices, quads = cove()
    studio.mesh("cove", vertices, quads, studio.matter("paper", (0.86, 0.86, 0.85), 0.35, Specular=0.25))
    softbox((-6.2, 1.6, 3.9), (0, -1.0, 3.3), 2.6, (1.0, 0.80, 0.52), 13.0)
    softbox((6.6, 2.4, 3.3), (0, -0.6, 2.9), 2.2, (0.42, 0.78, 1.0), 10.0)
    studio.lamp((0, 0, 12), (0, 5, 2), (1.0, 0.96, 0.90), 700, 7.0)
    cable = numpy.linspace(0, 1, 60)
    studio.pipe(
        "cable",
        numpy.c_[-6.8 + 5.0 * cable - 1.2 * numpy.sin(cable * 6), 0.8 - 7.0 * cable, 0 * cable + 0.03],
        0.035,
        studio.matter("rubber", (0.02, 0.02, 0.02), 0.5),
    )
    studio.camera((0.0, -10.0, 2.7), (0.0, 2, 2.75), 26, focus=(0, -3.5, 2.5), fstop=0.35)
    studio.sky((0.9, 0.95, 1.0), 0.12)


def make():
    light = studio.shoot("whiteback", "scene", 1024, 576, 64)[..., :3]
    light = light + 0.06 * art.blur(light, 16)
    squeezed = numpy.stack([art.resized(light[..., c], 1024, 512) for c in range(3)], -1)
    art.save(art.grain(art.film(numpy.maximum(squeezed, 0), 0.9), 0.006, 8), "whiteback.jpg")
