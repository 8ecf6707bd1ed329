import os
import re
import shutil
import signal
import subprocess
import tempfile
import unittest

import numpy
from PIL import Image

from movies import first_frame, MovieTest, pictures, probe, record, RECORDER, ROOT, SIZE


def fake(folder, text):
    """A program called ffmpeg, and a PATH on which it comes first; $ffmpeg is the real one."""
    name = os.path.join(folder, "ffmpeg")
    with open(name, "w") as script:
        script.write("#!/bin/sh\nffmpeg=" + shutil.which("ffmpeg") + "\n" + text)
    os.chmod(name, 0o755)
    return folder + ":" + os.environ["PATH"]


class Words(unittest.TestCase):
    """Help and lists come before anything is opened."""

    CLOSED = {"__EGL_VENDOR_LIBRARY_FILENAMES": "/nonexistent", "EGL_PLATFORM": "nonsense"}

    def test_no_frame_without_egl(self):
        with tempfile.TemporaryDirectory() as folder:
            run = record("--stills", folder, "0", check=False, **self.CLOSED)
        self.assertNotEqual(run.returncode, 0, "or the tests below would prove nothing")
        self.assertIn("no EGL display", run.stderr)

    def test_help(self):
        self.assertIn("usage: tarvisk-record", record("--help", **self.CLOSED).stdout)

    def test_list_names_effects_knobs_and_scenes(self):
        lines = record("--list", **self.CLOSED).stdout.split("\n")
        for name in ("effects:", "  lace", "knobs:", "scenes:", "  finale"):
            self.assertIn(name, lines)
        knob = next(line for line in lines if line.startswith("  gearAppear "))
        self.assertRegex(knob, r" 0 \.\. 2 +stage +gear: ")

    def test_events_come_with_their_beats_in_their_order(self):
        lines = [line.split() for line in record("--events", **self.CLOSED).stdout.splitlines()]
        beats = [float(beat) for beat, _ in lines]
        self.assertEqual(beats, sorted(beats))
        self.assertIn(["160.00", "stoptunnel"], lines)

    def test_help_of_the_door_is_the_recorders(self):
        with open(os.path.join(ROOT, "record")) as door:
            self.assertIn("recorder/arguments.cpp", door.read())
        door = subprocess.run([os.path.join(ROOT, "record"), "--help"], check=True, text=True,
                              capture_output=True).stdout
        own = record("--help", **self.CLOSED).stdout
        self.assertIn(own.replace("tarvisk-record", "./record"), door)

    def test_refusals(self):
        for line in ("--size 3x3 a.mp4", "--rate fast a.mp4", "--blur 5 a.mp4", "--quality 52 a.mp4",
                     "--parallel 0 a.mp4", "--desktop /nonexistent a.mp4", "--effect lacy a.mp4",
                     "--effect gear --knob gear=1 a.mp4", "--knob gearAppear=1 a.mp4",
                     "--from nosuchevent a.mp4", "--to nosuchevent a.mp4", "--to nan a.mp4",
                     "--to 12x a.mp4", "--from 30 --to 20 a.mp4", "--from 400 a.mp4",
                     "--from stoptunnel --to 100s a.mp4", "--stills /nonexistent",
                     "--stills /nonexistent 1 nosuchevent", "--sheet a.png nosuchevent", "",
                     "a.webm", "a", "a.mp4 b.mp4", "--nosuchoption a.mp4"):
            arguments = line.split()
            run = record(*arguments, check=False, **self.CLOSED)
            self.assertEqual(run.returncode, 2, arguments)
            self.assertIn("tarvisk-record: ", run.stderr)

    def test_what_cannot_be_written_is_said_before_anything_is_played(self):
        for arguments in (["--stills", "/proc/stills", "1"], ["--sheet", "/proc/sheet.png"],
                          ["/proc/clip.mp4"], ["/nonexistent/clip.mp4"]):
            run = record(*arguments, check=False, **self.CLOSED)
            self.assertEqual(run.returncode, 1, arguments)
            self.assertRegex(run.stderr, "^cannot write ")


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

    def test_into_a_folder_that_is_made_for_them(self):
        record("--stills", self.file("new/folder"), "0")
        self.assertEqual(os.listdir(self.file("new/folder")), ["0.png"])

    def test_on_a_sheet(self):
        record("--sheet", self.file("sheet.png"), "1", "2", "3")
        with Image.open(self.file("sheet.png")) as sheet:
            self.assertGreater(sheet.width, 3 * 284)


