"""Mix and master: stems to one loud, safe stereo file."""

import os
import subprocess
import warnings

import numpy as np
from scipy import ndimage, signal
from scipy.io import wavfile

from grid import LENGTH, RATE, seconds

TARGET = -14.0  # LUFS, integrated
CEILING = -2.2  # dBTP before encoding; the codec adds a little
QUALITY = "6"
DRIVE = 0.8  # how far the mix goes into the soft clipper before the limiter
FADERS = {"drums": -2.0, "bass": 0.0, "pads": 3.0, "keys": 3.0, "lead": 1.5, "perc": 4.0, "fx": 0.5}  # dB by stem
DUCK = {"bass": 5.0, "pads": 5.0, "keys": 3.0, "fx": 2.0, "lead": 1.0}  # dB by which a full kick pushes the stem down
DUCKERS = {"kick", "hit"}
SHELVES = [("low", 95, -2.0), ("high", 1900, 3.0), ("high", 7500, 1.5)]  # Hz, dB: the tone of the whole
DUCK_RETURN = 0.16  # seconds


def db(x):
    return 10 ** (x / 20)


def load(path):
    with warnings.catch_warnings():
        warnings.simplefilter("ignore", wavfile.WavFileWarning)  # Csound adds a chunk of its own
        rate, data = wavfile.read(path)
    assert rate == RATE
    n = int(round(LENGTH * RATE))
    out = np.zeros((n, 2))
    out[: min(n, len(data))] = data[:n]
    return out


def ducking(notes):
    """0 at rest to 1 at a kick, for every sample: what the kicks push away."""
    depth = np.zeros(int(round(LENGTH * RATE)))
    shape = np.concatenate([np.linspace(0, 1, int(0.004 * RATE)),
                            np.exp(-np.arange(int(0.6 * RATE)) / (DUCK_RETURN * RATE))])
    for instrument, beat, _, _, vel, *_ in notes:
        if instrument in DUCKERS:
            at = max(0, int((seconds(beat) - 0.004) * RATE))
            span = depth[at: at + len(shape)]
            np.maximum(span, min(1.0, vel) * shape[: len(span)], out=span)
    return depth


def fader(stem, rides):
    """Gain curve of a stem over the song, as a factor for every sample."""
    points = sorted(rides.get(stem, [(0, 0)]))
    at = [seconds(beat) * RATE for beat, _ in points]
    moves = np.interp(np.arange(int(round(LENGTH * RATE))), at, [level for _, level in points])
    return db(moves + FADERS.get(stem, 0))


def shelf(kind, hz, level):
    """Second-order section of a shelf of that many dB, half of it reached at `hz`."""
    a, w = db(level / 2), 2 * np.pi * hz / RATE
    sign = 1 if kind == "low" else -1
    alpha, c = np.sin(w) / np.sqrt(2) * 2 * np.sqrt(a), sign * np.cos(w)
    near, far = (a - 1) * c, (a + 1) * c
    numerator = a * np.array([a + 1 - near + alpha, sign * 2 * (a - 1 - far), a + 1 - near - alpha])
    denominator = np.array([a + 1 + near + alpha, -sign * 2 * (a - 1 + far), a + 1 + near - alpha])
    return np.concatenate([numerator, denominator]) / denominator[0]


def equalise(x):
    """Rumble out, then the shelves."""
    rumble = signal.butter(2, 27, "high", fs=RATE, output="sos")
    return signal.sosfilt(np.vstack([rumble, *(shelf(*s) for s in SHELVES)]), x, axis=0)


def mono_low(x, hz=130):
    """Takes the stereo difference out of the low end."""
    mid, side = (x[:, 0] + x[:, 1]) / 2, (x[:, 0] - x[:, 1]) / 2
    side = signal.sosfiltfilt(signal.butter(2, hz, "high", fs=RATE, output="sos"), side)
    return np.stack([mid + side, mid - side], axis=1)


