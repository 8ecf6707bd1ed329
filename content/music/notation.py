"""Notation: turns chord symbols, melodies and drum patterns into timed notes.

A Part collects notes; pitches are MIDI numbers, times and lengths are beats. Human timing is drawn from a
generator that is seeded by what is played, so that every rebuild plays alike.
"""

import random
import re

STEP = {"C": 0, "D": 2, "E": 4, "F": 5, "G": 7, "A": 9, "B": 11}
QUALITY = {
    "": (0, 4, 7), "m": (0, 3, 7), "5": (0, 7), "6": (0, 4, 7, 9), "m6": (0, 3, 7, 9),
    "7": (0, 4, 7, 10), "m7": (0, 3, 7, 10), "maj7": (0, 4, 7, 11), "dim": (0, 3, 6), "dim7": (0, 3, 6, 9),
    "m7b5": (0, 3, 6, 10), "sus2": (0, 2, 7), "sus4": (0, 5, 7), "7sus4": (0, 5, 7, 10), "add9": (0, 4, 7, 14),
    "madd9": (0, 3, 7, 14), "9": (0, 4, 7, 10, 14), "m9": (0, 3, 7, 10, 14), "maj9": (0, 4, 7, 11, 14),
    "9sus4": (0, 5, 7, 10, 14), "7b9": (0, 4, 7, 10, 13), "maj7#11": (0, 4, 7, 11, 18), "m11": (0, 3, 7, 10, 14, 17),
}


def pitch(name):
    """MIDI number of a note name such as "Bb4" (C4 is 60)."""
    letter, accidental, octave = re.fullmatch(r"([A-G])([#b]*)(-?\d)", name).groups()
    return STEP[letter] + accidental.count("#") - accidental.count("b") + 12 * (int(octave) + 1)


def hertz(midi):
    return 440.0 * 2 ** ((midi - 69) / 12)


def split_chord(symbol):
    """("Bb", "maj9", "D") for "Bbmaj9/D"; the bass is the root where none is written."""
    root, quality, bass = re.fullmatch(r"([A-G][#b]?)([^/]*)(?:/([A-G][#b]?))?", symbol).groups()
    return root, quality, bass or root


def bass_note(symbol, octave=2):
    return pitch(split_chord(symbol)[2] + str(octave))


def voicing(symbol, centre=62, last=None):
    """Close voicing around `centre` that moves least from the voicing before it."""
    root, quality, _ = split_chord(symbol)
    tones = sorted({(pitch(root + "4") + i) % 12 for i in QUALITY[quality]})
    best, best_cost = None, None
    for turn in range(len(tones)):
        for base in (36, 48, 60, 72):
            notes = sorted(base + t + (12 if i < turn else 0) for i, t in enumerate(tones))
            mean = sum(notes) / len(notes)
            cost = abs(mean - centre) * 0.6
            if last:
                cost += sum(min(abs(n - l) for l in last) for n in notes)
            if best is None or cost < best_cost:
                best, best_cost = notes, cost
    return best


def parse(text):
    """[(name or None, beats)] from "D5:1 E5:.5 r:.5 | ..."; every full bar between bars must be four beats."""
    out = []
    for bar in text.split("|"):
        out += [(None if n == "r" else n, float(d)) for n, d in (t.split(":") for t in bar.split())]
    return out


class Part:
    """Notes of one piece, in the order in which they were written."""

    def __init__(self):
        self.notes = []  # (instrument, beat, length, hertz, velocity, pan, extra p-fields)

    def play(self, instrument, beat, length, note=60, vel=0.8, pan=0.0, extra=(), human=0.0):
        """One note. `note` is a name or a MIDI number; `human` is the spread of its timing in seconds."""
        midi = pitch(note) if isinstance(note, str) else note
        if human:
            r = random.Random(f"{instrument} {beat:.4f} {midi}")
            beat += r.gauss(0, human) / 0.634875
            vel *= 1 + r.gauss(0, 0.06)
        self.notes.append((instrument, beat, length, hertz(midi), vel, pan, tuple(extra)))

    def melody(self, instrument, beat, text, vel=0.8, pan=0.0, up=0, legato=0.95, extra=(), human=0.0):
        """A line of notes one after the other; returns the beat after the last."""
        for name, length in parse(text):
            if name:
                accent = 1.0 if beat % 1 == 0 else 0.9
                self.play(instrument, beat, length * legato, pitch(name) + up, vel * accent, pan, extra, human)
            beat += length
        return beat

    def chords(self, instrument, beat, text, vel=0.6, centre=62, up=0, legato=0.98, width=0.5, extra=(), human=0.0):
        """Held chords, "Dm9:4 Bbmaj9:4", each voice at its own place between left and right."""
        last = None
        for symbol, length in parse(text):
            if symbol:
                last = voicing(symbol, centre - up, last)
                for i, n in enumerate(last):
                    pan = width * (2 * i / max(1, len(last) - 1) - 1)
                    self.play(instrument, beat, length * legato, n + up, vel, pan, extra, human)
            beat += length
        return beat

    def pattern(self, instrument, beat, steps, note=60, vel=0.8, pan=0.0, grid=0.25, length=None, extra=(),
                human=0.0, swing=0.0):
        """Drum steps: X accent, x normal, o soft, . rest; `swing` delays every second step by that part of a step."""
        weight = {"X": 1.0, "x": 0.8, "o": 0.45, "-": 0.25}
        for i, step in enumerate(steps.replace(" ", "").replace("|", "")):
            if step in weight:
                at = beat + (i + (swing if i % 2 else 0)) * grid
                self.play(instrument, at, length or grid, note, vel * weight[step], pan, extra, human)
        return beat + len(steps.replace(" ", "").replace("|", "")) * grid
