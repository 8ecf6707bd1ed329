"""The sound that the show itself plays, from SDL's disk audio driver, beside its event lines."""

import os
import signal
import tempfile
import time
import unittest

import numpy

from movies import BEAT, beat_seconds, lag, ROOT, sound
from stage import ShowTest, wait_until

LATEST = 0.025  # seconds from an event's beat to the frame that shows it
BUFFERS = 0.25  # seconds of sound that are mixed before the song's place is set
# A machine that is busy with something else draws late frames, whatever the show does: it is given
# another go, and where it never comes to its frames there is nothing to be learnt about the show.
GOES = 3
STOP = 13  # seconds that the process is stopped
ENOUGH = 45  # frames a second


class Sync(ShowTest):
    def play(self, skip, last):
        """Plays from `skip` seconds until event `last`; the sound, {event: beat shown}, and
        the fewest frames a second that were drawn meanwhile."""
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
        rates = [float(show.find(r"fps: ([0-9.]+) .*", lines=[tick])[1]) for tick in show.ticks
                 if tick.startswith("fps")]
        samples = numpy.fromfile(raw, numpy.int16).reshape(-1, 2).mean(axis=1) / 32768
        return samples.astype(numpy.float32), shown, min(rates[1:], default=0)

    def music_complaint(self, samples, skip):
        """Nothing when the sound is the song from the skipped time on, at its own speed."""
        song = sound(ROOT + "/tarvisk.ogg")[round(skip * 44100) :]  # seeking would be off by some ms
        # From the song's second second on: the first may begin a sample before the sound does.
        start = lag(song[44100:88200], samples)[0] - 44100
        if not -0.002 < start / 44100 < BUFFERS:
            return f"the song starts {start / 44100:.3f} s into the sound"
        seconds = (len(samples) - start) // 44100 - 2
        if seconds < 2:
            return "there is hardly any sound"
        for second in range(1, seconds):
            at, alike = lag(song[second * 44100 : (second + 1) * 44100], samples)
            if alike < 0.8 or abs((at - start) / 44100 - second) > 0.002:
                return f"{second} s on, the sound is not the song's (alike {alike:.2f})"
        return ""

    def event_complaint(self, shown, events):
        """Nothing when every event is shown on its beat."""
        for name, beat in events.items():
            late = (shown[name] - beat) * BEAT
            if not -0.005 <= late <= LATEST:
                return f"{name} is shown {late:.3f} s after its beat"
        return ""

    def expect_events(self, skip, events):
        for _ in range(GOES):
            samples, shown, rate = self.play(skip, max(events, key=events.get))
            complaint = self.event_complaint(shown, events) or self.music_complaint(samples, skip)
            if not complaint:
                return
        if rate < ENOUGH:
            self.skipTest(f"this machine draws {rate} frames a second: {complaint}")
        self.fail(complaint)

    def test_scenes_change_on_their_beats_in_the_rock(self):
        self.expect_events(beat_seconds(158),
                           {"stoptunnel": 160, "bump1": 165, "bump2": 170, "bump3": 173})

    def test_song_is_where_the_picture_is_after_a_stop(self):
        stage = self.stage(427, 240)
        raw = os.path.join(tempfile.mkdtemp(dir=stage.folder), "sound.raw")
        show = self.show(stage, SDL_AUDIODRIVER="disk", SDL_DISKAUDIOFILE=raw,
                         SDL_DISKAUDIODELAY="90")
        show.wait_for_frames()
        wait_until(lambda: self.seconds(stage, show) > 2, "two seconds of the show")
        show.process.send_signal(signal.SIGSTOP)
        time.sleep(STOP)
        show.process.send_signal(signal.SIGCONT)
        resumed = os.path.getsize(raw) // 4
        wait_until(lambda: os.path.getsize(raw) // 4 > resumed + 3 * 44100, "three more seconds")
        now = self.seconds(stage, show)
        samples = numpy.fromfile(raw, numpy.int16).reshape(-1, 2).mean(axis=1) / 32768
        song = sound(ROOT + "/tarvisk.ogg")
        at, alike = lag(samples[-44100:].astype(numpy.float32), song)
        self.assertGreater(alike, 0.8)
        self.assertLess(abs((at + 44100) / 44100 - now), STOP / 2)

    def test_scenes_change_on_their_beats_at_the_end(self):
        # From here the earlier scenes pass in a frame each.
        self.expect_events(beat_seconds(270), {"stopduce": 273, "stopspacefly": 288})


if __name__ == "__main__":
    unittest.main()
