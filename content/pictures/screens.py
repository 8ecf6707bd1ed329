"""harmattan-home.png and callscreen2.jpg: what the phone itself shows; packaging/icons, the show's icon.

The icons of the home screen are the scenes of the show, so it is painted after all others.
"""

import os

import numpy
from PIL import Image

import art

WIDTH, HEIGHT = 854, 480

# label, picture, centre and side of the square cut from it, as parts of its height
ICONS = (
    ("juice", "mujuice2.jpg", (0.335, 0.56), 0.62),
    ("logo", "vxqlogomask.jpg", (1.39, 0.50), 0.70),
    ("crown", "ripsilu.jpg", (0.78, 0.62), 0.80),
    ("woods", "woods.jpg", (0.76, 0.50), 0.98),
    ("sleep", "face.jpg", (0.854, 0.50), 0.78),
    ("bones", "kallotausta.jpg", (0.854, 0.50), 0.86),
    ("halo", "pb.jpg", (0.65, 0.50), 0.96),
    ("stone", "rock.jpg", (0.50, 0.50), 0.66),
    ("dusk", "darkmetal.jpg", (0.89, 0.66), 0.62),
    ("lace", "lacetrace.jpg", (0.25, 0.25), 0.56),
    ("heart", "heart.png", (0.5, 0.5), 1.0),
    ("flesh", "bubbles.jpg", (0.5, 0.5), 0.7),
)


def picture(name):
    return numpy.asarray(Image.open(art.gfx(name)).convert("RGBA"), dtype=float) / 255


def carved(rock):
    """A tile of the wall, half as large as its texture, with the sign's first letter."""
    rock = numpy.stack([art.resized(rock[..., c], 256, 256) for c in range(3)], -1)
    umber = picture("credits.jpg")[:256, 64:320, :3]
    return (rock * (1 - umber) + numpy.array(art.UMBER) * umber) * 1.15


def cut(name, centre, side, size):
    whole = picture(name)
    if name.startswith("rock"):
        whole = carved(whole)
    if name.startswith("heart"):
        back = art.mix((0.98, 0.86, 0.66), (0.90, 0.55, 0.30), art.grid(*whole.shape[1::-1])[1])
        whole = art.mix(back, whole[..., :3], whole[..., 3])
        whole = numpy.pad(whole, ((14, 14), (14, 14), (0, 0)), mode="edge")
    if name.startswith("vxqlogo") or name.startswith("mujuice"):
        whole = numpy.stack([art.resized(whole[..., c], 512, 288) for c in range(3)], -1)
    height = whole.shape[0]
    x0, y0 = int((centre[0] - side / 2) * height), int((centre[1] - side / 2) * height)
    edge = int(side * height)
    x0, y0 = min(max(x0, 0), whole.shape[1] - edge), min(max(y0, 0), height - edge)
    piece = whole[y0 : y0 + edge, x0 : x0 + edge, :3]
    return numpy.clip(numpy.stack([art.resized(piece[..., c], size, size) for c in range(3)], -1), 0, 1)


def tile(size, power=5.0):
    """Distance from the middle of a rounded square, 1 on its rim."""
    axis = (numpy.arange(size) + 0.5) / size * 2 - 1
    x, y = numpy.meshgrid(axis, axis)
    return (abs(x) ** power + abs(y) ** power) ** (1 / power), y


def lay(canvas, piece, alpha, left, top):
    height, width = alpha.shape
    part = canvas[top : top + height, left : left + width]
    canvas[top : top + height, left : left + width] = art.mix(part, piece, alpha)


def glass(piece):
    """A lens over a square picture, bright at its upper rim: colour and alpha."""
    size = piece.shape[0]
    r, down = tile(size)
    rim = art.smooth(0.90, 0.97, r)
    piece = (
        piece
        + (0.30 * rim * art.smooth(0.3, -0.9, down))[..., None]
        - (0.25 * rim * art.smooth(0.0, 0.9, down))[..., None]
    )
    gloss = 0.10 * art.smooth(0.02, -0.02, down + 0.10 - 0.16 * (numpy.linspace(-1, 1, size)[None, :] ** 2))
    return numpy.clip(piece + gloss[..., None], 0, 1), art.smooth(1.0, 0.965, r)


