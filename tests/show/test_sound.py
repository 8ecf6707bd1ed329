"""The sound device while the show runs: pulled out, stuck, its sound server gone."""

import os
import shutil
import subprocess
import unittest

from machine import listens
from stage import ShowTest, wait_until

DEVICE = os.environ.get("SOUND_DEVICE_PLUGIN")

# All that ALSA reads: neither this machine's configuration nor its devices.
CONFIGURATION = """pcm_type.sounddevice {{ lib "{}" }}
pcm.default {{ type sounddevice }}
"""


class Sound(ShowTest):
    def goes_on(self, stage, show):
        """Waits until the show has gone on for longer than any buffer holds sound."""
        start = self.seconds(stage, show)
        wait_until(lambda: self.seconds(stage, show) > start + 2, "the show to go on")

    def quits(self, stage, show):
        self.quit(stage, show.process)
        self.assertEqual(show.status(), 1)

    def heard(self, show, condition):
        wait_until(lambda: condition() or show.process.poll() is not None, "a sound")
        self.assertIsNone(show.process.poll(), show.lines[-5:])

    def with_device(self):
        """A stage, a show that is heard on a device, and the file that the device goes by."""
        stage = self.stage()
        device = os.path.join(stage.folder, "device")
        open(device, "w").close()
        configuration = os.path.join(stage.folder, "asound.conf")
        with open(configuration, "w") as file:
            file.write(CONFIGURATION.format(DEVICE))
        show = self.show(stage, "--skip", "35", SDL_AUDIODRIVER="alsa", SOUND_DEVICE=device,
                         ALSA_CONFIG_PATH=configuration)
        self.heard(show, lambda: os.path.exists(device + ".heard"))
        return stage, show, device

    def with_server(self):
        """A stage, a show that is heard by a sound server, and the server's process."""
        stage = self.stage()
        address = "unix:" + os.path.join(stage.folder, "pulse")
        nothing = "unix:path=/nonexistent"
        environment = dict(os.environ, HOME=stage.folder, XDG_RUNTIME_DIR=stage.folder,
                           PULSE_RUNTIME_PATH=stage.folder, PULSE_STATE_PATH=stage.folder,
                           DBUS_SYSTEM_BUS_ADDRESS=nothing, DBUS_SESSION_BUS_ADDRESS=nothing)
        server = subprocess.Popen(
            ["pulseaudio", "--daemonize=no", "--use-pid-file=no", "--exit-idle-time=-1", "-n",
             "-L", "module-null-sink",
             "-L", f"module-native-protocol-unix auth-anonymous=1 socket={address[5:]}"],
            env=environment, stderr=subprocess.DEVNULL)
        self.addCleanup(server.wait)
        self.addCleanup(server.kill)
        wait_until(lambda: listens(address[5:]), "the sound server")
        show = self.show(stage, "--skip", "35", SDL_AUDIODRIVER="pulse", PULSE_SERVER=address)

        def plays():
            return b"RUNNING" in subprocess.run(
                ["pactl", "--server", address, "list", "short", "sinks"], env=environment,
                stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout

        self.heard(show, plays)
        return stage, show, server

    def test_device_pulled_out(self):
        stage, show, device = self.with_device()
        os.unlink(device)
        self.goes_on(stage, show)
        self.quits(stage, show)

    def test_device_that_hangs(self):
        stage, show, device = self.with_device()
        with open(device, "w") as file:
            file.write("hang")
        self.goes_on(stage, show)
        self.quits(stage, show)
        self.assertRegex(show.stdout(), "^Vendor .*\n")

    def test_device_is_closed_when_the_display_is_lost(self):
        stage, show, device = self.with_device()
        stage.lose_display()
        self.assertEqual(show.status(), 1)
        self.assertTrue(os.path.exists(device + ".closed"))

    # Not among the packages of ./check: on many a desktop it would take another server's place.
    @unittest.skipUnless(shutil.which("pulseaudio"), "no pulseaudio here")
    def test_sound_server_dies(self):
        stage, show, server = self.with_server()
        server.kill()
        self.goes_on(stage, show)
        self.quits(stage, show)


if __name__ == "__main__":
    unittest.main()
