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
                             stdin=subprocess.DEVNULL)
        lines = run.stderr.decode(errors="replace").splitlines()
        self.assertGreaterEqual(run.returncode, 0, lines[-5:])
        return run.returncode, [l for l in lines if not l.startswith("fps:")]

    def assert_goes_on(self, status, lines):
        self.assertEqual(status, 0, lines[-5:])
        self.assertRegex(lines[-1], r"/0\.2s\.png$")

    def each(self, names, faults, check):
        for name in names:
            for fault in faults:
                with self.subTest(file=name, fault=fault.__name__):
                    check(name, *self.play(name, fault))

    def test_all_there(self):
        self.assert_goes_on(*self.play())

    def assert_couldnt_load(self, name, status, lines):
        self.assertEqual((status, lines[-1]), (1, "couldn't load!"))
        if lines[-2].startswith("loading"):  # the line before says which
            self.assertIn(f" {name} as ", lines[-2])

    def test_picture_that_cannot_be_read_ends_the_show(self):
        self.each(PICTURES, NOT_THERE + NOTHING_IN_IT + (torn_in_its_header,),
                  self.assert_couldnt_load)

    def test_truncated_picture(self):
        # Half a JPEG is a picture, grey where it ends; half a PNG is none.
        def check(name, status, lines):
            if name.endswith(".jpg"):
                self.assert_goes_on(status, lines)
            else:
                self.assert_couldnt_load(name, status, lines)

        self.each(PICTURES, [truncated], check)

    def test_another_picture_is_shown(self):
        self.each(PICTURES, [other_picture], lambda name, *result: self.assert_goes_on(*result))

    def test_missing_mesh_ends_the_show(self):
        def check(name, status, lines):
            self.assertEqual((status, lines[-1]), (1, "cannot open mesh " + name))

        self.each(MESHES, NOT_THERE, check)

    def test_mesh_with_nothing_in_it(self):
        def check(name, status, lines):
            self.assert_goes_on(status, lines)
            self.assertIn("center of model is at nan, nan, nan", lines)

        self.each(MESHES, NOTHING_IN_IT, check)

    def test_truncated_mesh(self):
        self.each(MESHES, (truncated, torn_in_its_header),
                  lambda name, *result: self.assert_goes_on(*result))

    def test_song_that_cannot_be_played_is_one_line(self):
        def check(name, status, lines):
            self.assert_goes_on(status, lines)
            self.assertEqual(sum(l.startswith("guess what: ") for l in lines), 1)

        self.each([SONG], NOT_THERE + NOTHING_IN_IT + (torn_in_its_header,), check)

    def test_truncated_song_plays_as_far_as_it_goes(self):
        def check(name, status, lines):
            self.assert_goes_on(status, lines)
            self.assertFalse([l for l in lines if l.startswith("guess what: ")])

        self.each([SONG], [truncated], check)

    def test_odd_meshes(self):
        corners = b"v 0 0 0\nv 9 0 0\nv 0 9 9\nvt 0 0\nvn 0 0 1\n"
        faces = {
            "huge indices": b"f 99999999999999999999/6001/7000 2147483647/1/1 6000/1/1\n",
            "negative indices": b"f -1/-1/-1 -2147483649/-2/-3 1/1/1\n",
            "quads": b"f 1/1/1 2/1/1 3/1/1 1/1/1\n",
            "positions only": b"f 1 2 3\nf 1// 2// 3//\n",
            "nan": b"v nan inf -nan\nvt nan inf\nvn nan nan nan\nf 4/2/2 4/2/2 4/2/2\n",
            "no faces": b"",
            "CRLF": b"f 1/1/1 2/1/1 3/1/1\r\nvn 1 1 1\r\n",
            "no last newline": b"f 1/1/1 2/1/1 3/1/1",
            "too many of all": b"v 1 1 1\nvt 0 0\nvn 1 0 0\nf 1/1/1 2/1/1 3/1/1\n" * 7100,
            "one long line": b"f " + b"1/1/1 " * 100_000,
            "zeros": bytes(100_000),
        }
        for name in MESHES:
            for what, records in faces.items():
                def odd(path, original):
                    with open(path, "wb") as file:
                        file.write(corners + records)

                with self.subTest(file=name, what=what):
                    status, lines = self.play(name, odd)
                    if name == "dode.obj" and what == "too many of all":
                        self.assertEqual((status, lines[-1]), (1, "full."))
                    else:
                        self.assert_goes_on(status, lines)

    def companion(self, content):
        return self.play(extra=[("gfx/roses.png.txt", content)])

    def test_companion_of_garbage(self):
        garbage = bytes(range(256)) * 40
        status, lines = self.companion(garbage)
        self.assert_goes_on(status, lines)
        self.assertTrue([l for l in lines if l.endswith(" texes")])

    def test_companion_of_5000_lines(self):
        status, lines = self.companion(b"a 0 0 1 1\n" * 5000)
        self.assert_goes_on(status, lines)
        self.assertIn("999 texes", lines)

    def test_companion_of_one_10_megabyte_line(self):
        status, lines = self.companion(b"a" * 10_000_000)
        self.assert_goes_on(status, lines)
        self.assertIn("999 texes", lines)

    def test_companion_that_is_a_directory(self):
        home_file = lambda path, _: (shutil.copy(os.path.join(ROOT, "gfx/roses.png"), path),
                                     os.mkdir(path + ".txt"))
        status, lines = self.play("gfx/roses.png", home_file)
        self.assert_goes_on(status, lines)
        self.assertIn("0 texes", lines)


if __name__ == "__main__":
    unittest.main()
