"""What can go wrong around the program while it runs: the clock, its own output, a display too
poor."""

import os
import signal
import subprocess
import unittest

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
        self.assertEqual(process.wait(120), 1)


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
