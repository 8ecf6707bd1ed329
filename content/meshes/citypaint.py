import numpy as np
from PIL import Image

import cityatlas as atlas


def facade(random, colour, lit):
    rows, columns = atlas.FACADE_ROWS, atlas.WIDTH
    picture = np.ones((rows, columns, 4)) * (*colour, 0)
    for i in range(rows // atlas.CELL):
        for j in range(columns // atlas.CELL):
            on = random.rand() < lit
            window = picture[i * 16 + 3:i * 16 + 13, j * 16 + 4:j * 16 + 13]
            window[...] = (0.95, 0.85, 0.6, random.uniform(0.5, 1)) if on else (0.06, 0.08, 0.1, 0)
    return picture


def place(canvas, name, picture):
    row, rows = atlas.STRIPS[name]
    canvas[row - atlas.GUTTER:row + rows + atlas.GUTTER] = np.pad(
        picture, ((atlas.GUTTER, atlas.GUTTER), (0, 0), (0, 0)), mode="edge")


def make(root):
    random = np.random.RandomState(8)
    canvas = np.zeros((atlas.HEIGHT, atlas.WIDTH, 4))
    for i, name in enumerate(atlas.FACADES):
        tone = random.uniform(0.25, 0.55)
        place(canvas, name, facade(random, tone * np.array((0.9, 1, 1.1)), random.uniform(0.1, 0.3)))
    for name, rows in atlas.OTHERS:
        tone = {"road": 0.12, "pavement": 0.35, "roof": 0.25, "metal": 0.5, "park": 0.2}[name]
        place(canvas, name, np.ones((rows, atlas.WIDTH, 4)) * (tone, tone, tone, 0))
    Image.fromarray((np.clip(canvas, 0, 1) * 255 + 0.5).astype(np.uint8)).save(
        root / "gfx/city08_diffuse.png", optimize=True)
    return f"{atlas.WIDTH} x {atlas.HEIGHT}"
