"""The city's buildings. Each takes the builder, a lot (x0, z0, x1, z1) and a height, and fills the lot."""
import math

import cityatlas as atlas
from citybuild import CEILING, chamfered, inset, rectangle, ring, Skin, unit
from cityroofs import any_roof, furnish_roof, lantern, mast


def slab(builder, lot, height, facade=None):
    rng = builder.rng
    skin = Skin(rng, facade or rng.choice(("brick", "brick", "balcony", "stone", "ribbon", "grid")))
    points = rectangle(*lot)
    builder.prism(points, 0, points, height, skin)
    builder.roof(points, height, any_roof(rng), skin.jump)
    furnish_roof(builder, lot, height, skin.facade in ("brick", "stone"))


def stepped(builder, lot, height, facade=None, steps=2):
    """A podium and a shaft that steps back."""
    rng = builder.rng
    skin = Skin(rng, facade or rng.choice(("stone", "deco", "ribbon", "azure", "grid", "slate")))
    y, floor = 0.0, 0
    for step in range(steps + 1):
        top = height * (0.28, 0.72, 1.0)[step] if steps == 2 else height * (0.45, 1.0)[step]
        points = rectangle(*lot)
        builder.prism(points, y, points, top, skin, floor)
        builder.roof(points, top, any_roof(rng), skin.jump)
        floor += round((top - y) / atlas.MODULE)
        y = top
        if step < steps:
            lot = inset(lot, min(lot[2] - lot[0], lot[3] - lot[1]) * 0.13)
    if height > 200 and rng.random() < 0.5:
        lantern(builder, inset(lot, min(lot[2] - lot[0], lot[3] - lot[1]) * 0.3), y, 9)
    else:
        furnish_roof(builder, lot, y, False)
    if height > 260:
        mast(builder, (lot[0] + lot[2]) / 2, (lot[1] + lot[3]) / 2, y + 6, rng.uniform(30, 50))


def shaft(builder, lot, height, facade=None):
    """A tower with cut corners on a podium, a crown of metal."""
    rng = builder.rng
    skin = Skin(rng, facade or rng.choice(("glass", "azure", "dark", "slate", "ribbon")))
    podium = rng.uniform(24, 48)
    base, lot = rectangle(*lot), inset(lot, 4)
    builder.prism(base, 0, base, podium, Skin(rng, rng.choice(("stone", "grid"))))
    builder.roof(base, podium, rng.choice(("terrace", "garden", "skylight")))
    points = chamfered(lot, min(lot[2] - lot[0], lot[3] - lot[1]) * 0.2)
    floors = round((height - podium) / atlas.MODULE)
    builder.prism(points, podium, points, height, skin, rng.randrange(4, max(5, 63 - floors)))
    builder.roof(points, height, rng.choice(("helipad", "plant", "membrane")), skin.jump)
    if rng.random() < 0.6:
        lantern(builder, inset(lot, min(lot[2] - lot[0], lot[3] - lot[1]) * 0.25), height, rng.uniform(8, 16))


def wedge(builder, lot, height, facade="glass"):
    """A tower whose top is cut like a chisel."""
    skin = Skin(builder.rng, facade)
    x0, z0, x1, z1 = lot
    low, cut = rectangle(*lot), height - (x1 - x0) * 1.1
    builder.prism(low, 0, low, cut, skin)
    floor = round(cut / atlas.MODULE)
    edge = [(x0, z1), (x0 + 6, z1), (x0 + 6, z0), (x0, z0)]
    builder.prism(low, cut, edge, height, skin, floor)
    builder.roof(edge, height, "membrane")


def deco_tower(builder, lot, height):
    skin = Skin(builder.rng, "deco")
    y, floor = 0.0, 0
    for share, cut in ((0.12, 0.0), (0.3, 0.09), (0.62, 0.08), (0.78, 0.07), (0.86, 0.06), (0.92, 0.06)):
        lot = inset(lot, cut * (lot[2] - lot[0]))
        points = chamfered(lot, 0.12 * (lot[2] - lot[0]))
        builder.prism(points, y, points, height * share, skin, floor)
        builder.roof(points, height * share, "terrace", skin.jump)
        floor += round((height * share - y) / atlas.MODULE)
        y = height * share
    x, z = (lot[0] + lot[2]) / 2, (lot[1] + lot[3]) / 2
    crown = ring(x, z, 0.42 * (lot[2] - lot[0]), 8, math.pi / 8)
    neck = ring(x, z, 0.2 * (lot[2] - lot[0]), 8, math.pi / 8)
    builder.plain(crown, y, neck, y + 22, "light", 0, cap=False)
    builder.spire(neck, y + 22, (x, height + 60, z), "metal", 96)


def twisted_tower(builder, lot, height, levels=11):
    skin = Skin(builder.rng, "azure")
    skin.jump = (0, 0)
    x, z = (lot[0] + lot[2]) / 2, (lot[1] + lot[3]) / 2
    radius = (lot[2] - lot[0]) / 2 * 1.2
    rise = height / levels
    for i in range(levels):
        low = ring(x, z, radius * (1 - 0.028 * i), 4, math.pi / 4 + i * 0.15)
        high = ring(x, z, radius * (1 - 0.028 * (i + 1)), 4, math.pi / 4 + (i + 1) * 0.15)
        builder.prism(low, i * rise, high, (i + 1) * rise, skin, round(i * rise / atlas.MODULE))
    builder.roof(high, height, "helipad")


