"""What can go wrong around the program while it runs: the clock, its own output, a display too
poor."""

import os
import signal
import socket
import subprocess
import time
import unittest

from machine import PATIENCE
from stage import PROGRAM, ROOT, ShowTest, show_environment, wait_until


class MidShow(ShowTest):
    def running(self, stage, *options, **environment):
        show = self.show(stage, *options, **environment)
        show.wait_for_frames()
        return show

    def test_clock_set_by_an_hour_forward_and_back(self):
        # SDL's timers go by the same clock: set back, they may rest, but not the show.
        stage = self.stage()
        show = self.running(stage, "--nomusic", LD_PRELOAD=os.environ["SETCLOCK"])
        wait_until(lambda: self.seconds(stage, show) > 0, "the clock")
        before = self.seconds(stage, show)
        for step in (signal.SIGUSR1, signal.SIGUSR2, signal.SIGUSR2, signal.SIGUSR1):
            show.process.send_signal(step)
            after = self.seconds(stage, show)
            wait_until(lambda: self.seconds(stage, show) > after, "the show to go on")
            self.assertGreaterEqual(after, before)
            self.assertLess(after, 1800, "an hour was skipped")
            before = after
        show.process.send_signal(signal.SIGTERM)
        self.assertEqual(show.status(), 1)

    def test_stopped_for_longer_than_any_frame_lasts(self):
        frame = 3  # seconds that one may last on a busy machine; an answer is as old as its frame
        stage = self.stage()
        show = self.running(stage, "--nomusic")

        def moment():
            """Demo time and two times between which it was that."""
            earlier = time.monotonic()
            return self.seconds(stage, show), earlier, time.monotonic()

        wait_until(lambda: self.seconds(stage, show) > 0, "the clock")
        before, earliest, latest = moment()
        show.process.send_signal(signal.SIGSTOP)
        time.sleep(13)
        show.process.send_signal(signal.SIGCONT)
        seen = len(show.lines)

        def moved():
            answer = moment()
            return answer if answer[0] > before + frame else None

        # What it says first may be as old as the frame before the stop.
        after, earlier, later = wait_until(moved, "an answer from behind the stop")
        self.assertGreater(after - before, earlier - latest - frame)
        self.assertLess(after - before, later - earliest + frame)
        self.assertIsNone(show.find(".*zero moved.*", seen))

    def test_any_number_to_skip_draws_and_answers_q(self):
        stage = self.stage(427, 240)
        for number, said in (("1e30", "1000000015047466219876688855040.00"),
                             ("1e18", "999999984306749440.00"), ("-1e9", "-1000000000.00"),
                             ("nan", "-?nan"), ("inf", "inf")):
            with self.subTest(number):
                show = self.show(stage, "--nomusic", "--skip", number)
                show.wait("skipping time to " + said)
                show.wait_for_frames()
                shown = stage.grab()
                wait_until(lambda: (stage.grab() != shown).any(), "another frame")
                self.quit(stage, show.process)
                self.assertEqual(show.status(), 1)

    def test_full_socket(self):
        read, write = socket.socketpair()
        self.addCleanup(read.close)
        fill(write.fileno())
        process = self.start_with("", stdout=write, stderr=write)
        self.assertTrue(os.get_blocking(write.fileno()), "the writer's own end is as it was")
        write.close()
        self.assert_runs_and_ends(process, ["/dev/null", "socket:.*", "socket:.*"])

    def test_socket_gets_the_lines(self):
        read, write = socket.socketpair()
        self.addCleanup(read.close)
        process = self.start_with("", stdout=write, stderr=write)
        write.close()
        said = b""
        while b"Vendor " not in said or b"event 'phonetex_shot' happened" not in said:
            got = read.recv(65536)
            self.assertTrue(got, "the show has ended")
            said += got
        self.assertIn(b"no music!\nskipping time to 40.00\n", said)
        process.send_signal(signal.SIGTERM)

    def test_lines_are_out_however_it_ends(self):
        show = self.running(self.stage())
        show.process.kill()
        show.status()
        self.assertRegex(show.stdout(), "^Vendor .*\nRenderer .*\nVersion .*\nExtensions .*\n$")

    def test_closed_streams(self):
        # Their numbers must not go to files that the show opens.
        with open(os.path.join(self.stage().folder, "output"), "w") as file:
            for closed in ("<&- >&- 2>&-", ">&-", "2>&-", "<&-"):
                with self.subTest(closed):
                    process = self.start_with(closed, stdin=subprocess.PIPE, stdout=file,
                                              stderr=file)
                    process.stdin.close()
                    targets = ["pipe:.*", file.name, file.name]
                    for number in range(3):
                        if ("<&-", ">&-", "2>&-")[number] in closed.split():
                            targets[number] = "/dev/null"
                    self.assert_runs_and_ends(process, targets)

    def test_full_pipe(self):
        read, write = os.pipe()
        self.addCleanup(os.close, read)
        fill(write)
        process = self.start_with("", stdout=write, stderr=write)
        self.assertTrue(os.get_blocking(write), "the writer's own end is as it was")
        os.close(write)
        self.assert_runs_and_ends(process, ["/dev/null", "pipe:.*", "pipe:.*"])

    def test_display_of_256_colours_has_no_window_for_it(self):
        show = self.show(self.stage(depth=8, window_manager=""))
        self.assertEqual(show.status(), -signal.SIGABRT)
        self.assertRegex(show.lines[-2], "^no window: .+")
        self.assertRegex(show.lines[-1], "screen")

    def test_full_disk(self):
        with open("/dev/full", "w") as full:
            process = self.start_with("", stdout=full, stderr=full)
        self.assert_runs_and_ends(process, ["/dev/null", "/dev/full", "/dev/full"])

    def start_with(self, redirection, stdin=subprocess.DEVNULL, **streams):
        self.scene = self.stage()
        process = subprocess.Popen(["sh", "-c", f'exec "$0" --nomusic --skip 40 {redirection}',
                                    PROGRAM], cwd=ROOT, env=show_environment(self.scene),
                                   stdin=stdin, **streams)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        return process

    def assert_runs_and_ends(self, process, targets):
        def draws():
            self.assertIsNone(process.poll(), "the show has ended")
            return self.scene.grab().any()

        wait_until(draws, "a frame of the show")
        first = self.scene.grab()
        wait_until(lambda: (self.scene.grab() != first).any(), "another frame")
        for number, target in enumerate(targets):
            self.assertRegex(os.readlink(f"/proc/{process.pid}/fd/{number}"), f"^{target}$")
        process.send_signal(signal.SIGTERM)
        self.assertEqual(process.wait(PATIENCE), 1)


def fill(write):
    os.set_blocking(write, False)
    try:
        while True:
            os.write(write, b"x" * 4096)
    except BlockingIOError:
        pass
    os.set_blocking(write, True)


if __name__ == "__main__":
    unittest.main()
