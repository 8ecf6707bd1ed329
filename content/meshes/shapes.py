"""Signed distances of flat shapes, negative inside, and the smooth step."""
import numpy as np


def smooth(low, high, v):
    t = np.clip((v - low) / (high - low), 0, 1)
    return t * t * (3 - 2 * t)


def circle(x, y, cx, cy, radius):
    return np.hypot(x - cx, y - cy) - radius


def pill(x, y, cx, cy, half_x, half_y, corner):
    """A rectangle with round corners."""
    dx, dy = np.abs(x - cx) - half_x + corner, np.abs(y - cy) - half_y + corner
    return np.hypot(np.maximum(dx, 0), np.maximum(dy, 0)) + np.minimum(np.maximum(dx, dy), 0) - corner


def segment(x, y, x0, y0, x1, y1, half):
    """A line with round ends, `half` to either side."""
    dx, dy = x1 - x0, y1 - y0
    t = np.clip(((x - x0) * dx + (y - y0) * dy) / (dx * dx + dy * dy), 0, 1)
    return np.hypot(x - x0 - t * dx, y - y0 - t * dy) - half


def letters(x, y, height, half):
    """The group's V, X and Q about the origin, `height` above and below the middle line."""
    s = height / 4.2
    strokes = [(-11.2, 4.2, -7.7, -4.2), (-7.7, -4.2, -4.2, 4.2), (-2.9, 4.2, 2.9, -4.2), (-2.9, -4.2, 2.9, 4.2),
               (8.6, -1.3, 12.0, -4.7)]
    shape = np.min([segment(x, y, *(s * c for c in stroke), half) for stroke in strokes], axis=0)
    return np.minimum(shape, np.abs(circle(x, y, 8.2 * s, 0, 4.15 * s)) - half)
