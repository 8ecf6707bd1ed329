"""Keeping the display awake, on a message bus of the test's own."""

import os
import re
import signal
import subprocess
import threading
import unittest

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
    """A bus and the calls of keep-awake requests that it sees, as (time, description)."""

    def __init__(self, folder):
        self.socket = os.path.join(folder, "bus")
        self.address = "unix:path=" + self.socket
        self.calls = []
        configuration = os.path.join(folder, "bus.conf")
        with open(configuration, "w") as file:
            file.write(CONFIGURATION.format(self.socket))
        self.daemon = subprocess.Popen(["dbus-daemon", "--nofork", "--nopidfile",
                                        "--config-file=" + configuration])
        wait_until(lambda: os.path.exists(self.socket), "the bus")
        self.monitor = subprocess.Popen(["dbus-monitor", "--address", self.address], text=True,
                                        stdout=subprocess.PIPE)
        self.watching = threading.Event()
        self.reader = threading.Thread(target=self._read, daemon=True)
        self.reader.start()
        self.watching.wait()

    def _read(self):
        for line in self.monitor.stdout:
            self.watching.set()
            if "req_display_blanking_pause" in line:
                self.calls.append((float(re.search(r"time=([\d.]+)", line)[1]), line))

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

    def test_request_arrives_at_once_and_every_five_seconds(self):
        stage = self.stage()
        bus = self.bus(stage)
        show = self.show(stage, DBUS_SYSTEM_BUS_ADDRESS=bus.address)
        wait_until(lambda: len(bus.calls) >= 3, "three requests")
        for _, call in bus.calls:
            self.assertRegex(call, r"^method call .* destination=com\.nokia\.mce .*"
                                   r"path=/com/nokia/mce/request; "
                                   r"interface=com\.nokia\.mce\.request; "
                                   r"member=req_display_blanking_pause\s*$")
        times = [time for time, _ in bus.calls]
        self.assertGreater(times[2] - times[0], 8.0, "three requests are ten seconds")
        self.assertNotIn("bus == NULL", show.lines)
        # The rates come first after two seconds: the request was out well before them.
        self.assertEqual(show.ticks[0], BEAT)
        self.assertIn(show.ticks[3:5].count(BEAT), (0, 1))

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
