"""Keeping the display awake, on a message bus of the test's own."""

import os
import signal
import subprocess
import threading
import unittest

from machine import listens
from stage import ShowTest, wait_until

BEAT = "Up all night dont ever let me go, I'll die for you"
RATES = "fps: .*"

CONFIGURATION = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>system</type>
  <listen>unix:path={}</listen>
  <policy context="default">
    <allow user="*"/>
    <allow own="*"/>
    <allow send_type="method_call"/>
    <allow receive_type="method_call"/>
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
  </policy>
</busconfig>
"""


class Bus:
    """A bus and the calls of a member that it sees."""

    def __init__(self, folder, member="req_display_blanking_pause"):
        self.member = member
        self.socket = os.path.join(folder, "bus")
        self.address = "unix:path=" + self.socket
        self.calls = []
        configuration = os.path.join(folder, "bus.conf")
        with open(configuration, "w") as file:
            file.write(CONFIGURATION.format(self.socket))
        self.daemon = subprocess.Popen(["dbus-daemon", "--nofork", "--nopidfile",
                                        "--config-file=" + configuration],
                                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        wait_until(lambda: listens(self.socket), "the bus")
        self.monitor = subprocess.Popen(["dbus-monitor", "--address", self.address], text=True,
                                        stdout=subprocess.PIPE)
        self.watching = threading.Event()
        self.reader = threading.Thread(target=self._read, daemon=True)
        self.reader.start()
        wait_until(self.watching.is_set, "the bus's monitor")

    def _read(self):
        for line in self.monitor.stdout:
            self.watching.set()
            if f"member={self.member}\n" in line:
                self.calls.append(line)

    def die(self):
        self.daemon.kill()
        self.daemon.wait()

    def close(self):
        self.die()
        self.monitor.wait()
        self.reader.join()
        self.monitor.stdout.close()


class Wake(ShowTest):
    def bus(self, stage):
        bus = Bus(stage.folder)
        self.addCleanup(bus.close)
        return bus

    def test_request_arrives_again_and_again(self):
        stage = self.stage()
        bus = self.bus(stage)
        show = self.show(stage, DBUS_SYSTEM_BUS_ADDRESS=bus.address)
        wait_until(lambda: len(bus.calls) >= 3, "three requests")
        for call in bus.calls:
            self.assertRegex(call, r"^method call .* destination=com\.nokia\.mce .*"
                                   r"path=/com/nokia/mce/request; "
                                   r"interface=com\.nokia\.mce\.request; "
                                   r"member=req_display_blanking_pause\s*$")
        wait_until(lambda: show.ticks.count(BEAT) >= 3, "their heartbeats")
        self.assertNotIn("bus == NULL", show.lines)

    def test_no_bus_is_one_line_and_no_retry(self):
        stage = self.stage()
        address = "unix:path=" + os.path.join(stage.folder, "bus")
        show = self.show(stage, DBUS_SYSTEM_BUS_ADDRESS=address)
        show.wait("bus == NULL")
        bus = self.bus(stage)  # too late
        self.assertEqual(bus.address, address)
        seen = len(show.ticks)
        wait_until(lambda: len(show.ticks) >= seen + 4, "eight seconds of the show")
        self.assertNotIn(BEAT, show.ticks)
        self.assertEqual(bus.calls, [])
        self.assertEqual(show.lines.count("bus == NULL"), 1)

    def test_show_survives_the_bus(self):
        stage = self.stage()
        bus = self.bus(stage)
        show = self.show(stage, DBUS_SYSTEM_BUS_ADDRESS=bus.address)
        show.wait_for_frames()
        wait_until(lambda: BEAT in show.ticks, "the first heartbeat")
        bus.die()
        beats = show.ticks.count(BEAT)
        wait_until(lambda: show.ticks.count(BEAT) >= beats + 2 or show.process.poll() is not None,
                   "heartbeats without a bus")
        self.assertIsNone(show.process.poll())
        seen = len(show.ticks)
        show.wait(r"fps: [1-9].*|fps: 0\.[1-9].*", seen, show.ticks)
        show.process.send_signal(signal.SIGTERM)
        self.assertEqual(show.status(), 1)


if __name__ == "__main__":
    unittest.main()
