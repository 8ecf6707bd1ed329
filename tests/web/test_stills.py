"""The page's show, drawn by real browsers, against the pictures that were looked at (tests/pictures),
by the rule of those pictures: compare.cpp says how far a channel and how many pixels may be off."""

import base64
import glob
import io
import os
import re
import unittest

import numpy
from PIL import Image

from browser import ROOT, Chromium, Firefox, Server
from machine import WatchedTest

PICTURES = os.path.join(ROOT, "tests", "pictures")
MISMATCHES = os.environ.get("MISMATCHES", os.path.join(ROOT, "build-check", "mismatches", "web"))
SOME = ["40", "153", "225", "253", "258", "264", "270"]  # of every kind of drawing


def rule(name):
    with open(os.path.join(PICTURES, "compare.cpp"), encoding="utf-8") as file:
        return float(re.search(rf"{name} = ([0-9.]+);", file.read()).group(1))


TOLERANCE, BUDGET = rule("tolerance"), rule("budget")


def blessed():
    """The beats that there are pictures of, in their order, as their files are named."""
    names = [os.path.basename(path).removesuffix(".png") for path in glob.glob(PICTURES + "/*.png")]
    return sorted(names, key=float)


def rgb(file):
    return numpy.asarray(Image.open(file).convert("RGB")).astype(int)


class StillsTest(WatchedTest):
    def take(self, browser, beats, query=""):
        """The page's pictures by their beats."""
        server = Server()
        try:
            browser.open(server.address + "tests/stills.html?beats=" + ",".join(beats) + query)
            browser.wait_for("window.over")
            self.assertEqual(browser.evaluate("over"), "taken", browser.evaluate("lines.slice(-5).join('\\n')"))
            pictures = browser.evaluate("pictures")
        finally:
            server.shutdown()
        return {beat: pictures[str(float(beat)).removesuffix(".0")].split(",")[1] for beat in beats}

    def check(self, pictures):
        worst = {}
        for beat, picture in pictures.items():
            expected, got = rgb(f"{PICTURES}/{beat}.png"), rgb(io.BytesIO(base64.b64decode(picture)))
            off = numpy.abs(expected - got)
            worst[beat] = (off.max(axis=2) > TOLERANCE).mean()
            print(f"beat {beat:>6}: {100 * worst[beat]:6.3f} % off, mean {off.mean():.3f}", flush=True)
            if worst[beat] > BUDGET:
                os.makedirs(MISMATCHES, exist_ok=True)
                side = numpy.hstack([expected, got, numpy.minimum(255, off * 8)]).astype(numpy.uint8)
                Image.fromarray(side).save(f"{MISMATCHES}/{self.id()}.{beat}.png")
        failed = {beat: f"{100 * off:.2f} %" for beat, off in worst.items() if off > BUDGET}
        self.assertFalse(failed, f"expected, got and difference are in {MISMATCHES}")

    def test_chromium(self):
        browser = Chromium()
        self.addCleanup(browser.close)
        self.assertGreaterEqual(len(blessed()), 50)
        self.check(self.take(browser, blessed()))
        self.assertEqual(browser.console(), [])

    def test_chromium_with_webgl1(self):
        browser = Chromium()
        self.addCleanup(browser.close)
        self.check(self.take(browser, SOME, "&webgl1"))
        self.assertIn("WebGL 1", browser.evaluate("version()"))
        self.assertEqual(browser.console(), [])

    def test_firefox(self):
        browser = Firefox()
        self.addCleanup(browser.close)
        self.check(self.take(browser, SOME))


if __name__ == "__main__":
    unittest.main()
