"""Notation: turns chord symbols, melodies and step patterns into timed notes.

A Part collects notes; pitches are MIDI numbers or names such as "Bb4" (C4 is 60), times and lengths are beats.
Human timing comes from a generator seeded by what is played, so every rebuild plays alike; whole bars stay exact.
"""

import random
import re

from grid import BEAT

STEP = {"C": 0, "D": 2, "E": 4, "F": 5, "G": 7, "A": 9, "B": 11}
NAMES = ["C", "C#", "D", "Eb", "E", "F", "F#", "G", "G#", "A", "Bb", "B"]
QUALITY = {
    "": (0, 4, 7), "m": (0, 3, 7), "5": (0, 7), "7": (0, 4, 7, 10), "m7": (0, 3, 7, 10), "maj7": (0, 4, 7, 11),
    "add9": (0, 4, 7, 14), "madd9": (0, 3, 7, 14), "9": (0, 4, 7, 10, 14), "m9": (0, 3, 7, 10, 14),
    "maj9": (0, 4, 7, 11, 14), "sus2": (0, 2, 7), "7sus4": (0, 5, 7, 10), "9sus4": (0, 5, 7, 10, 14),
    "7b9": (0, 4, 7, 10, 13), "maj7#11": (0, 4, 7, 11, 18), "m7b5": (0, 3, 6, 10), "dim7": (0, 3, 6, 9),
    "6/9": (0, 4, 7, 9, 14),
}
STRENGTH = {"X": 1.0, "x": 0.8, "o": 0.5, "-": 0.28}
# Steps of a riff: chord root, its octaves, third, fifth, seventh (or sixth); lower case is softer.
# Voices glide from note to note, swell with the height of the line, and are this much (seconds) early or late.
VOICES = {"whistle": 0.004, "voice": 0.005, "reed": 0.004, "lead": 0.001, "brass": 0.003}
DEGREE = {"R": 0, "O": 12, "L": -12, "T": None, "F": 7, "S": None}


def pitch(name):
    """MIDI number of a note name; numbers pass through."""
    if not isinstance(name, str):
        return name
    letter, accidental, octave = re.fullmatch(r"([A-G])([#b]*)(-?\d)", name).groups()
    return STEP[letter] + accidental.count("#") - accidental.count("b") + 12 * (int(octave) + 1)


def hertz(midi):
    return 440.0 * 2 ** ((midi - 69) / 12)


def parse(text):
    """[(name or None, beats)] from "D5:1 E5:.5 r:.5 | ..."; bar lines are for the reader."""
    pairs = (token.rsplit(":", 1) for token in text.replace("|", " ").split())
    return [(None if name == "r" else name, float(beats)) for name, beats in pairs]


def duration(text):
    return sum(beats for _, beats in parse(text))


def split_chord(symbol):
    """("Bb", "maj9", "D") for "Bbmaj9/D"; the bass is the root where none is written."""
    root, quality, bass = re.fullmatch(r"([A-G][#b]?)((?:6/9)|[^/]*)(?:/([A-G][#b]?))?", symbol).groups()
    return root, quality, bass or root


def transposed(text, semitones):
    """Chord text moved by semitones."""
    def move(name):
        return NAMES[(STEP[name[0]] + name.count("#") - name.count("b") + semitones) % 12]

    out = []
    for symbol, beats in parse(text):
        if symbol:
            root, quality, bass = split_chord(symbol)
            symbol = move(root) + quality + (f"/{move(bass)}" if bass != root else "")
        out.append(f"{symbol or 'r'}:{beats:g}")
    return " ".join(out)


def chord_at(text, offset):
    """Symbol that sounds `offset` beats into the chord text, which repeats."""
    offset %= duration(text)
    for symbol, beats in parse(text):
        if offset < beats - 1e-6:
            return symbol
        offset -= beats
    return symbol


def opened(notes):
    """The same chord with its second voice from above an octave lower."""
    return sorted(notes[:-2] + [notes[-2] - 12, notes[-1]])


def voicing(symbol, centre=62, last=None):
    """Voicing around `centre`, close or open, that moves least from the one before and does not rub down low."""
    root, quality, _ = split_chord(symbol)
    tones = sorted({(pitch(root + "4") + i) % 12 for i in QUALITY[quality]})

    def cost(notes):
        drift = abs(sum(notes) / len(notes) - centre) * 0.6
        rubs = sum((5 if a < 62 else 2) for a, b in zip(notes, notes[1:]) if b - a == 1)
        moves = sum(min(abs(n - l) for l in last) for n in notes) if last else 0
        return drift + rubs + moves

    close = [sorted(base + t + (12 if i < turn else 0) for i, t in enumerate(tones))
             for turn in range(len(tones)) for base in (36, 48, 60, 72)]
    return min(close + [opened(notes) for notes in close], key=cost)


def low_note(symbol, lowest=33):
    """Bass note of the chord, in the octave that starts at `lowest`."""
    return lowest + (pitch(split_chord(symbol)[2] + "4") - lowest) % 12