class Memory(MovieTest):
    def peak(self, beat):
        """The most memory in KiB that a still of it needs."""
        command = [RECORDER, "--size", SIZE, "--stills", self.folder, beat]
        recorder = subprocess.Popen(command, cwd=ROOT, stderr=subprocess.DEVNULL)
        _, status, usage = os.wait4(recorder.pid, 0)
        recorder.returncode = os.waitstatus_to_exitcode(status)
        self.assertEqual(recorder.returncode, 0)
        return usage.ru_maxrss

    def test_does_not_grow_with_what_is_played_unseen(self):
        late = self.peak("256")
        self.assertLess(late, 300 * 1024)
        self.assertLess(late, self.peak("0") + 30 * 1024)


class Failures(MovieTest):
    def setUp(self):
        self.folder = tempfile.mkdtemp(dir=type(self).folder)
        self.movie = self.file("clip.mp4")
        with open(self.movie, "w") as old:
            old.write("recorded before")

    def file(self, name):
        return os.path.join(self.folder, name)

    def expect_left(self, *names):
        left = [f for f in os.listdir(self.folder) if f.startswith("clip")]
        self.assertEqual(sorted(left), sorted(names))
        with open(self.movie) as old:
            self.assertEqual(old.read(), "recorded before")

    def test_of_ffmpeg_show_its_last_lines(self):
        path = fake(self.folder, "echo sixteen tons >&2\nexit 3\n")
        run = record("--to", "3", self.movie, check=False, PATH=path)
        self.assertEqual(run.returncode, 1)
        self.assertIn("ffmpeg failed:\nsixteen tons", run.stderr)
        self.expect_left("clip.mp4")

    def test_for_lack_of_ffmpeg(self):
        run = record("--to", "1", self.movie, check=False, PATH="/nonexistent")
        self.assertEqual(run.returncode, 1)
        self.assertIn("ffmpeg cannot be started", run.stderr)
        self.expect_left("clip.mp4")

    def test_in_the_second_stretch_leave_the_first(self):
        path = fake(self.folder, 'case "$*" in *1.nut) sleep 1; echo disk full >&2; exit 1;; esac\n'
                                 'exec "$ffmpeg" "$@"\n')
        run = record("--to", "24", self.movie, check=False, PATH=path)
        self.assertEqual(run.returncode, 1)
        self.assertIn("ffmpeg failed:\ndisk full", run.stderr)
        self.expect_left("clip.mp4", "clip.part.mp4")
        self.assertEqual(int(probe(self.file("clip.part.mp4"))[0]["nb_read_frames"]), 500)

    def test_in_the_first_stretch_leave_what_there_is_of_it(self):
        path = fake(self.folder, 'case "$*" in *0.nut) "$ffmpeg" "$@"; exit 1;; esac\n'
                                 'exec "$ffmpeg" "$@"\n')
        run = record("--to", "2", self.movie, check=False, PATH=path)
        self.assertEqual(run.returncode, 1)
        self.assertIn("clip.mp4.part holds what was recorded", run.stderr)
        self.expect_left("clip.mp4", "clip.mp4.part")
        self.assertEqual(len(pictures(self.file("clip.mp4.part/0.nut"))), first_frame(2))

    def test_at_the_end_leave_what_was_recorded(self):
        path = fake(self.folder, 'case "$*" in *clip.part.mp4) echo disk full >&2; exit 1;; esac\n'
                                 'exec "$ffmpeg" "$@"\n')
        run = record("--to", "2", self.movie, check=False, PATH=path)
        self.assertEqual(run.returncode, 1)
        self.assertIn("ffmpeg failed:\ndisk full", run.stderr)
        self.expect_left("clip.mp4", "clip.mp4.part")
        stretch = self.file("clip.mp4.part/0.nut")
        self.assertIn(stretch[:-6] + " holds what was recorded", run.stderr)
        self.assertEqual(len(pictures(stretch)), first_frame(2))

    def with_song(self, write):
        """Records in a tree that is the show's but for its song."""
        tree = tempfile.mkdtemp(dir=self.folder)
        for name in os.listdir(ROOT):
            if name != "tarvisk.ogg":
                os.symlink(os.path.join(ROOT, name), os.path.join(tree, name))
        if write:
            with open(os.path.join(tree, "tarvisk.ogg"), "w") as song:
                song.write("no music")
        return subprocess.run([RECORDER, "--size", SIZE, "--to", "2", self.movie], cwd=tree,
                              text=True, capture_output=True)

    def test_for_lack_of_the_song_are_no_failures(self):
        run = self.with_song(None)
        self.assertRegex(run.stderr, "^tarvisk.ogg cannot be read: the movie is silent\n")
        self.assertEqual(run.returncode, 0)
        self.assertEqual(len(pictures(self.movie)), first_frame(2))

    def test_for_a_song_that_is_none_leave_the_pictures(self):
        run = self.with_song("no music")
        self.assertEqual(run.returncode, 1)
        self.assertIn("trying it without the song", run.stderr)
        self.expect_left("clip.mp4", "clip.part.mp4")
        self.assertEqual(len(pictures(self.file("clip.part.mp4"))), first_frame(2))

    def test_to_load_show_the_shows_own_words(self):
        run = subprocess.run([RECORDER, "--to", "1", self.movie], cwd=self.folder, text=True,
                             capture_output=True)
        self.assertEqual(run.returncode, 1)
        self.assertIn("couldn't load!", run.stderr)
        self.expect_left("clip.mp4")


