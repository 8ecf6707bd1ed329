"""The phone: a slab with rounded edges, a recess under the screen that the show draws itself, buttons and camera.

Model space: x across, y along (top is +y), z out of the screen. The texture is painted chart by chart in the
same units, so a thing painted at (x, y) lies at (x, y) on the phone.
"""
import math

import numpy as np

from obj import Mesh

CENTRE_Y = 61.55
SCREEN_HALF_X, SCREEN_LOW, SCREEN_HIGH, SCREEN_Z = 25.0, 17.070831, 106.02917, 5.4845
HALF_X, HALF_Y, CORNER = 30.5, 61.5, 9.5
CORNER_STEPS = 12  # even: the side charts part in the middle of each corner
RECESS_Z, RECESS_UNDERCUT = 2.5, 0.8
SEAM, LIP = 1.3, 2.2  # the frame's lip beside the glass, and the radius it is rounded by
TEXTURE = 2048
DENSITY = 12.5  # texels a unit

ISLAND = {"x": 15.5, "y": 100.0, "half_x": 7.6, "half_y": 14.6, "corner": 7.5}
LENSES = [(15.5, 106.9), (15.5, 93.1)]
LENS_RADIUS = 5.4
FLASH = (15.5, 100.0)
BUTTONS = [(86.0, 4.6), (70.0, 9.0)]  # centre y and half length, on the +x side
BUTTON_Z, BUTTON_HALF_Z = 0.75, 1.15


class Chart:
    """A rectangle of the texture that shows a rectangle of the phone. Origin: top left texel."""

    def __init__(self, x, y, a0, a1, b0, b1):
        self.x, self.y, self.a0, self.b0 = x, y, a0, b0
        self.width, self.height = math.ceil((a1 - a0) * DENSITY), math.ceil((b1 - b0) * DENSITY)

    def uv(self, a, b):
        return ((self.x + (a - self.a0) * DENSITY) / TEXTURE, 1 - (self.y + (b - self.b0) * DENSITY) / TEXTURE)

    def grid(self, margin=4):
        """Coordinates of the texel centres, a few texels beyond the edges, and the slice they fill."""
        xs, ys = np.arange(-margin, self.width + margin), np.arange(-margin, self.height + margin)
        a, b = np.meshgrid(self.a0 + (xs + 0.5) / DENSITY, self.b0 + (ys + 0.5) / DENSITY)
        return a, b, (slice(self.y - margin, self.y + self.height + margin),
                      slice(self.x - margin, self.x + self.width + margin))


def arc(first, last, steps):
    return [math.radians(first + (last - first) * i / steps) for i in range(steps + 1)]


def profile():
    """Strips around the slab, front to back: a chart kind and rings of (inset, z, normal out, normal z)."""
    end = math.radians(75)
    reach = (2.6 - SEAM) / math.sin(end)
    glass = [(2.6 - reach * math.sin(t), 4.5845 + 0.9 * math.cos(t), math.sin(t) / reach, math.cos(t) / 0.9)
             for t in arc(0, 75, 7)]
    lean = math.degrees(math.acos(1 - SEAM / LIP))
    rise = LIP * math.sin(math.radians(lean))
    frame = [(LIP - LIP * math.cos(t), glass[-1][1] - rise + LIP * math.sin(t), math.cos(t), math.sin(t))
             for t in arc(lean, 0, 5)]
    frame += [(LIP - LIP * math.cos(t), -1.6 + LIP * math.sin(t), math.cos(t), math.sin(t))
              for t in arc(0, -lean, 5)]
    reach, depth, level = (6.0 - SEAM) / math.sin(end), 1.2, -1.6 - rise
    back = [(6.0 - reach * math.sin(t), level - depth * (math.cos(t) - math.cos(end)),
             math.sin(t) / reach, -math.cos(t) / depth) for t in arc(75, 0, 8)]
    glass[0] = (2.6, SCREEN_Z, 0.0, 1.0)
    frame[0] = (glass[-1][0], glass[-1][1], *frame[0][2:])
    back[0] = (frame[-1][0], frame[-1][1], *back[0][2:])
    return [("front", glass), ("side", frame), ("back", back)]


