"""Puts the city's texture together, picture by picture."""
import numpy as np
from PIL import Image

import cityatlas as atlas
import cityfacades
import cityground
import png


def place(canvas, name, picture):
    left, top, width, rows = atlas.PLACES[name]
    edge = atlas.GUTTER
    right = min(left + width + edge, atlas.WIDTH)
    inset = 0 if name in atlas.FACADES else min(left, edge)
    canvas[top - edge:top + rows + edge, left - inset:right] = np.pad(
        picture, ((edge, edge), (inset, right - left - width), (0, 0)), mode="edge")


def shrink_to(picture, rows, columns):
    channels = np.moveaxis(np.float32(picture), 2, 0)
    return np.stack([Image.fromarray(channel).resize((columns, rows), Image.BOX) for channel in channels], 2)


def place_facade(canvas, name):
    picture = getattr(cityfacades, f"facade_{name}")()
    module = cityfacades.MODULE * cityfacades.OVER
    for strip in (name, atlas.fine(name)):
        if strip in atlas.PLACES:
            (rows, columns), (_, up, across) = atlas.size(strip), atlas.modules(strip)
            place(canvas, strip, shrink_to(picture[:rows * module // across, :columns * module // up], rows, columns))


def make(root):
    canvas = np.zeros((atlas.HEIGHT, atlas.WIDTH, 4))
    for name in reversed(atlas.FACADES):
        place_facade(canvas, name)
    for name in ("roof", "sign", "metal", "light", "pavement", "park"):
        place(canvas, name, getattr(cityground, f"paint_{name}")())
    for number, name in enumerate(atlas.STREETS):
        place(canvas, name, cityground.paint_street(number))
    picture = (np.clip(canvas, 0, 1) * 255 + 0.5).astype(np.uint8)
    png.save(picture, root / "gfx/city08_diffuse.png")
    return f"{atlas.WIDTH} x {atlas.HEIGHT}"
