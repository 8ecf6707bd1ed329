"""What ./run and the installed tarvisk start: the show in a process of its own, and what is put right
around it."""

import os
import re
import signal
import socket
import subprocess
import tempfile
import unittest

import numpy

import machine
from movies import beat_seconds, lag, sound
from stage import CLOCK, Gate, ROOT, ShowTest, show_environment, wait_until
from test_wake import Bus

PLAY = os.environ["PLAY"]
FIRST_PICTURE = "gfx/harmattan-home.png"
SONG = os.path.join(ROOT, "tarvisk.ogg")
SECOND = 44100  # samples, of four bytes each


class Play(ShowTest):
    """.log is where the show's lines go."""

    def setUp(self):
        self.folder = tempfile.TemporaryDirectory(prefix="tarvisk-play-")
        self.addCleanup(self.folder.cleanup)
        self.log = os.path.join(self.folder.name, "show.log")

    def play(self, stage, *options, cwd=None, **environment):
        return self.show(stage, "--nomusic", "--mend", "mend it so", "--log", self.log, *options,
                         program=PLAY, cwd=cwd or stage.scratch(), **environment)

    def said(self):
        return machine.said(self.log)

    def wait_for_line(self, words):
        wait_until(lambda: words in self.said(), f"{words!r} in the log")

    def wait_for_frames(self):
        self.wait_for_line("adding event 'phonetex_callscreen'")

    def children(self, play):
        with open(f"/proc/{play.process.pid}/task/{play.process.pid}/children") as file:
            return [int(child) for child in file.read().split()]

    def show_process(self, play):
        child, = self.children(play)
        return child

    def test_lines_go_to_the_log_and_quit_is_no_failure(self):
        stage = self.stage()
        play = self.play(stage)
        self.wait_for_frames()
        self.quit(stage, play.process)
        self.assertEqual(play.status(), 1)
        self.assertEqual(play.lines, [])

    def test_lines_go_to_the_log_from_a_socket_too(self):
        read, write = socket.socketpair()  # as a desktop's menu may start it
        self.addCleanup(read.close)
        stage = self.stage()
        play = subprocess.Popen([PLAY, "--nomusic", "--log", self.log], cwd=stage.scratch(), stdin=subprocess.DEVNULL,
                                stdout=write, stderr=write, env=show_environment(stage))
        self.addCleanup(play.wait)
        self.addCleanup(play.kill)
        write.close()
        self.wait_for_frames()
        self.assertIn("\nVendor ", self.said())
        self.quit(stage, play)

    def test_escape_is_answered_once_and_does_not_end_it(self):
        stage = self.stage()
        play = self.play(stage)
        self.wait_for_frames()

        def answered():
            stage.key("key", "Escape")
            return any("q does" in line for line in play.lines)

        wait_until(answered, "an answer")
        seen = len(self.said())

        def goes_on():  # keys are heard in their order
            stage.key("key", "Escape")
            stage.key("key", "z")
            return re.search(CLOCK, self.said()[seen:])

        wait_until(goes_on, "an answer to z")
        self.assertEqual(len(play.lines), 1)

    def test_signals_end_it(self):
        stage = self.stage()
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            play = self.play(stage)
            self.wait_for_frames()
            play.process.send_signal(number)
            self.assertEqual((play.status(), play.lines), (1, []))
            os.remove(self.log)

    def test_signal_while_loading_is_remembered(self):
        stage = self.stage()
        folder = stage.scratch()
        gate = Gate(folder, FIRST_PICTURE)
        play = self.play(stage, cwd=folder)
        gate.wait()
        play.process.terminate()
        gate.open()
        self.assertEqual((play.status(), play.lines), (1, []))

    def test_missing_picture_is_told_from_a_quit(self):
        stage = self.stage()
        play = self.play(stage, cwd=stage.scratch(without=[FIRST_PICTURE]))
        self.assertEqual(play.status(), 2)
        self.assertIn("mend it so", "\n".join(play.lines))
        self.assertIn("couldn't load!", "\n".join(play.lines))

    def test_sound_that_will_not_open_names_the_way_round(self):
        play = self.play(self.stage(), SDL_AUDIODRIVER="disk", SDL_DISKAUDIOFILE="/nonexistent/sound")
        self.assertEqual(play.status(), 2)
        self.assertIn("SDL_AUDIODRIVER=dummy", "\n".join(play.lines))

    def saver(self, stage):
        command = ["xset", "q"]
        text = subprocess.run(command, env=show_environment(stage), check=True, text=True,
                              stdout=subprocess.PIPE).stdout
        return text[text.index("Screen Saver"):]

    def test_killed_show_leaves_the_desktop_as_it_was(self):
        stage = self.stage()
        subprocess.run(["xset", "s", "300", "120"], env=show_environment(stage), check=True)
        before = self.saver(stage)
        play = self.play(stage)
        self.wait_for_frames()
        # As SDL 1.2 does to a display's power saving.
        subprocess.run(["xset", "s", "off"], env=show_environment(stage), check=True)
        os.kill(self.show_process(play), signal.SIGKILL)
        self.assertEqual(play.status(), 128 + signal.SIGKILL)
        self.assertEqual(self.saver(stage), before)

    def test_killed_show_leaves_power_saving_as_it_was(self):
        state = os.path.join(self.folder.name, "dpms")
        stage = self.stage()

        def set_state(value):
            with open(state, "w") as file:
                file.write(value)

        def killed(before):
            set_state(before)
            play = self.play(stage, LD_PRELOAD=os.environ["DPMS"], DPMS_STATE=state)
            self.wait_for_frames()
            set_state("off")  # as SDL 1.2 leaves it when it is killed
            os.kill(self.show_process(play), signal.SIGKILL)
            play.status()
            os.remove(self.log)
            with open(state) as file:
                return file.read()

        self.assertEqual(killed("on"), "on")
        self.assertEqual(killed("off"), "off")

    def test_desktop_is_asked_to_stay_awake_until_the_end(self):
        stage = self.stage()
        bus = Bus(stage.folder, "Inhibit")
        self.addCleanup(bus.close)
        play = self.play(stage, DBUS_SESSION_BUS_ADDRESS=bus.address)
        # Nobody on this bus answers the first, so the second is asked, too; SDL 2 asks for itself besides.
        def asked(interface, sender=""):
            return [call for call in bus.calls if f"interface={interface};" in call and sender in call]

        wait_until(lambda: asked("org.gnome.SessionManager"), "both requests")
        asker = re.search(r"sender=(\S+)", asked("org.gnome.SessionManager")[0])[1]
        self.assertTrue(asked("org.freedesktop.ScreenSaver", f"sender={asker} "))

        def stays():
            question = ["dbus-send", "--bus=" + bus.address, "--print-reply",
                        "--dest=org.freedesktop.DBus", "/", "org.freedesktop.DBus.NameHasOwner",
                        "string:" + asker]
            return "true" in subprocess.run(question, check=True, text=True, stdout=subprocess.PIPE).stdout

        self.wait_for_frames()
        self.assertTrue(stays())
        os.kill(self.show_process(play), signal.SIGKILL)
        play.status()
        wait_until(lambda: not stays(), "its end on the bus")

    def test_window_keeps_its_shape_and_closes(self):
        stage = self.stage(1000, 800, window_manager="openbox")
        play = self.play(stage, "--windowed", "427x240")
        self.wait_for_line("screen res: 427, 240")
        self.wait_for_frames()
        self.assertEqual(self.picture(stage)[2:], (427, 240))
        stage.key("windowsize", str(self.window()), "854", "700")
        wait_until(lambda: self.picture(stage)[2:] == (854, 480), "the picture to follow its window")
        stage.x.ask_to_close(self.window())
        self.assertEqual((play.status(), play.lines), (1, []))

    def test_window_of_another_shape_has_the_show_in_its_middle(self):
        stage = self.stage(1000, 800, window_manager="openbox")
        self.play(stage, "--windowed", "400x300", "--skip", "102.5")  # rock from edge to edge
        self.wait_for_frames()
        stage.key("windowsize", str(self.window()), "800", "600")
        wait_until(lambda: self.picture(stage)[2:] == (800, 600), "the picture to follow its window")
        left, top, width, height = self.picture(stage)
        bar = (height - width * 480 // 854) // 2
        shown = []

        def drawn_anew():
            grab = stage.grab()[top:top + height, left:left + width]
            if grab[bar:-bar].mean() > 20 and not (shown and (grab == shown[-1]).all()):
                shown.append(grab)
            return len(shown) > 5  # the first may be of the size before

        wait_until(drawn_anew, "the rock")
        self.assertLess(shown[-1][:bar - 2].max(), 10)
        self.assertLess(shown[-1][2 - bar:].max(), 10)

    def window(self):
        """The number of the window that the window manager knows."""
        numbers = (re.search(rf"our {kind}window id: ([0-9A-F]{{8}})", self.said()) for kind in ("wm", ""))
        return next(filter(None, (int(number[1], 16) for number in numbers)))

    def picture(self, stage):
        """Left, top, width and height of GL's own window: the innermost one."""
        text = subprocess.run(["xwininfo", "-root", "-tree", "-display", stage.display], check=True,
                              text=True, stdout=subprocess.PIPE).stdout
        innermost = max((line for line in text.splitlines() if re.match(r" +0x", line)),
                        key=lambda line: len(line) - len(line.lstrip()))
        size = re.search(r"(\d+)x(\d+)\+(-?\d+)\+(-?\d+)  \+(-?\d+)\+(-?\d+)", innermost)
        return int(size[5]), int(size[6]), int(size[1]), int(size[2])

    def play_sound(self, raw, *options, delay):
        """Starts the show with its sound in a file. `delay` slows the sound's clock down,
        milliseconds a buffer."""
        return self.show(self.stage(), "--log", self.log, *options, program=PLAY,
                         SDL_AUDIODRIVER="disk", SDL_DISKAUDIOFILE=raw, SDL_DISKAUDIODELAY=delay)

    def wait_for_sound(self, raw, seconds):
        there = os.path.getsize(raw)
        wait_until(lambda: os.path.getsize(raw) > there + 4 * SECOND * seconds, "sound")

    def samples(self, raw):
        """Both channels mixed."""
        stereo = numpy.fromfile(raw, "<i2")
        mixed = stereo[:len(stereo) // 2 * 2].reshape(-1, 2).mean(axis=1)
        return mixed.astype(numpy.float32) / 32768

    def song_heard(self, part):
        """Where in the song, in seconds, the part lies, and how loud it is beside it."""
        song = sound(SONG)
        at, alike = lag(part, song)
        self.assertGreater(alike, 0.9)
        whole = song[at:at + len(part)]
        return at / SECOND, (part @ whole) / (whole @ whole)

    def test_volume(self):
        loudness = {}
        for volume in 25, 100:
            raw = os.path.join(self.folder.name, f"{volume}.raw")
            self.log = raw + ".log"
            play = self.play_sound(raw, "--volume", str(volume), "--skip", "100", delay="20")
            self.wait_for_frames()  # the device is open and silent long before
            self.wait_for_sound(raw, 10)
            play.process.terminate()
            play.status()
            _, loudness[volume] = self.song_heard(self.samples(raw)[-2 * SECOND:])
        self.assertAlmostEqual(loudness[25] / loudness[100], 0.25, delta=0.02)

    def peak(self, process):
        """The most memory that a process has had, in MB."""
        with open(f"/proc/{process}/status") as file:
            return int(re.search(r"VmHWM:\s*(\d+) kB", file.read())[1]) / 1024

    def test_from_plays_up_to_there_unseen_and_begins_with_the_music(self):
        raw = os.path.join(self.folder.name, "sound.raw")
        play = self.play_sound(raw, "--from", "165", delay="90")
        play.wait("100%.*")
        self.wait_for_line("event 'bump1' happened!")  # on that beat
        self.assertTrue("event 'phonefly9' happened!" in self.said(), "the show before it")
        self.wait_for_sound(raw, 6)
        play.process.terminate()
        play.status()
        samples, block = self.samples(raw), SECOND // 10
        silent = ~samples[:len(samples) // block * block].reshape(-1, block).any(axis=1)
        begins = (numpy.flatnonzero(silent)[-1] + 1) * block
        place, _ = self.song_heard(samples[begins + SECOND:begins + 3 * SECOND])
        # Some buffers may be mixed from the song's beginning before its place is set.
        self.assertAlmostEqual(place - 1, beat_seconds(165), delta=0.9)

    def test_what_is_played_unseen_does_not_pile_up(self):
        play = self.play(self.stage(), "--windowed", "--from", "300")
        play.wait("100%.*")
        self.assertLess(self.peak(self.show_process(play)), 300)

    def test_moment_that_is_none_is_refused_before_anything_is_opened(self):
        for moment in (("nosuchmoment",), ("nan",), ()):
            play = self.play(None, "--from", *moment, cwd=self.folder.name)
            self.assertEqual((play.status(), len(play.lines), self.said()), (2, 1, ""))

    def test_loop_begins_again_after_the_song(self):
        stage = self.stage()
        play = self.play(stage, "--loop", "--skip", "249")
        self.wait_for_frames()
        first = self.show_process(play)
        wait_until(lambda: self.children(play) and self.children(play) != [first], "a second show")
        self.wait_for_frames()
        play.process.terminate()
        self.assertEqual((play.status(), play.lines), (1, []))

    def test_values_that_are_none_are_refused(self):
        for options in (("--volume", "loud"), ("--volume", "101"), ("--volume",), ("--monitor", "0"),
                        ("--windowed", "0x9")):
            play = self.play(self.stage(), *options)
            self.assertEqual(play.status(), 2)
            self.assertEqual(len(play.lines), 1)

    def test_show_does_not_outlive_its_launcher(self):
        stage = self.stage()
        play = self.play(stage)
        self.wait_for_frames()
        show = self.show_process(play)
        play.process.kill()

        def ended():  # where nobody collects orphans, as in a container, a zombie stays
            try:
                with open(f"/proc/{show}/stat") as file:
                    return file.read().rpartition(")")[2].split()[0] == "Z"
            except FileNotFoundError:
                return True

        wait_until(ended, "the show's end")


if __name__ == "__main__":
    unittest.main()