def rounded_outline(half_x, half_y, corner, steps, stops=()):
    """Counter-clockwise points and outward normals of a rounded rectangle, from the middle of +x.

    `stops` are heights at which the long sides get points of their own.
    """
    points, normals = [], []
    for y in sorted(s for s in stops):
        points.append((half_x, y))
        normals.append((1.0, 0.0))
    for quarter in range(4):
        cx = (half_x - corner) * (1 if quarter in (0, 3) else -1)
        cy = (half_y - corner) * (1 if quarter in (0, 1) else -1)
        for i in range(steps + 1):
            a = math.pi / 2 * (quarter + i / steps)
            normals.append((math.cos(a), math.sin(a)))
            points.append((cx + corner * math.cos(a), cy + corner * math.sin(a)))
        if quarter == 1:
            for y in sorted((s for s in stops), reverse=True):
                points.append((-half_x, y))
                normals.append((-1.0, 0.0))
    points = np.array(points)
    apart = np.linalg.norm(points - np.roll(points, 1, axis=0), axis=1) > 1e-6  # where the straights have no length
    return points[apart], np.array(normals).round(12)[apart]


def body_outline():
    stops = (SCREEN_LOW - CENTRE_Y, SCREEN_HIGH - CENTRE_Y)
    points, normals = rounded_outline(HALF_X, HALF_Y, CORNER, CORNER_STEPS, stops)
    points[:, 1] += CENTRE_Y
    return points, normals


def profile_length(rings):
    steps = [math.hypot(b[0] - a[0], b[1] - a[1]) for a, b in zip(rings, rings[1:])]
    return np.concatenate([[0], np.cumsum(steps)])


