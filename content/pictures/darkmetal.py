"""darkmetal.jpg: the sky over the city, a sheet of steel that somebody heated from below.

The show takes its columns 0.1 to 0.9 and its lower four fifths, and lets the flash grow from
(0.5, 0.2) counted from the bottom: there the heat sits, and the temper colours spread from it.
"""

import numpy

import art

WIDTH, HEIGHT = 1280, 720
HEART = (0.5, 0.2)

# What steel turns to with heat: distance from the heart, colour in linear light.
TEMPER = (
    (0.00, (1.00, 0.56, 0.20)),
    (0.10, (0.72, 0.28, 0.06)),
    (0.22, (0.34, 0.085, 0.018)),
    (0.38, (0.115, 0.026, 0.030)),
    (0.55, (0.026, 0.022, 0.050)),
    (0.75, (0.010, 0.030, 0.048)),
    (1.30, (0.006, 0.013, 0.018)),
)


def temper(distance):
    stops = [d for d, _ in TEMPER]
    return numpy.stack([numpy.interp(distance, stops, [c[k] for _, c in TEMPER]) for k in range(3)], -1)


def streaks(seed, along, across):
    noise = numpy.random.default_rng(seed).standard_normal((HEIGHT, WIDTH))
    from scipy import ndimage

    noise = ndimage.gaussian_filter(noise, (across, along))
    return noise / noise.std()


def make():
    x, y = art.grid(WIDTH, HEIGHT)
    v = 1 - y
    brushed = 0.6 * streaks(1, 60, 0.5) + 0.4 * streaks(2, 14, 0.6)
    cloud = art.tilenoise(WIDTH, HEIGHT, 1.7, 3, 2)
    billow = art.tilenoise(WIDTH, HEIGHT, 1.35, 4, 5)
    across, above = (x - HEART[0]) * 0.62, v - HEART[1]
    distance = numpy.hypot(across, numpy.where(above > 0, above, above * 2.4) * 1.15)
    distance = numpy.maximum(distance + 0.045 * cloud * art.smooth(0.05, 0.5, distance), 0)
    light = temper(distance)
    bank = art.smooth(-0.2, 2.0, cloud + 0.5 * billow) * art.smooth(0.0, 0.25, above) * art.smooth(0.9, 0.3, above)
    lit = numpy.clip(art.blur(billow - numpy.roll(billow, -8, 0), 2.5), -1, 1)
    light = light * (1 - 0.55 * bank[..., None]) + (bank * (0.5 + 0.9 * lit) * numpy.exp(-distance * 3.2))[
        ..., None
    ] * numpy.array((0.30, 0.085, 0.02))
    sheen = numpy.exp(-((above / 0.030) ** 2)) * numpy.exp(-abs(across) * 3.0)
    light = light + sheen[..., None] * numpy.array((0.55, 0.26, 0.07))
    below = art.smooth(0.0, -0.05, above)
    light = light * (1 - 0.75 * below[..., None])
    light = light * (1 + 0.20 * brushed[..., None])
    light = light + 0.0035 * numpy.maximum(brushed, 0)[..., None] * numpy.array((0.7, 1.0, 1.2))
    stars = numpy.random.default_rng(6).random((HEIGHT, WIDTH)) > 0.99965
    pricks = art.blur(stars.astype(float), 0.8) * 5 * art.smooth(0.30, 0.6, above)
    light = light + pricks[..., None] * numpy.array((0.16, 0.20, 0.22))
    light = light + 0.15 * art.blur(light, 20)
    art.save(art.grain(art.film(light, 0.72), 0.010, 5), "darkmetal.jpg")
