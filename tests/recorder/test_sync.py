"""The sound that the show itself plays, from SDL's disk audio driver, beside its event lines."""

import os
import tempfile
import unittest

import numpy

from movies import BEAT, beat_seconds, lag, ROOT, sound
from stage import ShowTest

LATEST = 0.025  # seconds from an event's beat to the frame that shows it
# A machine that is busy with something else draws late frames; the show is given another go.
GOES = 3


class Sync(ShowTest):
    def play(self, skip, last):
        """Plays from `skip` seconds until event `last`; the sound and {event: (beat shown)}."""
        stage = self.stage(427, 240)  # small, so that drawing leaves time for keeping time
        raw = os.path.join(tempfile.mkdtemp(dir=stage.folder), "sound.raw")
        show = self.show(stage, "--skip", str(skip), SDL_AUDIODRIVER="disk",
                         SDL_DISKAUDIOFILE=raw, SDL_DISKAUDIODELAY="90")
        show.wait(rf"event '{last}' happened! .*")
        shown = {}
        for line in show.lines:
            match = show.find(r"event '(.*)' happened! (.*)", lines=[line])
            if match:
                shown.setdefault(match[1], float(match[2]))
        show.close()
        samples = numpy.fromfile(raw, numpy.int16).reshape(-1, 2).mean(axis=1) / 32768
        return samples.astype(numpy.float32), shown

    def expect_music(self, samples, skip):
        """The sound is the song from the skipped time on, at its own speed to the last."""
        song = sound(ROOT + "/tarvisk.ogg", "-ss", str(skip), "-t", "40")
        start = lag(song[:44100], samples)[0]
        for second in range(0, (len(samples) - start) // 44100 - 2):
            part = song[second * 44100 : (second + 1) * 44100]
            at, alike = lag(part, samples[start:])
            self.assertGreater(alike, 0.8, f"{second} s into the sound")
            self.assertLess(abs(at / 44100 - second), 0.002, "the sound's samples keep time")

    def expect_events(self, skip, events):
        last = max(events, key=events.get)
        for go in range(GOES):
            samples, shown = self.play(skip, last)
            late = {name: (shown[name] - beat) * BEAT for name, beat in events.items()}
            if max(late.values()) <= LATEST:
                break
        self.expect_music(samples, skip)
        for name, seconds in late.items():
            self.assertGreaterEqual(seconds, -0.005, f"{name} is shown before its beat")
            self.assertLessEqual(seconds, LATEST, f"{name} is shown late")

    def test_scenes_change_on_their_beats_in_the_rock(self):
        self.expect_events(beat_seconds(158),
                           {"stoptunnel": 160, "bump1": 165, "bump2": 170, "bump3": 173})

    def test_scenes_change_on_their_beats_at_the_end(self):
        # From here the earlier scenes pass in a frame each.
        self.expect_events(beat_seconds(270), {"stopduce": 273, "stopspacefly": 288})


if __name__ == "__main__":
    unittest.main()