class Part:
    """Notes and fader moves, in the order in which they were written."""

    def __init__(self):
        self.notes = []  # (instrument, beat, length, hertz, velocity, pan, extra p-fields)
        self.rides = {}  # stem: [(beat, dB)], straight between points

    def ride(self, stem, *points):
        self.rides.setdefault(stem, []).extend(points)

    def play(self, instrument, beat, length=1.0, note=60, vel=0.8, pan=0.0, extra=(), human=0.0):
        """One note; `human` is the spread of its timing in seconds."""
        midi = pitch(note)
        if human:
            r = random.Random(f"{instrument} {beat:.4f} {midi}")
            vel *= 1 + r.gauss(0, 0.06)
            if beat % 4:
                beat += max(-2.0, min(2.0, r.gauss(0, 1))) * human / BEAT
        self.notes.append((instrument, beat, length, hertz(midi), min(vel, 1.2), pan, tuple(extra)))

    def melody(self, instrument, beat, text, vel=0.8, pan=0.0, up=0, legato=0.95, extra=(), human=0.0, stretch=1.0):
        """A line of notes one after the other; returns the beat after the last."""
        sings, before = instrument in VOICES, None
        for name, length in parse(text):
            length *= stretch
            if name:
                note = pitch(name) + up
                force = vel * (1.0 if beat % 1 == 0 else 0.9)
                if sings:
                    force *= 1 + 0.012 * max(-8, min(8, note - 74 - up))
                    extra = (hertz(before) if before else 0,)
                spread = human or VOICES.get(instrument, 0)
                self.play(instrument, beat, length * legato, note, force, pan, extra, spread)
            before = note if name else None
            beat += length
        return beat

    def chords(self, instrument, beat, text, vel=0.6, centre=62, legato=0.98, width=0.5, extra=(), human=0.0,
               steps=None, grid=0.25):
        """Held chords, each voice at its own place between left and right; with `steps`, struck in that rhythm."""
        last = None
        for symbol, length in parse(text):
            if symbol:
                last = voicing(symbol, centre, last)
                for i, n in enumerate(last):
                    pan = width * (2 * i / max(1, len(last) - 1) - 1)
                    if steps:
                        full = (steps * int(length / grid / len(steps) + 1))[: int(length / grid)]
                        self.pattern(instrument, beat, full, n, vel, pan, grid, grid * legato, extra, human)
                    else:
                        self.play(instrument, beat, length * legato, n, vel, pan, extra, human)
            beat += length
        return beat

    def pattern(self, instrument, beat, steps, note=60, vel=0.8, pan=0.0, grid=0.25, length=None, extra=(),
                human=0.0, swing=0.0):
        """Steps X accent, x normal, o soft, - ghost, . rest; `swing` delays every second step by that part of it."""
        steps = re.sub(r"[ |]", "", steps)
        for i, step in enumerate(steps):
            if step in STRENGTH:
                at = beat + (i + (swing if i % 2 else 0)) * grid
                self.play(instrument, at, length or grid, note, vel * STRENGTH[step], pan, extra, human)
        return beat + len(steps) * grid

    def riff(self, instrument, beat, chords, steps, beats=None, vel=0.8, grid=0.25, lowest=33, legato=0.9, extra=(),
             pan=0.0, swing=0.0):
        """Bass figure over chords: steps name chord degrees, "_" holds the note before, "." rests."""
        steps = re.sub(r"[ |]", "", steps)
        total = int(round((beats or duration(chords)) / grid))
        for i in range(total):
            step = steps[i % len(steps)]
            if step in "._":
                continue
            held = 1
            while i + held < total and steps[(i + held) % len(steps)] == "_":
                held += 1
            symbol = chord_at(chords, i * grid)
            if symbol is None:
                continue
            root, quality, _ = split_chord(symbol)
            tones = QUALITY[quality]
            degree = {"T": tones[1], "S": tones[3] if len(tones) > 3 else 12}.get(step.upper(), DEGREE[step.upper()])
            at = beat + (i + (swing if i % 2 else 0)) * grid
            self.play(instrument, at, held * grid * legato, low_note(symbol, lowest) + degree,
                      vel * (1.0 if step.isupper() else 0.7), pan, extra)
        return beat + total * grid

    def arp(self, instrument, beat, chords, order, beats=None, vel=0.6, grid=0.25, centre=68, legato=0.8, extra=(),
            human=0.0, width=0.4, accent=4, grow=0.0):
        """Broken chords: digits of `order` pick chord tones from below, "." rests; `grow` adds velocity to the end."""
        last, symbol_before = None, None
        total = int(round((beats or duration(chords)) / grid))
        for i in range(total):
            symbol = chord_at(chords, i * grid)
            if symbol != symbol_before:
                last, symbol_before = voicing(symbol, centre, last) if symbol else None, symbol
            digit = order[i % len(order)]
            if digit == "." or not symbol:
                continue
            k = int(digit)
            note = last[k % len(last)] + 12 * (k // len(last))
            force = vel * (1.0 if i % accent == 0 else 0.8) * (1 + grow * (i / total))
            pan = width * (1 if i % 2 else -1)
            self.play(instrument, beat + i * grid, grid * legato, note, force, pan, extra, human)
        return beat + total * grid
