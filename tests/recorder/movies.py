"""Records the show with the real recorder and takes the files apart with ffprobe and ffmpeg."""

import json
import math
import os
import shutil
import subprocess
import tempfile
import unittest

import numpy

ROOT = os.path.realpath(os.path.join(os.path.dirname(__file__), "..", ".."))
BUILD = os.path.realpath(os.environ.get("BUILD", os.path.join(ROOT, "build")))
RECORDER = os.path.join(BUILD, "tarvisk-record")
BEAT_FIRST, BEAT = 0.128, (5.207 - 0.128) / 8  # seconds
WIDTH, HEIGHT = 214, 120
SIZE = f"{WIDTH}x{HEIGHT}"


def beat_seconds(beat):
    return BEAT_FIRST + beat * BEAT


def first_frame(beat, rate=50):
    """The first frame that is drawn at or after a beat."""
    return max(0, math.ceil(beat_seconds(beat) * rate - 1e-4))


def record(*arguments, check=True, **environment):
    """Runs the recorder from the repository root; stdout and stderr of the result are text."""
    return subprocess.run([RECORDER, "--size", SIZE, *arguments], cwd=ROOT, check=check, text=True,
                          capture_output=True, env=dict(os.environ, **environment))


def probe(movie):
    """ffprobe's view of a file: its video stream, its audio stream, its chapters."""
    shown = subprocess.run(["ffprobe", "-v", "error", "-count_frames", "-show_streams",
                            "-show_chapters", "-of", "json", movie],
                           check=True, capture_output=True, text=True)
    found = json.loads(shown.stdout)
    streams = {stream["codec_type"]: stream for stream in found["streams"]}
    return streams["video"], streams["audio"], found["chapters"]


def pictures(movie):
    """All frames of a movie: frames x height x width x 3."""
    decoded = subprocess.run(["ffmpeg", "-v", "error", "-i", movie, "-map", "0:v", "-f", "rawvideo",
                              "-pix_fmt", "rgb24", "-"], check=True, capture_output=True)
    return numpy.frombuffer(decoded.stdout, numpy.uint8).reshape(-1, HEIGHT, WIDTH, 3)


def sound(movie):
    """The sound of a file, both channels mixed: 44,100 samples a second."""
    decoded = subprocess.run(["ffmpeg", "-v", "error", "-i", movie, "-map", "0:a", "-ac",
                              "1", "-ar", "44100", "-f", "f32le", "-"],
                             check=True, capture_output=True)
    return numpy.frombuffer(decoded.stdout, numpy.float32)


def lag(part, whole):
    """Where `part` lies in `whole`, in samples, and how alike they are there, 0 to 1."""
    length = 1 << (len(part) + len(whole)).bit_length()
    spectrum = numpy.fft.rfft(whole, length) * numpy.conj(numpy.fft.rfft(part, length))
    match = numpy.fft.irfft(spectrum, length)[: len(whole) - len(part) + 1]
    at = int(match.argmax())
    power = math.sqrt(float((part**2).sum()) * float((whole[at : at + len(part)] ** 2).sum()))
    return at, float(match[at]) / max(power, 1e-9)


class MovieTest(unittest.TestCase):
    """A test with a folder for its files."""

    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.mkdtemp(prefix="tarvisk-recorder-")
        cls.addClassCleanup(shutil.rmtree, cls.folder)

    @classmethod
    def file(cls, name):
        return os.path.join(cls.folder, name)
