import subprocess
import unittest

import numpy

from movies import MovieTest, beat_seconds, first_frame, lag, pictures, probe, record, ROOT, sound


class Clip(MovieTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        record("--from", "8", "--to", "14", cls.file("clip.mp4"))
        cls.video, cls.audio, cls.chapters = probe(cls.file("clip.mp4"))
        cls.frames = first_frame(14) - first_frame(8)

    def test_has_exactly_the_frames_between_its_ends(self):
        self.assertEqual(int(self.video["nb_read_frames"]), self.frames)
        self.assertEqual(self.video["r_frame_rate"], "50/1")
        self.assertEqual((self.video["width"], self.video["height"]), (214, 120))

    def test_has_sound_as_long_as_the_picture(self):
        self.assertEqual(float(self.video["start_time"]), 0.0)
        self.assertEqual(float(self.audio["start_time"]), 0.0)
        self.assertAlmostEqual(float(self.audio["duration"]), self.frames / 50, delta=0.02)

    def test_has_the_music_at_the_first_frames_time(self):
        at, alike = lag(sound(self.file("clip.mp4"))[8820:44100], sound(ROOT + "/tarvisk.ogg"))
        self.assertGreater(alike, 0.9)
        self.assertAlmostEqual((at - 8820) / 44100, first_frame(8) / 50, delta=0.003)

    def test_has_the_scene_as_its_chapter(self):
        titles = [chapter["tags"]["title"] for chapter in self.chapters]
        self.assertEqual(titles, ["phone and desktop"])
        self.assertAlmostEqual(float(self.chapters[0]["end_time"]), self.frames / 50, delta=0.02)


class Matroska(MovieTest):
    def test_has_the_same_pictures_and_sound_from_its_first_moment_on(self):
        record("--to", "3", self.file("clip.mkv"))
        record("--to", "3", self.file("clip.mp4"))
        video, audio, chapters = probe(self.file("clip.mkv"))
        self.assertEqual(float(video["start_time"]), 0.0)
        self.assertEqual(float(audio["start_time"]), 0.0)
        self.assertEqual(len(chapters), 1)
        a, b = pictures(self.file("clip.mkv")), pictures(self.file("clip.mp4"))
        self.assertEqual(len(a), first_frame(3))
        self.assertTrue(numpy.array_equal(a, b))
        head = subprocess.run(["ffprobe", "-v", "error", "-show_entries", "format=format_name",
                               self.file("clip.mkv")], check=True, capture_output=True, text=True)
        self.assertIn("matroska", head.stdout)


class Rates(MovieTest):
    def expect(self, name, rate):
        record("--rate", name, "--to", "3", self.file("clip.mp4"))
        video, audio, _ = probe(self.file("clip.mp4"))
        frames = first_frame(3, rate)
        self.assertEqual(int(video["nb_read_frames"]), frames)
        self.assertEqual(video["r_frame_rate"], name if "/" in name else name + "/1")
        self.assertAlmostEqual(float(audio["duration"]), frames / rate, delta=1 / rate)

    def test_25(self):
        self.expect("25", 25)

    def test_60(self):
        self.expect("60", 60)

    def test_of_television(self):
        self.expect("60000/1001", 60000 / 1001)


class Repeated(MovieTest):
    def test_recordings_are_the_same_frames_wherever_they_start(self):
        record("--quality", "0", "--from", "9", "--to", "12", self.file("a.mp4"))
        record("--quality", "0", "--from", "9", "--to", "12", self.file("b.mp4"))
        record("--quality", "0", "--from", "11", "--to", "12", self.file("late.mp4"))
        a, b, late = (pictures(self.file(name)) for name in ("a.mp4", "b.mp4", "late.mp4"))
        self.assertTrue(numpy.array_equal(a, b))
        self.assertEqual(len(late), first_frame(12) - first_frame(11))
        self.assertTrue(numpy.array_equal(a[-len(late) :], late))
        self.assertFalse(numpy.array_equal(a[: len(late)], late), "other moments look different")


class Parallel(MovieTest):
    """Several processes make the same movie as one: the same packets, the same chapters."""

    def md5(self, name, *arguments):
        run = subprocess.run(["ffmpeg", "-v", "error", "-i", self.file(name), "-map", "0:v",
                              *arguments, "-f", "framemd5", "-"], check=True, capture_output=True)
        return run.stdout

    def expect_same(self, *arguments):
        for count in ("1", "3"):
            record(*arguments, "--parallel", count, self.file(count + ".mp4"))
        self.assertEqual(self.md5("1.mp4", "-c", "copy"), self.md5("3.mp4", "-c", "copy"))
        one, three = probe(self.file("1.mp4")), probe(self.file("3.mp4"))
        self.assertEqual(one[2], three[2], "chapters")
        self.assertEqual(one[1]["duration"], three[1]["duration"])
        return one[0]

    def test_recordings_of_four_stretches_and_a_scene_change(self):
        self.expect_same("--from", "120", "--to", "172")

    def test_recordings_at_an_odd_rate_with_blur(self):
        video = self.expect_same("--from", "40", "--to", "66", "--rate", "30000/1001",
                                 "--blur", "2")
        self.assertEqual(video["r_frame_rate"], "30000/1001")
        frames = first_frame(66, 30000 / 1001) - first_frame(40, 30000 / 1001)
        self.assertEqual(int(video["nb_read_frames"]), frames)

    def test_stretches_join_without_a_seam(self):
        """A frame of the second stretch is the same when it is recorded from elsewhere on."""
        lossless = ["--quality", "0", "--to", "38"]
        record(*lossless, "--from", "20", "--parallel", "2", self.file("a.mp4"))
        record(*lossless, "--from", "33", self.file("b.mp4"))
        a, b = pictures(self.file("a.mp4")), pictures(self.file("b.mp4"))
        self.assertEqual(len(a), first_frame(38) - first_frame(20))
        self.assertTrue(numpy.array_equal(a[-len(b) :], b))


class Blurred(MovieTest):
    def test_frames_are_the_means_of_their_subframes(self):
        record("--quality", "0", "--from", "5", "--to", "6", "--blur", "3", self.file("blur.mp4"))
        record("--quality", "0", "--rate", "150", "--from", "5", "--to", "6", self.file("sub.mp4"))
        blurred = pictures(self.file("blur.mp4")).astype(int)
        sub = pictures(self.file("sub.mp4")).astype(int)
        first = -first_frame(5, 150) % 3
        sub = sub[first : first + 3 * len(blurred)]
        means = sub.reshape(-1, 3, *sub.shape[1:]).mean(axis=1)
        off = numpy.abs(means - blurred[: len(means)]).mean()
        single = numpy.abs(sub[::3] - blurred[: len(means)]).mean()
        self.assertLess(off, 1.0)
        self.assertGreater(single, 2 * off, "one sub-frame alone is not the mean")


class Cuts(MovieTest):
    """Scene changes lie on the first frames of their beats, and nowhere near them is another."""

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        record("--from", "159", "--to", "241", cls.file("clip.mp4"))
        clip = pictures(cls.file("clip.mp4")).astype(numpy.int16)
        cls.steps = numpy.abs(numpy.diff(clip[:, ::2, ::2], axis=0)).mean(axis=(1, 2, 3))
        cls.chapters = probe(cls.file("clip.mp4"))[2]

    def cuts_near(self, beat):
        """Frames, counted from the beat's first, whose step dwarfs all before it or all after it
        within half a second: one of the two scenes may flicker."""
        frame = first_frame(beat) - first_frame(159)
        near = self.steps[frame - 26 : frame + 24]
        return [i - 25 for i in range(10, 40)
                if near[i] > 1.6 * near[:i].max() or near[i] > 1.6 * near[i + 1 :].max()]

    def test_at_160(self):
        self.assertEqual(self.cuts_near(160), [0])

    def test_at_180(self):
        self.assertEqual(self.cuts_near(180), [0])

    def test_at_208(self):
        self.assertEqual(self.cuts_near(208), [0])

    def test_at_240(self):
        self.assertEqual(self.cuts_near(240), [0])

    def test_are_the_chapters(self):
        starts = [float(chapter["start_time"]) for chapter in self.chapters]
        begin = first_frame(159) / 50
        expected = [0.0] + [first_frame(b) / 50 - begin for b in (160, 180, 208, 212, 240)]
        numpy.testing.assert_allclose(starts, expected, atol=0.011)
        self.assertAlmostEqual(beat_seconds(160), begin + starts[1], delta=0.02)


if __name__ == "__main__":
    unittest.main()
