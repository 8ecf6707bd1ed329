"""The small ones: heart, letters, roses, glyphs, the ball's oranges, the ribbon's stand-in."""

import numpy
from PIL import Image, ImageDraw

import art
import studio
from layout import CELL, EMPTY, GLYPHS, LETTER_WIDTH, LETTERS_FROM


def sprite(colour, alpha):
    """Colour runs a little past the edge of what is seen, and is zero where nothing is."""
    return numpy.dstack([colour * (alpha > 0)[..., None], alpha])


def glyph(letter, scale=8):
    """Coverage of one cell: the face stretched upwards, wide letters squeezed, rims kept free."""
    width, height = CELL[0] * scale, CELL[1] * scale
    sheet = Image.new("L", (width * 6, height), 0)
    type_ = art.face("bold", int(height * 0.86))
    ImageDraw.Draw(sheet).text((width * 3, height * 0.775), letter, font=type_, fill=255, anchor="ms")
    box = sheet.getbbox()
    ink = sheet.crop((box[0], 0, box[2], height))
    widest = (CELL[0] - 4.5) * scale
    stretch = min(0.74 if letter in "iIl.,:;'!|" else 0.80, widest / ink.width)
    ink = ink.resize((max(1, round(ink.width * stretch)), height), Image.LANCZOS)
    cell = Image.new("L", (width, height), 0)
    cell.paste(ink, ((width - ink.width) // 2, 0))
    small = cell.resize(CELL, Image.BOX)
    coverage = numpy.asarray(small, dtype=float) / 255
    coverage[:3], coverage[-3:], coverage[:, :1], coverage[:, -2:] = 0, 0, 0, 0
    return numpy.where(coverage < 0.03, 0, coverage)


def chargen():
    """The ribbon shows blue, red, green as red, green, blue; the text box shows red alone."""
    sheet = numpy.zeros((4 * CELL[1], 32 * CELL[0]))
    for number, letter in enumerate(GLYPHS):
        if letter not in EMPTY:
            row, column = divmod(number, 32)
            sheet[row * CELL[1] : (row + 1) * CELL[1], column * CELL[0] : (column + 1) * CELL[0]] = glyph(letter)
    down = numpy.tile((numpy.arange(CELL[1]) + 0.5) / CELL[1], 4)[:, None]
    fall = art.smooth(0.12, 0.80, down) + 0 * sheet
    band = numpy.exp(-(((down - 0.47) / 0.018) ** 2)) + 0 * sheet
    fill = art.mix((0.84, 0.92, 0.62), (0.44, 0.07, 0.60), fall)
    fill = art.mix(fill, (0.30, 0.05, 0.50), 0.30 * band)
    art.save(sprite(fill * sheet[..., None] ** 0.35, sheet), "chargen.png")


def scroller():
    ink = art.text(512, 64, "bold", 60, "VXQ  ·  TARVISK  ·  VXQ", (256, 33), 6)
    art.save(sprite(numpy.zeros((64, 512, 3)) + art.WINDOW, ink), "scroller.png")


def gone():
    """Four letters in a row; the last cell reaches past the picture's edge, its letter does not."""
    width, height, scale = 256, 64, 4
    ink = numpy.zeros((height, width))
    for number, letter in enumerate("GONE"):
        sheet = Image.new("L", (width * scale, height * scale), 0)
        type_ = art.face("bold", int(height * scale * 1.08))
        centre = (LETTERS_FROM + LETTER_WIDTH * (number + 0.5)) * width
        ImageDraw.Draw(sheet).text((centre * scale, height * scale * 0.86), letter, font=type_, fill=255, anchor="ms")
        ink = numpy.maximum(ink, numpy.asarray(sheet.resize((width, height), Image.BOX), dtype=float) / 255)
    ink[:, :2], ink[:, -3:], ink[:2], ink[-2:] = 0, 0, 0, 0
    rim = numpy.clip(art.blur(ink, 1.8) * 2.6, 0, 1)
    rim[:, :2], rim[:, -3:], rim[:1], rim[-1:] = 0, 0, 0, 0
    rim = numpy.where(rim < 0.02, 0, rim)
    down = (numpy.arange(height) + 0.5)[:, None] / height + 0 * ink
    fill = art.mix((1.0, 1.0, 0.86), (1.0, 0.80, 0.46), art.smooth(0.2, 0.9, down))
    art.save(sprite(art.mix((0.10, 0.02, 0.0), fill, ink), rim), "gone.png")


def dot():
    """An orange that fills its square as far as a ball can. gl_PointCoord runs down where textures run up,
    so the light that shall come from above is painted below."""
    x, y = art.grid(64, 64)
    x, y = x * 2 - 1, y * 2 - 1
    power = 2.3  # reads as a sphere, and leaves less of its square dark than a disc
    r = (abs(x) ** power + abs(y) ** power) ** (1 / power)
    z = numpy.sqrt(numpy.clip(1 - numpy.clip(r, 0, 1) ** 2, 0, 1))
    facing = -0.42 * x + 0.52 * y
    diffuse = numpy.clip((facing + 0.745 * z + 0.15) / 1.15, 0, 1)
    rim = numpy.exp(-(((r - 0.93) / 0.07) ** 2)) * art.smooth(0.1, -0.8, facing)
    shine = numpy.exp(-((x + 0.36) ** 2 + (y - 0.44) ** 2) * 30)
    pores = art.blur(numpy.random.default_rng(14).standard_normal((64, 64)), 1.1) * 3
    pores = (
        pores - numpy.roll(pores, 1, 0) - numpy.roll(pores, -1, 1) + numpy.roll(numpy.roll(pores, 1, 0), -1, 1)
    ) * z
    lit = numpy.clip(diffuse + 0.05 * pores, 0, 1)
    rind = art.mix((0.15, 0.025, 0.03), (0.80, 0.34, 0.35), art.smooth(0, 0.55, lit))
    rind = art.mix(rind, (1.0, 0.88, 1.0), art.smooth(0.40, 1.0, lit))
    rind = rind + (0.3 * rim)[..., None] * numpy.array((1.0, 0.3, 0.1)) + shine[..., None] * (0.15, 0.35, 0.35)
    # What the corners hide of the balls behind shall look like shadow, and like nothing on black.
    corner = numpy.array((0.12, 0.02, 0.01)) * numpy.clip(1.42 - numpy.hypot(x, y), 0, 1)[..., None] / 0.42
    art.save(sprite(art.mix(corner, rind, art.smooth(1.05, 0.95, r)), 1 + 0 * r), "dot.png")


def petal(canvas, alpha, centre, half, turn, colours, x, y):
    dx, dy = x - centre[0], y - centre[1]
    c, s = numpy.cos(turn), numpy.sin(turn)
    along, across = (dx * c + dy * s) / half[0], (-dx * s + dy * c) / half[1]
    r = numpy.hypot(along, across)
    inside = art.smooth(1.06, 0.94, r)
    shade = numpy.clip(0.15 + 0.95 * (along * 0.5 + 0.5), 0, 1) ** 1.1
    lip = numpy.exp(-(((r - 0.84) / 0.13) ** 2)) * art.smooth(0.0, 0.6, along)
    canvas = canvas * (1 - 0.60 * art.smooth(1.35, 1.0, r))[..., None]  # its shadow on those below
    tint = art.mix(art.mix(colours[0], colours[1], shade), colours[2], 0.85 * lip)
    return art.mix(canvas, tint, inside), numpy.maximum(alpha, inside)


CRIMSON = ((0.30, 0.0, 0.02), (1.0, 0.05, 0.09), (1.0, 0.62, 0.46))
CREAM = ((0.66, 0.26, 0.17), (1.0, 0.88, 0.72), (1.0, 1.0, 0.92))


def bloom(canvas, alpha, at, size, turn, petals, x, y, random):
    """A rose from outside inwards: rings of petals, each over the one before."""
    for ring, (reach, half, count) in enumerate(
        ((0.56, 0.54, 5), (0.34, 0.44, 4), (0.15, 0.29, 3), (0.03, 0.14, 1))
    ):
        for number in range(count):
            a = turn + ring * 0.7 + 2 * numpy.pi * number / count + random.uniform(-0.15, 0.15)
            centre = at[0] + reach * size * numpy.cos(a), at[1] + reach * size * numpy.sin(a)
            light = 0.75 + 0.35 * (-0.5 * numpy.cos(a) - 0.6 * numpy.sin(a))
            colours = [numpy.array(c) * light for c in petals]
            canvas, alpha = petal(canvas, alpha, centre, (half * size, half * size * 1.15), a, colours, x, y)
    return canvas, alpha


def leaf(canvas, alpha, at, size, turn, x, y):
    dx, dy = x - at[0], y - at[1]
    c, s = numpy.cos(turn), numpy.sin(turn)
    along, across = (dx * c + dy * s) / size, (-dx * s + dy * c) / size
    part = numpy.clip(along, 0, 1)
    wide = 0.62 * part**0.7 * (1 - part) ** 0.9
    inside = art.smooth(0.03, -0.03, abs(across) - wide) * (along > 0) * (along < 1)
    vein = numpy.exp(-((across / 0.035) ** 2)) + 0.5 * numpy.exp(
        -(((abs(across) * 1.2 - along * 1.0) % 0.22 / 0.03) ** 2)
    )
    tint = art.mix((0.03, 0.16, 0.07), (0.257, 0.596, 0.31), numpy.clip(0.5 + across * 1.6, 0, 1))
    tint = art.mix(tint, (0.60, 0.85, 0.45), 0.5 * numpy.clip(vein, 0, 1))
    return art.mix(canvas, tint, inside), numpy.maximum(alpha, inside)


def roses():
    """Two garlands, along the upper and the lower rim; shown 1.75 times as wide as painted. Tiles sideways."""
    width, height, scale = 256, 64, 4
    x, y = numpy.meshgrid(
        (numpy.arange(width * scale) + 0.5) / scale * 1.75, (numpy.arange(height * scale) + 0.5) / scale
    )
    period = width * 1.75
    canvas, alpha = numpy.zeros(x.shape + (3,)), numpy.zeros(x.shape)
    random = numpy.random.default_rng(12)
    lines = ((11.0, 1.0, 0.0), (53.0, -1.0, period / 8))
    for rim, inwards, shift in lines:
        vine = rim + inwards * 4.0 * numpy.sin((x - shift) / period * 2 * numpy.pi * 4)
        stem = art.smooth(1.5, 0.7, abs(y - vine))
        canvas, alpha = art.mix(canvas, (0.10, 0.26, 0.10), stem), numpy.maximum(alpha, stem)
    items = []
    for rim, inwards, shift in lines:
        for number in range(4):
            centre = (number + 0.5) * period / 4 + shift
            size = random.uniform(11.6, 12.4) if number % 2 else random.uniform(9.6, 10.2)
            items.append(
                (CRIMSON if number % 2 else CREAM, centre, rim + inwards * (size - 10.5), size, random.uniform(0, 6))
            )
            for away in (-1, 1):
                for reach, lift in ((8, 0.45), (15, -0.5), (26, 0.35), (36, -0.35)):
                    turn = (0 if away > 0 else numpy.pi) + lift * inwards * away + random.uniform(-0.2, 0.2)
                    items.append(
                        (
                            None,
                            centre + away * reach,
                            rim + inwards * random.uniform(-1, 2),
                            random.uniform(14, 19),
                            turn,
                        )
                    )
    for petals, cx, cy, size, turn in sorted(items, key=lambda item: item[0] is not None):
        state = random.bit_generator.state
        for wrap in (-period, 0, period):
            if -40 < cx + wrap < period + 40:
                random.bit_generator.state = state
                window = (
                    slice(None),
                    slice(max(0, int((cx + wrap - 40) * scale / 1.75)), max(0, int((cx + wrap + 40) * scale / 1.75))),
                )
                place = (canvas[window], alpha[window], (cx + wrap, cy), size, turn)
                if petals is None:
                    canvas[window], alpha[window] = leaf(*place, x[window], y[window])
                else:
                    canvas[window], alpha[window] = bloom(*place, petals, x[window], y[window], random)
    alpha = alpha.reshape(height, scale, width, scale).mean((1, 3))
    weighted = (canvas * 1.0).reshape(height, scale, width, scale, 3).mean((1, 3))
    colour = numpy.clip(weighted / numpy.maximum(alpha, 0.02)[..., None], 0, 1)
    alpha = numpy.where(alpha < 0.02, 0, alpha)
    alpha[0], alpha[-1] = 0, 0
    art.save(sprite(colour, alpha), "roses.png")


def heartscene():
    import bpy

    bpy.context.scene.render.film_transparent = True
    flesh = studio.matter(
        "flesh",
        (0.52, 0.010, 0.014),
        0.26,
        Specular=0.6,
        Clearcoat=0.8,
        Clearcoat_Roughness=0.10,
        Subsurface=0.08,
        Subsurface_Radius=(0.20, 0.03, 0.02),
        Subsurface_Color=(1.0, 0.05, 0.02, 1),
    )
    studio.mesh("heart", *studio.sculpt("heart", 0.010), flesh)
    studio.camera((0.0, -0.05, 7.0), (0.0, -0.05, 0), 93)
    studio.lamp((-3.2, 2.6, 2.2), (0, 0.1, 0), (1.0, 0.80, 0.55), 210, 1.1)
    studio.lamp((3.4, 0.6, -0.4), (0, 0, 0), (1.0, 0.36, 0.10), 220, 1.2)
    studio.lamp((1.6, -3.0, 1.0), (0, -0.2, 0), (0.10, 0.50, 0.75), 30, 1.2)
    studio.sky((0.25, 0.10, 0.07), 0.18)


def heart():
    size = 128
    light = studio.shoot("sprites", "heartscene", size * 2, size * 2, 96)
    alpha = numpy.clip(light[..., 3], 0, 1)
    colour = art.film(light[..., :3], 1.5)
    alpha, colour = (a.reshape(size, 2, size, 2, -1).mean((1, 3)) for a in (alpha, colour))
    colour = numpy.clip(colour / numpy.maximum(alpha, 0.05) ** 0.5, 0, 1)
    alpha = alpha[..., 0]
    shadow = 0.75 * numpy.clip(2.2 * art.blur(alpha, 4.5), 0, 1)  # lifts it from flesh of nearly its own colour
    seen = alpha + shadow * (1 - alpha)
    colour = art.mix(art.UMBER, colour, alpha / numpy.maximum(seen, 0.02))
    seen = numpy.where(seen < 0.02, 0, seen)
    seen[0], seen[-1], seen[:, 0], seen[:, -1] = 0, 0, 0, 0
    art.save(sprite(colour, seen), "heart.png")


def make():
    for part in (chargen, scroller, gone, dot, roses, heart):
        part()
