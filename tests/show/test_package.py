"""The Debian package: what it holds, and that the show plays from where it is installed."""

import os
import shutil
import subprocess
import tempfile
import unittest

from stage import PROGRAM, ShowTest, show_environment

BUILD = os.path.dirname(PROGRAM)


def lines(*command, **options):
    return subprocess.run(command, check=True, text=True, stdout=subprocess.PIPE,
                          **options).stdout.splitlines()


class Package(ShowTest):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory(prefix="tarvisk-package-")
        cls.addClassCleanup(cls.folder.cleanup)
        loose = os.umask(0o002)
        lines("cpack", "-B", cls.folder.name, cwd=BUILD)
        os.umask(loose)
        cls.package, = [os.path.join(cls.folder.name, f) for f in os.listdir(cls.folder.name)
                        if f.endswith(".deb")]
        cls.root = os.path.join(cls.folder.name, "root")
        lines("dpkg-deb", "-x", cls.package, cls.root)

    def test_asks_for_what_the_program_links(self):
        depends, = lines("dpkg-deb", "-f", self.package, "Depends")
        for library in ("libsdl1.2", "libsdl-image1.2", "libsdl-mixer1.2", "libgles2", "libegl1",
                        "libx11-6", "libdbus-1-3", "libc6"):
            self.assertIn(library, depends)

    def test_menu_entry_finds_program_and_icon(self):
        with open(os.path.join(self.root, "usr/share/applications/tarvisk.desktop")) as file:
            entry = dict(line.strip().split("=", 1) for line in file if "=" in line)
        self.assertTrue(os.access(os.path.join(self.root, "usr/games", entry["Exec"]), os.X_OK))
        for size in ("32x32", "48x48", "64x64", "128x128", "256x256"):
            icon = f"usr/share/icons/hicolor/{size}/apps/{entry['Icon']}.png"
            self.assertTrue(os.path.exists(os.path.join(self.root, icon)))

    def test_lintian_has_nothing_to_say(self):
        if not shutil.which("lintian"):
            self.skipTest("no lintian here")
        said = subprocess.run(["lintian", "--fail-on", "none", self.package], text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout
        faults = [line for line in said.splitlines() if line[:2] in ("E:", "W:")]
        # Newer ones miss a home page, which the show does not have.
        self.assertEqual([f for f in faults if "appstream-metadata" not in f], [])

    def test_folders_are_not_the_groups_to_write(self):
        for line in lines("dpkg-deb", "-c", self.package):
            if line.startswith("d"):
                self.assertTrue(line.startswith("drwxr-xr-x root/root"), line)

    def test_help_and_no_display_are_answered_in_words(self):
        program = os.path.join(self.root, "usr/games/tarvisk")
        helped = subprocess.run([program, "--help"], text=True, stdout=subprocess.PIPE)
        self.assertEqual(helped.returncode, 0)
        self.assertIn("--skip", helped.stdout)
        nowhere = subprocess.run([program], text=True, stderr=subprocess.PIPE,
                                 env=show_environment(None))
        self.assertEqual(nowhere.returncode, 1)
        self.assertIn("No X display", nowhere.stderr)

    def test_without_sound_device_it_plays_silently(self):
        if os.path.exists("/dev/snd") or os.environ.get("PULSE_SERVER"):
            self.skipTest("this machine has sound")
        stage = self.stage()
        show = self.show(stage, "--verbose", program=os.path.join(self.root, "usr/games/tarvisk"),
                         cwd="/", SDL_AUDIODRIVER="", XDG_RUNTIME_DIR="/nonexistent")
        show.wait_for_frames()
        self.assertIn("* No sound device: the show plays silently.", show.lines)

    def test_plays_from_any_folder(self):
        program = os.path.join(self.root, "usr/games/tarvisk")
        show = self.show(self.stage(), "--nomusic", "--verbose", program=program, cwd="/")
        show.wait_for_frames()
        show.process.terminate()
        self.assertEqual(show.status(), 1)


if __name__ == "__main__":
    unittest.main()
