"""What is painted on the phone: glass, metal, back, camera, with the light baked in."""
import numpy as np
from PIL import Image

import phone

GLASS = np.array((0.035, 0.04, 0.05))
METAL = np.array((0.62, 0.61, 0.60))
BACK = np.array((0.06, 0.24, 0.30))


def paint_flat(canvas, name, colour):
    _, _, where = phone.CHARTS[name].grid()
    canvas[where] = (*colour, 1)


def paint():
    canvas = np.zeros((phone.TEXTURE, phone.TEXTURE, 4))
    canvas[..., 3] = 1
    for name in phone.CHARTS:
        paint_flat(canvas, name, {"s": METAL, "b": BACK}.get(name[0], GLASS))
    a, b, where = phone.CHARTS["back"].grid()
    for x, y in phone.LENSES:
        r = np.hypot(a - phone.down(y), b + x)
        canvas[where][r < phone.LENS_RADIUS] = (0.3, 0.3, 0.3, 1)
        canvas[where][r < phone.LENS_RADIUS - 1.2] = (0.02, 0.02, 0.04, 1)
    return canvas


def rocket(canvas):
    rows, columns = phone.ROCKET
    canvas[rows, columns] = 0
    body = np.linspace(-1, 1, rows.stop - rows.start)[:, None]
    along = np.linspace(-1, 1, columns.stop - columns.start)[None, :]
    inside = (np.abs(along) < 0.96) & (np.abs(body) < 0.3)
    canvas[rows, columns][inside] = (*METAL, 1)


def make(root):
    canvas = paint()
    rocket(canvas)
    Image.fromarray((np.clip(canvas, 0, 1) * 255 + 0.5).astype(np.uint8)).save(root / "gfx/N9_uv.png", optimize=True)
    return f"{phone.TEXTURE} x {phone.TEXTURE}"
