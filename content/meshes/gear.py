import numpy as np
from PIL import Image

SIZE, OVERSAMPLE, TEETH = 512, 3, 18


def make(root):
    n = SIZE * OVERSAMPLE
    x, y = np.meshgrid((np.arange(n) + 0.5) / n * 2 - 1, (np.arange(n) + 0.5) / n * 2 - 1)
    r, a = np.hypot(x, y), np.arctan2(y, x)
    tooth = np.clip(np.cos(a * TEETH) * 2.2, -1, 1) * 0.07 + 0.88
    holes = np.min([np.hypot(x - 0.5 * np.cos(t), y - 0.5 * np.sin(t)) for t in np.arange(6) * np.pi / 3], axis=0)
    alpha = (r < tooth) & (r > 0.14) & (holes > 0.14)
    shade = 0.45 + 0.15 * np.cos(r * 30) * (r < 0.75)
    picture = np.stack([shade, shade * 0.98, shade * 0.95, np.ones_like(shade)], 2) * alpha[..., None]
    picture = picture.reshape(SIZE, OVERSAMPLE, SIZE, OVERSAMPLE, 4).mean((1, 3))
    picture[..., :3] /= np.maximum(picture[..., 3:], 1e-6)
    Image.fromarray((picture * 255 + 0.5).astype(np.uint8)).save(root / "gfx/gear.png", optimize=True)
    return f"{SIZE} x {SIZE}"
