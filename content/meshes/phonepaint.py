"""What is painted on the phone: glass, metal, lacquer, lenses, with the light of a studio baked in.

The show lights the phone by how far a surface faces the eye and by nothing else. So reflections, occlusion, seams
and gloss are all here. Every shape is a signed distance in model units, drawn with a soft edge of one texel.
"""
import numpy as np

import flight
import obj
import phone
import png
import raster
from shapes import circle, letters, pill, smooth

GLASS = np.array((0.030, 0.034, 0.042))
METAL = np.array((0.66, 0.645, 0.62))
LACQUER = np.array((0.030, 0.235, 0.300))
LACQUER_LIGHT = np.array((0.10, 0.44, 0.50))


class Layer:
    """One chart being painted: x and y are the coordinates things are placed by."""

    def __init__(self, x, y, colour):
        self.x, self.y = x, y
        self.colour = np.ones((*x.shape, 3)) * colour

    def paint(self, distance, colour, amount=1.0):
        mask = np.clip(0.5 - distance * phone.DENSITY, 0, 1) * amount
        self.colour += (np.asarray(colour) - self.colour) * mask[..., None]

    def shade(self, factor):
        self.colour *= np.asarray(factor)[..., None]

    def occlude(self, distance, reach, strength):
        """Darkness that gathers round a shape."""
        self.shade(1 - strength * np.exp(-np.maximum(distance, 0) / reach))

    def light(self, amount, colour=(1, 1, 1)):
        self.colour += np.asarray(amount)[..., None] * np.array(colour)


def front(x, y):
    """Black glass: one soft window of light across it, an earpiece, a camera, a sensor."""
    layer = Layer(x, y, GLASS)
    top = y - phone.CENTRE_Y
    layer.light(0.050 * smooth(-60, 75, top + 0.35 * x), (0.75, 0.9, 1.0))
    window = top * 0.9 + x * 0.55
    layer.light(0.050 * smooth(28, 30, window) * (1 - smooth(52, 56, window)), (0.8, 0.92, 1.0))
    layer.light(0.018 * smooth(-52, -50, window) * (1 - smooth(-44, -40, window)), (0.8, 0.92, 1.0))
    edge = -pill(x, y, 0, phone.CENTRE_Y, phone.HALF_X, phone.HALF_Y, phone.CORNER)
    layer.light(0.30 * np.exp(-((edge - phone.SEAM - 0.5) / 0.32) ** 2), (0.85, 0.93, 1.0))
    layer.light(0.05 * np.exp(-((edge - 2.5) / 0.5) ** 2))
    layer.shade(1 - 0.8 * np.exp(-((edge - phone.SEAM) / 0.22) ** 2))
    screen = pill(x, y, 0, phone.CENTRE_Y, phone.SCREEN_HALF_X, (phone.SCREEN_HIGH - phone.SCREEN_LOW) / 2, 0.0)
    layer.shade(1 - 0.75 * (1 - smooth(0.0, 0.7, screen)))

    speaker = phone.CENTRE_Y + 53.6
    slot = pill(x, y, 0, speaker, 6.4, 0.78, 0.78)
    layer.paint(slot - 0.16, (0.20, 0.21, 0.22))
    layer.paint(slot, (0.012, 0.012, 0.014))
    mesh = np.maximum(np.hypot((x * 2.2 + 0.5) % 1 - 0.5, (y * 2.2) % 1 - 0.5) / 2.2 - 0.12, slot + 0.12)
    layer.paint(mesh, (0.15, 0.155, 0.16))
    lens(layer, -13.0, speaker, 1.75, small=True)
    layer.paint(circle(x, y, 12.4, speaker, 0.8), (0.016, 0.014, 0.03))
    layer.paint(circle(x, y, 12.2, speaker + 0.2, 0.28), (0.05, 0.04, 0.10))
    mark = np.abs(circle(x, y, 0, phone.CENTRE_Y - 53.2, 2.15)) - 0.13
    layer.paint(mark, (0.34, 0.40, 0.43))
    layer.paint(circle(x, y, 0, phone.CENTRE_Y - 53.2, 0.5), (0.34, 0.40, 0.43))
    return layer.colour


