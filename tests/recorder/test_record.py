import os
import re
import signal
import subprocess
import unittest

import numpy
from PIL import Image

from movies import BUILD, MovieTest, probe, record, RECORDER, ROOT, SIZE


def fake(folder, text):
    """A program called ffmpeg, and a PATH on which it comes first."""
    name = os.path.join(folder, "ffmpeg")
    with open(name, "w") as script:
        script.write("#!/bin/sh\n" + text)
    os.chmod(name, 0o755)
    return folder + ":" + os.environ["PATH"]


class Words(unittest.TestCase):
    """Help and lists come before anything is opened."""

    CLOSED = {"__EGL_VENDOR_LIBRARY_FILENAMES": "/nonexistent", "EGL_PLATFORM": "nonsense"}

    def test_no_frame_without_egl(self):
        run = record("--stills", "/nonexistent", "0", check=False, **self.CLOSED)
        self.assertNotEqual(run.returncode, 0, "or the tests below would prove nothing")

    def test_help(self):
        self.assertIn("usage: tarvisk-record", record("--help", **self.CLOSED).stdout)

    def test_list_names_effects_knobs_and_scenes(self):
        words = record("--list", **self.CLOSED).stdout.split("\n")
        for name in ("effects:", "  lace", "knobs:", "  gearAppear", "scenes:", "  finale"):
            self.assertIn(name, words)

    def test_refusals(self):
        for arguments in (["--size", "3x3", "a.mp4"], ["--rate", "fast", "a.mp4"], [],
                          ["--effect", "lacy", "a.mp4"], ["--knob", "gear=1", "a.mp4"],
                          ["--blur", "5", "a.mp4"], ["--quality", "52", "a.mp4"],
                          ["--effect", "gear", "--from", "stoptunnel", "a.mp4"]):
            run = record(*arguments, check=False)
            self.assertEqual(run.returncode, 2, arguments)
            self.assertIn("tarvisk-record: ", run.stderr)


class Stills(MovieTest):
    def still(self, *arguments):
        record("--stills", self.folder, *arguments)
        return numpy.asarray(Image.open(self.file(arguments[-1] + ".png"))).astype(int)

    def test_of_beats_times_and_events(self):
        record("--stills", self.folder, "12", "7.76s", "startorbitscroller")
        for name in ("12", "7.76s", "startorbitscroller"):
            self.assertGreater(Image.open(self.file(name + ".png")).getextrema()[0][1], 60)
        beat = Image.open(self.file("12.png")).tobytes()
        self.assertEqual(beat, Image.open(self.file("7.76s.png")).tobytes(), "the same frame")

    def test_of_one_effect_with_its_knobs(self):
        hidden = self.still("--effect", "gear", "--from", "165", "170")
        shown = self.still("--effect", "gear", "--knob", "gearAppear=1", "--from", "165", "170")
        self.assertEqual(hidden.max(), 0)
        self.assertGreater(shown[:60, 110:].max(), 100, "the gear is in the top right corner")
        self.assertEqual(shown[60:, :100].max(), 0)

    def test_into_no_folder(self):
        run = record("--stills", self.file("nowhere"), "0", check=False)
        self.assertEqual(run.returncode, 1)
        self.assertIn("cannot write", run.stderr)

    def test_on_a_sheet(self):
        record("--sheet", self.file("sheet.png"), "1", "2", "3")
        with Image.open(self.file("sheet.png")) as sheet:
            self.assertGreater(sheet.width, 3 * 284)


class Failures(MovieTest):
    def setUp(self):
        self.movie = self.file("clip.mp4")

    def expect_nothing_left(self):
        left = [f for f in os.listdir(self.folder) if f.startswith("clip.mp4")]
        self.assertEqual(left, [])

    def test_of_ffmpeg_show_its_last_lines(self):
        path = fake(self.folder, "echo sixteen tons >&2\nexit 3\n")
        run = record("--to", "3", self.movie, check=False, PATH=path)
        self.assertEqual(run.returncode, 1)
        self.assertIn("ffmpeg failed:\nsixteen tons", run.stderr)
        self.expect_nothing_left()

    def test_for_lack_of_ffmpeg(self):
        run = record("--to", "1", self.movie, check=False, PATH="/nonexistent")
        self.assertEqual(run.returncode, 1)
        self.assertIn("ffmpeg cannot be started", run.stderr)
        self.expect_nothing_left()

    def test_to_load_show_the_shows_own_words(self):
        run = subprocess.run([RECORDER, "--to", "1", self.movie], cwd=self.folder, text=True,
                             capture_output=True)
        self.assertEqual(run.returncode, 1)
        self.assertIn("couldn't load!", run.stderr)
        self.expect_nothing_left()


class Progress(MovieTest):
    def test_ends_at_the_number_that_it_foretold(self):
        for ends in (["--to", "2"], ["--from", "3", "--to", "5"], ["--from", "1s", "--to", "2s"]):
            run = record(*ends, self.file("clip.mp4"))
            done, foretold = re.findall(r"100%  frame (\d+) of (\d+) ", run.stderr)[-1]
            self.assertEqual(done, foretold, ends)


class Interrupted(MovieTest):
    def test_recordings_are_playable_as_far_as_they_came(self):
        movie = self.file("clip.mp4")
        recorder = subprocess.Popen([RECORDER, "--size", SIZE, "--to", "290", movie], cwd=ROOT,
                                    stderr=subprocess.PIPE, text=True)
        recorder.stderr.readline()  # the first line of progress
        recorder.send_signal(signal.SIGINT)
        words = recorder.communicate()[1]
        self.assertEqual(recorder.returncode, 0, words)
        frames = int(words.split("clip.mp4: ")[1].split(" frames")[0])
        video, audio, _ = probe(movie)
        self.assertGreater(frames, 0)
        self.assertEqual(int(video["nb_read_frames"]), frames)
        self.assertAlmostEqual(float(audio["duration"]), frames / 50, delta=0.02)


class Flashes(MovieTest):
    """The flash report on films whose flashes are known."""

    def report(self, brightness):
        movie = self.file("film.mp4")
        source = f"color=white:s=320x180:r=50:d=3,geq=lum='{brightness}':cb=128:cr=128"
        subprocess.run(["ffmpeg", "-v", "error", "-y", "-f", "lavfi", "-i", source, "-c:v",
                        "libx264", "-qp", "0", movie], check=True)
        run = subprocess.run([os.path.join(ROOT, "recorder", "flashreport"), movie], check=True,
                             text=True, capture_output=True)
        return run.stdout

    def test_of_a_strobe(self):
        self.assertIn("worst second: 5 flashes", self.report("if(lt(mod(N,10),5),235,16)"))

    def test_of_a_small_strobe(self):
        corner = "if(lt(mod(N,10),5)*lt(X,40)*lt(Y,20),235,16)"
        self.assertIn("worst second: 0 flashes", self.report(corner))

    def test_of_a_faint_flicker(self):
        self.assertIn("worst second: 0 flashes", self.report("if(lt(mod(N,10),5),60,50)"))

    def test_of_a_still(self):
        self.assertIn("worst second: 0 flashes", self.report("128"))


if __name__ == "__main__":
    unittest.main()
