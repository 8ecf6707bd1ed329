import os
import shutil
import unittest

import numpy

from movies import BUILD, ROOT
from stage import ShowTest, wait_until

VIEWER = os.path.join(BUILD, "tarvisk-view")


class View(ShowTest):
    """One effect in a window, with keys."""

    def view(self):
        stage = self.stage()
        scratch = stage.scratch()
        sources = os.path.join(scratch, "tarvisk", "src")
        shutil.copytree(os.path.join(ROOT, "tarvisk", "src"), sources)
        show = self.show(stage, "gear", "--from", "165", "--knob", "gearAppear=1",
                         program=VIEWER, cwd=scratch)
        wait_until(lambda: self.corner(stage).max() > 60, "the gear")
        return stage, show, os.path.join(sources, "gear.cpp")

    @staticmethod
    def corner(stage):
        return stage.grab()[:100, 700:].astype(int)

    def edit(self, source, old, new):
        with open(source) as file:
            text = file.read()
        self.assertIn(old, text)
        with open(source, "w") as file:
            file.write(text.replace(old, new))

    def beat(self, stage, show):
        """What z prints."""
        lines = len(show.lines)
        stage.key("key", "z")
        return float(show.wait(r"timeval: .* beatgrid: (.*)", start=lines)[1])

    def test_space_stops_the_clock_and_arrows_move_it(self):
        stage, show, _ = self.view()
        first = self.beat(stage, show)
        wait_until(lambda: self.beat(stage, show) != first, "a clock that runs")
        stage.key("key", "space")
        wait_until(lambda: self.beat(stage, show) == self.beat(stage, show), "a standing clock")
        before = self.beat(stage, show)
        picture = self.corner(stage)
        stage.key("key", "Right")
        wait_until(lambda: abs(self.beat(stage, show) - before - 1) < 0.01, "a beat more")
        wait_until(lambda: numpy.abs(self.corner(stage) - picture).mean() > 1, "the gear to turn")
        stage.key("key", "Down")
        wait_until(lambda: abs(self.beat(stage, show) - before + 7) < 0.01, "eight beats less")
        stage.key("key", "space")
        wait_until(lambda: self.beat(stage, show) > before - 6, "a clock that runs")

    def test_r_takes_up_edited_shaders(self):
        stage, show, source = self.view()
        old = "gl_FragColor = texture2D(tex2, v_uv);"
        self.edit(source, old, old + "\n    gl_FragColor.rgb = vec3(0.0, 1.0, 0.0);")
        stage.key("key", "r")

        def green():
            corner = self.corner(stage)
            return corner[..., 1].max() > 200 and corner[..., 0].max() < 30

        wait_until(green, "a green gear")
        lines = len(show.lines)
        self.edit(source, "vec3(0.0, 1.0, 0.0)", "vec3(0.0, 1.0")
        stage.key("key", "r")
        show.wait(r".*error.*", start=lines)
        wait_until(green, "the gear as it was")
        stage.key("key", "q")
        self.assertEqual(show.status(), 1)


class Words(ShowTest):
    def test_an_effect_that_does_not_exist(self):
        show = self.show(None, "lacy", program=VIEWER)
        self.assertEqual(show.status(), 2)
        self.assertTrue(show.find("tarvisk-view: no such effect: lacy"))


if __name__ == "__main__":
    unittest.main()
