"""A stage for the real program: a virtual display of its own, a window manager where the run asks
for one, and the program with its lines.

The environment says what is played and where: SHOW, the program; SHOW_WM, a window manager to
start or nothing; SHOW_SDL, a folder with the compatibility SDL 1.2 to put in front or nothing;
SHOW_COMPATIBILITY, anything where the system's SDL 1.2 is that library already.

Tests wait for lines and pictures as long as a slow, busy machine may take (machine.PATIENCE); no
test asserts that something is fast, or that what was said has been read already. What waits for ever
all the same is ended, and says where it stood.
"""

import os
import re
import shutil
import signal
import subprocess
import tempfile
import threading

import numpy
from PIL import Image, ImageGrab

import machine
from machine import WatchedTest, wait_until
from xclient import XClient

ROOT = os.path.realpath(os.path.join(os.path.dirname(__file__), "..", ".."))
PROGRAM = os.path.realpath(os.environ.get("SHOW", os.path.join(ROOT, "build", "tarvisk")))
WINDOW_MANAGER = os.environ.get("SHOW_WM", "")
OTHER_SDL = os.environ.get("SHOW_SDL", "")
COMPATIBILITY = bool(OTHER_SDL or os.environ.get("SHOW_COMPATIBILITY"))
CLOCK = r"timeval: (-?\d+\.\d{3}) beatgrid: (-?\d+\.\d{3})"


