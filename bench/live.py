"""The show on a virtual display with a sound card: when its pictures come, how it stands to its song, how long
it takes to start."""
import fcntl
import os
import re
import statistics as means
import subprocess
import sys
import tempfile
import threading
import time

import numpy

from benching import ROOT, part_of, statistics

sys.path[:0] = [os.path.join(ROOT, "tests", room) for room in ("recorder", "show")]
from machine import end, start_display
from movies import lag, sound

RATE = 44100  # samples a second
CHUNK = 1024  # samples that the sound card takes at once
BUFFER = 4096  # samples that it has room for
SAMPLE = 4  # bytes
FRAME = 20.0  # ms
WINDOW = 1500  # frames of the loop that only holds them, before the show and after it
DRIVERS = 50  # frames in which a window's driver settles


class Display:
    """A virtual display, in .name."""

    def __init__(self, size):
        self.server, self.name = start_display("Xvfb", "-noreset", "-screen", "0", f"{size}x24")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        end(self.server)


class SoundCard(threading.Thread):
    """Takes the samples from SDL's disk driver as a card would, at 44,100 a second, with a buffer as small."""

    def __init__(self, folder):
        super().__init__(daemon=True)
        self.pipe = os.path.join(folder, "sound")
        os.mkfifo(self.pipe)
        # Now, while nothing is in it: it cannot be made smaller than what it holds.
        self.reader = os.open(self.pipe, os.O_RDONLY | os.O_NONBLOCK)
        fcntl.fcntl(self.reader, fcntl.F_SETPIPE_SZ, BUFFER * SAMPLE)
        self.chunks, self.begun = [], []  # bytes, and when each began to sound
        self.starved = 0  # chunks that came too late
        self.start()

    def run(self):
        with open(self.pipe, "rb", buffering=0) as pipe:
            os.close(self.reader)
            due = None
            while chunk := self._read(pipe):
                now = time.monotonic()
                due = now if due is None else due + CHUNK / RATE
                if now > due + CHUNK / RATE:
                    self.starved += 1
                    due = now
                self.chunks.append(chunk)
                self.begun.append(due)
                time.sleep(max(0, due + CHUNK / RATE - time.monotonic()))

    @staticmethod
    def _read(pipe):
        chunk = b""
        while len(chunk) < CHUNK * SAMPLE:
            more = pipe.read(CHUNK * SAMPLE - len(chunk))
            if not more:
                return b""
            chunk += more
        return chunk

    def samples(self):
        both = numpy.frombuffer(b"".join(self.chunks), numpy.int16).reshape(-1, 2)
        return (both.mean(axis=1) / 32768).astype(numpy.float32)

    def heard(self, sample):
        """When a sample sounds."""
        return self.begun[sample // CHUNK] + sample % CHUNK / RATE


class Run:
    """One run of tarvisk-live: .launched, .presents (when, frame's begin, demo time, beat, scene), .files, .said."""

    def __init__(self, program, display, *arguments, **environment):
        self.launched = time.monotonic()
        done = subprocess.run(
            [program, *arguments], cwd=ROOT, text=True, errors="replace", check=True, capture_output=True,
            env=dict(os.environ, DISPLAY=display.name, SDL_VIDEODRIVER="x11",
                     DBUS_SYSTEM_BUS_ADDRESS="unix:path=/nonexistent",
                     **{"SDL_AUDIODRIVER": "dummy", **environment}))
        self.said = done.stderr
        fields = [line.split("\t") for line in done.stdout.splitlines()]
        self.presents = [(*map(float, f[:4]), f[4]) for f in fields if len(f) == 5]
        self.files = [f[1] for f in fields if f[0] == "file"]
        self.number = done.stdout.strip()

    def shown(self):
        """The presents of the timeline."""
        return [present for present in self.presents if present[4]]


def intervals(presents):
    return list(zip(presents, presents[1:]))


def row(pairs):
    """How far apart pictures come, how far that is off 20 ms, and how far apart their frames begin: milliseconds."""
    apart = [1000 * (b[0] - a[0]) for a, b in pairs]
    return {"frames": len(apart), **statistics(apart), **statistics([abs(ms - FRAME) for ms in apart], "off "),
            **statistics([1000 * (b[1] - a[1]) for a, b in pairs], "frame "),
            "missed": sum(ms > 1.5 * FRAME for ms in apart)}


def by_scene(presents):
    played = {}
    for present in presents:
        played.setdefault(part_of(present[4], present[3]), []).append(present)
    return {scene: row(intervals(frames)) for scene, frames in played.items() if len(frames) > 1}


def song_behind(card, presents):
    """By how many milliseconds the song is heard behind its picture, at each second of it that sounded."""
    samples, song = card.samples(), sound(os.path.join(ROOT, "tarvisk.ogg"))
    begins = lag(song[RATE : 2 * RATE], samples[: 8 * RATE])[0] - RATE
    times = numpy.array([present[2] for present in presents])
    behind = []
    for second in range(1, min(len(samples) - begins, len(song)) // RATE - 1):
        around = max(0, begins + (second - 1) * RATE)
        at, alike = lag(song[second * RATE : (second + 1) * RATE], samples[around : around + 3 * RATE])
        if alike < 0.8:
            raise RuntimeError(f"what sounds {second} s into the song is not the song")
        picture = presents[min(int(numpy.searchsorted(times, second)), len(presents) - 1)]
        behind.append(1000 * (card.heard(around + at) - second - (picture[0] - picture[2])))
    return behind


def song(card, presents):
    """How the song stood to the pictures. The sound card's buffer and SDL's are part of the delay."""
    behind = song_behind(card, presents)
    table = {"seconds": len(behind), "chunks": len(card.chunks), "starved": card.starved}
    if behind:
        table.update({"behind": means.median(behind), "least": min(behind), "most": max(behind)})
    return table


def reports(said):
    """Frames and logic ticks a second, of all reports but those of the first seconds."""
    found = re.findall(r"^fps: ([0-9.]+) \(\d+\) logic: ([0-9.]+) \(\d+\) time: ([0-9.]+)", said, re.M)
    rates = [(float(fps), float(logic)) for fps, logic, now in found if float(now) > 4.0]
    if not rates:
        return {}
    fps, logic = zip(*rates)
    return {"count": len(rates), "least fps": min(fps), "median fps": means.median(fps), "least logic": min(logic),
            "most logic": max(logic)}


def pacing(program, size, beat):
    """Tables of the whole show up to a beat, and of a loop that only holds its 20 ms."""
    window = str(DRIVERS + min(WINDOW, round(10 * beat)))
    with Display(size) as display, tempfile.TemporaryDirectory() as folder:
        card = SoundCard(folder)
        bare = Run(program, display, "window", window)
        show = Run(program, display, "show", str(beat), SDL_AUDIODRIVER="disk", SDL_DISKAUDIOFILE=card.pipe,
                   SDL_DISKAUDIODELAY="0")
        again = Run(program, display, "window", window)
        card.join()
    shown = show.shown()
    loops = intervals(bare.presents[DRIVERS:]) + intervals(again.presents[DRIVERS:])
    return {"pacing": {"bare loop": row(loops), "show": row(intervals(shown)), **by_scene(shown)},
            "song": song(card, shown), "reports": reports(show.said), "presents": shown}


def starts(program, size, count):
    """Seconds from the command on, and of what it is measured beside, in turns: {name: {median ...}}."""
    times = {}
    with Display(size) as display:
        Run(program, display, "show", "0")
        for _ in range(count):
            window = Run(program, display, "window", "1")
            picture = Run(program, display, "picture", "1")
            show = Run(program, display, "show", "0")
            first = show.presents[0][0]
            found = {
                "start: window alone": window.presents[0][0] - window.launched,
                "start: window and picture": picture.presents[0][0] - picture.launched,
                "start: first picture": first - show.launched,
                "start: loading": show.shown()[0][0] - first,
                "start: first beat": show.presents[-1][0] - show.launched,
            }
            for threads in 1, 2:
                decoding = Run(program, display, "decode", str(threads), *show.files)
                found[f"start: decoding on {threads}"] = float(decoding.number)
            for name, value in found.items():
                times.setdefault(name, []).append(value)
    return {name: {"median": means.median(values), "worst": max(values)} for name, values in times.items()}
