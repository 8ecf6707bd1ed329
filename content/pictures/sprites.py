"""The small ones: heart, letters, roses, glyphs, the ball's blocks of juice, the ribbon's stand-in."""

import numpy
from PIL import Image, ImageDraw

import art
import layout
import studio
from layout import CELL, EMPTY, GLYPHS, LETTER_WIDTH, LETTERS_FROM


def sprite(colour, alpha):
    """Colour runs a little past the edge of what is seen, and is zero where nothing is."""
    return numpy.dstack([colour * (alpha > 0)[..., None], alpha])


def glyph(letter, scale=8):
    """Coverage of one cell. In the closing words a card lies on the left part of the next one: so the letter stands
    in the right half of its own, narrow enough to be seen whole when both have swollen."""
    width, height = CELL[0] * scale, CELL[1] * scale
    sheet = Image.new("L", (width * 6, height), 0)
    wide = letter in "mwMW@%&"
    type_ = art.face("regular" if wide else "bold", int(height * 0.80))
    ImageDraw.Draw(sheet).text((width * 3, height * 0.735), letter, font=type_, fill=255, anchor="ms")
    box = sheet.getbbox()
    ink = sheet.crop((box[0], 0, box[2], height))
    ink_width = min(0.64 * ink.width, (11.6 if wide else 10.4) * scale)
    ink = ink.resize((max(1, round(ink_width)), height), Image.LANCZOS)
    cell = Image.new("L", (width, height), 0)
    cell.paste(ink, (round((15.5 if wide else 16.0) * scale - ink.width / 2), 0))
    coverage = numpy.asarray(cell.resize(CELL, Image.BOX), dtype=float) / 255
    return numpy.where(coverage < 0.03, 0, coverage)


def card():
    """The plate that a letter stands on: in shade where its left neighbour lies on it, lit along the top and along the
    right edge, folded across the middle."""
    x, y = numpy.meshgrid(numpy.arange(CELL[0]) + 0.5, numpy.arange(CELL[1]) + 0.5)
    left, right, top, bottom = layout.drawn()
    plate = 0.055 + 0.135 * art.smooth(left, left + 9, x) - 0.03 * art.smooth(left + 9, right, x)
    plate = plate * (1.15 - 0.45 * art.smooth(top, bottom, y))
    middle = y - (top + bottom) / 2
    plate = plate + 0.05 * art.smooth(1.5, 0.5, abs(middle - 1.5)) - 0.06 * art.smooth(1.5, 0.5, abs(middle))
    plate = plate + 0.34 * art.smooth(2.2, 0.8, y - top) * art.smooth(-0.2, 0.4, x / CELL[0])
    plate = plate + 0.24 * art.smooth(1.9, 0.7, right - x) * (1 - 0.6 * y / CELL[1])
    return numpy.clip(plate * (1 - 0.8 * art.smooth(1.8, 0.8, bottom - y)), 0.02, 1)


def chargen():
    """The ribbon shows blue, red, green as red, green, blue, and only letters. The text box shows red alone and heeds
    no alpha: there every cell is a card, the blank's too."""
    ink = numpy.zeros((4 * CELL[1], 32 * CELL[0]))
    for number, letter in enumerate(GLYPHS):
        if letter not in EMPTY:
            row, column = divmod(number, 32)
            ink[row * CELL[1] : (row + 1) * CELL[1], column * CELL[0] : (column + 1) * CELL[0]] = glyph(letter)
    down = numpy.tile((numpy.arange(CELL[1]) + 0.5) / CELL[1], 4)[:, None] + 0 * ink
    fill = art.mix((0.92, 0.92, 0.62), (0.52, 0.08, 0.62), art.smooth(0.44, 0.80, down))
    fill = art.mix(fill, (0.40, 0.07, 0.50), 0.45 * numpy.exp(-(((down - 0.5) / 0.008) ** 2)))
    sheet = sprite(fill * ink[..., None] ** 0.35, ink)
    sheet[..., 0] = art.mix(numpy.tile(card(), (4, 32)), fill[..., 0], ink)
    art.save(sheet, "chargen.png")


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


def juice(x, y, level):
    """What stands in the block: amber where light comes in, deep below, a caustic where it leaves; air above."""
    deep = art.smooth(0, 1, numpy.clip((level - y) / 1.35, 0, 1) + 0.12 * x)
    liquid = art.mix((1.0, 0.60, 0.15), (0.50, 0.105, 0.02), deep)
    caustic = numpy.exp(-(((x - 0.34) / 0.40) ** 2 + ((y + 0.52) / 0.28) ** 2))
    beam = numpy.exp(-(((x * 0.62 + y * 0.78 - 0.02) / 0.30) ** 2)) * art.smooth(-0.9, 0.2, x)
    liquid = liquid + caustic[..., None] * (0.62, 0.52, 0.16) + beam[..., None] * (0.16, 0.112, 0.04)
    air = art.mix((0.72, 0.36, 0.11), (0.34, 0.11, 0.04), art.smooth(-0.8, 0.7, x - 0.3 * y))
    return art.mix(air, liquid, art.smooth(0.012, -0.012, y - level))


