"""The city's texture: horizontal strips that wrap in u.

Facades lie on their side: u runs up the building (one texture width is 512 units), v across it. So a tower needs
one quad a side, whatever its height. Alpha is what glows at night.
"""
import numpy as np
from PIL import Image

WIDTH, HEIGHT = 1024, 2048
TEXELS_PER_UNIT = 2.0
CELL = 16  # texels; a window's cell in both directions
FACADE_ROWS = 128
GUTTER = 4

FACADES = ["glass", "stone", "ribbon", "brick", "balcony", "dark", "deco", "grid"]
OTHERS = [("road", 60), ("pavement", 64), ("roof", 128), ("metal", 32), ("park", 128)]


def layout():
    strips, row = {}, GUTTER
    for name, rows in [(name, FACADE_ROWS) for name in FACADES] + OTHERS:
        strips[name] = (row, rows)
        row += rows + 2 * GUTTER
    assert row <= HEIGHT
    return strips


STRIPS = layout()


def uv(strip, along, across):
    """Texture coordinates of texels (along, across) inside a strip."""
    row, _ = STRIPS[strip]
    return along / WIDTH, 1 - (row + across) / HEIGHT
