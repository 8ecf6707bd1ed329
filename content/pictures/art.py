"""What every picture shares: palette, noise, type, grain and the way to the file.

Pictures are float arrays, height x width x channels, 0 to 1, top row first, in the
encoding of the screen. Light is added up in linear(), and shown by film().
"""

import os

import numpy
from PIL import Image, ImageDraw, ImageFile, ImageFont
from scipy import ndimage

import layout

ImageFile.MAXBLOCK = 1 << 24  # the encoder needs room for its whole output

ROOT = os.path.abspath(os.path.join(os.path.dirname(__file__), "..", ".."))

# The colours that the effects hold in their shaders: everything else is mixed from these.
GREEN = (0.257, 0.596, 0.310)
BLUE = (0.030, 0.360, 0.529)
FLASH = (1.0, 0.7, 0.3)
EMBER = (0.90, 0.24, 0.04)
WINDOW = (1.0, 1.0, 0.8)
PALE = (0.70, 1.0, 0.60)
UMBER = (0.10, 0.02, 0.0)
NIGHT = (0.010, 0.014, 0.020)


def face(weight, size):
    return ImageFont.truetype(layout.TYPE % weight.capitalize(), size)


def linear(picture):
    return numpy.asarray(picture, dtype=float) ** 2.2


def film(light, exposure=1.0):
    """Linear light to a picture with a soft shoulder."""
    x = numpy.maximum(numpy.asarray(light) * exposure, 0)
    x = x * (2.51 * x + 0.03) / (x * (2.43 * x + 0.59) + 0.14)
    return numpy.clip(x, 0, 1) ** (1 / 2.2)


def grid(width, height):
    """Pixel centres: x to the right and y downwards, both 0 to 1."""
    return numpy.meshgrid((numpy.arange(width) + 0.5) / width, (numpy.arange(height) + 0.5) / height)


def blur(picture, sigma, wrap=False):
    sigmas = (sigma, sigma) + (0,) * (numpy.ndim(picture) - 2)
    return ndimage.gaussian_filter(picture, sigmas, mode="wrap" if wrap else "nearest")


def tilenoise(width, height, slope, seed, low=1.0):
    """Fractal noise that tiles: power falls with frequency to the given slope; zero mean, unit spread."""
    random = numpy.random.default_rng(seed)
    fx = numpy.fft.fftfreq(width) * width
    fy = numpy.fft.fftfreq(height) * height
    f = numpy.hypot(*numpy.meshgrid(fx, fy))
    f[0, 0] = 1
    spectrum = numpy.fft.fft2(random.standard_normal((height, width))) * f**-slope * (f >= low)
    spectrum[0, 0] = 0
    noise = numpy.fft.ifft2(spectrum).real
    return noise / noise.std()


def smooth(low, high, x):
    t = numpy.clip((x - low) / (high - low), 0, 1)
    return t * t * (3 - 2 * t)


def mix(a, b, t):
    a, b = numpy.asarray(a, dtype=float), numpy.asarray(b, dtype=float)
    t = numpy.asarray(t)
    if t.ndim == 2 and max(a.ndim, b.ndim) != 2:
        t = t[..., None]
    return a * (1 - t) + b * t


def text(width, height, weight, size, words, centre, spacing=0, scale=4):
    """Coverage of a line of words, centred on a point, drawn large and scaled down."""
    sheet = Image.new("L", (width * scale, height * scale), 0)
    pen = ImageDraw.Draw(sheet)
    type_ = face(weight, int(size * scale))
    advance = [type_.getlength(letter) + spacing * scale for letter in words]
    x = centre[0] * scale - (sum(advance) - spacing * scale) / 2
    for letter, step in zip(words, advance):
        pen.text((x, centre[1] * scale), letter, font=type_, fill=255, anchor="lm")
        x += step
    return numpy.asarray(sheet.resize((width, height), Image.LANCZOS), dtype=float) / 255


def grain(picture, amount, seed):
    random = numpy.random.default_rng(seed)
    noise = ndimage.gaussian_filter(random.standard_normal(picture.shape[:2]), 0.6) * 1.7
    return numpy.clip(picture + amount * noise[..., None], 0, 1)


def resized(channel, width, height):
    return numpy.asarray(
        Image.fromarray(numpy.asarray(channel, numpy.float32), "F").resize((width, height), Image.LANCZOS)
    )


def eightbit(picture):
    return (numpy.clip(picture, 0, 1) * 255 + 0.5).astype(numpy.uint8)


def gfx(name):
    return os.path.join(ROOT, "gfx", name)


def save(picture, name, quality=92):
    picture = numpy.asarray(picture)
    if name.endswith(".jpg"):
        Image.fromarray(eightbit(picture), "RGB").save(gfx(name), quality=quality, subsampling=0, optimize=True)
    else:
        Image.fromarray(eightbit(picture), "RGBA").save(gfx(name), optimize=True)