def icon(canvas, piece, centre):
    """Under glass, with a shadow below."""
    size = piece.shape[0]
    r, _ = tile(size)
    left, top = int(centre[0] - size / 2), int(centre[1] - size / 2)
    pad = 16
    shadow = numpy.zeros((size + 2 * pad, size + 2 * pad))
    shadow[pad:-pad, pad:-pad] = art.smooth(1.0, 0.97, r)
    lay(canvas, numpy.zeros(3), 0.55 * art.blur(shadow, 6), left - pad, top - pad + 5)
    lay(canvas, *glass(piece), left, top)


def write(canvas, words, weight, size, centre, colour, spacing=0, shadow=0.6):
    ink = art.text(WIDTH, HEIGHT, weight, size, words, centre, spacing)
    if shadow:
        canvas[:] = art.mix(canvas, numpy.zeros(3), shadow * art.blur(numpy.roll(ink, 1, 0), 1.5))
    canvas[:] = art.mix(canvas, numpy.array(colour), ink)


def rings(centre, width=WIDTH, height=HEIGHT):
    """Ember rings on dark water, the pool seen from far above."""
    x, y = numpy.meshgrid(numpy.arange(width) + 0.5, numpy.arange(height) + 0.5)
    bend = art.tilenoise(1024, 512, 2.2, 91)[:height, :width]
    d = numpy.hypot(x - centre[0], (y - centre[1]) * 1.25) / 100 + 0.10 * bend
    wave = numpy.cos(d * 9.0) * numpy.exp(-d * 0.10)
    line = numpy.exp(-(((wave - 0.55) / 0.10) ** 2)) + 0.5 * numpy.exp(-(((wave + 0.3) / 0.06) ** 2))
    near = numpy.exp(-d * 0.42)
    light = (line * near)[..., None] * numpy.array((0.55, 0.13, 0.015)) + (near**2)[..., None] * numpy.array(
        (0.34, 0.085, 0.012)
    )
    cold = art.smooth(0.45, 1.15, x / width) * art.smooth(0.9, 0.2, y / height)
    light = light + (cold * (0.3 + 0.7 * line))[..., None] * numpy.array((0.006, 0.055, 0.085))
    return art.film(light + numpy.array((0.004, 0.004, 0.005)), 1.0)


def status(canvas):
    """Signal, clock, battery."""
    canvas[:26] *= 0.45
    write(canvas, "21:04", "bold", 23, (WIDTH / 2, 13.5), art.WINDOW, 1, 0)
    for bar in range(5):
        canvas[20 - 3 * bar - 1 : 20, 16 + 6 * bar : 20 + 6 * bar] = (
            art.WINDOW if bar < 4 else numpy.array(art.WINDOW) * 0.35
        )
    write(canvas, "VXQ", "regular", 20, (66, 13.5), art.WINDOW, 1, 0)
    canvas[7:20, 806:836] = art.WINDOW
    canvas[8:19, 807:835] = art.NIGHT
    canvas[10:17, 809:829] = art.GREEN
    canvas[10:17, 836:839] = art.WINDOW


def home():
    canvas = rings((WIDTH * 0.40, HEIGHT * 1.02))
    status(canvas)
    size, step = 88, (130, 139)
    for number, (label, name, centre, side) in enumerate(ICONS):
        x = WIDTH / 2 + (number % 6 - 2.5) * step[0]
        y = 96 + number // 6 * step[1]
        icon(canvas, cut(name, centre, side, size), (x, y))
        write(canvas, label, "regular", 23, (x, y + size / 2 + 15), art.WINDOW, 0.5)
    dock(canvas)
    Image.fromarray(art.eightbit(art.grain(canvas, 0.006, 92)), "RGB").save(
        art.gfx("harmattan-home.png"), optimize=True
    )


