"""The photographer: builds scenes in Blender, without display, and hands linear light back.

A picture's module calls shoot(module, function, ...); Blender starts this file, which calls that
function to set the scene up and renders it. Only code that runs inside Blender may import bpy.
"""

import importlib
import json
import math
import os
import subprocess
import sys
import tempfile

import numpy

HERE = os.path.dirname(os.path.abspath(__file__))
THREADS = os.environ.get("CONTENT_THREADS", "1")


def shoot(module, function, width, height, samples, **options):
    """Linear light of a scene: height x width x 4, top row first."""
    with tempfile.TemporaryDirectory() as folder:
        path = os.path.join(folder, "light.npy")
        job = dict(
            module=module, function=function, width=width, height=height, samples=samples, options=options, path=path
        )
        run = subprocess.run(
            [
                "blender",
                "-b",
                "--factory-startup",
                "-t",
                THREADS,
                "--python-exit-code",
                "1",
                "-P",
                os.path.abspath(__file__),
                "--",
                json.dumps(job),
            ],
            stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT,
            text=True,
        )
        if run.returncode or not os.path.exists(path):
            raise RuntimeError(f"blender could not shoot {module}.{function}:\n{run.stdout[-3000:]}")
        return numpy.load(path)


def sculpt(shape, cell):
    """Vertices and quads of a solid that sculpt.cpp knows."""
    with tempfile.TemporaryDirectory() as folder:
        tool, path = os.path.join(folder, "sculpt"), os.path.join(folder, "net")
        subprocess.run(["c++", "-O2", "-std=c++17", os.path.join(HERE, "sculpt.cpp"), "-o", tool], check=True)
        subprocess.run([tool, shape, str(cell), path], check=True)
        data = open(path, "rb").read()
    points, quads = numpy.frombuffer(data, "<i4", 2)
    vertices = numpy.frombuffer(data, "<f4", points * 3, 8).reshape(-1, 3)
    return vertices, numpy.frombuffer(data, "<i4", quads * 4, 8 + points * 12).reshape(-1, 4)


def heightfield(heights, width, depth):
    """A sheet in x and y, centred on the origin, whose rows run from far (+y) to near."""
    rows, columns = heights.shape
    x, y = numpy.meshgrid(numpy.linspace(-width / 2, width / 2, columns), numpy.linspace(depth / 2, -depth / 2, rows))
    vertices = numpy.stack([x, y, heights], -1).reshape(-1, 3)
    corner = numpy.arange(rows * columns).reshape(rows, columns)
    quads = numpy.stack([corner[1:, :-1], corner[1:, 1:], corner[:-1, 1:], corner[:-1, :-1]], -1).reshape(-1, 4)
    return vertices, quads


# From here on: inside Blender.


def mesh(name, vertices, quads, material, smooth=True, paint=None):
    """Adds a solid; paint is a colour for each vertex, which the material gets from painted()."""
    import bpy

    data = bpy.data.meshes.new(name)
    data.vertices.add(len(vertices))
    data.vertices.foreach_set("co", numpy.ascontiguousarray(vertices, numpy.float32).ravel())
    sides = quads.shape[1]
    data.loops.add(quads.size)
    data.loops.foreach_set("vertex_index", numpy.ascontiguousarray(quads, numpy.int32).ravel())
    data.polygons.add(len(quads))
    data.polygons.foreach_set("loop_start", numpy.arange(0, quads.size, sides, dtype=numpy.int32))
    data.polygons.foreach_set("loop_total", numpy.full(len(quads), sides, numpy.int32))
    data.polygons.foreach_set("use_smooth", numpy.full(len(quads), smooth))
    data.update(calc_edges=True)
    data.materials.append(material)
    if paint is not None:
        coat = data.color_attributes.new("paint", "FLOAT_COLOR", "POINT")
        coat.data.foreach_set("color", numpy.c_[paint, numpy.ones(len(paint))].astype(numpy.float32).ravel())
    return put(name, data)


def put(name, data, location=(0, 0, 0), rotation=(0, 0, 0), scale=(1, 1, 1)):
    """Adds data to the scene; rotation in degrees."""
    import bpy

    thing = bpy.data.objects.new(name, data)
    thing.location, thing.scale = location, scale
    thing.rotation_euler = [math.radians(a) for a in rotation]
    bpy.context.collection.objects.link(thing)
    return thing


def matter(name, colour, roughness=0.5, metallic=0.0, **inputs):
    """A principled material; inputs are its sockets with underscores for blanks."""
    import bpy

    material = bpy.data.materials.new(name)
    material.use_nodes = True
    shader = material.node_tree.nodes["Principled BSDF"]
    shader.inputs["Base Color"].default_value = (*colour, 1)
    shader.inputs["Roughness"].default_value = roughness
    shader.inputs["Metallic"].default_value = metallic
    for socket, value in inputs.items():
        shader.inputs[socket.replace("_", " ")].default_value = value
    return material


def painted(material):
    """The material takes its colour from the paint of the mesh."""
    nodes, links = material.node_tree.nodes, material.node_tree.links
    coat = nodes.new("ShaderNodeVertexColor")
    coat.layer_name = "paint"
    links.new(coat.outputs["Color"], nodes["Principled BSDF"].inputs["Base Color"])
    return material


