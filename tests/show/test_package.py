"""The Debian package: what it holds, and that the show plays from where it is installed."""

import os
import subprocess
import tempfile
import unittest

from stage import PROGRAM, ShowTest

BUILD = os.path.dirname(PROGRAM)


def lines(*command, **options):
    return subprocess.run(command, check=True, text=True, stdout=subprocess.PIPE,
                          **options).stdout.splitlines()


class Package(ShowTest):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory(prefix="tarvisk-package-")
        cls.addClassCleanup(cls.folder.cleanup)
        lines("cpack", "-B", cls.folder.name, cwd=BUILD)
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
        icon = f"usr/share/icons/hicolor/128x128/apps/{entry['Icon']}.png"
        self.assertTrue(os.path.exists(os.path.join(self.root, icon)))

    def test_plays_from_any_folder(self):
        program = os.path.join(self.root, "usr/games/tarvisk")
        show = self.show(self.stage(), "--nomusic", program=program, cwd="/")
        show.wait_for_frames()
        show.process.terminate()
        self.assertEqual(show.status(), 1)


if __name__ == "__main__":
    unittest.main()