def dock(canvas):
    """Four round keys in the palette's own colours."""
    canvas[378:] = art.mix(canvas[378:], numpy.array((0.02, 0.02, 0.022)), 0.55)
    canvas[378:379] = canvas[378:379] * 0.4 + 0.16
    for number, (colour, paint) in enumerate(
        ((art.GREEN, handset), (art.BLUE, envelope), (art.FLASH, globe), (art.EMBER, note))
    ):
        size = 70
        axis = (numpy.arange(size) + 0.5) / size * 2 - 1
        u, v = numpy.meshgrid(axis, axis)
        r = numpy.hypot(u, v)
        face = (
            numpy.array(colour) * (1.05 - 0.45 * (v * 0.5 + 0.5))[..., None]
            + 0.25 * (art.smooth(0.85, 0.96, r) * (v < 0))[..., None]
        )
        sign = paint(u, v)
        face = art.mix(face, numpy.array(art.WINDOW), sign)
        lay(
            canvas,
            numpy.clip(face, 0, 1),
            art.smooth(0.99, 0.94, r),
            int(WIDTH / 2 + (number - 1.5) * 150 - size / 2),
            394,
        )


def soft(d, width=0.03):
    return art.smooth(width, -width, d)


def handset(u, v):
    """A bow with two pads at its ends, held aslant."""
    a = 0.65
    x, y = u * numpy.cos(a) + v * numpy.sin(a), -u * numpy.sin(a) + v * numpy.cos(a)
    turn, reach = numpy.arctan2(x, y + 0.70), numpy.hypot(x, y + 0.70)
    beyond = numpy.maximum(abs(turn) - 0.62, 0) * 0.85
    bow = numpy.hypot(reach - 0.85, beyond) - 0.10
    pads = [
        numpy.hypot(numpy.maximum(abs(x - s * 0.49) - 0.085, 0), numpy.maximum(abs(y + 0.10) - 0.14, 0)) - 0.065
        for s in (-1, 1)
    ]
    return soft(numpy.minimum(bow, numpy.minimum(*pads)))


def envelope(u, v):
    box = numpy.maximum(abs(u) - 0.50, abs(v) - 0.34)
    flap = numpy.minimum(abs(v + 0.30 - 0.75 * (0.50 - abs(u))), 1)
    flap = numpy.where(abs(u) < 0.5, flap - 0.045, 1)
    return soft(box) * (1 - soft(flap, 0.02))


def globe(u, v):
    r = numpy.hypot(u, v)
    lines = numpy.minimum(
        abs(v), numpy.minimum(abs(abs(v) - 0.27 - 0.12 * u * u), abs(numpy.hypot(u / 0.45, v) - 0.55) * 0.6)
    )
    lines = numpy.minimum(lines, abs(u))
    return soft(r - 0.55) * (1 - soft(lines - 0.030, 0.02))


def note(u, v):
    heads = numpy.minimum(*[numpy.hypot((u - x) / 1.25, v - y) - 0.135 for x, y in ((-0.26, 0.36), (0.28, 0.26))])
    stems = numpy.minimum(
        *[numpy.maximum(abs(u - x) - 0.040, abs(v - y) - 0.36) for x, y in ((-0.12, 0.02), (0.42, -0.08))]
    )
    beam = numpy.maximum(abs(u - 0.15) - 0.31, abs(v + 0.37 + 0.19 * (u - 0.15)) - 0.085)
    return soft(numpy.minimum(numpy.minimum(heads, stems), beam))


