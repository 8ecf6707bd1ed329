"""The gear: a height field turned, milled and drilled by formula, lit by rings of light round the eye's own axis.

Light depends on how a surface tilts, never on which way: turned by any angle, the picture is lit the same.
"""
import numpy as np

import png
from shapes import smooth

SIZE, OVERSAMPLE, TEETH = 512, 4, 24
STEEL = np.array((0.66, 0.68, 0.72))
DARK_STEEL = np.array((0.33, 0.36, 0.40))
BRASS = np.array((0.95, 0.62, 0.24))
TIP, ROOT, RIM, WEB, HUB, BORE = 0.975, 0.845, 0.70, 0.34, 0.25, 0.125
BOLTS, POCKETS = 6, 6


def fold(angle, count):
    """Angle within the nearest of `count` equal sectors, about 0."""
    step = 2 * np.pi / count
    return (angle + step / 2) % step - step / 2


def teeth(r, angle):
    """Distance outwards of the toothed edge, flanks leaning as an involute's do."""
    lean = np.abs(fold(angle, TEETH)) * r
    half = 0.061 - 0.44 * (r - 0.91) - 0.8 * np.maximum(r - 0.91, 0) ** 2
    flank = np.maximum(lean - half, r - TIP)
    return np.minimum(r - ROOT, flank * 0.93)


def pocket(r, angle):
    """A window between two spokes, its corners round as the cutter left them."""
    a = np.abs(fold(angle + np.pi / POCKETS, POCKETS))
    corner = 0.045
    sideways = a * r - (np.pi / POCKETS * r - 0.062)
    across = np.abs(r - (RIM + WEB) / 2) - (RIM - WEB) / 2 + 0.035
    p, q = sideways + corner, across + corner
    return np.hypot(np.maximum(p, 0), np.maximum(q, 0)) + np.minimum(np.maximum(p, q), 0) - corner


def bevel(distance, width, height):
    """Height gained going inwards from an edge at distance 0."""
    return height * np.clip(-distance / width, 0, 1)


def shape(n):
    """Height, material and outline on an n x n grid over -1..1."""
    axis = (np.arange(n) + 0.5) / n * 2 - 1
    x, y = np.meshgrid(axis, -axis)
    r, angle = np.hypot(x, y), np.arctan2(y, x)
    edge, window, bore = teeth(r, angle), pocket(r, angle), r - BORE
    keyway = np.maximum(np.abs(x) - 0.034, np.abs(y - BORE) - 0.05)
    bore = np.minimum(bore, keyway)

    height = 0.10 + bevel(edge, 0.022, 0.022)
    groove = np.abs(r - 0.775) - 0.016
    height -= 0.022 * smooth(0.006, -0.006, groove)
    dish = np.maximum(r - RIM + 0.012, HUB + 0.03 - r)
    height -= 0.055 * smooth(0.016, -0.016, dish)
    rib = np.abs(fold(angle, POCKETS)) * r - 0.014
    height += 0.018 * smooth(0.014, -0.004, rib) * smooth(0.02, -0.02, dish + 0.03)
    height -= 0.016 * np.clip(1 - np.maximum(window, 0) / 0.014, 0, 1)
    height += 0.05 * smooth(0.010, -0.010, r - HUB)
    height -= 0.020 * np.clip(1 - np.maximum(bore, 0) / 0.018, 0, 1)
    collar = np.abs(r - 0.165) - 0.022
    height += 0.012 * smooth(0.004, -0.004, collar)

    dot = np.hypot(r * np.cos(fold(angle, TEETH)) - 0.815, r * np.sin(fold(angle, TEETH)))
    height -= 0.010 * smooth(0.011, 0.006, dot)
    hx, hy = r * np.cos(fold(angle, BOLTS)) - 0.205, r * np.sin(fold(angle, BOLTS))
    bolt = np.hypot(hx, hy)
    head = bolt - 0.030
    height = np.where(head < 0.008, 0.095, height)
    height = np.where(head < 0, 0.125 + bevel(head, 0.007, 0.012), height)
    socket = np.max([np.abs(hx * np.cos(t) + hy * np.sin(t)) for t in np.arange(3) * np.pi / 3], axis=0) - 0.0135
    height = np.where(socket < 0, 0.10, height)
    material = np.where(head < 0.008, 1, 0)
    material = np.where((r < 0.187), 2, material)
    material = np.where((dish < 0) & (head > 0.008), 3, material)
    outline = np.max([edge, -window, -bore], axis=0)
    return r, angle, height, material, outline