def glow(name, colour, strength):
    import bpy

    material = bpy.data.materials.new(name)
    material.use_nodes = True
    nodes, links = material.node_tree.nodes, material.node_tree.links
    nodes.clear()
    lamp, out = nodes.new("ShaderNodeEmission"), nodes.new("ShaderNodeOutputMaterial")
    lamp.inputs["Color"].default_value = (*colour, 1)
    lamp.inputs["Strength"].default_value = strength
    links.new(lamp.outputs[0], out.inputs["Surface"])
    return material


def lamp(location, target, colour, watts, size, shape="DISK", ratio=1.0):
    """A soft box that looks at a target."""
    import bpy
    import mathutils

    data = bpy.data.lights.new("lamp", "AREA")
    data.energy, data.color, data.size = watts, colour, size
    data.shape = shape
    if shape in ("RECTANGLE", "ELLIPSE"):
        data.size_y = size * ratio
    thing = put("lamp", data, location)
    thing.rotation_euler = (mathutils.Vector(target) - mathutils.Vector(location)).to_track_quat("-Z", "Y").to_euler()
    return thing


def camera(location, target, lens, focus=None, fstop=2.8):
    """Lens in millimetres on a 36 mm wide frame; focus is a point or None for all sharp."""
    import bpy
    import mathutils

    data = bpy.data.cameras.new("camera")
    data.lens = lens
    data.clip_end = 1000
    way = mathutils.Vector(target) - mathutils.Vector(location)
    if focus is not None:
        data.dof.use_dof = True
        data.dof.focus_distance = (mathutils.Vector(focus) - mathutils.Vector(location)).dot(way.normalized())
        data.dof.aperture_fstop = fstop
    thing = put("camera", data, location)
    thing.rotation_euler = way.to_track_quat("-Z", "Y").to_euler()
    bpy.context.scene.camera = thing
    return thing


def sky(colour, strength=1.0):
    import bpy

    world = bpy.data.worlds.new("sky")
    world.use_nodes = True
    world.node_tree.nodes["Background"].inputs[0].default_value = (*colour, 1)
    world.node_tree.nodes["Background"].inputs[1].default_value = strength
    bpy.context.scene.world = world


def ball(name, radius, material, location=(0, 0, 0), scale=(1, 1, 1), segments=64):
    import bpy

    bpy.ops.mesh.primitive_uv_sphere_add(
        segments=segments, ring_count=segments // 2, radius=radius, location=location
    )
    thing = bpy.context.object
    thing.name, thing.scale = name, scale
    thing.data.materials.append(material)
    bpy.ops.object.shade_smooth()
    return thing


def pipe(name, points, radius, material, closed=False, radii=None):
    """A round tube along points; radii scale the radius point by point."""
    import bpy

    curve = bpy.data.curves.new(name, "CURVE")
    curve.dimensions, curve.bevel_depth, curve.bevel_resolution, curve.use_fill_caps = "3D", radius, 6, True
    line = curve.splines.new("POLY")
    line.points.add(len(points) - 1)
    line.points.foreach_set("co", numpy.c_[points, numpy.ones(len(points))].ravel())
    if radii is not None:
        line.points.foreach_set("radius", numpy.asarray(radii, float))
    line.use_cyclic_u, line.use_smooth = closed, True
    curve.materials.append(material)
    return put(name, curve)


def main():
    import bpy

    job = json.loads(sys.argv[sys.argv.index("--") + 1])
    for thing in list(bpy.data.objects):
        bpy.data.objects.remove(thing)
    scene = bpy.context.scene
    scene.render.engine = "CYCLES"
    scene.render.resolution_x, scene.render.resolution_y = job["width"], job["height"]
    scene.render.resolution_percentage = 100
    scene.cycles.device = "CPU"
    scene.cycles.samples, scene.cycles.seed = job["samples"], 1
    scene.cycles.use_denoising = False
    scene.cycles.use_adaptive_sampling = True
    scene.cycles.adaptive_threshold = 0.015
    scene.cycles.max_bounces = 8
    scene.cycles.sample_clamp_indirect = 6.0
    scene.cycles.blur_glossy = 0.5
    scene.render.film_transparent = False
    sky((0, 0, 0), 0)
    sys.path.insert(0, HERE)
    getattr(importlib.import_module(job["module"]), job["function"])(**job["options"])
    scene.render.image_settings.file_format = "OPEN_EXR"
    scene.render.image_settings.color_depth = "32"
    scene.render.filepath = job["path"] + ".exr"
    bpy.ops.render.render(write_still=True)
    light = bpy.data.images.load(scene.render.filepath)
    light.colorspace_settings.name = "Non-Color"
    pixels = numpy.empty(len(light.pixels), numpy.float32)
    light.pixels.foreach_get(pixels)
    numpy.save(job["path"], pixels.reshape(job["height"], job["width"], 4)[::-1])
    os._exit(0)  # Blender's own way out takes add-ons down and may crash after the work is done


if __name__ == "__main__":
    sys.path.insert(0, HERE)
    sys.modules["studio"] = sys.modules["__main__"]  # pictures import it by name
    main()