def bubbles(picture, x, y, random):
    """Each is bright on the side away from the lamp, as a hole in something that refracts is."""
    for _ in range(12):
        at_x, size = random.uniform(-0.58, 0.55), random.uniform(0.03, 0.085)
        at_y = random.uniform(-0.62, 0.28)
        across, up = (x - at_x) / size, (y - at_y) / size
        r = numpy.hypot(across, up)
        far = numpy.clip(0.5 + 0.35 * (across - up), 0, 1)
        rim = numpy.exp(-(((r - 0.80) / 0.20) ** 2)) * far
        shine = numpy.exp(-((across + 0.38) ** 2 + (up - 0.38) ** 2) / 0.07)
        picture = picture * (1 - 0.38 * art.smooth(1.05, 0.95, r) * (1 - far))[..., None]
        picture = picture + rim[..., None] * (0.55, 0.41, 0.14) + shine[..., None] * (0.90, 0.86, 0.63)
    return picture


def mirrored(x, y):
    """The room's window in the front of the glass."""
    x = x + 0.06 * y**2
    pane = art.smooth(0, 0.05, x + 0.70) * art.smooth(0, 0.05, -0.34 - x)
    pane = pane * art.smooth(0, 0.05, y + 0.02) * art.smooth(0, 0.05, 0.70 - y)
    bars = art.smooth(0.012, 0.028, abs(x + 0.52)) * art.smooth(0.012, 0.028, abs(y - 0.36))
    return (pane * bars * (0.30 + 0.30 * art.smooth(0, 0.7, y)))[..., None] * (1.0, 0.92, 0.62)


def walls(x, y, level, wide):
    """Four polished slopes; the inside is seen in them once more, pressed together."""
    upright = abs(x) >= abs(y)
    sides = upright & (x < 0), upright & (x > 0), ~upright & (y > 0), ~upright & (y < 0)
    left, right, top, bottom = (art.blur(side.astype(float), 2.5) for side in sides)
    pressed = 1 - 1.1 * numpy.clip(1 - (1 - numpy.maximum(abs(x), abs(y))) / wide, 0, 1)
    seen = juice(numpy.where(upright, x * pressed, x), numpy.where(upright, y, y * pressed), level)
    seen = (seen + (0.10, 0.06, 0.025)) * (1.12 * left + 0.92 * top + 0.46 * right + 0.70 * bottom)[..., None]
    key = (left + 0.55 * top) * (0.02 + 0.34 * numpy.clip(0.2 + 0.8 * y - 0.3 * x, 0, 1))
    fill = 0.34 * right * art.smooth(0.9, -0.6, y)
    through = 0.45 * bottom * numpy.exp(-(((x - 0.45) / 0.35) ** 2))
    return (
        seen
        + key[..., None] * (0.90, 0.72, 0.36)
        + fill[..., None] * (0.0, 0.10, 0.90)
        + through[..., None] * (1.0, 0.60, 0.20)
    )


def edges(picture, x, y, wide):
    """The inner edge dark, then bright; the outer one bright towards the lamp, and black nowhere."""
    away, turned = 1 - numpy.maximum(abs(x), abs(y)), x - y
    groove = numpy.exp(-(((away - wide - 0.012) / 0.016) ** 2)) * (0.55 + 0.45 * art.smooth(-0.6, 0.6, turned))
    glint = numpy.exp(-(((away - wide + 0.014) / 0.012) ** 2)) * art.smooth(0.5, -0.9, turned)
    outer = numpy.exp(-((away / 0.022) ** 2))
    star = numpy.exp(-((x + 1 - 0.55 * wide) ** 2 + (y - 1 + 0.55 * wide) ** 2) / 0.0035)
    picture = picture * (1 - 0.42 * groove)[..., None]
    picture = picture + (0.55 * glint + 0.75 * outer * art.smooth(0.3, -1.0, turned))[..., None] * (1.0, 0.9, 0.6)
    picture = art.mix(picture, (0.30, 0.07, 0.03), 0.55 * outer * art.smooth(-0.2, 0.9, turned))
    return picture + star[..., None] * (1.0, 1.0, 0.9)


def dot():
    """A block of glass with juice in it. Drawn without blending, a sprite covers its whole square: so the thing is
    square. The show's tint takes most of the blue away and turns white to amber."""
    size, scale, wide = 128, 4, 0.15
    x, y = art.grid(size * scale, size * scale)
    x, y = x * 2 - 1, 1 - y * 2
    level = 0.50 + 0.035 * numpy.sin(x * 2.3 + 0.5)
    surface = art.smooth(1.0, 0.9, numpy.hypot(x / 0.84, (y - level - 0.035) / 0.060))  # seen a little from above
    lit = art.mix((1.0, 0.90, 0.52), (0.95, 0.50, 0.12), art.smooth(-0.6, 0.7, x))
    inside = art.mix(juice(x, y, level), lit, 0.85 * surface)
    inside = bubbles(inside, x, y, numpy.random.default_rng(21)) + mirrored(x, y)
    away = 1 - numpy.maximum(abs(x), abs(y))
    picture = art.mix(inside, walls(x, y, level, wide), art.smooth(wide + 0.012, wide - 0.012, away))
    picture = numpy.clip(edges(picture, x, y, wide), 0, 1)
    picture = picture.reshape(size, scale, size, scale, 3).mean((1, 3))
    # gl_PointCoord runs down where textures run up: what shall be seen above is the lower half of the file.
    art.save(sprite(picture[::-1], numpy.ones((size, size))), "dot.png")


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
