"""Every file that the show loads, spoilt in every way, one at a time.

The show is played for a moment off-screen, in a folder that links the content except the one file:
what happens then is the loaders' doing and the same as on a screen.
"""

import os
import shutil
import subprocess
import tempfile
import unittest

ROOT = os.path.realpath(os.path.join(os.path.dirname(__file__), "..", ".."))
RECORDER = os.environ.get("RECORDER", os.path.join(ROOT, "build", "tarvisk-record"))
PICTURES = sorted("gfx/" + name for name in os.listdir(os.path.join(ROOT, "gfx")))
MESHES = sorted(name for name in os.listdir(ROOT) if name.endswith(".obj"))
SONG = "tarvisk.ogg"


def missing(path, original):
    pass


def empty(path, original):
    open(path, "w").close()


def directory(path, original):
    os.mkdir(path)


def unreadable(path, original):
    # Not by its mode, which the administrator may ignore: a link to itself.
    os.symlink(os.path.basename(path), path)


def wrong_type(path, original):
    with open(path, "wb") as file:
        file.write(b"\x7fELF\x02\x01\x01\x00" * 1000)


def truncated(path, original):
    with open(original, "rb") as whole, open(path, "wb") as half:
        half.write(whole.read(os.path.getsize(original) // 2))


def torn_in_its_header(path, original):
    with open(original, "rb") as whole, open(path, "wb") as start:
        start.write(whole.read(20))


def other_picture(path, original):
    """A picture, but of another format and size than the name says."""
    shutil.copy(os.path.join(ROOT, "gfx", "dot.png" if path.endswith(".jpg") else "rock.jpg"), path)


NOT_THERE = (missing, unreadable)
NOTHING_IN_IT = (empty, directory, wrong_type)


class Content(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp(prefix="tarvisk-faults-")
        self.addCleanup(shutil.rmtree, self.folder)

    def play(self, spoilt=None, fault=None, extra=()):
        """Plays the first moment with file spoilt so; (exit status, lines)."""
        home = tempfile.mkdtemp(dir=self.folder)
        os.mkdir(os.path.join(home, "gfx"))
        for name in PICTURES + MESHES + [SONG]:
            if name != spoilt:
                os.symlink(os.path.join(ROOT, name), os.path.join(home, name))
        if spoilt:
            fault(os.path.join(home, spoilt), os.path.join(ROOT, spoilt))
        for name, content in extra:
            with open(os.path.join(home, name), "wb") as file:
                file.write(content)
        run = subprocess.run([RECORDER, "--verbose", "--size", "106x60", "--stills", home, "0.2s"],
                             cwd=home, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE,
                             stdin=subprocess.DEVNULL, timeout=600)
        lines = run.stderr.decode(errors="replace").splitlines()
        self.assertGreaterEqual(run.returncode, 0, lines[-5:])
        return run.returncode, [l for l in lines if not l.startswith("fps:")]

    def assert_goes_on(self, result):
        status, lines = result
        self.assertEqual(status, 0, lines[-5:])
        self.assertRegex(lines[-1], r"/0\.2s\.png$")

    def each(self, names, faults):
        for name in names:
            for fault in faults:
                with self.subTest(file=name, fault=fault.__name__):
                    yield name, self.play(name, fault)

    def test_all_there(self):
        self.assert_goes_on(self.play())

    def test_picture_that_cannot_be_read_ends_the_show(self):
        for name, (status, lines) in self.each(PICTURES, NOT_THERE + NOTHING_IN_IT):
            self.assertEqual(status, 1)
            self.assertEqual(lines[-1], "couldn't load!")
            self.assertIn(f" {name} ", lines[-2] + " ", "the line before says which")

    def test_truncated_picture(self):
        # Half a JPEG is a picture, grey where it ends; half a PNG is none.
        for name, result in self.each(PICTURES, [truncated]):
            if name.endswith(".jpg"):
                self.assert_goes_on(result)
            else:
                self.assertEqual((result[0], result[1][-1]), (1, "couldn't load!"))

    def test_picture_torn_in_its_header_ends_the_show(self):
        for _, (status, lines) in self.each(PICTURES, [torn_in_its_header]):
            self.assertEqual((status, lines[-1]), (1, "couldn't load!"))

    def test_another_picture_is_shown(self):
        for _, result in self.each(PICTURES, [other_picture]):
            self.assert_goes_on(result)

    def test_missing_mesh_ends_the_show(self):
        for name, (status, lines) in self.each(MESHES, NOT_THERE):
            self.assertEqual((status, lines[-1]), (1, "cannot open mesh " + name))

    def test_mesh_with_nothing_in_it(self):
        for name, result in self.each(MESHES, NOTHING_IN_IT):
            self.assert_goes_on(result)
            self.assertIn("center of model is at nan, nan, nan", result[1])

    def test_truncated_mesh(self):
        for _, result in self.each(MESHES, (truncated, torn_in_its_header)):
            self.assert_goes_on(result)

    def test_song_that_cannot_be_played_is_one_line(self):
        for _, result in self.each([SONG], NOT_THERE + NOTHING_IN_IT + (torn_in_its_header,)):
            self.assert_goes_on(result)
            self.assertEqual(sum(l.startswith("guess what: ") for l in result[1]), 1)

    def test_truncated_song_plays_as_far_as_it_goes(self):
        for _, result in self.each([SONG], [truncated]):
            self.assert_goes_on(result)
            self.assertFalse([l for l in result[1] if l.startswith("guess what: ")])

    def companion(self, content):
        return self.play(extra=[("gfx/roses.png.txt", content)])

    def test_companion_of_garbage(self):
        garbage = bytes(range(256)) * 40
        result = self.companion(garbage)
        self.assert_goes_on(result)
        self.assertTrue([l for l in result[1] if l.endswith(" texes")])

    def test_companion_of_5000_lines(self):
        result = self.companion(b"a 0 0 1 1\n" * 5000)
        self.assert_goes_on(result)
        self.assertIn("999 texes", result[1])

    def test_companion_of_one_10_megabyte_line(self):
        result = self.companion(b"a" * 10_000_000)
        self.assert_goes_on(result)
        self.assertIn("999 texes", result[1])

    def test_companion_that_is_a_directory(self):
        home_file = lambda path, _: (shutil.copy(os.path.join(ROOT, "gfx/roses.png"), path),
                                     os.mkdir(path + ".txt"))
        result = self.play("gfx/roses.png", home_file)
        self.assert_goes_on(result)
        self.assertIn("0 texes", result[1])


if __name__ == "__main__":
    unittest.main()
