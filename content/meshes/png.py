"""PNG files that decode fast, as all are decoded before the show begins.

The format's two cheap predictions, from the pixel to the left and from the one above, make files about as small as
all five do, and undoing them takes a third less time.
"""

import struct
import zlib

import numpy as np

COLOURS = {3: 2, 4: 6}  # channels: the format's number for them


def chunk(kind, data):
    return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))


def predicted(picture):
    """The rows, each behind the number of its prediction: the one that leaves the smallest differences."""
    height, width, channels = picture.shape
    left, above = picture.copy(), picture.copy()
    left[:, 1:] -= picture[:, :-1]
    above[1:] -= picture[:-1]
    ways = np.stack([picture, left, above]).reshape(3, height, width * channels)
    best = np.abs(ways.view(np.int8).astype(int)).sum(2).argmin(0)
    rows = ways[best, np.arange(height)]
    return np.column_stack([best.astype(np.uint8), rows]).tobytes()


def save(picture, path):
    """Writes an array of bytes: rows, columns, three channels or four."""
    height, width, channels = picture.shape
    header = struct.pack(">IIBBBBB", width, height, 8, COLOURS[channels], 0, 0, 0)
    with open(path, "wb") as file:
        file.write(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header))
        file.write(chunk(b"IDAT", zlib.compress(predicted(picture), 9)) + chunk(b"IEND", b""))
