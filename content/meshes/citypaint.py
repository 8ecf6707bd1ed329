"""Puts the city's texture together, picture by picture."""
import numpy as np

import cityatlas as atlas
import cityfacades
import cityground
import png
from brush import shrink


def place(canvas, name, picture):
    left, top, width, rows = atlas.PLACES[name]
    edge = atlas.GUTTER
    right = min(left + width + edge, atlas.WIDTH)
    inset = min(left, edge)
    canvas[top - edge:top + rows + edge, left - inset:right] = np.pad(
        picture, ((edge, edge), (inset, right - left - width), (0, 0)), mode="edge")


def place_facade(canvas, name):
    picture = getattr(cityfacades, f"facade_{name}")()
    for strip, by in ((name, cityfacades.OVER), (atlas.fine(name), cityfacades.OVER // atlas.FINE)):
        if strip in atlas.PLACES:
            place(canvas, strip, shrink(picture[:atlas.size(strip)[0] * by], by))


def make(root):
    canvas = np.zeros((atlas.HEIGHT, atlas.WIDTH, 4))
    for name in reversed(atlas.FACADES):
        place_facade(canvas, name)
    for name in ("roof", "sign", "metal", "light", "road", "crossing", "pavement", "park"):
        place(canvas, name, getattr(cityground, f"paint_{name}")())
    picture = (np.clip(canvas, 0, 1) * 255 + 0.5).astype(np.uint8)
    png.save(picture, root / "gfx/city08_diffuse.png")
    return f"{atlas.WIDTH} x {atlas.HEIGHT}"
