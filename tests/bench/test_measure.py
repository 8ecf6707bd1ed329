"""One short run of bench/measure, tiny: its tables, its file, and what it makes of requirements."""

import json
import os
import subprocess
import tempfile
import unittest

ROOT = os.path.realpath(os.path.join(os.path.dirname(__file__), "..", ".."))
BUILD = os.path.realpath(os.environ.get("BUILD", os.path.join(ROOT, "build-check")))
SIZE, OTHER = "108x60", "216x120"
SCENES = {"city flight", "credits in the rock", "gear city"}
EFFECTS = {"zreset", "tunnel", "bump", "gear"}
STARTS = {"start: window alone", "start: window and picture", "start: first picture", "start: loading", "start: first beat",
          "start: decoding on 1", "start: decoding on 2"}
# Any time is less than a million of another's, and none is less than nothing.
HOLDS = [("live", "show", "99 %", "bare loop", 1e6), (OTHER, "city flight", "cpu median", "credits in the rock", 1e6),
         (SIZE, "bump", "wall worst", "tunnel", 1e6), (SIZE, "gear city", "replay", "-", 1e6),
         ("live", "start: loading", "median", "start: decoding on 1", 1e6)]


class Measure(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.folder = folder.name
        cls.tables = os.path.join(cls.folder, "bench.json")
        cls.status, cls.said = cls.measure(
            HOLDS, "--programs", BUILD, "--out", cls.folder, "--sizes", f"{SIZE},{OTHER}", "--from", "157", "--to", "182",
            "--every", "40", "--others", "40", "--live-to", "12", "--starts", "1")
        with open(cls.tables) as file:
            cls.sizes = json.load(file)["sizes"]

    @classmethod
    def measure(cls, requirements, *options):
        path = os.path.join(cls.folder, "ratios")
        with open(path, "w") as file:
            file.write("# what, by what\n")
            file.writelines("\t".join(map(str, line)) + "\n" for line in requirements)
        done = subprocess.run([os.path.join(ROOT, "bench", "measure"), "--require", path, *options], text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        return done.returncode, done.stdout

    def again(self, requirements):
        """What the same tables make of other requirements."""
        return self.measure(requirements, "--read", self.tables)

    def test_ratios_that_hold_end_well(self):
        self.assertEqual(self.status, 0, self.said)
        self.assertEqual(self.said.count("ok   "), len(HOLDS), self.said)

    def test_one_ratio_that_does_not_hold_fails(self):
        status, said = self.again([(SIZE, "bump", "cpu median", "tunnel", 1e6), (SIZE, "bump", "cpu median", "tunnel", 0)])
        self.assertEqual((status, said.count("ok   "), said.count("FAIL ")), (1, 1, 1), said)

    def test_every_scene_is_held_to_a_line_for_all_but_those_with_their_own(self):
        status, said = self.again([(SIZE, "scenes", "replay", "-", 0), (SIZE, "gear city", "replay", "-", 1e6)])
        self.assertEqual((status, said.count("ok   "), said.count("FAIL ")), (1, 1, len(SCENES) - 1), said)

    def test_what_was_not_measured_is_no_ratio(self):
        status, said = self.again([(SIZE, "bump", "cpu median", "face", 1)])
        self.assertEqual(status, 1)
        self.assertIn("'face' was not measured", said)

    def test_every_scene_and_effect_has_its_row(self):
        for size in SIZE, OTHER:
            self.assertEqual(set(self.sizes[size]["scenes"]), SCENES)
            self.assertEqual(set(self.sizes[size]["effects"]), EFFECTS)
            for table in self.sizes[size].values():
                for name, row in table.items():
                    self.assertGreater(row["frames"], 0)
                    for kind in "cpu", "wall":
                        self.assertLessEqual(row[kind + " median"], row[kind + " 99 %"])
                        self.assertLessEqual(row[kind + " 99 %"], row[kind + " worst"])
                    self.assertIn(name, self.said)
            for name, row in self.sizes[size]["scenes"].items():  # an effect that is not to be seen takes no time
                self.assertGreater(row["wall median"], 0, name)
                self.assertGreater(row["cpu median"], 0, name)

    def test_every_scene_is_replayed_to_the_same_pictures(self):
        # A picture that is not the show's would have ended the run.
        for scene, row in self.sizes[SIZE]["scenes"].items():
            self.assertGreater(row["replay"], 0, scene)

    def test_pace_song_and_start(self):
        live = self.sizes["live"]
        self.assertEqual(set(live["pacing"]), {"bare loop", "show", "phone and desktop"})
        for name, row in live["pacing"].items():
            self.assertGreater(row["frames"], 0, name)
            self.assertGreaterEqual(row["frame median"], 19.99, name)  # the loop holds at least that
        self.assertGreater(live["song"]["chunks"], 0)
        self.assertEqual(set(live["starts"]), STARTS)
        for name, row in live["starts"].items():
            self.assertGreater(row["median"], 0, name)


if __name__ == "__main__":
    unittest.main()
