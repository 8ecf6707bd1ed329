"""A small z-buffer rasteriser: pictures of our meshes without a GL."""
import numpy as np


def sample(texture, u, v):
    """Bilinear, repeating; row 0 is the top of the picture (v = 1)."""
    height, width = texture.shape[:2]
    x, y = u * width - 0.5, (1 - v) * height - 0.5
    x0, y0 = np.floor(x).astype(int), np.floor(y).astype(int)
    fx, fy = (x - x0)[..., None], (y - y0)[..., None]
    at = lambda i, j: texture[j % height, i % width]
    top = at(x0, y0) * (1 - fx) + at(x0 + 1, y0) * fx
    low = at(x0, y0 + 1) * (1 - fx) + at(x0 + 1, y0 + 1) * fx
    return top * (1 - fy) + low * fy


def render(size, clip, attributes, faces, shade, background):
    """Draws triangles. clip: (n, 4) per vertex, attributes: (n, k), faces: (m, 3) of vertex numbers.

    `shade(values)` gets the interpolated attributes (p, k) and returns (p, 4) colours. Triangles that reach behind
    the eye are left out.
    """
    width, height = size
    colour, depth = background.copy(), np.full((height, width), np.inf)
    w = clip[:, 3]
    sx = (clip[:, 0] / w * 0.5 + 0.5) * width
    sy = (0.5 - clip[:, 1] / w * 0.5) * height
    sz = clip[:, 2] / w
    for face in faces:
        if (w[face] <= 0.01).any():
            continue
        x, y = sx[face], sy[face]
        area = (x[1] - x[0]) * (y[2] - y[0]) - (x[2] - x[0]) * (y[1] - y[0])
        x0, x1 = max(0, int(np.ceil(x.min() - 0.5))), min(width - 1, int(np.floor(x.max() - 0.5)))
        y0, y1 = max(0, int(np.ceil(y.min() - 0.5))), min(height - 1, int(np.floor(y.max() - 0.5)))
        if area == 0 or x0 > x1 or y0 > y1:
            continue
        px, py = np.meshgrid(np.arange(x0, x1 + 1) + 0.5, np.arange(y0, y1 + 1) + 0.5)
        b1 = ((px - x[0]) * (y[2] - y[0]) - (x[2] - x[0]) * (py - y[0])) / area
        b2 = ((x[1] - x[0]) * (py - y[0]) - (px - x[0]) * (y[1] - y[0])) / area
        b0 = 1 - b1 - b2
        z = b0 * sz[face[0]] + b1 * sz[face[1]] + b2 * sz[face[2]]
        block = depth[y0:y1 + 1, x0:x1 + 1]
        hit = (b0 >= 0) & (b1 >= 0) & (b2 >= 0) & (z < block) & (z > -1)
        if not hit.any():
            continue
        weights = np.stack([b0[hit], b1[hit], b2[hit]], 1) / w[face]
        weights /= weights.sum(1, keepdims=True)
        block[hit] = z[hit]
        colour[y0:y1 + 1, x0:x1 + 1][hit] = shade(weights @ attributes[face])
    return colour
