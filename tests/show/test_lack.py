"""The start where something is missing: music, sound, a display, a large enough screen."""

import os
import signal
import socket
import subprocess
import threading
import unittest

import numpy
from PIL import Image

from stage import PROGRAM, ROOT, ShowTest, desktop_picture, show_environment, wait_until


class Lack(ShowTest):
    def test_missing_music_is_reported_and_the_show_goes_on(self):
        stage = self.stage()
        show = self.show(stage, cwd=stage.scratch(without=["tarvisk.ogg"]))
        self.assertRegex(show.wait("guess what: .*")[0], "tarvisk.ogg")
        self.assertEqual(show.lines[show.lines.index("initting music") + 1][:11], "guess what:")
        show.wait_for_frames()

    def test_music_that_is_no_music_is_reported_and_the_show_goes_on(self):
        stage = self.stage()
        folder = stage.scratch(without=["tarvisk.ogg"])
        with open(os.path.join(folder, "tarvisk.ogg"), "w") as file:
            file.write("not music")
        show = self.show(stage, cwd=folder)
        show.wait("guess what: .*")
        show.wait_for_frames()

    def test_no_sound_device_ends_the_show(self):
        # The disk driver is there for SDL, but its file cannot be opened.
        show = self.show(self.stage(), SDL_AUDIODRIVER="disk", SDL_DISKAUDIOFILE="/nonexistent/f")
        self.assertEqual(show.status(), 1)
        self.assertEqual(show.lines[-1], "initting music")
        self.assertRegex(show.stdout(), r"\nError initializing SDL_mixer: .+\n\Z")

    def test_no_display_at_all_aborts_in_sdl(self):
        show = self.show(None)
        self.assertEqual(show.status(), -signal.SIGABRT)
        self.assertRegex(show.lines[-2], "no SDL: .+")
        self.assertRegex(show.lines[-1], "res == 0")

    def test_no_stencil_to_be_had_aborts_with_a_line_that_says_so(self):
        show = self.show(self.stage(), LD_PRELOAD=os.environ["NOSTENCIL"])
        self.assertEqual(show.status(), -signal.SIGABRT)
        self.assertRegex(show.lines[-2], "no window: .*stencil")
        self.assertRegex(show.lines[-1], "`screen'")

    def test_no_display_for_the_capture_leaves_it_black(self):
        stage = self.stage()
        stage.hang(desktop_picture())
        show = self.show(stage, "--nomusic", "--skip", "35", DISPLAY=refusing_once(self, stage))
        show.wait_for_frames()
        self.assert_s_is_black(stage, show)

    def test_screen_smaller_than_the_capture_leaves_it_black(self):
        stage = self.stage(640, 480)
        stage.hang(desktop_picture(640, 480))
        show = self.show(stage, "--nomusic", "--skip", "35")
        show.wait("viewport should be now 640, 480")
        show.wait_for_frames()
        self.assert_s_is_black(stage, show)

    def test_black_desktop_of_a_wayland_session_is_replaced(self):
        stage = self.stage()
        show = self.show(stage, "--nomusic", "--skip", "35", WAYLAND_DISPLAY="wayland-0")
        show.wait_for_frames()
        with Image.open(os.path.join(ROOT, "gfx/harmattan-home.png")) as image:
            standin = numpy.asarray(image.convert("RGB"))[:480, :854]
        wait_until(lambda: stage.grab().any() and not stage.shows(standin), "a frame of the show")
        stage.key("keydown", "s")
        stage.wait_for_picture(standin, "the stand-in while s is held", tolerance=2)

    def test_desktop_of_a_wayland_session_that_can_be_had_is_taken(self):
        stage = self.stage()
        desktop = desktop_picture()
        stage.hang(desktop)
        show = self.show(stage, "--nomusic", "--skip", "35", WAYLAND_DISPLAY="wayland-0")
        show.wait_for_frames()
        wait_until(lambda: not stage.shows(desktop), "a frame of the show")
        stage.key("keydown", "s")
        stage.wait_for_picture(desktop, "the desktop while s is held")

    def test_frames_that_cannot_be_shown_are_reported_once(self):
        show = self.show(self.stage(), "--nomusic", LD_PRELOAD=os.environ["NOSWAP"])
        show.wait_for_frames()
        show.wait("fps: .*", lines=show.ticks)
        lines = [line for line in show.lines if line.startswith("frames cannot be shown")]
        self.assertEqual(lines, ["frames cannot be shown (EGL error 0x300d)"])
        show.process.send_signal(signal.SIGTERM)
        self.assertEqual(show.status(), 1)

    def test_larger_screen_gives_its_top_left_part(self):
        stage = self.stage(1280, 720)
        desktop = desktop_picture(1280, 720)
        stage.hang(desktop)
        show = self.show(stage, "--nomusic", "--skip", "35")
        show.wait("viewport should be now 1280, 720")
        show.wait_for_frames()
        stage.key("keydown", "s")

        def corners_match():
            # Red and green change slowly from the one corner to the other.
            shown = stage.grab()[..., :2].astype(int)
            return (abs(shown[4, 4] - desktop[2, 2, :2]).max() <= 2
                    and abs(shown[-2, -2] - desktop[478, 852, :2]).max() <= 2)

        wait_until(corners_match, "the top left part of the desktop")

    def test_desktops_of_other_depths_are_captured(self):
        for depth, tolerance in (16, 9), (30, 1):
            with self.subTest(depth):
                stage = self.stage(depth=depth)
                desktop = desktop_picture()
                stage.hang(desktop, tolerance)
                show = self.show(stage, "--nomusic", "--skip", "35")
                show.wait_for_frames()
                wait_until(lambda: not stage.shows(desktop, tolerance), "a frame of the show")
                stage.key("keydown", "s")
                stage.wait_for_picture(desktop, "the desktop while s is held", tolerance)

    def test_losing_the_display_ends_the_show(self):
        stage = self.stage()
        show = self.show(stage)
        show.wait_for_frames()
        stage.lose_display()
        self.assertEqual(show.status(), 1)

    def test_losing_the_reader_of_its_lines_does_not_end_the_show(self):
        stage = self.stage()
        status = os.path.join(stage.folder, "status")
        command = f"{{ '{PROGRAM}'; echo $? >'{status}'; }} 2>&1 | head -n 20"
        shell = subprocess.Popen(["sh", "-c", command], cwd=ROOT, env=show_environment(stage),
                                 stdout=subprocess.DEVNULL)
        shown = stage.grab()
        for _ in range(5):
            wait_until(lambda: (stage.grab() != shown).any(), "another frame")
            shown = stage.grab()
        self.quit(stage, shell)
        with open(status) as file:
            self.assertEqual(file.read(), "1\n")

    def assert_s_is_black(self, stage, show):
        # Some way into the picture: large stars reach over its edges.
        picture = lambda: stage.grab()[100:-100]
        wait_until(lambda: picture().any(), "a frame of the show")
        stage.key("keydown", "s")
        wait_until(lambda: not picture().any(), "a black capture")
        stage.key("keyup", "s")
        wait_until(lambda: picture().any(), "the show again")


def refusing_once(test, stage):
    """The name of a display that closes its first connection and then is the stage's."""
    folder = "/tmp/.X11-unix"
    number = next(n for n in range(1000 + os.getpid() % 10000, 60000)
                  if not os.path.exists(f"{folder}/X{n}"))
    path = f"{folder}/X{number}"
    door = socket.socket(socket.AF_UNIX)
    door.bind(path)
    door.listen()
    test.addCleanup(lambda: os.path.lexists(path) and os.unlink(path))

    def refuse():
        connection, _ = door.accept()
        os.symlink(f"{folder}/X{stage.display[1:]}", path + ".new")
        os.rename(path + ".new", path)
        connection.close()
        door.close()

    threading.Thread(target=refuse, daemon=True).start()
    return f":{number}"


if __name__ == "__main__":
    unittest.main()