def lens(layer, cx, cy, radius, small=False):
    """Glass in a barrel: rings that darken inwards, a coating's colours, two lights."""
    x, y = layer.x, layer.y
    r = np.hypot(x - cx, y - cy) / radius
    angle = np.arctan2(y - cy, x - cx)
    layer.paint(circle(x, y, cx, cy, radius), (0.012, 0.013, 0.016))
    for ring, tone in ((0.97, 0.16), (0.84, 0.085), (0.72, 0.06), (0.60, 0.05)):
        layer.paint(np.abs(circle(x, y, cx, cy, radius * ring)) - radius * 0.022,
                    np.array((1, 1.02, 1.06)) * tone * (1.0 + 0.6 * np.cos(angle - 2.2))[..., None])
    inside = (r < 0.95).astype(float)
    coat = lambda at, wide: inside * np.exp(-((r - at) / wide) ** 2)
    layer.light(0.11 * coat(0.46, 0.10) * smooth(0.1, 1, np.cos(angle + 0.9)), (0.45, 0.25, 1.0))
    layer.light(0.10 * coat(0.40, 0.12) * smooth(0.2, 1, np.cos(angle - 2.3)), (0.1, 0.75, 0.65))
    layer.light(0.05 * coat(0.22, 0.09), (0.9, 0.45, 0.2))
    layer.paint(circle(x, y, cx, cy, radius * 0.17), (0.002, 0.002, 0.004))
    spark = radius * (0.12 if small else 0.085)
    layer.paint(circle(x, y, cx - radius * 0.30, cy + radius * 0.34, spark), (0.92, 0.96, 1.0), 0.9)
    layer.paint(circle(x, y, cx + radius * 0.24, cy - radius * 0.30, radius * 0.045), (0.8, 0.85, 1.0), 0.6)


def metal_rim(layer, cx, cy, outer, inner):
    """Turned metal: bright where it faces two lamps."""
    angle = np.arctan2(layer.y - cy, layer.x - cx)
    gloss = 0.55 + 0.33 * np.cos(2 * (angle - 0.7)) ** 2 + 0.25 * np.exp(-((np.cos(angle - 2.2) - 1) / 0.08) ** 2)
    layer.paint(circle(layer.x, layer.y, cx, cy, outer), METAL * gloss[..., None])
    layer.paint(np.abs(circle(layer.x, layer.y, cx, cy, inner + 0.05)) - 0.07, (0.05, 0.05, 0.05))


def emblem(layer, cy, colour, amount):
    """The group's letters V, X, Q in one line weight, upright when the phone lies on its side, back to the eye."""
    x, y, height = cy - layer.y, -layer.x, 4.2
    shape = letters(x, y, height, 0.55)
    layer.occlude(shape, 0.25, 0.3)
    layer.paint(shape, np.array(colour) * (0.85 + 0.15 * y / height)[..., None], amount)


