"""Keys and the window while the show runs."""

import signal
import unittest

from stage import COMPATIBILITY, Gate, ShowTest, desktop_picture, wait_until


class Keys(ShowTest):
    def start(self, *options, desktop=None):
        """A show that has presented frames and hears keys."""
        stage = self.stage()
        if desktop is not None:
            stage.hang(desktop)
        show = self.show(stage, *options)
        show.wait_for_frames()
        wait_until(lambda: self.seconds(stage, show) > 0.0, "the clock")
        return stage, show

    def test_z_prints_the_clock(self):
        stage, show = self.start("--nomusic", "--skip", "35")
        first = self.press_z(stage, show)
        self.assertGreaterEqual(float(first[1]), 35.0)
        # Pressed until it answers, z may have been heard several times in one frame.
        wait_until(lambda: self.seconds(stage, show) > float(first[1]), "a later time")
        beat = (float(first[1]) - 0.128) * 8 / 5.079
        self.assertAlmostEqual(float(first[2]), beat, delta=0.005)

    def test_escape_is_not_the_end_and_q_quits(self):
        stage, show = self.start()
        stage.key("key", "Escape")
        self.press_z(stage, show)
        stage.key("key", "q")
        self.assertEqual(show.status(), 1)

    def test_s_shows_the_captured_desktop_while_it_is_held(self):
        desktop = desktop_picture()
        stage, show = self.start("--nomusic", "--skip", "35", desktop=desktop)
        wait_until(lambda: not stage.shows(desktop), "a frame of the show")
        stage.key("keydown", "s")
        stage.wait_for_picture(desktop, "the desktop while s is held")
        stage.key("keyup", "s")
        wait_until(lambda: not stage.shows(desktop), "the show after s")

    def test_closing_the_window_quits(self):
        stage, show = self.start()
        show.ask_to_close(stage)
        self.assertEqual(show.status(), 1)

    def test_alt_f4_quits(self):
        stage, show = self.start()
        stage.key("key", "alt+F4")
        self.assertEqual(show.status(), 1)

    def test_who_quits_while_it_loads_is_not_forgotten(self):
        for quits in (lambda stage, show: show.process.send_signal(signal.SIGTERM),
                      lambda stage, show: show.process.send_signal(signal.SIGINT),
                      lambda stage, show: stage.key("key", "q"),
                      lambda stage, show: stage.key("key", "alt+F4"),
                      lambda stage, show: show.ask_to_close(stage)):
            with self.subTest(quits):
                stage = self.stage()
                folder = stage.scratch()
                gates = [Gate(folder, "gfx/" + image) for image in ("bubbles.jpg", "gear.png")]
                show = self.show(stage, cwd=folder)
                gates[0].wait()
                quits(stage, show)
                gates[0].open()
                self.assertEqual(show.status(), 1)
                self.assertNotIn("initting music", show.lines)

    def test_signals_quit_like_closing(self):
        for number in (signal.SIGINT, signal.SIGTERM):
            with self.subTest(number):
                _, show = self.start()
                show.process.send_signal(number)
                self.assertEqual(show.status(), 1)

    @unittest.skipIf(COMPATIBILITY, "the compatibility library reports no resize of a full-screen "
                                    "window, asked for as resizable or not")
    def test_resize_is_reported(self):
        stage, show = self.start("--nomusic", "--skip", "35")
        for window in ("fs", "wm"):  # with a window manager SDL listens to the one, else to the other
            stage.x.resize(show.window(window), 600, 300)
        show.wait("resize event.")
        show.wait("now changing mode.")
        self.press_z(stage, show)


if __name__ == "__main__":
    unittest.main()
