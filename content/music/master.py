"""Mix and master: stems to one loud, safe stereo file."""

import os
import subprocess
import warnings

import numpy as np
from scipy import ndimage, signal
from scipy.io import wavfile

from grid import BEAT0, BEAT, RATE, LENGTH, seconds

TARGET = -14.0  # LUFS, integrated
CEILING = -1.8  # dBTP before encoding; the codec adds a little
QUALITY = "6"
FADERS = {}  # dB by stem


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


def produce(waves, notes, out, first, last, step):
    mix = sum(load(path) * db(FADERS.get(stem, 0)) for stem, path in waves.items())
    mix = mono_low(mix)
    step(f"mix: {len(waves)} stems")
    gain = TARGET - loudness(mix)
    for _ in range(3):
        done = limit(np.tanh(mix * db(gain) * 0.8) / 0.8, CEILING)
        gain += TARGET - loudness(done)
    done = fades(done)
    step(f"master: {loudness(done):.2f} LUFS, gain {gain:+.1f} dB")
    if first is not None or last is not None:
        done = done[int(seconds(first or 0) * RATE): int(seconds(last) * RATE) if last is not None else None]
    wave = out if out.endswith(".wav") else os.path.join(os.path.dirname(list(waves.values())[0]), "tarvisk.wav")
    wavfile.write(wave, RATE, done.astype(np.float32))
    if out.endswith(".ogg"):
        subprocess.run(["oggenc", "--quiet", "-q", QUALITY, "--serial", "1", "-a", "VXQ", "-t", "tarvisk",
                        "-o", out, wave], check=True, stderr=subprocess.DEVNULL)
    step(f"wrote {os.path.relpath(out)}")