class Progress(MovieTest):
    def test_ends_at_the_number_that_it_foretold(self):
        for ends in (["--to", "2"], ["--from", "3", "--to", "5"], ["--from", "1s", "--to", "2s"]):
            run = record(*ends, self.file("clip.mp4"))
            done, foretold = re.findall(r"100%  frame (\d+) of (\d+) ", run.stderr)[-1]
            self.assertEqual(done, foretold, ends)


class Interrupted(MovieTest):
    def start(self, *arguments):
        return subprocess.Popen([RECORDER, "--size", SIZE, *arguments], cwd=ROOT,
                                stderr=subprocess.PIPE, text=True)

    def test_recordings_are_kept_as_far_as_they_came(self):
        for number, processes in ((signal.SIGINT, "1"), (signal.SIGHUP, "2")):
            movie = self.file("clip.mp4")
            with open(movie, "w") as old:
                old.write("recorded before")
            recorder = self.start("--to", "290", "--parallel", processes, movie)
            while "frame 0 " in recorder.stderr.readline():
                pass
            recorder.send_signal(number)
            words = recorder.communicate()[1]
            self.assertEqual(recorder.returncode, 128 + number, words)
            self.assertIn("\ninterrupted\n", words)
            frames = int(words.split("clip.part.mp4: ")[1].split(" frames")[0])
            video, audio, _ = probe(self.file("clip.part.mp4"))
            self.assertGreater(frames, 0)
            self.assertEqual(int(video["nb_read_frames"]), frames)
            self.assertAlmostEqual(float(audio["duration"]), frames / 50, delta=0.02)
            with open(movie) as old:
                self.assertEqual(old.read(), "recorded before")
            self.assertEqual(sorted(os.listdir(self.folder)), ["clip.mp4", "clip.part.mp4"])
            os.remove(self.file("clip.part.mp4"))

    def test_stills_end_at_once(self):
        recorder = self.start("--stills", self.folder, "1", "3000")
        recorder.stderr.readline()  # the first still's name
        recorder.send_signal(signal.SIGTERM)
        self.assertEqual(recorder.communicate()[1], "interrupted\n")
        self.assertEqual(recorder.returncode, 128 + signal.SIGTERM)


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
