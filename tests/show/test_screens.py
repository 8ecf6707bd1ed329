"""Where the picture lies on screens of all shapes: over the full width, in the middle of the height,
black above and below; taller than the screen, it is cropped and not squeezed."""

import os
import subprocess
import unittest

import numpy

from stage import COMPATIBILITY, Gate, ShowTest, desktop_picture, wait_until

CAPTURE = 854, 480
ROCK = "102.5"  # seconds: a scene that is bright from edge to edge, for the next twelve
BRIGHT = 40
NO_MONITORS = "the compatibility library knows a screen's outputs, not monitors made of one output"


def viewport(width, height, aspect):
    """The picture's height and how many rows of the screen are above it (less than none where it
    is cropped)."""
    h = aspect[1] * width // aspect[0]
    below = int((height - h) / 2)
    return h, height - h - below


class Screens(ShowTest):
    def check(self, width, height, *options, aspect=CAPTURE):
        h, above = viewport(width, height, aspect)
        rows = slice(max(above, 0), above + h)
        stage = self.stage(width, height)
        desktop = desktop_picture(width, height)
        stage.hang(desktop)
        folder = stage.scratch()
        gate = Gate(folder, "gfx/whiteback.jpg")
        show = self.show(stage, "--nomusic", "--skip", ROCK, *options, cwd=folder)
        gate.wait()
        show.wait(f"screen res: {width}, {height}")
        show.wait(f"viewport should be now {width}, {height}")
        where = f"in rows {rows.start} to {rows.stop}"
        if width >= CAPTURE[0] and height >= CAPTURE[1]:
            wait_until(lambda: self.is_capture(stage.grab(), desktop, h, above),
                       "the desktop " + where)
        gate.open()
        wait_until(lambda: self.is_lit_in(stage.grab(), rows), "the show " + where)

    def is_capture(self, shown, desktop, h, above):
        """Whether the screen shows the top left of the desktop, h rows high, and black around."""
        height, width = shown.shape[:2]
        rows = slice(max(above, 0), above + h)
        if not self.is_lit_in(shown, rows):
            return False
        # The orange corner ends where it should, to the row and the column.
        red = shown[..., 0].astype(int)
        right = width // 4 * width / CAPTURE[0]
        bottom = above + height // 4 * h / CAPTURE[1]
        if (numpy.argmax(red[rows.start] < 180) != round(right)
                or rows.start + numpy.argmax(red[rows.start:, 0] < 155) != round(bottom)):
            return False
        y, x = numpy.mgrid[rows.start + 3:min(rows.stop, height) - 3:9, 3:width - 3:9]
        # Red and green change slowly: scaling hardly changes them.
        wanted = desktop[(y - above) * CAPTURE[1] // h, x * CAPTURE[0] // width, :2]
        off = numpy.abs(shown[y, x, :2].astype(int) - wanted).max(axis=2)
        return (off <= 4).mean() > 0.98  # all but the corner's edges

    def is_lit_in(self, shown, rows):
        bright = shown.max(axis=2)
        picture = bright[rows]
        bright = numpy.delete(bright, rows, axis=0)
        return (picture.max(axis=1) > BRIGHT).all() and not bright.any()

    @unittest.skipIf(COMPATIBILITY, NO_MONITORS)
    def test_of_several_monitors_that_of_the_pointer_is_filled(self):
        self.check_monitors(700, 600)

    @unittest.skipIf(COMPATIBILITY, NO_MONITORS)
    def test_of_several_monitors_the_one_that_was_chosen_is_filled(self):
        self.check_monitors(100, 0, SDL_VIDEO_FULLSCREEN_HEAD="0")
        self.check_monitors(100, 600, SDL_VIDEO_FULLSCREEN_HEAD="1")

    def check_monitors(self, pointer, filled, **environment):
        """The show on a screen of two monitors, the second one from column 600 on."""
        stage = self.stage(1400, 450)
        desktop = desktop_picture(1400, 450)
        stage.hang(desktop)
        for name, width, x, output in ("first", 600, 0, "screen"), ("second", 800, 600, "none"):
            subprocess.run(["xrandr", "--setmonitor", name, f"{width}/100x450/100+{x}+0", output],
                           check=True, env=dict(os.environ, DISPLAY=stage.display))
        stage.key("mousemove", str(pointer), "200")
        show = self.show(stage, "--nomusic", "--skip", ROCK, **environment)
        columns = slice(600, 1400) if filled else slice(0, 600)
        other = slice(0, 600) if filled else slice(600, 1400)
        width = columns.stop - columns.start
        h, above = viewport(width, 450, CAPTURE)
        show.wait(f"screen res: {width}, 450")
        show.wait_for_frames()
        wait_until(lambda: self.is_lit_in(stage.grab()[:, columns], slice(above, above + h)),
                   "the show on its monitor")
        self.assertTrue((stage.grab()[:, other] == desktop[:, other]).all(), "the other monitor")

    def test_phone(self):
        self.check(854, 480)

    def test_720p(self):
        self.check(1280, 720)

    def test_fullhd(self):
        self.check(1920, 1080)

    def test_upright(self):
        self.check(1080, 1920)

    def test_vga(self):
        self.check(640, 480)

    def test_wide(self):
        self.check(1280, 480)

    def test_phone_as_fullhd(self):
        self.check(854, 480, "--fullhd", aspect=(1920, 1080))

    def test_fullhd_as_fullhd(self):
        self.check(1920, 1080, "--fullhd", aspect=(1920, 1080))

    def test_vga_as_720p(self):
        self.check(640, 480, "--720p", aspect=(1280, 720))


if __name__ == "__main__":
    unittest.main()