def desktop_picture(width=854, height=480):
    """A picture without any symmetry in place or colour, as an array of rows of R, G, B."""
    y, x = numpy.mgrid[0:height, 0:width]
    picture = numpy.zeros((height, width, 3), numpy.uint8)
    picture[..., 0] = 60 + 190 * x // width
    picture[..., 1] = 20 + 90 * y // height
    picture[..., 2] = (x * 7 + y * 3) % 40
    picture[: height // 4, : width // 4] = (250, 128, 0)
    return picture


class Stage:
    """An X server. Its name is in .display."""

    def __init__(self, width=854, height=480, depth=24, window_manager=WINDOW_MANAGER):
        self.folder = tempfile.mkdtemp(prefix="tarvisk-show-")
        self.processes = []
        self.width, self.height, self.depth = width, height, depth
        self._start_server()
        self.x = XClient(self.display)
        if window_manager:
            self._start(*window_manager.split())
            wait_until(self.x.manager_probe(), window_manager)

    def _start(self, *command, **options):
        environment = dict(os.environ, DISPLAY=self.display, XDG_CACHE_HOME=self.folder)
        process = subprocess.Popen(command, env=environment, stdout=subprocess.DEVNULL,
                                   stderr=subprocess.DEVNULL, **options)
        self.processes.append(process)
        return process

    def _start_server(self):
        self._start_x("Xvfb", "-screen", "0", f"{self.width}x{self.height}x{self.depth}")

    def _start_x(self, *command):
        process, self.display = machine.start_display(*command, "-noreset",
                                                      env=dict(os.environ, XDG_CACHE_HOME=self.folder))
        self.processes.append(process)

    def lose_display(self):
        self.x.close()
        self.x = None
        self.processes[0].kill()

    def close(self):
        if self.x:
            self.x.close()
        for process in reversed(self.processes):
            machine.end(process)
        shutil.rmtree(self.folder)

    def scratch(self, without=()):
        """A new folder that links the show's content, except what is named."""
        folder = tempfile.mkdtemp(dir=self.folder)
        os.mkdir(os.path.join(folder, "gfx"))
        content = ["tarvisk.ogg"] + [f for f in os.listdir(ROOT) if f.endswith(".obj")]
        content += [os.path.join("gfx", f) for f in os.listdir(os.path.join(ROOT, "gfx"))]
        for name in set(content) - set(without):
            os.symlink(os.path.join(ROOT, name), os.path.join(folder, name))
        return folder

    def hang(self, picture, tolerance=1):
        """Makes an array of R, G, B the picture on the root window."""
        name = os.path.join(self.folder, "desktop.png")
        Image.fromarray(picture).save(name)
        subprocess.run(["xwallpaper", "--zoom", name], check=True,
                       env=dict(os.environ, DISPLAY=self.display))
        self.wait_for_picture(picture, "the desktop's picture", tolerance)

    def grab(self):
        """What the screen shows, as an array of rows of R, G, B."""
        if self.depth == 24:
            return numpy.asarray(ImageGrab.grab(xdisplay=self.display).convert("RGB"))
        grabbed = subprocess.run(["import", "-display", self.display, "-window", "root", "-depth",
                                  "8", "rgb:-"], check=True, stdout=subprocess.PIPE).stdout
        return numpy.frombuffer(grabbed, numpy.uint8).reshape(self.height, self.width, 3)

    def shows(self, picture, tolerance=1):
        difference = self.grab().astype(int) - picture
        return numpy.abs(difference).max() <= tolerance

    def wait_for_picture(self, picture, what, tolerance=1):
        try:
            wait_until(lambda: self.shows(picture, tolerance), what)
        except AssertionError:
            Image.fromarray(self.grab()).save("/tmp/tarvisk-show-mismatch.png")
            raise

    def key(self, *arguments):
        """key z, keydown s, ... as xdotool has them."""
        subprocess.run(["xdotool", *arguments], check=True, stdout=subprocess.DEVNULL,
                       env=dict(os.environ, DISPLAY=self.display))


def show_environment(stage):
    """What a show on that stage, or on none, finds in its environment."""
    base = dict(os.environ, SDL_AUDIODRIVER="dummy",
                DBUS_SYSTEM_BUS_ADDRESS="unix:path=/nonexistent")
    for name in ("DISPLAY", "WAYLAND_DISPLAY", "SDL_VIDEODRIVER"):
        base.pop(name, None)
    if stage:
        base["DISPLAY"] = stage.display
    if OTHER_SDL:
        base["LD_LIBRARY_PATH"] = OTHER_SDL
    return base


def hear_interrupts():
    """What is started in the background of a script would ignore them."""
    signal.signal(signal.SIGINT, signal.SIG_DFL)


class Show:
    """A run of the program. .lines is its standard error so far, without the reports that come
    from timers; those are in .ticks."""

    TIMERS = re.compile(r"fps: .*|Up all night .*")

    def __init__(self, stage, *options, program=PROGRAM, cwd=ROOT, **environment):
        base = dict(show_environment(stage), **environment)
        self.lines, self.ticks = [], []
        self.output = tempfile.TemporaryFile()
        self.process = subprocess.Popen([program, *options], cwd=cwd, env=base, text=True,
                                        errors="replace", stdin=subprocess.DEVNULL,
                                        stdout=self.output, stderr=subprocess.PIPE,
                                        preexec_fn=hear_interrupts)
        self.reader = threading.Thread(target=self._read, daemon=True)
        self.reader.start()

    def _read(self):
        for line in self.process.stderr:
            line = line.rstrip("\n")
            (self.ticks if self.TIMERS.fullmatch(line) else self.lines).append(line)

    def find(self, pattern, start=0, lines=None):
        """The first match of a line, from line number start on, or None."""
        lines = self.lines if lines is None else lines
        return next((m for m in map(re.compile(pattern).fullmatch, lines[start:]) if m), None)

    def wait(self, pattern, start=0, lines=None):
        """Waits for a line that matches and returns the match."""

        def found():
            ended = self.process.poll() is not None
            if ended:
                self.reader.join()
            match = self.find(pattern, start, lines)
            if ended and not match:
                raise AssertionError(f"ended ({self.process.returncode}) without the line "
                                     f"{pattern!r}; its last lines: {self.lines[-10:]}")
            return match

        return wait_until(found, f"the line {pattern!r}")

    def wait_for_frames(self):
        """Waits until the timeline runs."""
        self.wait(r"adding event 'phonetex_callscreen' .*")

    def window(self, kind=""):
        return int(self.wait(f"our {kind}window id: ([0-9A-F]{{8}})")[1], 16)

    def ask_to_close(self, stage):
        stage.x.ask_to_close(self.window("wm") or self.window())

    def status(self):
        """Waits for the end; the exit status."""
        self.process.wait(machine.PATIENCE)
        self.reader.join()
        return self.process.returncode

    def stdout(self):
        self.output.seek(0)
        return self.output.read().decode(errors="replace")

    def close(self):
        if self.process.poll() is None:
            self.process.kill()
        self.status()
        self.process.stderr.close()
        self.output.close()


class Gate:
    """Stops the show where it looks for the companion of an image, until it is opened."""

    def __init__(self, folder, image):
        self.name = os.path.join(folder, image + ".txt")
        os.mkfifo(self.name)
        self.end = None

    def _reached(self):
        try:
            self.end = os.open(self.name, os.O_WRONLY | os.O_NONBLOCK)
        except OSError:
            return False
        return True

    def wait(self):
        wait_until(self._reached, "the show to look for " + self.name)

    def open(self):
        os.close(self.end)


class ShowTest(WatchedTest):
    """A test with stages and shows that end with it."""

    def stage(self, *arguments, **options):
        stage = Stage(*arguments, **options)
        self.addCleanup(stage.close)
        return stage

    def show(self, stage, *options, **environment):
        show = Show(stage, *options, **environment)
        self.addCleanup(show.close)
        return show

    def quit(self, stage, process):
        """Presses q until the process has ended: the window may not have the keyboard yet."""

        def ended():
            stage.key("key", "q")
            return process.poll() is not None

        wait_until(ended, "the end")

    def press_z(self, stage, show):
        """Presses z until the window has the keyboard and answers; the match."""
        seen = len(show.lines)

        def pressed():
            stage.key("key", "z")
            return show.find(CLOCK, seen)

        return wait_until(pressed, "an answer to z")

    def seconds(self, stage, show):
        """The demo time that the show says when asked."""
        return float(self.press_z(stage, show)[1])
