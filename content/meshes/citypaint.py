"""Puts the city's texture together, strip by strip."""
import numpy as np
from PIL import Image

import cityatlas as atlas
import cityfacades
import cityground


def place(canvas, name, picture):
    row, rows = atlas.STRIPS[name]
    canvas[row - atlas.GUTTER:row + rows + atlas.GUTTER] = np.pad(
        picture, ((atlas.GUTTER, atlas.GUTTER), (0, 0), (0, 0)), mode="edge")


def make(root):
    canvas = np.zeros((atlas.HEIGHT, atlas.WIDTH * atlas.FINER, 4))
    for name in atlas.FACADES:
        place(canvas, name, getattr(cityfacades, f"facade_{name}")())
    for name, _ in atlas.STRIPS_BELOW:
        place(canvas, name, np.repeat(getattr(cityground, f"paint_{name}")(), atlas.FINER, axis=1))
    picture = (np.clip(canvas, 0, 1) * 255 + 0.5).astype(np.uint8)
    Image.fromarray(picture).save(root / "gfx/city08_diffuse.png", optimize=True)
    return f"{canvas.shape[1]} x {canvas.shape[0]}"
