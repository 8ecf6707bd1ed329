"""What the city's painters share. They paint at several times the size, and `shrink` averages."""
import numpy as np

OVER = 2


def noise(random, shape, cells, octaves=3):
    """Smooth noise about 0, repeating in both directions."""
    total, weight = np.zeros(shape), 1.0
    for octave in range(octaves):
        n = [max(1, c * 2 ** octave) for c in cells]
        grid = random.uniform(-1, 1, n)
        y, x = (np.arange(s) * k / s for s, k in zip(shape, n))
        y0, x0 = y.astype(int), x.astype(int)
        ease = lambda t: t * t * (3 - 2 * t)
        fy, fx = ease(y - y0)[:, None], ease(x - x0)[None, :]
        at = lambda j, i: grid[np.ix_(j % n[0], i % n[1])]
        total += weight * ((at(y0, x0) * (1 - fx) + at(y0, x0 + 1) * fx) * (1 - fy)
                           + (at(y0 + 1, x0) * (1 - fx) + at(y0 + 1, x0 + 1) * fx) * fy)
        weight *= 0.5
    return total / 1.75


def blur(picture, radius):
    """Box blur, twice, wrapping."""
    for _ in range(2):
        for axis in (0, 1):
            picture = sum(np.roll(picture, k, axis) for k in range(-radius, radius + 1)) / (2 * radius + 1)
    return picture


def shrink(picture, by=OVER):
    h, w, c = picture.shape
    return picture.reshape(h // by, by, w // by, by, c).mean((1, 3))


def mix(a, b, t):
    t = np.asarray(t)[..., None]
    return a * (1 - t) + b * t