def true_peak(x):
    """Largest absolute value around each sample, between samples included."""
    peak = np.zeros(len(x))
    for ch in range(2):
        up = signal.resample_poly(x[:, ch], 4, 1)[: 4 * len(x)]
        peak = np.maximum(peak, np.abs(up).reshape(-1, 4).max(axis=1))
    return ndimage.maximum_filter1d(peak, 3)


def limit(x, ceiling_db, block=32, ahead=6, release=0.12):
    """Look-ahead limiter: no value of the output, nor between its samples, is above the ceiling."""
    need = np.minimum(1.0, db(ceiling_db) / np.maximum(true_peak(x), 1e-9))
    blocks = -(-len(x) // block)
    need = np.pad(need, (0, blocks * block - len(need)), constant_values=1.0).reshape(-1, block).min(axis=1)
    back = 1 - np.exp(-block / RATE / release)
    gain, held = np.empty(blocks), 1.0
    for i, g in enumerate(need):
        held = min(g, held + (1 - held) * back)
        gain[i] = held
    gain = ndimage.minimum_filter1d(gain, 2 * ahead + 1)
    gain = ndimage.uniform_filter1d(gain, 2 * ahead - 1)
    curve = np.interp(np.arange(len(x)), (np.arange(blocks) + 0.5) * block, gain)
    return x * curve[:, None]


def k_weighted_blocks(x):
    """Mean square of K-weighted 400 ms blocks, a block each 100 ms."""
    y = signal.lfilter([1.5308412300, -2.6509799951, 1.1690790799], [1, -1.6636551132, 0.7125954280], x, axis=0)
    y = signal.lfilter([1, -2, 1], [1, -1.9891696736, 0.9891990357], y, axis=0)
    square = np.concatenate([[0], np.cumsum((y**2).sum(axis=1))])
    at = np.arange(0, len(x) - int(0.4 * RATE), int(0.1 * RATE))
    return (square[at + int(0.4 * RATE)] - square[at]) / (0.4 * RATE)


def mean_loudness(x):
    """Loudness in LUFS without a gate."""
    return -0.691 + 10 * np.log10(k_weighted_blocks(x).mean() + 1e-12)


def loudness(x):
    """Integrated loudness in LUFS, gated."""
    z = k_weighted_blocks(x)
    lufs = -0.691 + 10 * np.log10(np.maximum(z, 1e-12))
    z, lufs = z[lufs > -70], lufs[lufs > -70]
    gate = -0.691 + 10 * np.log10(z.mean()) - 10
    return -0.691 + 10 * np.log10(z[lufs > gate].mean())


def fades(x):
    n = int(0.02 * RATE)
    x[:n] *= np.linspace(0, 1, n)[:, None]
    n = int(1.5 * RATE)
    x[-n:] *= np.linspace(1, 0, n)[:, None] ** 2
    return x


def mixed(waves, part):
    """All stems together, at their faders, out of the kick's way."""
    depth = ducking(part.notes)
    out = 0
    for stem, path in waves.items():
        curve = fader(stem, part.rides) * db(-depth * DUCK.get(stem, 0))
        out = out + load(path) * curve[:, None]
    return out * fader("all", part.rides)[:, None]


def mastered(mix):
    mix = mono_low(equalise(mix))
    gain = TARGET - loudness(mix)
    for _ in range(3):
        done = limit(np.tanh(mix * db(gain) * DRIVE) / DRIVE, CEILING)
        gain += TARGET - loudness(done)
    return fades(done)


def save(sound, out, work):
    wave = out if out.endswith(".wav") else os.path.join(work, "tarvisk.wav")
    wavfile.write(wave, RATE, sound.astype(np.float32))
    if wave != out:
        subprocess.run(["oggenc", "--quiet", "-q", QUALITY, "--serial", "1", "-a", "VXQ", "-t", "tarvisk",
                        "-o", out, wave], check=True, stderr=subprocess.DEVNULL)