def back(x, y):
    """Lacquer with a slow sheen, the camera under its own glass, the group's mark, two hairline seams."""
    layer = Layer(x, y, LACQUER)
    top = (y - phone.CENTRE_Y) / phone.HALF_Y
    sheen = 0.5 + 0.5 * top + 0.12 * np.sin(x / 30.5 * 1.6)
    layer.colour += (LACQUER_LIGHT - layer.colour) * (0.50 * smooth(-0.1, 1.25, sheen))[..., None]
    band = top * 61 - x * 0.9
    layer.light(0.075 * np.exp(-((band - 8) / 15) ** 2) + 0.04 * np.exp(-((band + 34) / 6) ** 2), (0.75, 0.95, 1.0))
    random = np.random.RandomState(4)
    layer.shade(1 + 0.012 * random.standard_normal(x.shape))
    edge = -pill(x, y, 0, phone.CENTRE_Y, phone.HALF_X, phone.HALF_Y, phone.CORNER)
    layer.light(0.20 * np.exp(-((edge - phone.SEAM - 1.0) / 0.7) ** 2), (0.65, 0.9, 1.0))
    layer.shade(1 - 0.75 * np.exp(-((edge - phone.SEAM) / 0.22) ** 2))
    seam = np.abs(y - (phone.CENTRE_Y - 52.0)) - 0.07
    layer.paint(seam, (0.01, 0.05, 0.06))
    layer.paint(np.abs(y - (phone.CENTRE_Y - 51.8)) - 0.07, (0.2, 0.5, 0.55), 0.3)
    emblem(layer, phone.CENTRE_Y - 4, (0.70, 0.80, 0.80), 0.85)

    i = phone.ISLAND
    shape = pill(x, y, i["x"], i["y"], i["half_x"], i["half_y"], i["corner"])
    shadow = pill(x, y, i["x"] + 0.6, i["y"] - 1.0, i["half_x"], i["half_y"], i["corner"])
    layer.shade(np.where(shape > 0, 1 - 0.6 * np.exp(-np.maximum(shadow, 0) / 1.3), 1.0))
    turn = np.arctan2(y - i["y"], x - i["x"])
    layer.paint(shape, METAL * (0.62 + 0.3 * np.cos(turn - 2.1) ** 2)[..., None])
    layer.paint(shape + 0.72, (0.03, 0.03, 0.03))
    plate = np.array((0.045, 0.052, 0.060)) + 0.035 * smooth(-14, 14, (y - i["y"]) + (x - i["x"]))[..., None]
    layer.paint(shape + 0.85, plate)
    layer.light(0.05 * ((shape < -0.85) * np.exp(-((y - i["y"] - 0.8 * (x - i["x"]) - 2) / 2.2) ** 2)))
    for cx, cy in phone.LENSES:
        foot = np.maximum(circle(x, y, cx, cy, phone.LENS_RADIUS), 0)
        layer.shade(np.where(shape < 0, 1 - 0.6 * np.exp(-foot / 0.6), 1))
        metal_rim(layer, cx, cy, phone.LENS_RADIUS, phone.LENS_RADIUS - 1.2)
        lens(layer, cx, cy, phone.LENS_RADIUS - 1.2)
    fx, fy = phone.FLASH[0] + 4.6, phone.FLASH[1]
    r = np.hypot(x - fx, y - fy)
    layer.paint(circle(x, y, fx, fy, 1.5), (0.10, 0.10, 0.10))
    layer.paint(circle(x, y, fx, fy, 1.3), np.array((0.95, 0.88, 0.62)) * (0.72 + 0.2 * np.cos(r * 14))[..., None])
    layer.paint(circle(x, y, fx - 0.3, fy + 0.35, 0.3), (1, 1, 0.95), 0.9)
    layer.paint(circle(x, y, phone.FLASH[0] - 5.2, fy, 0.42), (0.004, 0.004, 0.004))
    return layer.colour


def brushed(run, across, seed):
    """Metal with fine lines along its run, lit by a long lamp above and the floor's bounce below."""
    random = np.random.RandomState(seed)
    lines = random.standard_normal((run.shape[0], 1)) if np.ptp(across[:, 0]) > np.ptp(across[0]) else \
        random.standard_normal((1, run.shape[1]))
    fine = random.standard_normal(run.shape)
    t = across / phone.FRAME_LENGTH
    lamp = 0.80 + 0.30 * np.exp(-((t - 0.30) / 0.12) ** 2) - 0.22 * smooth(0.44, 0.54, t) + 0.16 * smooth(0.66, 0.95, t)
    layer = Layer(run, across, METAL)
    layer.shade(lamp * (1 + 0.030 * lines + 0.006 * fine) * (1 + 0.07 * np.sin(run / 9.0)))
    for lip in (0.75, phone.FRAME_LENGTH - 0.75):
        layer.light(0.30 * np.exp(-((across - lip) / 0.50) ** 2))
    for seam in (0.0, phone.FRAME_LENGTH):
        layer.shade(1 - 0.7 * np.exp(-((across - seam) / 0.16) ** 2))
    return layer


def antenna_line(layer, run):
    strip = np.abs(layer.x - run) - 0.62
    layer.paint(strip - 0.10, (0.10, 0.10, 0.10), 0.6)
    layer.paint(strip, (0.24, 0.27, 0.28))


def frame_across(z):
    """Where along the frame's profile a height lies; the straight part only."""
    rings = phone.profile()[1][1]
    straight = next(i for i, ring in enumerate(rings) if ring[0] == 0.0)
    return phone.profile_length(rings)[straight] + rings[straight][1] - z