def round_tower(builder, lot, height):
    skin = Skin(builder.rng, "ribbon")
    x, z = (lot[0] + lot[2]) / 2, (lot[1] + lot[3]) / 2
    radius, y = (lot[2] - lot[0]) / 2, 0.0
    for part, (share, wide) in enumerate(((0.55, 1.0), (0.83, 0.86), (1.0, 0.7))):
        points = ring(x, z, radius * wide, 14)
        normals = [unit((p[0] - x, 0, p[1] - z)).round(3) for p in points]
        builder.prism(points, y, points, height * share, skin, round(y / atlas.MODULE), normals)
        builder.roof(points, height * share, ("terrace", "garden", "helipad")[part], skin.jump)
        y = height * share
    mast(builder, x, z, y, 60)


def needle(builder, lot, height):
    """The tallest: four sides that lean in, a lit top, a long spire."""
    skin = Skin(builder.rng, "dark")
    x, z = (lot[0] + lot[2]) / 2, (lot[1] + lot[3]) / 2
    wide = (lot[2] - lot[0]) / 2
    y, floor = 0.0, 0
    for share, w0, w1 in ((0.16, 1.0, 0.8), (0.55, 0.72, 0.52), (0.86, 0.48, 0.3)):
        low = chamfered((x - wide * w0, z - wide * w0, x + wide * w0, z + wide * w0), wide * w0 * 0.3)
        high = chamfered((x - wide * w1, z - wide * w1, x + wide * w1, z + wide * w1), wide * w1 * 0.3)
        builder.prism(low, y, high, height * share, skin, floor)
        builder.roof(high, height * share, "membrane")
        floor += round((height * share - y) / atlas.MODULE)
        y = height * share
    lamp = ring(x, z, wide * 0.24, 8)
    builder.plain(lamp, y, lamp, y + 14, "light", 0, cap=False)
    builder.spire(lamp, y + 14, (x, min(height * 1.12, CEILING), z), "metal", 96)


def twin_towers(builder, lot, height):
    x0, z0, x1, z1 = lot
    third = (z1 - z0) / 3
    for pair, (a, b) in enumerate(((z0, z0 + third), (z1 - third, z1))):
        skin = Skin(builder.rng, "glass")
        part = (x0, a, x1, b)
        points = chamfered(part, third * 0.22)
        builder.prism(points, 0, points, height, skin, pair * 6)
        builder.roof(points, height, "plant")
        tip = inset(part, third * 0.28)
        lantern(builder, tip, height, 14)
        mast(builder, (tip[0] + tip[2]) / 2, (tip[1] + tip[3]) / 2, height + 14, 46)
    bridge = (x0 + (x1 - x0) * 0.36, z0 + third, x0 + (x1 - x0) * 0.64, z1 - third)
    points = rectangle(*bridge)
    y = height * 0.56
    builder.prism(points, y, points, y + 16, Skin(builder.rng, "ribbon"))
    builder.roof(points, y + 16, "membrane")


def ziggurat(builder, lot, height):
    skin = Skin(builder.rng, "grid")
    steps = 5
    for i in range(steps):
        points = rectangle(*lot)
        builder.prism(points, height * i / steps, points, height * (i + 1) / steps, skin, 2 * i)
        builder.roof(points, height * (i + 1) / steps, "garden" if i < steps - 1 else "skylight", skin.jump)
        lot = inset(lot, (lot[2] - lot[0]) * 0.1)
    x, z = (lot[0] + lot[2]) / 2, (lot[1] + lot[3]) / 2
    glass = rectangle(*inset(lot, 3))
    builder.spire(glass, height, (x, height + 20, z), "light", 64)


def park(builder, lot, height):
    """Trees, and a domed hall in the middle."""
    rng = builder.rng
    x0, z0, x1, z1 = lot
    x, z = (x0 + x1) / 2, (z0 + z1) / 2
    hall = ring(x, z, 26, 12)
    normals = [unit((p[0] - x, 0, p[1] - z)).round(3) for p in hall]
    builder.prism(hall, 0, hall, 26, Skin(rng, "stone"), 0, normals)
    low, y = hall, 26.0
    for angle in (30, 60):
        high = ring(x, z, 26 * math.cos(math.radians(angle)), 12)
        builder.plain(low, y, high, 26 + 24 * math.sin(math.radians(angle)), column=128, cap=False)
        low, y = high, 26 + 24 * math.sin(math.radians(angle))
    builder.spire(low, y, (x, 52, z), column=128)
    mast(builder, x, z, 50, 22)
    for _ in range(26):
        tx, tz = rng.uniform(x0 + 6, x1 - 6), rng.uniform(z0 + 6, z1 - 6)
        if math.hypot(tx - x, tz - z) > 38:
            size = rng.uniform(5, 8)
            builder.spire(ring(tx, tz, size, 3, rng.random()), 1, (tx, size * 2.6, tz), "metal", 160)


def works(builder, lot, height):
    """Chimneys, tanks and a hall of steel."""
    rng = builder.rng
    x0, z0, x1, z1 = lot
    hall = (x0, z0, x0 + (x1 - x0) * 0.55, z1)
    builder.prism(rectangle(*hall), 0, rectangle(*hall), 40, Skin(rng, "slate"))
    builder.roof(rectangle(*hall), 40, "skylight")
    for i in range(3):
        z = z0 + (z1 - z0) * (0.2 + 0.3 * i)
        stack = ring(x0 + 14, z, 5.5, 6)
        tip = ring(x0 + 14, z, 3.6, 6)
        builder.plain(stack, 40, tip, 150, column=192, cap=False)
    for i in range(2):
        for j in range(2):
            x, z = x0 + (x1 - x0) * (0.7 + 0.24 * i), z0 + (z1 - z0) * (0.25 + 0.5 * j)
            tank = ring(x, z, (x1 - x0) * 0.1, 8)
            builder.plain(tank, 0, tank, 26, column=32, cap=False)
            builder.spire(tank, 26, (x, 32, z), column=0)