def gaussian(picture, sigma):
    """Blur by the transform; the picture's border is empty anyway."""
    f = np.fft.rfftfreq(picture.shape[1]), np.fft.fftfreq(picture.shape[0])
    kernel = np.exp(-2 * (np.pi * sigma) ** 2 * (f[0][None, :] ** 2 + f[1][:, None] ** 2))
    return np.fft.irfft2(np.fft.rfft2(picture) * kernel, picture.shape)


def occlusion(height, solid, n):
    relief = np.where(solid, height, -0.12)
    dark = np.ones_like(height)
    for reach, strength in ((0.008, 9.0), (0.022, 6.0), (0.06, 3.0)):
        dark *= np.clip(1 - strength * np.maximum(gaussian(relief, reach * n / 2) - relief, 0), 0.15, 1)
    return dark


def rings_of_light(tilt):
    """What polished metal shows at a tilt (0 faces the eye, 1 stands on edge)."""
    return (0.40 + 0.75 * np.exp(-((tilt - 0.42) / 0.16) ** 2) - 0.16 * np.exp(-((tilt - 0.14) / 0.07) ** 2)
            + 0.35 * np.exp(-((tilt - 0.80) / 0.10) ** 2) - 0.20 * smooth(0.86, 1.0, tilt))


def cutter_marks(r, angle, material):
    """Fine rings from the lathe, arcs from the mill in the dish."""
    lathe = 0.5 * np.sin(r * 900) + 0.5 * np.sin(r * 611 + 1.3)
    slow = np.sin(r * 83) * np.sin(r * 37 + 1)
    return 1 + np.where(material == 3, 0.022, 0.030) * lathe + 0.035 * slow


def draw(n):
    r, angle, height, material, outline = shape(n)
    solid = outline < 0
    scale = n / 2
    dy, dx = np.gradient(gaussian(height, 0.0012 * n / 2) * scale)
    slope = np.hypot(dx, dy)
    tilt = slope / np.sqrt(1 + slope ** 2)
    dome = 0.10 * smooth(0.2, 0.98, r)
    base = np.array([STEEL, DARK_STEEL * 0.8, BRASS, DARK_STEEL])[material]
    sheen = (0.34 * np.exp(-((r - 0.745) / 0.022) ** 2) + 0.30 * np.exp(-((r - 0.825) / 0.020) ** 2)
             + 0.16 * np.exp(-((r - 0.93) / 0.035) ** 2) + 0.25 * np.exp(-((r - 0.215) / 0.02) ** 2)
             + 0.20 * np.exp(-((r - 0.53) / 0.09) ** 2))
    light = (rings_of_light(tilt) + sheen - dome * 0.5) * cutter_marks(r, angle, material)
    colour = base * (light * occlusion(height, solid, n))[..., None]
    glint = np.exp(-((tilt - 0.50) / 0.10) ** 2) * (slope > 0.15)
    colour += 0.34 * glint[..., None] * np.array((1.0, 0.86, 0.68))
    return np.dstack([np.clip(colour, 0, 1), np.ones(r.shape)]) * solid[..., None]


def make(root):
    picture = draw(SIZE * OVERSAMPLE).reshape(SIZE, OVERSAMPLE, SIZE, OVERSAMPLE, 4).mean((1, 3))
    picture[..., :3] /= np.maximum(picture[..., 3:], 1e-6)
    picture[picture[..., 3] == 0] = (*DARK_STEEL * 0.5, 0)
    png.save((picture * 255 + 0.5).astype(np.uint8), root / "gfx/gear.png")
    return f"{SIZE} x {SIZE}"