def side(number, run, across):
    layer = brushed(run, across, 70 + number)
    middle = frame_across(phone.BUTTON_Z)
    long = phone.LONG_RUN if number % 2 == 0 else phone.SHORT_RUN
    if number % 2 == 0:
        for place in (-long + 16, long - 16):
            antenna_line(layer, place)
    if number == 0:
        for y, half in phone.BUTTONS:
            shape = pill(run, across, y - phone.CENTRE_Y, middle, half, phone.BUTTON_HALF_Z, phone.BUTTON_HALF_Z)
            layer.shade(np.where(shape > 0, 1 - 0.65 * np.exp(-shape / 0.40), 1.0))
            layer.paint(shape, METAL * (1.08 - 0.10 * np.abs(across - middle))[..., None])
            layer.light((shape < 0) * 0.18 * np.exp(-((shape + 0.30) / 0.12) ** 2))
    if number == 2:
        tray = pill(run, across, -24.0, middle, 7.5, 1.35, 0.6)
        layer.paint(np.abs(tray) - 0.07, (0.10, 0.10, 0.10))
        layer.light(0.12 * np.exp(-((tray + 0.2) / 0.09) ** 2))
        layer.paint(circle(run, across, -18.6, middle, 0.42), (0.03, 0.03, 0.03))
    if number == 1:
        hole(layer, 9.0, middle, 0.45)
        jack = circle(run, across, -9.5, middle, 1.9)
        layer.paint(np.abs(jack) - 0.22, (0.80, 0.78, 0.74))
        layer.paint(jack, (0.015, 0.015, 0.015))
        layer.paint(np.abs(jack + 0.75) - 0.08, (0.20, 0.19, 0.16))
    if number == 3:
        port = pill(run, across, 0, middle, 4.6, 1.45, 1.45)
        layer.paint(np.abs(port) - 0.16, (0.82, 0.80, 0.77))
        layer.paint(port, (0.012, 0.012, 0.012))
        layer.paint(pill(run, across, 0, middle, 3.2, 0.36, 0.2), (0.16, 0.16, 0.16))
        for i in range(6):
            for direction in (-1, 1):
                hole(layer, direction * (8.6 + 1.75 * i), middle, 0.62)
    return layer.colour


def hole(layer, run, across, radius):
    layer.paint(circle(layer.x, layer.y, run, across, radius + 0.12), METAL * 0.45)
    layer.paint(circle(layer.x, layer.y, run, across + 0.05, radius), (0.012, 0.012, 0.012))


def paint():
    canvas = np.zeros((phone.TEXTURE, phone.TEXTURE, 4))
    canvas[..., :3], canvas[..., 3] = GLASS, 1
    for name, chart in phone.CHARTS.items():
        a, b, where = chart.grid()
        if name.startswith("side"):
            number = int(name[-1])
            colour = side(number, *((b, a) if number % 2 else (a, b)))
        elif name == "back":
            colour = back(-b, phone.CENTRE_Y + phone.HALF_Y - a)
        else:
            colour = front(b, phone.CENTRE_Y + phone.HALF_Y - a)
        canvas[where] = np.dstack([colour, np.ones(a.shape)])
    return np.clip(canvas, 0, 1)


def portrait(texture, mesh_file, size):
    """The phone from its side, nose to the right, cut out: what the rocket wears."""
    positions, texcoords, normals, faces = obj.read(mesh_file)
    corners = faces.reshape(-1, 3)
    pose = (flight.translation((0, 0, -168)) @ flight.rotation(-12, "y") @ flight.rotation(125, "x")
            @ flight.rotation(-90, "z") @ flight.translation((0, -phone.CENTRE_Y, -phone.SCREEN_Z / 2)))
    lens_matrix = flight.perspective(fovy=25.0, aspect=size[0] / size[1], near=10)
    points = np.c_[positions[corners[:, 0]], np.ones(len(corners))]
    facing = np.clip((normals[corners[:, 2]] @ pose[2, :3]), 0.2, 1.0)
    attributes = np.c_[texcoords[corners[:, 1]], facing]

    def shade(values):
        colour = raster.sample(texture, values[:, 0], values[:, 1])
        colour[:, :3] *= 0.25 + 0.75 * values[:, 2:3]
        return colour

    return raster.render(size, points @ (lens_matrix @ pose).T, attributes, np.arange(len(points)).reshape(-1, 3),
                         shade, np.zeros((size[1], size[0], 4)))


def fit_rocket(canvas, root):
    rows, columns = phone.ROCKET
    height, width = rows.stop - rows.start, columns.stop - columns.start
    picture = portrait(canvas, root / "N9_low.obj", (2 * width, 2 * height))
    picture = picture.reshape(height, 2, width, 2, 4).mean((1, 3))
    picture[..., :3] /= np.maximum(picture[..., 3:], 1e-6)
    canvas[rows, columns] = picture


def make(root):
    canvas = paint()
    fit_rocket(canvas, root)
    png.save((np.clip(canvas, 0, 1) * 255 + 0.5).astype(np.uint8), root / "gfx/N9_uv.png")
    return f"{phone.TEXTURE} x {phone.TEXTURE}"
