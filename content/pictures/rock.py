"""rock.jpg and rocknormal.jpg: one height field, cleft and weathered, that tiles.

The effect lights the wall with the way from the light to the wall, so the normal map points
where the height rises: its x and y are the slope itself, x to the right and y upwards.
"""

import numpy

import art

SIZE = 512


def facets(count, seed, squash):
    """Distance to the nearest and second nearest of random points on a torus, and which is nearest."""
    random = numpy.random.default_rng(seed)
    x, y = art.grid(SIZE, SIZE)
    warp = 0.020 * art.tilenoise(SIZE, SIZE, 2.0, seed + 1), 0.020 * art.tilenoise(SIZE, SIZE, 2.0, seed + 2)
    first = numpy.full((SIZE, SIZE), 9.0)
    second, tilt = first.copy(), numpy.zeros((SIZE, SIZE))
    for px, py, lean_x, lean_y, level in zip(*random.random((2, count)), *random.standard_normal((3, count))):
        dx = (x + warp[0] - px + 0.5) % 1 - 0.5
        dy = (y + warp[1] - py + 0.5) % 1 - 0.5
        d = numpy.hypot(dx, dy * squash)
        nearer = d < first
        second = numpy.where(nearer, first, numpy.minimum(second, d))
        tilt = numpy.where(nearer, lean_x * dx + lean_y * dy + 0.045 * level, tilt)
        first = numpy.minimum(first, d)
    return first, second, tilt


def height():
    """In texels."""
    first, second, tilt = facets(11, 31, 1.5)
    cleft = art.smooth(0.0, 0.022, second - first)
    f2, s2, tilt2 = facets(60, 41, 1.3)
    chips = art.smooth(0.0, 0.018, s2 - f2)
    rough = art.tilenoise(SIZE, SIZE, 1.45, 51, 5)
    grit = art.tilenoise(SIZE, SIZE, 0.8, 52, 40)
    field = 22 * tilt + 5 * cleft + 7 * tilt2 + 0.8 * chips + 2.6 * rough + 0.28 * grit
    return art.blur(field, 0.9, wrap=True), cleft, chips


def slope(field):
    across = (numpy.roll(field, -1, 1) - numpy.roll(field, 1, 1)) / 2
    upwards = (numpy.roll(field, 1, 0) - numpy.roll(field, -1, 0)) / 2
    return across, upwards


def colour(field, cleft, chips):
    even = field - art.blur(field, 40, wrap=True)
    hollow = numpy.clip((field - art.blur(field, 7, wrap=True)) / 5, -1, 1)
    stain = art.tilenoise(SIZE, SIZE, 1.5, 61, 2)
    rust = art.smooth(0.4, 1.8, art.tilenoise(SIZE, SIZE, 1.5, 62, 3) + 0.6 * (hollow < 0))
    grit = art.tilenoise(SIZE, SIZE, 0.4, 63, 60)
    base = art.mix((0.60, 0.53, 0.45), (0.90, 0.83, 0.72), art.smooth(-14, 14, even + 3 * stain))
    base = art.mix(base, (0.74, 0.44, 0.22), 0.5 * rust)
    base = art.mix(base, (0.46, 0.55, 0.47), 0.3 * art.smooth(0.9, 2.2, -stain))
    light = 1 + 0.24 * hollow + 0.05 * grit - 0.34 * (1 - cleft) - 0.05 * (1 - chips)
    return art.blur(numpy.clip(base * light[..., None], 0, 1), 0.5, wrap=True)


def make():
    field, cleft, chips = height()
    across, upwards = slope(field)
    normal = numpy.dstack([across, upwards, numpy.full_like(across, 1.9)])
    normal /= numpy.linalg.norm(normal, axis=2, keepdims=True)
    art.save(normal * 0.5 + 0.5, "rocknormal.jpg", 95)
    art.save(colour(field, cleft, chips), "rock.jpg")
