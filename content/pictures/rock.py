"""rock.jpg and rocknormal.jpg: one height field, sandstone that was dressed long ago, that tiles.

The effect lights the wall with the way from the light to the wall, so the normal map points
where the height rises: its x and y are the slope itself, x to the right and y upwards.
"""

import numpy

import art

SIZE = 512


def cracks(count, seed):
    """Distance to the borders between random points on a torus."""
    random = numpy.random.default_rng(seed)
    x, y = art.grid(SIZE, SIZE)
    warp = 0.045 * art.tilenoise(SIZE, SIZE, 1.9, seed + 1), 0.045 * art.tilenoise(SIZE, SIZE, 1.9, seed + 2)
    first = numpy.full((SIZE, SIZE), 9.0)
    second = first.copy()
    for px, py in random.random((count, 2)):
        dx = (x + warp[0] - px + 0.5) % 1 - 0.5
        dy = (y + warp[1] - py + 0.5) % 1 - 0.5
        d = numpy.hypot(dx, dy)
        second = numpy.where(d < first, first, numpy.minimum(second, d))
        first = numpy.minimum(first, d)
    return second - first


def height():
    """In texels: broad swells, the strokes of the tool that dressed it, pits, hairlines."""
    x, y = art.grid(SIZE, SIZE)
    swell = art.tilenoise(SIZE, SIZE, 2.3, 51, 1)
    bend = 0.6 * art.tilenoise(SIZE, SIZE, 2.0, 53, 1)
    strokes = numpy.sin(2 * numpy.pi * (9 * x + 13 * y) + bend * 3)
    worn = art.smooth(-0.6, 1.4, art.tilenoise(SIZE, SIZE, 1.8, 54, 2))
    pits = art.smooth(1.9, 3.0, art.tilenoise(SIZE, SIZE, 0.75, 55, 14))
    hairline = numpy.exp(-((cracks(4, 31) / 0.007) ** 2)) * art.smooth(-0.7, 0.9, art.tilenoise(SIZE, SIZE, 1.7, 56, 2))
    rough = art.tilenoise(SIZE, SIZE, 1.35, 57, 6)
    grit = art.tilenoise(SIZE, SIZE, 0.7, 52, 40)
    field = 7.0 * swell + 0.55 * strokes * worn - 2.6 * pits - 2.0 * hairline + 0.55 * rough + 0.16 * grit
    return art.blur(field, 0.9, wrap=True), hairline, pits


def slope(field):
    across = (numpy.roll(field, -1, 1) - numpy.roll(field, 1, 1)) / 2
    upwards = (numpy.roll(field, 1, 0) - numpy.roll(field, -1, 0)) / 2
    return across, upwards


def colour(field, hairline, pits):
    hollow = numpy.clip((field - art.blur(field, 7, wrap=True)) / 3, -1, 1)
    stain = art.tilenoise(SIZE, SIZE, 1.6, 61, 2)
    bands = art.tilenoise(SIZE, SIZE, 1.4, 62, 3)
    grit = art.tilenoise(SIZE, SIZE, 0.4, 63, 60)
    base = art.mix((0.80, 0.68, 0.53), (0.94, 0.85, 0.71), art.smooth(-1.6, 1.6, stain))
    base = art.mix(base, (0.88, 0.58, 0.32), 0.30 * art.smooth(0.3, 1.9, bands))
    light = 1 + 0.12 * hollow + 0.035 * grit - 0.30 * hairline - 0.28 * pits
    return art.blur(numpy.clip(base * light[..., None], 0, 1), 0.5, wrap=True)


def make():
    field, hairline, pits = height()
    across, upwards = slope(field)
    normal = numpy.dstack([across, upwards, numpy.full_like(across, 1.9)])
    normal /= numpy.linalg.norm(normal, axis=2, keepdims=True)
    art.save(normal * 0.5 + 0.5, "rocknormal.jpg", 95)
    art.save(colour(field, hairline, pits), "rock.jpg")