def side_of(normal):
    """Which of the four sides an outline normal belongs to: 0 +x, 1 +y, 2 -x, 3 -y."""
    return int(((math.degrees(math.atan2(normal[1], normal[0])) + 45) % 360) // 90)


def side_run(side, point, normal):
    """Length along a side's strip, 0 at its middle, growing counter-clockwise; runs on round half the corner."""
    along = np.array([(0, 1), (-1, 0), (0, -1), (1, 0)][side], float)
    straight = (HALF_Y if side % 2 == 0 else HALF_X) - CORNER
    across = np.array([(1, 0), (0, 1), (-1, 0), (0, -1)][side], float)
    centred = np.array([point[0], point[1] - CENTRE_Y])
    bend = math.atan2(normal @ along, normal @ across)
    if abs(bend) < 1e-9:
        return float(centred @ along)
    return math.copysign(straight, bend) + bend * CORNER


FRAME_LENGTH = float(profile_length(profile()[1][1])[-1])
LONG_RUN = HALF_Y - CORNER + math.pi / 4 * CORNER
SHORT_RUN = HALF_X - CORNER + math.pi / 4 * CORNER
CHIN = HALF_Y - (SCREEN_HIGH - SCREEN_LOW) / 2

# Planar charts lie sideways: a runs down the phone (from its top), b across it.
CHARTS = {
    "side0": Chart(8, 6, -LONG_RUN, LONG_RUN, 0, FRAME_LENGTH),
    "side2": Chart(8, 132, -LONG_RUN, LONG_RUN, 0, FRAME_LENGTH),
    "rim0": Chart(8, 258, CHIN, 2 * HALF_Y - CHIN, -HALF_X, -SCREEN_HALF_X),
    "rim1": Chart(8, 334, CHIN, 2 * HALF_Y - CHIN, SCREEN_HALF_X, HALF_X),
    "side1": Chart(1648, 420, 0, FRAME_LENGTH, -SHORT_RUN, SHORT_RUN),
    "side3": Chart(1772, 420, 0, FRAME_LENGTH, -SHORT_RUN, SHORT_RUN),
    "chin0": Chart(1576, 1240, 0, CHIN, -HALF_X, HALF_X),
    "chin1": Chart(1806, 1240, 2 * HALF_Y - CHIN, 2 * HALF_Y, -HALF_X, HALF_X),
    "back": Chart(8, 1240, 0, 2 * HALF_Y, -HALF_X, HALF_X),
}
ROCKET = (slice(410, 1228), slice(0, 1638))  # rows, columns: u 0..0.8, v 0.4..0.8


def down(y):
    return CENTRE_Y + HALF_Y - y


def front_chart(y):
    if y > SCREEN_HIGH:
        return "chin0"
    return "chin1" if y < SCREEN_LOW else None


class Builder:
    def __init__(self):
        self.mesh = Mesh()

    def planar(self, positions, normals, back):
        """Texture straight from the front or the back; walls take theirs from just inside their outline."""
        mid = np.mean(positions, axis=0)
        if back:
            name = "back"
        else:
            name = front_chart(mid[1]) or ("rim0" if mid[0] < 0 else "rim1")
        uvs = []
        for p, n in zip(positions, normals):
            x, y, _ = p - n * 0.25 if abs(n[2]) < 0.5 and p[2] < -3.5 else p
            uvs.append(CHARTS[name].uv(down(y), -x if back else x))
        self.mesh.triangle(positions, uvs, normals)

    def planar_quad(self, positions, normals, back):
        for c in ((0, 1, 2), (0, 2, 3)):
            self.planar([positions[i] for i in c], [normals[i] for i in c], back)

    def side_quad(self, side, positions, normals, runs, lengths):
        chart = CHARTS[f"side{side}"]
        swap = side % 2 == 1
        uvs = [chart.uv(t, r) if swap else chart.uv(r, t) for r, t in zip(runs, lengths)]
        self.mesh.quad(positions, uvs, normals)


def ring_vertex(point, normal, ring):
    inset, z, out, up = ring
    n = np.array([normal[0] * out, normal[1] * out, up])
    return (point[0] - normal[0] * inset, point[1] - normal[1] * inset, z), n / np.linalg.norm(n)


def add_strip(builder, kind, rings, outline):
    points, normals = outline
    lengths = profile_length(rings)
    for i in range(len(points)):
        j = (i + 1) % len(points)
        side = side_of(normals[i] + normals[j])
        runs = [side_run(side, points[k], normals[k]) for k in (i, j)]
        for a, b in zip(range(len(rings)), range(1, len(rings))):
            corners = [ring_vertex(points[k], normals[k], rings[r]) for k, r in ((i, a), (i, b), (j, b), (j, a))]
            p, n = [c[0] for c in corners], [c[1] for c in corners]
            if kind == "side":
                builder.side_quad(side, p, n, [runs[0], runs[0], runs[1], runs[1]],
                                  [lengths[a], lengths[b], lengths[b], lengths[a]])
            else:
                builder.planar_quad(p, n, kind == "back")


def add_front(builder, outline):
    """The flat glass between the outermost flat ring and the screen's own four corners."""
    points, normals = outline
    ring = [ring_vertex(p, n, (2.6, SCREEN_Z, 0, 1))[0] for p, n in zip(points, normals)]
    up = [np.array((0.0, 0.0, 1.0))] * 3

    def nearest(p):
        y = SCREEN_HIGH if p[1] > CENTRE_Y else SCREEN_LOW
        return (math.copysign(SCREEN_HALF_X, p[0]), y, SCREEN_Z)

    for i in range(len(ring)):
        a, b = ring[i], ring[(i + 1) % len(ring)]
        ca, cb = nearest(a), nearest(b)
        builder.planar([a, b, ca], up, False)
        if ca != cb:
            builder.planar([b, cb, ca], up, False)


def add_recess(builder):
    """A pan under the screen, undercut so that none of it shows beside the screen's edge."""
    rim = [(sx * SCREEN_HALF_X, y, SCREEN_Z) for sx, y in
           ((1, SCREEN_LOW), (1, SCREEN_HIGH), (-1, SCREEN_HIGH), (-1, SCREEN_LOW))]
    wide = [(x + math.copysign(RECESS_UNDERCUT, x), y + math.copysign(RECESS_UNDERCUT, y - CENTRE_Y), RECESS_Z)
            for x, y, _ in rim]
    uv = [CHARTS["chin0"].uv(CHIN - 0.5, 0)] * 4
    for i in range(4):
        j = (i + 1) % 4
        inward = ((-1, 0, 0), (0, -1, 0), (1, 0, 0), (0, 1, 0))[i]
        builder.mesh.quad([rim[j], wide[j], wide[i], rim[i]], uv, np.array(inward, float))
    builder.mesh.quad(wide, uv, np.array((0.0, 0.0, 1.0)))


def add_back(builder, outline):
    points, normals = outline
    flat = profile()[2][1][-1]
    ring = [ring_vertex(p, n, flat)[0] for p, n in zip(points, normals)]
    down_normal = [np.array((0.0, 0.0, -1.0))] * 3
    centre = (0.0, CENTRE_Y, flat[1])
    for i in range(len(ring)):
        builder.planar([ring[(i + 1) % len(ring)], ring[i], centre], down_normal, True)


def add_raised(builder, points, normals, rings):
    """A closed lump on the back: rings of (inset, z, normal out, normal z), the first one buried."""
    for i in range(len(points)):
        j = (i + 1) % len(points)
        for a, b in zip(rings, rings[1:]):
            if a[:2] == b[:2]:  # a crease
                continue
            corners = [ring_vertex(points[k], normals[k], r) for k, r in ((i, a), (i, b), (j, b), (j, a))]
            builder.planar_quad([c[0] for c in corners], [c[1] for c in corners], True)
    for ring, up in ((rings[0], 1.0), (rings[-1], -1.0)):
        middle = (*np.mean(points, axis=0), ring[1])
        flat = [np.array((0.0, 0.0, up))] * 3
        for i in range(len(points)):
            a, b = (ring_vertex(points[k], normals[k], ring)[0] for k in (i, (i + 1) % len(points)))
            builder.planar([a, b, middle] if up > 0 else [b, a, middle], flat, True)


def add_camera(builder):
    points, normals = rounded_outline(ISLAND["half_x"], ISLAND["half_y"], ISLAND["corner"], 8)
    bevel = [(0.7 - 0.7 * math.cos(t), -4.8 + 0.7 * math.sin(t), math.cos(t), math.sin(t)) for t in arc(0, -90, 4)]
    add_raised(builder, points + (ISLAND["x"], ISLAND["y"]), normals, [(0, -3.6, 1, 0)] + bevel)
    for x, y in LENSES:
        points, normals = rounded_outline(LENS_RADIUS, LENS_RADIUS, LENS_RADIUS, 6)
        rim = [(0.45 - 0.45 * math.cos(t), -5.95 + 0.45 * math.sin(t), math.cos(t), math.sin(t))
               for t in arc(0, -90, 3)]
        inner = [(0.75, -6.4, 0, -1), (0.75, -6.4, -0.8, -0.6), (1.2, -6.0, -0.8, -0.6), (1.2, -6.0, 0, -1)]
        add_raised(builder, points + (x, y), normals, [(0, -5.0, 1, 0)] + rim + inner)


def add_button(builder, y, half_length):
    """A pill on the +x side, its face painted with the frame behind it."""
    lengths = profile_length(profile()[1][1])
    frame = profile()[1][1]
    straight = next(i for i, r in enumerate(frame) if r[0] == 0.0)

    def run(p):
        return float(p[1] - CENTRE_Y), float(lengths[straight] + frame[straight][1] - p[2])

    points, normals = rounded_outline(half_length, BUTTON_HALF_Z, BUTTON_HALF_Z, 4)
    rings = [(0, -0.4, 1, 0)]
    rings += [(0.35 - 0.35 * math.cos(t), 0.35 + 0.35 * math.sin(t), math.cos(t), math.sin(t)) for t in arc(0, 90, 3)]

    def place(k, ring):
        p, n = ring_vertex(points[k], normals[k], ring)
        return (HALF_X + p[2], y + p[0], BUTTON_Z + p[1]), np.array((n[2], n[0], n[1]))

    def emit(corners):
        for c in ((0, 1, 2), (0, 2, 3)) if len(corners) == 4 else ((0, 1, 2),):
            picked = [corners[i] for i in c]
            uvs = [CHARTS["side0"].uv(*run(p)) for p, _ in picked]
            builder.mesh.triangle([p for p, _ in picked], uvs, [n for _, n in picked])

    for i in range(len(points)):
        j = (i + 1) % len(points)
        for a, b in zip(rings, rings[1:]):
            emit([place(i, a), place(j, a), place(j, b), place(i, b)])
    for ring, out in ((rings[0], -1.0), (rings[-1], 1.0)):
        normal = np.array((out, 0.0, 0.0))
        middle = ((HALF_X + ring[1], y, BUTTON_Z), normal)
        for i in range(len(points)):
            a, b = ((place(k, ring)[0], normal) for k in (i, (i + 1) % len(points)))
            emit([a, b, middle] if out > 0 else [b, a, middle])


def build():
    builder, outline = Builder(), body_outline()
    add_front(builder, outline)
    add_recess(builder)
    for kind, rings in profile():
        add_strip(builder, kind, rings, outline)
    add_back(builder, outline)
    add_camera(builder)
    for y, half_length in BUTTONS:
        add_button(builder, y, half_length)
    return builder.mesh


def make_mesh(root):
    return build().write(root / "N9_low.obj", "slab phone; the screen itself is drawn by the show")


def make_texture(root):
    import phonepaint
    return phonepaint.make(root)
