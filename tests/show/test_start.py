"""The start: its lines, byte for byte and in order, and what the viewer sees while it loads."""

import os
import re
import unittest

from stage import Gate, ShowTest, desktop_picture, wait_until

# What differs from run to run or with the content, in the expected lines.
FIELDS = {
    "<window>": "[0-9A-F]{8}",
    "<pointer>": "0x[0-9a-f]+",
    "<count>": "[0-9]+",
    "<float>": r"-?[0-9]+\.[0-9]{2}",
    "<bits>": "(?:8|24|32)",
}


def expected_lines():
    with open(os.path.join(os.path.dirname(__file__), "start.txt")) as file:
        lines = [re.escape(line.rstrip("\n")) for line in file]
    for field, pattern in FIELDS.items():
        lines = [line.replace(re.escape(field), pattern) for line in lines]
    return lines


class Start(ShowTest):
    def test_lines(self):
        show = self.show(self.stage(), "--nomusic", "--skip", "75")
        expected = expected_lines()
        wait_until(lambda: len(show.lines) >= len(expected) or show.process.poll() is not None,
                   "the lines of the start")
        for number, (line, pattern) in enumerate(zip(show.lines, expected), 1):
            self.assertRegex(line, f"^{pattern}$", f"line {number}")
        self.assertGreaterEqual(len(show.lines), len(expected))

    def test_standard_output_is_the_gl_strings(self):
        stage = self.stage()
        show = self.show(stage, "--nomusic")
        show.wait_for_frames()
        show.ask_to_close(stage)
        show.status()
        self.assertRegex(show.stdout(), r"\AVendor     : .+\nRenderer   : .+\n"
                                        r"Version    : OpenGL ES .+\nExtensions : GL_.+\n\Z")

    def test_rate_report(self):
        show = self.show(self.stage(), "--nomusic")
        show.wait(r"fps: \d+\.\d\d \(\d+\) logic: \d+\.\d\d \(\d+\) time: \d+\.\d\d beat: +-?\d+",
                  lines=show.ticks)

    def test_options(self):
        show = self.show(self.stage(), "--fs", "-x", "--fullhd", "--720p", "--nomusic", "stray",
                         "--skip", "--fs", "--skip")
        show.wait("initting GLES")
        self.assertEqual(show.lines[: show.lines.index("initting GLES")],
                         ["fs!", "fullhd!", "half-hd!", "no music!", "skipping time to 0.00"])

    def test_no_options(self):
        show = self.show(self.stage())
        show.wait("initting GLES")
        self.assertEqual(show.lines[0], "initting GLES")

    def test_desktop_stays_until_the_show_begins(self):
        stage = self.stage()
        desktop = desktop_picture()
        stage.hang(desktop)
        folder = stage.scratch()
        gates = [Gate(folder, "gfx/" + image) for image in
                 ("bubbles.jpg", "N9_uv.png", "gear.png", "credits.jpg", "whiteback.jpg")]
        show = self.show(stage, cwd=folder)
        for gate in gates:
            gate.wait()
            stage.wait_for_picture(desktop, "the desktop at " + gate.name)
            gate.open()
        show.wait_for_frames()
        wait_until(lambda: not stage.shows(desktop), "the show's own frames")

    def test_dialog_until_two_seconds_then_normal(self):
        stage = self.stage()
        stage.x.atom("_NET_WM_WINDOW_TYPE")  # as any window manager has named it
        folder = stage.scratch()
        gate = Gate(folder, "gfx/whiteback.jpg")  # the first type is there as long as it is shut
        show = self.show(stage, cwd=folder)
        window = show.window("fs") or show.window()

        def type_is(kind):
            atom = stage.x.atom("_NET_WM_WINDOW_TYPE_" + kind)
            return stage.x.property(window, "_NET_WM_WINDOW_TYPE") == atom

        gate.wait()
        wait_until(lambda: type_is("DIALOG"), "the dialog type")
        gate.open()
        line = "setting the hildon atom"
        wait_until(lambda: show.lines.count(line) >= 2, "the second " + line)
        wait_until(lambda: type_is("NORMAL"), "the normal type")
        self.assertEqual(show.lines.count(line), 2)


if __name__ == "__main__":
    unittest.main()