def pill(canvas, centre, half, colour, sign, turn):
    x, y = numpy.meshgrid(numpy.arange(WIDTH) + 0.5 - centre[0], numpy.arange(HEIGHT) + 0.5 - centre[1])
    d = numpy.hypot(numpy.maximum(abs(x) - half[0] + half[1], 0), y) - half[1]
    canvas[:] = art.mix(canvas, numpy.zeros(3), 0.5 * numpy.exp(-numpy.maximum(d - 0, 0) / 8) * art.smooth(-2, 2, d))
    face = numpy.array(colour) * (1.15 - 0.55 * (y / half[1] * 0.5 + 0.5))[..., None]
    face = face + (0.30 * numpy.exp(-(((d + 2.0) / 1.6) ** 2)) * (y < 0))[..., None]
    canvas[:] = art.mix(canvas, numpy.clip(face, 0, 1), art.smooth(0.7, -0.7, d))
    c, s = numpy.cos(turn), numpy.sin(turn)
    u, v = x / (half[1] * 0.98), y / (half[1] * 0.98)
    canvas[:] = art.mix(canvas, numpy.array(art.WINDOW), handset(u * c + v * s, -u * s + v * c))


def call():
    """Somebody rings: the sign in a lens among rings, where the heart was before; who it is at its left, the two keys
    at its right."""
    middle = (427, 246)
    canvas = rings(middle) * 0.9
    woods = art.blur(picture("woods.jpg")[..., :3], 16)
    canvas = numpy.clip(canvas + 0.40 * woods * art.smooth(0.3, 1.0, art.grid(WIDTH, HEIGHT)[0])[..., None], 0, 1)
    status(canvas)
    x, y = numpy.meshgrid(numpy.arange(WIDTH) + 0.5 - middle[0], numpy.arange(HEIGHT) + 0.5 - middle[1])
    r = numpy.hypot(x, y)
    for radius, strength in ((146, 0.9), (166, 0.5), (188, 0.28), (212, 0.14)):
        canvas = numpy.clip(
            canvas
            + (strength * numpy.exp(-(((r - radius) / 1.8) ** 2)))[..., None] * numpy.array(art.FLASH)
            + (0.4 * strength * numpy.exp(-(((r - radius) / 7.0) ** 2)))[..., None] * numpy.array(art.EMBER),
            0,
            1,
        )
    sign = picture("vxqlogomask.jpg")[..., :3]
    sign = numpy.stack([art.resized(sign[..., c], 264, 148) for c in range(3)], -1)
    lens = numpy.zeros((264, 264, 3))
    lens[58 : 58 + 148] = numpy.clip(sign, 0, 1)
    inner = numpy.hypot(*numpy.meshgrid(numpy.arange(264) - 131.5, numpy.arange(264) - 131.5))
    lens = lens * 0.95 + 0.03
    lay(canvas, numpy.clip(lens, 0, 1), art.smooth(131.5, 130, inner), middle[0] - 132, middle[1] - 132)
    write(canvas, "VXQ", "bold", 104, (138, 196), art.WINDOW, 6)
    write(canvas, "is calling,", "regular", 42, (138, 272), art.PALE, 1)
    write(canvas, "once again", "regular", 42, (138, 316), art.PALE, 1)
    pill(canvas, (722, 168), (84, 42), art.GREEN, handset, 0.0)
    pill(canvas, (722, 300), (84, 42), (0.78, 0.13, 0.05), handset, 2.2)
    write(canvas, "answer", "regular", 28, (722, 229), art.WINDOW, 1)
    write(canvas, "not now", "regular", 28, (722, 361), art.WINDOW, 1)
    art.save(art.grain(canvas, 0.008, 93), "callscreen2.jpg")


def desktop():
    """The show's own icon where it is installed, in the usual sizes: the logo's last letter."""
    _, name, centre, side = ICONS[1]
    for size in (32, 48, 64, 128, 256):
        colour, alpha = glass(cut(name, centre, side, size))
        Image.fromarray(art.eightbit(numpy.dstack([colour, alpha])), "RGBA").save(
            os.path.join(art.ROOT, "packaging", "icons", f"{size}.png"), optimize=True
        )


def make():
    call()
    home()
    desktop()
